#include "mailstore/TypedMarks.h"

#include <gtest/gtest.h>

#include "mailstore/Records.h"

namespace lorvane::mailstore::test {
namespace {

using Texts = std::vector<std::u16string>;

const Texts mark = {u"Mark"};
const RecipientRecord mary{u"Mary Major", u"mary@example.com", u"SMTP", 1, true};
const RecipientRecord john{u"", u"john@example.com", u"SMTP", 2, true};

RecipientRecord typed(std::u16string name, std::int32_t type = 1) {
    return {std::move(name), u"", u"", type, false};
}

/// A mail with these recipients, rid of the mark.
std::vector<RecipientRecord> mended(std::vector<RecipientRecord> recipients, const std::vector<RecipientRecord>& before = {}) {
    ItemRecord item = mail(u"Offer", u"Text");
    item.recipients = std::move(recipients);
    EXPECT_TRUE(holdsMark(item, mark));
    EXPECT_TRUE(takeMarksOut(item, mark, before));
    EXPECT_FALSE(item.bodyChanged);
    return item.recipients;
}

TEST(TypedMarks, AnItemWithoutOneStaysAsItIs) {
    ItemRecord item = mail(u"mark MARK", u"Mar k");
    item.recipients = {mary, john};
    const ItemRecord before = item;
    EXPECT_FALSE(holdsMark(item, mark));
    EXPECT_FALSE(takeMarksOut(item, mark, {}));
    EXPECT_EQ(item, before);
}

TEST(TypedMarks, TheFirstGoesOutOfTheBodysSourceWhichCountsAsChanged) {
    ItemRecord item = mail(u"Offer", u"<P>Hello Mark<I>there</I></P>Mark");
    EXPECT_TRUE(holdsMark(item, mark));
    EXPECT_TRUE(takeMarksOut(item, mark, {}));
    EXPECT_EQ(item.body, u"<P>Hello <I>there</I></P>Mark");
    EXPECT_TRUE(item.bodyChanged);
    EXPECT_EQ(item.head.subject, u"Offer");
}

TEST(TypedMarks, TheSubjectLosesItAndTheBodyStaysTheMessagesOwn) {
    ItemRecord item = mail(u"OfMarkfer", u"Text");
    EXPECT_TRUE(takeMarksOut(item, mark, {}));
    EXPECT_EQ(item.head.subject, u"Offer");
    EXPECT_FALSE(item.bodyChanged);
}

TEST(TypedMarks, EachOfSeveralTextsGoes) {
    ItemRecord item = mail(u"Mark", u"oneTwo");
    EXPECT_TRUE(takeMarksOut(item, Texts{u"Mark", u"", u"Two"}, {}));
    EXPECT_EQ(item.head.subject, u"");
    EXPECT_EQ(item.body, u"one");
}

TEST(TypedMarks, ARecipientThatIsNothingElseGoes) {
    EXPECT_EQ(mended({mary, typed(u"Mark"), john}), (std::vector{mary, john}));
}

TEST(TypedMarks, ARecipientWhoseNameItWasTypedIntoGetsTheNameAndTheAddressBack) {
    EXPECT_EQ(mended({typed(u"Mary MarkMajor")}, {john, mary}), std::vector{mary});
    EXPECT_EQ(mended({typed(u"john@example.comMark", 2)}, {mary, john}), std::vector{john});
}

TEST(TypedMarks, ARecipientThatWasNotThereBeforeKeepsHisName) {
    EXPECT_EQ(mended({typed(u"Mary MajorMark")}), std::vector{typed(u"Mary Major")});
    EXPECT_EQ(mended({typed(u"Mary MajorMark", 3)}, {mary}), std::vector{typed(u"Mary Major", 3)}) << "the one before was in another field";
    RecipientRecord addressed{u"Somebody", u"someMarkbody@example.com", u"SMTP", 1, false};
    EXPECT_EQ(mended({addressed}, {typed(u"Somebody")})[0].address, u"somebody@example.com");
}

}  // namespace
}  // namespace lorvane::mailstore::test
