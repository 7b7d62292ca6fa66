#pragma once

#include <string>
#include <string_view>

#include "host/Adodb.h"

/// The chooser's search: a literal text anywhere in the subject, and a category, combined as AND.
namespace lorvane::store {

/// A clone of the table, filtered to rows whose field holds the text. An error shows a box and gives Nothing.
host::Recordset FilterEmailSubject(const host::Recordset& table, std::u16string_view field, std::u16string_view text);

/// A new table with the rows that hold the text in their subject (all rows for "") and have the category. An error shows a box and gives Nothing.
/// A category name with a single quote never matches: the quote is doubled here though no filter is built from it.
host::Recordset FilterEmailSubjectAndCategory(const host::Recordset& table, std::u16string_view text, std::u16string_view category);

/// True where one of the comma-separated, trimmed names equals the category, any case.
bool CategoryInTemplateCategories(std::u16string_view category, std::u16string_view list);

}  // namespace lorvane::store
