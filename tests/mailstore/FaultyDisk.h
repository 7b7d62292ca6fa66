#pragma once

#include <cstddef>
#include <memory>

namespace lorvane::mailstore::test {

/// What happens to a use of the disk that writes.
enum class DiskFault {
    Full,           ///< no room, from then on
    WriteError,     ///< this one write fails, half of it done
    BrokenForGood,  ///< as before, and every write after it
    Killed,         ///< the process is killed, half of the write done
};

/// Stands between SQLite and the disk for all stores that this process opens while it lives: counts what is written, cut off, synchronised, made and deleted,
/// and lets one of these fail.
class FaultyDisk {
public:
    FaultyDisk();
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;
    ~FaultyDisk();

    std::size_t writes() const noexcept;              ///< since the last call of `failAt` or `heal`
    void failAt(std::size_t write, DiskFault fault);  ///< the coming ones are counted from 1
    bool hasFailed() const noexcept;
    void heal();

    struct State;

private:
    std::unique_ptr<State> state_;
};

}  // namespace lorvane::mailstore::test
