#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Outlook.h"
#include "host/WithEvents.h"

namespace lorvane::host {

/// Hears of the host's own events and wraps its windows as they open. Holds the add-in's references to the host for as long as it is connected.
class OutAddIn final : public std::enable_shared_from_this<OutAddIn> {
public:
    OutAddIn();

    /// Takes the references. Its last statement but one reads a member that the host does not have, on every start: the error goes to the caller, and
    /// `isInitialised` stays false; all that is to be heard is heard by then.
    void InitHandler(const Application& application, std::u16string_view progId);
    /// Lets all references go, the shared ones too, so that the host can end. May run twice.
    void UnInitHandler();

    bool isInitialised() const noexcept { return initialised_; }
    const Object& objCurMailItem() const noexcept { return objCurMailItem_; }  ///< the mail of the most recently opened mail Inspector
    void objCurMailItem(Object mail) noexcept { objCurMailItem_ = std::move(mail); }
    /// A mail Inspector has just been opened, and was not activated since.
    bool isNewMailPending() const noexcept { return newMailPending_; }
    /// An answer to the open mail was begun. Never, since nothing assigns the mail that would tell.
    bool isReplyPending() const noexcept { return replyPending_; }

private:
    void colExpl_NewExplorer(const Object& explorer);
    void colInsp_NewInspector(const Object& inspector);
    void noteMail(const MailItem& item);
    void objExpl_Close();
    void objInsp_Close();
    void objMailItem_Reply() { replyPending_ = true; }
    static void objExpl_BeforeFolderSwitch() {}  // nothing comes of these three: what goes out is neither changed nor stopped
    static void objOutlook_ItemSend() {}
    static void objOutlook_Startup() {}

    WithEvents objOutlook_, objExpl_, colExpl_, objInsp_, colInsp_;
    WithEvents objMailItem_;  ///< nothing assigns it
    NameSpace objNS_;
    Object objCurMailItem_;
    std::u16string progId_;
    bool newMailPending_ = false;
    bool replyPending_ = false;
    bool initialised_ = false;
};

}  // namespace lorvane::host
