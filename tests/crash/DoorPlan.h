#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "crash/SavedStates.h"

/// What a client of `lorvane serve` asks for, written down before the first request goes out: so the requests can go out without waiting for answers, and it is
/// known what the store may hold at any moment.
namespace lorvane::crash {

using Json = nlohmann::json;

/// What the client determines of an item, and so knows of it: a line, and what is in its files.
std::string knownOf(const mailstore::test::PlacedItem& item);
std::vector<std::string> knownOf(const Items& items);  ///< sorted

class DoorPlan {
public:
    explicit DoorPlan(const Items& before);

    // The requests, in order. An object of the door's has a number that is known before: it counts the objects that it gave.
    struct Object {
        int number = 0;
    };
    Object root(std::string_view name);
    Object objectOf(std::string_view method, Object of, std::string_view member, Json args = Json::array());  ///< `get` or `call` of another object
    void call(Object of, std::string_view member, Json args = Json::array());
    void put(Object of, std::string_view member, std::string_view value);

    struct Request {
        std::string line;  ///< with its end; its id is its place, from 1
        int objectGiven;   ///< the number of the object that its answer is, 0 for none
    };
    const std::vector<Request>& requests() const noexcept { return requests_; }

    // What the last request saves, each by itself.
    std::size_t add(mailstore::test::PlacedItem item);  ///< gives the item's number
    void change(std::size_t item, mailstore::test::PlacedItem now);
    void remove(std::size_t item);

    /// The items by number; those of the beginning have their places there.
    const std::map<std::size_t, mailstore::test::PlacedItem>& items() const noexcept { return items_; }
    /// Of the items of the beginning, whether nothing was done to it.
    bool isUntouched(std::size_t item) const { return !touched_.contains(item); }

    /// What is saved at some moment.
    struct State {
        std::size_t request;  ///< that saves it, from 1; 0 for the beginning
        std::vector<std::string> items;
    };
    const std::vector<State>& states() const noexcept { return states_; }
    /// Those that stand when no request behind `sent` has come, and `answered` and all before it are carried out as far as they do not wait for others.
    std::span<const State> statesBetween(std::size_t answered, std::size_t sent) const;

private:
    void ask(std::string_view method, Json params, bool givesObject);
    void save();

    std::vector<Request> requests_;
    int objects_ = 0;
    std::map<std::size_t, mailstore::test::PlacedItem> items_;
    std::map<std::size_t, std::string> known_;
    std::set<std::size_t> touched_;
    std::size_t lastItem_ = 0;
    std::vector<State> states_;
};

/// How an object stands among arguments.
Json reference(DoorPlan::Object object);

}  // namespace lorvane::crash
