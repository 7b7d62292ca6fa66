#include "model/AddressBook.h"

#include <algorithm>

#include "host/TextFunctions.h"

namespace lorvane::model {

namespace {

constexpr std::u16string_view smtpPrefix = u"SMTP:";

bool hasSmtpPrefix(std::u16string_view proxy) noexcept {
    return host::equalsIgnoreCase(proxy.substr(0, smtpPrefix.size()), smtpPrefix);
}

std::u16string_view withoutQuotes(std::u16string_view name) noexcept {
    name = host::Trim(name);
    return name.size() >= 2 && name.front() == u'"' && name.back() == u'"' ? host::Trim(name.substr(1, name.size() - 2)) : name;
}

}  // namespace

bool isSmtpAddress(std::u16string_view text) noexcept {
    const std::size_t at = text.find(u'@');
    if (at == std::u16string_view::npos || at == 0 || at + 1 == text.size()) return false;
    return text.find(u'@', at + 1) == std::u16string_view::npos && text.find_first_of(u" \t\r\n\"<>();,'") == std::u16string_view::npos;
}

const Contact* AddressBook::findByName(std::u16string_view name) const noexcept {
    const Contact* found = nullptr;
    for (const Contact& contact : contacts_) {
        if (!host::equalsIgnoreCase(contact.name, name)) continue;
        if (found) return nullptr;
        found = &contact;
    }
    return found;
}

const Contact* AddressBook::findByAddress(std::u16string_view address) const noexcept {
    const auto reaches = [address](const Contact& contact) {
        return host::equalsIgnoreCase(contact.address, address) || std::ranges::any_of(contact.proxies, [address](std::u16string_view proxy) {
                   return hasSmtpPrefix(proxy) && host::equalsIgnoreCase(proxy.substr(smtpPrefix.size()), address);
               });
    };
    const auto found = std::ranges::find_if(contacts_, reaches);
    return found == contacts_.end() ? nullptr : &*found;
}

bool AddressBook::resolve(mailstore::RecipientRecord& recipient) const {
    if (recipient.resolved) return true;
    const bool hasAddress = !recipient.address.empty();
    const Contact* contact = hasAddress ? findByAddress(recipient.address) : findByName(recipient.name);
    if (!contact && !hasAddress) contact = findByAddress(recipient.name);
    if (contact) {
        // A name that came with the address is what the writer calls the person; it stays.
        if (!hasAddress || recipient.name.empty() || host::equalsIgnoreCase(recipient.name, recipient.address)) recipient.name = contact->name;
        recipient.address = contact->address;
        recipient.addressType = contact->type;
        return recipient.resolved = true;
    }
    const std::u16string_view address = hasAddress ? std::u16string_view(recipient.address) : std::u16string_view(recipient.name);
    if (!isSmtpAddress(address)) return false;
    recipient.address = std::u16string(address);
    recipient.addressType = u"SMTP";
    return recipient.resolved = true;
}

std::u16string smtpAddressOf(const Contact& contact) {
    if (host::equalsIgnoreCase(contact.type, u"SMTP")) return contact.address;
    std::u16string_view found;
    for (const std::u16string& proxy : contact.proxies) {
        if (!hasSmtpPrefix(proxy)) continue;
        // The primary address is the one whose prefix is in capitals.
        if (proxy.starts_with(smtpPrefix)) return proxy.substr(smtpPrefix.size());
        if (found.empty()) found = std::u16string_view(proxy).substr(smtpPrefix.size());
    }
    return std::u16string(found);
}

mailstore::RecipientRecord recipientFromText(std::u16string_view text, std::int32_t type) {
    mailstore::RecipientRecord recipient;
    recipient.type = type;
    text = host::Trim(text);
    const std::size_t open = text.rfind(u'<');
    if (open != std::u16string_view::npos && text.back() == u'>') {
        recipient.address = host::Trim(text.substr(open + 1, text.size() - open - 2));
        recipient.name = withoutQuotes(text.substr(0, open));
        if (recipient.name.empty()) recipient.name = recipient.address;
    } else {
        recipient.name = withoutQuotes(text);
    }
    return recipient;
}

std::u16string_view takeRecipient(std::u16string_view& rest) noexcept {
    std::u16string_view part;
    while (part.empty() && !rest.empty()) {
        bool quoted = false;
        std::size_t end = 0;
        for (; end < rest.size() && (rest[end] != u';' || quoted); ++end) {
            if (rest[end] == u'"') quoted = !quoted;
        }
        part = host::Trim(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return part;
}

const std::u16string& shownName(const mailstore::RecipientRecord& recipient) noexcept {
    return recipient.name.empty() ? recipient.address : recipient.name;
}

}  // namespace lorvane::model
