#pragma once

#include <string>
#include <string_view>

/// Turning a plain template into HTML that the host's editor accepts.
namespace lorvane::text {

/// From version 12 on each line becomes a paragraph of the class Word's editor uses, an empty line one that keeps its height; below, the text as it is.
/// Nothing is escaped: "&" and angle brackets of the text pass through as markup.
std::u16string ConvertPlainTextToHtml(std::u16string_view text);
/// The older form, for hosts below 12: each carriage return becomes "<BR>", the line feed behind it stays.
std::u16string GetHtmlFromBody(std::u16string_view text);
/// From version 12 on gives paragraphs the editor's class; below, the HTML as it is.
std::u16string SetParagraphSpacing(std::u16string_view html);
/// Without the nine characters that a file name cannot hold.
std::u16string RemoveSpecChars(std::u16string_view name);

}  // namespace lorvane::text
