#include "screen/WindowList.h"

#include <algorithm>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "screen/ControlKeys.h"

namespace lorvane::screen {

namespace {

[[noreturn]] void refuse(std::u16string sentence) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::move(sentence));
}

std::u16string quoted(std::u16string_view name) {
    return std::u16string(u"\"").append(name).append(u"\"");
}

std::u16string titleOf(const DesktopWindow& window) {
    return quoted(window.name().empty() ? window.caption() : window.name());
}

/// Why a control cannot be reached: itself, or what it stands in.
std::u16string unreachable(const host::Control& control) {
    std::u16string sentence = u"The control " + quoted(control.name()) + u" of the window " + quoted(control.form().name());
    for (const host::Control* part = &control; part; part = part->container()) {
        if (part->Visible && part->Enabled) continue;
        sentence += part->Visible ? u" is disabled" : u" is hidden";
        if (part != &control) sentence += u" with " + quoted(part->name());
        break;
    }
    return sentence + u".";
}

}  // namespace

/// A window of the add-in on the desktop.
class WindowList::FormWindow final : public DesktopWindow {
public:
    FormWindow(WindowList& list, host::Form& form) : list_(list), form_(form), alive_(&form) {}

    host::Form& form() const noexcept { return form_; }
    std::u16string caption() const override { return form_.Caption; }
    std::u16string name() const override { return std::u16string(form_.name()); }

    void keys(const std::vector<KeyStroke>& strokes) override {
        // A key may close the window, which ends this object.
        const host::Object alive = alive_;
        host::Form& form = form_;
        const WindowList& list = list_;
        for (const KeyStroke& stroke : strokes) {
            if (!list.takesInput(form)) return;
            pressKey(form, stroke);
        }
    }

private:
    WindowList& list_;
    host::Form& form_;
    host::Object alive_;
};

WindowList::WindowList(Desktop& desktop) : desktop_(desktop) {}

WindowList::~WindowList() {
    for (const OpenForm& entry : forms_) desktop_.close(*entry.window);
    for (DesktopWindow* box : boxes_) desktop_.close(*box);
}

std::vector<WindowList::Row> WindowList::rows() const {
    std::vector<Row> result;
    for (const DesktopWindow* window : desktop_.windows()) result.push_back({window->name(), window->caption(), isModal(*window)});
    return result;
}

host::Form* WindowList::find(std::u16string_view name) const noexcept {
    const auto entry = std::ranges::find_if(forms_, [&](const OpenForm& candidate) { return host::equalsIgnoreCase(candidate.window->form().name(), name); });
    return entry == forms_.end() ? nullptr : &entry->window->form();
}

bool WindowList::isOpen(const host::Form& form) const noexcept {
    return entryOf(form) != nullptr;
}

bool WindowList::takesInput(const DesktopWindow& window) const noexcept {
    return desktop_.isOpen(window) && !coverOf(window);
}

bool WindowList::takesInput(const host::Form& form) const noexcept {
    const OpenForm* entry = entryOf(form);
    return entry && takesInput(*entry->window);
}

host::Control& WindowList::reach(std::u16string_view window, std::u16string_view control) const {
    const host::Form& form = reach(window);
    host::Control* found = form.control(control);
    if (!found) refuse(u"The window " + quoted(form.name()) + u" has no control " + quoted(control) + u".");
    if (!found->isReachable()) refuse(unreachable(*found));
    return *found;
}

host::Form& WindowList::reach(std::u16string_view window) const {
    host::Form* form = find(window);
    if (!form) refuse(u"The window " + quoted(window) + u" is not open.");
    requireInput(*entryOf(*form)->window);
    return *form;
}

void WindowList::requireInput(const DesktopWindow& window) const {
    const DesktopWindow* cover = coverOf(window);
    if (!cover) return;
    const bool isBox = std::ranges::find(boxes_, cover) != boxes_.end();
    refuse(u"The window " + titleOf(window) + u" is covered by the " +
           (isBox ? u"message box " + quoted(cover->caption()) : u"modal window " + titleOf(*cover)) + u".");
}

std::int32_t WindowList::open(host::Form& form, bool modal) {
    forms_.push_back({std::make_unique<FormWindow>(*this, form), modal});
    desktop_.open(*forms_.back().window);
    return desktop_.handleOf(*forms_.back().window);
}

bool WindowList::close(host::Form& form) {
    const auto entry = std::ranges::find_if(forms_, [&](const OpenForm& candidate) { return &candidate.window->form() == &form; });
    if (entry == forms_.end()) return false;
    // The last handle on the window may go with the entry, so it is out of the list before.
    const OpenForm closed = std::move(*entry);
    forms_.erase(entry);
    desktop_.close(*closed.window);
    return true;
}

void WindowList::bringToFront(host::Form& form) {
    if (const OpenForm* entry = entryOf(form)) desktop_.bringToFront(*entry->window);
}

void WindowList::openBox(DesktopWindow& box) {
    boxes_.push_back(&box);
    desktop_.open(box);
}

void WindowList::closeBox(DesktopWindow& box) noexcept {
    std::erase(boxes_, &box);
    desktop_.close(box);
}

const WindowList::OpenForm* WindowList::entryOf(const host::Form& form) const noexcept {
    const auto entry = std::ranges::find_if(forms_, [&](const OpenForm& candidate) { return &candidate.window->form() == &form; });
    return entry == forms_.end() ? nullptr : &*entry;
}

bool WindowList::isModal(const DesktopWindow& window) const noexcept {
    return std::ranges::find(boxes_, &window) != boxes_.end() ||
           std::ranges::any_of(forms_, [&](const OpenForm& entry) { return entry.window.get() == &window && entry.modal; });
}

const DesktopWindow* WindowList::coverOf(const DesktopWindow& window) const noexcept {
    // The desktop's numbers grow with each opening, so they tell what came later whatever stands in front now.
    const DesktopWindow* cover = nullptr;
    std::int32_t latest = desktop_.handleOf(window);
    const auto consider = [&](const DesktopWindow& candidate) {
        const std::int32_t handle = desktop_.handleOf(candidate);
        if (handle <= latest) return;
        latest = handle;
        cover = &candidate;
    };
    for (const OpenForm& entry : forms_)
        if (entry.modal) consider(*entry.window);
    for (const DesktopWindow* box : boxes_) consider(*box);
    return cover;
}

}  // namespace lorvane::screen
