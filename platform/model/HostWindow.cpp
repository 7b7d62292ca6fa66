#include "model/HostWindow.h"

#include <algorithm>

namespace lorvane::model {

using host::Member;

void HostWindow::show() {
    const host::Object held(this);
    screen::Desktop& desktop = core().options.desktop;
    if (shown_) {
        const bool wasInFront = desktop.foreground() == this;
        desktop.bringToFront(*this);
        if (!wasInFront) events.raise(Member::Activate);
        return;
    }
    siblings().push_back(this);
    self_ = held;
    shown_ = true;
    desktop.open(*this);
    raiseNew();
    if (shown_) events.raise(Member::Activate);
}

void HostWindow::closeShown() {
    if (!shown_ || closing_) return;
    const host::Object held(this);
    closing_ = true;
    events.raise(Member::Close);
    leave();
    closing_ = false;
    if (auto* next = dynamic_cast<HostWindow*>(core().options.desktop.foreground())) {
        const host::Object nextHeld(next);
        next->events.raise(Member::Activate);
    }
}

void HostWindow::leave() noexcept {
    if (!shown_) return;
    const host::Object held(this);
    shown_ = false;
    std::erase(siblings(), this);
    core().options.desktop.close(*this);
    self_ = nullptr;
}

}  // namespace lorvane::model
