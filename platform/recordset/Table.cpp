#include "recordset/Table.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <limits>
#include <numeric>

#include "host/TextFunctions.h"
#include "recordset/Errors.h"
#include "recordset/TextScan.h"
#include "recordset/TextSort.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

constexpr std::size_t rowsOfBlock = 4096;  // liveInBlock_ counts fit 16 bits

std::uint64_t nextId() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

// The row whose value was handed out last on this thread.
struct LastRead {
    std::uint64_t tableId = 0;
    std::weak_ptr<const Table> table;
    RowId row = 0;
};
thread_local LastRead lastRead;

std::u16string_view textOf(const Variant& value) {
    return value.kind() == Variant::Kind::Text ? value.textView() : std::u16string_view();
}

}  // namespace

CellState stateOf(const Variant& value) noexcept {
    return value.isEmpty() ? CellState::Empty : value.isNull() ? CellState::Null : CellState::Value;
}

Table::Table(std::vector<FieldDefinition> fields) : id_(nextId()), fields_(std::move(fields)), origins_(fields_.size()), orders_(fields_.size()) {
    for (const FieldDefinition& field : fields_) {
        if (storageOf(field.type) == Storage::Text)
            columns_.emplace_back(std::in_place_type<TextColumn>);
        else
            columns_.emplace_back(std::in_place_type<std::vector<Variant>>);
    }
}

std::optional<std::size_t> Table::findField(std::u16string_view name) const noexcept {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (host::equalsIgnoreCase(fields_[i].name, name)) return i;
    }
    return std::nullopt;
}

std::size_t Table::liveBefore(RowId row) const noexcept {
    const std::size_t block = row / rowsOfBlock;
    std::size_t count = std::accumulate(liveInBlock_.begin(), liveInBlock_.begin() + static_cast<std::ptrdiff_t>(block), std::size_t{0});
    const auto& words = live_.words();
    for (std::size_t word = block * rowsOfBlock / 64; word < row / 64; ++word) count += static_cast<std::size_t>(std::popcount(words[word]));
    const std::uint64_t below = (std::uint64_t{1} << (row % 64)) - 1;
    return row / 64 < words.size() ? count + static_cast<std::size_t>(std::popcount(words[row / 64] & below)) : count;
}

RowId Table::liveAt(std::size_t position) const noexcept {
    std::size_t block = 0;
    while (position >= liveInBlock_[block]) position -= liveInBlock_[block++];
    std::size_t word = block * rowsOfBlock / 64;
    const auto& words = live_.words();
    for (std::size_t here; position >= (here = static_cast<std::size_t>(std::popcount(words[word]))); ++word) position -= here;
    std::uint64_t bits = words[word];
    for (; position > 0; --position) bits &= bits - 1;
    return static_cast<RowId>(word * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
}

std::optional<RowId> Table::liveFrom(std::size_t row) const noexcept {
    const auto& words = live_.words();
    if (row >= rowCount()) return std::nullopt;
    std::uint64_t bits = words[row / 64] & (~std::uint64_t{0} << (row % 64));
    for (std::size_t word = row / 64;; bits = words[word]) {
        if (bits != 0) return static_cast<RowId>(word * 64 + static_cast<std::size_t>(std::countr_zero(bits)));
        if (++word == words.size()) return std::nullopt;
    }
}

std::optional<RowId> Table::liveUpTo(std::size_t row) const noexcept {
    if (rowCount() == 0) return std::nullopt;
    row = std::min(row, rowCount() - 1);
    const auto& words = live_.words();
    std::uint64_t bits = words[row / 64] & (~std::uint64_t{0} >> (63 - row % 64));
    for (std::size_t word = row / 64;; bits = words[word]) {
        if (bits != 0) return static_cast<RowId>(word * 64 + 63 - static_cast<std::size_t>(std::countl_zero(bits)));
        if (word-- == 0) return std::nullopt;
    }
}

CellState Table::cellState(RowId row, std::size_t field) const noexcept {
    if (const TextColumn* column = textColumn(field)) return column->state(row);
    return stateOf(plainValue(row, field));
}

Variant Table::value(RowId row, std::size_t field) const {
    const TextColumn* column = textColumn(field);
    if (!column) return plainValue(row, field);
    switch (column->state(row)) {
        case CellState::Empty:
            return {};
        case CellState::Null:
            return Variant::null();
        case CellState::Value:
            break;
    }
    return column->keptText(row);
}

void Table::noteRead(RowId row) const {
    if (lastRead.tableId != id_) lastRead = {id_, weak_from_this(), 0};
    lastRead.row = row;
}

void Table::traceRow(RowId row) {
    if (lastRead.tableId == 0 || lastRead.tableId == id_) return;
    const std::shared_ptr<const Table> source = lastRead.table.lock();
    if (!source) return;
    for (std::size_t field = 0; field < std::min(columns_.size(), source->columns_.size()); ++field) {
        const auto* const own = textColumn(field);
        const auto* const theirs = source->textColumn(field);
        if (!own || !theirs || own->state(row) != CellState::Value || theirs->state(lastRead.row) != CellState::Value) continue;
        if (sameUnits(own->text(row), theirs->text(lastRead.row))) origins_[field].add(row, *source, field, lastRead.row);
    }
}

const TextColumn& Table::searchableColumn(std::size_t field) const {
    const TextColumn& column = *textColumn(field);
    const Origin& origin = origins_[field];
    if (!origin.isEmpty() && origin.runs().front().own == 0 && origin.runs().front().source == 0) {
        if (const auto source = origin.source(field)) column.shareBlocks(*source->textColumn(field), origin.runs().front().count);
    }
    return column;
}

void Table::appendCell(std::size_t field, const NewCell& cell) {
    if (auto* column = std::get_if<TextColumn>(&columns_[field]))
        column->append(cell.state, cell.text, cell.kept);
    else
        std::get<std::vector<Variant>>(columns_[field]).push_back(cell.plain ? *cell.plain : Variant());
}

void Table::takeBackCell(std::size_t field) noexcept {
    if (auto* column = std::get_if<TextColumn>(&columns_[field]))
        column->removeLast();
    else
        std::get<std::vector<Variant>>(columns_[field]).pop_back();
}

void Table::dropOrders() noexcept {
    for (KeptOrder& kept : orders_) {
        if (kept.collation || kept.sortedWithout != 0) kept = {};
    }
}

RowId Table::append(std::span<const Variant> values, RowState state) {
    std::vector<NewCell> cells;
    cells.reserve(values.size());
    for (std::size_t field = 0; field < values.size(); ++field) {
        if (textColumn(field))
            cells.push_back({stateOf(values[field]), textOf(values[field]), values[field].keptText()});
        else
            cells.push_back({.state = stateOf(values[field]), .plain = &values[field]});
    }
    return append(cells, state);
}

RowId Table::append(std::span<const NewCell> cells, RowState state) {
    if (rowCount() >= std::numeric_limits<std::int32_t>::max()) raise(error::MultipleStep);  // positions are 32-bit
    announce();
    const auto row = static_cast<RowId>(rowCount());
    std::size_t field = 0;
    try {
        for (; field < columns_.size(); ++field) appendCell(field, cells[field]);
    } catch (const host::HostError&) {
        while (field-- > 0) takeBackCell(field);  // a column that is full leaves no half row behind
        throw;
    }
    traceRow(row);
    dropOrders();
    states_.push_back(state);
    if (row % 64 == 0) live_.grow(row + std::size_t{64});
    if (row % rowsOfBlock == 0) liveInBlock_.push_back(0);
    if (state != RowState::Deleted) {
        live_.set(row);
        ++liveInBlock_.back();
        ++liveCount_;
    }
    notify(row);
    return row;
}

void Table::setCell(RowId row, std::size_t field, const Variant& value) {
    if (auto* column = std::get_if<TextColumn>(&columns_[field]))
        column->assign(row, stateOf(value), textOf(value), value.keptText());
    else
        std::get<std::vector<Variant>>(columns_[field])[row] = value;
    orders_[field] = {};
    origins_[field].clear();
}

void Table::change(RowId row, std::span<const std::optional<Variant>> values) {
    announce();
    if (states_[row] == RowState::Unmodified) {
        keepOriginal(row);
        states_[row] = RowState::Modified;
    }
    const auto original = originals_.find(row);
    for (std::size_t field = 0; field < values.size(); ++field) {
        if (!values[field]) continue;
        setCell(row, field, *values[field]);
        if (original != originals_.end()) original->second.assigned[field] = true;
    }
    notify(row);
}

void Table::remove(RowId row) {
    if (!isLive(row)) return;
    announce();
    if (states_[row] == RowState::Unmodified) keepOriginal(row);
    states_[row] = RowState::Deleted;
    live_.clear(row);
    --liveInBlock_[row / rowsOfBlock];
    --liveCount_;
    notify(row);
}

void Table::keepOriginal(RowId row) {
    Original& original = originals_[row];
    original.assigned.resize(fields_.size());
    original.values.reserve(fields_.size());
    for (std::size_t field = 0; field < fields_.size(); ++field) original.values.push_back(value(row, field));
}

const Table::Original* Table::original(RowId row) const noexcept {
    const auto found = originals_.find(row);
    return found == originals_.end() ? nullptr : &found->second;
}

void Table::announce() {
    for (Observer* observer : observers_) observer->rowChanging();
}

void Table::notify(RowId row) noexcept {
    for (Observer* observer : observers_) observer->rowChanged(row);
}

bool Table::hasOrderOf(std::size_t field, const Collation& collation) const noexcept {
    return orders_[field].collation == &collation;
}

const Table::Order& Table::orderOf(std::size_t field, const Collation& collation) const {
    KeptOrder& kept = orders_[field];
    if (kept.collation != &collation) {
        const TextColumn& column = *textColumn(field);
        kept = {};
        std::vector<RowId>& rows = kept.order.rows;
        rows.reserve(column.size());
        for (RowId row = 0; row < column.size(); ++row) {
            if (column.state(row) == CellState::Value) rows.push_back(row);
        }
        sortByText(column, collation, rows);
        kept.order.places.resize(column.size());
        for (std::uint32_t place = 0; place < rows.size(); ++place) kept.order.places[rows[place]] = place;
        kept.collation = &collation;
    }
    return kept.order;
}

}  // namespace lorvane::recordset
