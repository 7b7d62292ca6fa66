#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "mailstore/ItemRecord.h"
#include "mime/MimeReader.h"
#include "mime/MimeWriter.h"

/// Shared by the tests of messages: reading from and writing to text, builders of records, and the folder of real mails.
namespace lorvane::mime::testing {

/// Reads with a zone that is two hours ahead of UTC.
mailstore::ItemRecord read(std::string_view message);
/// The description of the refusal; fails the test where the message is read.
std::string refusal(std::string_view message);

/// Writes as the account "Ann Account" at a fixed time, zone and message id.
std::string write(const mailstore::ItemRecord& item);
WriteOptions options();

mailstore::ItemRecord draft(mailstore::BodyKind kind, std::u16string body);
mailstore::AttachmentRecord file(std::u16string name, std::u16string type, std::string_view data);
mailstore::AttachmentRecord picture(std::u16string name, std::u16string contentId, std::string_view data);
std::string dataOf(const mailstore::AttachmentRecord& attachment);
std::u16string text(const mailstore::ItemRecord& item, std::uint32_t tag);
double date(const mailstore::ItemRecord& item, std::uint32_t tag);
std::int32_t flags(const mailstore::ItemRecord& item);

/// Every real mail by file name. Throws where the folder is missing.
const std::map<std::string, std::string>& corpus();
std::string readFile(const std::string& path);

/// A message of header and body with the line ends of mail, from lines ending in "\n".
std::string crlf(std::string_view lines);

}  // namespace lorvane::mime::testing
