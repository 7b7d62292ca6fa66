#include "model/HostCore.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "host/Variant.h"
#include "model/Failures.h"
#include "model/HostWindow.h"
#include "model/ItemState.h"

namespace lorvane::model {

std::u16string normalizedId(std::u16string_view id) {
    std::u16string upper(id);
    for (char16_t& unit : upper) {
        if (unit >= u'a' && unit <= u'f') unit = static_cast<char16_t>(unit - u'a' + u'A');
    }
    return upper;
}

namespace {

/// The build, behind the last "." of a version text.
double buildOf(std::u16string_view version) {
    return host::Val(version.substr(version.rfind(u'.') + 1));
}

/// From this build on, version 10 gives Word's document to a safe wrapper only.
constexpr int guardedVersion = 10, firstGuardedBuild = 6515;

}  // namespace

HostCore::HostCore(HostOptions runOptions)
    : options(std::move(runOptions)),
      majorVersion_(static_cast<int>(host::Val(options.version))),
      guardsWordEditor_(majorVersion_ == guardedVersion && buildOf(options.version) >= firstGuardedBuild) {
    if (options.wordKind == EditorKind::Word) raiseInvalidArgument(u"The kind of Word's text is plain, HTML or rich.");
    if (!options.defaultStore) raiseFailed(u"The host needs a store.");
    addStore(options.defaultStore);
    for (const auto& store : options.furtherStores) addStore(store);
}

mailstore::BodyKind HostCore::newTextKind() const noexcept {
    // Word is an editor and no kind of text.
    return static_cast<mailstore::BodyKind>(options.editor == EditorKind::Word ? options.wordKind : options.editor);
}

host::DateTime HostCore::now() const {
    return options.services.clock ? options.services.clock.call(host::Member::Now).toDate() : host::DateTime{};
}

std::shared_ptr<OpenStore> HostCore::findStore(std::u16string_view storeId) const {
    const auto found = std::ranges::find_if(stores, [storeId](const auto& store) { return host::equalsIgnoreCase(store->id(), storeId); });
    return found == stores.end() ? nullptr : *found;
}

void HostCore::addStore(std::shared_ptr<mailstore::MailStore> store) {
    stores.push_back(std::make_shared<OpenStore>(std::move(store)));
}

void HostCore::removeStore(std::u16string_view name) {
    const auto found = std::ranges::find_if(stores, [name](const auto& store) { return host::equalsIgnoreCase(store->required().name(), name); });
    if (found == stores.end()) raiseNotFound();
    if (found == stores.begin()) raiseFailed(u"The default store cannot be closed.");
    (*found)->close();
    stores.erase(found);
}

mailstore::FolderRecord HostCore::defaultFolder(std::int32_t number) const {
    auto folder = defaultStore().required().wellKnownFolder(number);
    if (!folder) raiseNotFound();
    return std::move(*folder);
}

HostCore::PlacedFolder HostCore::folderFromId(std::u16string_view entryId, std::u16string_view storeId) const {
    const std::u16string id = normalizedId(entryId);
    for (const auto& store : stores) {
        if (!storeId.empty() && !host::equalsIgnoreCase(store->id(), storeId)) continue;
        if (auto folder = store->required().findFolder(id)) return {store, std::move(*folder)};
    }
    raiseNotFound();
}

std::shared_ptr<ItemState> HostCore::itemFromId(std::u16string_view entryId, std::u16string_view storeId) {
    const std::u16string id = normalizedId(entryId);
    for (const auto& store : stores) {
        if (!storeId.empty() && !host::equalsIgnoreCase(store->id(), storeId)) continue;
        for (auto& state : store->liveStates(id)) {
            if (!state->isShown()) continue;
            state->refresh();
            store->requireRead(state->folderId());
            return state;
        }
        auto located = store->find(id);
        if (!located) continue;
        store->requireRead(located.folderId());
        return std::make_shared<ItemState>(shared_from_this(), store, std::move(located));
    }
    raiseNotFound();
}

HostWindow* HostCore::frontmost(const std::vector<HostWindow*>& kind) const noexcept {
    const auto& order = options.desktop.windows();
    for (auto window = order.rbegin(); window != order.rend(); ++window) {
        const auto found = std::ranges::find_if(kind, [window](HostWindow* one) { return static_cast<screen::DesktopWindow*>(one) == *window; });
        if (found != kind.end()) return *found;
    }
    return nullptr;
}

void HostCore::registerClass(std::u16string progId, std::function<host::Object()> factory) {
    std::erase_if(classes_, [&progId](const RegisteredClass& known) { return host::equalsIgnoreCase(known.progId, progId); });
    classes_.push_back({std::move(progId), std::move(factory)});
}

host::Object HostCore::createRegistered(std::u16string_view progId) const {
    const auto found = std::ranges::find_if(classes_, [progId](const RegisteredClass& known) { return host::equalsIgnoreCase(known.progId, progId); });
    return found == classes_.end() ? host::Object() : found->factory();
}

void HostCore::shutDown() noexcept {
    for (auto* kind : {&inspectors, &explorers}) {
        while (!kind->empty()) kind->back()->leave();
    }
}

}  // namespace lorvane::model
