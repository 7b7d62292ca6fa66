#pragma once

#include <functional>
#include <string>

#include "Commands.h"
#include "Run.h"
#include "respond/frmEmail.h"

/// The chooser as the commands use it: opened as its button would, and clicked by the script.
namespace lorvane::cli {

/// The name of the window for the script.
inline constexpr std::u16string_view chooserWindow = u"frmEmail";

/// What the list shows of a line.
std::u16string subjectOfLine(const respond::frmEmail& chooser, std::int32_t line);

/// Beside an open item to insert into, or from the host's main window, where templates are kept and copied.
enum class ChooserMode { Insert, Copy };

/// What the user does at the line of a template.
using AtTemplate = std::function<void(screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line)>;

/// Opens the chooser and lets the user go on at the line of the one template of this name; the boxes of the opening are forgotten then.
///
/// Ends the command, with nothing clicked, where there is no such template, several share the subject, or the list broke off.
void withTemplate(Run& run, ChooserMode mode, const TemplateName& name, const AtTemplate& act);

}  // namespace lorvane::cli
