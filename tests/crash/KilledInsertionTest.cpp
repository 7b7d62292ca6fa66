#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>

#include "crash/InsertionRig.h"
#include "mailstore/KilledAtEachWrite.h"
#include "mailstore/OtherProgram.h"

/// An insertion that is killed at each of its writes to the store in turn.
namespace lorvane::crash {
namespace {

using namespace support;

void insertAndClose(const PreparedStore& prepared, const std::function<void()>& inserted) {
    ::setenv("TMPDIR", prepared.folder().c_str(), 1);
    const RunOverFile over(prepared.path());
    const host::Inspector inspector = openTheDraft(over.run());
    useTemplate(over.run(), formattedTemplate, insertWithFormat);
    inserted();
    over.run().driver().closeInspector(inspector, true);
}

TEST(KilledInsertion, LeavesAtEachWriteWhatItsStepsSaveAndTheNextStartMendsIt) {
    const PreparedStore prepared(html(document(u"Dear all")));
    prepared.beginAnew();
    mailstore::test::OtherProgram undisturbed([&](const auto&) { insertAndClose(prepared, [] {}); });
    const std::vector<Items> states = savedStates(prepared.path(), [&] { EXPECT_EQ(undisturbed.goOn(), mailstore::test::OtherProgram::Stand::Ended); });
    ASSERT_GE(states.size(), 4u) << "as it was, with the mark, with the attachment, with the text";

    std::size_t marks = 0;
    mailstore::test::KilledAtEachWrite killed;
    killed.begin = [&] { prepared.beginAnew(); };
    killed.act = [&](const auto& acknowledge) { insertAndClose(prepared, acknowledge); };
    killed.check = [&](std::size_t acknowledged) {
        const Items left = itemsNow(prepared.path());
        const auto state = std::ranges::find(states, left);
        ASSERT_NE(state, states.end()) << summary(states.front(), left);
        if (acknowledged > 0) {
            EXPECT_EQ(left, states.back());
        }
        const bool marked = std::ranges::any_of(left, holdsMark);
        marks += marked;
        const mailstore::SqliteFile next(prepared.path(), programOptions());
        EXPECT_EQ(next.mending().subjects.size(), marked ? 1u : 0u);
        EXPECT_EQ(notesIn(prepared.path()), 0);
        EXPECT_TRUE(std::ranges::none_of(mailstore::test::itemsOf(*next.mailStore()), holdsMark));
    };
    EXPECT_GT(killed.sweep(), 50u);
    EXPECT_GT(marks, 10u);
}

}  // namespace
}  // namespace lorvane::crash
