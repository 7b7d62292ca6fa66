#pragma once

#include <string>
#include <string_view>

#include "host/Controls.h"
#include "host/Outlook.h"

/// Which folders hold templates, how the settings name them, and how they are found again.
///
/// A folder's identity is the pair of EntryID and StoreID; its path is a second check, which goes stale when the folder is renamed or moved.
namespace lorvane::store {

/// True where the key `SharedTemplates` reads "True", any case. Read anew on every call.
bool SharingEnabled();

/// "\" and the name of each folder from the top of the store down; "" for Nothing.
std::u16string GetFolderPath(const host::MAPIFolder& folder);

/// At connection: finds the private folder by the settings, else points them at the default one, which is made where it is missing.
void CreateLorvaneFolder();
/// True where the folder of the settings is there under the path they name; it becomes `TemplatesFolder`. Silent.
bool CheckTemplateFolder();
/// Takes "Meravix Settings\Lorvane" beside the Inbox, makes what is missing (with the three samples in a new inner folder) and writes the private keys.
void CreateMapiFolder();
void ExampleTemplatesCreate(const host::MAPIFolder& folder);
void TemplateExample(std::u16string_view subject, std::u16string_view body, const host::MAPIFolder& folder);

/// Sets `TemplatesFolder` to the folder and gives true, where it is there under the expected path; else Nothing and false. Silent.
bool ResolveTemplateFolder(std::u16string_view entryId, std::u16string_view storeId, std::u16string_view expectedPath);

/// Repairs the stored paths and tells of a lost shared folder; it never rejects a folder. True unless the routine itself faults.
bool VerifyFolders(const host::MAPIFolder& privateFolder, host::MAPIFolder& sharedFolder);

/// Decides where a save window points when it opens.
void SetPrivateSharedOptions(host::OptionButton& optPrivate, host::OptionButton& optShared, const host::MailItem& item);

/// True where the folder's items are mails or posts.
bool HoldsMailItems(const host::MAPIFolder& folder);

/// Fills a combo with the sub-folders that can hold mails or posts, behind one empty line for the folder itself, and chooses the last used one.
void LoadSubFolders(const host::MAPIFolder& folder, host::ComboBox& combo);
/// The name padded with blanks to 250 characters, then the EntryID. Error 5 for a longer name.
std::u16string MakeSubFolderEntry(const host::MAPIFolder& folder);
std::u16string GetSubFolderEntryId(std::u16string_view line);

}  // namespace lorvane::store
