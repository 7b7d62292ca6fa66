#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Adodb.h"
#include "host/Controls.h"
#include "host/Outlook.h"
#include "host/PaddedText.h"

/// The flat tables over the template folders: identifiers, subject and categories of each template, and the distinct categories.
///
/// They live in memory only and are rebuilt by walking the folders.
namespace lorvane::store {

/// The process-wide tables. Nothing stands for a table that was never loaded or was cleared; both differ from an open one without rows.
struct TemplateTables {
    host::Recordset rsPrivateTemplates;
    host::Recordset rsSharedTemplates;
    host::Recordset rsPrivateCategories;
    host::Recordset rsSharedCategories;
};
TemplateTables& templateTables();

/// Which folders a list shows.
enum class Scope : std::int32_t { All = 0, Private = 1, Shared = 2 };

/// A new, open, empty table of templates (`strEntryID`, `strStoreID`, `strSubject`, `strCategories`) or of categories (`strCategory`).
host::Recordset newTemplateTable();
host::Recordset newCategoryTable();

/// Fills the tables from the folders that are not Nothing; `list` is cleared where the private folder is empty.
///
/// A folder that may not be read shows its permission message. An item that cannot be read is skipped. With `showProgress` the progress window shows each step
/// and is hidden and unloaded at the end.
void LoadTemplateList(const host::MAPIFolder& privateFolder, const host::MAPIFolder& sharedFolder, host::ListBox* list, bool showProgress);

/// True where reading the item's identity fails: such an item is no template.
bool IsEncryptedEmail(const host::MailItem& item);

/// Adds the rows of `source`, none where it is Nothing, to `target`, with " (Shared)" behind each subject where `addSuffix`; ends on the target's first row.
void CopyTemplateRecords(const host::Recordset& source, const host::Recordset& target, bool addSuffix);

/// A list line: the subject padded with blanks to 600 characters, then the row's position. Error 5 for a longer subject.
host::PaddedText MakeListEntry(std::u16string_view subject, std::int32_t position);
/// The position behind the 600th character of a line.
std::int32_t GetListId(std::u16string_view line);

}  // namespace lorvane::store
