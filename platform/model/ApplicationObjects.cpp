#include "model/ApplicationObjects.h"

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/FolderObjects.h"
#include "model/HostCore.h"
#include "model/HostWindow.h"
#include "model/ItemObject.h"
#include "model/ModelMembers.h"
#include "model/RecipientObjects.h"

namespace lorvane::model {

using host::Member;
using host::Variant;

namespace {

constexpr std::int32_t applicationClass = 0, nameSpaceClass = 1, explorersClass = 60, inspectorsClass = 61;

/// Explorers or Inspectors: the live windows of a kind.
class WindowsObject final : public ModelObject {
public:
    WindowsObject(std::shared_ptr<HostCore> core, std::u16string_view name, std::vector<HostWindow*> HostCore::*windows, host::EventSource HostCore::*events)
        : ModelObject(std::move(core)), name_(name), windows_(windows), events_(events) {}

    std::u16string_view className() const noexcept override { return name_; }
    const void* identity() const noexcept override { return &windows(); }
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return (core().*events_).advise(std::move(sink)); }

    host::Object at(const Variant& index) const { return host::Object(windows()[indexFrom(index, windows().size())]); }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Count:
                return static_cast<std::int32_t>(windows().size());
            case Member::Item:
                return at(host::requiredArgument(args, 0));
            case Member::Class:
                return name_ == u"Explorers" ? explorersClass : inspectorsClass;
            default:
                raiseUnknown(member);
        }
    }

private:
    std::vector<HostWindow*>& windows() const noexcept { return core().*windows_; }

    std::u16string_view name_;
    std::vector<HostWindow*> HostCore::*windows_;
    host::EventSource HostCore::*events_;
};

host::Object makeWindows(const std::shared_ptr<HostCore>& core, bool explorers, host::Args args) {
    host::Object windows = explorers ? host::makeObject<WindowsObject>(core, u"Explorers", &HostCore::explorers, &HostCore::explorersEvents)
                                     : host::makeObject<WindowsObject>(core, u"Inspectors", &HostCore::inspectors, &HostCore::inspectorsEvents);
    return args.empty() ? windows : host::implementation<WindowsObject>(windows)->at(args[0].value());
}

class MapiObject final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"MAPIOBJECT"; }

protected:
    Variant use(Member member, host::Args) override { raiseUnknown(member); }
};

class NameSpaceObject final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"NameSpace"; }
    const void* identity() const noexcept override { return &core().stores; }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Folders:
                return makeTopFolders(sharedCore(), args);
            case Member::GetDefaultFolder:
                return makeFolder(sharedCore(), core().stores.front(), core().defaultFolder(host::requiredArgument(args, 0).toInt32()));
            case Member::GetFolderFromID: {
                auto placed = core().folderFromId(host::requiredArgument(args, 0).toText(), storeArgument(args));
                return makeFolder(sharedCore(), std::move(placed.store), std::move(placed.folder));
            }
            case Member::GetItemFromID:
                return makeItem(core().itemFromId(host::requiredArgument(args, 0).toText(), storeArgument(args)));
            case Member::MAPIOBJECT:
                return host::makeObject<MapiObject>(sharedCore());
            case Member::Application:
                return makeApplication(sharedCore());
            case Member::Class:
                return nameSpaceClass;
            case Member::Type:
                return u"MAPI";
            default:
                raiseUnknown(member);
        }
    }

private:
    static std::u16string storeArgument(host::Args args) {
        const Variant& store = host::argumentAt(args, 1);
        return store.isMissing() ? std::u16string() : store.toText();
    }
};

class ApplicationObject final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"Application"; }
    const void* identity() const noexcept override { return &core(); }
    host::Subscription advise(std::weak_ptr<host::EventSink> sink) override { return core().applicationEvents.advise(std::move(sink)); }

protected:
    Variant use(Member member, host::Args args) override {
        switch (member) {
            case Member::Version:
                return core().options.version;
            case Member::Name:
                return u"Outlook";
            case Member::Class:
                return applicationClass;
            case Member::Session:
                return makeNameSpace(sharedCore());
            case Member::Application:
                return host::Object(this);
            case Member::GetNamespace:
                if (!host::equalsIgnoreCase(host::requiredArgument(args, 0).toText(), u"MAPI"))
                    raiseInvalidArgument(u"The host has the name space \"MAPI\" only.");
                return makeNameSpace(sharedCore());
            case Member::ActiveExplorer:
                return host::Object(core().frontmost(core().explorers));
            case Member::ActiveInspector:
                return host::Object(core().frontmost(core().inspectors));
            case member::ActiveWindow:
                return activeWindow();
            case Member::Explorers:
                return makeWindows(sharedCore(), true, args);
            case Member::Inspectors:
                return makeWindows(sharedCore(), false, args);
            case Member::CreateItem:
                return createItem(host::requiredArgument(args, 0).toInt32());
            case Member::CreateObject:
                return createObject(host::requiredArgument(args, 0).toText());
            default:
                raiseUnknown(member);
        }
    }

private:
    host::Object activeWindow() const {
        const auto& order = core().options.desktop.windows();
        for (auto window = order.rbegin(); window != order.rend(); ++window) {
            if (auto* ours = dynamic_cast<HostWindow*>(*window)) return host::Object(ours);
        }
        return {};
    }

    host::Object createItem(std::int32_t type) const {
        const std::u16string messageClass = messageClassOfType(type);
        const std::int32_t itemClass = itemClassOf(messageClass);
        auto record = freshRecord(itemClass, messageClass, core().now());
        const auto folder = core().defaultFolder(defaultFolderOf(itemClass));
        return makeItem(std::make_shared<ItemState>(sharedCore(), core().stores.front(), folder.entryId, std::move(record)));
    }

    /// The folder that a new item is saved into: Calendar, Contacts, Tasks; Inbox for posts; Drafts for all else.
    static std::int32_t defaultFolderOf(std::int32_t itemClass) noexcept {
        switch (itemClass) {
            case 26:
                return 9;
            case 40:
            case 69:
                return 10;
            case 48:
                return 13;
            case 45:
                return 6;
            default:
                return 16;
        }
    }

    host::Object createObject(std::u16string_view progId) const {
        if (host::Object made = core().createRegistered(progId)) return made;
        return createByProgId(sharedCore(), progId);
    }
};

class AddInInstObject final : public ModelObject {
public:
    using ModelObject::ModelObject;
    std::u16string_view className() const noexcept override { return u"AddInInst"; }
    const void* identity() const noexcept override { return &core().applicationEvents; }

protected:
    Variant use(Member member, host::Args) override {
        if (member != Member::ProgId) raiseUnknown(member);
        return u"Lorvane.Connect";
    }
};

}  // namespace

host::Object makeApplication(std::shared_ptr<HostCore> core) {
    return host::makeObject<ApplicationObject>(std::move(core));
}

host::Object makeNameSpace(std::shared_ptr<HostCore> core) {
    return host::makeObject<NameSpaceObject>(std::move(core));
}

host::Object makeAddInInst(std::shared_ptr<HostCore> core) {
    return host::makeObject<AddInInstObject>(std::move(core));
}

HostCore* sessionBehind(const host::Object& mapiObject) noexcept {
    const auto* session = host::implementation<MapiObject>(mapiObject);
    return session ? &session->core() : nullptr;
}

}  // namespace lorvane::model
