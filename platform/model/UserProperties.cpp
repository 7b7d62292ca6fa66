#include "model/UserProperties.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ModelMembers.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t textType = 1, propertyClass = 39, propertiesClass = 38;

class UserPropertyObject final : public ModelObject {
public:
    UserPropertyObject(std::shared_ptr<ItemState> item, std::u16string name)
        : ModelObject(item->sharedCore()), item_(std::move(item)), name_(std::move(name)) {}

    std::u16string_view className() const noexcept override { return u"UserProperty"; }

    void put(Member member, const Variant& value, host::Args) override {
        item_->requireAlive();
        if (member != Member::Value) raiseUnknown(member);
        item_->changed().userProperties.insert_or_assign(name_, value.toText());
    }

protected:
    Variant use(Member member, host::Args) override {
        item_->requireAlive();
        switch (member) {
            case Member::Name:
                return name_;
            case Member::Value: {
                const auto found = item_->record().userProperties.find(name_);
                if (found == item_->record().userProperties.end()) raiseNotFound();
                return found->second;
            }
            case Member::Type:
                return textType;
            case Member::Class:
                return propertyClass;
            case Member::Delete:
                item_->changed().userProperties.erase(name_);
                return {};
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<ItemState> item_;
    std::u16string name_;
};

class UserPropertiesObject final : public ModelObject {
public:
    explicit UserPropertiesObject(std::shared_ptr<ItemState> item) : ModelObject(item->sharedCore()), item_(std::move(item)) {}

    std::u16string_view className() const noexcept override { return u"UserProperties"; }

    /// Nothing for a name that no field has.
    host::Object at(const Variant& index) const {
        const auto& all = item_->record().userProperties;
        auto found = all.begin();
        if (index.kind() == Variant::Kind::Text) {
            found = std::ranges::find_if(all, [&index](const auto& field) { return host::equalsIgnoreCase(field.first, index.text()); });
        } else {
            std::advance(found, static_cast<std::ptrdiff_t>(indexFrom(index, all.size())));
        }
        return found == all.end() ? host::Object() : host::makeObject<UserPropertyObject>(item_, found->first);
    }

protected:
    Variant use(Member member, host::Args args) override {
        item_->requireAlive();
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(item_->record().userProperties.size());
            case Member::Class:
                return propertiesClass;
            case Member::Item:
            case member::Find:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                return add(args);
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object add(host::Args args) {
        std::u16string name = host::requiredArgument(args, 0).toText();
        if (name.empty()) raiseInvalidArgument(u"A field needs a name.");
        if (const Variant& type = host::argumentAt(args, 1); !type.isMissing() && type.toInt32() != textType) {
            raiseInvalidArgument(u"Only text fields (1) can be added.");
        }
        if (host::Object known = at(name)) return known;
        item_->changed().userProperties.emplace(name, std::u16string());
        return host::makeObject<UserPropertyObject>(item_, std::move(name));
    }

    std::shared_ptr<ItemState> item_;
};

}  // namespace

host::Object makeUserProperties(const std::shared_ptr<ItemState>& item, host::Args args) {
    host::Object properties = host::makeObject<UserPropertiesObject>(item);
    return args.empty() ? properties : host::implementation<UserPropertiesObject>(properties)->at(args[0].value());
}

}  // namespace lorvane::model
