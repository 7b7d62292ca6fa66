#include "crash/DoorPlan.h"

#include <algorithm>
#include <functional>

namespace lorvane::crash {

using mailstore::test::PlacedItem;

namespace {

std::string numberOf(std::string_view bytes) {
    return " #" + std::to_string(std::hash<std::string_view>()(bytes));
}

}  // namespace

std::string knownOf(const PlacedItem& item) {
    constexpr std::size_t readable = 160;
    std::string known = mailstore::test::lineOf(item);
    if (known.size() > readable) known = known.substr(0, readable) + numberOf(known);
    for (const mailstore::AttachmentRecord& attachment : item.record.attachments) {
        if (attachment.data) known += numberOf({reinterpret_cast<const char*>(attachment.data->data()), attachment.data->size()});
    }
    return known;
}

std::vector<std::string> knownOf(const Items& items) {
    std::vector<std::string> known;
    for (const PlacedItem& item : items) known.push_back(knownOf(item));
    std::ranges::sort(known);
    return known;
}

Json reference(DoorPlan::Object object) {
    return {{"$obj", object.number}};
}

DoorPlan::DoorPlan(const Items& before) {
    for (const PlacedItem& item : before) {
        items_.emplace(lastItem_, item);
        known_.emplace(lastItem_++, knownOf(item));
    }
    save();
}

DoorPlan::Object DoorPlan::root(std::string_view name) {
    ask("root", {{"name", name}}, true);
    return {objects_};
}

DoorPlan::Object DoorPlan::objectOf(std::string_view method, Object of, std::string_view member, Json args) {
    ask(method, {{"obj", of.number}, {"member", member}, {"args", std::move(args)}}, true);
    return {objects_};
}

void DoorPlan::call(Object of, std::string_view member, Json args) {
    ask("call", {{"obj", of.number}, {"member", member}, {"args", std::move(args)}}, false);
}

void DoorPlan::put(Object of, std::string_view member, std::string_view value) {
    ask("put", {{"obj", of.number}, {"member", member}, {"value", value}}, false);
}

void DoorPlan::ask(std::string_view method, Json params, bool givesObject) {
    const Json message = {{"jsonrpc", "2.0"}, {"id", requests_.size() + 1}, {"method", method}, {"params", std::move(params)}};
    requests_.push_back({message.dump() + "\n", givesObject ? ++objects_ : 0});
}

std::size_t DoorPlan::add(PlacedItem item) {
    const std::size_t number = lastItem_++;
    change(number, std::move(item));
    return number;
}

void DoorPlan::change(std::size_t item, PlacedItem now) {
    touched_.insert(item);
    known_.insert_or_assign(item, knownOf(now));
    items_.insert_or_assign(item, std::move(now));
    save();
}

void DoorPlan::remove(std::size_t item) {
    touched_.insert(item);
    known_.erase(item);
    items_.erase(item);
    save();
}

void DoorPlan::save() {
    State state{requests_.size(), {}};
    for (const auto& [number, known] : known_) state.items.push_back(known);
    std::ranges::sort(state.items);
    states_.push_back(std::move(state));
}

std::span<const DoorPlan::State> DoorPlan::statesBetween(std::size_t answered, std::size_t sent) const {
    const auto behind = [this](std::size_t request) { return std::ranges::upper_bound(states_, request, {}, &State::request); };
    return {behind(answered) - 1, behind(sent)};
}

}  // namespace lorvane::crash
