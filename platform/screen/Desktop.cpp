#include "screen/Desktop.h"

#include <algorithm>
#include <utility>

#include "host/HostError.h"

namespace lorvane::screen {

using Action = std::function<void()>;

// A subscription holds the entry; whoever runs the action holds the action alone. So one that is dropped while it runs is gone for what runs inside it.

struct Desktop::PumpListener {
    std::shared_ptr<const Action> action;
};

struct Desktop::TimerEntry {
    std::shared_ptr<const Action> action;
    std::int64_t interval;
    std::int64_t due;
    bool running = false;
};

void Desktop::open(DesktopWindow& window) {
    if (isOpen(window)) return bringToFront(window);
    open_.push_back({&window, ++lastHandle_});
}

void Desktop::close(DesktopWindow& window) noexcept {
    std::erase_if(open_, [&](const OpenWindow& row) { return row.window == &window; });
}

void Desktop::bringToFront(DesktopWindow& window) {
    const auto row = std::ranges::find(open_, &window, &OpenWindow::window);
    if (row != open_.end()) std::rotate(row, row + 1, open_.end());
}

bool Desktop::isOpen(const DesktopWindow& window) const noexcept {
    return handleOf(window) != 0;
}

DesktopWindow* Desktop::foreground() const noexcept {
    return open_.empty() ? nullptr : open_.back().window;
}

std::vector<DesktopWindow*> Desktop::windows() const {
    std::vector<DesktopWindow*> result;
    for (const OpenWindow& row : open_) result.push_back(row.window);
    return result;
}

std::int32_t Desktop::handleOf(const DesktopWindow& window) const noexcept {
    const auto row = std::ranges::find_if(open_, [&](const OpenWindow& candidate) { return candidate.window == &window; });
    return row == open_.end() ? 0 : row->handle;
}

DesktopWindow* Desktop::windowOf(std::int32_t handle) const noexcept {
    const auto row = std::ranges::find(open_, handle, &OpenWindow::handle);
    return row == open_.end() ? nullptr : row->window;
}

void Desktop::sendKeys(std::u16string_view keys) {
    const std::vector<KeyStroke> strokes = parseKeys(keys);
    for (std::size_t begin = 0; begin < strokes.size();) {
        const std::size_t end = endOfRun(strokes, begin);
        if (DesktopWindow* window = foreground())
            window->keys({strokes.begin() + static_cast<std::ptrdiff_t>(begin), strokes.begin() + static_cast<std::ptrdiff_t>(end)});
        begin = end;
    }
}

void Desktop::pump() {
    ++pumps_;
    const std::vector<std::weak_ptr<PumpListener>> told = listeners_;
    for (const std::weak_ptr<PumpListener>& entry : told) {
        std::shared_ptr<const Action> action;
        if (const auto listener = entry.lock()) action = listener->action;
        if (action) (*action)();
    }
    while (auto due = nextDue(now_)) fire(std::move(due));
}

host::Subscription Desktop::onPump(std::function<void()> listener) {
    std::erase_if(listeners_, [](const auto& entry) { return entry.expired(); });
    auto entry = std::make_shared<PumpListener>(std::make_shared<const Action>(std::move(listener)));
    listeners_.push_back(entry);
    return host::Subscription(std::move(entry));
}

std::uint64_t Desktop::pumpCount() const noexcept {
    return pumps_;
}

std::int64_t Desktop::now() const noexcept {
    return now_;
}

std::optional<std::int64_t> Desktop::untilNextTimer() const noexcept {
    std::optional<std::int64_t> next;
    for (const std::weak_ptr<TimerEntry>& entry : timers_) {
        const auto timer = entry.lock();
        if (!timer || timer->running) continue;
        const std::int64_t wait = std::max<std::int64_t>(timer->due - now_, 0);
        if (!next || wait < *next) next = wait;
    }
    return next;
}

void Desktop::advance(std::int64_t milliseconds) {
    if (milliseconds < 0) throw host::HostError(host::runtime_error::InvalidProcedureCall, u"Time does not run backwards.");
    // A timer's action may let time pass itself; what it used up of this stretch is not waited for again.
    const std::int64_t until = now_ + milliseconds;
    while (auto due = nextDue(until)) {
        now_ = std::max(now_, due->due);
        fire(std::move(due));
    }
    now_ = std::max(now_, until);
}

host::Subscription Desktop::every(std::int64_t interval, std::function<void()> action) {
    if (interval < 1) throw host::HostError(host::runtime_error::InvalidProcedureCall, u"A timer's interval is one millisecond at least.");
    std::erase_if(timers_, [](const auto& entry) { return entry.expired(); });
    auto entry = std::make_shared<TimerEntry>(std::make_shared<const Action>(std::move(action)), interval, now_ + interval);
    timers_.push_back(entry);
    return host::Subscription(std::move(entry));
}

std::shared_ptr<Desktop::TimerEntry> Desktop::nextDue(std::int64_t until) {
    std::shared_ptr<TimerEntry> next;
    for (const std::weak_ptr<TimerEntry>& entry : timers_) {
        auto timer = entry.lock();
        if (timer && !timer->running && timer->due <= until && (!next || timer->due < next->due)) next = std::move(timer);
    }
    return next;
}

void Desktop::fire(std::shared_ptr<TimerEntry> timer) {
    struct Running {
        std::weak_ptr<TimerEntry> entry;
        const std::int64_t& now;
        ~Running() {
            const auto ended = entry.lock();
            if (!ended) return;
            ended->running = false;
            if (ended->due <= now) ended->due += ((now - ended->due) / ended->interval + 1) * ended->interval;
        }
    };
    timer->due += timer->interval;
    timer->running = true;
    const std::shared_ptr<const Action> action = timer->action;
    const Running running{timer, now_};
    timer.reset();
    (*action)();
}

}  // namespace lorvane::screen
