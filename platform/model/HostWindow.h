#pragma once

#include <memory>
#include <vector>

#include "model/CommandBarTree.h"
#include "model/HostCore.h"
#include "model/ModelObject.h"
#include "screen/Desktop.h"

namespace lorvane::model {

class CommandBarSet;

/// A window of the host: an Explorer or an Inspector. It stands on the desktop and counts among its kind from its first showing until its close event has run.
///
/// The first showing tells its kind of the new window first; then the window is displayed, and told that it is active. A handler may display or close it.
class HostWindow : public ModelObject, public screen::DesktopWindow {
public:
    using ModelObject::ModelObject;
    ~HostWindow() override;

    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return events.advise(std::move(sink)); }

    bool isShown() const noexcept { return shown_; }          ///< counts, and stands on the desktop
    bool isDisplayed() const noexcept { return displayed_; }  ///< a person sees it: shown, and nothing of its showing is left to do
    bool isClosed() const noexcept { return closed_; }
    void requireOpen() const;  ///< error 0x80004005 once the window was closed
    /// Shows the window or brings it to the front; a window that gets there raises its Activate event.
    void show();
    /// Ends the window for good, with its close event where it was shown. The host's window that is in front then is told so.
    void closeForGood();
    /// Goes without an event. The object may end with it.
    void leave() noexcept;

    /// Its bars, made at the first use; they end with the window. Error 0x80004005 once the window was closed.
    CommandBarSet& commandBars();
    /// The member `CommandBars`; with an argument, the bar of that name or index.
    host::Variant useCommandBars(host::Args args);

    host::EventSource events;

protected:
    virtual std::vector<HostWindow*>& siblings() const noexcept = 0;
    virtual void raiseNew() = 0;
    /// The last step of the first showing.
    virtual void appear();
    virtual std::vector<BarTree> builtInBars() const = 0;
    /// Whether the menu bar comes with the first display only.
    virtual bool menuBarWaits() const noexcept { return false; }

private:
    void endBars() noexcept;

    host::Object self_;  // keeps a shown window alive
    std::shared_ptr<CommandBarSet> bars_;
    bool shown_ = false, displayed_ = false;
    bool closing_ = false, closed_ = false;
};

}  // namespace lorvane::model
