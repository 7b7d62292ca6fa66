#include <gtest/gtest.h>

#include <random>

#include "RecordsetBuilder.h"
#include "recordset/Table.h"

// A text that is read from one cell and assigned to another is the value's, whatever becomes of the cell, the row and the table that it was read from.
namespace lorvane::recordset {
namespace {

constexpr std::u16string_view byName = u"strSubject";

Variant valueOf(const Object& recordset) {
    return field(recordset, byName).get(Member::Value);
}

/// Copies all rows as a caller does: the value that is read is the value that is assigned.
void copyRows(const Object& source, const Object& target) {
    for (source.call(Member::MoveFirst); !atEnd(source); source.call(Member::MoveNext)) addRow(target, byName, valueOf(source));
}

Texts numbered(std::u16string_view text, int count) {
    Texts texts;
    for (int i = 0; i < count; ++i) texts.push_back(std::u16string(text) + host::decimal(i));
    return texts;
}

Object holding(const Texts& texts) {
    const Object table = openedWith({byName});
    for (const std::u16string& text : texts) addRow(table, byName, text);
    return table;
}

TEST(KeptText, AValueIsThatOfTheTimeItWasRead) {
    const Object table = subjects({u"as it was", u"other"});
    const Variant read = valueOf(table);
    const Variant seen = read;
    EXPECT_EQ(seen.text(), u"as it was");
    assign(table, byName, u"as it is");
    table.call(Member::Update);
    EXPECT_EQ(read, Variant(u"as it was"));
    table.call(Member::Delete);
    EXPECT_EQ(read, seen);
    EXPECT_EQ(read.toText(), u"as it was");
}

TEST(KeptText, AValueOutlivesItsTable) {
    Object table = subjects({u"", u"a text of some length that is not kept in place"});
    const Variant empty = valueOf(table);
    table.call(Member::MoveNext);
    const Variant read = valueOf(table);
    table = {};
    EXPECT_EQ(empty, Variant(u""));
    EXPECT_EQ(read, Variant(u"a text of some length that is not kept in place"));
}

TEST(KeptText, CopiedRowsAndTheirSourceChangeEachByItself) {
    Object source = subjects({u"first", u"second", u"third"});
    const Object copy = openedWith({byName});
    copyRows(source, copy);
    source.call(Member::MoveFirst);
    assign(source, byName, u"changed in the source");
    source.call(Member::Update);
    copy.call(Member::MoveFirst);
    copy.call(Member::MoveNext);
    assign(copy, byName, u"changed in the copy");
    copy.call(Member::Update);
    EXPECT_EQ(walk(source), (Texts{u"changed in the source", u"second", u"third"}));
    source = {};
    EXPECT_EQ(walk(copy), (Texts{u"first", u"changed in the copy", u"third"}));
}

TEST(KeptText, AnAssignedTextIsReadInTheRowThatIsBeingAdded) {
    const Object source = subjects({u"to be copied"});
    const Object target = openedWith({byName});
    target.call(Member::AddNew);
    assign(target, byName, valueOf(source));
    EXPECT_EQ(text(target, byName), u"to be copied");
    assign(source, byName, u"changed meanwhile");
    source.call(Member::Update);
    EXPECT_EQ(text(target, byName), u"to be copied");
    assign(target, byName, u"");
    EXPECT_EQ(text(target, byName), u"");
    assign(target, byName, valueOf(source));
    target.call(Member::Update);
    EXPECT_EQ(walk(target), Texts{u"changed meanwhile"});
}

TEST(KeptText, OneTableTakesTextsOfMany) {
    const Object target = openedWith({byName});
    Texts expected;
    for (int i = 0; i < 8; ++i) {
        Object source = holding(numbered(host::decimal(i) + u". table, row ", 5));
        const Texts rows = walk(source);
        expected.insert(expected.end(), rows.begin(), rows.end());
        copyRows(source, target);
        source = {};
    }
    EXPECT_EQ(walk(target), expected);
}

TEST(KeptText, ACopyOfACopyIsSearchedAndSorted) {
    Object first = holding(numbered(u"Text ", 300));
    Object second = openedWith({byName});
    copyRows(first, second);
    first = {};
    addRow(second, byName, u"a text of its own");
    const Object third = openedWith({byName});
    copyRows(second, third);
    second = {};
    third.put(Member::Filter, u"strSubject LIKE '*TEXT 1*' OR strSubject LIKE '*own*'");
    third.put(Member::Sort, u"strSubject");
    const Texts found = walk(third);
    ASSERT_EQ(found.size(), 112u);
    EXPECT_EQ(found[0], u"a text of its own");
    EXPECT_EQ(found[1], u"Text 1");
    EXPECT_EQ(found[2], u"Text 10");
    EXPECT_EQ(found.back(), u"Text 199");
}

TEST(KeptText, LongTextsStandBesideShortOnes) {
    constexpr std::int32_t unlimited = 203;
    const Object source = makeRecordset(Collation::of(u"en-US")), target = makeRecordset(Collation::of(u"en-US"));
    for (const Object& table : {source, target}) {
        appendField(table, byName, unlimited, 0);
        table.call(Member::Open);
    }
    Texts texts;
    for (int i = 0; i < 60; ++i)
        texts.push_back(std::u16string(i % 7 == 3 ? 300'000u + 50'000u * static_cast<unsigned>(i % 5) : 9'000u * static_cast<unsigned>(i % 4),
                                       static_cast<char16_t>(u'a' + i % 26)));
    for (const std::u16string& text : texts) addRow(source, byName, text);
    copyRows(source, target);
    EXPECT_TRUE(walk(source) == texts);
    EXPECT_TRUE(walk(target) == texts);
}

TEST(KeptText, WhateverIsCopiedWhereverAndChanged) {
    std::mt19937 engine(20280110);
    const auto random = [&engine](std::size_t below) { return static_cast<std::size_t>(engine() % below); };
    const auto anyText = [&] { return std::u16string(random(4) == 0 ? random(400) : random(12), static_cast<char16_t>(u'a' + random(26))); };
    constexpr std::size_t most = 40;
    std::vector<std::shared_ptr<Table>> tables;
    std::vector<Texts> models;
    std::vector<std::pair<Variant, std::u16string>> held;
    const auto renew = [&](std::size_t table) {
        tables.resize(std::max(tables.size(), table + 1));
        models.resize(tables.size());
        tables[table] = std::make_shared<Table>(std::vector<FieldDefinition>{{std::u16string(byName), data_type::VarChar, 1000}});
        models[table].clear();
    };
    for (std::size_t table = 0; table < 5; ++table) renew(table);
    for (int step = 0; step < 60'000; ++step) {
        const std::size_t table = random(tables.size());
        Variant value = anyText();
        const std::size_t from = random(tables.size());
        if (random(3) != 0 && !models[from].empty()) value = tables[from]->value(static_cast<RowId>(random(models[from].size())), 0);
        const std::u16string text(value.textView());
        if (held.size() < 50)
            held.emplace_back(value, text);
        else
            held[random(held.size())] = {value, text};
        if (random(20'000) == 0) {
            renew(table);
        } else if (models[table].size() < most) {
            tables[table]->append(std::vector<Variant>{value});
            models[table].push_back(text);
        } else {
            const std::size_t row = random(most);
            tables[table]->change(static_cast<RowId>(row), std::vector<std::optional<Variant>>{value});
            models[table][row] = text;
        }
        if (step % 500 != 0) continue;
        for (std::size_t each = 0; each < tables.size(); ++each) {
            for (RowId row = 0; row < models[each].size(); ++row) ASSERT_EQ(tables[each]->value(row, 0).textView(), models[each][row]) << step << " at " << row;
        }
        for (const auto& [kept, expected] : held) ASSERT_EQ(kept.textView(), expected) << step;
    }
}

}  // namespace
}  // namespace lorvane::recordset
