#include "host/Connect.h"
#include "host/Guards.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "store/TemplateFolders.h"
#include "text/TemplateTags.h"

/// The methods of `Connect` that other instances of the add-in reach by name.
namespace lorvane::host {

namespace {

constexpr std::int32_t forwardKind = 3;

/// The template's text with the tags replaced for the answer that it goes into.
void replaceTagsFor(std::u16string& text, const Object& response, std::int32_t responseKind, std::u16string_view recipientMode, const Object& sourceMail) {
    if (recipientMode == text::sourceRecipient)
        text::ReplaceTemplateTag(text, response, text::sourceRecipient);
    else if (responseKind == forwardKind && MailItem(sourceMail).Recipients().Count() > 0)
        text::ReplaceTemplateTag(text, sourceMail, text::sourceRecipient);
    else
        text::ReplaceTemplateTag(text, response, u"");
}

}  // namespace

void Connect::WordEditorVariablesGet(Variant& folder, Variant& nameSpace, Variant& application) {
    const Apartment& here = apartment();
    ignoringErrors([&] {
        if (!folder.toObject()) folder = Variant(Object(here.TemplatesFolder));
    });
    nameSpace = Variant(Object(here.gNameSpace));
    application = Variant(Object(here.gOutlook));
}

void Connect::WordEditorVariablesSet(const Variant& folder, const Variant& nameSpace, const Variant& application) {
    Apartment& here = apartment();
    ignoringErrors([&] { here.TemplatesFolder = MAPIFolder(folder.toObject()); });
    ignoringErrors([&] { here.gNameSpace = NameSpace(nameSpace.toObject()); });
    ignoringErrors([&] { here.gOutlook = Application(application.toObject()); });
}

void Connect::CopyRangeToClipBoard(std::u16string_view entryId, std::u16string_view storeId, const Object& response, std::int32_t responseKind,
                                   std::u16string_view recipientMode, const Object& sourceMail) {
    Apartment& here = apartment();
    here.machine.clipboard().Clear();
    ensureNameSpace();
    MailItem item = here.gNameSpace.GetItemFromID(entryId, storeId);
    const SafeInspector inspector = makeSafeInspector(makeSafeMailItem(item).GetInspector());
    const Object document = inspector.WordEditor();
    std::u16string text = document.getObject(Member::Range).getText(Member::Text);
    if (response) replaceTagsFor(text, response, responseKind, recipientMode, sourceMail);
    const Object range = document.getObject(Member::Range);
    range.put(Member::Text, Variant(text));
    range.call(Member::Select);
    range.call(Member::Copy);
    item = {};
    inspector.Close(response ? olDiscard : olSave);
}

void Connect::PasteRangeToEmail() {
    withErrorBox(u"PasteRangeToEmail", [] {
        ensureNameSpace();
        const bool guarded = IsGuardedOutlook10();
        const Inspector active = apartment().gOutlook.ActiveInspector();
        const Object document = guarded ? makeSafeInspector(active).WordEditor() : active.WordEditor();
        document.getObject(Member::Application).getObject(Member::Selection).call(Member::Paste, {std::int16_t{0}});
    });
}

namespace {

/// The sink of the host's events, to other programs.
class BaseClassObject final : public Dispatch {
public:
    explicit BaseClassObject(std::shared_ptr<OutAddIn> baseClass) noexcept : baseClass_(std::move(baseClass)) {}
    const std::shared_ptr<OutAddIn>& behind() const noexcept { return baseClass_; }

    std::u16string_view className() const noexcept override { return u"OutAddIn"; }
    const void* identity() const noexcept override { return baseClass_.get(); }
    Variant get(Member member, Args args) override {
        if (member == Member::objCurMailItem) return Variant(baseClass_->objCurMailItem());
        return call(member, args);
    }
    void put(Member member, const Variant& value, Args) override {
        if (member != Member::objCurMailItem) raiseNoSuchMember(className(), member);
        baseClass_->objCurMailItem(value.toObject());
    }
    Variant call(Member member, Args args) override {
        switch (member) {
            case Member::InitHandler:
                baseClass_->InitHandler(Application(requiredArgument(args, 0).toObject()), requiredArgument(args, 1).toText());
                return {};
            case Member::UnInitHandler:
                baseClass_->UnInitHandler();
                return {};
            default:
                raiseNoSuchMember(className(), member);
        }
    }

private:
    std::shared_ptr<OutAddIn> baseClass_;
};

/// Error 13 for an object of another class.
std::shared_ptr<OutAddIn> baseClassBehind(const Object& object) {
    if (!object) return nullptr;
    const auto* known = implementation<BaseClassObject>(object);
    if (!known) throw HostError(runtime_error::TypeMismatch);
    return known->behind();
}

}  // namespace

Variant Connect::get(Member member, Args args) {
    if (member == Member::gBaseClass) return Variant(baseClass_ ? makeObject<BaseClassObject>(baseClass_) : Object());
    return call(member, args);
}

void Connect::put(Member member, const Variant& value, Args) {
    if (member != Member::gBaseClass) raiseNoSuchMember(className(), member);
    gBaseClass(baseClassBehind(value.toObject()));
}

Variant Connect::call(Member member, Args args) {
    switch (member) {
        case Member::WordEditorVariablesGet: {
            Variant folder = requiredArgument(args, 0), nameSpace = requiredArgument(args, 1), application = requiredArgument(args, 2);
            WordEditorVariablesGet(folder, nameSpace, application);
            args[0].assign(std::move(folder));
            args[1].assign(std::move(nameSpace));
            args[2].assign(std::move(application));
            return {};
        }
        case Member::WordEditorVariablesSet:
            WordEditorVariablesSet(requiredArgument(args, 0), requiredArgument(args, 1), requiredArgument(args, 2));
            return {};
        case Member::CopyRangeToClipBoard: {
            // The target of the tags is optional, and with it all that is said about it.
            const auto optional = [&](std::size_t index) { return argumentAt(args, index).isMissing() ? Variant() : argumentAt(args, index); };
            CopyRangeToClipBoard(requiredArgument(args, 0).toText(), requiredArgument(args, 1).toText(), optional(2).toObject(), optional(3).toInt32(),
                                 optional(4).toText(), optional(5).toObject());
            return {};
        }
        case Member::PasteRangeToEmail:
            PasteRangeToEmail();
            return {};
        case Member::DisplayTemplateSaveMsg:
            DisplayTemplateSaveMsg();
            return {};
        case Member::AddinInstance_OnConnection:
            AddinInstance_OnConnection(requiredArgument(args, 0).toObject(), requiredArgument(args, 1).toInt32(), requiredArgument(args, 2).toObject());
            return {};
        case Member::AddinInstance_OnDisconnection:
            AddinInstance_OnDisconnection(requiredArgument(args, 0).toInt32());
            return {};
        case Member::CreateLorvaneFolder:
            store::CreateLorvaneFolder();
            return {};
        case Member::CreateMapiFolder:
            store::CreateMapiFolder();
            return {};
        case Member::ExampleTemplatesCreate:
            store::ExampleTemplatesCreate(MAPIFolder(requiredArgument(args, 0).toObject()));
            return {};
        case Member::TemplateExample: {
            // Body first here, subject first in the routine behind it.
            const std::u16string body = requiredArgument(args, 0).toText();
            store::TemplateExample(requiredArgument(args, 1).toText(), body, MAPIFolder(requiredArgument(args, 2).toObject()));
            return {};
        }
        default:
            raiseNoSuchMember(className(), member);
    }
}

}  // namespace lorvane::host
