#pragma once

#include <string>
#include <string_view>

/// Transfer encodings and character sets of parts.
namespace lorvane::mime {

enum class TransferEncoding { Identity, QuotedPrintable, Base64, UuEncode };

/// The encoding a Content-Transfer-Encoding field names; whatever is not known counts as Identity.
TransferEncoding transferEncodingNamed(std::string_view value);

/// The bytes of an attachment.
std::string decodeBytes(TransferEncoding encoding, std::string_view content);
/// The bytes of a text: line ends of the transfer form become CRLF, also those of files with LF alone; what base64 gives is taken as it is.
std::string decodeTextBytes(TransferEncoding encoding, std::string_view content);

/// Lines of at most 76 characters, each with `newline` at its end but the last.
std::string encodeBase64(std::string_view bytes, std::string_view newline);
/// CRLF pairs become line ends of the transfer form, a CR or LF that stands alone is encoded. Lines of at most 76 characters; none can be taken for a
/// boundary, a mailbox line or the end of a transmission.
std::string encodeQuotedPrintable(std::string_view bytes, std::string_view newline);

/// UTF-16 of bytes in a character set. Unknown names and bytes that are not of a seven-bit set are read as UTF-8 where they can be, else as windows-1252;
/// bytes that cannot be decoded become U+FFFD. Sets that mail programs label with the name of a smaller one are read as the larger one.
std::u16string decodeCharset(std::string_view bytes, std::string_view charset);

}  // namespace lorvane::mime
