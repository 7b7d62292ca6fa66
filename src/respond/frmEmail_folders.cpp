#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "respond/ChooserTexts.h"
#include "respond/FurtherWindows.h"
#include "respond/frmEmail.h"
#include "store/Categories.h"
#include "store/CategoryFiles.h"
#include "store/TemplateFolders.h"

/// What fills the chooser anew from the folders: another private folder, and other categories of a template.
namespace lorvane::respond {

using namespace host;
using namespace store;

namespace {

void showNoPermission(const HostError& error) {
    const std::u16string text =
        u"You do not have permission to access this folder. Please select another folder.\r\nDescription: (" + error.description() + u")";
    MsgBox(text, msgbox::Critical, u"No Permission - " + apartment().title);
}

/// The folder that the user picks, Nothing where none was. One that cannot be read is told, and the picker comes again.
MAPIFolder pickReadableFolder() {
    ensureNameSpace();
    for (;;) {
        const std::u16string entryId = PickFolder();
        if (entryId.empty()) return {};
        MAPIFolder folder = apartment().gNameSpace.GetFolderFromID(entryId);
        try {
            folder.Items().Count();
            return folder;
        } catch (const HostError& error) {
            showNoPermission(error);
        }
    }
}

std::u16string sharedFolderNotFound() {
    std::u16string text = u"The shared templates folder could not be found.\r\n\r\n";
    text += u"The most likely reason for this are:\r\n";
    text += u"1. You are currently not connected to your network or\r\n";
    text += u"2. The shared templates folder has been deleted or moved\r\n\r\n";
    return text + u"Go to Inbox - Tolvenar menu > " + apartment().title + u" > Settings to select a shared templates folder.";
}

/// A table of the file's names; without rows where the file cannot be used.
Recordset categoriesFrom(std::u16string_view path) {
    Recordset table = makeRecordset();
    return LoadRSFromFile(table, path) ? table : newCategoryTable();
}

}  // namespace

void frmEmail::cmdPickfolder_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdPickfolder_Click", [&] {
        const MAPIFolder folder = pickReadableFolder();
        if (!folder) return;
        if (!HoldsMailItems(folder)) {
            MsgBox(u"This folder does not contain mail items", msgbox::Information);
            return;
        }
        useFolder(folder);
    });
}

/// The folder is the private one from now on; the settings learn of it when something is done with a template of it.
void frmEmail::useFolder(const MAPIFolder& folder) {
    txtFolder.Text = folder.Name();
    privateFolder_ = folder;
    ShowBlankState(false, true);
    LoadTemplateList(privateFolder_, sharedFolder_, &lstEmails, false);
    const ListResult result = UpdateEmailList();
    showListOrEmpty(result, emptyTextOfSearch());
}

void frmEmail::cmdCategorize_Click() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmdCategorize_Click", [&] {
        const std::int32_t chosen = lstEmails.ListIndex;
        if (!CategorizeTemplate(chosen >= 0 ? itemOfLine(chosen) : MailItem())) return;

        reloadCategories();
        const TemplateTables& tables = templateTables();
        LoadCategories(cmbCategories, tables.rsPrivateCategories, tables.rsSharedCategories, scope_);
        lstEmails.Clear();
        LoadTemplateList(privateFolder_, sharedFolder_, &lstEmails, false);
        ToggleControls(false);
        const ListResult result = UpdateEmailList();
        if (!isLoaded()) return;
        showListOrEmpty(result, sharedFolder_ ? std::u16string(noneInFolder) : sharedFolderNotFound());
        ToggleControls(true);
        // The template may have left the folder, and its line the list.
        if (result != ListResult::Superseded && chosen < lstEmails.ListCount()) lstEmails.ListIndex = chosen;
    });
}

/// The save window has written the file of its folder; the list of names comes from there before the walk gathers them anew.
void frmEmail::reloadCategories() {
    TemplateTables& tables = templateTables();
    if (scope_ != Scope::Shared) tables.rsPrivateCategories = categoriesFrom(privateCategoriesPath());
    if (scope_ != Scope::Private) tables.rsSharedCategories = categoriesFrom(sharedCategoriesPath());
}

}  // namespace lorvane::respond
