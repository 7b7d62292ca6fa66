#include <gtest/gtest.h>

#include "host/Connect.h"
#include "host/basGlobals.h"
#include "store/FoldersRig.h"

/// The shared state and the folder routines, as other instances of the add-in reach them by name.
namespace lorvane::host {
namespace {

using namespace support;

/// Another instance of the add-in takes and gives back the shared state by name.
class SharedStateTest : public testing::Test {
protected:
    Object byName = makeObject<Connect>();
    TestRun run;
    Variant folder, nameSpace, application;
    void get() {
        byName.call(Member::WordEditorVariablesGet, {Argument::byReference(folder), Argument::byReference(nameSpace), Argument::byReference(application)});
    }
};

TEST_F(SharedStateTest, NothingReceivesTheCurrentFolder) {
    folder = Variant(Object());
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), run.apartment().TemplatesFolder.EntryID());
    EXPECT_TRUE(nameSpace.toObject() == run.apartment().gNameSpace);
    EXPECT_TRUE(application.toObject() == run.apartment().gOutlook);
}

TEST_F(SharedStateTest, AFolderThatIsThereStays) {
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    folder = Variant(Object(other));
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), other.EntryID());
}

TEST_F(SharedStateTest, SettingTakesAllThree) {
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    byName.call(Member::WordEditorVariablesSet, {Variant(Object(other)), Variant(Object()), Variant(Object(run.application()))});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), other.EntryID());
    EXPECT_FALSE(run.apartment().gNameSpace);
    EXPECT_TRUE(run.apartment().gOutlook);
}

TEST_F(SharedStateTest, WhatIsNoObjectCostsItsOwnStatementOnly) {
    folder = Variant(u"no folder");
    get();
    EXPECT_EQ(folder, Variant(u"no folder"));
    EXPECT_TRUE(nameSpace.toObject() == run.apartment().gNameSpace);
    EXPECT_TRUE(application.toObject() == run.apartment().gOutlook);

    const std::u16string before = run.apartment().TemplatesFolder.EntryID();
    byName.call(Member::WordEditorVariablesSet, {Variant(u"no folder"), Variant(Object()), Variant(Object(run.application()))});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), before);
    EXPECT_FALSE(run.apartment().gNameSpace);
    EXPECT_TRUE(run.apartment().gOutlook);
}

TEST_F(SharedStateTest, TheHostHandsOutTheSameState) {
    byName = run.application().CreateObject(u"Lorvane.Connect");
    get();
    EXPECT_EQ(MAPIFolder(folder.toObject()).EntryID(), run.apartment().TemplatesFolder.EntryID());
    const MAPIFolder other = run.addFolder(topFolder(run), u"Other");
    byName.call(Member::WordEditorVariablesSet, {Variant(Object(other)), nameSpace, application});
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), other.EntryID());
    Variant again, unused, unusedToo;
    byName.call(Member::WordEditorVariablesGet, {Argument::byReference(again), Argument::byReference(unused), Argument::byReference(unusedToo)});
    EXPECT_EQ(MAPIFolder(again.toObject()).EntryID(), other.EntryID()) << "the newest folder is handed out";
}

TEST_F(SharedStateTest, AFolderThatIsNothingTakesTheCurrentOneAway) {
    byName.call(Member::WordEditorVariablesSet, {Variant(Object()), Variant(Object(run.session())), Variant(Object(run.application()))});
    EXPECT_FALSE(run.apartment().TemplatesFolder);
}

/// The folder routines, by name.
class FoldersByNameTest : public testing::Test {
protected:
    TestRun run{{.connected = false, .samples = true}};
    Object byName = makeObject<Connect>();
    MAPIFolder other = run.addFolder(topFolder(run), u"Other");
};

TEST_F(FoldersByNameTest, TheDefaultFolderIsMade) {
    byName.call(Member::CreateLorvaneFolder);
    EXPECT_EQ(run.apartment().TemplatesFolder.EntryID(), run.templatesFolder().EntryID());
    EXPECT_EQ(run.templatesFolder().Items().Count(), 3);
    usePrivately(run, other);
    byName.call(Member::CreateMapiFolder);
    EXPECT_EQ(run.setting(u"LastFolderEntryid"), run.templatesFolder().EntryID());
}

TEST_F(FoldersByNameTest, SamplesGoIntoTheFolderGiven) {
    ensureNameSpace();
    byName.call(Member::ExampleTemplatesCreate, {Variant(Object(other))});
    EXPECT_EQ(other.Items().Count(), 3);
}

TEST_F(FoldersByNameTest, AnExampleIsGivenBodyFirst) {
    ensureNameSpace();
    byName.call(Member::TemplateExample, {Variant(u"The body"), Variant(u"The subject"), Variant(Object(other))});
    ASSERT_EQ(other.Items().Count(), 1);
    EXPECT_EQ(other.Items().Item(1).Subject(), u"The subject");
    EXPECT_EQ(other.Items().Item(1).Body(), u"The body");
}

TEST_F(SharedStateTest, AnUnknownMemberIsError438) {
    try {
        byName.call(Member::Subject);
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.number(), 438);
    }
}

}  // namespace
}  // namespace lorvane::host
