#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace lorvane::host {

/// The one exception that crosses the platform surface.
///
/// `number()` follows the automation convention: failures of the host are negative 32-bit codes
/// (0x8004010F is -2147221233), run-time errors are positive (5, 6, 9, 13, 91, 438, 3021 …).
/// `description()` is the text that the standard error box shows behind the number.
class HostError : public std::exception {
public:
    HostError(std::int32_t number, std::u16string description);
    explicit HostError(std::int32_t number);  ///< with the standard description of a run-time number

    std::int32_t number() const noexcept { return number_; }
    const std::u16string& description() const noexcept { return description_; }
    const char* what() const noexcept override;  ///< number and description in UTF-8, for logs and tests

private:
    std::int32_t number_;
    std::u16string description_;
    std::string what_;
};

/// Run-time numbers that the logic and the platform raise by name.
namespace runtime_error {
inline constexpr std::int32_t InvalidProcedureCall = 5;
inline constexpr std::int32_t Overflow = 6;
inline constexpr std::int32_t SubscriptOutOfRange = 9;
inline constexpr std::int32_t TypeMismatch = 13;
inline constexpr std::int32_t FileNotFound = 53;
inline constexpr std::int32_t PathFileAccess = 75;
inline constexpr std::int32_t PathNotFound = 76;
inline constexpr std::int32_t ObjectNotSet = 91;
inline constexpr std::int32_t InvalidUseOfNull = 94;
inline constexpr std::int32_t CannotCreateObject = 429;
inline constexpr std::int32_t NoSuchMember = 438;
inline constexpr std::int32_t ArgumentNotOptional = 449;
}  // namespace runtime_error

/// Host failures with the codes that the real host gives.
namespace host_failure {
inline constexpr std::int32_t NotFound = static_cast<std::int32_t>(0x8004010F);
inline constexpr std::int32_t ObjectChanged = static_cast<std::int32_t>(0x80040109);
inline constexpr std::int32_t ObjectDeleted = static_cast<std::int32_t>(0x8004010A);
inline constexpr std::int32_t AccessDenied = static_cast<std::int32_t>(0x80070005);
inline constexpr std::int32_t InvalidEntryId = static_cast<std::int32_t>(0x80040107);
inline constexpr std::int32_t Failed = static_cast<std::int32_t>(0x80004005);
}  // namespace host_failure

}  // namespace lorvane::host
