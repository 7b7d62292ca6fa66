#include "recordset/Criteria.h"

#include <gtest/gtest.h>

#include "RecordsetBuilder.h"
#include "host/Locale.h"
#include "recordset/Errors.h"
#include "recordset/Table.h"

namespace lorvane::recordset {
namespace {

// Four rows that differ in each field.
class CriteriaText : public testing::Test {
protected:
    CriteriaText()
        : table_({completed({u"Name", data_type::VarChar, 100, field_attribute::IsNullable}), completed({u"Full Text", data_type::VarWChar, 100}),
                  completed({u"Number", data_type::Integer}), completed({u"Price", data_type::Double}), completed({u"Day", data_type::Date}),
                  completed({u"Done", data_type::Boolean}), completed({u"Like", data_type::VarChar, 100})}) {
        add(u"Alpha", u"it's", 1, 0.5, u"1995-08-24", false, u"x");
        add(u"beta", u"two words", 2, 12.345, u"1995-08-25", true, u"y");
        add(u"GAMMA", u"a*b%c", 30, -4000, u"2028-01-10T09:00", true, u"z");
        table_.append(std::vector<Variant>{Variant::null(), Variant(), Variant(), Variant(), Variant(), Variant(), Variant()});
    }

    void add(std::u16string_view name, std::u16string_view full, std::int32_t number, double price, std::u16string_view day, bool done,
             std::u16string_view like) {
        table_.append(std::vector<Variant>{name, full, number, price, host::dateTimeFromIso(day), done, like});
    }

    // The rows that match, as "013".
    std::string rows(std::u16string_view text) const {
        const auto criteria = Criteria::parse(text, table_.fields());
        std::string found;
        criteria.select(table_, *Collation::of(u"en-US")).forEach([&](RowId row) { found += static_cast<char>('0' + row); });
        for (RowId row = 0; row < table_.rowCount(); ++row) {
            const bool listed = found.find(static_cast<char>('0' + row)) != std::string::npos;
            EXPECT_EQ(criteria.matches(table_, row, *Collation::of(u"en-US")), listed) << "row " << row;
        }
        return found;
    }

    Table table_;
};

struct Case {
    std::u16string_view text;
    std::string rows;
};

TEST_F(CriteriaText, Meanings) {
    const Case cases[] = {
        // Text by "=" and "<>" regardless of case; the others by the collation.
        {u"Name = 'alpha'", "0"},
        {u"name='ALPHA'", "0"},
        {u"Name <> 'alpha'", "12"},
        {u"Name < 'Beta'", "0"},
        {u"Name <= 'Beta'", "01"},
        {u"Name > 'ALPHA'", "12"},
        {u"Name >= 'beta'", "12"},
        {u"Name = 'alph'", ""},
        {u"Name = ''", ""},
        // Names.
        {u"[Name] = 'alpha'", "0"},
        {u"[Full Text] = 'two words'", "1"},
        {u"Like = 'x'", "0"},
        {u"Like LIKE 'x*'", "0"},
        // Quotes.
        {u"[Full Text] = 'it''s'", "0"},
        {u"[Full Text] = #it's#", "0"},
        {u"[full text] LIKE '*''*'", "0"},
        // Patterns.
        {u"Name LIKE 'a*'", "0"},
        {u"Name like 'A%'", "0"},
        {u"Name LIKE '*A'  OR Name = 'x' ", "!"},
        {u"Name LIKE '*am*'", "2"},
        {u"Name LIKE '%am*'", "2"},
        {u"Name LIKE '*am%'", "2"},
        {u"Name LIKE 'alpha'", "0"},
        {u"Name LIKE 'alph'", ""},
        {u"Name LIKE '*'", "012"},
        {u"Name LIKE '**'", "012"},
        {u"[Full Text] LIKE '***'", "2"},
        {u"[Full Text] LIKE '*a*b%c*'", "2"},
        {u"[Full Text] LIKE '*%c*'", "2"},
        {u"[Full Text] LIKE '*o w*'", "1"},
        {u"[Full Text] LIKE ''", ""},
        // Numbers.
        {u"Number = 2", "1"},
        {u"Number <> 2", "02"},
        {u"Number >= 2 AND Number < 30", "1"},
        {u"Number = '2'", "1"},
        {u"Price = 12.345", "1"},
        {u"Price < -3.9E+3", "2"},
        {u"Price = $0.50", "0"},
        {u"Price > -$4001", "012"},
        {u"[Name] = 5", ""},
        // Dates.
        {u"Day = #8/24/95#", "0"},
        {u"Day > #1995-08-24#", "12"},
        {u"Day = #1/10/2028 9:00 AM#", "2"},
        {u"Day < '8/25/1995'", "0"},
        // Booleans.
        {u"Done = True", "12"},
        {u"Done = false", "0"},
        {u"Done <> 0", "12"},
        {u"Done = 'TRUE'", "12"},
        // AND and OR bind alike, from the left.
        {u"Number = 1 OR Number = 2 AND Name = 'beta'", "1"},
        {u"Name = 'beta' AND Number = 2 OR Number = 1", "01"},
        {u"Number=1 or Number=30", "02"},
        // Groups.
        {u"(Number = 2 AND Name = 'beta') OR Number = 30", "12"},
        {u"(Number = 2 OR Name = 'Alpha') OR Number = 30", "012"},
        {u"(Number = 2 AND Name = 'beta') AND Done = True", "1"},
        {u"Number = 30 OR (Number = 1 OR Number = 2)", "012"},
        {u"((Number = 2))", "1"},
        {u"(Number = 1 AND Done = False) OR (Number = 2 AND Done = True)", "01"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(host::toUtf8(each.text));
        if (each.rows == "!")
            EXPECT_EQ(errorOf([&] { rows(each.text); }), error::BadArgument);
        else
            EXPECT_EQ(rows(each.text), each.rows);
    }
}

TEST_F(CriteriaText, Refused) {
    const std::u16string deep = std::u16string(100, u'(') + u"Number = 1" + std::u16string(100, u')');
    const std::u16string_view refused[] = {
        u" ",
        u"Name",
        u"Name =",
        u"= 'x'",
        u"Name 'x'",
        u"Name == 'x'",
        u"Name = 'x",
        u"Name = x",
        u"Name = #x",
        u"[Name = 'x'",
        u"Nobody = 'x'",
        u"Name = Null",
        u"Number = Null",
        u"Name LIKE",
        u"Name LIKE '*x'",
        u"Name LIKE '%x'",
        u"Name LIKE 5",
        u"Number LIKE '1*'",
        u"Day LIKE '1*'",
        u"Name = True",
        u"Number = True",
        u"Number = 'many'",
        u"Number = 1e",
        u"Number = 1.2.3",
        u"Number = #1#",
        u"Day = True",
        u"Day = #13/13/13#",
        u"Done = maybe",
        u"Name = 'a' AND",
        u"AND Name = 'a'",
        u"Name = 'a' Name = 'b'",
        u"Name = 'a' XOR Name = 'b'",
        u"NOT Name = 'a'",
        u"(Name = 'a'",
        u"Name = 'a')",
        u"()",
        u"Full Text = 'x'",
        u"Name = 'a' ANDName = 'b'",
        u"Name IS 'a'",
        u"(Number = 2 OR Name = 'b') AND Done = True",
        u"Done = True AND (Number = 2 OR Name = 'b')",
        u"((Number = 2 OR Name = 'b')) AND Done = True",
        u"((Number = 2 AND Done = True) OR Name = 'b') AND Done = True",
        u"(Number = 2 OR Name = 'b') OR Number = 1 AND Done = True",
        deep,
    };
    for (const std::u16string_view text : refused)
        EXPECT_EQ(errorOf([&] { Criteria::parse(text, table_.fields()); }), error::BadArgument) << host::toUtf8(text);
}

TEST_F(CriteriaText, DeletedRowsAreNotSelected) {
    table_.remove(1);
    EXPECT_EQ(Criteria::parse(u"Name LIKE '*a*'", table_.fields()).select(table_, *Collation::of(u"en-US")).count(), 2u);
}

TEST_F(CriteriaText, LongChainsAreReadAndRunWithoutNesting) {
    std::u16string text = u"Number = 1";
    for (int i = 0; i < 20000; ++i) text += u" OR Number = 7";
    EXPECT_EQ(rows(text), "0");
}

}  // namespace
}  // namespace lorvane::recordset
