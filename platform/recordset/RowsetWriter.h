#pragma once

#include <cstdint>
#include <string>

#include "recordset/View.h"

namespace lorvane::recordset {

/// What a rowset's text is going to be: a file's or a stream's. Lines are broken by the bytes they take there, and UTF-8 has no lone surrogates, which are
/// written as references.
enum class RowsetEncoding : std::uint8_t { Utf8, Utf16 };

/// The rows of a view as a rowset's text, without a byte order mark and without a line end behind it.
///
/// Rows stand in the view's order: unmodified ones by themselves, new ones that follow each other in one group, each modified one with what it was and the
/// fields assigned since, and all deleted ones last. Of a filtered view only the rows in sight are written. A row in edit is committed first. Line ends,
/// tabs and control characters in values stand as they are.
std::u16string writeRowset(View& view, RowsetEncoding encoding);

}  // namespace lorvane::recordset
