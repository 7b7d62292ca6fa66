#include "model/Driver.h"

#include "model/ApplicationObjects.h"
#include "model/BarClicks.h"
#include "model/CommandBarSet.h"
#include "model/ExplorerObject.h"
#include "model/Failures.h"
#include "model/FolderObjects.h"
#include "model/HostCore.h"
#include "model/InspectorObject.h"
#include "model/ItemObject.h"
#include "model/ModelHost.h"

namespace lorvane::model {

namespace tags = mailstore::tags;

namespace {

constexpr std::int32_t inboxFolder = 6, mailType = 0, discard = 1;

template <class T>
T& required(const host::Object& object) {
    T* implementation = host::implementation<T>(object);
    if (!implementation) throw host::HostError(host::runtime_error::TypeMismatch);
    return *implementation;
}

host::Object show(const host::Object& inspector) {
    required<InspectorObject>(inspector).display();
    return inspector;
}

host::Object saveNew(const std::shared_ptr<HostCore>& core, const std::shared_ptr<OpenStore>& store, std::u16string folderId, mailstore::ItemRecord record) {
    record.head.entryId.clear();
    record.head.version = 0;
    store->requireCreate(folderId);
    auto item = std::make_shared<ItemState>(core, store, std::move(folderId), std::move(record));
    item->persist();
    return makeItem(std::move(item));
}

}  // namespace

Driver::Driver(const ModelHost& host) : core_(host.core_) {}

host::Object Driver::openExplorer() const {
    return openExplorer(makeFolder(core_, core_->stores.front(), core_->defaultFolder(inboxFolder)));
}

host::Object Driver::openExplorer(const host::Object& folder) const {
    const auto& shown = required<FolderObject>(folder);
    const host::Object explorer = host::makeObject<ExplorerObject>(core_, HostCore::PlacedFolder{shown.store(), shown.record()});
    required<ExplorerObject>(explorer).show();
    return explorer;
}

host::Object Driver::newMail() const {
    return show(makeApplication(core_).call(host::Member::CreateItem, {mailType}).toObject().getObject(host::Member::GetInspector));
}

host::Object Driver::openItem(std::u16string_view entryId, std::u16string_view storeId) const {
    return show(inspectorOf(core_->itemFromId(entryId, storeId)));
}

void Driver::closeInspector(const host::Object& inspector, bool save) const {
    required<InspectorObject>(inspector).close(save ? 0 : discard);
}

void Driver::selectItems(const host::Object& explorer, const std::vector<Identity>& items) const {
    std::vector<std::shared_ptr<ItemState>> states;
    for (const auto& [entryId, storeId] : items) states.push_back(core_->itemFromId(entryId, storeId));
    required<ExplorerObject>(explorer).select(std::move(states));
}

std::vector<BarTree> Driver::bars(const host::Object& window) const {
    return required<HostWindow>(window).commandBars().trees();
}

void Driver::clickBar(const host::Object& window, std::u16string_view path) const {
    model::clickBar(required<HostWindow>(window), path);
}

void Driver::focus(const host::Object& inspector, EditorFieldName field, std::int32_t position) const {
    EditorFields& fields = required<InspectorObject>(inspector).fields();
    fields.setFocus(field);
    fields.focused().setCaret(position < 0 ? html::EditorDocument::End : static_cast<std::size_t>(position));
}

void Driver::select(const host::Object& inspector, std::size_t start, std::size_t length) const {
    required<InspectorObject>(inspector).fields().focused().select(start, length);
}

EditorFieldName Driver::focusedField(const host::Object& inspector) const {
    return required<InspectorObject>(inspector).fields().focus();
}

std::size_t Driver::caret(const host::Object& inspector) const {
    return required<InspectorObject>(inspector).fields().focused().caret();
}

std::u16string Driver::visibleText(const host::Object& inspector, EditorFieldName field) const {
    return required<InspectorObject>(inspector).fields().document(field).visible();
}

host::Object Driver::receive(mailstore::ItemRecord record) const {
    const host::DateTime now = core_->now();
    record.properties.try_emplace(tags::ReceivedByName, core_->options.accountName);
    record.properties.try_emplace(tags::DeliveryTime, now);
    record.properties.try_emplace(tags::CreationTime, now);
    record.properties.insert_or_assign(tags::MessageFlags, std::int32_t{0});
    return saveNew(core_, core_->stores.front(), core_->defaultFolder(inboxFolder).entryId, std::move(record));
}

host::Object Driver::import(mailstore::ItemRecord record, const host::Object& folder) const {
    const auto& target = required<FolderObject>(folder);
    return saveNew(core_, target.store(), target.record().entryId, std::move(record));
}

void Driver::addContact(Contact contact) const {
    core_->addressBook.add(std::move(contact));
}

void Driver::addStore(std::shared_ptr<mailstore::MailStore> store) const {
    core_->addStore(std::move(store));
}

void Driver::removeStore(std::u16string_view name) const {
    core_->removeStore(name);
}

void Driver::setRights(const host::Object& folder, FolderRights rights) const {
    const auto& target = required<FolderObject>(folder);
    target.store()->setRights(target.record().entryId, rights);
}

mailstore::ItemRecord Driver::record(const host::Object& item) const {
    const auto& state = itemStateOf(item);
    state->requireAlive();
    if (state->inspector) state->inspector->commitAll();
    return state->snapshot();
}

void Driver::purge(const host::Object& item) const {
    itemStateOf(item)->purge();
}

void Driver::setCommitDelay(std::uint32_t pumps) const {
    core_->options.commitDelay = pumps;
}

}  // namespace lorvane::model
