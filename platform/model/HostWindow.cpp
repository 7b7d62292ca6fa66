#include "model/HostWindow.h"

#include <algorithm>
#include <utility>

#include "model/CommandBarSet.h"
#include "model/Failures.h"

namespace lorvane::model {

using host::Member;

HostWindow::~HostWindow() {
    endBars();
}

void HostWindow::requireOpen() const {
    if (closed_) raiseFailed(u"The window has been closed.");
}

void HostWindow::show() {
    const host::Object held(this);
    requireOpen();
    screen::Desktop& desktop = core().options.desktop;
    if (displayed_) {
        const bool wasInFront = desktop.foreground() == this;
        desktop.bringToFront(*this);
        if (!wasInFront) events.raise(Member::Activate);
        return;
    }
    if (!shown_) {
        siblings().push_back(this);
        self_ = held;
        shown_ = true;
        desktop.open(*this);
        raiseNew();
        if (!shown_ || displayed_) return;
    }
    appear();
}

void HostWindow::appear() {
    displayed_ = true;
    if (bars_) bars_->showMenuBar();
    core().options.desktop.bringToFront(*this);
    events.raise(Member::Activate);
}

void HostWindow::closeForGood() {
    if (closed_ || closing_) return;
    const host::Object held(this);
    const bool wasShown = shown_;
    closing_ = true;
    if (wasShown) events.raise(Member::Close);
    leave();
    closing_ = false;
    closed_ = true;
    if (!wasShown) return;
    if (auto* next = dynamic_cast<HostWindow*>(core().options.desktop.foreground())) {
        const host::Object nextHeld(next);
        next->events.raise(Member::Activate);
    }
}

void HostWindow::leave() noexcept {
    endBars();
    if (!shown_) return;
    const host::Object held(this);
    shown_ = displayed_ = false;
    std::erase(siblings(), this);
    core().options.desktop.close(*this);
    self_ = nullptr;
}

CommandBarSet& HostWindow::commandBars() {
    requireOpen();
    if (!bars_) bars_ = std::make_shared<CommandBarSet>(sharedCore(), builtInBars(), displayed_ || !menuBarWaits());
    return *bars_;
}

host::Variant HostWindow::useCommandBars(host::Args args) {
    host::Object bars = commandBars().object();
    return args.empty() ? bars : bars.call(Member::Item, {args[0].value()});
}

void HostWindow::endBars() noexcept {
    if (const auto bars = std::exchange(bars_, nullptr)) bars->end();
}

}  // namespace lorvane::model
