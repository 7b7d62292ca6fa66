#pragma once

#include <string_view>

#include "host/Object.h"

/// Word's global template beside an open item that Word edits.
namespace lorvane::host {

/// The template that has the bar for such items, in the add-in's own folder.
inline constexpr std::u16string_view wordTemplate = u"\\Lorvane.dot";

/// Finds, adds and switches on Word's global template `name` ("\" in front) of the add-in's own folder, in the Word that edits the Inspector's item.
/// Nothing is added where the file is not there. An error at the adding shows its description.
void AddWordTemplate(const Object& inspector, std::u16string_view name);
/// Marks the template as saved, so that Word does not ask when it closes. Errors are ignored.
void SetWordTemplateSaved(const Object& inspector, std::u16string_view name);

}  // namespace lorvane::host
