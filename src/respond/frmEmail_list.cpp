#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "respond/ChooserTexts.h"
#include "respond/frmEmail.h"
#include "store/Categories.h"
#include "store/TemplateFolders.h"
#include "store/basSearch.h"

/// What the chooser lists: scope, category, search, and the preview of the chosen line.
namespace lorvane::respond {

using namespace host;
using namespace store;

namespace {

constexpr std::int32_t arrow = 0;
constexpr std::int32_t hourglass = 11;
constexpr std::int32_t searchDelay = 1000;  // milliseconds from the last change to the search
constexpr double subjectMargin = 10;

}  // namespace

ListResult frmEmail::UpdateEmailList() {
    const Object keepAlive(this);
    const std::uint32_t run = ++listRun_;
    stop_ = false;
    ListResult result = ListResult::Failed;
    withErrorBox(u"frmEmail.UpdateEmailList", [&] { result = fillList(run); });
    if (run == listRun_) lastListResult_ = result;
    return run == listRun_ ? result : ListResult::Superseded;
}

/// The rows of the scope; false where the private ones were never loaded. The shared ones are looked for by their categories, which is the settled behaviour.
bool frmEmail::copyScopeInto(const Recordset& list) const {
    const TemplateTables& tables = templateTables();
    if (scope_ == Scope::Private) {
        if (!tables.rsPrivateTemplates) return false;
        CopyTemplateRecords(tables.rsPrivateTemplates, list, false);
    } else if (scope_ == Scope::Shared) {
        if (tables.rsSharedCategories) CopyTemplateRecords(tables.rsSharedTemplates, list, false);
    } else {
        if (tables.rsPrivateTemplates) CopyTemplateRecords(tables.rsPrivateTemplates, list, false);
        if (tables.rsSharedCategories) CopyTemplateRecords(tables.rsSharedTemplates, list, true);
    }
    return true;
}

ListResult frmEmail::fillList(std::uint32_t run) {
    double widest = 0;
    const auto finish = [&](ListResult result) {
        if (result == ListResult::Superseded) return result;
        lstEmails.HorizontalExtent = static_cast<std::int32_t>(widest);
        MousePointer = arrow;
        return result;
    };

    rsCurrentList_ = newTemplateTable();
    if (!copyScopeInto(rsCurrentList_)) return finish(ListResult::Empty);

    const std::u16string category(Trim(cmbCategories.Text.get()));
    const std::u16string search(Trim(txtSearch.Text.get()));
    MousePointer = hourglass;
    lstEmails.Clear();
    if (search.empty()) {
        if (!category.empty()) rsCurrentList_ = FilterEmailSubjectAndCategory(rsCurrentList_, u"", category);
        ShowBlankState(true, false);
    } else {
        ShowBlankState(false, true);
        rsCurrentList_ =
            category.empty() ? FilterEmailSubject(rsCurrentList_, u"strSubject", search) : FilterEmailSubjectAndCategory(rsCurrentList_, search, category);
    }
    if (rsCurrentList_.RecordCount() == 0) return finish(ListResult::Empty);
    return finish(listRows(rsCurrentList_, run, widest));
}

/// Every row's item is opened: that is what keeps posts out of the list.
ListResult frmEmail::listRows(const Recordset& rows, std::uint32_t run, double& widest) {
    const Screen screen = apartment().machine.screen();
    const NameSpace nameSpace = apartment().gNameSpace;
    const Field subject = rows.Fields(u"strSubject");
    const Field entryId = rows.Fields(u"strEntryID");
    const Field storeId = rows.Fields(u"strStoreID");
    rows.Sort(u"strSubject");
    for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext()) {
        screen.DoEvents();
        if (run != listRun_) return ListResult::Superseded;
        if (stop_) return ListResult::Stopped;
        const std::int32_t position = rows.AbsolutePosition();
        const std::u16string text = subject.text();
        const std::u16string entry = entryId.text();
        const std::u16string store = storeId.text();
        const MailItem item = nameSpace.GetItemFromID(entry, Trim(store));
        if (item.Class() == item_class::Mail) {
            lstEmails.AddItem(MakeListEntry(text, position));
            widest = std::max(widest, screen.TextWidth(text) + subjectMargin);
        }
    }
    return ListResult::Filled;
}

/// Shows the list, or the empty state with its text; a run that another one or the window's end overtook changes nothing.
void frmEmail::showListOrEmpty(ListResult result, std::u16string_view emptyText) {
    if (result == ListResult::Superseded) return;
    if (result == ListResult::Filled) {
        showList();
        return;
    }
    lblNoEmails.Caption = std::u16string(emptyText);
    ShowBlankState(false, false);
}

/// What the empty state says by whether something was searched for; blanks alone are no search.
std::u16string_view frmEmail::emptyTextOfSearch() const {
    return Trim(txtSearch.Text.get()).empty() ? noneInFolder : noneMatching;
}

std::int32_t frmEmail::InList(const ComboBox& combo, std::u16string_view text) const {
    if (text.empty()) return 0;
    for (std::int32_t line = 1; line < combo.ListCount(); ++line)
        if (combo.List(line) == text) return line;
    return 0;
}

void frmEmail::cmbCategories_Click() {
    if (opening_) return;
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.cmbCategories_Click", [&] {
        ToggleControls(false);
        enableScopes(false);
        const ListResult result = UpdateEmailList();
        if (!isLoaded()) return;
        showListOrEmpty(result, noneInFolder);
        ToggleControls(true);
        enableScopes(true);
        if (result != ListResult::Superseded && lstEmails.ListCount() > 0) lstEmails.ListIndex = 0;
        disableScopesWithoutSharing();
    });
}

void frmEmail::optAll_Click() {
    changeScope(Scope::All);
}
void frmEmail::optPrivate_Click() {
    changeScope(Scope::Private);
}
void frmEmail::optShared_Click() {
    changeScope(Scope::Shared);
}

void frmEmail::changeScope(Scope scope) {
    withErrorBox(scope == Scope::All       ? u"frmEmail.optAll_Click"
                 : scope == Scope::Private ? u"frmEmail.optPrivate_Click"
                                           : u"frmEmail.optShared_Click",
                 [&] {
                     const std::u16string category = cmbCategories.Text;
                     scope_ = scope;
                     loadTables(scope, true);
                     const TemplateTables& tables = templateTables();
                     LoadCategories(cmbCategories, tables.rsPrivateCategories, tables.rsSharedCategories, scope);
                     if (!opening_) cmbCategories.ListIndex = InList(cmbCategories, category);
                 });
}

void frmEmail::txtSearch_Change() {
    withErrorBox(u"frmEmail.txtSearch_Change", [&] { restartSearchTimer(); });
}

void frmEmail::restartSearchTimer() {
    tmrCompleteType.Enabled = false;
    tmrCompleteType.Interval = searchDelay;
    tmrCompleteType.Enabled = true;
}

void frmEmail::txtSearch_KeyDown() {
    stop_ = true;
}

void frmEmail::tmrCompleteType_Timer() {
    const Object keepAlive(this);
    withErrorBox(u"frmEmail.tmrCompleteType_Timer", [&] {
        stop_ = false;
        DisableButtons();
        const ListResult result = UpdateEmailList();
        if (!isLoaded()) return;
        if (result == ListResult::Filled || !stop_) showListOrEmpty(result, emptyTextOfSearch());
        if (stop_) {
            restartSearchTimer();
            stop_ = false;
        } else {
            tmrCompleteType.Enabled = false;
        }
        EnableButtons();
        if (result == ListResult::Superseded) return;
        ignoringErrors([&] {
            if (lstEmails.ListCount() > 0) lstEmails.ListIndex = 0;
        });
    });
}

frmEmail::TemplateIdentity frmEmail::identityOfLine(std::int32_t line) {
    rsCurrentList_.AbsolutePosition(GetListId(lstEmails.List(line)));
    return {rsCurrentList_.Fields(u"strentryid").text(), std::u16string(Trim(rsCurrentList_.Fields(u"strStoreID").text()))};
}

MailItem frmEmail::itemOfLine(std::int32_t line) {
    const TemplateIdentity identity = identityOfLine(line);
    return apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId);
}

void frmEmail::lstEmails_Click() {
    if (lstEmails.ListIndex < 0) return;
    withErrorBox(u"frmEmail.lstEmails_Click", [&] {
        const SafeMailItem safe = makeSafeMailItem(itemOfLine(lstEmails.ListIndex));
        txtSubject.Text = safe.Subject();
        txtPreview.Text = safe.Body();
    });
}

void frmEmail::cmdClear_Click() {
    withErrorBox(u"frmEmail.cmdClear_Click", [&] {
        txtSearch.Text = u"";
        ignoringErrors([&] { txtSearch.SetFocus(); });
    });
}

}  // namespace lorvane::respond
