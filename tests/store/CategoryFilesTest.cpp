#include "store/CategoryFiles.h"

#include <gtest/gtest.h>

#include "FoldersRig.h"

/// The files of category names: written when the tables were loaded, read by who offers the names.
namespace lorvane::store {
namespace {

using namespace host;
using namespace support;

Recordset tableOf(std::initializer_list<std::u16string_view> names) {
    const Recordset table = newCategoryTable();
    for (const std::u16string_view name : names) {
        table.AddNew();
        table.Fields(u"strCategory").Value(name);
        table.Update();
    }
    return table;
}

Names namesIn(const Recordset& table) {
    Names names;
    if (table.RecordCount() == 0) return names;
    for (table.MoveFirst(); !table.EndOfFile(); table.MoveNext()) names.push_back(table.Fields(u"strCategory").text());
    return names;
}

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
        return namesIn(table);
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
    SaveRSToFile(tableOf({u"Sales", u"", u"R&D \"x\" <y>", u"it's", u"caf\u00E9", u"line\r\nbreak"}), path);
    EXPECT_EQ(loaded(), (Names{u"Sales", u"", u"R&D \"x\" <y>", u"it's", u"caf\u00E9", u"line\r\nbreak"}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(CategoryFilesTest, TheFileIsTheRowsetAsATextLine) {
    SaveRSToFile(tableOf({u"Sales"}), path);
    const std::u16string text = ReadFile(path);
    EXPECT_TRUE(text.starts_with(u"<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882'\r\n"));
    EXPECT_TRUE(text.ends_with(u"<rs:data>\r\n\t<rs:insert>\r\n\t\t<z:row strCategory='Sales'/>\r\n\t</rs:insert>\r\n</rs:data>\r\n</xml>\r\n"));
}

TEST_F(CategoryFilesTest, ASaveReplacesTheFile) {
    SaveRSToFile(tableOf({u"A long name that a shorter file must not leave behind", u"b"}), path);
    SaveRSToFile(tableOf({u"c"}), path);
    EXPECT_EQ(loaded(), Names{u"c"});
}

TEST_F(CategoryFilesTest, ATableWithoutRowsIsAFileThatLoads) {
    SaveRSToFile(newCategoryTable(), path);
    EXPECT_EQ(loaded(), Names{});
}

TEST_F(CategoryFilesTest, ASignThatTheCodePageLacksIsLostAndNothingElse) {
    SaveRSToFile(tableOf({u"a\uD55Cb", u"c"}), path);
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
    SaveRSToFile(tableOf({u"Sales"}), path);
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

TEST_F(CategoryFilesTest, ATableThatDidNotLoadIsStillUsable) {
    files().WriteText(path, u"<xml");
    const Recordset table = makeRecordset();
    EXPECT_FALSE(LoadRSFromFile(table, path));
    EXPECT_THROW(table.RecordCount(), HostError);
    table.appendField(u"strCategory", adVarChar, 1000);
    table.Open();
    EXPECT_EQ(namesIn(table), Names{});
}

TEST_F(CategoryFilesTest, AFileOfAnotherHandIsTrustedWhereItParses) {
    EXPECT_TRUE(
        loads(u"<?xml version=\"1.0\"?>\n<xml><s:Schema><s:ElementType name=\"row\"><s:AttributeType name=\"STRCATEGORY\"/></s:ElementType></s:Schema>"
              u"<rs:data><z:row STRCATEGORY=\"Sales\"/></rs:data></xml>"));
    EXPECT_EQ(loaded(), Names{u"Sales"});
}

TEST_F(CategoryFilesTest, AFailedSaveShowsTheStandardBoxAndGoesOn) {
    files().CreateFolder(path);
    SaveRSToFile(tableOf({u"Sales"}), path);
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"basGlobals.SaveRSToFile - Lorvane");
    EXPECT_TRUE(run.lastBox().text.starts_with(u"Error 75: ")) << toUtf8(run.lastBox().text);
}

TEST_F(CategoryFilesTest, OnlyTablesThatAreSetAreWrittenAndTheSharedOneOnlyWhileSharing) {
    templateTables() = {};
    writeCategoryFiles();
    EXPECT_FALSE(files().FileExists(path));
    templateTables().rsPrivateCategories = tableOf({u"own"});
    templateTables().rsSharedCategories = tableOf({u"ours"});
    run.setSetting(u"SharedTemplates", u"False");
    writeCategoryFiles();
    EXPECT_EQ(loaded(), Names{u"own"});
    EXPECT_FALSE(files().FileExists(sharedCategoriesPath()));
    run.setSetting(u"SharedTemplates", u"True");
    writeCategoryFiles();
    const Recordset shared = makeRecordset();
    EXPECT_TRUE(LoadRSFromFile(shared, sharedCategoriesPath()));
    EXPECT_EQ(namesIn(shared), Names{u"ours"});
}

TEST(CategoryFilesRebuilding, WalksTheFoldersAndWritesTheFiles) {
    TestRun run;
    usePrivately(run, run.templatesFolder());
    run.addTemplate(u"Offer", plain(u"Text"), u"Sales, Letters");
    MAPIFolder privateFolder, sharedFolder;
    RebuildCategoryFiles(Scope::Private, privateFolder, sharedFolder);
    EXPECT_TRUE(privateFolder);
    EXPECT_FALSE(sharedFolder);
    EXPECT_TRUE(StorageFoldersExist());
    const Recordset table = makeRecordset();
    ASSERT_TRUE(LoadRSFromFile(table, privateCategoriesPath()));
    EXPECT_EQ(namesIn(table), (Names{u"Sales", u"Letters"}));
    EXPECT_TRUE(run.boxes().empty());
}

}  // namespace
}  // namespace lorvane::store
