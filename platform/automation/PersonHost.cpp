#include <algorithm>

#include "automation/BarRecords.h"
#include "automation/Person.h"
#include "automation/Records.h"
#include "host/TextFunctions.h"
#include "mailstore/MemoryStore.h"
#include "screen/KeyString.h"

/// What a person does in the mail host, and what reaches it from outside.
namespace lorvane::automation {

using host::Object;
using host::Variant;

namespace {

constexpr std::int32_t publicStore = 5;

struct NamedField {
    std::u16string_view name;
    model::EditorFieldName field;
};
constexpr NamedField editorFields[] = {{u"To", model::EditorFieldName::To},
                                       {u"CC", model::EditorFieldName::Cc},
                                       {u"BCC", model::EditorFieldName::Bcc},
                                       {u"Subject", model::EditorFieldName::Subject},
                                       {u"Body", model::EditorFieldName::Body}};

struct NamedRights {
    std::u16string_view name;
    model::FolderRights rights;
};
constexpr NamedRights folderRights[] = {
    {u"none", model::FolderRights::None}, {u"read", model::FolderRights::Read}, {u"add", model::FolderRights::Add}, {u"all", model::FolderRights::All}};

struct ContactField {
    std::u16string_view name;
    std::u16string model::Contact::*field;
};
constexpr ContactField contactFields[] = {{u"name", &model::Contact::name},     {u"address", &model::Contact::address},
                                          {u"prefix", &model::Contact::prefix}, {u"given", &model::Contact::given},
                                          {u"middle", &model::Contact::middle}, {u"surname", &model::Contact::surname},
                                          {u"type", &model::Contact::type},     {u"generation", &model::Contact::generation}};

[[noreturn]] void refuse(std::u16string sentence) {
    throw host::HostError(host::runtime_error::InvalidProcedureCall, std::move(sentence));
}

template <class Row, std::size_t Count>
const Row& rowNamed(const Row (&rows)[Count], std::u16string_view name, std::u16string_view what) {
    const auto row = std::ranges::find_if(rows, [&](const Row& candidate) { return host::equalsIgnoreCase(candidate.name, name); });
    if (row == std::end(rows)) refuse(std::u16string(u"There is no ").append(what).append(u" \"").append(name).append(u"\"."));
    return *row;
}

host::Bytes bytesOf(const Variant& message) {
    if (message.kind() == Variant::Kind::Bytes) return message.toBytes();
    const std::string utf8 = host::toUtf8(message.toText());
    return {utf8.begin(), utf8.end()};
}

model::Driver::Identity identityOf(const Variant& item) {
    const auto& parts = item.toArray().items;
    if (parts.empty() || parts.size() > 2) refuse(u"An identity is a list of EntryID and StoreID.");
    return {parts[0].toText(), parts.size() > 1 ? parts[1].toText() : std::u16string()};
}

}  // namespace

void Person::requireInput(const Object& window) const {
    const auto* onDesktop = host::implementation<screen::DesktopWindow>(window);
    if (!onDesktop) throw host::HostError(host::runtime_error::TypeMismatch);
    machine_.windows.requireInput(*onDesktop);
}

Object Person::OpenItem(std::u16string_view entryID, std::u16string_view storeID) {
    return seen(machine_.driver.openItem(entryID, storeID));
}

Object Person::NewMail() {
    return seen(machine_.driver.newMail());
}

Object Person::OpenExplorer(const Object& folder) {
    return seen(folder ? machine_.driver.openExplorer(folder) : machine_.driver.openExplorer());
}

Object Person::SelectItems(const Variant& items) {
    std::vector<model::Driver::Identity> identities;
    for (const Variant& item : items.toArray().items) identities.push_back(identityOf(item));
    const Object explorer = machine_.application.call(host::Member::ActiveExplorer).toObject();
    if (!explorer) refuse(u"No Explorer is open.");
    requireInput(explorer);
    machine_.driver.selectItems(explorer, identities);
    return explorer;
}

void Person::CloseInspector(const Object& inspector, bool save) {
    requireInput(inspector);
    machine_.driver.closeInspector(inspector, save);
}

void Person::closeHostWindow(const Object& window) {
    requireInput(window);
    if (window.dispatch()->className() == u"Inspector") refuse(u"An Inspector is closed by CloseInspector, which says what becomes of its item.");
    window.call(host::Member::Close);
}

void Person::Focus(const Object& inspector, std::u16string_view field, std::int32_t caret) {
    requireInput(inspector);
    machine_.driver.focus(inspector, rowNamed(editorFields, field, u"field").field, caret);
}

void Person::TypeText(std::u16string_view text) {
    const screen::Desktop& desktop = machine_.windows.desktop();
    const std::vector<screen::KeyStroke> strokes = screen::keysOfText(text);
    for (std::size_t begin = 0; begin < strokes.size();) {
        const std::size_t end = screen::endOfRun(strokes, begin);
        screen::DesktopWindow* window = desktop.foreground();
        if (!window) refuse(u"No window is open to type into.");
        window->keys({strokes.begin() + static_cast<std::ptrdiff_t>(begin), strokes.begin() + static_cast<std::ptrdiff_t>(end)});
        begin = end;
    }
}

void Person::SelectText(const Object& inspector, std::int32_t start, std::int32_t length) {
    requireInput(inspector);
    if (start < 0 || length < 0) refuse(u"A selection begins at 0 or behind it, and has a length of 0 or more.");
    machine_.driver.select(inspector, static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

void Person::ClickBar(const Object& window, std::u16string_view path) {
    requireInput(window);
    machine_.onAct(std::u16string(u"act ClickBar ").append(path));
    machine_.driver.clickBar(window, path);
}

Variant Person::Bars(const Object& window) const {
    return barRecords(machine_.driver.bars(window));
}

Object Person::Receive(const Variant& message) {
    return seen(machine_.driver.receive(mime::readMessage(bytesOf(message), machine_.reading())));
}

void Person::AddContact(const Object& fields) {
    const auto* given = host::implementation<host::Record>(fields);
    if (!given) throw host::HostError(host::runtime_error::TypeMismatch);
    model::Contact contact;
    for (const auto& [name, value] : given->fields()) {
        if (!host::equalsIgnoreCase(name, u"proxies")) {
            contact.*rowNamed(contactFields, name, u"field of a contact").field = value.toText();
            continue;
        }
        for (const Variant& proxy : value.toArray().items) contact.proxies.push_back(proxy.toText());
    }
    machine_.driver.addContact(std::move(contact));
}

void Person::AddStore(std::u16string_view name, std::optional<std::int32_t> kind) {
    machine_.driver.addStore(mailstore::makeMemoryStore(std::u16string(name), kind.value_or(publicStore)));
}

void Person::RemoveStore(std::u16string_view name) {
    machine_.driver.removeStore(name);
}

void Person::SetRights(const Object& folder, std::u16string_view rights) {
    machine_.driver.setRights(folder, rowNamed(folderRights, rights, u"right").rights);
}

}  // namespace lorvane::automation
