#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// The clipboard's "HTML Format".
namespace lorvane::html {

/// The fragment of a block whose offsets count its characters (a block decoded before, or one of single bytes).
///
/// It lies where "StartFragment" and "EndFragment" of the header say; an end behind the block is the block's end. Where the header has no usable offsets, it
/// lies between the fragment comments. None where a block has neither.
std::optional<std::u16string> clipboardFragment(std::u16string_view block);
/// The same for bytes, whose offsets count bytes; `decode` turns the fragment's bytes into text.
std::optional<std::u16string> clipboardFragment(std::string_view block, const std::function<std::u16string(std::string_view)>& decode);

/// A block around a fragment, in UTF-8: the five numbers of its header count bytes.
std::string clipboardBlock(std::u16string_view fragment);

}  // namespace lorvane::html
