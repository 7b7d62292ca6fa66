#pragma once

#include <vector>

#include "recordset/Collation.h"
#include "recordset/TextColumn.h"

namespace lorvane::recordset {

/// Puts rows of a text column, all of them with a value, into the collation's order. Rows with equal texts keep the order in which they came.
void sortByText(const TextColumn& column, const Collation& collation, std::vector<RowId>& rows);

/// Two lists of different rows, each as `sortByText` gives it for rows in ascending order, in one.
std::vector<RowId> mergedByText(const TextColumn& column, const Collation& collation, const std::vector<RowId>& a, const std::vector<RowId>& b);

}  // namespace lorvane::recordset
