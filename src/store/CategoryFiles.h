#pragma once

#include <string>
#include <string_view>

#include "host/Adodb.h"
#include "host/Outlook.h"
#include "store/TemplateList.h"

/// The two files of category names, which let a save window offer them without walking a folder: "Private.xml" and "Shared.xml" in the storage folders under
/// the user's application data. A file is trusted whenever it parses; it is never compared with the folder.
namespace lorvane::store {

std::u16string privateCategoriesPath();
std::u16string sharedCategoriesPath();

/// True where both storage folders are there.
bool StorageFoldersExist();
/// Makes what is missing; false where one is not there afterwards. A fault is ignored.
bool qz7mCreateStorageFolders();

/// Replaces the file by the table's rowset as a text line. An error shows a box, and the work in hand goes on.
void SaveRSToFile(const host::Recordset& table, std::u16string_view path);
/// Opens a new table on the file's rowset; false, and no message, where there is no file or it does not parse.
bool LoadRSFromFile(const host::Recordset& table, std::u16string_view path);
/// The whole file; "" where there is none.
std::u16string ReadFile(std::u16string_view path);

/// Writes the files of the tables that are set, the shared one only while sharing is on. Makes the storage folders first where they are missing.
void writeCategoryFiles();

/// The way of a save window that found no usable file: resolves the folders, walks those of the scope behind the progress window, and writes the files.
void RebuildCategoryFiles(Scope scope, host::MAPIFolder& privateFolder, host::MAPIFolder& sharedFolder);

}  // namespace lorvane::store
