#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lorvane::mailstore {

/// The identity of a store, made once with it.
using StoreId = std::array<std::uint8_t, 16>;

/// A store id from the machine's source of randomness.
StoreId randomStoreId();
/// 32 upper-case hexadecimal digits.
std::u16string toHexadecimal(const StoreId& id);

/// The identities of one store's folders and items: half the store's id, then a number that the store gives once and never again. Both kinds of store use it,
/// so that an identity looks alike wherever it comes from and no two stores share one.
class EntryIds {
public:
    explicit EntryIds(const StoreId& store);

    /// The identity of entry `number`: 32 upper-case hexadecimal digits.
    std::u16string format(std::int64_t number) const;
    /// The number behind an identity, in either case of letters; nothing for text that is none or belongs to another store.
    std::optional<std::int64_t> parse(std::u16string_view entryId) const;

private:
    std::u16string prefix_;
};

}  // namespace lorvane::mailstore
