#pragma once

#include <string>
#include <string_view>

#include "host/Outlook.h"
#include "host/Redemption.h"

/// A template's attachments follow it into the target item, each through a file in a local folder.
namespace lorvane::respond {

/// Copies the template's attachments to the target, which is saved after each. Names that clash are changed, in `html` as well. Gives the local folder's path,
/// "" where the template has no attachments. An error shows a box and ends the copying with what was copied so far.
std::u16string CopyAttachments(const host::MailItem& templateItem, const host::MailItem& target, std::u16string& html);

/// True for an attachment of the target that came from the template with a content id, which `contentID` receives.
bool IsAttachedFromTemplate(std::u16string_view name, std::u16string& contentID);

/// Deletes the files of the local folder; the folder stays. Nothing for "".
void RemoveAttachmentsFromTemp(std::u16string_view folder);

/// A name that is unique among the target's and the template's attachments: `name`, or with "_" and a number at its stem's end. Every `name` in `html` becomes
/// it.
std::u16string GetUniqueAttachmentName(std::u16string_view name, std::u16string_view contentID, const host::SafeMailItem& templateSafe,
                                       const host::MailItem& target, std::u16string& html);

std::u16string GetTempFolder();                                                       ///< with a "\" at its end; "" where there is none
bool CreateStorageFolders();                                                          ///< makes the local folder; false where it cannot be made
bool VerifyWindowsPathLlimit(std::u16string_view path);                               ///< true for fewer than 260 characters
std::u16string GetAttachmentName(std::u16string_view path);                           ///< the first name that no file has yet
std::u16string MakeDuplicateFileName(std::u16string_view path, std::int32_t number);  ///< "picture.gif" with 1 gives "picture1.gif"
std::u16string ReverseString(std::u16string_view text);
std::u16string RemoveSpecialCharFromFilename(std::u16string_view name);  ///< "%20" becomes a blank, "#" becomes "_"

}  // namespace lorvane::respond
