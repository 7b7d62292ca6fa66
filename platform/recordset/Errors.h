#pragma once

#include <cstdint>
#include <string_view>

/// The error numbers of recordsets and their one raiser.
namespace lorvane::recordset {

namespace error {
inline constexpr std::int32_t BadArgument = 3001;       ///< wrong type, out of range, or a criteria or sort text that cannot be read
inline constexpr std::int32_t NoCurrentRecord = 3021;   ///< at BOF or EOF, or the current row is deleted
inline constexpr std::int32_t IllegalOperation = 3219;  ///< not in this state
inline constexpr std::int32_t NotSupported = 3251;
inline constexpr std::int32_t ItemNotFound = 3265;  ///< no field of that name or number
inline constexpr std::int32_t AlreadyInCollection = 3367;
inline constexpr std::int32_t WrongValueType = 3421;  ///< a value that the field's type cannot take
inline constexpr std::int32_t Closed = 3704;
inline constexpr std::int32_t Open = 3705;
inline constexpr std::int32_t InvalidConnection = 3709;    ///< opened with no fields and no source
inline constexpr std::int32_t NotARowset = -2147467259;    ///< 0x80004005: a source from which no recordset can be made
inline constexpr std::int32_t MultipleStep = -2147217887;  ///< 0x80040E21: a value too long or out of range for its field, or Null where none may stand
}  // namespace error

/// Raises the error with its standard description.
[[noreturn]] void raise(std::int32_t number);

/// Raises `NotARowset`; `reason` is a sentence that stands behind the standard description.
[[noreturn]] void raiseNotARowset(std::u16string_view reason);

}  // namespace lorvane::recordset
