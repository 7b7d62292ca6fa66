#include "model/AttachmentObjects.h"

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

constexpr std::int32_t attachmentClass = 5, attachmentsClass = 18;
constexpr std::int32_t byValue = 1;
constexpr std::uint32_t displayNameTag = 0x3001001F, longFileNameTag = 0x3707001F, fileNameTag = 0x3704001F, dataTag = 0x37010102, positionTag = 0x370B0003,
                        methodTag = 0x37050003;

class AttachmentObject final : public ModelObject {
public:
    AttachmentObject(std::shared_ptr<ItemState> item, ItemState::Attachment attachment, Access access)
        : ModelObject(item->sharedCore()), item_(std::move(item)), attachment_(std::move(attachment)), access_(access) {}

    std::u16string_view className() const noexcept override { return u"Attachment"; }
    const void* identity() const noexcept override { return attachment_.get(); }

    void put(Member member, const Variant& value, host::Args args) override {
        item_->requireAlive();
        if (member == Member::DisplayName) {
            item_->touch();
            attachment_->displayName = value.toText();
        } else if (member == Member::Fields && access_ == Access::Safe) {
            setField(static_cast<std::uint32_t>(host::requiredArgument(args, 0).toInt32()), value);
        } else {
            raiseUnknown(member);
        }
    }

protected:
    Variant use(Member member, host::Args args) override {
        item_->requireAlive();
        switch (member) {
            case Member::FileName:
                return attachment_->fileName;
            case Member::DisplayName:
                return attachment_->displayName;
            case Member::Type:
                return attachment_->type;
            case Member::Class:
                return attachmentClass;
            case member::Position: {
                const auto position = attachment_->properties.find(positionTag);
                return position == attachment_->properties.end() ? Variant(std::int32_t{0}) : toVariant(position->second);
            }
            case Member::SaveAsFile:
                core().savedFiles.write(host::requiredArgument(args, 0).toText(), *attachment_);
                return {};
            case Member::Delete:
                std::erase(item_->changedAttachments(), attachment_);
                return {};
            case Member::Fields:
                if (access_ != Access::Safe) raiseUnknown(member);
                return field(static_cast<std::uint32_t>(host::requiredArgument(args, 0).toInt32()));
            default:
                raiseUnknown(member);
        }
    }

private:
    static Variant textOrEmpty(const std::u16string& text) { return text.empty() ? Variant() : Variant(text); }

    Variant field(std::uint32_t tag) const {
        switch (mailstore::canonicalTag(tag)) {
            case tags::AttachContentId:
                return textOrEmpty(attachment_->contentId);
            case tags::AttachMimeTag:
                return textOrEmpty(attachment_->mimeType);
            case displayNameTag:
                return textOrEmpty(attachment_->displayName);
            case longFileNameTag:
            case fileNameTag:
                return textOrEmpty(attachment_->fileName);
            case methodTag:
                return attachment_->type;
            case dataTag:
                return attachment_->data ? Variant(*attachment_->data) : Variant();
            default:
                break;
        }
        const auto found = attachment_->properties.find(mailstore::canonicalTag(tag));
        return found == attachment_->properties.end() ? Variant() : toVariant(found->second);
    }

    void setField(std::uint32_t tag, const Variant& value) {
        const bool none = value.isEmpty() || value.isNull();
        item_->touch();
        switch (mailstore::canonicalTag(tag)) {
            case tags::AttachContentId:
                attachment_->contentId = none ? std::u16string() : value.toText();
                return;
            case tags::AttachMimeTag:
                attachment_->mimeType = none ? std::u16string() : value.toText();
                return;
            case displayNameTag:
                attachment_->displayName = value.toText();
                return;
            case longFileNameTag:
            case fileNameTag:
                attachment_->fileName = value.toText();
                return;
            case dataTag:
                attachment_->data = std::make_shared<const mailstore::Bytes>(value.toBytes());
                return;
            default:
                break;
        }
        if (none) {
            attachment_->properties.erase(mailstore::canonicalTag(tag));
        } else {
            attachment_->properties.insert_or_assign(mailstore::canonicalTag(tag), toProperty(tag, value));
        }
    }

    std::shared_ptr<ItemState> item_;
    ItemState::Attachment attachment_;
    Access access_;
};

class AttachmentsObject final : public ModelObject {
public:
    AttachmentsObject(std::shared_ptr<ItemState> item, Access access) : ModelObject(item->sharedCore()), item_(std::move(item)), access_(access) {}

    std::u16string_view className() const noexcept override { return u"Attachments"; }

    Variant at(const Variant& index) const {
        const auto& all = item_->attachments();
        if (index.kind() == Variant::Kind::Text) {
            for (const auto& attachment : all) {
                if (host::equalsIgnoreCase(attachment->displayName, index.text())) return object(attachment);
            }
            raiseNotFound();
        }
        return object(all[indexFrom(index, all.size())]);
    }

protected:
    Variant use(Member member, host::Args args) override {
        item_->requireAlive();
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(item_->attachments().size());
            case Member::Class:
                return attachmentsClass;
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Add:
                return add(args);
            case member::Remove: {
                const std::size_t index = indexFrom(host::requiredArgument(args, 0), item_->attachments().size());
                auto& all = item_->changedAttachments();
                all.erase(all.begin() + static_cast<std::ptrdiff_t>(index));
                return {};
            }
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object object(const ItemState::Attachment& attachment) const { return host::makeObject<AttachmentObject>(item_, attachment, access_); }

    Variant add(host::Args args) {
        const Variant& source = host::requiredArgument(args, 0);
        if (source.kind() != Variant::Kind::Text) raiseInvalidArgument(u"An attachment is added from a file's path.");
        const Variant& type = host::argumentAt(args, 1);
        if (!type.isMissing() && type.toInt32() != byValue) raiseInvalidArgument(u"A file is attached by value (1).");
        auto attachment = std::make_shared<mailstore::AttachmentRecord>(core().savedFiles.read(source.text()));
        attachment->type = byValue;
        if (const Variant& position = host::argumentAt(args, 2); !position.isMissing()) attachment->properties.emplace(positionTag, position.toInt32());
        if (const Variant& name = host::argumentAt(args, 3); !name.isMissing() && !name.toText().empty()) attachment->displayName = name.toText();
        item_->changedAttachments().push_back(attachment);
        return object(attachment);
    }

    std::shared_ptr<ItemState> item_;
    Access access_;
};

}  // namespace

host::Object makeAttachments(const std::shared_ptr<ItemState>& item, Access access, host::Args args) {
    host::Object attachments = host::makeObject<AttachmentsObject>(item, access);
    return args.empty() ? attachments : host::implementation<AttachmentsObject>(attachments)->at(args[0].value()).toObject();
}

}  // namespace lorvane::model
