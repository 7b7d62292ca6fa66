#pragma once

#include <string_view>

/// Texts that more than one handler of the chooser shows.
namespace lorvane::respond {

/// In place of a subject where no template is chosen.
inline constexpr std::u16string_view chooseFromList = u"Select a template from the list to preview";

/// What the empty state says.
inline constexpr std::u16string_view noneInFolder = u"No templates were found in the selected folder.";
inline constexpr std::u16string_view noneMatching = u"No matching templates were found in the selected folder.";

}  // namespace lorvane::respond
