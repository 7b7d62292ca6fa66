#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "host/Object.h"
#include "screen/Desktop.h"

namespace lorvane::automation {

/// How the desktop's time goes by while the door waits. By itself it stands: only `Advance` moves it.
class Pace {
public:
    Pace() = default;
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;
    virtual ~Pace() = default;

    /// Lets the time that went by pass on the desktop. True where that let a timer fire.
    virtual bool pass() { return false; }
    /// Milliseconds until a timer falls due; none where none does.
    virtual std::optional<std::int64_t> untilNext() const { return std::nullopt; }
};

/// As on a wall clock.
class RealPace final : public Pace {
public:
    explicit RealPace(screen::Desktop& desktop) : desktop_(desktop), last_(std::chrono::steady_clock::now()) {}
    bool pass() override;
    std::optional<std::int64_t> untilNext() const override { return desktop_.untilNextTimer(); }

private:
    screen::Desktop& desktop_;
    std::chrono::steady_clock::time_point last_;
};

/// The date and time of a run whose clock is virtual: a moment, and what passed on the desktop since it was set.
class VirtualClock {
public:
    explicit VirtualClock(host::DateTime moment) noexcept : moment_(moment) {}
    host::DateTime now(const screen::Desktop& desktop) const noexcept;
    void set(host::DateTime moment, const screen::Desktop& desktop) noexcept;

private:
    host::DateTime moment_;
    std::int64_t setAt_ = 0;
};

}  // namespace lorvane::automation
