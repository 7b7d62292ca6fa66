#include "store/basSearch.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "store/TemplateList.h"

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
    constexpr std::u16string_view names[] = {u"strEntryID", u"strStoreID", u"strSubject", u"strCategories"};
    const Field from[] = {source.Fields(names[0]), source.Fields(names[1]), source.Fields(names[2]), source.Fields(names[3])};
    const Field to[] = {target.Fields(names[0]), target.Fields(names[1]), target.Fields(names[2]), target.Fields(names[3])};
    for (source.MoveFirst(); !source.EndOfFile(); source.MoveNext()) {
        if (!CategoryInTemplateCategories(category, from[3].text())) continue;
        target.AddNew();
        for (std::size_t field = 0; field < std::size(names); ++field) to[field].Value(from[field].Value());
        target.Update();
    }
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
    const std::u16string sought = UCase(category);
    bool found = false;
    for (std::size_t start = 1; start != 0;) {
        const std::size_t comma = InStr(start, list, u",");
        const std::u16string_view piece = Trim(comma == 0 ? Mid(list, start) : Mid(list, start, comma - start));
        if (UCase(piece) == sought) found = true;
        start = comma == 0 ? 0 : comma + 1;
    }
    return found;
}

}  // namespace lorvane::store
