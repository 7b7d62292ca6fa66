#include "contract/Listeners.h"

/// The windows of the host from their first showing to their end, as their events tell it.
namespace lorvane::contract {

namespace {

using Log = std::vector<std::u16string>;

/// Writes the events of several objects into one log, as "Inspectors.NewInspector".
class Listeners {
public:
    /// Hears an object from now on.
    Listener& hear(const Object& source) {
        auto& connected = connected_.emplace_back(std::make_unique<Connected>(source));
        const std::u16string name(source.dispatch()->className());
        for (const char16_t* event : {u"NewExplorer", u"NewInspector", u"Open", u"Activate", u"Close", u"SelectionChange", u"BeforeFolderSwitch"}) {
            connected->listener->reactions[event] = [this, line = name + u"." + event](Args args) {
                log.push_back(line);
                if (const auto reaction = reactions.find(line); reaction != reactions.end()) reaction->second(args);
            };
        }
        return *connected->listener;
    }

    Log log;
    std::map<std::u16string, std::function<void(Args)>> reactions;

private:
    std::vector<std::unique_ptr<Connected>> connected_;
};

/// What the add-in's wrappers are like: an owner that a collection alone keeps, and its variable with events inside it.
struct Owner {
    struct Sink final : EventSink {
        std::function<void()> heard;
        void onEvent(Member, Args) override {
            if (heard) heard();
        }
    };
    Sink sink;
    Subscription subscription;

    static void hear(const std::shared_ptr<Owner>& owner, const Object& source) {
        owner->subscription = source.advise(std::shared_ptr<EventSink>(owner, &owner->sink));
    }
};

}  // namespace

class WindowLife : public OneHost {
protected:
    std::int32_t inspectors() { return host().application().Inspectors().Count(); }
    std::int32_t explorers() { return host().application().Explorers().Count(); }
};

TEST_F(WindowLife, AnInspectorIsToldOfThenItsItemOpensThenItIsActive) {
    const MailItem item = host().savedItem(u"Offer");
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    listeners.reactions[u"Inspectors.NewInspector"] = [&](Args args) {
        const Inspector inspector(argumentAt(args, 0).toObject());
        listeners.hear(inspector);
        listeners.hear(inspector.CurrentItem());
    };
    item.Display();
    EXPECT_EQ(listeners.log, (Log{u"Inspectors.NewInspector", u"MailItem.Open", u"Inspector.Activate"}));
}

TEST_F(WindowLife, AnItemThatRefusesToOpenClosesItsWindow) {
    const MailItem item = host().savedItem(u"Offer");
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    listeners.hear(item);
    listeners.reactions[u"Inspectors.NewInspector"] = [&](Args args) { listeners.hear(argumentAt(args, 0).toObject()); };
    listeners.reactions[u"MailItem.Open"] = [](Args args) { args[0].assign(true); };
    item.Display();
    EXPECT_EQ(listeners.log, (Log{u"Inspectors.NewInspector", u"MailItem.Open", u"Inspector.Close"}));
    EXPECT_EQ(inspectors(), 0);
    EXPECT_FALSE(host().application().ActiveInspector());
    listeners.reactions.erase(u"MailItem.Open");
    item.Display();
    EXPECT_EQ(inspectors(), 1);
}

TEST_F(WindowLife, AnInspectorThatIsNotDisplayedYetIsNoWindow) {
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    const Inspector inspector = host().savedItem(u"Offer").GetInspector();
    EXPECT_EQ(inspectors(), 0);
    EXPECT_FALSE(host().application().ActiveInspector());
    EXPECT_EQ(listeners.log, Log{});
    inspector.Display();
    EXPECT_EQ(listeners.log, Log{u"Inspectors.NewInspector"});
    EXPECT_EQ(inspectors(), 1);
    EXPECT_EQ(host().application().ActiveInspector(), inspector);
}

TEST_F(WindowLife, TheWindowCountsWhileItIsToldOf) {
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    std::int32_t counted = 0;
    listeners.reactions[u"Inspectors.NewInspector"] = [&](Args) { counted = inspectors(); };
    person().newMail();
    EXPECT_EQ(counted, 1);
}

TEST_F(WindowLife, AHandlerThatDisplaysTheNewWindowMakesItActiveOnce) {
    Listeners listeners;
    listeners.hear(host().application().Explorers());
    listeners.reactions[u"Explorers.NewExplorer"] = [&](Args args) {
        const Object explorer = argumentAt(args, 0).toObject();
        listeners.hear(explorer);
        explorer.call(Member::Display);
    };
    person().openExplorer();
    EXPECT_EQ(listeners.log, (Log{u"Explorers.NewExplorer", u"Explorer.Activate"}));
}

TEST_F(WindowLife, AHandlerMayCloseTheNewWindow) {
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    listeners.reactions[u"Inspectors.NewInspector"] = [&](Args args) {
        const Inspector inspector(argumentAt(args, 0).toObject());
        listeners.hear(inspector);
        inspector.Close(olDiscard);
    };
    host().savedItem(u"Offer").Display();
    EXPECT_EQ(listeners.log, (Log{u"Inspectors.NewInspector", u"Inspector.Close"}));
    EXPECT_EQ(inspectors(), 0);
}

TEST_F(WindowLife, TheClosingWindowStillCounts) {
    const Inspector inspector = person().newMail();
    const Object explorer = person().openExplorer();
    Listeners listeners;
    listeners.hear(inspector);
    listeners.hear(explorer);
    std::vector<std::int32_t> counted;
    listeners.reactions[u"Inspector.Close"] = [&](Args) { counted.push_back(inspectors()); };
    listeners.reactions[u"Explorer.Close"] = [&](Args) { counted.push_back(explorers()); };
    inspector.Close(olDiscard);
    call(explorer, u"Close");
    EXPECT_EQ(counted, (std::vector<std::int32_t>{1, 1}));
    EXPECT_EQ(inspectors() + explorers(), 0);
}

TEST_F(WindowLife, AnItemClosesBeforeItsWindow) {
    const Inspector inspector = person().newMail();
    Listeners listeners;
    listeners.hear(inspector);
    listeners.hear(inspector.CurrentItem());
    listeners.reactions[u"MailItem.Close"] = [](Args args) { args[0].assign(true); };
    inspector.Close(olDiscard);
    EXPECT_EQ(listeners.log, Log{u"MailItem.Close"});
    EXPECT_EQ(inspectors(), 1);
    listeners.reactions.clear();
    inspector.Close(olDiscard);
    EXPECT_EQ(listeners.log, (Log{u"MailItem.Close", u"MailItem.Close", u"Inspector.Close"}));
}

TEST_F(WindowLife, AContactTellsOfItsOpeningAndClosing) {
    const MailItem contact = host().newItem(u"IPM.Contact");
    contact.Save();
    Listeners listeners;
    listeners.hear(contact);
    contact.Display();
    contact.GetInspector().Close(olDiscard);
    EXPECT_EQ(listeners.log, (Log{u"ContactItem.Open", u"ContactItem.Close"}));
}

TEST_F(WindowLife, TheWindowBehindAClosedOneIsActive) {
    const Object explorer = person().openExplorer();
    const Inspector inspector = person().newMail();
    Listeners listeners;
    listeners.hear(inspector);
    listeners.hear(explorer);
    inspector.Close(olDiscard);
    EXPECT_EQ(listeners.log, (Log{u"Inspector.Close", u"Explorer.Activate"}));
}

TEST_F(WindowLife, AWindowThatIsInFrontIsNotActivatedAgain) {
    const Object explorer = person().openExplorer();
    Listeners listeners;
    listeners.hear(explorer);
    explorer.call(Member::Display);
    EXPECT_EQ(listeners.log, Log{});
    person().newMail();
    explorer.call(Member::Display);
    EXPECT_EQ(listeners.log, Log{u"Explorer.Activate"});
}

TEST_F(WindowLife, AClosedWindowIsOfNoUse) {
    const Object explorer = person().openExplorer();
    const Inspector inspector = person().newMail();
    call(explorer, u"Close");
    inspector.Close(olDiscard);
    for (const Object& closed : {explorer, Object(inspector)}) {
        EXPECT_NEGATIVE_ERROR(closed.call(Member::Display));
        EXPECT_NEGATIVE_ERROR(get(closed, u"Caption"));
    }
}

TEST_F(WindowLife, AFolderSwitchIsAskedForAndTold) {
    const Object explorer = person().openExplorer();
    const MAPIFolder drafts = host().folder(default_folder::Drafts);
    Listeners listeners;
    listeners.hear(explorer);
    Object asked;
    bool refuse = true;
    listeners.reactions[u"Explorer.BeforeFolderSwitch"] = [&](Args args) {
        asked = argumentAt(args, 0).toObject();
        args[1].assign(refuse);
    };
    put(explorer, u"CurrentFolder", drafts);
    EXPECT_EQ(MAPIFolder(asked).EntryID(), drafts.EntryID());
    EXPECT_EQ(MAPIFolder(object(explorer, u"CurrentFolder")).EntryID(), host().inbox().EntryID());
    EXPECT_EQ(listeners.log, Log{u"Explorer.BeforeFolderSwitch"});
    refuse = false;
    put(explorer, u"CurrentFolder", drafts);
    EXPECT_EQ(MAPIFolder(object(explorer, u"CurrentFolder")).EntryID(), drafts.EntryID());
    EXPECT_EQ(listeners.log, (Log{u"Explorer.BeforeFolderSwitch", u"Explorer.BeforeFolderSwitch", u"Explorer.SelectionChange"}));
}

TEST_F(WindowLife, ItemsOfEveryClassOpen) {
    struct Row {
        const char16_t* messageClass;
        std::int32_t itemClass;
        const char16_t* className;
    };
    Listeners listeners;
    listeners.hear(host().application().Inspectors());
    std::int32_t opened = 0;
    listeners.reactions[u"Inspectors.NewInspector"] = [&](Args args) { opened = Inspector(argumentAt(args, 0).toObject()).CurrentItem().Class(); };
    for (const Row& row : {Row{u"IPM.Note", 43, u"MailItem"}, Row{u"IPM.Post", 45, u"PostItem"}, Row{u"IPM.Appointment", 26, u"AppointmentItem"},
                           Row{u"IPM.Task", 48, u"TaskItem"}, Row{u"IPM.Contact", 40, u"ContactItem"}, Row{u"IPM.StickyNote", 44, u"NoteItem"},
                           Row{u"IPM.Activity", 42, u"JournalItem"}, Row{u"IPM.DistList", 69, u"DistListItem"}, Row{u"IPM.Document", 41, u"DocumentItem"}}) {
        const MailItem item = host().newItem(row.messageClass);
        EXPECT_EQ(item.dispatch()->className(), row.className);
        item.Display();
        EXPECT_EQ(opened, row.itemClass);
        EXPECT_EQ(host().application().ActiveInspector().CurrentItem(), item);
        item.GetInspector().Close(olDiscard);
    }
    EXPECT_EQ(inspectors(), 0);
}

TEST_F(WindowLife, AnOwnerThatOthersLetGoHearsTheEventUnderWayAndNothingAfterIt) {
    const Inspector inspector = person().newMail();
    const auto first = std::make_shared<Owner>();
    auto second = std::make_shared<Owner>();
    Owner::hear(first, inspector);
    Owner::hear(second, inspector);
    const std::weak_ptr<Owner> watched = second;
    int heard = 0;
    second->sink.heard = [&] {
        ++heard;
        EXPECT_FALSE(watched.expired());
    };
    first->sink.heard = [&] { second.reset(); };
    inspector.Close(olDiscard);
    EXPECT_EQ(heard, 1);
    EXPECT_TRUE(watched.expired());
}

TEST_F(WindowLife, ASinkWhoseConnectionAnotherOneTookBackIsNotTold) {
    const Inspector inspector = person().newMail();
    const auto first = std::make_shared<Owner>(), second = std::make_shared<Owner>();
    Owner::hear(first, inspector);
    Owner::hear(second, inspector);
    bool heard = false;
    second->sink.heard = [&] { heard = true; };
    first->sink.heard = [&] { second->subscription.reset(); };
    inspector.Close(olDiscard);
    EXPECT_FALSE(heard);
}

TEST_F(WindowLife, ASinkThatComesInsideAnEventHearsTheNextOne) {
    const Object explorer = person().openExplorer();
    const auto first = std::make_shared<Owner>(), second = std::make_shared<Owner>();
    int heard = 0;
    second->sink.heard = [&] { ++heard; };
    first->sink.heard = [&] {
        if (!second->subscription) Owner::hear(second, explorer);
    };
    Owner::hear(first, explorer);
    person().selectItems(explorer, {});
    EXPECT_EQ(heard, 0);
    person().selectItems(explorer, {});
    EXPECT_EQ(heard, 1);
}

}  // namespace lorvane::contract
