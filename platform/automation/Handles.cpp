#include "automation/Handles.h"

#include <utility>

#include "automation/Rpc.h"

namespace lorvane::automation {

/// Names each event by its object, which may be gone when another one of it comes.
class Handles::Sink final : public host::EventSink {
public:
    Sink(host::Object object, Number number, Tell tell) : object_(std::move(object)), number_(number), tell_(std::move(tell)) {}

    void onEvent(host::Member event, host::Args args) override { tell_(number_, object_.dispatch()->memberText(event), args); }

private:
    host::Object object_;
    Number number_;
    Tell tell_;
};

Handles::Number Handles::numberOf(const host::Object& object) {
    const auto [known, isNew] = numbers_.try_emplace(object.dispatch()->identity(), last_ + 1);
    if (isNew) entries_.emplace(++last_, Entry{object});
    return known->second;
}

const Handles::Entry& Handles::entryAt(Number number) const {
    const auto entry = entries_.find(number);
    if (entry != entries_.end()) return entry->second;
    const bool wasThere = number > 0 && number <= last_;
    throw RpcError(rpc_code::InvalidParams, "there is no object " + std::to_string(number) + (wasThere ? " any more: it was released" : ""));
}

host::Object Handles::at(Number number) const {
    return entryAt(number).object;
}

void Handles::release(Number number) {
    entryAt(number);
    // What ends with the object may look handles up, so they are in order before.
    const Entry released = std::move(entries_.extract(number).mapped());
    numbers_.erase(released.object.dispatch()->identity());
}

void Handles::clear() noexcept {
    numbers_.clear();
    const std::map<Number, Entry> released = std::exchange(entries_, {});
}

void Handles::advise(Number number, Tell tell) {
    const host::Object object = entryAt(number).object;
    auto sink = std::make_shared<Sink>(object, number, std::move(tell));
    host::Subscription events = object.advise(sink);
    Entry& entry = entries_.at(number);
    entry.events = std::move(events);
    entry.sink = std::move(sink);
}

}  // namespace lorvane::automation
