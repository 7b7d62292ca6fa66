#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/HostError.h"

namespace lorvane::host {

/// The wrappers of one kind of window, in the order they came, each under its key. It alone keeps a wrapper for long.
template <class Wrapper>
class WrapperCollection {
public:
    using Held = std::shared_ptr<Wrapper>;

    std::int32_t Count() const noexcept { return static_cast<std::int32_t>(entries_.size()); }
    /// Error 457 where the key is in use.
    void Add(Held wrapper, std::u16string_view key) {
        if (find(key) != entries_.end()) throw HostError(keyInUse, u"This key is already associated with an element of this collection");
        entries_.emplace_back(key, std::move(wrapper));
    }
    /// Error 5 where there is none.
    Held Item(std::u16string_view key) const {
        const auto found = find(key);
        if (found == entries_.end()) throw HostError(runtime_error::InvalidProcedureCall);
        return found->second;
    }
    /// Error 5 where there is none. The wrapper ends when nobody else holds it.
    void Remove(std::u16string_view key) {
        const auto found = find(key);
        if (found == entries_.end()) throw HostError(runtime_error::InvalidProcedureCall);
        const Held last = found->second;  // it goes when the list is whole again
        entries_.erase(found);
    }
    /// Lets all go at once.
    void clear() noexcept { std::exchange(entries_, {}); }
    /// A copy, for walks in which wrappers may go.
    std::vector<Held> all() const {
        std::vector<Held> held;
        for (const auto& [key, wrapper] : entries_) held.push_back(wrapper);
        return held;
    }

    static constexpr std::int32_t keyInUse = 457;

private:
    using Entries = std::vector<std::pair<std::u16string, Held>>;
    typename Entries::const_iterator find(std::u16string_view key) const {
        return std::find_if(entries_.begin(), entries_.end(), [key](const auto& entry) { return entry.first == key; });
    }
    Entries entries_;
};

}  // namespace lorvane::host
