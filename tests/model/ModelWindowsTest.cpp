#include "model/ModelHostRig.h"

/// Windows of the model host, their events and bars.
namespace lorvane::model {
namespace {

class ModelWindowsTest : public ModelHostTest {};

TEST_F(ModelWindowsTest, FolderSwitchMayBeRefused) {
    const host::Object explorer = driver().openExplorer();
    auto listener = std::make_shared<Listener>();
    listener->onHeard = [](Member event, host::Args args) {
        if (event == member::BeforeFolderSwitch) args[1].assign(true);
    };
    host::Subscription window = explorer.advise(listener);
    explorer.put(member::CurrentFolder, session().GetDefaultFolder(16));
    EXPECT_EQ(explorer.getObject(member::CurrentFolder).getText(Member::Name), u"Inbox");
    window.reset();
    explorer.put(member::CurrentFolder, session().GetDefaultFolder(16));
    EXPECT_EQ(explorer.getObject(member::CurrentFolder).getText(Member::Name), u"Drafts");
    EXPECT_EQ(application().ActiveExplorer(), explorer);
}

TEST_F(ModelWindowsTest, SelectedItemsAreThoseThatStillAre) {
    host::MailItem mail = savedMail(u"A", u"");
    const host::Object explorer = driver().openExplorer();
    driver().selectItems(explorer, {{mail.EntryID(), mail.Parent().StoreID()}});
    const host::Object selection = explorer.getObject(Member::Selection);
    EXPECT_EQ(selection.getNumber(Member::Count), 1);
    EXPECT_EQ(host::MailItem(selection.call(Member::Item, {1}).toObject()).Subject(), u"A");
    mail.Delete();
    EXPECT_EQ(explorer.getObject(Member::Selection).getNumber(Member::Count), 0);
}

TEST_F(ModelWindowsTest, DiscardedWindowDropsWhatWasNotSaved) {
    host::MailItem mail = savedMail(u"A", u"<p>x</p>");
    mail.Display();
    driver().focus(application().ActiveInspector(), EditorFieldName::Body, Driver::AtEnd);
    type(u"typed");
    mail.Subject(u"B");
    application().ActiveInspector().Close(1);
    EXPECT_EQ(mail.Subject(), u"A");
    EXPECT_EQ(mail.HTMLBody(), u"<p>x</p>");
    mail.Display();
    driver().focus(application().ActiveInspector(), EditorFieldName::Body, Driver::AtEnd);
    type(u"typed");
    application().ActiveInspector().Close(0);
    EXPECT_EQ(mail.HTMLBody(), u"<p>xtyped</p>");
}

TEST_F(ModelWindowsTest, DeletedItemTakesItsWindowAlong) {
    host::Inspector inspector(driver().newMail());
    host::MailItem mail = inspector.CurrentItem();
    mail.Save();
    mail.Delete();
    EXPECT_EQ(application().Inspectors().Count(), 0);
    type(u"lost");
    EXPECT_LT(errorNumberOf([&] { (void)inspector.CurrentItem(); }), 0);
}

TEST_F(ModelWindowsTest, WindowsCountWhileShownAndTellTheirEvents) {
    auto listener = std::make_shared<Listener>();
    const host::Subscription windows = application().Inspectors().advise(listener);
    host::MailItem mail = savedMail(u"A", u"x");
    host::Inspector inspector = mail.GetInspector();
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_FALSE(application().ActiveInspector());
    EXPECT_TRUE(listener->heard.empty());

    auto own = std::make_shared<Listener>();
    std::int32_t countInClose = 0;
    own->onHeard = [&](Member event, host::Args) {
        if (event == Member::Close) countInClose = application().Inspectors().Count();
    };
    const host::Subscription window = inspector.advise(own);
    inspector.Display();
    EXPECT_EQ(listener->heard, std::vector<Member>{model::member::NewInspector});
    EXPECT_EQ(application().ActiveInspector(), inspector);
    inspector.Close(1);
    EXPECT_EQ(countInClose, 1);
    EXPECT_EQ(own->heard, (std::vector<Member>{Member::Activate, Member::Close}));
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_FALSE(mail.GetInspector() == inspector);
}

TEST_F(ModelWindowsTest, ItemMayRefuseToClose) {
    host::Inspector inspector(driver().newMail());
    auto listener = std::make_shared<Listener>();
    listener->onHeard = [](Member event, host::Args args) {
        if (event == Member::Close) args[0].assign(true);
    };
    host::Subscription item = inspector.CurrentItem().advise(listener);
    inspector.Close(1);
    EXPECT_EQ(application().Inspectors().Count(), 1);
    item.reset();
    inspector.Close(1);
    EXPECT_EQ(application().Inspectors().Count(), 0);
}

TEST_F(ModelWindowsTest, WindowMayEndInItsOwnCloseEvent) {
    host::Inspector inspector(driver().newMail());
    auto listener = std::make_shared<Listener>();
    host::Subscription window = inspector.advise(listener);
    listener->onHeard = [&](Member event, host::Args) {
        if (event != Member::Close) return;
        window.reset();
        inspector = host::Inspector();
    };
    host::Inspector(inspector.dispatch() ? host::Object(inspector.dispatch()) : host::Object()).Close(0);
    EXPECT_EQ(application().Inspectors().Count(), 0);
    EXPECT_EQ(session().GetDefaultFolder(16).Items().Count(), 1);
}

TEST_F(ModelWindowsTest, AWindowThatIsNotDisplayedHasBarsThatNobodyClicks) {
    host::Inspector inspector(savedMail(u"A", u"").GetInspector());
    ASSERT_FALSE(driver().bars(inspector).empty());
    EXPECT_TRUE(driver().bars(inspector).front().builtIn);
    EXPECT_EQ(errorNumberOf([&] { driver().clickBar(inspector, u"Standard/Save"); }), host::runtime_error::InvalidProcedureCall);
    inspector.Display();
    EXPECT_EQ(errorNumberOf([&] { driver().clickBar(inspector, u"Standard/Save"); }), 0);
    EXPECT_EQ(errorNumberOf([&] { driver().bars(inspector.CurrentItem()); }), host::runtime_error::TypeMismatch);
}

TEST_F(ModelWindowsTest, AButtonTakesOnlyNumbersThatTheHostHas) {
    const host::Object save = driver().openExplorer().get(member::CommandBars, {u"Standard"}).toObject().getObject(member::Controls, {1});
    for (const auto& [member, number] : std::initializer_list<std::pair<Member, std::int32_t>>{{member::Priority, 8}, {member::Style, 5}, {member::FaceId, -1}})
        EXPECT_EQ(errorNumberOf([&] { save.put(member, number); }), static_cast<std::int32_t>(0x80070057));
}

}  // namespace
}  // namespace lorvane::model
