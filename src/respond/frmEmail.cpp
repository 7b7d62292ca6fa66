#include "respond/frmEmail.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "respond/ChooserTexts.h"
#include "respond/FurtherWindows.h"
#include "store/Categories.h"
#include "store/CategoryFiles.h"
#include "store/TemplateFolders.h"
#include "store/frmProgress.h"

namespace lorvane::respond {

using namespace host;
using namespace store;

namespace {

/// A hidden control is disabled as well.
void setShown(std::initializer_list<Control*> controls, bool shown) {
    for (Control* control : controls) {
        control->Visible = shown;
        control->Enabled = shown;
    }
}

}  // namespace

frmEmail::frmEmail()
    : Form(formName, apartment().title),
      DisableInsert(*this, u"DisableInsert"),
      NewMailUsingTempl(*this, u"NewMailUsingTempl"),
      ReplyUsingTempl(*this, u"ReplyUsingTempl"),
      ReplyKind(*this, u"ReplyKind"),
      FromInspector(*this, u"FromInspector"),
      AnsweredMail(*this, u"AnsweredMail"),
      picLorvane(*this, u"picLorvane"),
      lblShowTips(*this, u"lblShowTips", u"Show quick start tips"),
      lblChangeFolder(*this, u"lblChangeFolder", u"Select Templates Folder"),
      picTemplatesFldr(*this, u"picTemplatesFldr"),
      txtFolder(*this, u"txtFolder", u"", &picTemplatesFldr),
      cmdPickfolder(*this, u"cmdPickfolder", u"&Folder...", &picTemplatesFldr),
      cmbSubFolder(*this, u"cmbSubFolder", u"", &picTemplatesFldr),
      lblSubFolder(*this, u"lblSubFolder", u"Sub Folder:", &picTemplatesFldr),
      Label2(*this, u"Label2", u"Templates Folder Settings", &picTemplatesFldr),
      txtSearch(*this, u"txtSearch"),
      cmdClear(*this, u"cmdClear", u"&Clear"),
      fraShow(*this, u"fraShow", u"Show:"),
      optAll(*this, u"optAll", u"All templates", &fraShow),
      optPrivate(*this, u"optPrivate", u"Private only", &fraShow),
      optShared(*this, u"optShared", u"Shared only", &fraShow),
      cmbCategories(*this, u"cmbCategories", u"Category:"),
      lstEmails(*this, u"lstEmails", u"Template List:"),
      picBlankBkGrnd(*this, u"picBlankBkGrnd"),
      lblNoEmails(*this, u"lblNoEmails", noneMatching, &picBlankBkGrnd),
      lblSearching(*this, u"lblSearching", u"Searching ...", &picBlankBkGrnd),
      lblLoadingEmails(*this, u"lblLoadingEmails", u"Loading E-mails ...", &picBlankBkGrnd),
      picPreviewPane(*this, u"picPreviewPane"),
      fraPreviewPane(*this, u"fraPreviewPane", u"", &picPreviewPane),
      txtSubject(*this, u"txtSubject", chooseFromList, &fraPreviewPane),
      txtPreview(*this, u"txtPreview", u"", &fraPreviewPane),
      Label6(*this, u"Label6", u"Formatting has been removed from preview", &picPreviewPane),
      cmdNew(*this, u"cmdNew", u"&New"),
      cmdEdit(*this, u"cmdEdit", u"&Edit"),
      cmdDelete(*this, u"cmdDelete", u"&Delete"),
      lblFldrMainBtns(*this, u"lblFldrMainBtns", u"Show Template Maintenance Buttons"),
      lblHide(*this, u"lblHide", u"<<< Hide Buttons"),
      lblRightClick(*this, u"lblRightClick", u"or Right-Click on list for options"),
      cmdInsert(*this, u"cmdInsert", u"Insert (text only)"),
      cmdInsertWithFormat(*this, u"cmdInsertWithFormat", u"Insert (with format)"),
      cmdCopyToClipBoard(*this, u"cmdCopyToClipBoard", u"&Copy (text only)"),
      cmdCopyHTMLToClipB(*this, u"cmdCopyHTMLToClipB", u"Copy (with format)"),
      cmdClose(*this, u"cmdClose", u"&Close"),
      cmdHelp(*this, u"cmdHelp", u"&Help"),
      tmrCompleteType(*this, u"tmrCompleteType"),
      mnuTemplateMaint(*this, u"mnuTemplateMaint", u"Template Maintenance"),
      mcmdInsert(*this, u"mcmdInsert", u"&Insert (text only)", &mnuTemplateMaint),
      mcmdInsertWithFormat(*this, u"mcmdInsertWithFormat", u"Insert (with &format)", &mnuTemplateMaint),
      mnuSeparator1(*this, u"mnuSeparator1", u"-", &mnuTemplateMaint),
      mcmdEdit(*this, u"mcmdEdit", u"&Edit", &mnuTemplateMaint),
      cmdCategorize(*this, u"cmdCategorize", u"&Categorize", &mnuTemplateMaint),
      mcmdDelete(*this, u"mcmdDelete", u"&Delete", &mnuTemplateMaint),
      mnuSeparator(*this, u"mnuSeparator", u"-", &mnuTemplateMaint),
      cmdCopyCBWithFormatting(*this, u"cmdCopyCBWithFormatting", u"&Copy (with format)", &mnuTemplateMaint),
      cmdCopyToCB(*this, u"cmdCopyToCB", u"Copy (text &only)", &mnuTemplateMaint) {
    txtSearch.Caption = u"Search for:";
    cmdPickfolder.ToolTipText = u"Choose folder for Lorvane templates.";
    cmbSubFolder.ToolTipText = u"Choose Sub folder for Lorvane templates.";
    cmdNew.ToolTipText = u"Create New Template";
    cmdEdit.ToolTipText = u"Edit Chosen Template";
    cmdDelete.ToolTipText = u"Delete Chosen Template";
    cmdInsert.ToolTipText = u"Insert text in e-mail";
    cmdCopyToClipBoard.ToolTipText = u"Copy template text to Clipboard";
    cmdCopyHTMLToClipB.ToolTipText = u"Copy template with formatting to Clipboard";
    picTemplatesFldr.Visible = false;

    cmbCategories.Click = [this] { cmbCategories_Click(); };
    optAll.Click = [this] { optAll_Click(); };
    optPrivate.Click = [this] { optPrivate_Click(); };
    optShared.Click = [this] { optShared_Click(); };
    txtSearch.Change = [this] { txtSearch_Change(); };
    txtSearch.KeyDown = [this](std::int32_t&, std::int32_t) { txtSearch_KeyDown(); };
    tmrCompleteType.Tick = [this] { tmrCompleteType_Timer(); };
    lstEmails.Click = [this] { lstEmails_Click(); };
    cmdClear.Click = [this] { cmdClear_Click(); };
    cmdClose.Click = [this] { cmdClose_Click(); };
    cmdInsert.Click = [this] { cmdInsert_Click(); };
    cmdInsertWithFormat.Click = [this] { cmdInsertWithFormat_Click(); };
    mcmdInsert.Click = [this] { cmdInsert_Click(); };
    mcmdInsertWithFormat.Click = [this] { cmdInsertWithFormat_Click(); };
    wireMaintenance();
    wireLinks();
    publishOperations();
}

/// Runs one step of the loading. A failing one ends the loading with its message, but for a host failure while no templates folder is set: then the next step
/// runs, and the user comes to a window with an empty private list.
bool frmEmail::loadingStep(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const HostError& error) {
        if (error.number() >= 0) {
            MsgBox(decimal(error.number()) + u" " + error.description(), msgbox::Information);
            return false;
        }
        if (!apartment().TemplatesFolder) return true;
        MsgBox(u"Program has encountered an unknown error.", msgbox::Information);
        return false;
    }
}

void frmEmail::Form_Load() {
    FolderKeys keys;
    const TemplateTables& tables = templateTables();
    const std::initializer_list<std::function<void()>> steps = {
        [&] { takeNameSpace(); },
        [&] { keys = readFolderKeys(); },
        [&] { privateFolder_ = apartment().gNameSpace.GetFolderFromID(keys.privateEntryId, keys.privateStoreId); },
        [&] { openSharedFolder(keys); },
        [&] { scope_ = scopeAtOpening(); },
        [&] { VerifyFolders(privateFolder_, sharedFolder_); },
        [&] { loadTables(scope_, false); },
        [&] { writeCategoryFiles(); },
        [&] { optionOf(scope_).Value = true; },
        [&] { disableScopesWithoutSharing(); },
        [&] { LoadCategories(cmbCategories, tables.rsPrivateCategories, tables.rsSharedCategories, scope_); },
        [&] { showListOrEmpty(UpdateEmailList(), noneInFolder); },
        [&] { DispFldrMaintBtns(); },
    };
    templateTables().rsPrivateTemplates = {};
    templateTables().rsSharedTemplates = {};
    for (const auto& step : steps)
        if (!loadingStep(step)) return;
}

void frmEmail::takeNameSpace() {
    ensureOutlook();
    apartment().gNameSpace = apartment().gOutlook.GetNamespace(u"MAPI");
}

frmEmail::FolderKeys frmEmail::readFolderKeys() const {
    FolderKeys keys;
    keys.privateStoreId = setting(u"LastFolderStoreid");
    keys.privateEntryId = setting(u"LastFolderEntryid");
    keys.sharedEntryId = setting(u"SharedFolderEntryid");
    keys.sharedStoreId = setting(u"SharedFolderStoreid");
    return keys;
}

/// The shared folder, where sharing is on and names one that can be reached.
void frmEmail::openSharedFolder(const FolderKeys& keys) {
    sharedFolder_ = {};
    if (!SharingEnabled() || keys.sharedEntryId.empty() || keys.sharedStoreId.empty()) return;
    ignoringErrors([&] { sharedFolder_ = apartment().gNameSpace.GetFolderFromID(keys.sharedEntryId, keys.sharedStoreId); });
}

/// A setting that was never written counts as 0, all; one that is no number is error 13.
Scope frmEmail::scopeAtOpening() const {
    if (!SharingEnabled()) return Scope::Private;
    const std::u16string text = setting(u"LoadTemplateDefault");
    const std::int32_t number = text.empty() ? 0 : Variant(text).toInt32();
    return number == 1 ? Scope::Private : number == 2 ? Scope::Shared : Scope::All;
}

OptionButton& frmEmail::optionOf(Scope scope) {
    return scope == Scope::All ? optAll : scope == Scope::Shared ? optShared : optPrivate;
}

void frmEmail::disableScopesWithoutSharing() {
    if (SharingEnabled()) return;
    optPrivate.Value = true;
    enableScopes(false);
}

void frmEmail::enableScopes(bool on) {
    for (OptionButton* option : {&optAll, &optPrivate, &optShared}) option->Enabled = on;
}

/// Loads the tables of a scope through the progress window; with `missingOnly` only those that are not there yet.
void frmEmail::loadTables(Scope scope, bool missingOnly) {
    const TemplateTables& tables = templateTables();
    const bool loadPrivate = scope != Scope::Shared && !(missingOnly && tables.rsPrivateTemplates);
    const bool loadShared = scope != Scope::Private && !(missingOnly && tables.rsSharedTemplates);
    const MAPIFolder privateFolder = loadPrivate ? privateFolder_ : MAPIFolder();
    const MAPIFolder sharedFolder = loadShared ? sharedFolder_ : MAPIFolder();
    if (!privateFolder && !sharedFolder) return;
    auto& progress = apartment().forms.use<frmProgress>();
    progress.PrivateFolder = privateFolder;
    progress.SharedFolder = sharedFolder;
    progress.Show(true);
}

void frmEmail::Form_Activate() {
    ignoringErrors([&] {
        if (lstEmails.ListCount() > 0) lstEmails.ListIndex = 0;
    });
    ignoringErrors([&] { txtSearch.SetFocus(); });
    applyModes();
    ignoringErrors([&] { showTipAtOpening(); });  // a hint that cannot be shown is none
    opening_ = false;
}

void frmEmail::showTipAtOpening() {
    if (setting(u"ShowTips") != u"False") ShowSearchTip(txtSearch);
}

void frmEmail::applyModes() {
    if (DisableInsert) applyCopyMode();
    if (NewMailUsingTempl) {
        Caption = u"New Email Using Template";
        setShown({&cmdNew, &cmdEdit, &cmdDelete, &lblFldrMainBtns, &lblHide, &lblRightClick, &mcmdDelete, &cmdCopyToClipBoard, &cmdCopyHTMLToClipB,
                  &cmdCopyToCB, &cmdCopyCBWithFormatting, &mnuSeparator},
                 false);
        setShown({&mcmdInsert, &mcmdInsertWithFormat, &cmdInsert, &cmdInsertWithFormat}, true);
    }
    if (ReplyUsingTempl) {
        Caption = ReplyKind == 3 ? u"Forward Using Template" : ReplyKind == 2 ? u"Reply To All Using Template" : u"Reply Using Template";
        setShown(
            {&cmdNew, &cmdEdit, &cmdDelete, &lblFldrMainBtns, &lblHide, &lblRightClick, &mcmdDelete, &cmdCopyCBWithFormatting, &cmdCopyToCB, &mnuSeparator},
            false);
    }
}

void frmEmail::applyCopyMode() {
    Caption = u"Templates";
    setShown({&mcmdInsert, &mcmdInsertWithFormat, &cmdInsert, &cmdInsertWithFormat, &mnuSeparator1}, false);
    setShown({&cmdCopyToClipBoard}, true);
}

void frmEmail::Form_Unload() {
    ++listRun_;
    templateTables().rsPrivateTemplates = {};
    rsCurrentList_ = {};
    privateFolder_ = {};
    sharedFolder_ = {};
    DisableInsert = false;
    NewMailUsingTempl = false;
    ReplyUsingTempl = false;
    ReplyKind = 0;
    withFormat_ = false;
    AnsweredMail = {};
    opening_ = true;
    CloseSearchTip();
}

void frmEmail::SaveLastUsedFolder() {
    if (privateFolder_) {
        saveSetting(u"LastFolderStoreid", privateFolder_.StoreID());
        saveSetting(u"LastFolderEntryid", privateFolder_.EntryID());
        saveSetting(u"LastFolderName", GetFolderPath(privateFolder_));
    }
    saveSetting(u"LastSubFolderName", Trim(cmbSubFolder.Text.get()));
    apartment().TemplatesFolder = privateFolder_;
}

void frmEmail::DispFldrMaintBtns() {
    const std::u16string value = setting(u"ShowFldrMainBtns");
    showMaintenanceButtons(value == u"True" || value.empty());
}

void frmEmail::showMaintenanceButtons(bool shown) {
    for (Control* control : std::initializer_list<Control*>{&cmdNew, &cmdEdit, &cmdDelete, &lblHide}) control->Visible = shown;
    for (Control* control : std::initializer_list<Control*>{&lblRightClick, &lblFldrMainBtns}) control->Visible = !shown;
}

void frmEmail::ToggleControls(bool on) {
    for (Control* control : std::initializer_list<Control*>{&cmdClear, &cmdClose, &cmdCopyHTMLToClipB, &cmdCopyToClipBoard, &cmdDelete, &cmdEdit, &cmdHelp,
                                                            &cmdInsert, &cmdNew, &cmbCategories, &txtSearch})
        control->Enabled = on;
}

void frmEmail::EnableButtons() {
    for (Control* control : std::initializer_list<Control*>{&cmdClear, &cmdClose, &cmdDelete, &cmdNew, &cmdHelp, &cmdInsert, &cmdEdit}) control->Enabled = true;
    if (DisableInsert) applyCopyMode();
}

void frmEmail::DisableButtons() {
    for (Control* control : std::initializer_list<Control*>{&cmdClear, &cmdClose, &cmdDelete, &cmdNew, &cmdHelp, &cmdInsert, &cmdEdit})
        control->Enabled = false;
}

void frmEmail::showList() {
    picBlankBkGrnd.Visible = false;
    lblNoEmails.Visible = false;
    lstEmails.Visible = true;
}

void frmEmail::ShowBlankState(bool loading, bool searching) {
    lstEmails.Visible = false;
    picBlankBkGrnd.Visible = true;
    if (loading) {
        lblLoadingEmails.Visible = true;
        lblSearching.Visible = false;
        lblNoEmails.Visible = false;
    } else if (searching) {
        lblSearching.Visible = true;
        lblNoEmails.Visible = false;
    } else {
        lblNoEmails.Visible = true;
        lblSearching.Visible = false;
        lblLoadingEmails.Visible = false;
        txtPreview.Text = u"";
        txtSubject.Text = std::u16string(chooseFromList);
    }
}

void frmEmail::cmdClose_Click() {
    unload();
}

}  // namespace lorvane::respond
