#include "model/ItemAnswers.h"

#include <algorithm>

#include "host/Guards.h"
#include "host/Services.h"
#include "host/TextFunctions.h"
#include "mime/AnswerFields.h"
#include "mime/ContentIds.h"
#include "model/ApplicationObjects.h"
#include "model/Failures.h"
#include "model/HostCore.h"
#include "model/ItemObject.h"
#include "model/ItemText.h"
#include "model/ModelMembers.h"
#include "model/QuotedText.h"

namespace lorvane::model {

using host::Member;
using host::Variant;
using mailstore::BodyKind;
using mailstore::ItemRecord;
using mailstore::RecipientRecord;
namespace tags = mailstore::tags;

namespace {

constexpr std::int32_t mailType = 0, toType = 1, ccType = 2;

/// A draft is neither.
bool wasSentOrReceived(const ItemRecord& item) {
    return !isUnsent(item) || !textProperty(item, tags::ReceivedByName).empty();
}

RecipientRecord senderOf(const ItemRecord& item) {
    return {textProperty(item, tags::SenderName), textProperty(item, tags::SenderAddress), textProperty(item, tags::SenderAddressType)};
}

/// The address that the other programs of the world know; empty where there is none.
std::u16string internetAddress(const AddressBook& book, const RecipientRecord& one) {
    if (one.address.empty() || !host::equalsIgnoreCase(one.addressType, u"EX")) return one.address;
    const Contact* contact = book.findByAddress(one.address);
    return contact ? smtpAddressOf(*contact) : std::u16string();
}

/// Those an answer goes to, each of them once.
class Addressees {
public:
    explicit Addressees(const AddressBook& book) : book_(book) {}

    void add(RecipientRecord one, std::int32_t type) {
        one.type = type;
        if (!one.resolved) resolve(one);
        if (shownName(one).empty()) return;
        const bool known = std::ranges::any_of(all_, [&](const RecipientRecord& other) { return isSame(one, other); });
        if (!known) all_.push_back(std::move(one));
    }
    void remove(const RecipientRecord& whom) {
        std::erase_if(all_, [&](const RecipientRecord& one) { return isSame(one, whom); });
    }

    const std::vector<RecipientRecord>& all() const noexcept { return all_; }

private:
    /// An address that the message names is answered as it is, whatever other ones its owner has.
    void resolve(RecipientRecord& one) const {
        const bool plain = isSmtpAddress(one.address) && (one.addressType.empty() || host::equalsIgnoreCase(one.addressType, u"SMTP"));
        if (!plain) {
            book_.resolve(one);
            return;
        }
        one.addressType = u"SMTP";
        one.resolved = true;
        if (one.name.empty()) one.name = one.address;
    }

    bool isSame(const RecipientRecord& a, const RecipientRecord& b) const {
        const std::u16string first = internetAddress(book_, a), second = internetAddress(book_, b);
        if (!first.empty() || !second.empty()) return host::equalsIgnoreCase(first, second);
        if (!a.address.empty() || !b.address.empty()) return host::equalsIgnoreCase(a.address, b.address);
        return host::equalsIgnoreCase(a.name, b.name);
    }

    const AddressBook& book_;
    std::vector<RecipientRecord> all_;
};

/// To whom its sender wants answers to go.
void addAuthors(const ItemRecord& item, const mime::AnswerFields& fields, Addressees& addressees) {
    const RecipientRecord sender = senderOf(item);
    if (fields.replyTo.empty()) return addressees.add(sender, toType);
    for (const mime::Mailbox& mailbox : fields.replyTo) {
        const bool named = !mailbox.name.empty() || !host::equalsIgnoreCase(mailbox.address, sender.address);
        addressees.add({named ? mailbox.name : sender.name, mailbox.address, u"SMTP"}, toType);
    }
}

std::vector<RecipientRecord> repliedTo(ItemState& item, const mime::AnswerFields& fields, bool all) {
    const HostCore& core = item.core();
    Addressees authors(core.addressBook);
    addAuthors(item.record(), fields, authors);
    if (!all) return authors.all();
    Addressees everybody = authors;
    for (const std::int32_t type : {toType, ccType}) {
        for (const auto& recipient : item.recipients()) {
            if (recipient->type == type) everybody.add(*recipient, type);
        }
    }
    everybody.remove({core.options.accountName, core.options.accountAddress, u"SMTP"});
    // A mail to nobody but oneself.
    return everybody.all().empty() ? authors.all() : everybody.all();
}

/// Long date and long time, as the user's region writes them; empty for an item without a date.
std::u16string sentText(ItemState& item) {
    const auto* moment = mailstore::propertyOf<host::DateTime>(item.record(), tags::ClientSubmitTime);
    if (!moment) moment = mailstore::propertyOf<host::DateTime>(item.record(), tags::DeliveryTime);
    if (!moment) return {};
    const host::Object& region = item.core().options.services.region;
    const host::Locale locale = region ? host::Region(region).locale() : host::knownLocale(u"en-US");
    std::u16string text;
    // A date that no calendar has is none.
    host::ignoringErrors(
        [&] { text = FormatDateTime(*moment, host::DateStyle::LongDate, locale) + u" " + FormatDateTime(*moment, host::DateStyle::LongTime, locale); });
    return text;
}

QuotedHeader headerOf(ItemState& item) {
    const RecipientRecord sender = senderOf(item.record());
    return {sender.name,        internetAddress(item.core().addressBook, sender), sentText(item), item.recipientNames(toType), item.recipientNames(ccType),
            item.head().subject};
}

std::u16string answerSubject(const std::u16string& subject, std::u16string_view mark) {
    if (host::equalsIgnoreCase(std::u16string_view(subject).substr(0, mark.size()), mark)) return subject;
    return std::u16string(mark).append(subject);
}

void quote(ItemState& item, ItemState& answer) {
    const ItemRecord& answered = item.record();
    const bool none = answered.bodyKind == BodyKind::None;
    const BodyKind kind = none ? item.core().newTextKind() : answered.bodyKind;
    const std::u16string source = none ? sourceFromText(kind, u"") : answered.body;
    answer.commitBody(kind, quotedSource(kind, source, quotedBlock(headerOf(item))));
}

/// All attachments, or those alone that the quoted HTML shows.
void copyAttachments(ItemState& item, ItemState& answer, bool all) {
    const auto& answered = item.attachments();
    if (answered.empty()) return;
    const auto shown = !all && item.record().bodyKind == BodyKind::Html ? mime::referencedContentIds(item.record().body) : std::set<std::u16string>();
    for (const auto& attachment : answered) {
        if (all || shown.contains(host::LCase(attachment->contentId)))
            answer.changedAttachments().push_back(std::make_shared<mailstore::AttachmentRecord>(*attachment));
    }
}

void setMessageIds(ItemState& answer, std::uint32_t tag, const std::vector<std::string>& ids) {
    std::string all;
    for (const std::string& id : ids) all += (all.empty() ? "" : " ") + id;
    if (!all.empty()) answer.setProperty(tag, host::fromUtf8(all));
}

void address(ItemState& item, ItemState& answer, bool all) {
    const mime::AnswerFields fields = mime::answerFieldsOf(item.record());
    for (RecipientRecord& recipient : repliedTo(item, fields, all))
        answer.changedRecipients().push_back(std::make_shared<RecipientRecord>(std::move(recipient)));
    setMessageIds(answer, tags::InReplyToId, fields.inReplyTo);
    setMessageIds(answer, tags::InternetReferences, fields.references);
}

/// Asks the listeners of the item; where one cancels, the answer goes.
void offer(ItemState& item, Member event, const host::Object& response, const std::shared_ptr<ItemState>& answer) {
    Variant cancel(false);
    item.events.raise(event, {response, host::Argument::byReference(cancel)});
    if (!cancel.toBoolean()) return;
    if (answer->isAlive()) answer->purge();
    throw host::HostError(Aborted, u"The answer was cancelled.");
}

}  // namespace

host::Object answerItem(std::shared_ptr<ItemState> item, Member member) {
    const bool forwarded = member == member::Forward;
    if (!forwarded && !wasSentOrReceived(item->record())) raiseFailed(u"An item that was neither sent nor received cannot be replied to.");
    const host::Object response = makeApplication(item->sharedCore()).call(Member::CreateItem, {mailType}).toObject();
    const std::shared_ptr<ItemState> answer = itemStateOf(response);
    answer->commitSubject(answerSubject(item->head().subject, forwarded ? u"FW: " : u"RE: "));
    quote(*item, *answer);
    copyAttachments(*item, *answer, forwarded);
    if (!forwarded) address(*item, *answer, member == member::ReplyAll);
    offer(*item, member, response, answer);
    return response;
}

}  // namespace lorvane::model
