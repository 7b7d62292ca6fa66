#include "contract/Listeners.h"

namespace lorvane::contract {

class WindowEvents : public OneHost {};

TEST_F(WindowEvents, NewInspectorGivesTheInspectorOfAShownItem) {
    const Connected inspectors(host().application().Inspectors());
    std::u16string subject;
    std::int32_t itemClass = 0;
    inspectors.listener->reactions[u"NewInspector"] = [&](Args args) {
        const MailItem item = Inspector(argumentAt(args, 0).toObject()).CurrentItem();
        subject = item.Subject();
        itemClass = item.Class();
    };
    host().open(host().savedItem(u"Offer"));
    EXPECT_EQ(inspectors.listener->count(u"NewInspector"), 1u);
    EXPECT_EQ(subject, u"Offer");
    EXPECT_EQ(itemClass, item_class::Mail);
}

TEST_F(WindowEvents, NewInspectorComesOnceAWindow) {
    const Connected inspectors(host().application().Inspectors());
    const Inspector inspector = host().open(host().savedItem(u"Offer"));
    inspector.Display();
    inspector.Activate();
    EXPECT_EQ(inspectors.listener->count(u"NewInspector"), 1u);
}

TEST_F(WindowEvents, NewExplorerGivesTheExplorer) {
    const Connected explorers(host().application().Explorers());
    Object given;
    explorers.listener->reactions[u"NewExplorer"] = [&](Args args) { given = argumentAt(args, 0).toObject(); };
    const Object explorer = person().openExplorer();
    EXPECT_EQ(explorers.listener->count(u"NewExplorer"), 1u);
    EXPECT_EQ(given, explorer);
}

TEST_F(WindowEvents, AnInspectorTellsOfActivationAndClosing) {
    const Inspector first = host().open(host().savedItem(u"First"));
    const Connected events(first);
    host().open(host().savedItem(u"Second"));
    EXPECT_EQ(events.listener->log, std::vector<std::u16string>{});
    first.Activate();
    EXPECT_EQ(events.listener->log, std::vector<std::u16string>{u"Activate"});
    first.Close(olDiscard);
    EXPECT_EQ(events.listener->log, (std::vector<std::u16string>{u"Activate", u"Close"}));
}

TEST_F(WindowEvents, ClosingByThePersonTellsToo) {
    const Inspector inspector = person().newMail();
    const Connected events(inspector);
    person().closeInspector(inspector, false);
    EXPECT_EQ(events.listener->count(u"Close"), 1u);
}

TEST_F(WindowEvents, AnExplorerTellsOfASelection) {
    const MailItem item = host().savedItem(u"Offer");
    const Object explorer = person().openExplorer();
    const Connected events(explorer);
    person().selectItems(explorer, {identityOf(item)});
    EXPECT_EQ(events.listener->count(u"SelectionChange"), 1u);
}

TEST_F(WindowEvents, AnExplorerTellsOfItsClosing) {
    const Object explorer = person().openExplorer();
    const Connected events(explorer);
    call(explorer, u"Close");
    EXPECT_EQ(events.listener->count(u"Close"), 1u);
    EXPECT_EQ(host().application().Explorers().Count(), 0);
}

TEST_F(WindowEvents, ADroppedSinkHearsNothingMore) {
    const Inspector inspector = person().newMail();
    Connected events(inspector);
    events.subscription.reset();
    inspector.Close(olDiscard);
    EXPECT_TRUE(events.listener->log.empty());
}

TEST_F(WindowEvents, ASinkMayEndInsideItsOwnCloseEvent) {
    const Inspector inspector = person().newMail();
    auto events = std::make_unique<Connected>(inspector);
    bool told = false;
    events->listener->reactions[u"Close"] = [&](Args) {
        told = true;
        events.reset();
    };
    inspector.Close(olDiscard);
    EXPECT_TRUE(told);
    EXPECT_EQ(events, nullptr);
}

TEST_F(WindowEvents, EachSinkHearsThemAlsoWhereOneFails) {
    const Inspector inspector = person().newMail();
    const Connected failing(inspector), other(inspector);
    failing.listener->reactions[u"Close"] = [](Args) { throw HostError(5, u"sink"); };
    EXPECT_NO_THROW(inspector.Close(olDiscard));
    EXPECT_EQ(other.listener->count(u"Close"), 1u);
}

TEST_F(WindowEvents, AnApplicationCanBeListenedTo) {
    EXPECT_NO_THROW(Connected{host().application()});
}

}  // namespace lorvane::contract
