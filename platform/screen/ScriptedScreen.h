#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Form.h"
#include "host/Object.h"
#include "screen/Keyboard.h"
#include "screen/User.h"
#include "screen/WindowList.h"

namespace lorvane::screen {

/// The screen behind the surface (`host::Screen`) without a display: windows come up on a desktop, the user is asked, and time is virtual.
///
/// Desktop, window list and user are not owned and outlive it.
class ScriptedScreen final : public host::Dispatch {
public:
    ScriptedScreen(WindowList& windows, User& user);

    std::u16string_view className() const noexcept override { return u"Screen"; }
    host::Variant get(host::Member member, host::Args args) override;
    void put(host::Member member, const host::Variant& value, host::Args args) override;
    host::Variant call(host::Member member, host::Args args) override;

private:
    struct RunningTimer {
        host::Object form;
        host::Timer* timer;
        host::Subscription beats;
    };

    void load(host::Form& form);
    void show(host::Form& form, bool modal);
    void hide(host::Form& form);
    void unload(host::Form& form);
    std::int32_t msgBox(const std::u16string& text, std::int32_t style, const std::u16string& title);
    void doEvents();
    void popupMenu(host::Form& form, const std::u16string& name);
    void setTimer(host::Form& form, std::u16string_view name, std::int32_t milliseconds);
    void killTimer(host::Form& form, std::u16string_view name);
    void tick(host::Timer& timer);
    void sendKeys(const std::u16string& keys, bool wait);
    void sendPosted();
    void keyEvent(std::int32_t code, std::int32_t flags);
    std::int32_t foregroundWindow() const noexcept;
    void setForegroundWindow(std::int32_t handle);

    Desktop& desktop_;
    WindowList& windows_;
    User& user_;
    Keyboard keyboard_;
    std::int32_t lastBox_ = 0;
    std::vector<RunningTimer> timers_;
    std::vector<const host::Timer*> ticking_;
    std::vector<std::u16string> postedKeys_;
    host::Subscription pumpListener_;
};

}  // namespace lorvane::screen
