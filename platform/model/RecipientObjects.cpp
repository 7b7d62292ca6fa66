#include "model/RecipientObjects.h"

#include <optional>

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ModelMembers.h"
#include "model/PropertyAccess.h"

namespace lorvane::model {

using host::Member;
using host::Variant;
namespace tags = mailstore::tags;

namespace {

constexpr std::int32_t addressEntryClass = 8, recipientClass = 4, recipientsClass = 17;
constexpr std::uint32_t displayNameTag = 0x3001001F, addressTypeTag = 0x3002001F, addressTag = 0x3003001F;

class AddressEntryObject final : public ModelObject {
public:
    AddressEntryObject(std::shared_ptr<HostCore> core, Access access, std::u16string name, std::u16string address, std::u16string type)
        : ModelObject(std::move(core)), access_(access), name_(std::move(name)), address_(std::move(address)), type_(std::move(type)) {
        if (const Contact* contact = this->core().addressBook.findByAddress(address_)) contact_ = *contact;
    }

    std::u16string_view className() const noexcept override { return u"AddressEntry"; }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Name:
                return name_;
            case Member::Address:
                return address_;
            case Member::Type:
                return type_;
            case Member::SMTPAddress:
                requireSafe(member);
                return smtpAddress();
            case Member::Class:
                return addressEntryClass;
            case Member::Fields:
                requireSafe(member);
                return field(static_cast<std::uint32_t>(host::requiredArgument(args, 0).toInt32()));
            default:
                raiseUnknown(member);
        }
    }

private:
    void requireSafe(Member member) const {
        if (access_ != Access::Safe) raiseUnknown(member);
    }

    std::u16string smtpAddress() const {
        if (host::equalsIgnoreCase(type_, u"SMTP")) return address_;
        return contact_ ? smtpAddressOf(*contact_) : std::u16string();
    }

    static Variant textOrEmpty(const std::u16string& text) { return text.empty() ? Variant() : Variant(text); }

    Variant field(std::uint32_t tag) const {
        switch (mailstore::canonicalTag(tag)) {
            case displayNameTag:
                return textOrEmpty(name_);
            case addressTypeTag:
                return textOrEmpty(type_);
            case addressTag:
                return textOrEmpty(address_);
            case tags::SmtpAddress:
                return textOrEmpty(smtpAddress());
            default:
                return contact_ ? contactField(*contact_, tag) : Variant();
        }
    }

    static Variant contactField(const Contact& contact, std::uint32_t tag) {
        switch (mailstore::canonicalTag(tag)) {
            case tags::NamePrefix:
                return textOrEmpty(contact.prefix);
            case tags::GivenName:
                return textOrEmpty(contact.given);
            case tags::MiddleName:
                return textOrEmpty(contact.middle);
            case tags::Surname:
                return textOrEmpty(contact.surname);
            case tags::Generation:
                return textOrEmpty(contact.generation);
            case tags::ProxyAddresses:
                return contact.proxies.empty() ? Variant() : toVariant(contact.proxies);
            default:
                return {};
        }
    }

    Access access_;
    std::u16string name_, address_, type_;
    std::optional<Contact> contact_;
};

class RecipientObject final : public ModelObject {
public:
    RecipientObject(std::shared_ptr<ItemState> item, Access access, ItemState::Recipient recipient)
        : ModelObject(item->sharedCore()), item_(std::move(item)), access_(access), recipient_(std::move(recipient)) {}

    std::u16string_view className() const noexcept override { return u"Recipient"; }
    const void* identity() const noexcept override { return recipient_.get(); }

    void put(Member member, const Variant& value, host::Args) override {
        item_->requireAlive();
        if (member != Member::Type) raiseUnknown(member);
        const std::int32_t type = value.toInt32();
        if (type < 1 || type > 3) raiseInvalidArgument(u"A recipient's type is 1, 2 or 3.");
        item_->setRecipientType(*recipient_, type);
    }

protected:
    Variant use(Member member, host::Args) override {
        item_->requireAlive();
        switch (member) {
            case Member::Name:
                return shownName(*recipient_);
            case Member::Address:
                return recipient_->address;
            case Member::Type:
                return recipient_->type;
            case Member::Resolved:
                return recipient_->resolved;
            case Member::Class:
                return recipientClass;
            case Member::AddressEntry:
                if (!recipient_->resolved) return host::Object();
                return makeAddressEntry(sharedCore(), access_, shownName(*recipient_), recipient_->address, recipient_->addressType);
            case member::Resolve:
                return item_->resolve(*recipient_);
            case Member::Delete:
                item_->removeRecipient(recipient_);
                return {};
            default:
                raiseUnknown(member);
        }
    }

private:
    std::shared_ptr<ItemState> item_;
    Access access_;
    ItemState::Recipient recipient_;
};

class RecipientsObject final : public ModelObject {
public:
    RecipientsObject(std::shared_ptr<ItemState> item, Access access) : ModelObject(item->sharedCore()), item_(std::move(item)), access_(access) {}

    std::u16string_view className() const noexcept override { return u"Recipients"; }

    Variant at(const Variant& index) const {
        const auto& all = item_->recipients();
        if (index.kind() == Variant::Kind::Text) {
            for (const auto& recipient : all) {
                if (host::equalsIgnoreCase(shownName(*recipient), index.text())) return host::makeObject<RecipientObject>(item_, access_, recipient);
            }
            raiseNotFound();
        }
        return host::makeObject<RecipientObject>(item_, access_, all[indexFrom(index, all.size())]);
    }

protected:
    Variant use(Member member, host::Args args) override {
        item_->requireAlive();
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(item_->recipients().size());
            case Member::Class:
                return recipientsClass;
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                return add(host::requiredArgument(args, 0).toText());
            case Member::ResolveAll:
                return item_->resolveAll();
            default:
                raiseUnknown(member);
        }
    }

private:
    Variant add(std::u16string_view name) {
        if (item_->head().itemClass == postClass) raiseFailed(u"A post has no recipients.");
        return host::makeObject<RecipientObject>(item_, access_, item_->addRecipient(name, 1));
    }

    static constexpr std::int32_t postClass = 45;
    std::shared_ptr<ItemState> item_;
    Access access_;
};

}  // namespace

host::Object makeRecipients(const std::shared_ptr<ItemState>& item, Access access, host::Args args) {
    host::Object recipients = host::makeObject<RecipientsObject>(item, access);
    return args.empty() ? recipients : host::implementation<RecipientsObject>(recipients)->at(args[0].value()).toObject();
}

host::Object makeAddressEntry(std::shared_ptr<HostCore> core, Access access, std::u16string name, std::u16string address, std::u16string type) {
    return host::makeObject<AddressEntryObject>(std::move(core), access, std::move(name), std::move(address), std::move(type));
}

}  // namespace lorvane::model
