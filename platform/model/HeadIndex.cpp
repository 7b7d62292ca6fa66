#include "model/HeadIndex.h"

#include <bit>
#include <cstring>
#include <functional>
#include <utility>

namespace lorvane::model {

namespace {

std::uint32_t hashOf(std::u16string_view entryId) noexcept {
    return static_cast<std::uint32_t>(std::hash<std::u16string_view>{}(entryId));
}

// The comparison of character strings goes unit by unit.
bool isSame(std::u16string_view a, std::u16string_view b) noexcept {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

}  // namespace

void HeadIndex::clear() noexcept {
    lists_.clear();
    slots_ = {};
    used_ = 0;
}

/// The one with the identity, else the free one where it belongs. There is always a free one.
const HeadIndex::Slot* HeadIndex::slotOf(std::uint32_t hash, std::u16string_view entryId) const {
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].list != none && !(slots_[at].hash == hash && isSame(lists_[slots_[at].list]->items[slots_[at].index].entryId, entryId))) {
        at = (at + 1) & (slots_.size() - 1);
    }
    return &slots_[at];
}

void HeadIndex::makeRoom(std::size_t more) {
    const std::size_t wanted = std::bit_ceil(2 * (used_ + more) + 1);
    if (wanted <= slots_.size()) return;
    const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(wanted));
    for (const Slot& slot : before) {
        if (slot.list == none) continue;
        std::size_t at = slot.hash & (slots_.size() - 1);
        while (slots_[at].list != none) at = (at + 1) & (slots_.size() - 1);
        slots_[at] = slot;
    }
}

void HeadIndex::add(const std::shared_ptr<const FolderHeads>& list) {
    makeRoom(list->items.size());
    lists_.push_back(list);
    for (std::size_t i = 0; i < list->items.size(); ++i) {
        const std::u16string& entryId = list->items[i].entryId;
        const std::uint32_t hash = hashOf(entryId);
        Slot& slot = slots_[static_cast<std::size_t>(slotOf(hash, entryId) - slots_.data())];
        if (slot.list == none) ++used_;
        slot = {hash, static_cast<std::uint32_t>(lists_.size() - 1), static_cast<std::uint32_t>(i)};
    }
}

ListedHead HeadIndex::find(std::u16string_view entryId) const {
    if (used_ == 0) return {};
    const Slot* const slot = slotOf(hashOf(entryId), entryId);
    return slot->list == none ? ListedHead{} : ListedHead{lists_[slot->list], slot->index};
}

}  // namespace lorvane::model
