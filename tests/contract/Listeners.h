#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "contract/HostFixture.h"

namespace lorvane::contract {

/// Notes the events of one object by name, and does what a test lays down for one.
class Listener final : public EventSink {
public:
    explicit Listener(const Object& source) : source_(source) {}
    void onEvent(Member event, Args args) override {
        const std::u16string name(source_.dispatch()->memberText(event));
        log.push_back(name);
        if (const auto reaction = reactions.find(name); reaction != reactions.end()) reaction->second(args);
    }
    std::size_t count(std::u16string_view name) const { return static_cast<std::size_t>(std::ranges::count(log, name)); }

    std::vector<std::u16string> log;
    std::map<std::u16string, std::function<void(Args)>> reactions;

private:
    Object source_;
};

struct Connected {
    explicit Connected(const Object& source) : listener(std::make_shared<Listener>(source)), subscription(source.advise(listener)) {}
    std::shared_ptr<Listener> listener;
    Subscription subscription;
};

}  // namespace lorvane::contract
