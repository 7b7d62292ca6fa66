#include <gtest/gtest.h>

#include <ostream>

#include "InsertRig.h"

/// Looking whether a letter went into the body or into a field in front of it.
namespace lorvane::support {
namespace {

using namespace host;

class CaretProbeTest : public testing::TestWithParam<model::EditorFieldName> {};

TEST_P(CaretProbeTest, TellsTheFieldsFromTheBody) {
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    const Inspector mail = openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [&](ScriptedUser& she) {
        chooser().Hide();
        mail.Activate();
        run.focus(mail, GetParam(), -1);
        const auto before = she.pumpCount();
        EXPECT_FALSE(chooser().CheckMouseInBody(false));
        EXPECT_EQ(she.pumpCount() - before, 1U);
        run.type(u"I");
        EXPECT_EQ(chooser().CheckMouseInBody(true), GetParam() == model::EditorFieldName::Body);
        EXPECT_EQ(she.pumpCount() - before, 3U);
    });
}

INSTANTIATE_TEST_SUITE_P(Fields, CaretProbeTest,
                         testing::Values(model::EditorFieldName::To, model::EditorFieldName::Cc, model::EditorFieldName::Bcc, model::EditorFieldName::Subject,
                                         model::EditorFieldName::Body));

struct Change {
    std::u16string_view before, after;
    bool sortsBehind;  ///< the new value behind the old one, unit by unit
};

void PrintTo(const Change& change, std::ostream* stream) {
    *stream << toUtf8(change.before) << " to " << toUtf8(change.after);
}

const Change changes[] = {
    {u"Anna", u"AnnaI", true},                              // it grew
    {u"", u"I", true},         {u"Anna", u"Berta", true},   // another value behind it
    {u"Anna", u"anna", true},  {u"Berta", u"Anna", false},  // another value in front of it
    {u"anna", u"Anna", false}, {u"AnnaI", u"Anna", false},  // it shrank
    {u"Anna", u"", false},
};

constexpr Member fields[] = {Member::To, Member::CC, Member::BCC, Member::SentOnBehalfOfName, Member::Subject};

class CaretProbeFieldsTest : public testing::TestWithParam<std::tuple<Member, Change>> {};

TEST_P(CaretProbeFieldsTest, AFieldThatSortsBehindItsSnapshotTookTheLetterAndForTheSenderAnyDifference) {
    const auto& [field, change] = GetParam();
    TestRun run;
    run.addTemplate(u"Offer", plain(u"Text"));
    const MailItem item = openDraft(run, html(document(u"Text")), 0, {}).CurrentItem();
    const bool anyDifference = field == Member::SentOnBehalfOfName;
    openChooser(run, [&, field = field, change = change](ScriptedUser&) {
        item.put(field, Variant(change.before));
        EXPECT_FALSE(chooser().CheckMouseInBody(false));
        EXPECT_TRUE(chooser().CheckMouseInBody(true)) << "nothing has changed yet";
        item.put(field, Variant(change.after));
        EXPECT_EQ(chooser().CheckMouseInBody(true), !(anyDifference || change.sortsBehind));
        EXPECT_EQ(chooser().CheckMouseInBody(true), !(anyDifference || change.sortsBehind)) << "comparing keeps the snapshot";
    });
}

INSTANTIATE_TEST_SUITE_P(Changes, CaretProbeFieldsTest, testing::Combine(testing::ValuesIn(fields), testing::ValuesIn(changes)));

TEST(CaretProbeCallsTest, SavesTheItemEachTimeAndLooksNoFurtherThanTheFirstChange) {
    using Lines = std::vector<std::string>;
    TestRun run({.instruments = true});
    run.addTemplate(u"Offer", plain(u"Text"));
    const MailItem item = openDraft(run, html(document(u"Text")), 0).CurrentItem();
    openChooser(run, [&](ScriptedUser&) {
        run.recorder().leaveOut(u"Machine", u"Screen");
        run.recorder().clear();
        chooser().CheckMouseInBody(false);
        Lines front = {"call Screen.DoEvents",           "call Application.ActiveInspector",
                       "get Inspector.CurrentItem",      "call Machine.CreateObject \"qz7mRedemption.qz7mSafeMailItem\"",
                       "put SafeMailItem.Item MailItem", "call SafeMailItem.Save"};
        const Lines all = {"get SafeMailItem.To", "get SafeMailItem.CC", "get SafeMailItem.BCC", "get SafeMailItem.SentOnBehalfOfName",
                           "get SafeMailItem.Subject"};
        const auto joined = [](Lines lines, const Lines& more) {
            lines.insert(lines.end(), more.begin(), more.end());
            return lines;
        };
        EXPECT_EQ(run.recorder().lines(), joined(front, all));

        front.emplace_back("call Screen.DoEvents");
        run.recorder().clear();
        chooser().CheckMouseInBody(true);
        EXPECT_EQ(run.recorder().lines(), joined(front, all));

        item.put(Member::CC, Variant(u"Anna"));
        run.recorder().clear();
        chooser().CheckMouseInBody(true);
        EXPECT_EQ(run.recorder().lines(), joined(front, {"get SafeMailItem.To", "get SafeMailItem.CC"}));
    });
}

TEST(CaretProbeCallsTest, ConnectsByItself) {
    TestRun run({.connected = false});
    openDraft(run, html(document(u"Text")), 0);
    openChooser(run, [&](ScriptedUser&) {
        run.apartment().gOutlook = {};
        chooser().CheckMouseInBody(false);
        EXPECT_TRUE(run.apartment().gOutlook);
    });
}

}  // namespace
}  // namespace lorvane::support
