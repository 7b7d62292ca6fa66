#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "mailstore/MailStore.h"

namespace lorvane::model {

/// The heads of a folder's items as they stood at one change count.
struct FolderHeads {
    std::u16string folderId;
    std::vector<mailstore::ItemHead> items;
};

/// A head in its folder's list, which it keeps; Nothing where there is no list.
struct ListedHead {
    std::shared_ptr<const FolderHeads> list;
    std::size_t index = 0;

    explicit operator bool() const noexcept { return list != nullptr; }
    const mailstore::ItemHead& head() const noexcept { return list->items[index]; }
    const std::u16string& folderId() const noexcept { return list->folderId; }
};

/// Where the heads of lists lie, by the identity of their items: a table with open addressing, at most half full.
class HeadIndex {
public:
    /// Of two heads with one identity the later one counts.
    void add(const std::shared_ptr<const FolderHeads>& list);
    /// Nothing where no list has the identity.
    ListedHead find(std::u16string_view entryId) const;
    void clear() noexcept;

private:
    static constexpr std::uint32_t none = UINT32_MAX;
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t list = none;
        std::uint32_t index = 0;
    };

    const Slot* slotOf(std::uint32_t hash, std::u16string_view entryId) const;
    void makeRoom(std::size_t more);

    std::vector<std::shared_ptr<const FolderHeads>> lists_;
    std::vector<Slot> slots_;
    std::size_t used_ = 0;
};

}  // namespace lorvane::model
