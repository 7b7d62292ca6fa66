#include "mailstore/WalIndex.h"

#include <sqlite3.h>

#include <atomic>

namespace lorvane::mailstore {

namespace {

constexpr int firstPage = 0, bytesOfPage = 32768;

}  // namespace

void WalIndex::attach(sqlite3* connection) noexcept {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK || !file || !file->pMethods) return;
    if (file->pMethods->iVersion < 2 || !file->pMethods->xShmMap) return;
    volatile void* page = nullptr;
    if (file->pMethods->xShmMap(file, firstPage, bytesOfPage, 0, &page) != SQLITE_OK) return;
    shared_ = static_cast<const volatile std::uint64_t*>(page);
}

std::optional<WalIndex::Header> WalIndex::header() const noexcept {
    if (!shared_) return std::nullopt;
    Header header;
    for (std::size_t i = 0; i < header.size(); ++i) header[i] = shared_[i];
    std::atomic_thread_fence(std::memory_order_acquire);  // what is read behind it is not older
    return header;
}

}  // namespace lorvane::mailstore
