#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The names that a region has for itself, its months and its days.
namespace lorvane::services {

/// A region as the surface spells it, as "de-DE", from what an option or the environment says ("de_de.UTF-8", "de", "de-DE"); "C" and "POSIX" are en-US.
/// None for a language nobody has names for.
std::optional<std::u16string> regionName(std::u16string_view given);

/// Twelve. Those of `host::knownLocale` for the regions it knows, so that dates are written and read alike everywhere.
std::vector<std::u16string> monthNames(std::u16string_view region, bool abbreviated);
/// Seven from Sunday, likewise.
std::vector<std::u16string> dayNames(std::u16string_view region, bool abbreviated);

}  // namespace lorvane::services
