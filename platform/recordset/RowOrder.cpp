#include "recordset/RowOrder.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "recordset/Collation.h"
#include "recordset/Errors.h"
#include "recordset/Table.h"
#include "recordset/TextSort.h"

namespace lorvane::recordset {

namespace {

bool takeLastWord(std::u16string_view& item, std::u16string_view word) {
    if (item.size() <= word.size() || !host::equalsIgnoreCase(item.substr(item.size() - word.size()), word)) return false;
    const char16_t before = item[item.size() - word.size() - 1];
    if (before != u' ' && before != u']') return false;
    item = host::Trim(item.substr(0, item.size() - word.size()));
    return true;
}

SortKey parseKey(std::u16string_view item, std::span<const FieldDefinition> fields) {
    SortKey key;
    item = host::Trim(item);
    key.descending = takeLastWord(item, u"DESC");
    if (!key.descending) takeLastWord(item, u"ASC");
    if (item.size() >= 2 && item.front() == u'[' && item.back() == u']') item = item.substr(1, item.size() - 2);
    if (item.empty()) raise(error::BadArgument);
    const auto found = std::ranges::find_if(fields, [item](const FieldDefinition& field) { return host::equalsIgnoreCase(field.name, item); });
    if (found == fields.end()) raise(error::ItemNotFound);
    key.field = static_cast<std::size_t>(found - fields.begin());
    return key;
}

int compareCells(const Table& table, std::size_t field, const Collation& collation, RowId a, RowId b) {
    const bool hasA = table.cellState(a, field) == CellState::Value;
    const bool hasB = table.cellState(b, field) == CellState::Value;
    if (!hasA || !hasB) return static_cast<int>(hasA) - static_cast<int>(hasB);
    if (const TextColumn* column = table.textColumn(field)) return collation.compare(column->text(a), column->text(b));
    const host::Variant& x = table.plainValue(a, field);
    const host::Variant& y = table.plainValue(b, field);
    if (x.kind() == host::Variant::Kind::Text) return collation.compare(x.text(), y.text());
    const double left = x.toDouble();
    const double right = y.toDouble();
    return left < right ? -1 : left > right ? 1 : 0;
}

// With the table's kept order the rows need not be compared. It is made for all rows, or once a quarter of their number was sorted without it: a table that is
// filtered again and again, as a list of choices is.
bool usesKeptOrder(const Table& table, std::size_t field, const Collation& collation, std::size_t wanted) {
    if (wanted <= 64) return false;
    return table.hasOrderOf(field, collation) || table.countSorted(field, wanted) >= table.rowCount() / 4 || wanted >= table.liveCount();
}

// Rows that are numbered `shift` higher than in the order.
void takeFrom(const Table::Order& order, RowId shift, std::vector<RowId>& rows) {
    RowBits places(order.rows.size());
    for (const RowId row : rows) places.set(order.places[row - shift]);
    std::size_t next = 0;
    places.forEach([&](std::uint32_t place) { rows[next++] = order.rows[place] + shift; });
}

// Rows, and for each of them the one that it is in the order.
void takeFrom(const Table::Order& order, const std::vector<RowId>& known, std::vector<RowId>& rows) {
    RowBits places(order.rows.size());
    const auto rowAt = std::make_unique_for_overwrite<RowId[]>(order.rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::uint32_t place = order.places[known[i]];
        places.set(place);
        rowAt[place] = rows[i];
    }
    std::size_t next = 0;
    places.forEach([&](std::uint32_t place) { rows[next++] = rowAt[place]; });
}

// The one run that all these rows are in; null where there is none.
const Origin::Run* runOfAll(const Origin& origin, const std::vector<RowId>& rows) {
    const auto& runs = origin.runs();
    if (runs.size() != 1 || rows.front() < runs[0].own || rows.back() - runs[0].own >= runs[0].count) return nullptr;
    return &runs[0];
}

// The same rows, for most of them by the order of the table that they were copied from. False, and nothing is done, where that cannot be or does not pay.
bool orderByOrigin(const Table& table, std::size_t field, const Collation& collation, std::vector<RowId>& rows) {
    const Origin& origin = table.origin(field);
    const auto source = origin.source(field);
    if (!source) return false;
    if (const Origin::Run* const run = runOfAll(origin, rows)) {
        if (!usesKeptOrder(*source, field, collation, rows.size())) return false;
        takeFrom(source->orderOf(field, collation), run->own - run->source, rows);
        return true;
    }
    std::vector<RowId> copied, known, others;
    auto run = origin.runs().begin();
    for (const RowId row : rows) {
        while (run != origin.runs().end() && row >= run->own && row - run->own >= run->count) ++run;
        if (run == origin.runs().end() || row < run->own) {
            others.push_back(row);
        } else {
            copied.push_back(row);
            known.push_back(run->source + (row - run->own));
        }
    }
    if (others.size() > copied.size() || !usesKeptOrder(*source, field, collation, copied.size())) return false;
    takeFrom(source->orderOf(field, collation), known, copied);
    if (others.empty()) {
        rows = std::move(copied);
        return true;
    }
    sortByText(*table.textColumn(field), collation, others);
    rows = mergedByText(*table.textColumn(field), collation, copied, others);
    return true;
}

void orderTexts(const Table& table, std::size_t field, const Collation& collation, bool inRowOrder, std::vector<RowId>& rows) {
    if (inRowOrder && rows.size() > 64 && !table.hasOrderOf(field, collation) && orderByOrigin(table, field, collation, rows)) return;
    if (!inRowOrder || !usesKeptOrder(table, field, collation, rows.size())) {
        sortByText(*table.textColumn(field), collation, rows);
        return;
    }
    const Table::Order& order = table.orderOf(field, collation);
    if (order.rows.size() == rows.size()) {
        rows = order.rows;
        return;
    }
    takeFrom(order, 0, rows);
}

// Where it is known that every row has a value, and an order is at hand, no cell need be looked at.
bool takeOrderAtHand(const Table& table, std::size_t field, const Collation& collation, std::vector<RowId>& rows) {
    if (table.hasOrderOf(field, collation)) {
        const Table::Order& order = table.orderOf(field, collation);
        if (order.rows.size() != table.rowCount()) return false;
        takeFrom(order, 0, rows);
        return true;
    }
    const Origin::Run* const run = runOfAll(table.origin(field), rows);
    if (!run) return false;
    const auto source = table.origin(field).source(field);
    if (!source || !source->hasOrderOf(field, collation)) return false;
    takeFrom(source->orderOf(field, collation), run->own - run->source, rows);
    return true;
}

void orderNumbers(const Table& table, std::size_t field, std::vector<RowId>& rows) {
    struct Numbered {
        double number;
        RowId row;
    };
    std::vector<Numbered> numbered;
    numbered.reserve(rows.size());
    for (const RowId row : rows) numbered.push_back({table.plainValue(row, field).toDouble(), row});
    std::ranges::stable_sort(numbered, {}, &Numbered::number);
    std::ranges::transform(numbered, rows.begin(), &Numbered::row);
}

// Turns the order round, but not that of equal rows.
void reverseGroups(const Table& table, std::size_t field, const Collation& collation, std::vector<RowId>& rows) {
    std::ranges::reverse(rows);
    for (auto first = rows.begin(), end = first; first != rows.end(); first = end) {
        end = std::find_if(first + 1, rows.end(), [&](RowId row) { return compareCells(table, field, collation, *first, row) != 0; });
        std::reverse(first, end);
    }
}

void orderByKey(const Table& table, const SortKey& key, const Collation& collation, bool inRowOrder, std::vector<RowId>& rows) {
    if (inRowOrder && !key.descending && rows.size() > 64 && takeOrderAtHand(table, key.field, collation, rows)) return;
    std::vector<RowId> blanks, values;
    values.reserve(rows.size());
    for (const RowId row : rows) (table.cellState(row, key.field) == CellState::Value ? values : blanks).push_back(row);
    if (table.textColumn(key.field))
        orderTexts(table, key.field, collation, inRowOrder, values);
    else if (storageOf(table.fields()[key.field].type) == Storage::Exact)
        std::ranges::stable_sort(values, [&](RowId a, RowId b) { return compareCells(table, key.field, collation, a, b) < 0; });
    else
        orderNumbers(table, key.field, values);
    if (key.descending) reverseGroups(table, key.field, collation, values);
    std::vector<RowId>& front = key.descending ? values : blanks;
    const std::vector<RowId>& behind = key.descending ? blanks : values;
    if (front.empty()) {
        rows = key.descending ? std::move(blanks) : std::move(values);
        return;
    }
    front.insert(front.end(), behind.begin(), behind.end());
    rows = std::move(front);
}

}  // namespace

std::vector<SortKey> parseSort(std::u16string_view text, std::span<const FieldDefinition> fields) {
    std::vector<SortKey> keys;
    if (host::Trim(text).empty()) return keys;
    bool inBrackets = false;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == u'[') inBrackets = true;
        if (i < text.size() && text[i] == u']') inBrackets = false;
        if (i < text.size() && (text[i] != u',' || inBrackets)) continue;
        keys.push_back(parseKey(text.substr(start, i - start), fields));
        start = i + 1;
    }
    return keys;
}

int compareRows(const Table& table, std::span<const SortKey> keys, const Collation& collation, RowId a, RowId b) {
    for (const SortKey& key : keys) {
        const int order = compareCells(table, key.field, collation, a, b);
        if (order != 0) return key.descending ? -order : order;
    }
    return 0;
}

void orderRows(const Table& table, std::span<const SortKey> keys, const Collation& collation, std::vector<RowId>& rows) {
    // The last key first: each pass keeps what the passes before it have ordered.
    for (std::size_t i = keys.size(); i-- > 0;) orderByKey(table, keys[i], collation, keys.size() == 1, rows);
}

}  // namespace lorvane::recordset
