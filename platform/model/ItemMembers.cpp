#include "model/ItemMembers.h"

#include <array>

#include "model/ApplicationObjects.h"
#include "model/AttachmentObjects.h"
#include "model/Failures.h"
#include "model/FolderObjects.h"
#include "model/HostCore.h"
#include "model/InspectorObject.h"
#include "model/ItemAnswers.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"
#include "model/RecipientObjects.h"
#include "model/UserProperties.h"

namespace lorvane::model {

using host::Member;
using host::Variant;
namespace tags = mailstore::tags;

namespace {

constexpr std::uint8_t mail = 1, post = 2, appointment = 4, contact = 8, task = 16, other = 32, all = 63, safe = 64;

struct Row {
    Member member;
    std::uint8_t classes;  ///< with `safe`: a wrapper has it whatever the item's class
};

constexpr Row rows[] = {
    {Member::Class, all},
    {Member::MessageClass, all},
    {Member::EntryID, all},
    {Member::Parent, all},
    {Member::Subject, all},
    {Member::Body, all},
    {Member::Categories, all},
    {Member::HTMLBody, mail | post | safe},
    {Member::BodyFormat, mail | post | safe},
    {member::RTFBody, safe},
    {Member::Recipients, mail | appointment | task | safe},
    {Member::Attachments, all},
    {Member::Display, all},
    {Member::Close, all},
    {Member::Save, all},
    {Member::Delete, all},
    {member::Copy, all},
    {Member::Move, all},
    {Member::Reply, mail | post},
    {member::ReplyAll, mail | post},
    {member::Forward, mail | post},
    {Member::GetInspector, all},
    {Member::Application, all},
    {Member::Session, all},
    {Member::To, mail},
    {Member::CC, mail},
    {Member::BCC, mail},
    {Member::Sent, mail | post},
    {Member::SenderName, mail | post},
    {Member::SentOnBehalfOfName, mail | post},
    {member::SentOn, mail | post},
    {member::ReceivedTime, mail | post},
    {member::UnRead, all},
    {member::Saved, all},
    {member::Size, all},
    {member::Mileage, all},
    {member::CreationTime, all},
    {member::LastModificationTime, all},
    {member::Start, appointment},
    {member::End, appointment},
    {member::AllDayEvent, appointment},
    {member::ReminderSet, appointment | task},
    {member::ReminderMinutesBeforeStart, appointment},
    {member::UserProperties, all},
};

constexpr auto classesOf = [] {
    std::array<std::uint8_t, memberIndexCount> table{};
    for (const Row& row : rows) table[memberIndex(row.member)] = row.classes;
    return table;
}();

constexpr std::uint8_t classBit(std::int32_t itemClass) noexcept {
    switch (itemClass) {
        case 43:
            return mail;
        case 45:
            return post;
        case 26:
            return appointment;
        case 40:
            return contact;
        case 48:
            return task;
        default:
            return other;
    }
}

/// The host's way to say "no date".
constexpr host::DateTime noDate{949998.0};

/// Version 10 brought `BodyFormat`; safe wrappers have it with every host.
constexpr int bodyFormatVersion = 10;

std::u16string textProperty(ItemState& item, std::uint32_t tag) {
    return mailstore::textProperty(item.record(), tag);
}

host::DateTime dateProperty(ItemState& item, std::uint32_t tag) {
    const auto* date = mailstore::propertyOf<host::DateTime>(item.record(), tag);
    return date ? *date : noDate;
}

bool boolProperty(ItemState& item, std::uint32_t tag) {
    const auto* flag = mailstore::propertyOf<bool>(item.record(), tag);
    return flag && *flag;
}

std::int32_t numberProperty(ItemState& item, std::uint32_t tag) {
    const auto* number = mailstore::propertyOf<std::int32_t>(item.record(), tag);
    return number ? *number : 0;
}

void setFlag(ItemState& item, std::int32_t flag, bool on) {
    const std::int32_t flags = numberProperty(item, tags::MessageFlags);
    item.setProperty(tags::MessageFlags, on ? flags | flag : flags & ~flag);
}

/// Bytes, roughly as a store counts them.
std::int32_t sizeOf(ItemState& item) {
    std::size_t size = (item.record().body.size() + item.head().subject.size() + item.head().categories.size()) * sizeof(char16_t);
    for (const auto& attachment : item.attachments()) size += attachment->data ? attachment->data->size() : 0;
    return static_cast<std::int32_t>(size);
}

void close(ItemState& item, std::int32_t mode) {
    if (item.inspector) {
        const host::Object window(item.inspector);
        item.inspector->close(mode);
    } else if (mode == 0) {
        item.save();
    } else {
        item.revert();
    }
}

Variant move(const std::shared_ptr<ItemState>& item, host::Args args) {
    const auto* folder = host::implementation<FolderObject>(host::requiredArgument(args, 0).toObject());
    if (!folder) throw host::HostError(host::runtime_error::TypeMismatch);
    return makeItem(item->moveTo(folder->store(), folder->record().entryId));
}

}  // namespace

std::u16string_view itemClassName(std::int32_t itemClass) noexcept {
    switch (itemClass) {
        case 26:
            return u"AppointmentItem";
        case 40:
            return u"ContactItem";
        case 41:
            return u"DocumentItem";
        case 42:
            return u"JournalItem";
        case 44:
            return u"NoteItem";
        case 45:
            return u"PostItem";
        case 48:
            return u"TaskItem";
        case 69:
            return u"DistListItem";
        default:
            return u"MailItem";
    }
}

bool hasItemMember(const ItemState& item, Member member, Access access) noexcept {
    const std::size_t index = memberIndex(member);
    if (index == memberIndexCount) return false;
    const std::uint8_t classes = classesOf[index];
    if (access == Access::Safe) return (classes & (classBit(item.head().itemClass) | safe)) != 0;
    if (member == Member::BodyFormat && item.core().majorVersion() < bodyFormatVersion) return false;
    return (classes & classBit(item.head().itemClass)) != 0;
}

Variant useItem(const std::shared_ptr<ItemState>& item, Member member, host::Args args, Access access, std::u16string_view className) {
    item->requireAlive();
    if (!hasItemMember(*item, member, access)) raiseNoMember(className, member);
    switch (member) {
        case Member::Class:
            return item->head().itemClass;
        case Member::MessageClass:
            return item->head().messageClass;
        case Member::EntryID:
            return item->head().entryId;
        case Member::Subject:
            return item->head().subject;
        case Member::Categories:
            return item->head().categories;
        case Member::Parent:
            return makeFolder(item->sharedCore(), item->store(), item->folderId());
        case Member::Body:
            return item->body();
        case Member::HTMLBody:
            return item->htmlBody();
        case member::RTFBody:
            return item->rtfBody();
        case Member::BodyFormat:
            return item->bodyFormat();
        case Member::To:
            return item->recipientNames(1);
        case Member::CC:
            return item->recipientNames(2);
        case Member::BCC:
            return item->recipientNames(3);
        case Member::Recipients:
            return makeRecipients(item, access, args);
        case Member::Attachments:
            return makeAttachments(item, access, args);
        case member::UserProperties:
            return makeUserProperties(item, args);
        case Member::Sent:
            return (numberProperty(*item, tags::MessageFlags) & mailstore::message_flags::Unsent) == 0;
        case member::UnRead:
            return (numberProperty(*item, tags::MessageFlags) & mailstore::message_flags::Read) == 0;
        case Member::SenderName:
            return textProperty(*item, tags::SenderName);
        case Member::SentOnBehalfOfName:
            return textProperty(*item, tags::SentOnBehalfOfName);
        case member::SentOn:
            return dateProperty(*item, tags::ClientSubmitTime);
        case member::ReceivedTime:
            return dateProperty(*item, tags::DeliveryTime);
        case member::CreationTime:
            return dateProperty(*item, tags::CreationTime);
        case member::LastModificationTime:
            return dateProperty(*item, tags::LastModificationTime);
        case member::Saved:
            return !item->isDirty();
        case member::Size:
            return sizeOf(*item);
        case member::Mileage:
            return textProperty(*item, tags::Mileage);
        case member::Start:
            return dateProperty(*item, tags::Start);
        case member::End:
            return dateProperty(*item, tags::End);
        case member::AllDayEvent:
            return boolProperty(*item, tags::AllDayEvent);
        case member::ReminderSet:
            return boolProperty(*item, tags::ReminderSet);
        case member::ReminderMinutesBeforeStart:
            return numberProperty(*item, tags::ReminderMinutesBeforeStart);
        case Member::GetInspector:
            return inspectorOf(item);
        case Member::Application:
            return makeApplication(item->sharedCore());
        case Member::Session:
            return makeNameSpace(item->sharedCore());
        case Member::Display:
            host::implementation<InspectorObject>(inspectorOf(item))->display();
            return {};
        case Member::Close:
            close(*item, host::requiredArgument(args, 0).toInt32());
            return {};
        case Member::Save:
            item->save();
            return {};
        case Member::Delete:
            item->remove();
            return {};
        case member::Copy:
            return makeItem(item->copy());
        case Member::Move:
            return move(item, args);
        case Member::Reply:
        case member::ReplyAll:
        case member::Forward:
            return answerItem(item, member);
        default:
            raiseNoMember(className, member);
    }
}

void putItem(const std::shared_ptr<ItemState>& item, Member member, const Variant& value, Access access, std::u16string_view className) {
    item->requireAlive();
    if (!hasItemMember(*item, member, access)) raiseNoMember(className, member);
    switch (member) {
        case Member::Subject:
            return item->setSubject(value.toText());
        case Member::Categories:
            return item->setCategories(value.toText());
        case Member::MessageClass:
            item->changed().head.messageClass = value.toText();
            return;
        case Member::Body:
            return item->setBody(value.toText());
        case Member::HTMLBody:
            return item->setHtmlBody(value.toText());
        case member::RTFBody:
            return item->setRtfBody(value.toText());
        case Member::BodyFormat:
            return item->setBodyFormat(value.toInt32());
        case Member::To:
            return item->setRecipientNames(1, value.toText());
        case Member::CC:
            return item->setRecipientNames(2, value.toText());
        case Member::BCC:
            return item->setRecipientNames(3, value.toText());
        case Member::SentOnBehalfOfName:
            return item->setProperty(tags::SentOnBehalfOfName, value.toText());
        case member::UnRead:
            return setFlag(*item, mailstore::message_flags::Read, !value.toBoolean());
        case member::Mileage:
            return item->setProperty(tags::Mileage, value.toText());
        case member::Start:
            return item->setProperty(tags::Start, value.toDate());
        case member::End:
            return item->setProperty(tags::End, value.toDate());
        case member::AllDayEvent:
            return item->setProperty(tags::AllDayEvent, value.toBoolean());
        case member::ReminderSet:
            return item->setProperty(tags::ReminderSet, value.toBoolean());
        case member::ReminderMinutesBeforeStart:
            return item->setProperty(tags::ReminderMinutesBeforeStart, value.toInt32());
        default:
            raiseNoMember(className, member);
    }
}

}  // namespace lorvane::model
