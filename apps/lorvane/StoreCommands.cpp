#include <filesystem>
#include <system_error>

#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "host/TextFunctions.h"
#include "mailstore/StoreUpkeep.h"

/// Looking after the store's file. No host is started: a store that is in doubt is not to be opened for writing.
namespace lorvane::cli {

using host::decimal;
using host::fromUtf8;

namespace {

std::u16string counted(std::size_t count, std::u16string_view what) {
    return decimal(static_cast<std::int64_t>(count)) + u" " + std::u16string(what) + (count == 1 ? u"" : u"s");
}

/// The store of a folder is the file in it; without a name it is the run's own.
std::filesystem::path storeNamed(const std::string& name, const RunOptions& run) {
    if (name.empty()) return storeFileOf(run);
    std::error_code ignored;
    const std::filesystem::path named = name;
    return std::filesystem::is_directory(named, ignored) ? named / storeFileName : named;
}

std::u16string summary(const std::filesystem::path& file, const mailstore::StoreFindings& findings) {
    std::u16string line = fromUtf8(file.string()) + u": sound; ";
    if (findings.version == findings.currentVersion) return line + counted(findings.folders, u"folder") + u", " + counted(findings.items, u"item");
    return line + u"of version " + decimal(findings.version) + u", which the next command that opens it brings to " + decimal(findings.currentVersion);
}

}  // namespace

ExitStatus runStoreCheck(const RunOptions& run, const StoreOptions& options) {
    const std::filesystem::path file = storeNamed(options.file, run);
    const mailstore::StoreFindings findings = mailstore::checkStore(file);
    for (const std::u16string& fault : findings.faults) tell(u"lorvane: " + fault);
    if (!findings.faults.empty()) return ExitStatus::Fault;
    print(onOneLine(summary(file, findings)) + u"\n");
    return ExitStatus::Done;
}

ExitStatus runStoreBackup(const RunOptions& run, const StoreOptions& options) {
    std::error_code ignored;
    if (std::filesystem::exists(std::filesystem::symlink_status(options.file, ignored)))
        throw CommandEnd(ExitStatus::Refused, options.file + " is there already; a copy replaces nothing");
    mailstore::backUpStore(storeFileOf(run), options.file);
    return ExitStatus::Done;
}

}  // namespace lorvane::cli
