#pragma once

#include <string>
#include <string_view>

/// Plain text to HTML and back.
namespace lorvane::html {

inline constexpr std::u16string_view EmptyHtml = u"<HTML><BODY></BODY></HTML>";

/// `&`, `<` and `>` escaped, each line end as `lineEnd`; nothing around it.
std::u16string escapeHtml(std::u16string_view text, std::u16string_view lineEnd);
/// A text as an HTML document: each line end (CRLF, or a CR or LF alone) "<BR>" CRLF, within "<HTML><BODY>" and "</BODY></HTML>".
std::u16string textToHtml(std::u16string_view text);
/// What a document shows: the text of its body with line ends as CRLF.
std::u16string visibleText(std::u16string_view html);

}  // namespace lorvane::html
