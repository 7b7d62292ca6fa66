#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "recordset/FieldType.h"
#include "recordset/RowBits.h"

namespace lorvane::recordset {

class Collation;
class Table;

/// A filter text, read once and bound to the fields of a table.
///
/// `Field op Value`, joined by AND and OR. The operators are = <> < <= > >= LIKE. A field name with other signs than letters, digits and "_" stands in "[ ]". A
/// text stands in quotes, a quote inside it doubled, or between "#" signs; a date between "#" signs; numbers may carry "$", decimals and an exponent.
/// AND and OR bind alike, from the left. Parentheses group, but a group with an OR in it cannot stand beside an AND.
/// LIKE takes one "*" or "%" at the end, or one at each end; any other is an ordinary character.
///
/// "=", "<>" and LIKE compare text code unit by code unit, case folded; "<" and its kin by the collation. Cells that are Null or were never assigned meet no
/// clause.
class Criteria {
public:
    /// Raises `BadArgument` (3001) for a text that cannot be read: syntax, an unknown field, a value that the field's type cannot take.
    static Criteria parse(std::u16string_view text, std::span<const FieldDefinition> fields);

    bool matches(const Table& table, RowId row, const Collation& collation) const;
    /// All rows that match and are not deleted.
    RowBits select(const Table& table, const Collation& collation) const;

    enum class Relation { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Contains, StartsWith };

    struct Clause {
        std::size_t field = 0;
        Relation relation = Relation::Equal;
        bool isText = true;
        std::u16string text;    // as given, for the collation
        std::u16string folded;  // for the rest
        double number = 0;      // for numbers, dates and booleans
    };

private:
    friend class CriteriaParser;
    enum class Step : std::uint8_t { Clause, And, Or };

    std::vector<Clause> clauses_;  // in the order of their steps
    std::vector<Step> steps_;      // operands in front of their operator
};

}  // namespace lorvane::recordset
