#pragma once

#include <string>

#include "host/Variant.h"

namespace lorvane::instruments {

/// A value on one line, for logs: `"text"` with line ends as \r and \n and quotes doubled, numbers, True, Empty, Null, Nothing, #2028-01-10T09:00:00#,
/// [a, b], bytes(12), objects as their class. Long texts and lists are cut, their length behind them: `"Dear Jo…"(1234)`.
std::u16string valueText(const host::Variant& value);

/// The arguments as `valueText`, with a comma between; named ones as `Name:=value`.
std::u16string argumentsText(host::Args args);

}  // namespace lorvane::instruments
