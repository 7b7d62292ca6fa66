#pragma once

#include <cstdint>
#include <string_view>

#include "host/HostError.h"
#include "host/Member.h"

/// The errors of the model host, each with its sentence.
namespace lorvane::model {

/// An argument that the host cannot use (E_INVALIDARG).
inline constexpr std::int32_t InvalidArgument = static_cast<std::int32_t>(0x80070057);
/// An index outside a collection (DISP_E_BADINDEX).
inline constexpr std::int32_t BadIndex = static_cast<std::int32_t>(0x8002000B);
/// A call that the host refuses to a program (E_ABORT).
inline constexpr std::int32_t Aborted = static_cast<std::int32_t>(0x80004004);
/// Word's error 5941: a member of a collection that is not there.
inline constexpr std::int32_t UnknownToWord = static_cast<std::int32_t>(0x800A1735);
/// A file that is not there.
inline constexpr std::int32_t NoSuchFile = static_cast<std::int32_t>(0x80070002);

[[noreturn]] void raiseNotFound();  ///< 0x8004010F
[[noreturn]] void raiseDeleted();   ///< 0x8004010A
[[noreturn]] void raiseInvalidArgument(std::u16string_view sentence);
[[noreturn]] void raiseBadIndex();
[[noreturn]] void raiseFailed(std::u16string_view sentence);  ///< 0x80004005
[[noreturn]] void raiseUnknownToWord();
/// Error 438 naming class and member, for the model's own members too.
[[noreturn]] void raiseNoMember(std::u16string_view className, host::Member member);

}  // namespace lorvane::model
