#include "automation/Pace.h"

#include "host/Guards.h"

namespace lorvane::automation {

namespace {

constexpr double millisecondsADay = 24.0 * 60 * 60 * 1000;

}  // namespace

bool RealPace::pass() {
    using std::chrono::milliseconds;
    const auto elapsed = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - last_);
    if (elapsed.count() <= 0) return false;
    last_ += elapsed;
    const auto next = desktop_.untilNextTimer();
    // As on the host, the error of a timer's handler goes nowhere.
    host::ignoringErrors([&] { desktop_.advance(elapsed.count()); });
    return next && *next <= elapsed.count();
}

host::DateTime VirtualClock::now(const screen::Desktop& desktop) const noexcept {
    return {moment_.days + static_cast<double>(desktop.now() - setAt_) / millisecondsADay};
}

void VirtualClock::set(host::DateTime moment, const screen::Desktop& desktop) noexcept {
    moment_ = moment;
    setAt_ = desktop.now();
}

}  // namespace lorvane::automation
