#include <gtest/gtest.h>

#include <functional>

#include "host/Outlook.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "html/ClipboardHtml.h"
#include "mailstore/MemoryStore.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "model/ModelMembers.h"
#include "support/ErrorOf.h"

/// Word as the editor, as far as the model host's own options and driver go; what every host does is in the contract.
namespace lorvane::model {
namespace {

using host::Member;
using host::Object;
using host::Variant;
using support::errorNumberOf;

constexpr std::int32_t save = 0, discard = 1;

/// Runs `act` inside an event.
struct Handler final : host::EventSink {
    std::function<void(Member)> act;
    void onEvent(Member event, host::Args) override { act(event); }
};

class WordModelTest : public ::testing::Test {
protected:
    HostOptions options() {
        HostOptions made(desktop);
        made.editor = EditorKind::Word;
        made.defaultStore = store;
        made.clipboardContent = [this] { return clipboard; };
        made.setClipboardContent = [this](const PasteContent& content) { clipboard = content; };
        return made;
    }
    void restart(const std::function<void(HostOptions&)>& change) {
        HostOptions changed = options();
        change(changed);
        model = std::make_unique<ModelHost>(std::move(changed));
    }

    Driver driver() const { return Driver(*model); }
    host::Application application() const { return host::Application(model->application()); }
    host::NameSpace session() const { return application().GetNamespace(u"MAPI"); }
    host::MailItem again(const host::MailItem& item) const { return session().GetItemFromID(item.EntryID(), item.Parent().StoreID()); }
    host::MailItem savedMail(std::u16string_view html) const {
        host::MailItem mail = application().CreateItem(0);
        mail.HTMLBody(html);
        mail.Save();
        return mail;
    }
    host::MailItem savedPlain(std::u16string_view text) const {
        host::MailItem mail = application().CreateItem(0);
        mail.Body(text);
        mail.Save();
        return mail;
    }
    host::Inspector opened(const host::MailItem& mail) const { return host::Inspector(driver().openItem(mail.EntryID(), mail.Parent().StoreID())); }
    std::u16string shown(const Object& inspector, EditorFieldName field = EditorFieldName::Body) const { return driver().visibleText(inspector, field); }
    Object create(std::u16string_view progId) const { return model->machine().call(Member::CreateObject, {progId}).toObject(); }
    Object wrapped(std::u16string_view progId, const Object& target) const {
        const Object wrapper = create(progId);
        wrapper.put(Member::Item, target);
        return wrapper;
    }

    static Object range(const Object& document) { return document.getObject(Member::Range); }
    static std::u16string text(const Object& document) { return range(document).getText(Member::Text); }
    static void write(const Object& document, std::u16string_view value) { range(document).put(Member::Text, value); }
    static Object word(const Object& document) { return document.getObject(Member::Application); }
    static Object selection(const Object& document) { return word(document).getObject(Member::Selection); }

    std::optional<std::u16string> copiedFragment() const {
        if (!clipboard.htmlFormat) return std::nullopt;
        return html::clipboardFragment(std::string_view(reinterpret_cast<const char*>(clipboard.htmlFormat->data()), clipboard.htmlFormat->size()),
                                       host::fromUtf8);
    }

    screen::Desktop desktop;
    PasteContent clipboard;
    std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(u"Personal Folders", 2);
    std::unique_ptr<ModelHost> model = std::make_unique<ModelHost>(options());
};

TEST_F(WordModelTest, WordIsAnEditorAndNoKindOfText) {
    EXPECT_EQ(errorNumberOf([this] { restart([](HostOptions& changed) { changed.wordKind = EditorKind::Word; }); }), static_cast<std::int32_t>(0x80070057));
}

TEST_F(WordModelTest, AMailIsTypedSavedClosedAndReopened) {
    for (const auto kind : {EditorKind::Plain, EditorKind::Html, EditorKind::Rich}) {
        restart([kind](HostOptions& changed) { changed.wordKind = kind; });
        host::Inspector inspector(driver().newMail());
        EXPECT_EQ(inspector.EditorType(), 4);
        EXPECT_EQ(driver().focusedField(inspector), EditorFieldName::To);
        driver().focus(inspector, EditorFieldName::Subject, 0);
        desktop.sendKeys(u"Offer{TAB}Dear John{ENTER}Bye");
        EXPECT_EQ(shown(inspector), u"Dear John\r\nBye");
        EXPECT_EQ(text(inspector.WordEditor()), u"Dear John\r\nBye");
        driver().select(inspector, 5, 4);
        EXPECT_EQ(selection(inspector.WordEditor()).getText(Member::Text), u"John");
        desktop.sendKeys(u"Jane");
        EXPECT_EQ(driver().caret(inspector), 9U);
        const host::MailItem mail = inspector.CurrentItem();
        mail.Save();
        EXPECT_EQ(mail.BodyFormat(), static_cast<std::int32_t>(kind));
        driver().closeInspector(inspector, true);

        const host::Inspector reopened = opened(mail);
        EXPECT_EQ(shown(reopened), u"Dear Jane\r\nBye");
        EXPECT_EQ(shown(reopened, EditorFieldName::Subject), u"Offer");
        EXPECT_EQ(reopened.EditorType(), 4);
        EXPECT_EQ(driver().record(reopened.CurrentItem()).bodyKind, static_cast<mailstore::BodyKind>(kind));
    }
}

TEST_F(WordModelTest, TheRecordHoldsWhatAHiddenDocumentHolds) {
    const host::MailItem mail = savedMail(u"<b>a</b>");
    const Object document = mail.GetInspector().WordEditor();
    write(document, u"b & c");
    EXPECT_EQ(driver().record(mail).body, u"<HTML><BODY>b &amp; c</BODY></HTML>");
    EXPECT_EQ(again(mail).HTMLBody(), u"<b>a</b>");
}

TEST_F(WordModelTest, AHiddenDocumentTakesInWhatAnotherOpeningSavedUnlessItWasChanged) {
    const host::MailItem mail = savedMail(u"<b>a</b>");
    const host::MailItem other = again(mail);
    const Object document = mail.GetInspector().WordEditor();
    other.HTMLBody(u"<b>b</b>");
    other.Save();
    EXPECT_EQ(text(document), u"b");
    EXPECT_EQ(mail.HTMLBody(), u"<b>b</b>");

    write(document, u"mine");
    other.HTMLBody(u"<b>c</b>");
    other.Save();
    EXPECT_EQ(text(document), u"mine");
    EXPECT_EQ(errorNumberOf([&] { mail.Save(); }), host::host_failure::ObjectChanged);
}

TEST_F(WordModelTest, AHiddenDocumentIsThatOfTheWindowOnceItIsShown) {
    const host::MailItem mail = application().CreateItem(0);
    const host::Inspector inspector = mail.GetInspector();
    write(inspector.WordEditor(), u"Dear John");
    mail.put(Member::To, u"John Public");
    inspector.Display();
    EXPECT_EQ(shown(inspector), u"Dear John");
    EXPECT_EQ(shown(inspector, EditorFieldName::To), u"John Public");
    EXPECT_EQ(driver().focusedField(inspector), EditorFieldName::Body) << "a mail with an addressee does not wait for one";
}

TEST_F(WordModelTest, OnceTheWindowIsClosedNothingOfWordWorks) {
    for (const bool isShown : {true, false}) {
        const host::MailItem mail = savedMail(u"<b>a</b>");
        host::Inspector inspector = isShown ? opened(mail) : mail.GetInspector();
        const Object document = inspector.WordEditor(), application = word(document);
        application.call(member::AddIns).toObject().call(Member::Add, {u"C:\\Letters.dot"});
        const Object objects[] = {document,
                                  application,
                                  range(document),
                                  selection(document),
                                  application.getObject(member::AddIns),
                                  application.getObject(member::AddIns, {u"Letters.dot"}),
                                  application.getObject(member::Templates, {u"\\Lorvane.dot"})};
        driver().closeInspector(inspector, false);
        inspector = {};
        for (const Object& object : objects) {
            for (const Member member : {Member::Range, Member::Application, Member::Text, Member::Paste, Member::Count, member::Installed, member::Saved}) {
                EXPECT_EQ(errorNumberOf([&] { object.get(member); }), host::host_failure::Failed);
                EXPECT_EQ(errorNumberOf([&] { object.put(member, u"x"); }), host::host_failure::Failed);
            }
        }
        EXPECT_EQ(mail.HTMLBody(), u"<b>a</b>");
    }
}

TEST_F(WordModelTest, OnceTheItemIsGoneNothingOfWordWorks) {
    for (const auto& goes : {std::function<void(const host::MailItem&)>([](const host::MailItem& mail) { mail.Delete(); }),
                             std::function<void(const host::MailItem&)>([this](const host::MailItem& mail) { mail.Move(session().GetDefaultFolder(6)); }),
                             std::function<void(const host::MailItem&)>([this](const host::MailItem& mail) { driver().purge(mail); })}) {
        const host::MailItem mail = savedMail(u"<b>a</b>");
        const Object document = mail.GetInspector().WordEditor(), content = range(document);
        write(document, u"b");
        goes(mail);
        EXPECT_LT(errorNumberOf([&] { text(document); }), 0);
        EXPECT_LT(errorNumberOf([&] { content.put(Member::Text, u"c"); }), 0);
    }
}

TEST_F(WordModelTest, ADocumentOutlivesTheHost) {
    const Object document = opened(savedMail(u"<b>a</b>")).WordEditor();
    model.reset();
    EXPECT_EQ(text(document), u"a");
}

TEST_F(WordModelTest, InTheCloseEventTheDocumentIsThatOfTheItem) {
    const host::MailItem mail = savedMail(u"<b>a</b>");
    const host::Inspector inspector = opened(mail);
    write(inspector.WordEditor(), u"dropped");
    std::u16string seen;
    Object late;
    const auto handler = std::make_shared<Handler>();
    handler->act = [&](Member event) {
        if (event != Member::Close) return;
        late = inspector.WordEditor();
        seen = text(late);
        word(late).getObject(member::Templates, {u"\\Lorvane.dot"}).put(member::Saved, true);
    };
    const host::Subscription heard = inspector.advise(handler);
    driver().closeInspector(inspector, false);
    EXPECT_EQ(seen, u"a");
    EXPECT_EQ(errorNumberOf([&] { text(late); }), host::host_failure::Failed);
    EXPECT_EQ(again(mail).HTMLBody(), u"<b>a</b>");
}

TEST_F(WordModelTest, AWindowOnAFolderThatIsOnlyReadClosesWhereNothingChanged) {
    const host::MailItem mail = savedMail(u"<b>a</b>");
    driver().setRights(mail.Parent(), FolderRights::Read);
    const host::MailItem read = again(mail);
    const host::Inspector inspector = read.GetInspector();
    EXPECT_EQ(text(inspector.WordEditor()), u"a");
    write(inspector.WordEditor(), u"a");
    EXPECT_NO_THROW(inspector.Close(save));

    const host::Inspector another = read.GetInspector();
    write(another.WordEditor(), u"b");
    EXPECT_EQ(errorNumberOf([&] { another.Close(save); }), host::host_failure::AccessDenied);
    EXPECT_EQ(again(mail).HTMLBody(), u"<b>a</b>");
    EXPECT_NO_THROW(another.Close(discard));
}

TEST_F(WordModelTest, CopyWritesTheBodysSourceAsAFragment) {
    const struct {
        std::u16string_view source, fragment;
    } cases[] = {
        {u"<html><head><title><body></title></head><BODY lang=en>\r\n<p>a</p></body></html>", u"\r\n<p>a</p>"},
        {u"<html><head></head><p>a</p></html>", u"<p>a</p>"},
        {u"<HTML><p>a</p>", u"<p>a</p>"},
        {u"<p>a</p></body>", u"<p>a</p>"},
        {u"<p>a</p>", u"<p>a</p>"},
        {u"<html><body>a</body><p>b</p></body></html>", u"a</body><p>b</p>"},
        {u"<body><!-- </body> -->a &bogus; \x00E9\xD83D\xDE00</body>", u"<!-- </body> -->a &bogus; \x00E9\xD83D\xDE00"},
        {u"</body><body>a", u"a"},
        {u"<body></body>", u""},
    };
    for (const auto& [source, fragment] : cases) {
        const Object document = savedMail(source).GetInspector().WordEditor();
        range(document).call(Member::Copy);
        EXPECT_EQ(copiedFragment(), fragment);
        EXPECT_EQ(clipboard.text, text(document));
    }
}

TEST_F(WordModelTest, CopyOfAPlainTextReplacesWhatLayThere) {
    clipboard.htmlFormat.emplace(1, std::uint8_t{0});
    const Object document = savedPlain(u"a\nb").GetInspector().WordEditor();
    range(document).call(Member::Copy);
    EXPECT_EQ(clipboard.text, u"a\r\nb");
    EXPECT_FALSE(clipboard.htmlFormat);
}

TEST_F(WordModelTest, ARunWithoutAClipboardCopiesNothing) {
    restart([](HostOptions& changed) { changed.setClipboardContent = nullptr; });
    const Object document = savedMail(u"a").GetInspector().WordEditor();
    EXPECT_NO_THROW(range(document).call(Member::Copy));
    EXPECT_FALSE(clipboard.text);
}

TEST_F(WordModelTest, PastingOverTheRangeKeepsTheSelectionWhereNothingLiesThere) {
    const host::Inspector inspector = opened(savedPlain(u"abc"));
    driver().select(inspector, 1, 1);
    range(inspector.WordEditor()).call(Member::Paste);
    EXPECT_EQ(selection(inspector.WordEditor()).getText(Member::Text), u"b");
    clipboard.text = u"new";
    range(inspector.WordEditor()).call(Member::Paste);
    EXPECT_EQ(shown(inspector), u"new");
}

TEST_F(WordModelTest, TheSelectionsTextIsReplaced) {
    const host::Inspector inspector = opened(savedMail(u"<p>one <b>two</b> three</p>"));
    driver().select(inspector, 4, 3);
    selection(inspector.WordEditor()).put(Member::Text, u"2");
    inspector.CurrentItem().Save();
    EXPECT_EQ(inspector.CurrentItem().HTMLBody(), u"<p>one 2<b></b> three</p>");
}

TEST_F(WordModelTest, WordKnowsTheTemplateFromTheStart) {
    const host::Inspector inspector = opened(savedMail(u"a"));
    const Object addIns = word(inspector.WordEditor()).getObject(member::AddIns);
    EXPECT_EQ(addIns.getNumber(Member::Count), 1);
    const Object known = addIns.getObject(Member::Item, {1});
    EXPECT_EQ(known.getText(Member::Name), u"Lorvane.dot");
    EXPECT_FALSE(known.getBoolean(member::Installed));
    EXPECT_EQ(addIns.getObject(Member::Item, {u"c:/add-ins/LORVANE.DOT"}), known);
    EXPECT_TRUE(word(inspector.WordEditor()).getObject(member::Templates, {u"Lorvane.dot"}).getBoolean(member::Saved));
}

TEST_F(WordModelTest, AddingATemplateThatIsKnownSwitchesItOn) {
    const host::Inspector inspector = opened(savedMail(u"a"));
    const Object addIns = word(inspector.WordEditor()).getObject(member::AddIns);
    const Object added = addIns.call(Member::Add, {u"C:\\Add-ins\\Lorvane.dot"}).toObject();
    EXPECT_EQ(added, addIns.getObject(Member::Item, {u"\\Lorvane.dot"}));
    EXPECT_TRUE(added.getBoolean(member::Installed));
    EXPECT_EQ(addIns.getNumber(Member::Count), 1);
}

TEST_F(WordModelTest, ATemplateThatWordDoesNotKnowIsANegativeError) {
    const host::Inspector inspector = opened(savedMail(u"a"));
    const Object application = word(inspector.WordEditor());
    for (const Member collection : {member::AddIns, member::Templates}) {
        for (const Variant& index : {Variant(u"\\Letters.dot"), Variant(u"Lorvane"), Variant(u""), Variant(0), Variant(2)}) {
            EXPECT_EQ(errorNumberOf([&] { application.get(collection, {index}); }), static_cast<std::int32_t>(0x800A1735));
            EXPECT_EQ(errorNumberOf([&] { application.getObject(collection).get(Member::Item, {index}); }), static_cast<std::int32_t>(0x800A1735));
        }
    }
    EXPECT_EQ(errorNumberOf([&] { application.getObject(member::Templates).call(Member::Add, {u"C:\\Letters.dot"}); }), host::runtime_error::NoSuchMember);
}

TEST_F(WordModelTest, AnItemsWrapperAroundAWindowHasWordsDocumentAlone) {
    const host::MailItem mail = savedMail(u"a");
    const host::Inspector inspector = opened(mail);
    const Object wrapper = wrapped(u"qz7mredemption.qz7msafemailitem", inspector);
    EXPECT_EQ(wrapper.getObject(Member::Item), inspector);
    EXPECT_EQ(wrapper.getObject(Member::WordEditor), inspector.WordEditor());
    for (const Member member : {Member::Body, Member::Save, Member::Fields, Member::Sender})
        EXPECT_EQ(errorNumberOf([&] { wrapper.call(member); }), host::runtime_error::NoSuchMember);
    EXPECT_EQ(errorNumberOf([&] { wrapper.put(Member::Body, u"x"); }), host::runtime_error::NoSuchMember);

    wrapper.put(Member::Item, mail);
    EXPECT_EQ(wrapper.getText(Member::Body), u"a");
    EXPECT_EQ(errorNumberOf([&] { wrapper.get(Member::WordEditor); }), host::runtime_error::NoSuchMember);
}

TEST_F(WordModelTest, AGuardedHostRefusesTheBareDocumentInEveryRun) {
    restart([](HostOptions& changed) {
        changed.version = u"10.0.0.6515";
        changed.editor = EditorKind::Html;
    });
    const host::Inspector inspector = opened(savedMail(u"a"));
    EXPECT_EQ(errorNumberOf([&] { inspector.WordEditor(); }), static_cast<std::int32_t>(0x80004004));
    EXPECT_FALSE(wrapped(u"qz7mRedemption.qz7mSafeInspector", inspector).getObject(Member::WordEditor));
}

TEST_F(WordModelTest, ANumberWithoutANameIsToldAsSuch) {
    const host::Inspector inspector = opened(savedMail(u"a"));
    try {
        inspector.get(static_cast<Member>(host::windowMembers));
        ADD_FAILURE() << "no error was raised";
    } catch (const host::HostError& error) {
        EXPECT_EQ(error.number(), host::runtime_error::NoSuchMember);
        EXPECT_NE(error.description().find(u"8192"), std::u16string::npos);
    }
}

}  // namespace
}  // namespace lorvane::model
