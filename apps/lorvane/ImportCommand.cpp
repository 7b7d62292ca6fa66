#include <algorithm>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "Commands.h"
#include "Run.h"
#include "Streams.h"
#include "TemplateContent.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"
#include "mime/MboxSplitter.h"

namespace lorvane::cli {

using namespace host;

namespace {

constexpr std::size_t piece = std::size_t{1} << 16;  // bytes that are read at once

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

/// Fills a buffer of this size, or as much of it as there is.
Bytes nextPiece(Input& input) {
    Bytes bytes(piece);
    bytes.resize(input.read(bytes));
    return bytes;
}

/// A file of a folder is mail by its ending, or by its first line: mailbox files often have no ending.
bool isMail(const std::filesystem::path& file) {
    const std::u16string ending = fromUtf8(file.extension().string());
    if (equalsIgnoreCase(ending, u".eml") || equalsIgnoreCase(ending, u".mbox")) return true;
    try {
        Input input(file.string());
        return mime::beginsMailbox(nextPiece(input));
    } catch (const CommandEnd&) {
        return false;
    }
}

std::vector<std::filesystem::path> mailIn(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored) && isMail(entry->path())) files.push_back(entry->path());
    }
    if (error) throw CommandEnd(ExitStatus::Fault, "cannot read " + folder + ": " + error.message());
    if (files.empty()) throw CommandEnd(ExitStatus::Refused, "there are no messages (.eml, mbox) in the folder " + folder);
    std::sort(files.begin(), files.end());
    return files;
}

/// The files that the sources name, those of a folder in the order of their names.
std::vector<std::string> mailFiles(const std::vector<std::string>& sources) {
    std::vector<std::string> files;
    for (const std::string& source : sources) {
        if (std::filesystem::is_directory(source))
            for (const std::filesystem::path& file : mailIn(source)) files.push_back(file.string());
        else
            files.push_back(source);
    }
    return files;
}

/// Takes messages over, and counts them. What cannot be taken is told; it does not hold up the others.
class Importer {
public:
    Importer(Run& run, MAPIFolder folder) : run_(run), folder_(std::move(folder)) {}

    void takeFile(const std::string& file) {
        try {
            Input input(file);
            const Bytes head = nextPiece(input);
            if (mime::beginsMailbox(head))
                takeMailbox(file, head, input);
            else
                takeMessage(file, whole(head, input));
        } catch (const CommandEnd& end) {
            leaveOut(end.what());
        }
    }

    std::size_t seen() const noexcept { return seen_; }
    std::size_t imported() const noexcept { return imported_; }

private:
    static Bytes whole(Bytes bytes, Input& input) {
        for (Bytes next = nextPiece(input); !next.empty(); next = nextPiece(input)) bytes.insert(bytes.end(), next.begin(), next.end());
        return bytes;
    }

    void takeMailbox(const std::string& file, const Bytes& head, Input& input) {
        std::size_t given = 0;
        mime::MboxSplitter mailbox([&](std::span<std::uint8_t> buffer) {
            if (given == head.size()) return input.read(buffer);
            const std::size_t count = std::min(buffer.size(), head.size() - given);
            std::copy_n(head.begin() + static_cast<std::ptrdiff_t>(given), count, buffer.begin());
            given += count;
            return count;
        });
        std::size_t number = 0;
        while (const auto message = mailbox.next()) {
            const std::string name = file + ", message " + std::to_string(++number);
            try {
                takeMessage(name, *message);
            } catch (const CommandEnd& end) {
                leaveOut(end.what());
            }
        }
    }

    void takeMessage(const std::string& name, const Bytes& bytes) {
        mailstore::ItemRecord record = run_.readMessage(name, bytes);
        if (record.head.subject.size() > longestSubject) throw CommandEnd(ExitStatus::Refused, name + ": left out, its subject has over 600 characters");
        run_.driver().import(std::move(record), folder_);
        ++seen_;
        ++imported_;
    }

    void leaveOut(const std::string& reason) {
        tell("lorvane: " + reason);
        ++seen_;
    }

    Run& run_;
    MAPIFolder folder_;
    std::size_t seen_ = 0, imported_ = 0;
};

}  // namespace

ExitStatus runImport(const RunOptions& runOptions, const ImportOptions& options) {
    const std::vector<std::string> files = mailFiles(options.sources);
    Run run(runOptions);
    run.requireConnected();
    Importer importer(run, targetFolder(options.folder));
    for (const std::string& file : files) importer.takeFile(file);
    tell("lorvane: " + std::to_string(importer.imported()) + " of " + std::to_string(importer.seen()) + " messages imported");
    return importer.imported() == importer.seen() ? ExitStatus::Done : ExitStatus::Refused;
}

}  // namespace lorvane::cli
