#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "host/Object.h"

namespace lorvane::automation {

/// The objects that a client holds, by number. While one is held the same object has the same number; no number is ever used again.
class Handles {
public:
    using Number = std::int64_t;

    Number numberOf(const host::Object& object);  ///< takes it up where it is not held yet
    host::Object at(Number number) const;         ///< RpcError (InvalidParams) for a number that was never given, or was released
    void release(Number number);                  ///< likewise; its events end
    void clear() noexcept;

    /// The object's events go to `tell` from now on, until it is released; once for each object. HostError where it has none.
    using Tell = std::function<void(Number number, std::u16string_view event, host::Args args)>;
    void advise(Number number, Tell tell);

private:
    class Sink;
    struct Entry {
        host::Object object;
        std::shared_ptr<Sink> sink{};
        host::Subscription events{};
    };
    const Entry& entryAt(Number number) const;

    std::map<Number, Entry> entries_;
    std::unordered_map<const void*, Number> numbers_;  // by identity
    Number last_ = 0;
};

}  // namespace lorvane::automation
