#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Object.h"
#include "screen/KeyString.h"

/// The machine's screen without a display: which windows are open, which one has the keys, what time it is, and the event pump.
namespace lorvane::screen {

/// A window that can have the keys: an Explorer or Inspector of the host, or a window of the add-in.
class DesktopWindow {
public:
    virtual ~DesktopWindow() = default;
    virtual std::u16string caption() const = 0;
    /// What a script calls it, as "frmEmail"; empty for a window that is reached by its object.
    virtual std::u16string name() const { return {}; }
    /// A run of key strokes for the focus of this window. Plain characters that follow each other come in one call, so that typing a word is one change.
    virtual void keys(const std::vector<KeyStroke>& strokes) = 0;
};

/// The open windows from back to front, and time. Windows are not owned; each leaves before it ends.
class Desktop {
public:
    void open(DesktopWindow& window);  ///< comes to the front
    void close(DesktopWindow& window) noexcept;
    void bringToFront(DesktopWindow& window);  ///< nothing for a window that is not open
    bool isOpen(const DesktopWindow& window) const noexcept;
    DesktopWindow* foreground() const noexcept;   ///< null where no window is open
    std::vector<DesktopWindow*> windows() const;  ///< from back to front
    /// A number above 0 that grows with each window opened and is never used again; 0 for a window that is not open.
    std::int32_t handleOf(const DesktopWindow& window) const noexcept;
    DesktopWindow* windowOf(std::int32_t handle) const noexcept;

    /// Sends keys to the foreground window; they are lost where there is none. A run is plain characters that follow each other, or one key repeated; the
    /// window is asked for anew behind each run, since a key may have opened or closed one. Error 5 for a broken text, of which nothing is sent.
    void sendKeys(std::u16string_view keys);

    /// Runs once what waits: listeners in the order they came, then timers that are due. Listeners may pump themselves.
    void pump();
    /// Calls `listener` at each pump for as long as the subscription lives.
    [[nodiscard]] host::Subscription onPump(std::function<void()> listener);
    std::uint64_t pumpCount() const noexcept;

    /// Virtual milliseconds since the run began.
    std::int64_t now() const noexcept;
    /// Virtual milliseconds until the next timer falls due, 0 where one is; none where no timer runs.
    std::optional<std::int64_t> untilNextTimer() const noexcept;
    /// Lets time pass: timers that fall due on the way fire at their moments, in order; those of one moment in the order they came. Below 0 is error 5.
    void advance(std::int64_t milliseconds);
    /// Fires `action` every `interval` milliseconds of virtual time from now on, until the subscription goes; an interval below 1 is error 5.
    /// An action that runs is not entered again: what falls due before it returns is dropped.
    [[nodiscard]] host::Subscription every(std::int64_t interval, std::function<void()> action);

private:
    struct PumpListener;
    struct TimerEntry;
    struct OpenWindow {
        DesktopWindow* window;
        std::int32_t handle;
    };

    std::shared_ptr<TimerEntry> nextDue(std::int64_t until);
    void fire(std::shared_ptr<TimerEntry> timer);

    std::vector<OpenWindow> open_;
    std::vector<std::weak_ptr<PumpListener>> listeners_;
    std::vector<std::weak_ptr<TimerEntry>> timers_;
    std::int32_t lastHandle_ = 0;
    std::uint64_t pumps_ = 0;
    std::int64_t now_ = 0;
};

}  // namespace lorvane::screen
