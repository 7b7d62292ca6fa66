#include <gtest/gtest.h>

#include "ChooserRig.h"
#include "host/Redemption.h"

/// The chooser as other programs reach it: its members and operations by name.
namespace lorvane::support {
namespace {

using namespace host;

Member memberOf(const Object& object, std::u16string_view name) {
    const auto member = object.dispatch()->memberNamed(name);
    if (!member) throw HostError(runtime_error::NoSuchMember, std::u16string(name));
    return *member;
}

class ChooserByNameTest : public testing::Test {
protected:
    Variant call(std::u16string_view name, std::initializer_list<Argument> args = {}) { return form().call(memberOf(form(), name), args); }
    void put(std::u16string_view name, const Variant& value) { form().put(memberOf(form(), name), value); }
    Variant get(std::u16string_view name) { return form().get(memberOf(form(), name)); }
    static Object form() { return Object(&chooser()); }
    TestRun run;
};

TEST_F(ChooserByNameTest, TheOpenersMembersAreSetBeforeItIsShown) {
    const MailItem mail = run.receivedMail(u"Question", plain(u"Text"));
    run.user().then([](ScriptedUser&) {});
    put(u"ReplyUsingTempl", Variant(true));
    put(u"ReplyKind", Variant(std::int32_t{2}));
    put(u"fromInspector", Variant(true));
    put(u"AnsweredMail", Variant(mail));
    EXPECT_EQ(get(u"answeredmail").toObject(), mail);
    EXPECT_EQ(chooser().AnsweredMail.get(), mail);
    EXPECT_TRUE(chooser().FromInspector);
    chooser().Show(true);
    EXPECT_FALSE(isChooserOpen());
}

TEST_F(ChooserByNameTest, ItsOperationsRun) {
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales");
    openChooser(run, [this](ScriptedUser&) {
        EXPECT_TRUE(call(u"UpdateEmailList").toBoolean());
        chooser().txtSearch.Text = u"nothing like it";
        EXPECT_FALSE(call(u"UpdateEmailList").toBoolean());
        call(u"ToggleControls", {Variant(false)});
        EXPECT_FALSE(chooser().txtSearch.Enabled);
        call(u"ToggleControls", {Variant(true)});
        call(u"DisableButtons");
        EXPECT_FALSE(chooser().cmdInsert.Enabled);
        call(u"EnableButtons");
        EXPECT_TRUE(chooser().cmdInsert.Enabled);
        call(u"ShowTips");
        EXPECT_EQ(run.setting(u"ShowTips"), u"True");
        call(u"HideTips");
        EXPECT_EQ(run.setting(u"ShowTips"), u"False");
        call(u"ShowBlankState", {Variant(false), Variant(true)});
        EXPECT_TRUE(chooser().lblSearching.Visible);
        run.setSetting(u"LastFolderName", u"");
        call(u"SaveLastUsedFolder");
        EXPECT_NE(run.setting(u"LastFolderName"), u"");
    });
    EXPECT_TRUE(run.boxes().empty());
}

TEST_F(ChooserByNameTest, InListTakesOneOfItsCombos) {
    run.addTemplate(u"Alpha", plain(u"Text"), u"Sales, Support");
    openChooser(run, [this](ScriptedUser&) {
        const Object combo = get(u"cmbCategories").toObject();
        EXPECT_EQ(call(u"InList", {Variant(combo), Variant(u"Support")}), Variant(std::int32_t{2}));
        EXPECT_EQ(call(u"InList", {Variant(combo), Variant(u"support")}), Variant(std::int32_t{0}));
        EXPECT_THROW(call(u"InList", {get(u"lstEmails"), Variant(u"Support")}), HostError);
    });
}

TEST_F(ChooserByNameTest, TheTextForAnItemComesBackInItsArguments) {
    const MailItem offer = run.addTemplate(u"Offer", html(u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>"));
    openChooser(run, [&](ScriptedUser&) {
        chooser().ReplyKind = 0;
        Variant markup;
        const Variant route = call(u"CopyTextFromEmail", {Variant(makeSafeMailItem(offer)), Variant(body_format::RichText), Argument::byReference(markup)});
        EXPECT_EQ(route, Variant(static_cast<std::int32_t>(respond::InsertionRoute::PlainSplice)));
        EXPECT_EQ(markup.toText(), u"<B>Dear</B> [FirstName]");
    });
}

TEST_F(ChooserByNameTest, TheCaretProbeAnswersInItsSecondArgument) {
    run.newMail();
    run.addTemplate(u"Offer", plain(u"Text"));
    openChooser(run, [&](ScriptedUser&) {
        Variant result = Variant(true);
        call(u"CheckMouseInBody", {Variant(false), Argument::byReference(result)});
        EXPECT_EQ(result, Variant(false));
        call(u"CheckMouseInBody", {Variant(true), Argument::byReference(result)});
        EXPECT_EQ(result, Variant(true));
    });
}

}  // namespace
}  // namespace lorvane::support
