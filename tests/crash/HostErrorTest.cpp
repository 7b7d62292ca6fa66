#include <gtest/gtest.h>

#include <algorithm>

#include "crash/InsertionRig.h"

/// A host call that fails halfway leaves the mail as a kill would: as it was, with the caret mark, or with the text; and the mark goes once the program has
/// ended.
namespace lorvane::crash {
namespace {

using namespace support;
using mailstore::test::itemsOf;
using mailstore::test::lineOf;
using mailstore::test::PlacedItem;

/// An insertion with formatting into a draft, with one host call after the other failing.
class HostError : public testing::Test {
protected:
    /// `marked` is the draft's body with the mark at the caret, or without where that is elsewhere.
    void sweep(const BodyText& draft, model::EditorFieldName field, const std::u16string& marked) {
        const PreparedStore prepared(draft);
        const std::size_t calls = insertWithFault(prepared, field, 0);
        ASSERT_GT(calls, 80u);
        const std::u16string inserted = draftIn(itemsNow(prepared.path())).body;
        const std::vector<std::u16string> bodies = {draft.source, marked, inserted, host::Replace(inserted, u"John", u"[FirstName]")};
        for (std::size_t n = 1; n <= calls && !HasFailure(); ++n) {
            SCOPED_TRACE("host call " + std::to_string(n));
            insertWithFault(prepared, field, n);
            expectAllowedAndMended(prepared.path(), draft, field, bodies);
        }
        EXPECT_GT(marked_, 5) << "the mark stays in many places";
    }

private:
    /// Inserts with the n-th host call failing, 0 for none, and gives the number of calls. The program ends in order, with the window still up.
    static std::size_t insertWithFault(const PreparedStore& prepared, model::EditorFieldName field, std::size_t n) {
        prepared.beginAnew();
        const RunOverFile over(prepared.path(), true);
        openTheDraft(over.run(), field);
        chooser().Show(false);
        selectSubject(over.run().user(), formattedTemplate);
        instruments::FaultInjector& faults = over.run().faults();
        faults.clear();
        if (n > 0) faults.failCall(n, host::host_failure::Failed);
        over.run().user().Click(chooserName, insertWithFormat);
        const std::size_t calls = faults.uses();
        EXPECT_EQ(faults.failures() > 0, n > 0);
        faults.clear();
        return calls;
    }

    static mailstore::ItemRecord draftIn(const Items& items) {
        const auto draft = std::ranges::find_if(items, [](const PlacedItem& item) { return item.folder == u"\\Personal Folders\\Drafts"; });
        EXPECT_NE(draft, items.end());
        return draft->record;
    }

    static void expectAllowed(const mailstore::ItemRecord& saved, model::EditorFieldName field, const std::vector<std::u16string>& bodies) {
        EXPECT_NE(std::ranges::find(bodies, saved.body), bodies.end()) << host::toUtf8(saved.body);
        const bool inSubject = field == model::EditorFieldName::Subject && saved.head.subject == u"AboAsdw34r2wjkytui983jnd2mut us";
        EXPECT_TRUE(saved.head.subject == u"About us" || inSubject) << host::toUtf8(saved.head.subject);
        EXPECT_EQ(saved.recipients, std::vector{johnPublic()});
        EXPECT_LE(saved.attachments.size(), 1u);
        for (const auto& attachment : saved.attachments) EXPECT_EQ(attachment.data->size(), 3000u);
    }

    void expectAllowedAndMended(const std::filesystem::path& store, const BodyText& draft, model::EditorFieldName field,
                                const std::vector<std::u16string>& bodies) {
        const Items left = itemsOf(*mailstore::SqliteFile(store).mailStore());
        expectAllowed(draftIn(left), field, bodies);
        Items expected = left;
        std::size_t marks = 0;
        for (PlacedItem& item : expected) {
            if (!holdsMark(item)) continue;
            EXPECT_EQ(item.folder, u"\\Personal Folders\\Drafts");
            item.record = withoutMark(item.record);
            ++item.record.head.version;
            ++marks;
        }
        marked_ += static_cast<int>(marks);
        EXPECT_TRUE(mailstore::SqliteFile(store, programOptions()).mending().subjects.empty()) << "the program that left it runs";
        EXPECT_EQ(notesIn(store), static_cast<std::int64_t>(marks)) << "an item without a mark needs no note";
        endProgramsOf(store);
        const mailstore::SqliteFile next(store, programOptions());
        EXPECT_EQ(next.mending().subjects.size(), marks);
        EXPECT_EQ(itemsOf(*next.mailStore()), expected);
        if (marks > 0 && field == model::EditorFieldName::Body) {
            EXPECT_EQ(draftIn(expected).body, draft.source);
        }
        EXPECT_EQ(draftIn(expected).head.subject, u"About us");
    }

    int marked_ = 0;
};

TEST_F(HostError, HalfwayThroughAnInsertionIntoHtml) {
    sweep(html(document(u"Dear all")), model::EditorFieldName::Body, document(u"Dea" + std::u16string(caretMarker) + u"r all"));
}

TEST_F(HostError, HalfwayThroughAnInsertionIntoRichText) {
    sweep(rich(u"Dear all"), model::EditorFieldName::Body, rich(u"Dea" + std::u16string(caretMarker) + u"r all").source);
}

TEST_F(HostError, HalfwayThroughAnInsertionWhileTheCaretIsInTheSubject) {
    sweep(html(document(u"Dear all")), model::EditorFieldName::Subject, document(u"Dear all"));
}

}  // namespace
}  // namespace lorvane::crash
