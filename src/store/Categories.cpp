#include "store/Categories.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"

namespace lorvane::store {

using namespace host;

namespace {

constexpr std::u16string_view categoryField = u"strCategory";

bool hasRows(const Recordset& table) {
    return table && table.RecordCount() > 0;
}

void addCategory(const Recordset& table, std::u16string_view name) {
    table.AddNew();
    table.Fields(categoryField).Value(name);
    table.Update();
}

void mergeInto(const Recordset& merged, const Recordset& source) {
    const Field value = source.Fields(categoryField);
    for (source.MoveFirst(); !source.EndOfFile(); source.MoveNext()) {
        const std::u16string text = value.text();
        if (text.empty()) continue;
        const std::u16string name(Trim(text));
        if (!CategoryInList(merged, categoryField, name)) addCategory(merged, name);
    }
}

Recordset tableOfScope(const Recordset& privateTable, const Recordset& sharedTable, Scope scope) {
    if (scope == Scope::All && !privateTable) scope = Scope::Shared;
    Recordset table = newCategoryTable();
    if (scope == Scope::All) {
        if (hasRows(privateTable)) mergeInto(table, privateTable);
        if (hasRows(sharedTable)) mergeInto(table, sharedTable);
        return table;
    }
    const Recordset& source = scope == Scope::Private ? privateTable : sharedTable;
    return hasRows(source) ? source.Clone() : table;
}

}  // namespace

void AddCategoriesToList(std::u16string_view text, const Recordset& table) {
    withErrorBox(u"basGlobals.AddCategoriesToList", [&] {
        if (Trim(text).empty()) return;
        for (std::size_t start = 1; start != 0;) {
            const std::size_t comma = InStr(start, text, u",");
            const std::u16string_view name = Trim(comma == 0 ? Mid(text, start) : Mid(text, start, comma - start));
            if (!CategoryInList(table, categoryField, name)) addCategory(table, name);
            start = comma == 0 ? 0 : comma + 1;
        }
    });
}

bool CategoryInList(const Recordset& table, std::u16string_view field, std::u16string_view value) {
    bool found = false;
    withErrorBox(u"basGlobals.CategoryInList", [&] {
        const Recordset clone = table.Clone();
        clone.Filter(std::u16string(field) + u" = '" + Replace(value, u"'", u"''") + u"'");
        found = clone.RecordCount() != 0;
    });
    return found;
}

void LoadCategories(ComboBox& combo, const Recordset& privateTable, const Recordset& sharedTable, Scope scope) {
    withErrorBox(u"basGlobals.LoadCategories", [&] {
        combo.Clear();
        const Recordset table = tableOfScope(privateTable, sharedTable, scope);
        combo.AddItem(u"");
        if (table.RecordCount() == 0) return;
        table.Sort(categoryField);
        const Field value = table.Fields(categoryField);
        for (table.MoveFirst(); !table.EndOfFile(); table.MoveNext()) {
            const std::u16string text = value.text();
            if (!text.empty()) combo.AddItem(std::u16string(Trim(text)));
        }
    });
}

}  // namespace lorvane::store
