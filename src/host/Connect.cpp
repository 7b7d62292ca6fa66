#include "host/Connect.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
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
    here.gOutlook = Application(application);
    if (holdsIgnoringErrors([] { return OutlookMajorVersion() >= firstRefusedVersion; })) {
        ignoringErrors([] { offerOtherVersion(); });
        here.gOutlook = {};
        return;
    }
    std::u16string progId;
    ignoringErrors([&] { progId = addInInst.getText(Member::ProgId); });
    baseClass_ = std::make_unique<OutAddIn>();
    ignoringErrors([&] { baseClass_->InitHandler(here.gOutlook, progId); });
    here.gProgId = progId;

    if (holdsIgnoringErrors([&] { return here.gOutlook.Explorers().Count() == 0; })) return;
    ignoringErrors([] { store::CreateLorvaneFolder(); });
    ignoringErrors([&] { here.gRdoSession = here.machine.CreateObject(u"qz7mRedemption.qz7mRDOSession"); });
    ignoringErrors([] { InitializeRDOSession(); });
}

void Connect::AddinInstance_OnDisconnection(std::int32_t) {
    Apartment& here = apartment();
    here.gRdoSession = {};
    here.forms.clear();
    if (baseClass_) baseClass_->UnInitHandler();
    baseClass_.reset();
}

void OpenInBrowser(std::u16string_view target) {
    constexpr std::int32_t showNormal = 1;
    const Machine& machine = apartment().machine;
    machine.shell().ShellExecute(machine.screen().GetForegroundWindow(), u"Open", target, u"", u"", showNormal);
}

}  // namespace lorvane::host
