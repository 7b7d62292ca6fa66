#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/Controls.h"
#include "host/Outlook.h"

/// What the chooser opens beside itself, and does not know: the folder picker, the window that gives a template its categories, the manual, the balloon.
namespace lorvane::respond {

/// The routines of those windows. A part of the add-in that has one of them puts its routine here. One that is not there answers as a user who cancels at
/// once, and shows nothing.
struct FurtherWindows {
    std::function<std::u16string()> pickFolder;
    std::function<bool(const host::MailItem& item)> categorizeTemplate;
    std::function<void(std::int32_t topic)> openManual;
    std::function<void(const host::Control& beside)> showSearchTip;
    std::function<void()> closeSearchTip;
};
FurtherWindows& furtherWindows();

/// Shows the folder picker modally, with nothing picked yet, and takes it down. The EntryID of the picked folder, "" where the user cancelled.
std::u16string PickFolder();

/// Shows the save window in its categorize mode over a template (Nothing where none is chosen), and takes it down. True where it saved, false where it was
/// cancelled.
bool CategorizeTemplate(const host::MailItem& item);

/// Opens the manual.
void OpenManual(std::int32_t topic);

/// Shows the balloon beside the search box, placed by the box's rectangle on the screen. Only one is open: it is closed before.
void ShowSearchTip(const host::Control& beside);
void CloseSearchTip();  ///< nothing where none is open

}  // namespace lorvane::respond
