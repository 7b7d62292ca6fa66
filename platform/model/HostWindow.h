#pragma once

#include "model/HostCore.h"
#include "model/ModelObject.h"
#include "screen/Desktop.h"

namespace lorvane::model {

/// A window of the host: an Explorer or an Inspector. It stands on the desktop and counts among its kind from its first showing until its close event has run.
class HostWindow : public ModelObject, public screen::DesktopWindow {
public:
    using ModelObject::ModelObject;

    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return events.advise(std::move(sink)); }

    bool isShown() const noexcept { return shown_; }
    /// Shows the window or brings it to the front; a window that gets there raises its Activate event.
    void show();
    /// Raises the close event and goes. The host's window that is in front then is told so.
    void closeShown();
    /// Goes without an event. The object may end with it.
    void leave() noexcept;

    host::EventSource events;

protected:
    virtual std::vector<HostWindow*>& siblings() const noexcept = 0;
    virtual void raiseNew() = 0;

private:
    host::Object self_;  // keeps a shown window alive
    bool shown_ = false;
    bool closing_ = false;
};

}  // namespace lorvane::model
