#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/Variant.h"
#include "recordset/FieldType.h"

/// How the cells of a rowset are written, type by type: as its reader and its writer need it.
namespace lorvane::recordset {

/// The value that the text of a cell stands for; empty where the field's type has no such value. Text that is too long for its field is cut. Types that the
/// program does not calculate with keep the text itself.
std::optional<host::Variant> valueFromRowset(const FieldDefinition& field, std::u16string_view text);

/// The text of a value that is there, without references. Dates have whole seconds.
std::u16string rowsetTextOf(const FieldDefinition& field, const host::Variant& value);

/// Whether the field holds bytes, whose digits may be broken over lines.
bool holdsBytes(const FieldDefinition& field) noexcept;

/// Whether the text is an even number of hexadecimal digits.
bool isHexText(std::u16string_view text) noexcept;

}  // namespace lorvane::recordset
