#pragma once

#include <optional>
#include <string>

#include "host/Object.h"

namespace lorvane::model {

/// The fragment in a block of the clipboard format "HTML Format". Blocks are UTF-8; those of programs that write single bytes are read as Windows-1252.
std::optional<std::u16string> fragmentOfHtmlFormat(const host::Bytes& block);

}  // namespace lorvane::model
