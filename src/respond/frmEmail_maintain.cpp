#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "respond/ChooserTexts.h"
#include "respond/FurtherWindows.h"
#include "respond/frmEmail.h"
#include "respond/modTemplateLog.h"
#include "text/html_clip.h"

/// Copying a template, making, editing and deleting one, and what the window does for itself.
namespace lorvane::respond {

using namespace host;
using namespace store;

namespace {

constexpr std::int32_t rightButton = 2;
constexpr std::int32_t tipsHeight = 1440;      // twips
constexpr std::int32_t noTipsHeight = 480;     // twips
constexpr std::int32_t linkColour = 16711680;  // blue
constexpr std::int32_t hoverColour = 33023;    // orange
constexpr std::int32_t manualTopic = 1000;

std::u16string createFirst(std::u16string_view what) {
    return u"There are no items to " + std::u16string(what) + u".\r\nPlease search for another e-mail or create a standard item first.";
}

/// What a double click does, by the user's choice; "NOT FOUND" and nothing stand for the text-only action.
bool isTextOnly(std::u16string_view choice, std::u16string_view action) {
    return choice == u"NOT FOUND" || choice.empty() || choice == action;
}

}  // namespace

void frmEmail::wireMaintenance() {
    lstEmails.DblClick = [this] { lstEmails_DblClick(); };
    lstEmails.MouseDown = [this](std::int32_t button, double, double y) { lstEmails_MouseDown(button, y); };
    cmdCopyToClipBoard.Click = [this] { cmdCopyToClipBoard_Click(); };
    cmdCopyHTMLToClipB.Click = [this] { cmdCopyHTMLToClipB_Click(); };
    cmdCopyToCB.Click = [this] { cmdCopyToClipBoard_Click(); };
    cmdCopyCBWithFormatting.Click = [this] { cmdCopyHTMLToClipB_Click(); };
    cmdNew.Click = [this] { cmdNew_Click(); };
    cmdEdit.Click = [this] { cmdEdit_Click(); };
    mcmdEdit.Click = [this] { cmdEdit_Click(); };
    cmdDelete.Click = [this] { cmdDelete_Click(); };
    mcmdDelete.Click = [this] { cmdDelete_Click(); };
    cmdPickfolder.Click = [this] { cmdPickfolder_Click(); };
    cmdCategorize.Click = [this] { cmdCategorize_Click(); };
    cmdHelp.Click = [this] { cmdHelp_Click(); };
}

/// The labels that are clicked, and the two among them that answer the pointer.
void frmEmail::wireLinks() {
    lblChangeFolder.Click = [this] { lblChangeFolder_Click(); };
    lblShowTips.Click = [this] { lblShowTips_Click(); };
    lblHide.Click = [this] { FldrMaintBtnsClick(); };
    lblFldrMainBtns.Click = [this] { FldrMaintBtnsClick(); };

    lblChangeFolder.ForeColor = linkColour;
    lblShowTips.ForeColor = linkColour;
    for (Label* link : {&lblChangeFolder, &lblShowTips}) link->MouseMove = [link] { link->ForeColor = hoverColour; };
    Label2.MouseMove = [this] { lblChangeFolder.ForeColor = linkColour; };
    picLorvane.MouseMove = [this] { lblChangeFolder.ForeColor = linkColour; };
    MouseMove = [this] {
        for (Label* link : {&lblChangeFolder, &lblShowTips}) link->ForeColor = linkColour;
    };
}

void frmEmail::lstEmails_DblClick() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.lstEmails_DblClick", [&] {
        if (DisableInsert) {
            const std::u16string choice(Trim(setting(u"CopyDefaultFormat", u"NOT FOUND")));
            if (isTextOnly(choice, u"Copy (text only)"))
                cmdCopyToClipBoard_Click();
            else if (choice == u"Edit template" && cmdEdit.Visible)
                cmdEdit_Click();
            else if (choice == u"Copy (with format)")
                cmdCopyHTMLToClipB_Click();
            return;
        }
        const std::u16string choice(Trim(setting(u"InsertDefaultFormat", u"NOT FOUND")));
        if (isTextOnly(choice, u"Insert (text only)"))
            cmdInsert_Click();
        else if (choice == u"Insert (with format)")
            cmdInsertWithFormat_Click();
    });
}

void frmEmail::lstEmails_MouseDown(std::int32_t button, double y) {
    if (button != rightButton) return;
    withErrorBox(u"frmEmail.lstEmails_MouseDown", [&] {
        if (const std::int32_t row = lstEmails.rowAt(y); row >= 0) lstEmails.ListIndex = row;
        apartment().machine.screen().PopupMenu(*this, mnuTemplateMaint.name());
    });
}

void frmEmail::cmdCopyToClipBoard_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdCopyToClipBoard_Click", [&] {
        if (lstEmails.ListIndex < 0 || Trim(txtPreview.Text.get()).empty()) return;
        const Clipboard clipboard = apartment().machine.clipboard();
        clipboard.Clear();
        clipboard.SetText(txtPreview.Text.get());
        const TemplateIdentity identity = identityOfLine(lstEmails.ListIndex);
        TemplateLogRecord(identity.entryId, identity.storeId);
        cmdClose_Click();
    });
}

void frmEmail::cmdCopyHTMLToClipB_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdCopyHTMLToClipB_Click", [&] {
        if (lstEmails.ListIndex < 0) return;
        const TemplateIdentity identity = identityOfLine(lstEmails.ListIndex);
        const SafeMailItem safe = makeSafeMailItem(apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId));
        std::u16string html = safe.HTMLBody();
        text::CopyHTMLToClipBoard(html, Object());  // without an item the tags stay
        TemplateLogRecord(identity.entryId, identity.storeId);
        cmdClose_Click();
    });
}

void frmEmail::cmdNew_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdNew_Click", [&] {
        SaveLastUsedFolder();
        const MailItem mail = apartment().gOutlook.CreateItem(olMailItem);
        unload();
        mail.Display();
    });
}

bool frmEmail::isOpenInInspector(std::u16string_view entryId) const {
    const Inspector active = apartment().gOutlook.ActiveInspector();
    return active && active.CurrentItem().EntryID() == entryId;
}

void frmEmail::cmdEdit_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdEdit_Click", [&] {
        SaveLastUsedFolder();
        if (lstEmails.ListCount() == 0) {
            MsgBox(createFirst(u"edit"), msgbox::Information);
            return;
        }
        if (lstEmails.ListIndex < 0) {
            MsgBox(u"Please select an item from the list first.", msgbox::Information);
            return;
        }
        const TemplateIdentity identity = identityOfLine(lstEmails.ListIndex);
        if (isOpenInInspector(identity.entryId)) {
            MsgBox(
                u"This item is already open or it is selected in Outlook.\r\n\r\nIf you want to edit it close the Lorvane "
                u" screen or else choose another template to edit.",
                msgbox::Information);
            return;
        }
        const MailItem item = apartment().gOutlook.GetNamespace(u"MAPI").GetItemFromID(identity.entryId, identity.storeId);
        unload();
        item.Display();
    });
}

void frmEmail::cmdDelete_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdDelete_Click", [&] {
        SaveLastUsedFolder();
        if (lstEmails.ListCount() == 0) {
            MsgBox(createFirst(u"delete"), msgbox::Information);
            return;
        }
        if (lstEmails.ListIndex < 0) {
            MsgBox(u"Please select the item that you want to delete from the list.", msgbox::Information, apartment().title);
            return;
        }
        deleteChosenTemplate();
    });
}

void frmEmail::deleteChosenTemplate() {
    const Apartment& here = apartment();
    const TemplateIdentity identity = identityOfLine(lstEmails.ListIndex);
    const MailItem item = here.gNameSpace.GetItemFromID(identity.entryId, identity.storeId);
    const SafeMailItem safe(here.machine.CreateObject(u"qz7mredemption.qz7msafemailitem"));
    safe.Item(item);
    if (isOpenInInspector(identity.entryId)) {
        MsgBox(u"You can not delete this Lorvane Template while it is open.", msgbox::Information, u"Item Open - " + here.title);
        return;
    }
    const std::u16string question = u"Are you sure that you want to delete the selected template: " + safe.Subject() + u"?";
    if (MsgBox(question, msgbox::Question, u"Confirm Delete - " + here.title) != msgbox::Yes) return;

    txtPreview.Text = u"";
    txtSubject.Text = std::u16string(chooseFromList);
    item.Delete();
    lstEmails.Clear();
    LoadTemplateList(privateFolder_, sharedFolder_, &lstEmails, false);
    showListOrEmpty(UpdateEmailList(), lblNoEmails.Caption.get());
}

void frmEmail::lblChangeFolder_Click() {
    picTemplatesFldr.Visible = !picTemplatesFldr.Visible;
    lblChangeFolder.Caption = picTemplatesFldr.Visible ? u"Hide Select Template Folder Buttons" : u"Select Templates Folder";
    Refresh();
}

void frmEmail::lblShowTips_Click() {
    withErrorBox(u"frmEmail.lblShowTips_Click", [&] { ShowSearchTip(txtSearch); });
}

void frmEmail::cmdHelp_Click() {
    withErrorBox(u"frmEmail.cmdHelp_Click", [] { OpenManual(manualTopic); });
}

void frmEmail::FldrMaintBtnsClick() {
    withErrorBox(u"frmEmail.FldrMaintBtnsClick", [&] {
        const bool shown = setting(u"ShowFldrMainBtns") != u"True";
        showMaintenanceButtons(shown);
        saveSetting(u"ShowFldrMainBtns", shown ? u"True" : u"False");
    });
}

void frmEmail::ShowTips() {
    saveSetting(u"ShowTips", u"True");
    picLorvane.Height = tipsHeight;
    lblShowTips.Visible = false;
}

void frmEmail::HideTips() {
    saveSetting(u"ShowTips", u"False");
    picLorvane.Height = noTipsHeight;
    lblShowTips.Visible = true;
}

}  // namespace lorvane::respond
