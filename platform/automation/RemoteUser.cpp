#include "automation/RemoteUser.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "screen/MessageBox.h"

namespace lorvane::automation {

using screen::BoxShown;
using screen::MenuShown;

namespace {

[[noreturn]] void refuse(std::u16string sentence) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::move(sentence));
}

std::u16string inQuotes(std::u16string_view name) {
    return std::u16string(u"\"").append(name).append(u"\"");
}

/// Captions compare without their access key marks.
bool isCalled(const MenuShown::Item& item, std::u16string_view choice) {
    return host::equalsIgnoreCase(item.name, choice) || host::equalsIgnoreCase(host::Replace(item.caption, u"&", u""), host::Replace(choice, u"&", u""));
}

Json itemsOf(const MenuShown& menu) {
    Json items = Json::array();
    for (const MenuShown::Item& item : menu.items)
        items.push_back({{"name", host::toUtf8(item.name)}, {"caption", host::toUtf8(item.caption)}, {"enabled", item.enabled}});
    return items;
}

}  // namespace

/// On the list of what waits for as long as it lives.
class RemoteUser::Waiting {
public:
    Waiting(std::vector<Wait*>& waits, Wait& wait) : waits_(waits) { waits_.push_back(&wait); }
    ~Waiting() { waits_.pop_back(); }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

private:
    std::vector<Wait*>& waits_;
};

void RemoteUser::requireWait(const std::u16string& what) {
    if (inBatch_) {
        const host::HostError refused(host::runtime_error::InvalidProcedureCall, u"A batch does not wait for the user: it would show the " + what + u".");
        if (!refusal_) refusal_ = refused;
        throw host::HostError(refused);
    }
    if (requests_ >= deepestRequest) throw host::HostError(outOfStack, u"Too many requests wait inside each other for the " + what + u" to come up.");
}

RemoteUser::Wait& RemoteUser::top(Wait::Kind kind, std::u16string_view what) {
    if (!waits_.empty() && waits_.back()->kind == kind) return *waits_.back();
    const bool covered = std::ranges::any_of(waits_, [&](const Wait* wait) { return wait->kind == kind; });
    refuse(std::u16string(covered ? u"Something else is up over the " : u"There is no ").append(what).append(covered ? u"." : u" to answer."));
}

void RemoteUser::Answer(std::int32_t button) {
    Wait& wait = top(Wait::Kind::Box, u"message box");
    screen::requireButton(*wait.box, button);
    wait.button = button;
}

void RemoteUser::ChooseMenu(std::u16string_view item) {
    Wait& wait = top(Wait::Kind::Menu, u"menu");
    if (item.empty()) {
        wait.item.emplace();
        return;
    }
    const auto& items = wait.menu->items;
    const auto chosen = std::ranges::find_if(items, [&](const MenuShown::Item& candidate) { return isCalled(candidate, item); });
    if (chosen == items.end() || chosen->caption == u"-") refuse(u"The menu has no item " + inQuotes(item) + u".");
    if (!chosen->enabled) refuse(u"The item " + inQuotes(item) + u" of the menu is disabled.");
    wait.item = chosen->name;
}

bool RemoteUser::attend(screen::ModalTurn& turn) {
    std::erase(comingUp_, &turn.form());
    if (!isThere()) return false;
    Wait wait{Wait::Kind::Window};
    const Waiting waiting(waits_, wait);
    return source_->serveNext();
}

std::optional<std::int32_t> RemoteUser::answerLaidReady(const BoxShown& box) {
    if (answers_.empty()) return std::nullopt;
    const std::int32_t button = answers_.front();
    answers_.pop_front();
    return screen::hasButton(box.style, button) ? std::optional(button) : std::nullopt;
}

std::int32_t RemoteUser::answer(const BoxShown& box) {
    const std::optional<std::int32_t> laidReady = answerLaidReady(box);
    if (!laidReady && isThere()) requireWait(u"message box " + inQuotes(box.title));
    const std::size_t place = boxes_.size();
    boxes_.push_back({box.title, box.text, box.style});
    if (isThere()) source_->notify("messageBox", {{"id", box.id}, {"title", host::toUtf8(box.title)}, {"text", host::toUtf8(box.text)}, {"style", box.style}});
    const std::int32_t button = laidReady ? *laidReady : answerOf(box);
    boxes_[place].answer = button;
    return button;
}

std::int32_t RemoteUser::answerOf(const BoxShown& box) {
    Wait wait{Wait::Kind::Box, &box};
    const Waiting waiting(waits_, wait);
    while (!wait.button && isThere()) source_->serveNext();
    return wait.button.value_or(screen::carefulAnswer(box.style));
}

std::optional<std::u16string> RemoteUser::choose(const MenuShown& menu) {
    if (!isThere()) return std::nullopt;
    requireWait(u"menu " + inQuotes(menu.name));
    source_->notify("menu", {{"items", itemsOf(menu)}});
    Wait wait{Wait::Kind::Menu, nullptr, &menu};
    const Waiting waiting(waits_, wait);
    while (!wait.item && isThere()) source_->serveNext();
    return wait.item && !wait.item->empty() ? wait.item : std::nullopt;
}

void RemoteUser::opening(host::Form& form, bool modal) {
    if (modal && isThere()) requireWait(u"modal window " + inQuotes(form.name()));
}

bool RemoteUser::mayActInPump() const noexcept {
    if (requests_ >= deepestRequest || !comingUp_.empty()) return false;
    return !up_.empty() || (!waits_.empty() && waits_.back()->kind != Wait::Kind::Window);
}

void RemoteUser::pumped() {
    if (isThere() && mayActInPump()) source_->serveWaiting();
}

void RemoteUser::shown(host::Form& form, bool modal) {
    up_.push_back(&form);
    if (modal) comingUp_.push_back(&form);
    if (isThere()) source_->notify("shown", {{"window", host::toUtf8(form.name())}, {"modal", modal}});
}

void RemoteUser::closed(host::Form& form) {
    std::erase(up_, &form);
    std::erase(comingUp_, &form);
    if (isThere()) source_->notify("closed", {{"window", host::toUtf8(form.name())}});
}

}  // namespace lorvane::automation
