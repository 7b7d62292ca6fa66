#include "recordset/View.h"

#include <algorithm>

#include "recordset/Collation.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

using host::Variant;

namespace {

// Up to so many changed rows are put right one by one; with more the index is made anew.
constexpr std::size_t mendable = 64;

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

void View::moveNext() {
    finishEdit();
    resolve();
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

Variant View::value(std::size_t field) {
    if (editMode_ == EditMode::Add) return edit_[field].value_or(Variant());
    const RowId row = currentRow();
    if (editMode_ == EditMode::InProgress && edit_[field]) return *edit_[field];
    table_->noteRead(row);
    return table_->value(row, field);
}

void View::setValue(std::size_t field, const Variant& value) {
    if (editMode_ != EditMode::Add) currentRow();
    Variant converted = convertedFor(table_->fields()[field], value);
    if (editMode_ == EditMode::None) {
        edit_.assign(table_->fields().size(), std::nullopt);
        editMode_ = EditMode::InProgress;
    }
    edit_[field] = std::move(converted);
}

void View::addNew() {
    finishEdit();
    resolve();
    cursorBeforeAdd_ = cursor_;
    edit_.assign(table_->fields().size(), std::nullopt);
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
    std::vector<Variant> values;
    values.reserve(edit_.size());
    for (auto& value : edit_) values.push_back(value ? std::move(*value) : Variant());
    editMode_ = EditMode::None;
    cursor_ = cursorBeforeAdd_;
    const RowId row = table_->append(values);
    cursor_ = {belongs(row) ? Place::Row : Place::Eof, row, 0};
}

void View::commitChanged() {
    editMode_ = EditMode::None;
    const RowId row = currentRow();
    const Spot before = filter_ ? locate() : Spot{0, false};
    table_->change(row, edit_);
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
