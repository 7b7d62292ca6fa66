#include "instruments/Recorder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <sstream>

#include "instruments/FakeItem.h"

namespace lorvane::instruments::test {
namespace {

using host::Argument;
using host::makeObject;
using host::Member;
using host::Object;
using host::Variant;
using Lines = std::vector<std::string>;

class RecorderTest : public testing::Test {
protected:
    RecorderTest() { fake().child = makeObject<FakeItem>(u"FakeInspector"); }
    ~RecorderTest() override {
        fake().letGo();
        item = bare = Object();
        EXPECT_EQ(FakeItem::alive, 0) << "an object is still held";
    }
    FakeItem& fake() { return *host::implementation<FakeItem>(bare); }

    Object bare = makeObject<FakeItem>();
    Recorder recorder{nullptr};
    Object item = recorder.decorate(bare);
};

TEST_F(RecorderTest, ANoteStandsAmongTheUses) {
    item.get(Member::Subject);
    recorder.note(u"act Click frmEmail.cmdInsert");
    EXPECT_THROW(item.call(Member::Save), host::HostError);
    EXPECT_EQ(recorder.lines(), (Lines{"get FakeItem.Subject", "act Click frmEmail.cmdInsert", "call FakeItem.Save -> error 438"}));
    recorder.clear();
    recorder.note(u"alone");
    EXPECT_EQ(recorder.text(), "alone\n");
}

TEST_F(RecorderTest, UsesAreLinesInTheirOrder) {
    item.put(Member::Subject, u"x");
    const Object inspector = item.getObject(Member::Inspector);
    inspector.call(Member::Add, {item, 3});
    item.call(FakeItem::secret);
    EXPECT_EQ(recorder.lines(), (Lines{
                                    "put FakeItem.Subject \"x\"",
                                    "get FakeItem.Inspector",
                                    "call FakeInspector.Add FakeItem, 3",
                                    "call FakeItem.Secret",
                                }));
    EXPECT_EQ(recorder.text().substr(0, 50), "put FakeItem.Subject \"x\"\nget FakeItem.Inspector\nca");
}

TEST_F(RecorderTest, ArgumentsOfAPutStandInFrontOfItsValue) {
    item.put(Member::Subject, u"value", {7, Argument::named(Member::Name, u"n")});
    EXPECT_EQ(recorder.lines(), Lines{"put FakeItem.Subject 7, Name:=\"n\", \"value\""});
}

TEST_F(RecorderTest, AFailureIsShownBehindTheUseAndPassedOn) {
    EXPECT_EQ(errorOf([&] { item.call(Member::Save); }), host::runtime_error::NoSuchMember);
    EXPECT_EQ(recorder.lines(), Lines{"call FakeItem.Save -> error 438"});
    EXPECT_EQ(recorder.calls().at(0).error, host::runtime_error::NoSuchMember);
    EXPECT_FALSE(recorder.calls().at(0).result);
}

TEST_F(RecorderTest, ACallIsKeptWithItsPartsAndWithoutItsObjects) {
    item.call(Member::MAPIOBJECT, {fake().child, host::Array{0, {fake().child, 5}}});
    const RecordedCall& call = recorder.calls().at(0);
    EXPECT_EQ(call.className, u"FakeItem");
    EXPECT_EQ(call.member, u"MAPIOBJECT");
    EXPECT_EQ(call.kind, UseKind::Call);
    EXPECT_EQ(call.arguments, (std::vector<Variant>{u"FakeInspector", host::Array{0, {u"FakeInspector", 5}}}));
    EXPECT_EQ(call.result, Variant::Kind::Object);
    EXPECT_FALSE(call.error);

    fake().seen.clear();
    fake().child = Object();
    EXPECT_EQ(FakeItem::alive, 1) << "the log holds no object";
}

TEST_F(RecorderTest, WhatAnEventDoesStandsBehindWhatRaisedIt) {
    auto sink = std::make_shared<FakeSink>();
    sink->heard = [](Member, host::Args args) { args[0].value().toObject().get(Member::Subject); };
    const auto subscription = item.advise(sink);
    fake().events.raise(Member::Close, {bare});
    EXPECT_EQ(recorder.lines(), Lines{"get FakeItem.Subject"});
}

TEST_F(RecorderTest, ClearingEmptiesTheLogAlsoInsideAUse) {
    item.get(Member::Subject);
    recorder.clear();
    EXPECT_EQ(recorder.lines(), Lines{});
    item.get(Member::Inspector);
    EXPECT_EQ(recorder.lines(), Lines{"get FakeItem.Inspector"});
}

/// An object whose only member empties the log that it stands in.
class Emptying final : public host::Dispatch {
public:
    explicit Emptying(Recorder& recorder) : recorder_(recorder) {}
    std::u16string_view className() const noexcept override { return u"Emptying"; }
    Variant get(Member, host::Args) override { return {}; }
    void put(Member, const Variant&, host::Args) override {}
    Variant call(Member member, host::Args) override {
        recorder_.clear();
        if (member == Member::Delete) throw host::HostError(host::host_failure::Failed);
        return {};
    }

private:
    Recorder& recorder_;
};

TEST_F(RecorderTest, AUseThatClearsTheLogLeavesNoEntryOfItsOwn) {
    const Object emptying = recorder.decorate(makeObject<Emptying>(recorder));
    emptying.call(Member::Clear);
    EXPECT_EQ(errorOf([&] { emptying.call(Member::Delete); }), host::host_failure::Failed);
    EXPECT_EQ(recorder.lines(), Lines{});
    emptying.get(Member::Count);
    EXPECT_EQ(recorder.lines(), Lines{"get Emptying.Count"});
}

TEST_F(RecorderTest, ClassesAndMembersCanBeLeftOut) {
    recorder.leaveOut(u"fakeinspector");
    recorder.leaveOut(u"", u"SECRET");
    recorder.leaveOut(u"FakeItem", u"Parent");
    const Object inspector = item.getObject(Member::Inspector);
    inspector.get(Member::Subject);
    inspector.put(Member::Subject, 1);
    item.get(FakeItem::secret);
    item.get(Member::Parent);
    item.get(Member::Subject);
    EXPECT_EQ(recorder.lines(), (Lines{"get FakeItem.Inspector", "get FakeItem.Subject"}));
}

TEST_F(RecorderTest, TheEchoTellsEachUseAsItBeginsAndItsFailureAsItEnds) {
    std::ostringstream echo;
    Recorder told(&echo);
    const Object shown = told.decorate(bare);
    shown.put(Member::Subject, u"ä");
    errorOf([&] { shown.get(Member::Count); });
    EXPECT_EQ(echo.str(), "put FakeItem.Subject \"ä\"\nget FakeItem.Count\nget FakeItem.Count -> error 438\n");
}

TEST_F(RecorderTest, TheEnvironmentVariablePrintsTheLogOnStandardError) {
    const char* outer = getenv("LORVANE_LOG");
    const std::string before = outer ? outer : "";
    setenv("LORVANE_LOG", "1", 1);
    testing::internal::CaptureStderr();
    Recorder().decorate(bare).get(Member::Subject);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "get FakeItem.Subject\n");

    setenv("LORVANE_LOG", "", 1);
    testing::internal::CaptureStderr();
    Recorder().decorate(bare).get(Member::Subject);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    if (outer)
        setenv("LORVANE_LOG", before.c_str(), 1);
    else
        unsetenv("LORVANE_LOG");
}

TEST_F(RecorderTest, TheLogOutlivesNothingButServesObjectsThatOutliveTheRecorder) {
    auto ended = std::make_unique<Recorder>(nullptr);
    const Object shown = ended->decorate(bare);
    ended.reset();
    EXPECT_EQ(shown.getText(Member::Subject), u"first");
}

}  // namespace
}  // namespace lorvane::instruments::test
