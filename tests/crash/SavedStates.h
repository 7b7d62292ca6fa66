#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "crash/CommandsUnderTest.h"
#include "mailstore/StoreContent.h"

namespace lorvane::crash {

using Items = std::vector<mailstore::test::PlacedItem>;

/// What became of a store's items: those that are no more as they were, and those that came or were changed. A text an item, whatever its identity, sorted.
struct Difference {
    std::vector<std::string> gone, come;
    bool operator==(const Difference&) const = default;
    bool isNone() const { return gone.empty() && come.empty(); }
};

/// In full: two items of one text differ in their identities and versions at most.
Difference difference(const Items& before, const Items& after);

/// For people: a line an item.
std::string summary(const Items& before, const Items& after);

/// The items of a store that no program has open, which must be sound.
Items itemsNow(const std::filesystem::path& store);
inline std::filesystem::path storeOf(const Program& program) {
    return program.store() / "store.sqlite";
}

/// The items of a closed store as they stand behind each commit that `act` makes in another process, in order, those of the beginning first. They are read from
/// the store's log, cut off behind each commit, so that nothing that is saved on the way can be missed.
std::vector<Items> savedStates(const std::filesystem::path& store, const std::function<void()>& act);

/// Those of a command that comes to its end.
std::vector<Items> savedStates(const Program& program, const CommandUnderTest& command, std::uint32_t round);

}  // namespace lorvane::crash
