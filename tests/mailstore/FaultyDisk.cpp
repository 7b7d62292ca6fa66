#include "mailstore/FaultyDisk.h"

#include <signal.h>
#include <sqlite3.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace lorvane::mailstore::test {

struct FaultyDisk::State {
    sqlite3_vfs* inner = nullptr;
    sqlite3_vfs outer{};
    std::size_t writes = 0;
    std::size_t failing = 0;  ///< 0 for none
    DiskFault fault = DiskFault::Full;
    bool failed = false;

    /// Counts one use; SQLITE_OK where it may go on, else the code of the failure.
    int count(int errorCode) {
        ++writes;
        const bool once = fault == DiskFault::WriteError || fault == DiskFault::Killed;
        if (failing == 0 || writes < failing || (once && writes != failing)) return SQLITE_OK;
        const bool takesRoom = errorCode == SQLITE_IOERR_WRITE || errorCode == SQLITE_IOERR_SHMSIZE || errorCode == SQLITE_CANTOPEN;
        if (fault == DiskFault::Full && !takesRoom) return SQLITE_OK;
        failed = true;
        errno = fault == DiskFault::Full ? ENOSPC : EIO;
        return fault == DiskFault::Full && errorCode == SQLITE_IOERR_WRITE ? SQLITE_FULL : errorCode;
    }
    void killWhereTold() const {
        if (failed && fault == DiskFault::Killed) ::raise(SIGKILL);
    }
};

namespace {

FaultyDisk::State* current = nullptr;

/// A file of SQLite's own system with this one in front; the other's memory lies behind.
struct File {
    sqlite3_file base;
    sqlite3_file* inner() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_file* innerOf(sqlite3_file* file) {
    return reinterpret_cast<File*>(file)->inner();
}

/// Counts a use that cannot be half done, and does it unless it fails.
template <class Use>
int counted(int errorCode, Use&& use) {
    if (const int failure = current->count(errorCode); failure != SQLITE_OK) {
        current->killWhereTold();
        return failure;
    }
    return use();
}

int write(sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
    sqlite3_file* const inner = innerOf(file);
    const int failure = current->count(SQLITE_IOERR_WRITE);
    if (failure == SQLITE_OK) return inner->pMethods->xWrite(inner, data, size, offset);
    const int error = errno;
    if (size > 1) inner->pMethods->xWrite(inner, data, size / 2, offset);
    current->killWhereTold();
    errno = error;
    return failure;
}

const sqlite3_io_methods methods = {
    .iVersion = 3,
    .xClose = [](sqlite3_file* file) { return innerOf(file)->pMethods ? innerOf(file)->pMethods->xClose(innerOf(file)) : SQLITE_OK; },
    .xRead = [](sqlite3_file* file, void* data, int size, sqlite3_int64 offset) { return innerOf(file)->pMethods->xRead(innerOf(file), data, size, offset); },
    .xWrite = write,
    .xTruncate = [](sqlite3_file* file,
                    sqlite3_int64 size) { return counted(SQLITE_IOERR_TRUNCATE, [&] { return innerOf(file)->pMethods->xTruncate(innerOf(file), size); }); },
    .xSync = [](sqlite3_file* file, int flags) { return counted(SQLITE_IOERR_FSYNC, [&] { return innerOf(file)->pMethods->xSync(innerOf(file), flags); }); },
    .xFileSize = [](sqlite3_file* file, sqlite3_int64* size) { return innerOf(file)->pMethods->xFileSize(innerOf(file), size); },
    .xLock = [](sqlite3_file* file, int lock) { return innerOf(file)->pMethods->xLock(innerOf(file), lock); },
    .xUnlock = [](sqlite3_file* file, int lock) { return innerOf(file)->pMethods->xUnlock(innerOf(file), lock); },
    .xCheckReservedLock = [](sqlite3_file* file, int* is) { return innerOf(file)->pMethods->xCheckReservedLock(innerOf(file), is); },
    .xFileControl = [](sqlite3_file* file, int operation, void* argument) { return innerOf(file)->pMethods->xFileControl(innerOf(file), operation, argument); },
    .xSectorSize = [](sqlite3_file* file) { return innerOf(file)->pMethods->xSectorSize(innerOf(file)); },
    .xDeviceCharacteristics = [](sqlite3_file* file) { return innerOf(file)->pMethods->xDeviceCharacteristics(innerOf(file)); },
    .xShmMap =
        [](sqlite3_file* file, int page, int size, int extend, void volatile** place) {
            const auto map = [&] { return innerOf(file)->pMethods->xShmMap(innerOf(file), page, size, extend, place); };
            return extend ? counted(SQLITE_IOERR_SHMSIZE, map) : map();
        },
    .xShmLock = [](sqlite3_file* file, int offset, int count, int flags) { return innerOf(file)->pMethods->xShmLock(innerOf(file), offset, count, flags); },
    .xShmBarrier = [](sqlite3_file* file) { innerOf(file)->pMethods->xShmBarrier(innerOf(file)); },
    .xShmUnmap = [](sqlite3_file* file, int withDelete) { return innerOf(file)->pMethods->xShmUnmap(innerOf(file), withDelete); },
    .xFetch = [](sqlite3_file* file, sqlite3_int64 offset, int size,
                 void** place) { return innerOf(file)->pMethods->xFetch(innerOf(file), offset, size, place); },
    .xUnfetch = [](sqlite3_file* file, sqlite3_int64 offset, void* place) { return innerOf(file)->pMethods->xUnfetch(innerOf(file), offset, place); },
};

int open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags) {
    sqlite3_vfs* const inner = current->inner;
    file->pMethods = nullptr;
    innerOf(file)->pMethods = nullptr;
    int exists = 1;
    if (name && (flags & SQLITE_OPEN_CREATE)) inner->xAccess(inner, name, SQLITE_ACCESS_EXISTS, &exists);
    if (!exists) {
        if (const int failure = current->count(SQLITE_CANTOPEN); failure != SQLITE_OK) {
            current->killWhereTold();
            return failure;
        }
    }
    const int code = inner->xOpen(inner, name, innerOf(file), flags, outFlags);
    if (innerOf(file)->pMethods) file->pMethods = &methods;
    return code;
}

int remove(sqlite3_vfs*, const char* name, int syncFolder) {
    return counted(SQLITE_IOERR_DELETE, [&] { return current->inner->xDelete(current->inner, name, syncFolder); });
}

}  // namespace

FaultyDisk::FaultyDisk() : state_(std::make_unique<State>()) {
    if (current) throw std::logic_error("one faulty disk at a time");
    current = state_.get();
    state_->inner = sqlite3_vfs_find(nullptr);
    // What writes nothing is the other's own.
    state_->outer = *state_->inner;
    state_->outer.zName = "faulty";
    state_->outer.szOsFile = static_cast<int>(sizeof(File)) + state_->inner->szOsFile;
    state_->outer.xOpen = open;
    state_->outer.xDelete = remove;
    state_->outer.pNext = nullptr;
    sqlite3_vfs_register(&state_->outer, 1);
}

FaultyDisk::~FaultyDisk() {
    sqlite3_vfs_unregister(&state_->outer);
    sqlite3_vfs_register(state_->inner, 1);
    current = nullptr;
}

std::size_t FaultyDisk::writes() const noexcept {
    return state_->writes;
}

void FaultyDisk::failAt(std::size_t write, DiskFault fault) {
    state_->writes = 0;
    state_->failing = write;
    state_->fault = fault;
    state_->failed = false;
}

bool FaultyDisk::hasFailed() const noexcept {
    return state_->failed;
}

void FaultyDisk::heal() {
    failAt(0, DiskFault::Full);
}

}  // namespace lorvane::mailstore::test
