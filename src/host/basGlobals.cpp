#include "host/basGlobals.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/UntoldErrors.h"

namespace lorvane::host {

std::u16string setting(std::u16string_view key, std::u16string_view byDefault) {
    return apartment().machine.settings().GetSetting(settingsApplication, settingsSection, key, byDefault);
}

void saveSetting(std::u16string_view key, std::u16string_view value) {
    apartment().machine.settings().SaveSetting(settingsApplication, settingsSection, key, value);
}

void ensureOutlook() {
    Apartment& here = apartment();
    if (!here.gOutlook) here.gOutlook = Application(here.machine.CreateObject(u"Outlook.Application", u"localhost"));
}

void ensureNameSpace() {
    ensureOutlook();
    Apartment& here = apartment();
    if (!here.gNameSpace) here.gNameSpace = here.gOutlook.GetNamespace(u"MAPI");
}

std::u16string OutlookVersion() {
    ensureOutlook();
    const std::u16string version = apartment().gOutlook.Version();
    return version.substr(0, version.find(u'.'));
}

std::int32_t OutlookMajorVersion() {
    return Variant(OutlookVersion()).toInt32();
}

bool IsGuardedOutlook10() {
    constexpr double firstGuardedBuild = 6515;
    if (OutlookVersion() != u"10") return false;
    const std::u16string version = apartment().gOutlook.Version();
    return Val(Mid(version, InStrRev(version, u".") + 1)) >= firstGuardedBuild;
}

std::int32_t MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) {
    Apartment& here = apartment();
    return here.machine.screen().MsgBox(text, style, title.empty() ? std::u16string_view(here.title) : title);
}

std::int32_t MessageBox4Word(std::u16string_view text, std::int32_t style, std::u16string_view title) {
    const Screen screen = apartment().machine.screen();
    const std::int32_t owner = screen.GetForegroundWindow();
    const std::int32_t button = MsgBox(text, style, title);
    screen.SetForegroundWindow(owner);
    return button;
}

void showStandardError(std::u16string_view routine, const HostError& error) {
    const std::u16string text = u"Error " + decimal(error.number()) + u": " + error.description();
    const std::u16string title = std::u16string(routine) + u" - " + apartment().title;
    // A box that cannot be shown is no reason for the guarded routine to fail after all.
    if (!ignoringErrors([&] { MessageBox4Word(text, msgbox::Critical, title); })) apartment().state<UntoldErrors>().texts.push_back(title + u": " + text);
}

void InitializeRDOSession() {
    Apartment& here = apartment();
    if (!here.gOutlook) return;
    ignoringErrors([&] {
        here.gRdoSession = here.machine.CreateObject(u"qz7mRedemption.qz7mRDOSession");
        if (OutlookVersion() == u"9") {
            here.gRdoSession.call(Member::Logon);
        } else {
            const Variant logon = here.gOutlook.Session().get(Member::MAPIOBJECT);
            here.gRdoSession.put(Member::MAPIOBJECT, logon);
        }
    });
}

}  // namespace lorvane::host
