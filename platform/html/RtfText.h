#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "html/TextMap.h"

/// Rich text (RTF) as far as plain runs need it: its text, where each character stands, and text written as RTF.
namespace lorvane::html {

/// Decodes one character's bytes by a code page; empty where they are not a whole character.
using ByteDecoder = std::function<std::u16string(std::string_view bytes, int codePage)>;

/// The text as it stands between control words: `\`, `{` and `}` escaped, tabs, line ends ("\par" CRLF) and what is not ASCII as control words.
std::u16string escapeRtf(std::u16string_view text);
/// A text as an RTF document.
std::u16string textToRtf(std::u16string_view text);
/// The text of an RTF document, line ends as CRLF.
std::u16string rtfToText(std::u16string_view rtf, const ByteDecoder& decoder = {});

/// The text with its places. Fonts, colours, styles, pictures and every "\*" group are nothing; "\par" and "\line" are line ends, cells are parted by tabs.
/// Bytes ("\'e4") are decoded by the document's code page; without a decoder all are Windows-1252.
TextMap mapRtf(std::u16string_view rtf, const ByteDecoder& decoder = {});

/// True where a control word ends at `offset` without a delimiter, so that text put there would become part of it.
bool rtfNeedsDelimiter(std::u16string_view rtf, std::size_t offset);

}  // namespace lorvane::html
