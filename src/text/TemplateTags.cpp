#include "text/TemplateTags.h"

#include <optional>

#include "host/Apartment.h"
#include "host/TextFunctions.h"
#include "text/GrammarCheck.h"
#include "text/RecipientNames.h"

namespace lorvane::text {

using namespace host;

namespace {

std::u16string today() {
    const Machine& machine = apartment().machine;
    return std::u16string(Trim(Format(machine.clock().Now(), u"dd-mmm-yyyy", machine.region().locale())));
}

std::optional<Recipient> firstResolvedTo(const Recipients& recipients) {
    const std::int32_t count = recipients.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        Recipient recipient = recipients.Item(index);
        if (recipient.Type() == olTo && recipient.Resolved()) return recipient;
    }
    return std::nullopt;
}

/// A tag that finds no value stays in the text as typed.
void replaceNames(std::u16string& text, const AddressEntry& addressEntry, std::u16string_view displayName) {
    std::u16string fullName;
    std::u16string firstName;
    GetFullName(addressEntry, displayName, fullName, firstName);
    if (!fullName.empty()) ReplaceTag(text, u"[FullName]", fullName);
    if (!firstName.empty()) ReplaceTag(text, u"[FirstName]", firstName);
}

void replaceNamesByRecipientOf(std::u16string& text, const MailItem& item) {
    item.Recipients().ResolveAll();
    if (item.Recipients().Count() == 0) return;
    if (const auto recipient = firstResolvedTo(item.Recipients())) {
        const AddressEntry entry = recipient->AddressEntry();
        replaceNames(text, entry, recipient->Name());
    }
}

/// The answer's recipient is the earlier sender: the entry comes from the answer, the display name from the mail being answered.
void replaceNamesBySenderOf(std::u16string& text, const MailItem& answered, const MailItem& answer) {
    answer.Recipients().ResolveAll();
    if (answer.Recipients().Count() == 0) return;
    if (const auto recipient = firstResolvedTo(answer.Recipients())) {
        const AddressEntry entry = recipient->AddressEntry();
        replaceNames(text, entry, answered.SenderName());
    }
}

}  // namespace

const std::u16string& ReplaceTemplateTag(std::u16string& text, const Object& item, std::u16string_view source, bool noRecipient, const Object& otherItem) {
    const std::u16string date = today();
    RemoveGrammarCheck(text, u"[<span", u"</span>]");
    if (item) {
        if (equalsIgnoreCase(source, sourceRecipient))
            replaceNamesByRecipientOf(text, MailItem(item));
        else if (!noRecipient && otherItem)
            replaceNamesBySenderOf(text, MailItem(item), MailItem(otherItem));
    }
    return ReplaceTag(text, u"[Date]", date);
}

const std::u16string& ReplaceTag(std::u16string& text, std::u16string_view tag, std::u16string_view value) {
    // A text without the tag is not made anew.
    if (InStr(1, text, tag, Compare::IgnoreCase) != 0) text = Replace(text, tag, value, Compare::IgnoreCase);
    return text;
}

}  // namespace lorvane::text
