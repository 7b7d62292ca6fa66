#pragma once

#include <string>
#include <string_view>

#include "host/Outlook.h"

/// The full name and the first name that the tags stand for, from what the address book and a display name offer; and the tests on a mail's sender and
/// recipients.
namespace lorvane::text {

/// Name properties of an address entry.
namespace name_tag {
inline constexpr std::int32_t Prefix = 0x3A45001E, GivenName = 0x3A06001E, MiddleName = 0x3A44001E, Surname = 0x3A11001E, Generation = 0x3A05001E;
}

/// Works out both names. The full name keeps the shape it was found in: "Public, John" stays so, while its first name is "John".
///
/// The address book's fields come first (prefix, given, middle, surname, generation); `displayName` serves where they are empty, without a company or an
/// address in parentheses and without quotes around. An error shows the standard box and leaves both names as they were.
void GetFullName(const host::AddressEntry& addressEntry, std::u16string_view displayName, std::u16string& fullName, std::u16string& firstName);

/// "John Public (Acme)" gives "John Public": drops everything from the last "(" on, with the character before it. The result also stays in `name`.
std::u16string RemoveDisplayCompany(std::u16string& name);
/// Drops an address in parentheses, and the "(E-mail)" that address books append, in any case.
std::u16string StripDisplayEmail(std::u16string_view name);
/// Behind the first ","; else in front of the first blank; else all of it.
std::u16string GetFirstName(std::u16string_view name);
/// In front of the first ","; else behind the last blank; else nothing.
std::u16string GetLastName(std::u16string_view name);

/// The sender's SMTP address; empty for an item without a sender and for other address types. An error shows a box and gives "".
std::u16string SenderEmail(const host::Object& item);
/// True for an item that somebody received; an error counts as false.
bool IsReceivedMail(const host::Object& item);
/// True for an item that was sent; an error counts as false.
bool IsSentMail(const host::Object& item);
/// True where one of the item's recipients has this SMTP address, any case.
bool EmailAlreadyRecipt(const host::Object& item, std::u16string_view address);

}  // namespace lorvane::text
