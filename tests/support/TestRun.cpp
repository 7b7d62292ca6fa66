#include "support/TestRun.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "host/AddIn.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "instruments/Decorator.h"
#include "mailstore/MemoryStore.h"
#include "recordset/Collation.h"
#include "recordset/Recordset.h"
#include "recordset/Stream.h"

namespace lorvane::support {

using namespace host;

namespace {

constexpr std::int32_t privateStoreKind = 2;

std::shared_ptr<mailstore::SettingsStore> orInMemory(std::shared_ptr<mailstore::SettingsStore> settings) {
    if (!settings) settings = mailstore::makeMemorySettings();
    return settings;
}

/// The object without instruments: what a test sets up is not seen by them.
template <class Facade>
Facade own(const Facade& object) {
    return Facade(instruments::stripped(object));
}

/// A path as the add-in writes it.
std::u16string surfaceText(const std::filesystem::path& file) {
    std::u16string path = file.u16string();
    std::ranges::replace(path, u'/', u'\\');
    return path;
}

MAPIFolder folderNamed(const Folders& folders, std::u16string_view name) {
    for (std::int32_t index = 1; index <= folders.Count(); ++index) {
        if (MAPIFolder folder = folders.Item(index); folder.Name() == name) return folder;
    }
    return {};
}

}  // namespace

TestRun::TestRun(RunOptions options)
    : options_(std::move(options)), now_(dateTimeFromIso(options_.now)), settings_(orInMemory(options_.settings)), services_(serviceOptions()) {
    host_ = std::make_unique<model::ModelHost>(hostOptions());
    driver_ = std::make_unique<model::Driver>(*host_);
    host_->registerClass(addInProgId, &makeAddIn);
    scope_ = std::make_unique<ApartmentScope>(seen(host_->machine()));
    if (options_.explorer) driver_->openExplorer();
    if (!options_.samples) privateFolder();
    if (options_.connected) connect();
}

TestRun::~TestRun() {
    disconnect();
    for (const HostError& error : user_.failures()) ADD_FAILURE() << "an act of the user failed: " << error.what();
    EXPECT_EQ(user_.pending(), 0U) << "acts of the user that never came";
}

services::ServiceOptions TestRun::serviceOptions() const {
    services::ServiceOptions options;
    options.places = {place_.path() / "documents", place_.path() / "data", place_.path()};
    options.settings = settings_;
    options.now = [this] { return now_; };
    options.localeName = options_.locale;
    options.codePage = "windows-1252";
    options.userName = u"jpublic";
    options.appPath = surfaceText(place_.path() / "program");
    return options;
}

model::HostOptions TestRun::hostOptions() {
    model::HostOptions options(desktop_);
    options.version = options_.version;
    options.editor = options_.editor;
    options.wordKind = options_.wordKind;
    options.commitDelay = options_.commitDelay;
    options.toolsCaption = options_.toolsCaption;
    options.helpCaption = options_.helpCaption;
    options.screen = makeObject<screen::ScriptedScreen>(windows_, user_);
    options.services = services_;
    options.clipboardContent = [this] { return model::PasteContent{clipboard().text(), clipboard().html()}; };
    options.setClipboardContent = [this](const model::PasteContent& content) { clipboard().replaceContent(content.text, content.htmlFormat); };
    options.makeRecordset = [locale = options_.locale] { return recordset::makeRecordset(recordset::Collation::of(locale)); };
    options.makeStream = recordset::makeStream;
    if (!options_.store) options_.store = mailstore::makeMemoryStore(u"Personal Folders", privateStoreKind);
    options.defaultStore = options_.store;
    return options;
}

void TestRun::connect() {
    host_->loadAddIn(makeAddIn(), application(), seen(host_->addInInst()));
}

void TestRun::disconnect() {
    host_->unloadAddIn();
}

Application TestRun::application() const {
    return Application(seen(host_->application()));
}

Object TestRun::seen(const Object& object) const {
    return options_.instruments ? faults_.decorate(recorder_.decorate(object)) : object;
}

MAPIFolder TestRun::privateFolder() const {
    const MAPIFolder top(ownSession().GetDefaultFolder(default_folder::Inbox).Parent());
    return addFolder(addFolder(top, u"Meravix Settings"), u"Lorvane");
}

MAPIFolder TestRun::templatesFolder() const {
    return MAPIFolder(seen(privateFolder()));
}

MAPIFolder TestRun::addFolder(const MAPIFolder& parent, std::u16string_view name) const {
    const Folders folders = own<MAPIFolder>(parent).Folders();
    MAPIFolder folder = folderNamed(folders, name);
    if (!folder) folder = folders.Add(name);
    return MAPIFolder(seen(folder));
}

MAPIFolder TestRun::addStore(std::u16string_view name, std::int32_t kind) const {
    const std::shared_ptr<mailstore::MailStore> store = mailstore::makeMemoryStore(std::u16string(name), kind);
    driver_->addStore(store);
    return MAPIFolder(seen(ownSession().GetFolderFromID(store->rootFolder().entryId, store->storeId())));
}

void TestRun::write(const MailItem& item, std::u16string_view subject, const BodyText& body) const {
    item.Subject(subject);
    if (body.kind == mailstore::BodyKind::Html)
        item.HTMLBody(body.source);
    else
        item.Body(body.source);
}

MailItem TestRun::addTemplate(std::u16string_view subject, const BodyText& body, std::u16string_view categories) const {
    return addTemplate(privateFolder(), subject, body, categories);
}

MailItem TestRun::addTemplate(const MAPIFolder& folder, std::u16string_view subject, const BodyText& body, std::u16string_view categories) const {
    const MailItem item = ownApplication().CreateItem(olMailItem);
    write(item, subject, body);
    item.Categories(categories);
    item.Save();
    return MailItem(seen(item.Move(instruments::stripped(folder))));
}

MailItem TestRun::draft(std::u16string_view subject, const BodyText& body, std::initializer_list<std::u16string_view> to) const {
    const MailItem item = ownApplication().CreateItem(olMailItem);
    write(item, subject, body);
    for (const std::u16string_view recipient : to) addRecipient(item, recipient);
    item.Save();
    return MailItem(seen(item));
}

MailItem TestRun::receivedMail(std::u16string_view subject, const BodyText& body, std::u16string_view senderName, std::u16string_view senderAddress,
                               std::u16string_view senderAddressType) const {
    mailstore::ItemRecord record;
    record.head.subject = subject;
    record.bodyKind = body.kind;
    record.body = body.source;
    record.properties[mailstore::tags::SenderName] = std::u16string(senderName);
    record.properties[mailstore::tags::SenderAddress] = std::u16string(senderAddress);
    record.properties[mailstore::tags::SenderAddressType] = std::u16string(senderAddressType);
    return MailItem(seen(driver_->receive(std::move(record))));
}

Recipient TestRun::addRecipient(const MailItem& item, std::u16string_view text, std::int32_t type) const {
    const Recipient recipient(own<MailItem>(item).Recipients().call(Member::Add, {text}).toObject());
    if (type != olTo) recipient.put(Member::Type, type);
    return Recipient(seen(recipient));
}

void TestRun::addContact(const Person& person) const {
    driver_->addContact(
        {person.name, person.address, person.prefix, person.given, person.middle, person.surname, person.generation, person.type, person.proxies});
}

Attachment TestRun::attach(const MailItem& item, std::string_view fileName, const Bytes& content) const {
    const std::u16string path = writeFile(fileName, content);
    constexpr std::int32_t byValue = 1;
    return Attachment(seen(own<MailItem>(item).Attachments().Add(path, byValue, 1, fromUtf8(fileName))));
}

std::u16string TestRun::writeFile(std::string_view name, const Bytes& content) const {
    const std::filesystem::path file = place_.path() / name;
    std::filesystem::create_directories(file.parent_path());
    mailstore::test::writeBytes(file, content);
    return surfaceText(file);
}

Inspector TestRun::newMail(std::initializer_list<std::u16string_view> to) const {
    const Inspector inspector(driver_->newMail());
    for (const std::u16string_view recipient : to) addRecipient(inspector.CurrentItem(), recipient);
    return Inspector(seen(inspector));
}

Inspector TestRun::openMail(const MailItem& item) const {
    const auto known = own<MailItem>(item);
    return Inspector(seen(driver_->openItem(known.EntryID(), known.Parent().StoreID())));
}

void TestRun::focus(const Inspector& inspector, model::EditorFieldName field, std::int32_t position) const {
    driver_->focus(inspector, field, position);
}

void TestRun::type(std::u16string_view text) {
    if (screen::DesktopWindow* const window = desktop_.foreground())
        window->keys(screen::keysOfText(text));
    else
        ADD_FAILURE() << "no window has the keys";
}

std::u16string TestRun::bodyShown(const Inspector& inspector) const {
    return driver_->visibleText(inspector, model::EditorFieldName::Body);
}

void TestRun::pump(int times) {
    const Machine machine(host_->machine());
    for (; times > 0; --times) machine.screen().DoEvents();
}

screen::ScriptedUser::BoxRecord TestRun::lastBox() const {
    return boxes().empty() ? screen::ScriptedUser::BoxRecord{} : boxes().back();
}

std::optional<std::u16string> TestRun::clipboardHtml() const {
    const std::optional<Bytes> block = clipboard().html();
    if (!block) return std::nullopt;
    return std::u16string(block->begin(), block->end());
}

std::u16string TestRun::setting(std::u16string_view key) const {
    return settings_->find(settingsApplication, settingsSection, key).value_or(u"");
}

void TestRun::setSetting(std::u16string_view key, std::u16string_view value) const {
    settings_->save(settingsApplication, settingsSection, key, value);
}

}  // namespace lorvane::support
