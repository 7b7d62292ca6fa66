#include "recordset/Criteria.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "recordset/Collation.h"
#include "recordset/Table.h"

namespace lorvane::recordset {

namespace {

using Clause = Criteria::Clause;
using Relation = Criteria::Relation;

char16_t folded(char16_t unit) noexcept {
    if (unit >= 0x80) return host::foldUnit(unit);
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

// `folded` is folded already and not longer than the text.
bool startsWith(std::u16string_view text, std::u16string_view start) noexcept {
    return std::equal(start.begin(), start.end(), text.begin(), [](char16_t a, char16_t b) { return a == folded(b); });
}

bool contains(std::u16string_view text, std::u16string_view sought) noexcept {
    return !std::ranges::search(text, sought, {}, folded).empty() || sought.empty();
}

bool holds(Relation relation, int order) noexcept {
    switch (relation) {
        case Relation::Less:
            return order < 0;
        case Relation::LessOrEqual:
            return order <= 0;
        case Relation::Greater:
            return order > 0;
        case Relation::GreaterOrEqual:
            return order >= 0;
        case Relation::Equal:
            return order == 0;
        case Relation::NotEqual:
            return order != 0;
        default:
            return false;
    }
}

bool textMatches(const Clause& clause, std::u16string_view text, const Collation& collation) {
    switch (clause.relation) {
        case Relation::Equal:
            return text.size() == clause.folded.size() && startsWith(text, clause.folded);
        case Relation::NotEqual:
            return text.size() != clause.folded.size() || !startsWith(text, clause.folded);
        case Relation::StartsWith:
            return text.size() >= clause.folded.size() && startsWith(text, clause.folded);
        case Relation::Contains:
            return contains(text, clause.folded);
        default:
            return holds(clause.relation, collation.compare(text, clause.text));
    }
}

bool cellMatches(const Clause& clause, const Table& table, RowId row, const Collation& collation) {
    if (table.cellState(row, clause.field) != CellState::Value) return false;
    if (const TextColumn* column = table.textColumn(clause.field)) return textMatches(clause, column->text(row), collation);
    const host::Variant& value = table.plainValue(row, clause.field);
    if (clause.isText) return textMatches(clause, value.text(), collation);
    const double number = value.toDouble();
    return holds(clause.relation, number < clause.number ? -1 : number > clause.number ? 1 : 0);
}

RowBits selectClause(const Clause& clause, const Table& table, const Collation& collation) {
    RowBits rows(table.rowCount());
    const TextColumn* column = table.textColumn(clause.field);
    if (column && clause.relation == Relation::Contains) {
        table.searchableColumn(clause.field).findContaining(clause.folded, rows);
    } else if (column && clause.relation == Relation::Equal) {
        const auto count = static_cast<RowId>(table.rowCount());
        for (RowId row = 0; row < count; ++row) {
            if (column->length(row) == clause.folded.size() && column->state(row) == CellState::Value && startsWith(column->text(row), clause.folded))
                rows.set(row);
        }
    } else {
        table.liveRows().forEach([&](RowId row) {
            if (cellMatches(clause, table, row, collation)) rows.set(row);
        });
    }
    return rows;
}

}  // namespace

bool Criteria::matches(const Table& table, RowId row, const Collation& collation) const {
    std::vector<bool> values;
    std::size_t next = 0;
    for (const Step step : steps_) {
        if (step == Step::Clause) {
            values.push_back(cellMatches(clauses_[next++], table, row, collation));
            continue;
        }
        const bool last = values.back();
        values.pop_back();
        values.back() = step == Step::And ? (values.back() && last) : (values.back() || last);
    }
    return values.back();
}

RowBits Criteria::select(const Table& table, const Collation& collation) const {
    std::vector<RowBits> values;
    std::size_t next = 0;
    for (const Step step : steps_) {
        if (step == Step::Clause) {
            values.push_back(selectClause(clauses_[next++], table, collation));
            continue;
        }
        const RowBits last = std::move(values.back());
        values.pop_back();
        step == Step::And ? values.back() &= last : values.back() |= last;
    }
    RowBits rows = std::move(values.back());
    rows &= table.liveRows();
    return rows;
}

}  // namespace lorvane::recordset
