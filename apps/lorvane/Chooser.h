#pragma once

#include <string>

#include "Run.h"
#include "respond/frmEmail.h"

/// The chooser as the commands use it: opened as its button would, and clicked by the script.
namespace lorvane::cli {

/// The name of the window for the script.
inline constexpr std::u16string_view chooserWindow = u"frmEmail";

/// What the list shows of a line.
std::u16string subjectOfLine(const respond::frmEmail& chooser, std::int32_t line);

/// Finds the line of the one template with this own subject (compared exactly), or the one with this EntryID. Ends the command where there is none, or where
/// several share the subject; nothing was clicked then.
std::int32_t lineOfTemplate(respond::frmEmail& chooser, const std::string& subject, const std::string& entryId);

}  // namespace lorvane::cli
