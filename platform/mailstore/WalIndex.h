#pragma once

#include <array>
#include <cstdint>
#include <optional>

struct sqlite3;

namespace lorvane::mailstore {

/// Whether anybody has committed to a database in WAL mode, without a call into the system.
///
/// The programs that have such a database open share an index of its log in memory. Its header, 48 bytes of the file format that SQLite documents, is written
/// by every commit before that returns, and holds a count of the transactions and sums over the log: while it reads the same, nothing was committed.
class WalIndex {
public:
    using Header = std::array<std::uint64_t, 6>;

    /// Takes up the index of a connection that is in WAL mode and has read once. It stands for as long as the connection, which keeps the mode.
    void attach(sqlite3* connection) noexcept;

    /// The header as it stands; empty where there is none to be read.
    std::optional<Header> header() const noexcept;

private:
    const volatile std::uint64_t* shared_ = nullptr;
};

}  // namespace lorvane::mailstore
