#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ExitStatus.h"
#include "RunOptions.h"

/// The commands of the program. Each runs the add-in on the model host, through the chooser and its handlers, and says what it came to.
namespace lorvane::cli {

/// Which template a command is about.
struct TemplateName {
    std::string subject;  ///< compared exactly
    std::string id;       ///< its EntryID, where several share the subject
};

struct InsertOptions {
    TemplateName name;
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

/// What a template is to hold, as adding and editing take it.
struct TemplateContent {
    std::optional<std::string> subject;
    std::optional<std::string> categories;  ///< divided by commas; "" for none
    std::string text, html, eml;            ///< one of the three, or none, is a file or "-"
    std::vector<std::string> attach;
};
ExitStatus runTemplateAdd(const RunOptions& run, const TemplateContent& content);

struct TemplateShowOptions {
    TemplateName name;
    bool json = false;
};
ExitStatus runTemplateShow(const RunOptions& run, const TemplateShowOptions& options);

struct TemplateEditOptions {
    TemplateName name;
    TemplateContent content;
};
ExitStatus runTemplateEdit(const RunOptions& run, const TemplateEditOptions& options);
ExitStatus runTemplateDelete(const RunOptions& run, const TemplateName& name);

struct ImportOptions {
    std::string folder;  ///< "\Store\Folder…"; "" for the private templates folder
    std::vector<std::string> sources;
};
ExitStatus runImport(const RunOptions& run, const ImportOptions& options);

/// Looking after the store's file, without a host.
struct StoreOptions {
    std::string file;  ///< to look at, "" for the run's own; or where the copy goes
};
ExitStatus runStoreCheck(const RunOptions& run, const StoreOptions& options);
ExitStatus runStoreBackup(const RunOptions& run, const StoreOptions& options);

struct BarsOptions {
    std::string window = "explorer";  ///< of `barsWindows`
    bool json = false;
};
/// The windows whose bars can be asked for.
std::vector<std::string> barsWindows();
ExitStatus runBars(const RunOptions& run, const BarsOptions& options);

struct ServeOptions {
    std::string socket;  ///< path of a Unix socket; "" for standard input and output
};
/// Serves other programs until they are gone, or SIGTERM comes.
ExitStatus runServe(const RunOptions& run, const ServeOptions& options);

struct SettingsOptions {
    std::string key, value;
    bool json = false;
};
ExitStatus runSettingsGet(const RunOptions& run, const SettingsOptions& options);
ExitStatus runSettingsSet(const RunOptions& run, const SettingsOptions& options);
ExitStatus runSettingsList(const RunOptions& run, const SettingsOptions& options);

}  // namespace lorvane::cli
