#include "store/CategoryFiles.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "FoldersRig.h"

/// The files of category names: written when the tables were loaded, read by who offers the names.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

class CategoryFilesTest : public testing::Test {
protected:
    CategoryFilesTest() { EXPECT_TRUE(qz7mCreateStorageFolders()); }

    static Files files() { return apartment().machine.files(); }
    Names loaded() const {
        const Recordset table = makeRecordset();
        if (!LoadRSFromFile(table, path)) {
            ADD_FAILURE() << "the file does not load";
            return {};
        }
        return categoriesIn(table);
    }
    bool loads(std::u16string_view text) const {
        files().WriteText(path, text);
        return LoadRSFromFile(makeRecordset(), path);
    }

    TestRun run;
    std::u16string path = privateCategoriesPath();
};

TEST_F(CategoryFilesTest, TheStorageFoldersAreMadeOnceAndFound) {
    EXPECT_TRUE(StorageFoldersExist());
    EXPECT_TRUE(qz7mCreateStorageFolders());
    EXPECT_TRUE(path.ends_with(u"\\Tolvenar\\Lorvane\\Private.xml"));
    EXPECT_TRUE(sharedCategoriesPath().ends_with(u"\\Tolvenar\\Lorvane\\Shared.xml"));
}

TEST_F(CategoryFilesTest, WhatIsSavedIsLoadedAgain) {
    SaveRSToFile(categoryTable({u"Sales", u"", u"R&D \"x\" <y>", u"it's", u"caf\u00E9", u"line\r\nbreak"}), path);
    EXPECT_EQ(loaded(), (Names{u"Sales", u"", u"R&D \"x\" <y>", u"it's", u"caf\u00E9", u"line\r\nbreak"}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, TheFileIsTheRowsetAsATextLine) {
    SaveRSToFile(categoryTable({u"Sales"}), path);
    const std::u16string text = ReadFile(path);
    EXPECT_TRUE(text.starts_with(u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'\r\n"));
    EXPECT_TRUE(text.ends_with(u"<rs:data>\r\n\t<rs:insert>\r\n\t\t<z:row strCategory='Sales'/>\r\n\t</rs:insert>\r\n</rs:data>\r\n</xml>\r\n"));
}

TEST_F(CategoryFilesTest, ASaveReplacesTheFile) {
    SaveRSToFile(categoryTable({u"A long name that a shorter file must not leave behind", u"b"}), path);
    SaveRSToFile(categoryTable({u"c"}), path);
    EXPECT_EQ(loaded(), Names{u"c"});
}

TEST_F(CategoryFilesTest, ATableWithoutRowsIsAFileThatLoads) {
    SaveRSToFile(newCategoryTable(), path);
    EXPECT_EQ(loaded(), Names{});
}

TEST_F(CategoryFilesTest, ASignThatTheCodePageLacksIsLostAndNothingElse) {
    SaveRSToFile(categoryTable({u"a\uD55Cb", u"c"}), path);
    EXPECT_EQ(loaded(), (Names{u"a?b", u"c"}));
}

TEST_F(CategoryFilesTest, ManyNamesOfFullLengthComeThrough) {
    const Recordset table = newCategoryTable();
    for (int i = 0; i < 300; ++i) {
        table.AddNew();
        table.Fields(u"strCategory").Value(std::u16string(995, u'&') + decimal(10000 + i));
        table.Update();
    }
    SaveRSToFile(table, path);
    const Names names = loaded();
    ASSERT_EQ(names.size(), 300U);
    EXPECT_EQ(names.back(), std::u16string(995, u'&') + u"10299");
}

TEST_F(CategoryFilesTest, AMissingFileIsNoTableAndNoMessage) {
    EXPECT_EQ(ReadFile(path), u"");
    EXPECT_FALSE(LoadRSFromFile(makeRecordset(), path));
    EXPECT_FALSE(LoadRSFromFile(makeRecordset(), path + u"\\beyond.xml"));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, AnUnreadableFileIsNoTableAndNoMessage) {
    files().CreateFolder(path);
    EXPECT_FALSE(LoadRSFromFile(makeRecordset(), path));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, WhatDoesNotParseIsTreatedAsMissing) {
    SaveRSToFile(categoryTable({u"Sales"}), path);
    const std::u16string whole = ReadFile(path);
    for (std::size_t length = 0; length + 3 < whole.size(); length += 41) EXPECT_FALSE(loads(whole.substr(0, length))) << length;
    EXPECT_TRUE(loads(whole.substr(0, whole.size() - 2)));
    EXPECT_FALSE(loads(u"\r\n"));
    EXPECT_FALSE(loads(u"Sales\r\nSupport\r\n"));
    EXPECT_FALSE(loads(whole + whole));
    EXPECT_FALSE(loads(u"<!DOCTYPE xml [<!ENTITY a 'aaaa'>]>" + whole));
    EXPECT_FALSE(loads(Replace(whole, u"'Sales'", u"'Sales")));
    EXPECT_FALSE(loads(Replace(whole, u"Sales", u"R&D")));
    EXPECT_FALSE(loads(Replace(whole, u"<z:row strCategory='Sales'/>", u"<z:row strCategory='Sales'><Lines/></z:row>")));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, WhatStandsBehindTheRowsetMayBeBlankOnly) {
    SaveRSToFile(categoryTable({u"Sales"}), path);
    const std::u16string rowset = ReadFile(path).substr(0, ReadFile(path).size() - 2);
    for (const std::u16string_view tail : {u"", u"\r\n", u"\n", u"\r\n\r\n", u" \t\r\n"}) EXPECT_TRUE(loads(rowset + std::u16string(tail)));
    for (const std::u16string_view tail : {u"x", u"\r\n<xml/>", u"\r\nSales"}) EXPECT_FALSE(loads(rowset + std::u16string(tail)));
}

TEST_F(CategoryFilesTest, HostileTextIsTreatedAsMissing) {
    SaveRSToFile(categoryTable({u"Sales"}), path);
    const std::u16string whole = ReadFile(path);
    std::u16string deep, wide = u"<xml ";
    for (int i = 0; i < 20000; ++i) deep += u"<a>";
    for (int i = 0; i < 20000; ++i) wide += u"a" + decimal(i) + u"='x' ";
    for (const std::u16string& text :
         {u"<!DOCTYPE xml SYSTEM 'file:///etc/passwd'>" + whole, u"<!DOCTYPE xml [<!ENTITY a 'xx'><!ENTITY b '&a;&a;'>]>" + Replace(whole, u"Sales", u"&b;"),
          Replace(whole, u"Sales", u"&b;"), Replace(whole, u"Sales", u"&#x110000;"), Replace(whole, u"'Sales'", u"Sales"),
          Replace(whole, u"<rs:data>", deep + u"<rs:data>"), deep, wide})
        EXPECT_FALSE(loads(text)) << toUtf8(text.substr(0, 80));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, AnotherSchemaIsTrustedAndItsNamesAreNotFound) {
    const Recordset other = makeRecordset();
    other.appendField(u"strName", adVarChar, 1000);
    other.Open();
    other.AddNew();
    other.Fields(u"strName").Value(u"Sales");
    other.Update();
    SaveRSToFile(other, path);
    const Recordset table = makeRecordset();
    EXPECT_TRUE(LoadRSFromFile(table, path));
    EXPECT_EQ(table.RecordCount(), 1);
    EXPECT_THROW(table.Fields(u"strCategory"), HostError);
}

TEST_F(CategoryFilesTest, FurtherFieldsBesideTheNamesDoNotMatter) {
    const Recordset wider = makeRecordset();
    wider.appendField(u"strNote", adVarChar, 1000);
    wider.appendField(u"strCategory", adVarChar, 1000);
    wider.Open();
    wider.AddNew();
    wider.Fields(u"strNote").Value(u"x");
    wider.Fields(u"strCategory").Value(u"Sales");
    wider.Update();
    SaveRSToFile(wider, path);
    EXPECT_EQ(loaded(), Names{u"Sales"});
}

/// A file that another program wrote, byte by byte.
class CategoryFileBytes : public CategoryFilesTest {
protected:
    bool loadsBytes(const Bytes& bytes) {
        const Recordset table = makeRecordset();
        const bool loads = LoadRSFromFile(table, run.writeFile("Foreign.xml", bytes));
        names = loads ? categoriesIn(table) : Names{};
        return loads;
    }
    static Bytes utf8(std::u16string_view text) {
        const std::string encoded = toUtf8(text);
        return Bytes(encoded.begin(), encoded.end());
    }
    static Bytes utf16(std::u16string_view text) {
        Bytes bytes;
        for (const char16_t unit : text) {
            bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
            bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
        }
        return bytes;
    }
    static Bytes joined(Bytes front, const Bytes& back) {
        front.insert(front.end(), back.begin(), back.end());
        return front;
    }
    std::u16string rowsetOf(std::u16string_view name) {
        SaveRSToFile(categoryTable({name}), path);
        return ReadFile(path);
    }
    Names names;
};

TEST_F(CategoryFileBytes, AnotherEncodingIsReadInTheSystemsCodePage) {
    EXPECT_TRUE(loadsBytes(utf8(rowsetOf(u"Sales"))));
    EXPECT_EQ(names, Names{u"Sales"});
    EXPECT_TRUE(loadsBytes(utf8(rowsetOf(u"caf\u00E9")))) << "two signs for one";
    EXPECT_EQ(names, Names{u"caf\u00C3\u00A9"});
}

TEST_F(CategoryFileBytes, ANameOfAnotherCodePageComesOutInOtherSigns) {
    Bytes bytes = utf8(rowsetOf(u"Za~~"));
    const auto first = std::find(bytes.begin(), bytes.end(), std::uint8_t{'~'});
    *first = 0xBF;  // a z with a dot in the code page of the one who wrote it
    *(first + 1) = 0xF3;
    EXPECT_TRUE(loadsBytes(bytes));
    EXPECT_EQ(names, Names{u"Za\u00BF\u00F3"});
}

TEST_F(CategoryFileBytes, AMarkedOrWideEncodingIsTreatedAsMissing) {
    const std::u16string text = rowsetOf(u"Sales");
    EXPECT_FALSE(loadsBytes(joined({0xEF, 0xBB, 0xBF}, utf8(text))));
    EXPECT_FALSE(loadsBytes(joined({0xFF, 0xFE}, utf16(text))));
    EXPECT_FALSE(loadsBytes(utf16(text)));
    EXPECT_FALSE(loadsBytes({}));
    EXPECT_FALSE(loadsBytes({0}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, ATableThatDidNotLoadIsStillUsable) {
    files().WriteText(path, u"<xml");
    const Recordset table = makeRecordset();
    EXPECT_FALSE(LoadRSFromFile(table, path));
    EXPECT_THROW(table.RecordCount(), HostError);
    table.appendField(u"strCategory", adVarChar, 1000);
    table.Open();
    EXPECT_EQ(categoriesIn(table), Names{});
}

TEST_F(CategoryFilesTest, AFileOfAnotherHandIsTrustedWhereItParses) {
    EXPECT_TRUE(
        loads(u"<?xml version=\"1.0\"?>\n<xml><s:Schema><s:ElementType name=\"row\"><s:AttributeType name=\"STRCATEGORY\"/></s:ElementType></s:Schema>"
              u"<rs:data><z:row STRCATEGORY=\"Sales\"/></rs:data></xml>"));
    EXPECT_EQ(loaded(), Names{u"Sales"});
}

TEST_F(CategoryFilesTest, AFailedSaveShowsTheStandardBoxAndGoesOn) {
    files().CreateFolder(path);
    SaveRSToFile(categoryTable({u"Sales"}), path);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
    EXPECT_TRUE(run.lastBox().text.starts_with(u"Error 75: ")) << toUtf8(run.lastBox().text);
}

TEST_F(CategoryFilesTest, AMissingFolderShowsTheStandardBox) {
    SaveRSToFile(categoryTable({u"Sales"}), path + u".d\\Private.xml");
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().text, u"Error 76: Path not found");
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST(CategoryFileFaults, ARefusedWriteShowsTheStandardBoxAndLeavesTheOldFile) {
    TestRun run({.instruments = true});
    ASSERT_TRUE(qz7mCreateStorageFolders());
    SaveRSToFile(categoryTable({u"Sales"}), privateCategoriesPath());
    const std::u16string before = ReadFile(privateCategoriesPath());
    run.faults().failNth(u"Files", u"WriteText", 1, runtime_error::PathFileAccess);
    SaveRSToFile(categoryTable({u"Letters"}), privateCategoriesPath());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error 75: Path/File access error");
    EXPECT_EQ(ReadFile(privateCategoriesPath()), before);
}

TEST(CategoryFileFaults, ATableThatCannotBeSavedShowsTheStandardBoxAndWritesNothing) {
    TestRun run;
    ASSERT_TRUE(qz7mCreateStorageFolders());
    SaveRSToFile(makeRecordset(), privateCategoriesPath());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
    EXPECT_FALSE(apartment().machine.files().FileExists(privateCategoriesPath()));
}

TEST(CategoryFileFaults, AFileThatCannotBeReadIsTreatedAsMissing) {
    TestRun run({.instruments = true});
    ASSERT_TRUE(qz7mCreateStorageFolders());
    SaveRSToFile(categoryTable({u"Sales"}), privateCategoriesPath());
    for (const std::u16string_view member : {u"FileExists", u"ReadText"}) {
        run.faults().failNth(u"Files", member, 1, runtime_error::PathFileAccess);
        EXPECT_FALSE(LoadRSFromFile(makeRecordset(), privateCategoriesPath()));
    }
    EXPECT_TRUE(LoadRSFromFile(makeRecordset(), privateCategoriesPath())) << "the next time it is there";
    EXPECT_TRUE(run.boxes().empty());
}

TEST(CategoryFileFaults, FoldersThatCannotBeMadeFailEachSaveWithItsBox) {
    TestRun run({.instruments = true});
    run.setSetting(u"SharedTemplates", u"True");
    templateTables().rsPrivateCategories = categoryTable({u"own"});
    templateTables().rsSharedCategories = categoryTable({u"ours"});
    run.faults().failNth(u"Files", u"CreateFolder", 1, runtime_error::PathFileAccess);
    writeCategoryFiles();
    EXPECT_FALSE(StorageFoldersExist());
    ASSERT_EQ(run.boxes().size(), 2U);
    for (const auto& box : run.boxes()) EXPECT_EQ(box.title, u"basGlobals.SaveRSToFile - Lorvane");
    writeCategoryFiles();
    EXPECT_TRUE(StorageFoldersExist()) << "made at the next write";
    EXPECT_EQ(run.boxes().size(), 2U);
}

TEST_F(CategoryFilesTest, OnlyTablesThatAreSetAreWrittenAndTheSharedOneOnlyWhileSharing) {
    templateTables() = {};
    writeCategoryFiles();
    EXPECT_FALSE(files().FileExists(path));
    templateTables().rsPrivateCategories = categoryTable({u"own"});
    templateTables().rsSharedCategories = categoryTable({u"ours"});
    run.setSetting(u"SharedTemplates", u"False");
    writeCategoryFiles();
    EXPECT_EQ(loaded(), Names{u"own"});
    EXPECT_FALSE(files().FileExists(sharedCategoriesPath()));
    run.setSetting(u"SharedTemplates", u"True");
    writeCategoryFiles();
    const Recordset shared = makeRecordset();
    EXPECT_TRUE(LoadRSFromFile(shared, sharedCategoriesPath()));
    EXPECT_EQ(categoriesIn(shared), Names{u"ours"});
}

}  // namespace
}  // namespace lorvane::store
