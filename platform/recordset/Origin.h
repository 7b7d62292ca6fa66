#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "recordset/RowBits.h"

namespace lorvane::recordset {

class Table;

/// Where the texts of one field were copied from: runs of rows that have the same texts as rows of another table's field, which ascend as these do.
///
/// Lists are made by copying a table that stays, row by row, and are searched and sorted once. What the search and the sort need is then made at the table that
/// stays, once for all its copies. A source that is gone, or one of whose texts was assigned since, is of no use any more.
class Origin {
public:
    struct Run {
        RowId own, source, count;
    };

    /// Tells that the text of row `own`, behind all rows told so far, is that of a row of `source`, or of where that one was copied from itself. Nothing comes
    /// of it where the rows told so far are from another table, or from behind that row.
    void add(RowId own, const Table& source, std::size_t field, RowId sourceRow);
    void clear() { *this = {}; }

    bool isEmpty() const noexcept { return runs_.empty(); }
    const std::vector<Run>& runs() const noexcept { return runs_; }
    /// The table with the texts as they were copied; null where there is none any more.
    std::shared_ptr<const Table> source(std::size_t field) const;

private:
    bool isOf(std::uint64_t sourceId, std::uint64_t edition) const noexcept { return sourceId_ == sourceId && edition_ == edition; }
    void begin(std::uint64_t sourceId, std::uint64_t edition, std::weak_ptr<const Table> source);
    void append(RowId own, RowId sourceRow);
    const Run* runOf(RowId own) const noexcept;

    std::uint64_t sourceId_ = 0;
    std::uint64_t edition_ = 0;
    std::weak_ptr<const Table> source_;
    std::vector<Run> runs_;
};

}  // namespace lorvane::recordset
