#pragma once

#include <string>
#include <string_view>

/// The usage log: one CSV line for each use of a template, in a file that a team may share.
namespace lorvane::respond {

/// Appends a line for the template, where logging is on. A missing folder or a refused file shows a box, and the use is lost.
void TemplateLogRecord(std::u16string_view entryID, std::u16string_view storeID);

bool blnLogTemplate();                          ///< the key `LogTemplate` as a boolean; empty is false; error 13 for any other text
std::u16string GetPath();                       ///< the key `TemplatesLogFilePath`
bool blnFolderExist(std::u16string_view path);  ///< the folder part: `path` without its last "\" element
bool blnFileExist(std::u16string_view path);
void WriteToFile(std::u16string_view path, std::u16string_view line);
/// Writes `probe` and takes it away again, which proves that the folder can be written to, then the header. True when it worked; a box where not.
bool CreateLogFile(std::u16string_view path, std::u16string_view probe);
std::u16string LogFileName(std::u16string_view path);  ///< the last "\" element
std::u16string DefaultLogFile();  ///< the path of the settings where its folder is there, else "TemplatesLogFile.csv" in the user's documents

}  // namespace lorvane::respond
