#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/Variant.h"

/// What a field of a table is: its name, its type by the platform's numbers, and which values it takes.
namespace lorvane::recordset {

namespace data_type {
inline constexpr std::int32_t SmallInt = 2, Integer = 3, Single = 4, Double = 5, Currency = 6, Date = 7, BSTR = 8, Boolean = 11, Decimal = 14, TinyInt = 16,
                              UnsignedTinyInt = 17, UnsignedSmallInt = 18, UnsignedInt = 19, BigInt = 20, UnsignedBigInt = 21, FileTime = 64, GUID = 72,
                              Binary = 128, Char = 129, WChar = 130, Numeric = 131, DBDate = 133, DBTime = 134, DBTimeStamp = 135, VarNumeric = 139,
                              VarChar = 200, LongVarChar = 201, VarWChar = 202, LongVarWChar = 203, VarBinary = 204, LongVarBinary = 205;
}  // namespace data_type

namespace field_attribute {
inline constexpr std::int32_t Unspecified = -1, MayDefer = 0x02, Updatable = 0x04, UnknownUpdatable = 0x08, Fixed = 0x10, IsNullable = 0x20, MayBeNull = 0x40,
                              Long = 0x80;
}  // namespace field_attribute

struct FieldSchema;

struct FieldDefinition {
    std::u16string name;
    std::int32_t type = data_type::VarChar;
    std::int32_t definedSize = 0;  ///< UTF-16 units for text, bytes for the others
    std::int32_t attributes = field_attribute::Unspecified;
    std::shared_ptr<const FieldSchema> schema = nullptr;  ///< what the rowset said of the field that it was read from; null for a field that was appended

    bool operator==(const FieldDefinition&) const = default;
};

/// How a column keeps its values. `Exact` holds what it was given as text: types that the program stores and does not calculate with.
enum class Storage { Text, Number, Boolean, Date, Exact };

/// Empty for a number that is no type of a field.
std::optional<Storage> storageOf(std::int32_t type) noexcept;

/// Whether Null may be assigned to the field.
bool takesNull(const FieldDefinition& definition) noexcept;

/// Whether a value of the type is text that must not be longer than the defined size.
bool isLimited(std::int32_t type) noexcept;

/// The definition with the size that a type of fixed width has, whatever was asked for.
FieldDefinition completed(FieldDefinition definition);

/// The value as the field keeps it: text of at most the defined size in exactly the code units given, a number, a date, a boolean, Null, or Empty.
/// Raises `MultipleStep` for what is too long, out of range, or Null where the field takes none; `WrongValueType` for what cannot be converted.
host::Variant convertedFor(const FieldDefinition& definition, const host::Variant& value);

/// Whether a value is text that the field keeps as it is; false too where only the conversion can tell.
bool isTextFor(const FieldDefinition& definition, const host::Variant& value) noexcept;

/// A date as a person writes it between "#" signs: "8/24/95", "2028-01-10 09:00", "1/10/2028 9:00 PM". Month first. Empty where it is none.
std::optional<host::DateTime> dateFromText(std::u16string_view text);

}  // namespace lorvane::recordset
