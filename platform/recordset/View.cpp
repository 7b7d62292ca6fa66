#include "recordset/View.h"

#include <algorithm>

#include "recordset/Collation.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

// Up to so many changed rows are put right one by one; with more the index is made anew.
constexpr std::size_t mendable = 64;

constexpr std::size_t largestKeptRoom = 4096;  // units of an edited text that stay for the next row

}  // namespace

View::View(std::shared_ptr<Table> table, std::shared_ptr<const Collation> collation) : table_(std::move(table)), collation_(std::move(collation)) {
    resolve();
}

View::~View() {
    if (observing_) table_->forget(*this);
}

// ---- the index

void View::rowChanging() {
    resolve();  // the first row is that of before the change
}

void View::rowChanged(RowId row) noexcept {
    if (indexState_ == IndexState::None) return;
    changed_.push_back(row);
    if (changed_.size() > mendable) dropIndex(false);
}

void View::dropIndex(bool keepRows) {
    changed_.clear();
    if (keepRows && indexState_ == IndexState::Rows) return;
    indexState_ = IndexState::None;
    index_ = {};
}

void View::buildIndex() {
    const RowBits rows = filter_ ? filter_->select(*table_, *collation_) : table_->liveRows();
    index_.clear();
    index_.reserve(rows.count());
    rows.forEach([this](RowId row) { index_.push_back(row); });
    indexedRows_ = table_->rowCount();
    changed_.clear();
    indexState_ = IndexState::Rows;
}

void View::ensureIndex() {
    if (indexState_ != IndexState::None && !changed_.empty()) mendIndex();
    if (indexState_ == IndexState::None) buildIndex();
    if (indexState_ == IndexState::Rows && !sort_.empty()) {
        orderRows(*table_, sort_, *collation_, index_);
        indexState_ = IndexState::Ordered;
    }
}

void View::mendIndex() {
    std::ranges::sort(changed_);
    changed_.erase(std::ranges::unique(changed_).begin(), changed_.end());
    // All of them leave before any returns: only rows with their indexed values may be compared with.
    for (const RowId row : changed_) {
        if (row >= indexedRows_) continue;
        const bool atHint = cursor_.row == row && cursor_.hint < index_.size() && index_[cursor_.hint] == row;
        const auto place = atHint ? index_.begin() + static_cast<std::ptrdiff_t>(cursor_.hint) : std::ranges::find(index_, row);
        if (place != index_.end()) index_.erase(place);
    }
    for (const RowId row : changed_) {
        if (belongs(row)) index_.insert(index_.begin() + static_cast<std::ptrdiff_t>(lowerBound(row)), row);
    }
    changed_.clear();
    indexedRows_ = table_->rowCount();
}

bool View::belongs(RowId row) const {
    return table_->isLive(row) && (!filter_ || filter_->matches(*table_, row, *collation_));
}

bool View::isBefore(RowId a, RowId b) const {
    const int order = indexState_ == IndexState::Ordered ? compareRows(*table_, sort_, *collation_, a, b) : 0;
    return order != 0 ? order < 0 : a < b;
}

std::size_t View::lowerBound(RowId row) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(index_, row, [this](RowId a, RowId b) { return isBefore(a, b); }) - index_.begin());
}

void View::setFilter(std::u16string_view criteria) {
    std::optional<Criteria> filter;
    if (!criteria.empty()) filter = Criteria::parse(criteria, table_->fields());
    finishEdit();
    filter_ = std::move(filter);
    filterText_ = criteria;
    dropIndex(false);
    startOver();
}

void View::setSort(std::u16string_view order) {
    std::vector<SortKey> sort = parseSort(order, table_->fields());
    finishEdit();
    // Rows that the filter chose and no sort has touched yet can be sorted as they are; with changes outstanding they are chosen anew.
    dropIndex(changed_.empty());
    sort_ = std::move(sort);
    sortText_ = order;
    startOver();
}

// The first row is looked up when it is needed: a filter is often followed by a sort.
void View::startOver() {
    cursor_ = {};
    if (!isIndexed()) {
        resolve();
    } else if (!observing_) {
        table_->observe(*this);
        observing_ = true;
    }
}

// ---- the position

std::size_t View::count() {
    if (!filter_) return table_->liveCount();
    if (indexState_ == IndexState::None) buildIndex();
    if (!changed_.empty()) ensureIndex();
    return index_.size();
}

std::int32_t View::recordCount() {
    return static_cast<std::int32_t>(count());
}

void View::goTo(std::size_t position) {
    if (isIndexed()) {
        ensureIndex();
        cursor_ = {Place::Row, index_[position], position};
    } else {
        cursor_ = {Place::Row, table_->liveAt(position), 0};
    }
}

void View::goBehind(std::size_t position) {
    if (position < count())
        goTo(position);
    else
        cursor_.place = Place::Eof;
}

void View::resolve() {
    if (cursor_.place == Place::First) goBehind(0);
}

View::Spot View::locate() {
    if (!isIndexed()) return {table_->liveBefore(cursor_.row), table_->isLive(cursor_.row)};
    ensureIndex();
    if (cursor_.hint >= index_.size() || index_[cursor_.hint] != cursor_.row) cursor_.hint = lowerBound(cursor_.row);
    return {cursor_.hint, cursor_.hint < index_.size() && index_[cursor_.hint] == cursor_.row};
}

bool View::atBof() {
    if (editMode_ == EditMode::Add) return false;
    resolve();
    return cursor_.place == Place::Bof || (cursor_.place == Place::Eof && count() == 0);
}

bool View::atEof() {
    if (editMode_ == EditMode::Add) return false;
    resolve();
    return cursor_.place == Place::Eof || (cursor_.place == Place::Bof && count() == 0);
}

void View::moveFirst() {
    finishEdit();
    if (count() == 0) raise(error::NoCurrentRecord);
    goTo(0);
}

void View::moveLast() {
    finishEdit();
    if (count() == 0) raise(error::NoCurrentRecord);
    goTo(count() - 1);
}

// Whether the index is as the rows are, and the current row stands where it was last seen.
bool View::isWalkable() const noexcept {
    return indexState_ == (sort_.empty() ? IndexState::Rows : IndexState::Ordered) && changed_.empty() && cursor_.hint < index_.size() &&
           index_[cursor_.hint] == cursor_.row;
}

void View::moveNext() {
    finishEdit();
    resolve();
    if (cursor_.place == Place::Row && isIndexed() && isWalkable()) {
        const std::size_t next = cursor_.hint + 1;
        if (next == index_.size()) {
            cursor_.place = Place::Eof;
            return;
        }
        cursor_ = {Place::Row, index_[next], next};
        readAhead_.moveTo(*table_, index_, next);
        return;
    }
    if (cursor_.place == Place::Eof || (cursor_.place == Place::Bof && count() == 0)) raise(error::NoCurrentRecord);
    if (cursor_.place == Place::Bof) return goTo(0);
    if (isIndexed()) {
        const Spot spot = locate();
        return goBehind(spot.position + (spot.isThere ? 1 : 0));
    }
    if (const auto next = table_->liveFrom(std::size_t{cursor_.row} + 1))
        cursor_.row = *next;
    else
        cursor_.place = Place::Eof;
}

void View::movePrevious() {
    finishEdit();
    resolve();
    if (cursor_.place == Place::Bof || (cursor_.place == Place::Eof && count() == 0)) raise(error::NoCurrentRecord);
    const std::size_t position = cursor_.place == Place::Eof ? count() : locate().position;
    if (position == 0)
        cursor_.place = Place::Bof;
    else
        goTo(position - 1);
}

std::int32_t View::absolutePosition() {
    if (editMode_ == EditMode::Add) return -1;
    resolve();
    if (cursor_.place == Place::Row) {
        const Spot spot = locate();
        return spot.isThere ? static_cast<std::int32_t>(spot.position + 1) : -1;
    }
    if (count() == 0) return -1;
    return cursor_.place == Place::Bof ? -2 : -3;
}

void View::setAbsolutePosition(std::int32_t position) {
    finishEdit();
    if (count() == 0) raise(error::NoCurrentRecord);
    if (position < 1 || static_cast<std::size_t>(position) > count()) raise(error::BadArgument);
    goTo(static_cast<std::size_t>(position) - 1);
}

std::vector<RowId> View::rows() {
    finishEdit();
    if (isIndexed()) {
        ensureIndex();
        return index_;
    }
    std::vector<RowId> all;
    all.reserve(table_->liveCount());
    table_->liveRows().forEach([&](RowId row) { all.push_back(row); });
    return all;
}

// ---- values and rows

RowId View::currentRow() {
    resolve();
    if (cursor_.place != Place::Row || !table_->isLive(cursor_.row)) raise(error::NoCurrentRecord);
    return cursor_.row;
}

Variant View::editedValue(std::size_t field) const {
    const Edit& edit = edit_[field];
    if (!table_->textColumn(field)) return edit.plain;
    if (edit.state != CellState::Value) return edit.state == CellState::Null ? Variant::null() : Variant();
    return edit.kept ? Variant(*edit.kept) : Variant(edit.text);
}

Variant View::value(std::size_t field) {
    if (editMode_ == EditMode::Add) return editedValue(field);
    const RowId row = currentRow();
    if (editMode_ == EditMode::InProgress && edit_[field].assigned) return editedValue(field);
    table_->noteRead(row);
    readAhead_.note(field);
    return table_->value(row, field);
}

void View::clearEdit() {
    edit_.resize(table_->fields().size());
    for (Edit& edit : edit_) {
        if (!edit.assigned) continue;
        edit.assigned = false;
        edit.state = CellState::Empty;
        edit.kept.reset();
        edit.plain = {};
        if (edit.text.capacity() > largestKeptRoom) edit.text = {};
    }
}

void View::setValue(std::size_t field, const Variant& value) {
    if (editMode_ != EditMode::Add) currentRow();
    const FieldDefinition& definition = table_->fields()[field];
    const bool isTextField = table_->textColumn(field) != nullptr;
    std::optional<Variant> converted;
    if (!isTextField || !isTextFor(definition, value)) converted = convertedFor(definition, value);
    if (editMode_ == EditMode::None) {
        clearEdit();
        editMode_ = EditMode::InProgress;
    }
    Edit& edit = edit_[field];
    edit.assigned = true;
    if (!isTextField) {
        edit.plain = std::move(*converted);
        return;
    }
    const Variant& text = converted ? *converted : value;
    edit.state = stateOf(text);
    edit.kept.reset();
    if (edit.state != CellState::Value) return;
    if (const host::KeptText* kept = text.keptText())
        edit.kept = *kept;
    else
        edit.text = text.text();
}

void View::addNew() {
    finishEdit();
    resolve();
    cursorBeforeAdd_ = cursor_;
    clearEdit();
    editMode_ = EditMode::Add;
}

void View::finishEdit() {
    if (editMode_ != EditMode::None) update();
}

void View::update() {
    switch (editMode_) {
        case EditMode::Add:
            return commitAdded();
        case EditMode::InProgress:
            return commitChanged();
        case EditMode::None:
            break;
    }
    resolve();
    if (cursor_.place != Place::Row) raise(error::NoCurrentRecord);
}

void View::commitAdded() {
    newCells_.clear();
    for (std::size_t field = 0; field < edit_.size(); ++field) {
        const Edit& edit = edit_[field];
        if (table_->textColumn(field))
            newCells_.push_back({.state = edit.state, .text = edit.text, .kept = edit.kept ? &*edit.kept : nullptr});
        else
            newCells_.push_back({.state = stateOf(edit.plain), .plain = &edit.plain});
    }
    editMode_ = EditMode::None;
    cursor_ = cursorBeforeAdd_;
    const RowId row = table_->append(newCells_);
    cursor_ = {belongs(row) ? Place::Row : Place::Eof, row, 0};
}

void View::commitChanged() {
    editMode_ = EditMode::None;
    const RowId row = currentRow();
    const Spot before = filter_ ? locate() : Spot{0, false};
    std::vector<std::optional<Variant>> values(edit_.size());
    for (std::size_t field = 0; field < edit_.size(); ++field) {
        if (edit_[field].assigned) values[field] = editedValue(field);
    }
    table_->change(row, values);
    // A row that the filter no longer lets in leaves at once, and the one behind it is current.
    if (before.isThere && !belongs(row)) goBehind(before.position);
}

void View::cancelUpdate() {
    if (editMode_ == EditMode::Add) cursor_ = cursorBeforeAdd_;
    editMode_ = EditMode::None;
}

void View::remove() {
    if (editMode_ == EditMode::Add) return cancelUpdate();
    const RowId row = currentRow();
    editMode_ = EditMode::None;
    if (isIndexed()) locate();  // so that the row is found in the index without a search
    table_->remove(row);
}

std::int32_t View::status() {
    if (editMode_ == EditMode::Add) return static_cast<std::int32_t>(RowState::New);
    resolve();
    if (cursor_.place != Place::Row) raise(error::NoCurrentRecord);
    return static_cast<std::int32_t>(table_->state(cursor_.row));
}

}  // namespace lorvane::recordset
