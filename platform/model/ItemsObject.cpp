#include <algorithm>
#include <numeric>

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/FolderObjects.h"
#include "model/HostCore.h"
#include "model/ItemMembers.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t itemsClass = 16;

/// "[Subject]" or "Subject".
std::u16string_view withoutBrackets(std::u16string_view property) noexcept {
    return property.size() >= 2 && property.front() == u'[' && property.back() == u']' ? property.substr(1, property.size() - 2) : property;
}

/// Empty values come first; texts compare without regard to case.
int compareValues(const Variant& a, const Variant& b) {
    if (a.isEmpty() || b.isEmpty()) return (b.isEmpty() ? 1 : 0) - (a.isEmpty() ? 1 : 0);
    if (a.kind() == Variant::Kind::Text || b.kind() == Variant::Kind::Text) return host::StrComp(a.toText(), b.toText(), host::Compare::IgnoreCase);
    const double left = a.kind() == Variant::Kind::Date ? a.toDate().days : a.toDouble();
    const double right = b.kind() == Variant::Kind::Date ? b.toDate().days : b.toDouble();
    return left < right ? -1 : (left > right ? 1 : 0);
}

class ItemsObject final : public ModelObject {
public:
    ItemsObject(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord folder)
        : ModelObject(std::move(core)), store_(std::move(store)), folder_(std::move(folder)) {}

    std::u16string_view className() const noexcept override { return u"Items"; }

    Variant at(const Variant& index) {
        const FolderHeads& all = heads();
        if (index.kind() == Variant::Kind::Text) {
            const auto found = std::ranges::find_if(all.items, [&index](const auto& head) { return host::equalsIgnoreCase(head.subject, index.text()); });
            if (found == all.items.end()) raiseNotFound();
            return item(found->entryId);
        }
        const std::size_t position = indexFrom(index, all.items.size());
        return item(all.items[order_.empty() ? position : order_[position]].entryId);
    }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(heads().items.size());
            case Member::Class:
                return itemsClass;
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                return add(host::argumentAt(args, 0));
            case Member::Sort:
                sort(host::requiredArgument(args, 0).toText(), host::argumentAt(args, 1));
                return {};
            default:
                raiseUnknown(member);
        }
    }

private:
    const FolderHeads& heads() {
        store_->requireRead(folder_.entryId);
        auto current = store_->heads(folder_.entryId);
        if (current != heads_) {
            heads_ = std::move(current);
            arrange();
        }
        return *heads_;
    }

    host::Object item(std::u16string_view entryId) const { return makeItem(core().itemFromId(entryId, store_->id())); }

    host::Object add(const Variant& type) {
        store_->requireCreate(folder_.entryId);
        std::u16string messageClass = folder_.defaultMessageClass;
        if (type.kind() == Variant::Kind::Text) {
            messageClass = type.text();
        } else if (!type.isMissing()) {
            messageClass = messageClassOfType(type.toInt32());
        }
        auto record = freshRecord(itemClassOf(messageClass), messageClass, core().now());
        return makeItem(std::make_shared<ItemState>(sharedCore(), store_, folder_.entryId, std::move(record)));
    }

    void sort(std::u16string_view property, const Variant& descending) {
        const auto member = findModelMember(withoutBrackets(property));
        if (!member) raiseInvalidArgument(u"Items cannot be sorted by the property \"" + std::u16string(property) + u"\".");
        sortBy_ = *member;
        descending_ = !descending.isMissing() && descending.toBoolean();
        heads_ = nullptr;
        heads();
    }

    Variant sortKey(const mailstore::ItemHead& head) const {
        switch (sortBy_) {
            case Member::Subject:
                return head.subject;
            case Member::Categories:
                return head.categories;
            case Member::MessageClass:
                return head.messageClass;
            case Member::EntryID:
                return head.entryId;
            default:
                break;
        }
        const auto state = core().itemFromId(head.entryId, store_->id());
        return hasItemMember(*state, sortBy_, Access::Bare) ? useItem(state, sortBy_, {}, Access::Bare, itemClassName(head.itemClass)) : Variant();
    }

    void arrange() {
        order_.clear();
        if (sortBy_ == Member::None) return;
        std::vector<Variant> keys;
        keys.reserve(heads_->items.size());
        for (const auto& head : heads_->items) keys.push_back(sortKey(head));
        order_.resize(keys.size());
        std::iota(order_.begin(), order_.end(), std::size_t{0});
        std::ranges::stable_sort(order_, [&](std::size_t a, std::size_t b) {
            const int order = compareValues(keys[a], keys[b]);
            return descending_ ? order > 0 : order < 0;
        });
    }

    std::shared_ptr<OpenStore> store_;
    mailstore::FolderRecord folder_;
    std::shared_ptr<const FolderHeads> heads_;
    std::vector<std::size_t> order_;
    Member sortBy_ = Member::None;
    bool descending_ = false;
};

}  // namespace

host::Object makeItems(std::shared_ptr<HostCore> core, std::shared_ptr<OpenStore> store, mailstore::FolderRecord folder, host::Args args) {
    host::Object items = host::makeObject<ItemsObject>(std::move(core), std::move(store), std::move(folder));
    return args.empty() ? items : host::implementation<ItemsObject>(items)->at(args[0].value()).toObject();
}

}  // namespace lorvane::model
