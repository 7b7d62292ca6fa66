#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "host/HostError.h"
#include "mailstore/ItemRecord.h"
#include "mailstore/MailStore.h"

/// Records for the store tests, and the error an action ends with.
namespace lorvane::mailstore::test {

/// A mail with a subject and a plain text.
ItemRecord mail(std::u16string subject, std::u16string body = u"");

/// An item with every field filled at random from `source`: all kinds of property, any code unit (zeros and lone surrogates included), empty and absent
/// content.
ItemRecord randomRecord(std::mt19937& source);
/// `size` bytes that do not compress or repeat.
Bytes randomBytes(std::mt19937& source, std::size_t size);
std::u16string randomText(std::mt19937& source, std::size_t atMost);

/// The record as the store must give it back: with the identity and version that saving gave.
ItemRecord withHead(ItemRecord record, const ItemHead& head);

/// The error that the action raises; nothing where it raises none.
std::optional<host::HostError> errorOf(const std::function<void()>& action);
/// The number of that error; 0 where there is none.
std::int32_t numberOf(const std::function<void()>& action);

std::vector<std::u16string> subjects(const std::vector<ItemHead>& heads);
std::vector<std::u16string> names(const std::vector<FolderRecord>& folders);

}  // namespace lorvane::mailstore::test
