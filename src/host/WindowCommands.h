#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "host/Outlook.h"

/// The commands behind the add-in's buttons and menu entries, each the one way to its window. Errors go to the caller.
namespace lorvane::host {

namespace reply_kind {
inline constexpr std::int32_t Reply = 1, ReplyAll = 2, Forward = 3;
}

/// The modes of the process wizard.
namespace wizard_mode {
inline constexpr std::int32_t New = 1, Reply = 2, ReplyAll = 3, Forward = 4;                    // from an Explorer
inline constexpr std::int32_t InspectorReply = 5, InspectorReplyAll = 6, InspectorForward = 7;  // from an open mail
}  // namespace wizard_mode

inline constexpr std::int32_t helpTopic = 1000;

/// Commands of parts of the add-in that may not be there: a part that is puts its routine here. One that is not there does nothing and shows nothing.
struct LaterCommands {
    std::function<void(std::int32_t kind)> replyToSelection;                                             ///< answers the mail selected in the active Explorer
    std::function<void(std::int32_t kind, const Object& mail)> replyToOpenMail;                          ///< answers an open mail
    std::function<void(bool blank)> createTemplateFromSelection;                                         ///< a blank template, or one of the selected text
    std::function<void()> saveActiveItemAsTemplate;                                                      ///< the save window over the open item
    std::function<void()> showTemplateSavedMessage;                                                      ///< the message of a saved template
    std::function<void()> showSettings, showAbout, showStartUpWizard, showSystemTray, unloadSystemTray;  ///< windows
    std::function<void()> writeSupportMail, openTutorial, openTutorialPage;                              ///< `openTutorialPage`: in the installed help
    std::function<void()> createProcessFolder, showProcessTemplates;
    std::function<void(std::int32_t mode)> showProcessWizard;  ///< of `wizard_mode`
    std::function<void(std::u16string_view entryId, std::u16string_view storeId)> createLinkedEmail;
    std::function<void()> rescheduleProcess, showRelatedItems;
};
/// Those of this apartment.
LaterCommands& laterCommands();

/// Runs one of them, where it is there.
template <class Command, class... A>
void runLater(Command LaterCommands::*command, A&&... arguments) {
    if (const Command run = laterCommands().*command) run(std::forward<A>(arguments)...);
}

// The template chooser.
void showChooser();            ///< to insert into the open item
void showChooserToCopy();      ///< without an open item: only copying is offered
void showChooserForNewMail();  ///< a new mail from a template

void unloadExplorerWindows();  ///< the two windows that may outlive their Explorer

/// Opens the manual at a topic.
void openManualAt(std::int32_t topic);

/// Types a text at the caret of the open item, key by key, as a person would: each character by its key of the keyboard in use, Shift around it where needed.
void typeAtCaret(std::u16string_view text);

}  // namespace lorvane::host
