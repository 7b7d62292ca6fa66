#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "mailstore/MailStore.h"

namespace lorvane::mailstore::test {

/// One way to keep a store; every way must behave the same.
class StoreUnderTest {
public:
    virtual ~StoreUnderTest() = default;
    virtual MailStore& store() = 0;
    virtual SettingsStore& settings() = 0;
};

/// A way to keep stores, by the name it has in the tests' names.
struct StoreWay {
    std::string name;
    std::function<std::unique_ptr<StoreUnderTest>(std::u16string storeName, std::int32_t kind)> make;
};

/// In memory; in a file; in a file that two programs have open and use in turn, changes counted by a third.
std::vector<StoreWay> lastingWays();
/// These, and a file that is closed and opened again before each use: what a function did is there in the next run. Its changes cannot be counted.
std::vector<StoreWay> storeWays();

}  // namespace lorvane::mailstore::test
