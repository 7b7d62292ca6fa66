#include "store/TemplateList.h"

#include <limits>

#include "host/Guards.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "store/Categories.h"
#include "store/TemplateFolders.h"
#include "store/TemplateRows.h"
#include "store/frmProgress.h"

namespace lorvane::store {

using namespace host;

namespace {

constexpr std::int32_t tableFieldSize = 1000;
constexpr std::ptrdiff_t listSubjectWidth = 600;

/// How far a walk over both folders has come. The counter counts admitted items and is a 16-bit number: at its limit it stands still, since the error of
/// counting on is ignored.
struct WalkProgress {
    std::int16_t counter = 0;
    std::int32_t total = 0;
    bool show = false;

    void start() {
        if (counter == 0) counter = 1;
    }
    void countOne() {
        if (counter != std::numeric_limits<std::int16_t>::max()) ++counter;
    }
};

void showNoPermission(std::u16string_view sentence, const HostError& error) {
    const std::u16string text = std::u16string(sentence) + u"\r\n\r\nDescription: (" + error.description() + u")";
    MsgBox(text, msgbox::Critical, u"No Permission - " + apartment().title);
}

constexpr std::u16string_view noPrivatePermission = u"You do not have permission to access the private folder. Please select another folder.";
constexpr std::u16string_view noSharedPermission =
    u"You do not have permission to access the shared folder. Please select another folder from the Lorvane Settings screen.";

bool isTemplate(const MailItem& item) {
    const Variant messageClass = asText(item.get(Member::MessageClass));
    return (messageClass.text() == u"IPM.Note" || messageClass.text() == u"IPM.Post") && !IsEncryptedEmail(item);
}

void storeSubject(const RowField& field, const Variant& subject) {
    if (subject.text().empty()) {
        field.Value(u"NO SUBJECT");
        return;
    }
    if (!ignoringErrors([&] { field.Value(subject); })) field.Value(u"[Subject could not be read. It may be corrupted]");
}

void addTemplate(const MailItem& item, const Recordset& templates, const TemplateFields& fields, const Recordset& categories) {
    templates.AddNew();
    try {
        fields.entryId.Value(asText(item.get(Member::EntryID)));
        fields.storeId.Value(item.Parent().StoreID());
        storeSubject(fields.subject, asText(item.get(Member::Subject)));
        fields.categories.Value(asText(item.get(Member::Categories)));
        AddCategoriesToList(asText(fields.categories.Value()).textView(), categories);
        templates.Update();
    } catch (const HostError&) {
        templates.CancelUpdate();  // an item that fails on the way leaves no row
        throw;
    }
}

/// One pass over a folder's items, taken through the shared session.
void walkFolder(const MAPIFolder& folder, const Recordset& templates, const Recordset& categories, WalkProgress& progress) {
    Apartment& here = apartment();
    if (!here.gRdoSession) InitializeRDOSession();
    const std::u16string entryId = folder.EntryID();
    const std::u16string storeId = folder.StoreID();
    const Items items = RDOSession(here.gRdoSession).GetFolderFromID(entryId, storeId).Items();
    const TemplateFields fields(templates);
    const std::int32_t count = items.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        if (progress.show) here.forms.use<frmProgress>().showStep(progress.counter, progress.total);
        ignoringErrors([&] {
            const MailItem item = items.Item(index);
            if (!isTemplate(item)) return;
            addTemplate(item, templates, fields, categories);
            progress.countOne();
        });
    }
}

void loadPrivate(const MAPIFolder& privateFolder, const MAPIFolder& sharedFolder, ListBox* list, WalkProgress& progress) {
    TemplateTables& tables = templateTables();
    try {
        progress.total = privateFolder.Items().Count();
    } catch (const HostError& error) {
        showNoPermission(noPrivatePermission, error);
        return;
    }
    if (progress.total <= 0) {
        progress.total = 0;
        tables.rsPrivateTemplates = newTemplateTable();
        if (list) list->Clear();
        return;
    }
    if (SharingEnabled() && sharedFolder) {
        try {
            progress.total += sharedFolder.Items().Count();
        } catch (const HostError& error) {
            showNoPermission(noSharedPermission, error);
        }
    }
    tables.rsPrivateTemplates = newTemplateTable();
    tables.rsPrivateCategories = newCategoryTable();
    progress.start();
    walkFolder(privateFolder, tables.rsPrivateTemplates, tables.rsPrivateCategories, progress);
}

void loadShared(const MAPIFolder& sharedFolder, WalkProgress& progress) {
    if (!SharingEnabled() || !sharedFolder) return;
    std::int32_t count = 0;
    if (!ignoringErrors([&] { count = sharedFolder.Items().Count(); })) return;
    if (progress.total == 0) progress.total = count;
    TemplateTables& tables = templateTables();
    tables.rsSharedTemplates = newTemplateTable();
    tables.rsSharedCategories = newCategoryTable();
    progress.start();
    walkFolder(sharedFolder, tables.rsSharedTemplates, tables.rsSharedCategories, progress);
}

}  // namespace

TemplateTables& templateTables() {
    return apartment().state<TemplateTables>();
}

Recordset newTemplateTable() {
    const Recordset table = makeRecordset();
    for (const std::u16string_view field : {u"strEntryID", u"strStoreID", u"strSubject", u"strCategories"}) table.appendField(field, adVarChar, tableFieldSize);
    table.Open();
    return table;
}

Recordset newCategoryTable() {
    const Recordset table = makeRecordset();
    table.appendField(u"strCategory", adVarChar, tableFieldSize);
    table.Open();
    return table;
}

void LoadTemplateList(const MAPIFolder& privateFolder, const MAPIFolder& sharedFolder, ListBox* list, bool showProgress) {
    WalkProgress progress;
    progress.show = showProgress;
    withErrorBox(u"basGlobals.LoadTemplateList", [&] {
        if (privateFolder) loadPrivate(privateFolder, sharedFolder, list, progress);
        loadShared(sharedFolder, progress);
    });
    if (!showProgress) return;
    withErrorBox(u"basGlobals.LoadTemplateList", [] {
        if (auto* window = apartment().forms.find<frmProgress>()) window->finish();
    });
}

bool IsEncryptedEmail(const MailItem& item) {
    return !ignoringErrors([&] { asText(item.get(Member::EntryID)); });
}

void CopyTemplateRecords(const Recordset& source, const Recordset& target, bool addSuffix) {
    if (source && source.RecordCount() > 0) {
        const TemplateFields from(source);
        const TemplateFields to(target);
        const TableRows rows(source), added(target);
        for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext()) {
            added.AddNew();
            to.entryId.Value(from.entryId.Value());
            to.storeId.Value(from.storeId.Value());
            const Variant subject = asText(from.subject.Value());
            to.subject.Value(addSuffix ? Variant(subject.text() + u" (Shared)") : subject);
            to.categories.Value(from.categories.Value());
            added.Update();
        }
    }
    if (target.RecordCount() > 0) target.MoveFirst();
}

PaddedText MakeListEntry(std::u16string_view subject, std::int32_t position) {
    const std::ptrdiff_t blanks = listSubjectWidth - static_cast<std::ptrdiff_t>(subject.size());
    if (blanks < 0) throw HostError(runtime_error::InvalidProcedureCall);
    return PaddedText(subject, static_cast<std::size_t>(blanks), decimal(position));
}

std::int32_t GetListId(std::u16string_view line) {
    return Variant(std::u16string(Mid(line, listSubjectWidth + 1))).toInt32();
}

}  // namespace lorvane::store
