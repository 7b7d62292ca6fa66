#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Variant.h"
#include "recordset/Criteria.h"
#include "recordset/ReadAhead.h"
#include "recordset/RowOrder.h"
#include "recordset/Table.h"

namespace lorvane::recordset {

class Collation;

/// One way of looking at a table, and of editing it: a position, a sort, a filter and at most one row in edit. A recordset has one and its clone another.
///
/// Without filter and sort the view is the table itself. Else it is a list of row numbers, made when first needed and mended as rows change.
class View final : private Table::Observer {
public:
    enum class EditMode : std::int32_t { None = 0, InProgress = 1, Add = 2 };

    View(std::shared_ptr<Table> table, std::shared_ptr<const Collation> collation);
    ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    const std::shared_ptr<Table>& table() const noexcept { return table_; }

    std::int32_t recordCount();
    bool atBof();
    bool atEof();

    /// Moves commit a row in edit first. They raise `NoCurrentRecord` (3021) on a view without rows and beyond either end.
    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();

    /// From 1; -1 where there is no telling (no rows, a deleted row, a row being added), -2 in front of the first row, -3 behind the last.
    std::int32_t absolutePosition();
    /// Raises 3021 without rows and `BadArgument` (3001) outside 1 … `recordCount()`.
    void setAbsolutePosition(std::int32_t position);

    /// All rows in sight, in their order. Commits a row in edit first.
    std::vector<RowId> rows();

    /// Both go to the first row. An empty text takes the filter or sort away.
    void setFilter(std::u16string_view criteria);
    void setSort(std::u16string_view order);
    const std::u16string& filterText() const noexcept { return filterText_; }
    const std::u16string& sortText() const noexcept { return sortText_; }

    /// The value in edit, else that of the current row. 3021 where there is no current row or it is deleted.
    host::Variant value(std::size_t field);
    /// Puts the current row in edit. A value that the field does not take leaves the one before.
    void setValue(std::size_t field, const host::Variant& value);

    void addNew();        ///< commits a row in edit first
    void update();        ///< nothing in edit: does nothing, but raises 3021 at either end
    void cancelUpdate();  ///< gives up what was assigned; a row being added is gone, and the row in front of it is current again
    void remove();        ///< the deleted row stays current until a move; a row being added is given up

    EditMode editMode() const noexcept { return editMode_; }
    std::int32_t status();  ///< the state of the current row by the platform's numbers

private:
    enum class Place : std::uint8_t { First, Bof, Row, Eof };  // First: on the first row, not looked up yet
    struct Cursor {
        Place place = Place::First;
        RowId row = 0;
        std::size_t hint = 0;  // where the row was last seen in the index
    };
    struct Spot {
        std::size_t position;  // of the row, or of the first row behind its place
        bool isThere;
    };

    void rowChanging() override;
    void rowChanged(RowId row) noexcept override;

    bool isIndexed() const noexcept { return filter_.has_value() || !sort_.empty(); }
    std::size_t count();
    void resolve();
    void goTo(std::size_t position);
    void goBehind(std::size_t position);
    Spot locate();
    RowId currentRow();
    void finishEdit();
    bool isWalkable() const noexcept;

    void clearEdit();
    host::Variant editedValue(std::size_t field) const;

    void buildIndex();
    void ensureIndex();
    void dropIndex(bool keepRows);
    void startOver();
    void mendIndex();
    bool belongs(RowId row) const;
    bool isBefore(RowId a, RowId b) const;
    std::size_t lowerBound(RowId row) const;
    void commitAdded();
    void commitChanged();

    std::shared_ptr<Table> table_;
    std::shared_ptr<const Collation> collation_;
    std::u16string filterText_, sortText_;
    std::optional<Criteria> filter_;
    std::vector<SortKey> sort_;

    enum class IndexState : std::uint8_t { None, Rows, Ordered };  // Rows: those that belong, in insertion order
    IndexState indexState_ = IndexState::None;
    std::vector<RowId> index_;
    std::size_t indexedRows_ = 0;  // rows of the table when the index was made or mended
    std::vector<RowId> changed_;   // rows to be mended in the index
    bool observing_ = false;

    // A field of the row in edit. Its text keeps its room from row to row.
    struct Edit {
        bool assigned = false;
        CellState state = CellState::Empty;
        std::optional<host::KeptText> kept;  // of a field that is kept as text, where the text came from another cell
        std::u16string text;                 // of one otherwise
        host::Variant plain;                 // of any other
    };

    Cursor cursor_, cursorBeforeAdd_;
    EditMode editMode_ = EditMode::None;
    std::vector<Edit> edit_;                // one a field
    std::vector<Table::NewCell> newCells_;  // of the row being added

    ReadAhead readAhead_;
};

}  // namespace lorvane::recordset
