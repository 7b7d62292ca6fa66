#include "text/RecipientNames.h"

#include "host/Guards.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::text {

using namespace host;

namespace {

constexpr std::int32_t receivedByNameTag = 0x0040001E;
constexpr std::int32_t senderAddressTypeTag = 0x0C1E001E;
constexpr std::int32_t proxyAddressesTag = 0x800F101E;

std::u16string trimmed(std::u16string_view text) {
    return std::u16string(Trim(text));
}

bool isQuoted(std::u16string_view name) {
    return !name.empty() && name.front() == u'\'' && name.back() == u'\'';
}

std::u16string unquoted(std::u16string_view name) {
    return name.size() < 2 ? std::u16string() : std::u16string(name.substr(1, name.size() - 2));
}

/// Part of `text` in front of position `end` (from 1); empty for 0 and 1.
std::u16string_view inFrontOf(std::u16string_view text, std::size_t end) {
    return end < 2 ? std::u16string_view() : Left(text, end - 1);
}

}  // namespace

void GetFullName(const AddressEntry& addressEntry, std::u16string_view displayName, std::u16string& fullName, std::u16string& firstName) {
    withErrorBox(u"basGlobals.GetFullName", [&] {
        std::u16string first = trimmed(fieldText(addressEntry.Fields(name_tag::GivenName)));
        std::u16string last = trimmed(fieldText(addressEntry.Fields(name_tag::Surname)));
        std::u16string full;
        for (const std::int32_t tag : {name_tag::Prefix, name_tag::GivenName, name_tag::MiddleName, name_tag::Surname, name_tag::Generation})
            full = trimmed(full) + u" " + fieldText(addressEntry.Fields(tag));
        full = trimmed(full);
        if (full.empty()) full = displayName;

        full = StripDisplayEmail(RemoveDisplayCompany(full));
        std::u16string working = full;
        if (isQuoted(working)) {
            working = unquoted(working);
            full = unquoted(full);
        }
        if (first.empty() && last.empty() && !working.empty()) {
            working = StripDisplayEmail(RemoveDisplayCompany(working));
            first = GetFirstName(working);
            last = GetLastName(working);
        }
        if (full.empty() && !(first.empty() && last.empty())) {
            full = first;
            if (!last.empty()) full += u" " + last;
        }
        fullName = full;
        firstName = first;
    });
}

std::u16string RemoveDisplayCompany(std::u16string& name) {
    if (InStr(1, name, u")", Compare::IgnoreCase) != 0) {
        const std::u16string reversed = StrReverse(name);
        name = StrReverse(Mid(reversed, InStr(1, reversed, u"(") + 2));
    }
    name = trimmed(name);
    return name;
}

std::u16string StripDisplayEmail(std::u16string_view name) {
    const std::u16string reversed = StrReverse(name);
    const std::size_t close = InStr(1, reversed, u")", Compare::IgnoreCase);
    const std::size_t at = InStr(close != 0 ? close : 1, reversed, u"@");
    const std::size_t open = InStr(at != 0 ? at : 1, reversed, u"(");

    std::u16string work = reversed;
    if (close < at && at < open) work = std::u16string(inFrontOf(reversed, close)) + u" " + std::u16string(Mid(reversed, open + 1));

    constexpr std::u16string_view emailMarkReversed = u")LIAM-E(";
    const std::size_t mark = InStr(1, UCase(work), emailMarkReversed);
    // The blank in front of the mark, as it is read, goes with it.
    if (mark != 0) work = trimmed(std::u16string(inFrontOf(work, mark)) + u" " + std::u16string(Mid(work, mark + emailMarkReversed.size() + 1)));
    return trimmed(StrReverse(work));
}

std::u16string GetFirstName(std::u16string_view name) {
    if (const std::size_t comma = InStr(1, name, u","); comma != 0) return trimmed(Mid(name, comma + 1));
    if (const std::size_t blank = InStr(1, name, u" "); blank != 0) return trimmed(Left(name, blank - 1));
    return trimmed(name);
}

std::u16string GetLastName(std::u16string_view name) {
    if (const std::size_t comma = InStr(1, name, u","); comma != 0) return trimmed(Left(name, comma - 1));
    if (const std::size_t blank = InStrRev(name, u" "); blank != 0) return trimmed(Mid(name, blank + 1));
    return {};
}

namespace {

/// Of several SMTP addresses of a directory entry the last one; primary and secondary ones count alike.
std::u16string lastSmtpAddress(const AddressEntry& entry) {
    constexpr std::u16string_view prefix = u"SMTP:";
    const Variant proxies = entry.Fields(proxyAddressesTag);
    std::u16string address;
    for (const Variant& proxy : proxies.toArray().items) {
        const std::u16string text = proxy.toText();
        if (equalsIgnoreCase(Left(text, prefix.size()), prefix)) address = Mid(text, prefix.size() + 1);
    }
    return address;
}

std::u16string senderAddress(const SafeMailItem& item) {
    const std::u16string type = fieldText(item.Fields(senderAddressTypeTag));
    const AddressEntry sender = item.Sender();
    if (!sender) return {};
    if (equalsIgnoreCase(type, u"SMTP")) return sender.Address();
    return type == u"EX" ? lastSmtpAddress(sender) : std::u16string();
}

}  // namespace

std::u16string SenderEmail(const Object& item) {
    try {
        SafeMapiCleanup();
        const std::u16string address = senderAddress(makeSafeMailItem(item));
        SafeMapiCleanup();
        return address;
    } catch (const HostError&) {
        MsgBox(u"E-mail address cannot be resolved. Please check e-mail address.", msgbox::Exclamation, u"Invalid E-mail Address");
        return {};
    }
}

bool IsReceivedMail(const Object& item) {
    return holdsIgnoringErrors([&] {
        SafeMapiCleanup();
        const bool received = !fieldText(makeSafeMailItem(item).Fields(receivedByNameTag)).empty();
        SafeMapiCleanup();
        return received;
    });
}

bool IsSentMail(const Object& item) {
    return holdsIgnoringErrors([&] {
        SafeMapiCleanup();
        const bool sent = makeSafeMailItem(item).Sent();
        SafeMapiCleanup();
        return sent;
    });
}

bool EmailAlreadyRecipt(const Object& item, std::u16string_view address) {
    const Recipients recipients = makeSafeMailItem(item).Recipients();
    const std::int32_t count = recipients.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        const AddressEntry entry = recipients.Item(index).AddressEntry();
        if (entry && equalsIgnoreCase(entry.SMTPAddress(), address)) return true;
    }
    return false;
}

}  // namespace lorvane::text
