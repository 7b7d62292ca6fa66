#include <gtest/gtest.h>

#include "host/BarsRig.h"

/// The buttons that stand in an open item only where the build has action processes, and what an appointment's `Mileage` makes of them.
namespace lorvane::support {
namespace {

using namespace host;

constexpr std::u16string_view createEmail = u"Lorvane/Create Email", reschedule = u"Lorvane/Reschedule", relatedItems = u"Lorvane/Related Items";

Inspector openMarked(const TestRun& run, const OtherKind& kind, std::u16string_view mileage) {
    return run.openMail(savedItem(run, kind, default_folder::Inbox, mileage));
}

/// Which of the three can be clicked.
struct Enabled {
    bool createEmail, reschedule, relatedItems;
    bool operator==(const Enabled&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Enabled& enabled) {
    return out << enabled.createEmail << enabled.reschedule << enabled.relatedItems;
}
Enabled enabledOf(const TestRun& run, const Object& window) {
    return {controlAt(run, window, createEmail)->enabled, controlAt(run, window, reschedule)->enabled, controlAt(run, window, relatedItems)->enabled};
}

void expectVisible(const TestRun& run, const Object& window, bool visible) {
    for (const std::u16string_view path : {createEmail, reschedule, relatedItems}) EXPECT_EQ(controlAt(run, window, path)->visible, visible) << toUtf8(path);
}

struct MileageCase {
    std::u16string_view mileage;
    Enabled enabled;
};
constexpr MileageCase mileageCases[] = {
    {u"", {false, false, false}},
    {u"ITCreateEmail=T", {true, false, false}},
    {u"ITCreateEmail=True,ITTemplateStoreID=00", {true, false, false}},
    {u"ITCreateEmail=False", {false, false, false}},
    {u"ITProcessGroup=", {false, true, true}},
    {u"ITProcessGroup=7,ITProcessEventNum=1", {false, true, true}},
    {u"12 km,ITCreateEmail=T,,ITProcessGroup=7", {true, true, true}},
    {u"ITProcessEventNum=1", {false, false, false}},
    {u"12 km", {false, false, false}},
};

TEST(ProcessButtonsTest, AnAppointmentEnablesWhatItsMileageMarks) {
    for (const MileageCase& turn : mileageCases) {
        TestRun run;
        const Object appointment = openMarked(run, appointmentKind, turn.mileage);
        EXPECT_EQ(enabledOf(run, appointment), turn.enabled) << toUtf8(turn.mileage);
        expectVisible(run, appointment, true);
    }
}

TEST(ProcessButtonsTest, AreHiddenInEveryOtherItem) {
    for (const OtherKind& kind : {mailKind, postKind, taskKind}) {
        TestRun run;
        const Object window = openMarked(run, kind, u"ITCreateEmail=T,ITProcessGroup=7");
        expectVisible(run, window, false);
        EXPECT_EQ(enabledOf(run, window), (Enabled{true, true, true})) << "though the marks hold for them too";
        for (const std::u16string_view path : {createEmail, reschedule, relatedItems}) EXPECT_THROW(run.driver().clickBar(window, path), HostError);
    }
    TestRun run;
    const Object mail = run.newMail();
    expectVisible(run, mail, false);
    EXPECT_EQ(enabledOf(run, mail), (Enabled{false, false, false}));
}

TEST(ProcessButtonsTest, WithoutAMarkTheyCannotBeClicked) {
    TestRun run;
    const Object appointment = openMarked(run, appointmentKind, u"");
    for (const std::u16string_view path : {createEmail, reschedule, relatedItems}) EXPECT_THROW(run.driver().clickBar(appointment, path), HostError);
}

TEST(ProcessButtonsTest, EachDoesItsOneThing) {
    TestRun run;
    const Inspector appointment = openMarked(run, appointmentKind, u"ITCreateEmail=T,ITProcessGroup=7");
    const auto told = recordCommands();
    expectClicks(
        run, told, appointment,
        {{u"Lorvane/Lorvane", chooserToInsert}, {reschedule, "rescheduleProcess"}, {relatedItems, "showRelatedItems"}, {u"Lorvane/Help", "openTutorialPage"}});
    const MailItem item = appointment.CurrentItem();
    run.driver().clickBar(appointment, createEmail);
    EXPECT_EQ(told->lines, Lines{"createLinkedEmail " + toUtf8(item.EntryID()) + " " + toUtf8(item.Parent().StoreID())});
}

TEST(ProcessButtonsTest, AnAppointmentThatWasNeverSavedHasNoIdentityYet) {
    TestRun run;
    const MailItem fresh = run.application().CreateItem(olAppointmentItem);
    fresh.put(Member::Mileage, u"ITCreateEmail=T");
    fresh.Display();
    const auto told = recordCommands();
    run.driver().clickBar(fresh.GetInspector(), createEmail);
    ASSERT_EQ(told->lines.size(), 1U);
    EXPECT_TRUE(told->lines[0].starts_with("createLinkedEmail  ")) << told->lines[0];
}

TEST(ProcessButtonsTest, EachMarkIsReadForItself) {
    TestRun run({.instruments = true});
    const Inspector appointment = openMarked(run, appointmentKind, u"");
    appointment.CurrentItem().put(Member::Mileage, u"ITCreateEmail=T,ITProcessGroup=7");
    // The first of two readings behind the buttons, and the first of two at the end.
    run.faults().failNth(u"AppointmentItem", u"Mileage", 1, host_failure::Failed);
    run.faults().failNth(u"AppointmentItem", u"Mileage", 3, host_failure::Failed);
    inspectorWrap()->InitButton();
    EXPECT_EQ(run.faults().failures(), 2U);
    EXPECT_EQ(enabledOf(run, appointment), (Enabled{false, true, true}));
}

TEST(ProcessButtonsTest, AnUnreadableMileageEnablesNothing) {
    TestRun run({.instruments = true});
    for (std::size_t nth = 1; nth <= 4; ++nth) run.faults().failNth(u"AppointmentItem", u"Mileage", nth, host_failure::Failed);
    const Object appointment = openMarked(run, appointmentKind, u"ITCreateEmail=T,ITProcessGroup=7");
    EXPECT_EQ(run.faults().failures(), 4U);
    EXPECT_EQ(enabledOf(run, appointment), (Enabled{false, false, false}));
    EXPECT_TRUE(run.boxes().empty());
}

TEST(ProcessButtonsTest, AProcessButtonThatCannotBeMadeIsJustNotThere) {
    for (const auto& [nth, caption] :
         {std::pair(std::size_t{2}, u"Create Email"), std::pair(std::size_t{3}, u"Reschedule"), std::pair(std::size_t{4}, u"Related Items")}) {
        TestRun run({.instruments = true});
        run.faults().failNth(u"CommandBarControls", u"Add", nth, host_failure::Failed);
        const Object appointment = openMarked(run, appointmentKind, u"ITCreateEmail=T,ITProcessGroup=7");
        Captions expected = {u"Lo&rvane", u"Create Email", u"Reschedule", u"Related Items", u"&Help"};
        std::erase(expected, caption);
        EXPECT_EQ(captionsSeen(run, appointment, u"Lorvane"), expected);
        EXPECT_TRUE(run.boxes().empty());
    }
}

TEST(ProcessButtonsTest, TagsHaveTheKeyOfTheWindow) {
    TestRun run;
    run.newMail();
    const Object appointment = openMarked(run, appointmentKind, u"");
    EXPECT_EQ(controlAt(run, appointment, createEmail)->tag, u"Create Email1");
    EXPECT_EQ(controlAt(run, appointment, reschedule)->tag, u"Reschedule1");
    EXPECT_EQ(controlAt(run, appointment, relatedItems)->tag, u"Related Items1");
}

}  // namespace
}  // namespace lorvane::support
