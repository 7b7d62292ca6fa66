#include <gtest/gtest.h>

#include <optional>

#include "ChooserRig.h"
#include "respond/FurtherWindows.h"
#include "store/Categories.h"
#include "store/CategoryFiles.h"

/// Other categories for a template: what the chooser hands to the save window, and how it fills anew behind it.
namespace lorvane::support {
namespace {

using namespace host;
using respond::furtherWindows;

constexpr std::u16string_view noneInFolder = u"No templates were found in the selected folder.";
constexpr std::u16string_view sharedFolderNotFound =
    u"The shared templates folder could not be found.\r\n\r\nThe most likely reason for this are:\r\n"
    u"1. You are currently not connected to your network or\r\n2. The shared templates folder has been deleted or moved\r\n\r\n"
    u"Go to Inbox - Tolvenar menu > Lorvane > Settings to select a shared templates folder.";

void writeNames(std::u16string_view categories, std::u16string_view path) {
    const Recordset table = store::newCategoryTable();
    store::AddCategoriesToList(categories, table);
    store::SaveRSToFile(table, path);
}

/// The menu's item on a row of the list, or on the room below its lines.
void categorize(ScriptedUser& she, std::optional<std::int32_t> row) {
    she.ChooseNext(u"cmdCategorize");
    she.RightClick(chooserName, u"lstEmails", row);
}

class ChooserCategorizeTest : public testing::Test {
protected:
    /// The save window as it stands for a user who gives the template these categories: the item has them, and the file of its folder these names.
    void saveAs(std::u16string_view categories, std::u16string_view namesInFile) {
        furtherWindows().categorizeTemplate = [this, categories, namesInFile](const MailItem& item) {
            asked.push_back(item ? item.Subject() : u"nothing");
            if (item) {
                item.Categories(categories);
                item.Save();
            }
            writeNames(namesInFile, store::privateCategoriesPath());
            return true;
        };
    }
    Subjects asked;
    TestRun run;
};

TEST_F(ChooserCategorizeTest, TheWindowGetsTheChosenTemplateAndItsNewCategoryIsOffered) {
    run.addTemplate(u"Alpha", plain(u"First"), u"Sales");
    run.addTemplate(u"Beta", plain(u"Second"));
    saveAs(u"Letters", u"Sales,Letters");
    openChooser(run, [](ScriptedUser& she) {
        categorize(she, 1);
        EXPECT_EQ(linesOf(chooser().cmbCategories), (Subjects{u"", u"Letters", u"Sales"}));
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"Beta"}));
        EXPECT_TRUE(chooser().lstEmails.Visible);
        EXPECT_EQ(chooser().lstEmails.ListIndex, 1) << "the line that was chosen before";
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Beta");
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{u"Beta"}) << "the tables were loaded anew";
    });
    EXPECT_EQ(asked, Subjects{u"Beta"});
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, ACancelledWindowChangesNothing) {
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales");
    run.addTemplate(u"Beta", plain(u"Text"), u"Sales");
    openChooser(run, [&](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        const Recordset table = store::templateTables().rsPrivateTemplates;
        furtherWindows().categorizeTemplate = [&](const MailItem& item) {
            asked.push_back(item.Subject());
            run.addTemplate(u"Later", plain(u"Text"), u"Sales");
            return false;
        };
        categorize(she, 1);
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"Beta"}));
        EXPECT_EQ(chooser().lstEmails.ListIndex, 1);
        EXPECT_EQ(chooser().cmbCategories.Text.get(), u"Sales");
        EXPECT_EQ(store::templateTables().rsPrivateTemplates, table);
    });
    EXPECT_EQ(asked, Subjects{u"Beta"});
}

TEST_F(ChooserCategorizeTest, WithoutTheWindowItIsAsIfTheUserCancelled) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    openChooser(run, [&](ScriptedUser& she) {
        const Recordset table = store::templateTables().rsPrivateTemplates;
        categorize(she, 0);
        EXPECT_EQ(store::templateTables().rsPrivateTemplates, table);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, WithoutASelectionTheWindowGetsNothing) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    saveAs(u"Letters", u"Letters");
    openChooser(run, [](ScriptedUser& she) {
        chooser().lstEmails.ListIndex = -1;
        categorize(she, std::nullopt);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
        EXPECT_EQ(chooser().lstEmails.ListIndex, -1);
    });
    EXPECT_EQ(asked, Subjects{u"nothing"});
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, TheCategoryThatNarrowedTheListIsLeft) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    run.addTemplate(u"Beta", plain(u"Text"), u"Sales");
    saveAs(u"Sales", u"Sales");
    openChooser(run, [](ScriptedUser& she) {
        she.Select(chooserName, u"cmbCategories", 1);
        EXPECT_EQ(listed(), Subjects{u"Beta"});
        categorize(she, 0);
        EXPECT_EQ(chooser().cmbCategories.Text.get(), u"");
        EXPECT_EQ(listed(), (Subjects{u"Alpha", u"Beta"}));
        EXPECT_EQ(chooser().txtSubject.Text.get(), u"Alpha") << "the index is remembered, not the template";
    });
}

TEST_F(ChooserCategorizeTest, ATemplateThatLeftTheFolderLeavesNoSelectionBehindTheLastLine) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    const MailItem beta = run.addTemplate(u"Beta", plain(u"Text"));
    furtherWindows().categorizeTemplate = [&](const MailItem&) {
        beta.Move(run.folder(default_folder::Inbox));
        return true;
    };
    openChooser(run, [](ScriptedUser& she) {
        categorize(she, 1);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
        EXPECT_EQ(chooser().lstEmails.ListIndex, -1);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, WhileTheListFillsTheControlsAreOff) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    saveAs(u"", u"Sales");
    openChooser(run, [](ScriptedUser& she) {
        auto& form = chooser();
        const auto toggled = {
            &form.cmdClear,  &form.cmdClose, &form.cmdCopyHTMLToClipB, &form.cmdCopyToClipBoard, &form.cmdDelete, &form.cmdEdit, &form.cmdHelp,
            &form.cmdInsert, &form.cmdNew};
        she.atPump(1, [&](ScriptedUser&) {
            for (const Control* control : toggled) EXPECT_FALSE(control->Enabled) << toUtf8(control->name());
            EXPECT_FALSE(form.cmbCategories.Enabled);
            EXPECT_FALSE(form.txtSearch.Enabled);
        });
        categorize(she, 0);
        for (const Control* control : toggled) EXPECT_TRUE(control->Enabled) << toUtf8(control->name());
        EXPECT_TRUE(form.cmbCategories.Enabled);
        EXPECT_TRUE(form.txtSearch.Enabled);
    });
}

TEST_F(ChooserCategorizeTest, AFileThatCannotBeUsedOffersNoNamesAndSaysNothing) {
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales");
    const Files files = apartment().machine.files();
    for (const std::u16string_view content : {u"", u"<xml>", u"no rowset"}) {
        furtherWindows().categorizeTemplate = [&](const MailItem&) {
            files.WriteText(store::privateCategoriesPath(), content);
            return true;
        };
        openChooser(run, [](ScriptedUser& she) {
            categorize(she, 0);
            EXPECT_EQ(linesOf(chooser().cmbCategories), Subjects{u""});
            EXPECT_EQ(listed(), Subjects{u"Alpha"});
            EXPECT_EQ(store::templateTables().rsPrivateCategories.RecordCount(), 1) << "the walk gathered them anew";
        });
    }
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, AnEmptiedFolderWithoutASharedOneTellsOfTheSharedOne) {
    const MailItem only = run.addTemplate(u"Alpha", plain(u"Text"));
    furtherWindows().categorizeTemplate = [&](const MailItem&) {
        run.driver().purge(only);
        return true;
    };
    openChooser(run, [](ScriptedUser& she) {
        categorize(she, 0);
        EXPECT_EQ(chooser().lblNoEmails.Caption.get(), sharedFolderNotFound);
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
        EXPECT_FALSE(chooser().lstEmails.Visible);
        EXPECT_TRUE(chooser().cmdClose.Enabled);
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserCategorizeTest, AnEmptiedFolderBesideASharedOneSaysThatNoneWereFound) {
    shareFolder(run);
    const MailItem only = run.addTemplate(u"Alpha", plain(u"Text"));
    furtherWindows().categorizeTemplate = [&](const MailItem&) {
        run.driver().purge(only);
        return true;
    };
    openChooser(run, [](ScriptedUser& she) {
        categorize(she, 0);
        EXPECT_EQ(chooser().lblNoEmails.Caption.get(), noneInFolder);
        EXPECT_TRUE(chooser().lblNoEmails.Visible);
    });
}

TEST_F(ChooserCategorizeTest, ALostSharedFolderUnderTheSharedScopeIsToldInTheList) {
    shareFolder(run);
    run.setSetting(u"LoadTemplateDefault", u"2");
    run.addTemplate(u"Mine", plain(u"Text"));
    run.driver().removeStore(u"Team");
    furtherWindows().categorizeTemplate = [](const MailItem& item) {
        EXPECT_FALSE(item);
        return true;
    };
    openChooser(run, [](ScriptedUser& she) {
        she.Click(chooserName, u"cmdCategorize");
        EXPECT_EQ(listed(), Subjects{});
        EXPECT_EQ(chooser().lblNoEmails.Caption.get(), sharedFolderNotFound);
    });
    ASSERT_EQ(run.boxes().size(), 1U) << "the one of the opening";
    EXPECT_EQ(run.lastBox().title, u"Shared Templates Folder Not Found - Lorvane");
}

TEST_F(ChooserCategorizeTest, ATemplateThatIsGoneShowsTheStandardBoxAndNoWindow) {
    const MailItem only = run.addTemplate(u"Alpha", plain(u"Text"));
    saveAs(u"Letters", u"Letters");
    openChooser(run, [&](ScriptedUser& she) {
        run.driver().purge(only);
        she.Click(chooserName, u"cmdCategorize");
        EXPECT_EQ(listed(), Subjects{u"Alpha"}) << "nothing was loaded anew";
    });
    EXPECT_TRUE(asked.empty());
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdCategorize_Click - Lorvane");
    EXPECT_EQ(run.lastBox().style, 16);
}

TEST_F(ChooserCategorizeTest, AnErrorOfTheWindowShowsTheStandardBoxAndTheListStays) {
    run.addTemplate(u"Alpha", plain(u"Text"));
    furtherWindows().categorizeTemplate = [](const MailItem&) -> bool { throw HostError(host_failure::Failed, u"No window left"); };
    openChooser(run, [](ScriptedUser& she) {
        categorize(she, 0);
        EXPECT_EQ(listed(), Subjects{u"Alpha"});
    });
    ASSERT_EQ(run.boxes().size(), 1U);
    EXPECT_EQ(run.lastBox().title, u"frmEmail.cmdCategorize_Click - Lorvane");
    EXPECT_EQ(run.lastBox().text, u"Error -2147467259: No window left");
}

struct ScopeFiles {
    std::u16string_view byDefault;
    std::vector<std::string> files;
    Subjects offered;
};

class ChooserCategorizeScope : public testing::TestWithParam<ScopeFiles> {};

TEST_P(ChooserCategorizeScope, ReadsTheFilesOfItsScope) {
    TestRun run({.instruments = true});
    run.setSetting(u"LoadTemplateDefault", GetParam().byDefault);
    run.addTemplate(u"Mine", plain(u"Text"), u"Mine");
    run.addTemplate(shareFolder(run), u"Ours", plain(u"Text"), u"Ours");
    openChooser(run, [&](ScriptedUser& she) {
        writeNames(u"From private", store::privateCategoriesPath());
        writeNames(u"From shared", store::sharedCategoriesPath());
        run.recorder().clear();
        furtherWindows().categorizeTemplate = [](const MailItem&) { return true; };
        categorize(she, 0);
        EXPECT_EQ(linesOf(chooser().cmbCategories), GetParam().offered);
        std::vector<std::string> read;
        for (const std::string& line : run.recorder().lines())
            if (line.starts_with("call Files.ReadText")) read.push_back(line.substr(line.rfind('\\') + 1));
        EXPECT_EQ(read, GetParam().files);
    });
    EXPECT_TRUE(run.boxes().empty());
}

INSTANTIATE_TEST_SUITE_P(Scopes, ChooserCategorizeScope,
                         testing::Values(ScopeFiles{u"0", {"Private.xml\"", "Shared.xml\""}, {u"", u"From private", u"From shared"}},
                                         ScopeFiles{u"1", {"Private.xml\""}, {u"", u"From private"}},
                                         ScopeFiles{u"2", {"Shared.xml\""}, {u"", u"From shared"}}));

}  // namespace
}  // namespace lorvane::support
