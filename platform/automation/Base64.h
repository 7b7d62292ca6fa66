#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/Object.h"

namespace lorvane::automation {

/// Bytes as base64 text (RFC 4648) with its padding.
std::string toBase64(const host::Bytes& bytes);
/// The bytes of such a text; none where it is not well-formed. Blanks and line ends are not taken.
std::optional<host::Bytes> fromBase64(std::string_view text);

}  // namespace lorvane::automation
