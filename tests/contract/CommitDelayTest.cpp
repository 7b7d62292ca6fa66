#include "contract/HostFixture.h"

/// When what was typed reaches the item, and what becomes of the caret where a body property is written meanwhile.
namespace lorvane::contract {

class CommitDelay : public OneHost {
protected:
    /// An open plain mail with the caret at the end of its body.
    Inspector openAtEnd(std::u16string_view body) {
        const Inspector inspector = host().open(host().plainItem(body));
        person().focus(inspector, Field::Body, -1);
        return inspector;
    }
    static std::u16string saved(const Inspector& inspector) {
        inspector.CurrentItem().Save();
        return inspector.CurrentItem().Body();
    }
};

TEST_F(CommitDelay, IsNoneUnlessTheRunSetsIt) {
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    EXPECT_EQ(saved(inspector), u"ab");
}

TEST_F(CommitDelay, SaveCommitsTheDocumentAsItStoodThatManyPumpsAgo) {
    start({.commitDelay = 3});
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    EXPECT_EQ(saved(inspector), u"a");
    host().pump(2);
    EXPECT_EQ(saved(inspector), u"a");
    host().pump();
    EXPECT_EQ(saved(inspector), u"ab");
}

TEST_F(CommitDelay, EachTypingReachesTheItemAtItsOwnTime) {
    start({.commitDelay = 2});
    const Inspector inspector = openAtEnd(u"");
    person().type(u"a");
    host().pump();
    person().type(u"b");
    host().pump();
    EXPECT_EQ(saved(inspector), u"a");
    host().pump();
    EXPECT_EQ(saved(inspector), u"ab");
}

TEST_F(CommitDelay, PumpsAloneCommitNothing) {
    start({.commitDelay = 2});
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    host().pump(10);
    EXPECT_EQ(inspector.CurrentItem().Body(), u"a");
}

TEST_F(CommitDelay, HoldsForTheFieldsOfTheWindowToo) {
    start({.commitDelay = 1});
    const Inspector inspector = person().newMail();
    person().focus(inspector, Field::Subject, 0);
    person().type(u"Offer");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Subject(), u"");
    host().pump();
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().Subject(), u"Offer");
}

TEST_F(CommitDelay, HoldsForWhatIsTakenBackToo) {
    start({.commitDelay = 1});
    const Inspector inspector = openAtEnd(u"");
    person().type(u"ab");
    host().pump();
    host().sendKeys(u"{BACKSPACE}");
    EXPECT_EQ(saved(inspector), u"ab");
    host().pump();
    EXPECT_EQ(saved(inspector), u"a");
}

TEST_F(CommitDelay, CloseWithSaveCommitsAllAtOnce) {
    start({.commitDelay = 50});
    const MailItem item = host().plainItem(u"a");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"b");
    inspector.Close(olSave);
    EXPECT_EQ(host().again(item).Body(), u"ab");
}

TEST_F(CommitDelay, ASavedWindowKeepsShowingWhatWasTyped) {
    start({.commitDelay = 5});
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    inspector.CurrentItem().Save();
    EXPECT_EQ(person().shown(inspector, Field::Body), u"ab");
}

TEST_F(CommitDelay, CanBeSetWhileTheHostRuns) {
    host();
    person().setCommitDelay(1);
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    EXPECT_EQ(saved(inspector), u"a");
    host().pump();
    EXPECT_EQ(saved(inspector), u"ab");
}

TEST_F(CommitDelay, WritingTheBodyReloadsTheDocumentAndStartsItsHistoryAnew) {
    start({.commitDelay = 5});
    const Inspector inspector = openAtEnd(u"a");
    person().type(u"b");
    inspector.CurrentItem().Body(u"written");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"written");
    EXPECT_EQ(saved(inspector), u"written");
    host().pump(10);
    EXPECT_EQ(saved(inspector), u"written");
}

TEST_F(CommitDelay, TypingBehindAWrittenBodyIsDelayedFromThere) {
    start({.commitDelay = 2});
    const Inspector inspector = openAtEnd(u"a");
    inspector.CurrentItem().Body(u"written");
    person().focus(inspector, Field::Body, -1);
    person().type(u"!");
    EXPECT_EQ(saved(inspector), u"written");
    host().pump(2);
    EXPECT_EQ(saved(inspector), u"written!");
}

/// Writing a body property of an open item: the caret keeps the source behind it.
class Splice : public OneHost {
protected:
    /// Where an "X" typed afterwards lands, when `now` is written over `before` with the caret at `position`.
    std::u16string typedAfterWriting(std::u16string_view before, std::int32_t position, std::u16string_view now) {
        const Inspector inspector = host().open(host().plainItem(before));
        person().focus(inspector, Field::Body, position);
        inspector.CurrentItem().Body(now);
        person().type(u"X");
        return person().shown(inspector, Field::Body);
    }
};

TEST_F(Splice, WhereTheEndsAreAlikeUpToTheCaretItKeepsItsDistanceFromTheEnd) {
    EXPECT_EQ(typedAfterWriting(u"abcdef", 3, u"abcTEMPLATEdef"), u"abcTEMPLATEXdef");
    EXPECT_EQ(typedAfterWriting(u"abcdef", 3, u"def"), u"Xdef");
    EXPECT_EQ(typedAfterWriting(u"abc", -1, u"abcTEMPLATE"), u"abcTEMPLATEX");
}

TEST_F(Splice, WhereTheEndsAreAlikeBeyondTheCaretItKeepsItsDistanceFromTheEnd) {
    EXPECT_EQ(typedAfterWriting(u"abcdef", 3, u"TEMPLATEabcdef"), u"TEMPLATEabcXdef");
}

TEST_F(Splice, ElseItKeepsItsVisiblePosition) {
    EXPECT_EQ(typedAfterWriting(u"abcdef", 3, u"uvwxyz"), u"uvwXxyz");
    EXPECT_EQ(typedAfterWriting(u"abcdef", 3, u"u"), u"uX");
}

TEST_F(Splice, BehindAnHtmlSpliceItStandsBehindWhatWasSplicedIn) {
    const Inspector inspector = host().open(host().htmlItem(u"<p>one three</p><p>four</p>"));
    person().focus(inspector, Field::Body, 4);
    host().sendKeys(u"MARK");
    const MailItem item = inspector.CurrentItem();
    item.Save();
    std::u16string body = item.HTMLBody();
    ASSERT_EQ(body, html(u"<p>one MARKthree</p><p>four</p>"));
    body.replace(body.find(u"MARK"), 4, u"<b>two</b> ");
    item.HTMLBody(body);
    person().type(u"X");
    item.Save();
    EXPECT_EQ(item.HTMLBody(), html(u"<p>one <b>two</b> Xthree</p><p>four</p>"));
}

TEST_F(Splice, AnotherFieldsCaretStaysWhereItIs) {
    const Inspector inspector = host().open(host().plainItem(u"abc"));
    person().focus(inspector, Field::Subject, 0);
    inspector.CurrentItem().Body(u"written");
    EXPECT_EQ(person().focusedField(inspector), Field::Subject);
    person().type(u"Offer");
    EXPECT_EQ(person().shown(inspector, Field::Subject), u"Offer");
    EXPECT_EQ(person().shown(inspector, Field::Body), u"written");
}

TEST_F(Splice, WritingThroughAWrapperReloadsTheWindowToo) {
    const Inspector inspector = host().open(host().plainItem(u"abc"));
    makeSafeMailItem(inspector.CurrentItem()).HTMLBody(html(u"<b>new</b>"));
    EXPECT_EQ(person().shown(inspector, Field::Body), u"new");
}

TEST_F(CommitDelay, OfFiftyOnePumpsIsWaitedForByFiftyOne) {
    for (const std::uint32_t delay : {51u, 52u}) {
        RunningHost running(hostWays().front(), {.commitDelay = delay});
        const Inspector inspector = running.open(running.htmlItem(u"<p>ab</p>"));
        running.person().focus(inspector, Field::Body, 1);
        running.sendKeys(u"Asdw34r2wjkytui983jnd2m");
        const SafeMailItem safe = makeSafeMailItem(inspector.CurrentItem());
        safe.Save();
        EXPECT_EQ(safe.HTMLBody(), html(u"<p>ab</p>"));
        running.pump(51);
        safe.Save();
        EXPECT_EQ(safe.HTMLBody() == html(u"<p>aAsdw34r2wjkytui983jnd2mb</p>"), delay == 51) << delay;
    }
}

TEST_F(CommitDelay, ClosingByThePersonCommitsAllAtOnce) {
    start({.commitDelay = 50});
    const MailItem item = host().plainItem(u"a");
    const Inspector inspector = host().open(item);
    person().focus(inspector, Field::Body, -1);
    person().type(u"b");
    person().closeInspector(inspector, true);
    EXPECT_EQ(host().again(item).Body(), u"ab");
}

}  // namespace lorvane::contract
