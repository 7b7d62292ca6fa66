#include "instruments/FaultInjector.h"

#include <gtest/gtest.h>

#include "instruments/FakeItem.h"
#include "instruments/Recorder.h"

namespace lorvane::instruments::test {
namespace {

using host::makeObject;
using host::Member;
using host::Object;
namespace host_failure = host::host_failure;

class FaultInjectorTest : public testing::Test {
protected:
    FaultInjectorTest() { fake().child = makeObject<FakeItem>(u"FakeInspector"); }
    ~FaultInjectorTest() override {
        fake().letGo();
        item = bare = Object();
        faults.clear();
        EXPECT_EQ(FakeItem::alive, 0) << "an object is still held";
    }
    FakeItem& fake() { return *host::implementation<FakeItem>(bare); }
    std::int32_t subject() {
        return errorOf([&] { item.get(Member::Subject); });
    }

    Object bare = makeObject<FakeItem>();
    FaultInjector faults;
    Object item = faults.decorate(bare);
};

TEST_F(FaultInjectorTest, WithoutAPlanUsesAreOnlyCounted) {
    EXPECT_EQ(subject(), 0);
    item.getObject(Member::Inspector).put(Member::Subject, u"x");
    EXPECT_EQ(faults.uses(), 3u);
    EXPECT_EQ(faults.failures(), 0u);
}

TEST_F(FaultInjectorTest, TheNthComingUseOfAMemberFailsOnceAndDoesNotHappen) {
    faults.failNth(u"fakeitem", u"SUBJECT", 2, host_failure::AccessDenied);
    item.put(Member::Subject, u"one");
    EXPECT_EQ(errorOf([&] { item.put(Member::Subject, u"two"); }), host_failure::AccessDenied);
    EXPECT_EQ(fake().subject, host::Variant(u"one"));
    item.put(Member::Subject, u"three");
    EXPECT_EQ(faults.failures(), 1u);
}

TEST_F(FaultInjectorTest, OtherClassesAndMembersDoNotCount) {
    faults.failNth(u"FakeItem", u"Subject", 1, 5);
    const Object inspector = item.getObject(Member::Inspector);
    EXPECT_EQ(inspector.getText(Member::Subject), u"first");
    EXPECT_EQ(subject(), 5);
}

TEST_F(FaultInjectorTest, AnEmptyNameMeansAny) {
    faults.failNth(u"", u"Subject", 2, 5);
    faults.failNth(u"FakeInspector", u"", 1, 6);
    const Object inspector = item.getObject(Member::Inspector);
    EXPECT_EQ(subject(), 0);
    EXPECT_EQ(errorOf([&] { inspector.get(Member::Subject); }), 5) << "both are due here; the plan that was made first strikes";
    EXPECT_EQ(errorOf([&] { inspector.get(Member::Subject); }), 0);
}

TEST_F(FaultInjectorTest, MembersOfThePlatformAloneAreNamedToo) {
    faults.failNth(u"", u"Secret", 1, 5);
    EXPECT_EQ(errorOf([&] { item.get(FakeItem::secret); }), 5);
}

TEST_F(FaultInjectorTest, TheDescriptionIsTheOneGivenElseTheStandardOne) {
    const auto describedAs = [&] {
        try {
            item.get(Member::Subject);
        } catch (const host::HostError& error) {
            return error.description();
        }
        return std::u16string();
    };
    faults.failNth(u"", u"", 1, host_failure::AccessDenied, u"The disk is at the moon.");
    EXPECT_EQ(describedAs(), u"The disk is at the moon.");
    faults.failNth(u"", u"", 1, host_failure::AccessDenied);
    EXPECT_EQ(describedAs(), u"You don't have appropriate permission to perform this operation.");
}

TEST_F(FaultInjectorTest, ASweepFailsEachUseOfACommandInTurn) {
    const auto command = [&] {
        item.get(Member::Subject);
        item.getObject(Member::Inspector).put(Member::Subject, u"x");
        item.call(Member::MAPIOBJECT);
    };
    std::vector<std::int32_t> ended;
    for (std::size_t n = 1;; ++n) {
        faults.clear();
        faults.failCall(n, host_failure::Failed);
        ended.push_back(errorOf(command));
        if (faults.failures() == 0) break;
        EXPECT_EQ(faults.uses(), n);
    }
    EXPECT_EQ(ended, (std::vector<std::int32_t>{host_failure::Failed, host_failure::Failed, host_failure::Failed, host_failure::Failed, 0}));
}

TEST_F(FaultInjectorTest, ALostObjectFailsOnEveryMemberThroughEveryHandle) {
    const Object again = faults.decorate(bare);
    const Object inspector = item.getObject(Member::Inspector);
    faults.loseObjectAt(2);
    EXPECT_EQ(subject(), host_failure::NotFound);
    EXPECT_EQ(subject(), host_failure::NotFound);
    EXPECT_EQ(errorOf([&] { again.put(Member::Subject, u"x"); }), host_failure::NotFound);
    EXPECT_EQ(errorOf([&] { again.call(FakeItem::secret); }), host_failure::NotFound);
    EXPECT_EQ(errorOf([&] { (void)again.advise({}); }), host_failure::NotFound);
    EXPECT_EQ(inspector.getText(Member::Subject), u"first") << "other objects live on";
    EXPECT_EQ(faults.failures(), 4u);
}

TEST_F(FaultInjectorTest, ALostObjectKeepsItsIdentityForItself) {
    faults.loseObjectAt(1);
    EXPECT_EQ(subject(), host_failure::NotFound);
    item = bare = Object();
    bare = makeObject<FakeItem>();
    item = faults.decorate(bare);
    EXPECT_EQ(subject(), 0) << "a new object is never taken for the lost one";
    faults.clear();
    EXPECT_EQ(FakeItem::alive, 1);
}

TEST_F(FaultInjectorTest, ClearingForgetsEverything) {
    faults.failNth(u"", u"", 1, 5);
    faults.failCall(1, 5);
    faults.loseObjectAt(1);
    faults.clear();
    EXPECT_EQ(subject(), 0);
    EXPECT_EQ(faults.uses(), 1u);
    EXPECT_EQ(faults.failures(), 0u);
}

TEST_F(FaultInjectorTest, ANumberBelowOneIsRefused) {
    EXPECT_EQ(errorOf([&] { faults.failNth(u"", u"", 0, 5); }), 5);
    EXPECT_EQ(errorOf([&] { faults.failCall(0, 6); }), 5);
    EXPECT_EQ(errorOf([&] { faults.loseObjectAt(0); }), 5);
}

TEST_F(FaultInjectorTest, TheRecorderInFrontSeesTheFailure) {
    Recorder recorder(nullptr);
    const Object both = recorder.decorate(item);
    faults.failCall(2, host_failure::AccessDenied);
    const Object inspector = both.getObject(Member::Inspector);
    EXPECT_EQ(errorOf([&] { inspector.get(Member::Subject); }), host_failure::AccessDenied);
    EXPECT_EQ(recorder.text(), "get FakeItem.Inspector\nget FakeInspector.Subject -> error -2147024891\n");
}

TEST_F(FaultInjectorTest, TheRecorderBehindDoesNotSeeWhatNeverHappened) {
    Recorder recorder(nullptr);
    const Object both = faults.decorate(recorder.decorate(bare));
    faults.failCall(1, host_failure::AccessDenied);
    EXPECT_EQ(errorOf([&] { both.get(Member::Subject); }), host_failure::AccessDenied);
    both.get(Member::Subject);
    EXPECT_EQ(recorder.text(), "get FakeItem.Subject\n");
}

}  // namespace
}  // namespace lorvane::instruments::test
