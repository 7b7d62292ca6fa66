#include "host/Connect.h"

#include "host/AddIn.h"
#include "host/BuildSwitches.h"
#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/WindowCommands.h"
#include "host/basExplCol.h"
#include "host/basGlobals.h"
#include "respond/frmEmail.h"
#include "store/TemplateFolders.h"
#include "store/frmProgress.h"

namespace lorvane::host {

namespace {

constexpr std::int32_t firstRefusedVersion = 12;
constexpr std::u16string_view downloadAddress = u"https://www.lorvane.example/lorvane/download_process.asp";

/// The windows that can be named before their first use.
void knowWindows(Forms& forms) {
    forms.know(respond::frmEmail::formName, &makeObject<respond::frmEmail>);
    forms.know(store::frmProgress::formName, &makeObject<store::frmProgress>);
}

void offerOtherVersion() {
    const std::u16string& title = apartment().title;
    std::u16string text = u"You have installed a version of " + title + u" that only works with Outlook 2000, 2002 and 2003.\r\n";
    text += u"You can download the Outlook 2007 version of " + title + u" from:\r\n";
    text.append(downloadAddress).append(u"\r\n\r\n");
    text += u"Would you like to go to the page and download the correct version now?";
    const std::int32_t button = MsgBox(text, msgbox::QuestionInformation, u"Please Download Software for Correct Version of Outlook!");
    if (button == msgbox::Yes) OpenInBrowser(downloadAddress);
}

}  // namespace

void Connect::AddinInstance_OnConnection(const Object& application, std::int32_t, const Object& addInInst) {
    Apartment& here = apartment();
    here.title = u"Lorvane";
    knowWindows(here.forms);
    const Application host(application);
    here.gOutlook = host;
    if (holdsIgnoringErrors([] { return OutlookMajorVersion() >= firstRefusedVersion; })) {
        ignoringErrors([] { offerOtherVersion(); });
        here.gOutlook = {};
        return;
    }
    std::u16string progId;
    ignoringErrors([&] { progId = addInInst.getText(Member::ProgId); });
    baseClass_ = std::make_shared<OutAddIn>();
    ignoringErrors([&] { baseClass_->InitHandler(host, progId); });
    here.gProgId = progId;

    // Without a window there is nobody to serve; one that opens later is only wrapped.
    if (holdsIgnoringErrors([&] { return host.Explorers().Count() == 0; })) return;
    ignoringErrors([&] { AddExpl(host.ActiveExplorer()); });
    ignoringErrors([] { store::CreateLorvaneFolder(); });
    if (ProcessFeatureEnabled) ignoringErrors([] { runLater(&LaterCommands::createProcessFolder); });
    if (holdsIgnoringErrors([] { return setting(u"DonotShowStartupWiz") != u"True"; })) ignoringErrors([] { runLater(&LaterCommands::showStartUpWizard); });
    if (holdsIgnoringErrors([] { return setting(u"ShowInSystemTray", u"True") == u"True"; })) ignoringErrors([] { runLater(&LaterCommands::showSystemTray); });
    ignoringErrors([&] { here.gRdoSession = here.machine.CreateObject(u"qz7mRedemption.qz7mRDOSession"); });
    ignoringErrors([] { InitializeRDOSession(); });
}

namespace {

/// The windows whose shared instance ends with the connection. The others end with the add-in's state.
constexpr std::u16string_view releasedWindows[] = {
    u"frmAbout",        u"frmAddFolder",         u"frmEmail",           u"frmPickFolder",       u"frmProgress",         u"frmSaveTemplate", u"frmCalendar",
    u"frmCreateEmail",  u"frmDeleteAppointment", u"frmEditApptDetails", u"frmOpenDeleteEvents", u"frmRescheduleWizard", u"frmSelectEmail",  u"frmProcEvent",
    u"frmProcTemplate", u"frmProcTemplateList",  u"frmWizard",
};

}  // namespace

void Connect::AddinInstance_OnDisconnection(std::int32_t) {
    Apartment& here = apartment();
    here.gRdoSession = {};
    for (const std::u16string_view window : releasedWindows) here.forms.release(window);
    RemoveExplMenu(u"Meravix/Lo&rvane");
    // The last window may have let everything go already, and a host that was refused has none of it.
    if (baseClass_) baseClass_->UnInitHandler();
    baseClass_.reset();
    runLater(&LaterCommands::unloadSystemTray);
}

void Connect::DisplayTemplateSaveMsg() {
    runLater(&LaterCommands::showTemplateSavedMessage);
}

namespace {

/// The Tools menu of an Explorer, Nothing where it has none. It is shown first: the menu bar of one that was never shown is not there.
CommandBarControl toolsMenuOf(const Object& explorer) {
    CommandBarControl tools;
    ignoringErrors([&] { explorer.call(Member::Display); });
    ignoringErrors([&] { tools = commandBarsOf(explorer).Item(u"Menu Bar").Controls().Item(u"&Tools"); });
    return tools;
}

/// Takes the entry that `path` ends with out of a menu. An outer name is used up: `path` is the inner one from then on, also where the menu has no outer popup.
void removeMenuFrom(CommandBarControl popup, std::u16string& path) {
    const std::size_t slash = path.find(u'/');
    CommandBarControl outer;
    if (slash != std::u16string::npos) {
        const std::u16string outerName = path.substr(0, slash);
        path.erase(0, slash + 1);
        if (ignoringErrors([&] { outer = popup.CommandBar().Controls().Item(outerName); })) popup = outer;
    }
    ignoringErrors([&] { popup.CommandBar().Controls().Item(path).Delete(); });
    // A menu that is shared with other add-ins stays while one of them still uses it.
    if (holdsIgnoringErrors([&] { return outer.Controls().Count() == 0; })) ignoringErrors([&] { outer.Delete(); });
}

}  // namespace

void RemoveExplMenu(std::u16string path) {
    for (const auto& wrapper : explorerWraps().gExplorerWraps.all())
        if (const CommandBarControl tools = toolsMenuOf(wrapper->Explorer())) removeMenuFrom(tools, path);
}

Object makeAddIn() {
    return makeObject<Connect>();
}

void OpenInBrowser(std::u16string_view target) {
    constexpr std::int32_t showNormal = 1;
    const Machine& machine = apartment().machine;
    machine.shell().ShellExecute(machine.screen().GetForegroundWindow(), u"Open", target, u"", u"", showNormal);
}

}  // namespace lorvane::host
