#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ExitStatus.h"
#include "RunOptions.h"

/// The commands of the program. Each runs the add-in on the model host, through the chooser and its handlers, and says what it came to.
namespace lorvane::cli {

struct InsertOptions {
    std::string subject;  ///< of the template, compared exactly
    std::string id;       ///< its EntryID, where several share the subject
    bool withFormat = false;
    std::vector<std::string> to;  ///< "Name <address>" each
    std::string into;             ///< message file, "-" for standard input, "" for a new mail
    std::string caret = "body";   ///< "body", "body:N" or "subject"
    std::string out;              ///< file, "-" or "" for standard output
    bool keep = false;            ///< leave the item in Drafts
};
ExitStatus runInsert(const RunOptions& run, const InsertOptions& options);

struct TemplatesOptions {
    std::string search;
    std::string category;
    std::string scope;  ///< "all", "private", "shared"; "" for the settings' default
    bool json = false;
};
ExitStatus runTemplates(const RunOptions& run, const TemplatesOptions& options);

struct TemplateAddOptions {
    std::string subject;
    bool subjectGiven = false;
    std::string categories;
    std::string text, html, eml;  ///< one of the three is a file or "-"
    std::vector<std::string> attach;
};
ExitStatus runTemplateAdd(const RunOptions& run, const TemplateAddOptions& options);

struct ImportOptions {
    std::string folder;  ///< "\Store\Folder…"; "" for the private templates folder
    std::vector<std::string> sources;
};
ExitStatus runImport(const RunOptions& run, const ImportOptions& options);

struct SettingsOptions {
    std::string key, value;
    bool json = false;
};
ExitStatus runSettingsGet(const RunOptions& run, const SettingsOptions& options);
ExitStatus runSettingsSet(const RunOptions& run, const SettingsOptions& options);
ExitStatus runSettingsList(const RunOptions& run, const SettingsOptions& options);

}  // namespace lorvane::cli
