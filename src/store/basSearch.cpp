#include "store/basSearch.h"

#include <algorithm>

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "store/TemplateList.h"
#include "store/TemplateRows.h"

namespace lorvane::store {

using namespace host;

namespace {

std::u16string quotesDoubled(std::u16string_view text) {
    return Replace(text, u"'", u"''");
}

std::u16string anywhereIn(std::u16string_view field, std::u16string_view text) {
    return std::u16string(field) + u" LIKE '*" + quotesDoubled(text) + u"*'";
}

void copyRowsOfCategory(const Recordset& source, const Recordset& target, std::u16string_view category) {
    const TemplateFields from(source);
    const TemplateFields to(target);
    const TableRows rows(source), added(target);
    for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext()) {
        Variant categories = from.categories.Value();
        if (!CategoryInTemplateCategories(category, textIn(categories))) continue;
        added.AddNew();
        to.entryId.Value(from.entryId.Value());
        to.storeId.Value(from.storeId.Value());
        to.subject.Value(from.subject.Value());
        to.categories.Value(from.categories.Value());
        added.Update();
    }
}

bool sameInUpperCase(std::u16string_view a, std::u16string_view b) {
    return std::ranges::equal(a, b, [](char16_t x, char16_t y) { return x == y || upperUnit(x) == upperUnit(y); });
}

}  // namespace

Recordset FilterEmailSubject(const Recordset& table, std::u16string_view field, std::u16string_view text) {
    Recordset result;
    withErrorBox(u"FilterEmailSubject", [&] {
        const Recordset clone = table.Clone();
        clone.Filter(anywhereIn(field, text));
        result = clone;
    });
    return result;
}

Recordset FilterEmailSubjectAndCategory(const Recordset& table, std::u16string_view text, std::u16string_view category) {
    Recordset result;
    withErrorBox(u"FilterEmailSubject", [&] {
        const Recordset clone = table.Clone();
        const std::u16string soughtCategory = quotesDoubled(category);
        if (!text.empty()) clone.Filter(anywhereIn(u"strSubject", text));
        const Recordset matching = newTemplateTable();
        if (clone.RecordCount() > 0)
            copyRowsOfCategory(clone, matching, soughtCategory);
        else
            CopyTemplateRecords(clone, matching, false);
        result = matching;
    });
    return result;
}

bool CategoryInTemplateCategories(std::u16string_view category, std::u16string_view list) {
    bool found = false;
    std::size_t comma = 0;
    for (std::size_t start = 0; comma != std::u16string_view::npos; start = comma + 1) {
        comma = list.find(u',', start);
        if (sameInUpperCase(Trim(list.substr(start, comma - start)), category)) found = true;
    }
    return found;
}

}  // namespace lorvane::store
