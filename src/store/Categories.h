#pragma once

#include <string>
#include <string_view>

#include "host/Adodb.h"
#include "host/Controls.h"
#include "store/TemplateList.h"

/// The distinct names found in the host's own `Categories` of the templates.
///
/// Each routine compares names in its own way; none is to be brought in line with another.
namespace lorvane::store {

/// Adds each name of a comma-separated list that the table lacks. An empty piece counts as a name.
void AddCategoriesToList(std::u16string_view text, const host::Recordset& table);

/// True where a row's `field` equals `value`, as the table's filter compares.
bool CategoryInList(const host::Recordset& table, std::u16string_view field, std::u16string_view value);

/// Fills a combo with one empty line, which stands for all categories, and the names of the scope in sorted order.
void LoadCategories(host::ComboBox& combo, const host::Recordset& privateTable, const host::Recordset& sharedTable, Scope scope);

}  // namespace lorvane::store
