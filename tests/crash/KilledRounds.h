#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "crash/DoomedProgram.h"
#include "crash/SavedStates.h"

/// What all rounds have in common in which a program is killed.
namespace lorvane::crash {

/// Fifty, or as many as a longer run asks for with LORVANE_CRASH_ROUNDS.
std::uint32_t roundsAsked();

/// What a program takes undisturbed, from start to end.
struct Course {
    std::chrono::microseconds time{};
    std::uint32_t writes = 0;
};

/// When the program of a round is killed. A third of the rounds is killed at a moment, the others behind a write: most of a program's time goes by before its
/// first. A few come to their end.
Doom doomOf(const Course& undisturbed, std::uint32_t round, std::uint32_t random);

/// The next start finds what has to be mended by the notes alone, tells it, and touches nothing else. `left` is what the round left; gives what stands then.
Items expectMendedByNextStart(const Program& program, const Program::Words& next, const Items& left);

/// What the kills left.
class Tally {
public:
    void count(bool killed, const std::string& left);
    void countDetail(const std::string& detail) { ++details_[detail]; }
    void print() const;
    std::uint32_t rounds() const noexcept { return rounds_; }
    std::uint32_t killed() const noexcept { return killed_; }

private:
    std::uint32_t rounds_ = 0, killed_ = 0;
    std::map<std::string, std::uint32_t> left_, details_;
};

inline constexpr const char* caretMarkLeft = "an item with the caret mark, which the next start took out";

}  // namespace lorvane::crash
