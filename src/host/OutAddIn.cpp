#include "host/OutAddIn.h"

#include "host/Apartment.h"
#include "host/Guards.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/basExplCol.h"
#include "host/basGlobals.h"
#include "host/basOutlInsp.h"
#include "text/RecipientNames.h"

namespace lorvane::host {

namespace {

Object objectAt(Args args, std::size_t index) {
    return argumentAt(args, index).toObject();
}

/// Contacts, distribution lists, journal entries and documents get no wrapper and no toolbar.
bool isWrapped(std::int32_t itemClass) {
    switch (itemClass) {
        case item_class::Mail:
        case item_class::Post:
        case item_class::Appointment:
        case item_class::Task:
            return true;
        default:
            return false;
    }
}

}  // namespace

OutAddIn::OutAddIn() {
    // Handlers whose own guard is not told end in silence.
    colExpl_.on(Member::NewExplorer, [this](Args args) { ignoringErrors([&] { colExpl_NewExplorer(objectAt(args, 0)); }); });
    colInsp_.on(Member::NewInspector, [this](Args args) { ignoringErrors([&] { colInsp_NewInspector(objectAt(args, 0)); }); });
    objExpl_.on(Member::Close, [this](Args) { ignoringErrors([&] { objExpl_Close(); }); });
    objExpl_.on(Member::BeforeFolderSwitch, [](Args) { objExpl_BeforeFolderSwitch(); });
    objInsp_.on(Member::Close, [this](Args) { ignoringErrors([&] { objInsp_Close(); }); });
    objMailItem_.on(Member::Reply, [this](Args) { objMailItem_Reply(); });
    objOutlook_.on(Member::ItemSend, [](Args) { objOutlook_ItemSend(); });
    objOutlook_.on(Member::Startup, [](Args) { objOutlook_Startup(); });
}

void OutAddIn::InitHandler(const Application& application, std::u16string_view progId) {
    const auto self = shared_from_this();
    objOutlook_.set(application, self);
    apartment().gOutlook = application;
    progId_ = progId;
    objNS_ = application.GetNamespace(u"MAPI");
    colExpl_.set(application.Explorers(), self);
    colInsp_.set(application.Inspectors(), self);
    objExpl_.set(application.ActiveExplorer(), self);
    objInsp_.set(application.getObject(Member::Inspector), self);
    initialised_ = true;
}

void OutAddIn::UnInitHandler() {
    objInsp_.reset();
    objExpl_.reset();
    colInsp_.reset();
    colExpl_.reset();
    objNS_ = {};
    Apartment& here = apartment();
    here.TemplatesFolder = {};
    here.gOutlook = {};
    objOutlook_.reset();
    explorerWraps().gExplorerWraps.clear();
    inspectorWraps().gInspectorWraps.clear();
    initialised_ = false;
}

void OutAddIn::colExpl_NewExplorer(const Object& explorer) {
    AddExpl(explorer);
}

void OutAddIn::colInsp_NewInspector(const Object& inspector) {
    if (holdsIgnoringErrors([&] { return Inspector(inspector).CurrentItem().Class() == item_class::Note; })) return;
    ignoringErrors([&] { objInsp_.set(inspector, shared_from_this()); });
    MailItem item;
    ignoringErrors([&] { item = Inspector(objInsp_.get()).CurrentItem(); });
    if (holdsIgnoringErrors([&] { return isWrapped(item.Class()); })) AddInsp(objInsp_.get());
    try {
        noteMail(item);
    } catch (const HostError& error) {
        MsgBox(u"Error Number: " + decimal(error.number()) + u"Error Description(redemption): " + error.description(), msgbox::Plain);
    }
}

/// Remembers the mail that was opened. The object made first proves that the helper is there.
void OutAddIn::noteMail(const MailItem& item) {
    const Object helper = apartment().machine.CreateObject(u"qz7mRedemption.qz7mSafeMailItem");
    if (item.Class() != item_class::Mail) {
        newMailPending_ = false;
        return;
    }
    objCurMailItem_ = item;
    // It is `objMailItem`, which nothing assigns, that is looked at: neither test can hold, so the flag is set for every mail.
    newMailPending_ = !text::IsReceivedMail(objMailItem_.get()) && !text::IsSentMail(objMailItem_.get());
}

// The host can end only when the add-in holds nothing of it any more.

void OutAddIn::objExpl_Close() {
    const Application host(objOutlook_.get());
    if (host.Explorers().Count() <= 1 && host.Inspectors().Count() == 0) UnInitHandler();
}

void OutAddIn::objInsp_Close() {
    const Application host(objOutlook_.get());
    if (!host.ActiveExplorer() && host.Inspectors().Count() <= 1) UnInitHandler();
}

}  // namespace lorvane::host
