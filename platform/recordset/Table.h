#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "host/Variant.h"
#include "recordset/FieldType.h"
#include "recordset/Origin.h"
#include "recordset/RowBits.h"
#include "recordset/TextColumn.h"

namespace lorvane::recordset {

class Collation;

/// What became of a row since the table's changes were last settled, by the platform's numbers.
enum class RowState : std::uint8_t { New = 1, Modified = 2, Deleted = 4, Unmodified = 8 };

/// What a cell with this value holds.
CellState stateOf(const host::Variant& value) noexcept;

/// The rows behind a recordset and its clones: one column a field, rows in insertion order, deleted rows kept in their place and marked.
///
/// A cell is Empty (never assigned), Null or a value. The values that rows had before they were modified or deleted stay readable, for the persisted form.
class Table : public std::enable_shared_from_this<Table> {
public:
    /// Is told of each row before and after it is added, changed or deleted. It only takes note: the table must not be changed from inside.
    class Observer {
    public:
        virtual void rowChanging() = 0;
        virtual void rowChanged(RowId row) noexcept = 0;

    protected:
        ~Observer() = default;
    };

    explicit Table(std::vector<FieldDefinition> fields);

    /// Of this table alone, also when it is gone.
    std::uint64_t id() const noexcept { return id_; }

    const std::vector<FieldDefinition>& fields() const noexcept { return fields_; }
    /// A field by name, in any case.
    std::optional<std::size_t> findField(std::u16string_view name) const noexcept;

    std::size_t rowCount() const noexcept { return states_.size(); }  ///< with the deleted ones
    std::size_t liveCount() const noexcept { return liveCount_; }
    bool isLive(RowId row) const noexcept { return states_[row] != RowState::Deleted; }
    RowState state(RowId row) const noexcept { return states_[row]; }
    const RowBits& liveRows() const noexcept { return live_; }

    /// How many rows in front of `row` are not deleted; the `position`-th (from 0) of those that are not; the next or previous one, `row` included.
    std::size_t liveBefore(RowId row) const noexcept;
    RowId liveAt(std::size_t position) const noexcept;
    std::optional<RowId> liveFrom(std::size_t row) const noexcept;
    std::optional<RowId> liveUpTo(std::size_t row) const noexcept;

    CellState cellState(RowId row, std::size_t field) const noexcept;
    host::Variant value(RowId row, std::size_t field) const;
    /// The columns of a field, by its storage: text for `Storage::Text`, null for the others.
    const TextColumn* textColumn(std::size_t field) const noexcept { return std::get_if<TextColumn>(&columns_[field]); }
    /// The cell of any field that is not kept as text.
    const host::Variant& plainValue(RowId row, std::size_t field) const { return std::get<std::vector<host::Variant>>(columns_[field])[row]; }

    /// Fetches a row's cell into the cache in front of its use, or the text of one whose cell is there. Nothing for a field that is not kept as text.
    void prefetchCell(RowId row, std::size_t field) const noexcept {
        if (const TextColumn* column = textColumn(field)) column->prefetchCell(row);
    }
    void prefetchText(RowId row, std::size_t field) const noexcept {
        if (const TextColumn* column = textColumn(field)) column->prefetchText(row);
    }

    /// Tells that a value of the row was handed out: a row that is added next, to whatever table of this thread, may be its copy.
    void noteRead(RowId row) const;
    /// Where the texts of a field were copied from.
    const Origin& origin(std::size_t field) const noexcept { return origins_[field]; }
    /// The column of a text field, ready to be searched: with what its origin has made for that.
    const TextColumn& searchableColumn(std::size_t field) const;

    /// What a new row holds in a field: its text, where the field is kept as text; else a value as `convertedFor` gives it.
    struct NewCell {
        CellState state = CellState::Empty;
        std::u16string_view text = {};
        const host::KeptText* kept = nullptr;  // in place of the text, where a cell handed it out
        const host::Variant* plain = nullptr;
    };
    /// Adds a row, one cell a field, and returns its number.
    RowId append(std::span<const NewCell> cells, RowState state = RowState::New);
    /// The same of values as `convertedFor` gives them.
    RowId append(std::span<const host::Variant> values, RowState state = RowState::New);
    /// Assigns the values that are there. An unmodified row becomes modified, a new one stays new.
    void change(RowId row, std::span<const std::optional<host::Variant>> values);
    void remove(RowId row);

    /// What an unmodified row held before it was changed or deleted, and which fields were assigned since. Null for rows that were never settled.
    struct Original {
        std::vector<host::Variant> values;
        std::vector<bool> assigned;
    };
    const Original* original(RowId row) const noexcept;

    void observe(Observer& observer) { observers_.push_back(&observer); }
    void forget(Observer& observer) noexcept { std::erase(observers_, &observer); }

    /// All rows with a value in a text field, deleted ones too, in the collation's order; equal texts in insertion order. Kept until the field changes.
    struct Order {
        std::vector<RowId> rows;
        std::vector<std::uint32_t> places;  ///< by row: where it stands in `rows`; of no meaning for a row without a value
    };
    const Order& orderOf(std::size_t field, const Collation& collation) const;
    bool hasOrderOf(std::size_t field, const Collation& collation) const noexcept;
    /// How many rows were sorted by the field without that order since it last changed, in front of these.
    std::size_t countSorted(std::size_t field, std::size_t rows) const noexcept {
        return std::exchange(orders_[field].sortedWithout, orders_[field].sortedWithout + rows);
    }

private:
    using Column = std::variant<TextColumn, std::vector<host::Variant>>;
    struct KeptOrder {
        const Collation* collation = nullptr;
        Order order;
        std::size_t sortedWithout = 0;
    };

    void setCell(RowId row, std::size_t field, const host::Variant& value);
    void keepOriginal(RowId row);
    void traceRow(RowId row);
    void dropOrders() noexcept;
    void appendCell(std::size_t field, const NewCell& cell);
    void takeBackCell(std::size_t field) noexcept;
    void announce();
    void notify(RowId row) noexcept;

    std::uint64_t id_;
    std::vector<FieldDefinition> fields_;
    std::vector<Column> columns_;
    std::vector<Origin> origins_;  // one a field; empty for those without text
    std::vector<RowState> states_;
    RowBits live_;
    std::vector<std::uint16_t> liveInBlock_;
    std::size_t liveCount_ = 0;
    std::unordered_map<RowId, Original> originals_;
    std::vector<Observer*> observers_;
    mutable std::vector<KeptOrder> orders_;  // one a field
};

}  // namespace lorvane::recordset
