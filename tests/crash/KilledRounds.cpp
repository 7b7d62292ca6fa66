#include "crash/KilledRounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "crash/Marks.h"
#include "host/TextFunctions.h"

namespace lorvane::crash {

using mailstore::test::PlacedItem;

std::uint32_t roundsAsked() {
    const char* const asked = std::getenv("LORVANE_CRASH_ROUNDS");
    return asked ? static_cast<std::uint32_t>(std::max(std::atoi(asked), 1)) : 50;
}

Doom doomOf(const Course& undisturbed, std::uint32_t round, std::uint32_t random) {
    if (round % 3 != 0) return {.writes = 1 + random % (undisturbed.writes + undisturbed.writes / 10 + 1)};
    return {.time = std::chrono::microseconds(random % static_cast<std::uint32_t>(undisturbed.time.count() * 11 / 10))};
}

Items expectMendedByNextStart(const Program& program, const Program::Words& next, const Items& left) {
    if (notesIn(storeOf(program)) == 0 && std::ranges::none_of(left, holdsMark)) return left;
    const cli::test::Ended ended = program(next);
    EXPECT_EQ(ended.status, 0) << ended;
    EXPECT_EQ(notesIn(storeOf(program)), 0);
    std::string told;
    Items expected = left;
    for (PlacedItem& item : expected) {
        if (!holdsMark(item)) continue;
        item.record = withoutMark(item.record);
        ++item.record.head.version;
        told += "lorvane: took the caret mark of an interrupted insertion out of \"" + host::toUtf8(item.record.head.subject) + "\"\n";
    }
    EXPECT_EQ(ended.err, told);
    EXPECT_EQ(itemsNow(storeOf(program)), expected);
    return expected;
}

void Tally::count(bool killed, const std::string& left) {
    ++rounds_;
    if (!killed) return;
    ++killed_;
    ++left_[left];
}

void Tally::print() const {
    std::cout << rounds_ << " rounds, " << killed_ << " killed; they left\n";
    for (const auto* counts : {&left_, &details_})
        for (const auto& [what, count] : *counts) std::cout << "    " << count << " times " << what << '\n';
}

}  // namespace lorvane::crash
