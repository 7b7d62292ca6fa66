#include "mailstore/StoreUpkeep.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <memory>
#include <system_error>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "mailstore/SqliteDatabase.h"
#include "mailstore/SqliteSchema.h"
#include "mailstore/SqliteSettings.h"
#include "mailstore/StoreFiles.h"

namespace lorvane::mailstore {

namespace {

namespace fs = std::filesystem;
using host::HostError;

constexpr std::size_t mostFaults = 100;

[[noreturn]] void fail(std::u16string_view sentence) {
    throw HostError(host::host_failure::Failed, std::u16string(sentence));
}

bool isThere(const fs::path& file) {
    std::error_code none;
    return fs::exists(fs::symlink_status(file, none));
}

[[noreturn]] void failOnEmpty(const std::u16string& file) {
    fail(u"The file " + file + u" is empty: no store was made in it.");
}

void requireStoreFile(const fs::path& file, const SqliteOptions& options) {
    std::error_code none;
    if (!fs::exists(file, none)) fail(u"There is no store " + quoted(file) + u".");
    if (!fs::is_regular_file(file, none)) fail(u"The store " + quoted(file) + u" is no file.");
    if (sizeOf(file) == 0 && sizeOf(beside(file, "-wal")) == 0) failOnEmpty(quoted(file));
    refuseUnsuitableFile(file, options);
    if (sizeOf(beside(file, "-journal")) > 0)
        fail(u"The store " + quoted(file) + u" was left in the middle of a change. The next command that opens it takes the change back.");
}

void requireStore(SqliteDatabase& database) {
    if (refuseUnsuitable(database) == Found::Nothing) failOnEmpty(database.fileName());
}

/// A folder of its own, gone with the object.
class OwnFolder {
public:
    OwnFolder() {
        std::string name = (fs::temp_directory_path() / "lorvane-store-XXXXXX").string();
        if (!::mkdtemp(name.data())) fail(u"No folder for a copy of the store could be made: " + host::fromUtf8(std::strerror(errno)) + u".");
        path_ = name;
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;
    ~OwnFolder() {
        std::error_code none;
        fs::remove_all(path_, none);
    }
    const fs::path& path() const noexcept { return path_; }

private:
    fs::path path_;
};

/// Takes what a step raises for a fault of the store.
void noteFaults(StoreFindings& findings, const std::function<void()>& step) {
    try {
        step();
    } catch (const HostError& error) {
        findings.faults.push_back(error.description());
    }
}

void checkPages(SqliteDatabase& database, StoreFindings& findings) {
    Statement row(database, "PRAGMA integrity_check(100)");
    while (row.step()) {
        const std::string word = row.word(0);
        if (word != "ok") findings.faults.push_back(u"The store " + database.fileName() + u" is damaged: " + host::fromUtf8(word));
    }
}

void checkReferences(SqliteDatabase& database, StoreFindings& findings) {
    Statement row(database, "PRAGMA foreign_key_check");
    while (row.step() && findings.faults.size() < mostFaults)
        findings.faults.push_back(u"The store " + database.fileName() + u" is damaged: a row of \"" + host::fromUtf8(row.word(0)) + u"\" belongs to nothing.");
}

void readItems(const MailStore& store, const FolderRecord& folder, StoreFindings& findings) {
    ++findings.folders;
    for (const ItemHead& head : store.itemHeads(folder.entryId)) {
        if (findings.faults.size() >= mostFaults) return;
        try {
            store.loadItem(head.entryId);
            ++findings.items;
        } catch (const HostError& error) {
            // Another program may have deleted it since the list was read.
            if (error.number() == host::host_failure::NotFound) continue;
            findings.faults.push_back(u"The item " + head.entryId + u" \"" + head.subject + u"\" cannot be read. " + error.description());
        }
    }
    for (const FolderRecord& child : store.childFolders(folder.entryId)) readItems(store, child, findings);
}

void readContent(const std::shared_ptr<SqliteDatabase>& database, StoreFindings& findings) {
    const std::unique_ptr<MailStore> store = makeSqliteMailStore(database);
    readItems(*store, store->rootFolder(), findings);
    makeSqliteSettings(database)->list();
}

StoreFindings look(const fs::path& file, FileUse use, const fs::path& shownAs, const SqliteOptions& options) {
    const auto database = std::make_shared<SqliteDatabase>(file, options.busyTimeoutMs, use, shownAs);
    requireStore(*database);
    StoreFindings findings;
    findings.version = database->number("PRAGMA user_version");
    findings.currentVersion = static_cast<std::int64_t>(schemaSteps().size());
    noteFaults(findings, [&] { checkPages(*database, findings); });
    if (findings.faults.empty()) noteFaults(findings, [&] { checkReferences(*database, findings); });
    if (findings.faults.empty() && findings.version == findings.currentVersion) noteFaults(findings, [&] { readContent(database, findings); });
    return findings;
}

/// Whether anybody has a lock on the file, also this program by another opening of it.
bool isLocked(const fs::path& file) {
    const int opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) return false;
    struct flock wanted {};
    wanted.l_type = F_WRLCK;
    wanted.l_whence = SEEK_SET;
    const bool locked = ::fcntl(opened, F_OFD_GETLK, &wanted) == 0 && wanted.l_type != F_UNLCK;
    ::close(opened);
    return locked;
}

/// Whether a log has more than its head, with which a kill may leave it. SQLite compares such a head with an index that it may not write here, finds them apart
/// again and again, and gives up after ten seconds.
bool holdsSaves(const fs::path& log) {
    constexpr std::uintmax_t headSize = 32;
    return sizeOf(log) > headSize;
}

/// For a log without its index: SQLite would have to write the index, which it may do beside a copy.
StoreFindings lookAtCopy(const fs::path& file, const SqliteOptions& options) {
    const OwnFolder folder;
    const fs::path copy = folder.path() / "store.sqlite";
    std::error_code failed;
    fs::copy_file(file, copy, failed);
    if (!failed) fs::copy_file(beside(file, "-wal"), beside(copy, "-wal"), failed);
    if (failed) fail(u"The store " + quoted(file) + u" could not be copied to be looked at: " + host::fromUtf8(failed.message()) + u".");
    return look(copy, FileUse::Keep, file, options);
}

/// What shows that a file was opened, written or closed meanwhile.
struct Stamp {
    explicit Stamp(const fs::path& file) : size(sizeOf(file)), log(isThere(beside(file, "-wal"))), index(isThere(beside(file, "-shm"))) {
        std::error_code none;
        time = fs::last_write_time(file, none);
    }
    bool operator==(const Stamp&) const = default;
    std::uintmax_t size;
    bool log, index;
    fs::file_time_type time{};
};

/// A file being made under a name of its own beside the one it is to have; without that it is gone again.
class FileInTheMaking {
public:
    explicit FileInTheMaking(const fs::path& target) : target_(target), path_(beside(target, ".part-" + std::to_string(::getpid()))) {
        const int made = ::open(path_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
        if (made < 0) failOnTarget(errno);
        ::close(made);
    }
    FileInTheMaking(const FileInTheMaking&) = delete;
    FileInTheMaking& operator=(const FileInTheMaking&) = delete;
    ~FileInTheMaking() {
        if (!named_) ::unlink(path_.c_str());
    }
    const fs::path& path() const noexcept { return path_; }

    /// Gives the file its name, for good; never the place of another one.
    void name() {
        int error = ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0 ? 0 : errno;
        // Not every file system can refuse by itself.
        if (error == EINVAL || error == ENOSYS) error = isThere(target_) ? EEXIST : ::rename(path_.c_str(), target_.c_str()) == 0 ? 0 : errno;
        if (error != 0) failOnTarget(error);
        named_ = true;
        const fs::path folder = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
        if (const int opened = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); opened >= 0) {
            ::fsync(opened);
            ::close(opened);
        }
    }

private:
    [[noreturn]] void failOnTarget(int error) const {
        fail(u"The copy " + quoted(target_) + u" cannot be made: " + host::fromUtf8(std::strerror(error)) + u".");
    }

    fs::path target_, path_;
    bool named_ = false;
};

void fillFrom(const fs::path& file, const fs::path& copy, const fs::path& shownAs, const SqliteOptions& options) {
    SqliteDatabase source(file, options.busyTimeoutMs);
    try {
        requireStore(source);
        SqliteDatabase target(copy, 0, FileUse::Fill, shownAs);
        target.word("PRAGMA journal_mode = OFF");
        source.copyTo(target);
    } catch (const HostError&) {
        source.keepUntouchedOnClose();
        throw;
    }
}

}  // namespace

StoreFindings checkStore(const fs::path& file, const SqliteOptions& options) {
    // Without locks nobody is kept from opening the file, writing and closing it while it is looked at: then it is looked at again.
    constexpr int mostLooks = 3;
    for (int looks = 1;; ++looks) {
        requireStoreFile(file, options);
        const Stamp before(file);
        const bool logAlone = !before.index && sizeOf(beside(file, "-wal")) > 0;
        // Copying by hand leaves a log without its index, and so does a program that keeps a store to itself.
        if (logAlone && isLocked(file)) fail(u"The store " + quoted(file) + u" is in use by another program. Close that program or try again later.");
        const auto isFinal = [&] { return looks == mostLooks || Stamp(file) == before; };
        try {
            if (before.log && before.index && (holdsSaves(beside(file, "-wal")) || isLocked(file))) return look(file, FileUse::Look, file, options);
            if (logAlone) return lookAtCopy(file, options);
            StoreFindings findings = look(file, FileUse::LookAlone, file, options);
            if (isFinal()) return findings;
        } catch (const HostError&) {
            if (isFinal()) throw;
        }
    }
}

void backUpStore(const fs::path& file, const fs::path& target, const SqliteOptions& options) {
    requireStoreFile(file, options);
    if (isThere(target)) fail(u"The copy " + quoted(target) + u" cannot be made: " + host::fromUtf8(std::strerror(EEXIST)) + u".");
    FileInTheMaking copy(target);
    fillFrom(file, copy.path(), target, options);
    {
        // The pages were copied as they are, so what is wrong here is wrong in the store.
        SqliteDatabase made(copy.path(), 0, FileUse::LookAlone, file);
        if (made.word("PRAGMA integrity_check(1)") != "ok") made.raiseDamaged(u"its pages do not fit together.");
    }
    copy.name();
}

}  // namespace lorvane::mailstore
