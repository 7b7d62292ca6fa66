#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>

#include "crash/InsertionRig.h"
#include "mailstore/OtherProgram.h"

/// Which windows the store knows to be open, and what other programs make of it.
namespace lorvane::crash {
namespace {

using namespace support;
using mailstore::test::OtherProgram;

class OpenWindows : public testing::Test {
protected:
    void SetUp() override { prepared_.beginAnew(); }
    std::int64_t notes() const { return notesIn(prepared_.path()); }

    const PreparedStore prepared_{html(document(u"Dear all"))};
};

TEST_F(OpenWindows, ADraftIsNotedFromTheOpeningOfItsWindowToItsClosing) {
    const RunOverFile over(prepared_.path());
    const host::Inspector inspector = openTheDraft(over.run());
    EXPECT_EQ(notes(), 1);
    over.run().driver().closeInspector(inspector, true);
    EXPECT_EQ(notes(), 0);
    const host::Inspector again = openTheDraft(over.run());
    EXPECT_EQ(notes(), 1);
    over.run().driver().closeInspector(again, false);
    EXPECT_EQ(notes(), 0);
}

TEST_F(OpenWindows, ANewMailIsNotedWithItsFirstSave) {
    const RunOverFile over(prepared_.path());
    const host::Inspector inspector = over.run().newMail();
    EXPECT_EQ(notes(), 0);
    const host::MailItem mail = inspector.CurrentItem();
    mail.Subject(u"Offer");
    mail.Save();
    EXPECT_EQ(notes(), 1);
    mail.Subject(u"Second offer");
    mail.Save();
    EXPECT_EQ(notes(), 1);
    over.run().driver().closeInspector(inspector, true);
    EXPECT_EQ(notes(), 0);
}

TEST_F(OpenWindows, AnItemWithoutAWindowAndAMailThatWasReceivedAreNotNoted) {
    const RunOverFile over(prepared_.path());
    const host::MailItem hidden = over.run().draft(u"Hidden", plain(u"Text"));
    const host::Inspector window = hidden.GetInspector();
    hidden.Subject(u"Still hidden");
    hidden.Save();
    over.run().openMail(over.run().receivedMail(u"Question", plain(u"Text")));
    EXPECT_EQ(notes(), 0);
}

TEST_F(OpenWindows, AnItemThatIsDeletedOrMovedUnderItsWindowLeavesNoNote) {
    const RunOverFile over(prepared_.path());
    const host::MailItem moved = openTheDraft(over.run()).CurrentItem();
    moved.Move(over.run().folder(host::default_folder::Inbox));
    EXPECT_EQ(notes(), 0);
    const host::MailItem gone = over.run().draft(u"Gone", plain(u"Text"));
    over.run().openMail(gone);
    EXPECT_EQ(notes(), 1);
    over.run().driver().purge(gone);
    EXPECT_EQ(notes(), 0);
}

TEST_F(OpenWindows, TheEndOfTheProgramClosesThemAll) {
    {
        const RunOverFile over(prepared_.path());
        openTheDraft(over.run());
        EXPECT_EQ(notes(), 1);
    }
    EXPECT_EQ(notes(), 0);
}

TEST_F(OpenWindows, AWindowShowsWhatAnotherProgramSavedJustBeforeItOpened) {
    const RunOverFile over(prepared_.path());
    const host::MailItem mail = over.run().folder(host::default_folder::Drafts).Items().Item(1);
    ASSERT_EQ(mail.Subject(), u"About us");
    ASSERT_EQ(mail.HTMLBody(), document(u"Dear all"));
    {
        const auto other = mailstore::SqliteFile(prepared_.path()).mailStore();
        mailstore::ItemRecord record = other->loadItem(mail.EntryID());
        record.body = document(u"Dear both");
        other->saveItem(u"", record);
    }
    const host::Inspector inspector = mail.GetInspector();
    inspector.Display();
    EXPECT_EQ(over.run().bodyShown(inspector), u"Dear both");
    over.run().focus(inspector, model::EditorFieldName::Body, 0);
    over.run().type(u"Oh ");
    EXPECT_NO_THROW(mail.Save()) << "nobody saved it since";
}

/// A program in the middle of an insertion, as long as it runs.
class InTheMiddle {
public:
    explicit InTheMiddle(const PreparedStore& prepared)
        : program_([&prepared](const OtherProgram::Pause& pause) {
              ::setenv("TMPDIR", prepared.folder().c_str(), 1);  // goes with the test, though nobody clears up
              const RunOverFile over(prepared.path());
              const host::MailItem mail = openTheDraft(over.run()).CurrentItem();
              over.run().type(caretMarker);
              mail.Save();
              pause();
              over.run().type(u"!");
              mail.Save();
              pause();
          }) {
        EXPECT_EQ(program_.goOn(), OtherProgram::Stand::Paused);
    }
    void saveAgain() { EXPECT_EQ(program_.goOn(), OtherProgram::Stand::Paused); }
    void kill() { program_.kill(); }

private:
    OtherProgram program_;
};

TEST_F(OpenWindows, TheMarkOfARunningProgramStaysAndThatOfAKilledOneGoes) {
    InTheMiddle other(prepared_);
    const auto body = [&] {
        const auto items = mailstore::test::itemsOf(*mailstore::SqliteFile(prepared_.path()).mailStore());
        return std::ranges::find(items, u"\\Personal Folders\\Drafts", &mailstore::test::PlacedItem::folder)->record.body;
    };
    const std::u16string withMark = document(u"Dea" + std::u16string(caretMarker) + u"r all");
    ASSERT_EQ(body(), withMark);
    {
        // This program is at work on the same store meanwhile.
        const RunOverFile over(prepared_.path());
        over.run().draft(u"Another", plain(u"Text"));
        EXPECT_EQ(body(), withMark);
    }
    EXPECT_TRUE(mailstore::SqliteFile(prepared_.path(), programOptions()).mending().subjects.empty());
    other.saveAgain();
    EXPECT_EQ(body(), document(u"Dea" + std::u16string(caretMarker) + u"!r all"));
    other.kill();
    EXPECT_EQ(mailstore::SqliteFile(prepared_.path(), programOptions()).mending().subjects, std::vector<std::u16string>{u"About us"});
    EXPECT_EQ(body(), document(u"Dea!r all"));
}

TEST_F(OpenWindows, TheProgramTellsWhatItMendedAndNothingOfARunningOnes) {
    const Program lorvane;
    InTheMiddle other(prepared_);
    std::filesystem::create_directories(lorvane.store());
    // The running program goes on where its file lies; a link brings the other to it.
    std::filesystem::create_symlink(prepared_.path(), storeOf(lorvane));
    EXPECT_EQ(lorvane({"templates"}).err, "");
    other.kill();
    EXPECT_EQ(lorvane({"templates"}).err, "lorvane: took the caret mark of an interrupted insertion out of \"About us\"\n");
    EXPECT_EQ(lorvane({"templates"}).err, "");
}

}  // namespace
}  // namespace lorvane::crash
