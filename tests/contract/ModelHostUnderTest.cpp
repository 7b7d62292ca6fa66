#include <algorithm>
#include <filesystem>
#include <map>

#include "contract/HostUnderTest.h"
#include "host/HostError.h"
#include "mailstore/MemoryStore.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "recordset/Collation.h"
#include "recordset/Recordset.h"
#include "screen/ScriptedScreen.h"
#include "screen/ScriptedUser.h"
#include "services/Services.h"

namespace lorvane::contract {

namespace {

using mailstore::MailStore;
namespace tags = mailstore::tags;

enum class Storage { Memory, Sqlite };

model::EditorFieldName fieldName(Field field) {
    return static_cast<model::EditorFieldName>(field);
}

model::Contact contactOf(const Person& person) {
    return {person.name, person.address, person.prefix, person.given, person.middle, person.surname, person.generation, person.type, person.proxies};
}

mailstore::ItemRecord recordOf(const IncomingMail& mail) {
    mailstore::ItemRecord record;
    record.head.subject = mail.subject;
    record.properties[tags::SenderName] = mail.senderName;
    record.properties[tags::SenderAddress] = mail.senderAddress;
    record.properties[tags::SenderAddressType] = mail.senderAddressType;
    if (mail.html) {
        record.bodyKind = mailstore::BodyKind::Html;
        record.body = *mail.html;
    } else if (mail.plain) {
        record.bodyKind = mailstore::BodyKind::Plain;
        record.body = *mail.plain;
    }
    if (!mail.original.empty()) record.original = std::make_shared<const host::Bytes>(mail.original);
    return record;
}

std::u16string surfacePath(const std::filesystem::path& path) {
    std::u16string text = path.u16string();
    std::ranges::replace(text, u'/', u'\\');
    return text;
}

/// Text as a clipboard's block holds it.
host::Bytes textBlock(std::u16string_view text) {
    host::Bytes block;
    for (const char16_t unit : text) {
        block.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        block.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    block.insert(block.end(), 2, 0);
    return block;
}

std::map<std::u16string, host::Bytes> formatsOf(const std::optional<std::u16string>& text, const std::optional<host::Bytes>& htmlFormat) {
    std::map<std::u16string, host::Bytes> formats;
    if (text) formats[std::u16string(services::Clipboard::unicodeText)] = textBlock(*text);
    if (htmlFormat) formats[std::u16string(services::Clipboard::htmlFormat)] = *htmlFormat;
    return formats;
}

std::filesystem::path realPath(std::u16string path) {
    std::ranges::replace(path, u'\\', u'/');
    return path;
}

std::vector<ShownControl> shownControls(const std::vector<model::ControlTree>& controls) {
    std::vector<ShownControl> shown;
    for (const model::ControlTree& one : controls) {
        shown.push_back({one.type, one.caption, one.tag, one.tooltip, one.id, one.faceId, one.style, one.beginGroup, one.enabled, one.visible, one.temporary,
                         shownControls(one.controls)});
    }
    return shown;
}

/// The model host with a scripted screen, over stores in memory or in files.
class ModelHostUnderTest final : public HostUnderTest {
public:
    ModelHostUnderTest(Storage storage, HostSetup setup) : storage_(storage), setup_(std::move(setup)) {
        makeStore(u"Personal Folders", store_kind::PrivateFile);
        for (const FurtherStore& store : setup_.furtherStores) makeStore(store.name, store.kind);
        run();
    }
    ~ModelHostUnderTest() override { end(); }

    host::Machine machine() override { return host::Machine(host_->machine()); }

    void restart() override {
        end();
        if (storage_ == Storage::Sqlite) {
            for (Store& store : stores_) {
                store.opened.reset();
                store.opened = openFile(store);
            }
        }
        run();
    }

    host::Inspector newMail() override { return host::Inspector(driver_->newMail()); }
    host::Inspector openItem(const Identity& item) override { return host::Inspector(driver_->openItem(item.first, item.second)); }
    void closeInspector(const host::Inspector& inspector, bool save) override { driver_->closeInspector(inspector, save); }
    host::Object openExplorer() override { return driver_->openExplorer(); }
    void selectItems(const host::Object& explorer, const std::vector<Identity>& items) override { driver_->selectItems(explorer, items); }
    void focus(const host::Inspector& inspector, Field field, std::int32_t position) override { driver_->focus(inspector, fieldName(field), position); }
    void select(const host::Inspector& inspector, std::size_t start, std::size_t length) override { driver_->select(inspector, start, length); }
    Field focusedField(const host::Inspector& inspector) override { return static_cast<Field>(driver_->focusedField(inspector)); }
    std::size_t caret(const host::Inspector& inspector) override { return driver_->caret(inspector); }
    std::u16string shown(const host::Inspector& inspector, Field field) override { return driver_->visibleText(inspector, fieldName(field)); }
    void type(std::u16string_view text) override {
        if (screen::DesktopWindow* const window = desktop_.foreground()) window->keys(screen::keysOfText(text));
    }

    std::vector<ShownBar> bars(const host::Object& window) override {
        std::vector<ShownBar> shown;
        for (const model::BarTree& bar : driver_->bars(window)) shown.push_back({bar.name, bar.position, bar.visible, shownControls(bar.controls)});
        return shown;
    }
    void clickBar(const host::Object& window, std::u16string_view path) override { driver_->clickBar(window, path); }

    host::MailItem receive(const IncomingMail& mail) override { return host::MailItem(driver_->receive(recordOf(mail))); }
    void addPerson(const Person& person) override { driver_->addContact(contactOf(person)); }
    void setClipboard(const Clipping& clipping) override {
        std::optional<host::Bytes> htmlFormat;
        if (clipping.htmlFormat) htmlFormat.emplace(clipping.htmlFormat->begin(), clipping.htmlFormat->end());
        services_.clipboardContent().replace(formatsOf(clipping.text, htmlFormat));
    }
    Clipping clipboard() override {
        Clipping clipping{services_.clipboardContent().text()};
        if (const auto block = services_.clipboardContent().html()) clipping.htmlFormat.emplace(block->begin(), block->end());
        return clipping;
    }
    void setNow(host::DateTime now) override { now_ = now; }
    void setCommitDelay(std::uint32_t pumps) override { driver_->setCommitDelay(pumps); }
    std::optional<host::Bytes> original(const host::Object& item) override {
        const auto record = driver_->record(item);
        return record.original ? std::optional(*record.original) : std::nullopt;
    }

    void addStore(const FurtherStore& store) override { driver_->addStore(makeStore(store.name, store.kind)); }
    void removeStore(std::u16string_view name) override {
        driver_->removeStore(name);
        std::erase_if(stores_, [name](const Store& store) { return store.name == name; });
    }
    void setRights(const host::Object& folder, Rights rights) override { driver_->setRights(folder, static_cast<model::FolderRights>(rights)); }

    void renameFolderFromOutside(const Identity& folder, std::u16string_view name) override { outside(folder.second)->renameFolder(folder.first, name); }
    void removeFolderFromOutside(const Identity& folder) override { outside(folder.second)->removeFolder(folder.first); }
    void removeItemFromOutside(const Identity& item) override { outside(item.second)->removeItem(item.first); }
    void renameItemFromOutside(const Identity& item, std::u16string_view subject) override {
        const auto store = outside(item.second);
        mailstore::ItemRecord record = store->loadItem(item.first);
        record.head.subject = subject;
        store->saveItem(store->folderOfItem(item.first), record);
    }

    std::u16string writeFile(std::string_view name, const host::Bytes& bytes) override {
        mailstore::test::writeBytes(folder_.path() / name, bytes);
        return path(name);
    }
    std::u16string path(std::string_view name) override { return surfacePath(folder_.path() / name); }
    host::Bytes readFile(std::u16string_view path) override { return mailstore::test::readBytes(realPath(std::u16string(path))); }

private:
    struct Store {
        std::u16string name;
        std::int32_t kind;
        std::filesystem::path file;
        std::shared_ptr<MailStore> opened;
    };

    static std::shared_ptr<MailStore> openFile(const Store& store) {
        mailstore::SqliteOptions options;
        options.storeName = store.name;
        options.storeKind = store.kind;
        return mailstore::SqliteFile(store.file, options).mailStore();
    }

    std::shared_ptr<MailStore> makeStore(const std::u16string& name, std::int32_t kind) {
        Store store{name, kind, folder_.path() / (std::to_string(stores_.size()) + ".lorvane"), nullptr};
        store.opened = storage_ == Storage::Sqlite ? openFile(store) : std::shared_ptr<MailStore>(mailstore::makeMemoryStore(name, kind));
        stores_.push_back(store);
        return store.opened;
    }

    /// The store as another program has it open.
    std::shared_ptr<MailStore> outside(std::u16string_view storeId) {
        const auto store = std::ranges::find_if(stores_, [storeId](const Store& candidate) { return candidate.opened->storeId() == storeId; });
        if (store == stores_.end()) throw host::HostError(host::host_failure::NotFound);
        return storage_ == Storage::Sqlite ? openFile(*store) : store->opened;
    }

    services::ServiceOptions serviceOptions() {
        services::ServiceOptions options;
        options.places = {folder_.path() / "documents", folder_.path() / "data", folder_.path()};
        options.now = [this] { return now_; };
        options.codePage = "windows-1252";
        options.userName = u"jpublic";
        return options;
    }

    void run() {
        model::HostOptions options(desktop_);
        options.version = setup_.version;
        options.editor = static_cast<model::EditorKind>(setup_.editor);
        options.wordKind = static_cast<model::EditorKind>(setup_.wordKind);
        options.commitDelay = setup_.commitDelay;
        options.toolsCaption = setup_.toolsCaption;
        options.helpCaption = setup_.helpCaption;
        options.screen = host::makeObject<screen::ScriptedScreen>(windows_, user_);
        options.services = services_;
        options.clipboardContent = [this] { return model::PasteContent{services_.clipboardContent().text(), services_.clipboardContent().html()}; };
        options.setClipboardContent = [this](const model::PasteContent& content) {
            services_.clipboardContent().replace(formatsOf(content.text, content.htmlFormat));
        };
        options.makeRecordset = [] { return recordset::makeRecordset(recordset::Collation::of(u"en-US")); };
        options.defaultStore = stores_.front().opened;
        for (std::size_t i = 1; i < stores_.size(); ++i) options.furtherStores.push_back(stores_[i].opened);
        host_ = std::make_unique<model::ModelHost>(std::move(options));
        driver_ = std::make_unique<model::Driver>(*host_);
    }

    void end() {
        driver_.reset();
        host_.reset();
    }

    Storage storage_;
    HostSetup setup_;
    mailstore::test::TempFolder folder_;
    screen::Desktop desktop_;
    screen::WindowList windows_{desktop_};
    screen::ScriptedUser user_{windows_};
    host::DateTime now_{46000.375};
    services::Services services_{serviceOptions()};
    std::vector<Store> stores_;
    std::unique_ptr<model::ModelHost> host_;
    std::unique_ptr<model::Driver> driver_;
};

HostWay way(std::string name, Storage storage) {
    return {std::move(name), [storage](const HostSetup& setup) { return std::make_unique<ModelHostUnderTest>(storage, setup); }};
}

}  // namespace

std::vector<HostWay> hostWays() {
    return {way("Memory", Storage::Memory), way("Sqlite", Storage::Sqlite)};
}

}  // namespace lorvane::contract
