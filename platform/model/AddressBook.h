#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mailstore/ItemRecord.h"

namespace lorvane::model {

/// One entry of the address book.
struct Contact {
    std::u16string name;     ///< display name
    std::u16string address;  ///< by `type`: an SMTP address, or a directory name for EX
    std::u16string prefix, given, middle, surname, generation;
    std::u16string type = u"SMTP";        ///< "SMTP" or "EX"
    std::vector<std::u16string> proxies;  ///< "SMTP:a@b", "smtp:c@d" …
};

/// True for an address like "john@example.com": one "@" with text on both sides and no blanks, quotes or brackets.
bool isSmtpAddress(std::u16string_view text) noexcept;

/// The contacts that names are resolved against. Names and addresses compare without regard to case.
class AddressBook {
public:
    void add(Contact contact) { contacts_.push_back(std::move(contact)); }
    const std::vector<Contact>& contacts() const noexcept { return contacts_; }

    /// The one contact of that display name; null where none or more than one has it.
    const Contact* findByName(std::u16string_view name) const noexcept;
    /// The first contact that has the address as its own or as a proxy.
    const Contact* findByAddress(std::u16string_view address) const noexcept;

    /// Resolves a recipient in place by address or name; gives whether it is resolved now.
    bool resolve(mailstore::RecipientRecord& recipient) const;

private:
    std::vector<Contact> contacts_;
};

/// The address a contact is reached by over SMTP: its own, or its primary proxy, or any SMTP proxy; "" where it has none.
std::u16string smtpAddressOf(const Contact& contact);

/// A recipient from what a person writes: "Name <address>", a name or an address. It is not resolved.
mailstore::RecipientRecord recipientFromText(std::u16string_view text, std::int32_t type);
/// The next part of an address field, which ends at a ";" outside quotes, without blanks at its ends; it leaves `rest`. Empty at the end.
std::u16string_view takeRecipient(std::u16string_view& rest) noexcept;
/// What an address field shows of a recipient.
const std::u16string& shownName(const mailstore::RecipientRecord& recipient) noexcept;

}  // namespace lorvane::model
