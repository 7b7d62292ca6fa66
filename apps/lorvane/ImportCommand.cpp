#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"
#include "store/TemplateFolders.h"

namespace lorvane::cli {

using namespace host;

namespace {

constexpr std::size_t longestSubject = 600;  // a list could not show what follows

/// The folder under the name space at a path like "\Personal Folders\Archive"; Nothing where one of the names is not there.
MAPIFolder folderAt(std::u16string_view path) {
    MAPIFolder folder;
    Folders level(apartment().gNameSpace.getObject(Member::Folders));
    for (const std::u16string& name : Split(path.starts_with(u'\\') ? path.substr(1) : path, u"\\")) {
        folder = {};
        const std::int32_t count = level.Count();
        for (std::int32_t index = 1; index <= count && !folder; ++index) {
            MAPIFolder candidate = level.Item(index);
            if (candidate.Name() == name) folder = candidate;
        }
        if (!folder) return {};
        level = folder.Folders();
    }
    return folder;
}

MAPIFolder targetFolder(const std::string& path) {
    if (path.empty()) {
        if (!apartment().TemplatesFolder) throw CommandEnd(ExitStatus::Refused, "there is no templates folder: the host has no window (--no-explorer)");
        return apartment().TemplatesFolder;
    }
    const MAPIFolder folder = folderAt(fromUtf8(path));
    if (!folder) throw CommandEnd(ExitStatus::Refused, "there is no folder " + path);
    return folder;
}

/// The message files that the sources name, those of a folder in the order of their names.
std::vector<std::filesystem::path> messageFiles(const std::vector<std::string>& sources) {
    std::vector<std::filesystem::path> files;
    for (const std::string& source : sources) {
        if (!std::filesystem::is_directory(source)) {
            files.emplace_back(source);
            continue;
        }
        std::vector<std::filesystem::path> inFolder;
        std::error_code error;
        for (std::filesystem::directory_iterator entry(source, error), end; !error && entry != end; entry.increment(error)) {
            std::error_code ignored;
            if (entry->is_regular_file(ignored) && equalsIgnoreCase(fromUtf8(entry->path().extension().string()), u".eml")) inFolder.push_back(entry->path());
        }
        if (error) throw CommandEnd(ExitStatus::Fault, "cannot read " + source + ": " + error.message());
        if (inFolder.empty()) throw CommandEnd(ExitStatus::Refused, "there are no messages (.eml) in the folder " + source);
        std::sort(inFolder.begin(), inFolder.end());
        files.insert(files.end(), inFolder.begin(), inFolder.end());
    }
    return files;
}

/// The message in a file; none, with a line that says why, where there is nothing in it to be taken over. Other files are not held up by it.
std::optional<mailstore::ItemRecord> templateIn(const Run& run, const std::string& file) {
    try {
        mailstore::ItemRecord record = run.readMessage(file, readInput(file));
        if (record.head.subject.size() <= longestSubject) return record;
        tell("lorvane: " + file + ": left out, its subject has over 600 characters");
    } catch (const CommandEnd& end) {
        tell(std::string("lorvane: ") + end.what());
    }
    return std::nullopt;
}

}  // namespace

ExitStatus runImport(const RunOptions& runOptions, const ImportOptions& options) {
    const std::vector<std::filesystem::path> files = messageFiles(options.sources);
    Run run(runOptions);
    run.requireConnected();
    const MAPIFolder folder = targetFolder(options.folder);
    std::size_t imported = 0;
    for (const std::filesystem::path& file : files) {
        std::optional<mailstore::ItemRecord> record = templateIn(run, file.string());
        if (!record) continue;
        run.driver().import(std::move(*record), folder);
        ++imported;
    }
    tell("lorvane: " + std::to_string(imported) + " of " + std::to_string(files.size()) + " messages imported");
    return imported == files.size() ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace lorvane::cli
