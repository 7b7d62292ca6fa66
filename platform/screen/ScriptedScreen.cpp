#include "screen/ScriptedScreen.h"

#include <algorithm>
#include <utility>

#include "host/Guards.h"
#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "host/Variant.h"
#include "screen/ControlActions.h"
#include "screen/ControlKeys.h"
#include "screen/TextMetrics.h"

namespace lorvane::screen {

using host::Form;
using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t alreadyShown = 400;

Form& formAt(host::Args args) {
    Form* form = host::implementation<Form>(host::requiredArgument(args, 0).toObject());
    if (!form) throw host::HostError(host::runtime_error::TypeMismatch);
    return *form;
}

/// The window of a message box. It has the keys while it is up; those that come meanwhile are lost.
class BoxWindow final : public DesktopWindow {
public:
    BoxWindow(WindowList& windows, const BoxShown& box) : windows_(windows), box_(box) { windows_.openBox(*this); }
    ~BoxWindow() override { windows_.closeBox(*this); }
    BoxWindow(const BoxWindow&) = delete;
    BoxWindow& operator=(const BoxWindow&) = delete;
    std::u16string caption() const override { return box_.title; }
    std::u16string name() const override { return u"MsgBox"; }
    void keys(const std::vector<KeyStroke>&) override {}

private:
    WindowList& windows_;
    const BoxShown& box_;
};

/// Takes a window down that an error leaves up.
class TakenDown {
public:
    TakenDown(WindowList& windows, Form& form, std::int32_t handle) noexcept : windows_(windows), form_(form), handle_(handle) {}
    ~TakenDown() {
        if (!armed_ || !windows_.isOpen(handle_)) return;
        host::ignoringErrors([this] { form_.Hide(); });
        if (windows_.isOpen(handle_)) windows_.close(form_);
    }
    TakenDown(const TakenDown&) = delete;
    TakenDown& operator=(const TakenDown&) = delete;
    void disarm() noexcept { armed_ = false; }

private:
    WindowList& windows_;
    Form& form_;
    std::int32_t handle_;
    bool armed_ = true;
};

/// The shown items of a menu, in the order of the window.
std::vector<host::Menu*> itemsOf(const Form& form, const host::Control& menu) {
    std::vector<host::Menu*> items;
    for (host::Control* control : form.controls())
        if (control->container() == &menu && control->kind() == host::ControlKind::Menu && control->Visible) items.push_back(static_cast<host::Menu*>(control));
    return items;
}

/// A character as an argument: a text's first, or by its number.
char16_t unitOf(const Variant& character) {
    if (character.kind() != Variant::Kind::Text) return static_cast<char16_t>(character.toInt32());
    return character.text().empty() ? char16_t{0} : character.text().front();
}

/// Captions compare without their access key marks.
bool isCalled(const host::Menu& item, std::u16string_view choice) {
    return host::equalsIgnoreCase(item.name(), choice) ||
           host::equalsIgnoreCase(host::Replace(item.Caption.get(), u"&", u""), host::Replace(choice, u"&", u""));
}

}  // namespace

ScriptedScreen::ScriptedScreen(WindowList& windows, User& user)
    : desktop_(windows.desktop()), windows_(windows), user_(user), pumpListener_(desktop_.onPump([this] { sendPosted(); })) {}

Variant ScriptedScreen::get(Member member, host::Args) {
    host::raiseNoSuchMember(className(), member);
}

void ScriptedScreen::put(Member member, const Variant&, host::Args) {
    host::raiseNoSuchMember(className(), member);
}

Variant ScriptedScreen::call(Member member, host::Args args) {
    const auto textAt = [&](std::size_t index) { return host::requiredArgument(args, index).toText(); };
    const auto numberAt = [&](std::size_t index) { return host::requiredArgument(args, index).toInt32(); };
    const auto optional = [&](std::size_t index) { return host::argumentAt(args, index).isMissing() ? Variant() : host::argumentAt(args, index); };
    switch (member) {
        case Member::Load:
            load(formAt(args));
            return {};
        case Member::Show:
            show(formAt(args), optional(1).toBoolean());
            return {};
        case Member::Hide:
            hide(formAt(args));
            return {};
        case Member::Unload:
            unload(formAt(args));
            return {};
        case Member::MsgBox:
            return msgBox(textAt(0), optional(1).toInt32(), optional(2).toText());
        case Member::DoEvents:
            doEvents();
            return {};
        case Member::PopupMenu:
            popupMenu(formAt(args), textAt(1));
            return {};
        case Member::TextWidth:
            return textWidth(textAt(0));
        case Member::SetTimer:
            setTimer(formAt(args), textAt(1), numberAt(2));
            return {};
        case Member::KillTimer:
            killTimer(formAt(args), textAt(1));
            return {};
        case Member::SendKeys:
            sendKeys(textAt(0), optional(1).toBoolean());
            return {};
        case Member::VkKeyScan:
            return vkKeyScan(unitOf(host::requiredArgument(args, 0)));
        case Member::MapVirtualKey:
            return mapVirtualKey(numberAt(0), numberAt(1));
        case Member::keybd_event:
            keyEvent(numberAt(0), optional(2).toInt32());
            return {};
        case Member::GetForegroundWindow:
            return foregroundWindow();
        case Member::SetForegroundWindow:
            setForegroundWindow(numberAt(0));
            return {};
        default:
            host::raiseNoSuchMember(className(), member);
    }
}

void ScriptedScreen::load(Form& form) {
    publishSizes(form);
    for (host::Control* control : form.controls()) {
        if (control->kind() != host::ControlKind::Timer) continue;
        const auto& timer = static_cast<const host::Timer&>(*control);
        if (timer.Enabled && timer.Interval > 0) setTimer(form, timer.name(), timer.Interval);
    }
}

void ScriptedScreen::show(Form& form, bool modal) {
    const host::Object alive(&form);
    if (windows_.isOpen(form)) {
        if (modal) throw host::HostError(alreadyShown, u"Form already displayed; can't show modally");
        return windows_.bringToFront(form);
    }
    try {
        user_.opening(form, modal);
    } catch (const host::HostError&) {
        form.Hide();
        throw;
    }
    const std::int32_t handle = windows_.open(form, modal);
    TakenDown onError(windows_, form, handle);
    user_.shown(form, modal);
    if (!form.focus()) moveFocus(form);
    form.activate();
    ModalTurn turn(windows_, form, handle);
    while (modal && !turn.isOver()) {
        if (user_.attend(turn)) continue;
        user_.leftUp(form);
        closeByTitleBar(form);
        if (!turn.isOver()) windows_.close(form);
    }
    onError.disarm();
}

void ScriptedScreen::hide(Form& form) {
    const host::Object alive(&form);
    if (windows_.close(form)) user_.closed(form);
}

void ScriptedScreen::unload(Form& form) {
    hide(form);
    std::erase_if(timers_, [&](const RunningTimer& row) { return &row.timer->form() == &form; });
}

std::int32_t ScriptedScreen::msgBox(const std::u16string& text, std::int32_t style, const std::u16string& title) {
    const BoxShown box{++lastBox_, text, style, title};
    const BoxWindow window(windows_, box);
    const std::int32_t button = user_.answer(box);
    requireButton(box, button);
    return button;
}

void ScriptedScreen::popupMenu(Form& form, const std::u16string& name) {
    const host::Object alive(&form);
    const host::Control* menu = form.control(name);
    if (!menu || menu->kind() != host::ControlKind::Menu) throw host::HostError(host::runtime_error::InvalidProcedureCall);
    const std::vector<host::Menu*> items = itemsOf(form, *menu);
    MenuShown shown{std::u16string(form.name()), name, {}};
    for (const host::Menu* item : items) shown.items.push_back({std::u16string(item->name()), item->Caption, item->Enabled});

    const std::optional<std::u16string> choice = user_.choose(shown);
    if (!choice) return;
    for (host::Menu* item : items) {
        if (!isCalled(*item, *choice)) continue;
        if (!item->Enabled) break;
        return item->Click();
    }
    throw host::HostError(host::runtime_error::InvalidProcedureCall, u"The menu has no item \"" + *choice + u"\" that can be chosen");
}

void ScriptedScreen::doEvents() {
    desktop_.pump();
    user_.pumped();
}

void ScriptedScreen::setTimer(Form& form, std::u16string_view name, std::int32_t milliseconds) {
    host::Control* control = form.control(name);
    if (!control || control->kind() != host::ControlKind::Timer)
        throw host::HostError(host::runtime_error::InvalidProcedureCall, std::u16string(u"There is no timer \"").append(name).append(u"\"."));
    auto* timer = static_cast<host::Timer*>(control);
    host::Subscription beats = desktop_.every(milliseconds, [this, timer] { tick(*timer); });
    killTimer(form, name);
    timers_.push_back({host::Object(&form), timer, std::move(beats)});
}

void ScriptedScreen::killTimer(Form& form, std::u16string_view name) {
    const host::Control* control = form.control(name);
    const auto row = std::ranges::find_if(timers_, [&](const RunningTimer& candidate) { return candidate.timer == control; });
    if (row == timers_.end()) return;
    const RunningTimer ended = std::move(*row);
    timers_.erase(row);
}

/// A handler that lets time pass, or pumps, is not entered again by its own timer, even where it was set anew meanwhile.
void ScriptedScreen::tick(host::Timer& timer) {
    if (std::ranges::find(ticking_, &timer) != ticking_.end()) return;
    struct Ticking {
        std::vector<const host::Timer*>& list;
        const host::Timer* timer;
        host::Object alive;
        ~Ticking() { std::erase(list, timer); }
    };
    ticking_.push_back(&timer);
    const Ticking now{ticking_, &timer, host::Object(&timer.form())};
    timer.Tick();
}

void ScriptedScreen::sendKeys(const std::u16string& keys, bool wait) {
    if (wait) return desktop_.sendKeys(keys);
    parseKeys(keys);  // a broken text is the caller's error, not one of a later pump
    postedKeys_.push_back(keys);
}

void ScriptedScreen::sendPosted() {
    if (postedKeys_.empty()) return;
    for (const std::u16string& keys : std::exchange(postedKeys_, {})) desktop_.sendKeys(keys);
}

/// A key that goes down reaches the window in front at once.
void ScriptedScreen::keyEvent(std::int32_t code, std::int32_t flags) {
    constexpr std::int32_t keyUp = 2;
    if ((flags & keyUp) != 0) return keyboard_.release(code);
    const auto stroke = keyboard_.press(code);
    DesktopWindow* window = stroke ? desktop_.foreground() : nullptr;
    if (window) window->keys({*stroke});
}

std::int32_t ScriptedScreen::foregroundWindow() const noexcept {
    const DesktopWindow* window = desktop_.foreground();
    return window ? desktop_.handleOf(*window) : 0;
}

void ScriptedScreen::setForegroundWindow(std::int32_t handle) {
    if (DesktopWindow* window = desktop_.windowOf(handle)) desktop_.bringToFront(*window);
}

}  // namespace lorvane::screen
