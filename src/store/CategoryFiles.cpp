#include "store/CategoryFiles.h"

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "store/TemplateFolders.h"
#include "store/frmProgress.h"

namespace lorvane::store {

using namespace host;

namespace {

constexpr std::int32_t applicationData = 26;

std::u16string outerFolder() {
    return apartment().machine.files().GetFolderPath(applicationData) + u"\\Tolvenar";
}

std::u16string innerFolder() {
    return outerFolder() + u"\\Lorvane";
}

}  // namespace

std::u16string privateCategoriesPath() {
    return innerFolder() + u"\\Private.xml";
}

std::u16string sharedCategoriesPath() {
    return innerFolder() + u"\\Shared.xml";
}

bool StorageFoldersExist() {
    const Files files = apartment().machine.files();
    return files.FolderExists(outerFolder()) && files.FolderExists(innerFolder());
}

bool qz7mCreateStorageFolders() {
    const Files files = apartment().machine.files();
    for (const std::u16string& folder : {outerFolder(), innerFolder()}) {
        ignoringErrors([&] {
            if (!files.FolderExists(folder)) files.CreateFolder(folder);
        });
    }
    return holdsIgnoringErrors([] { return StorageFoldersExist(); });
}

void SaveRSToFile(const Recordset& table, std::u16string_view path) {
    withErrorBox(u"basGlobals.SaveRSToFile", [&] {
        const Stream stream = makeStream();
        table.Save(stream, adPersistXML);
        stream.Position(0);
        apartment().machine.files().WriteText(path, stream.ReadText().append(CrLf));
    });
}

bool LoadRSFromFile(const Recordset& table, std::u16string_view path) {
    std::u16string text;
    ignoringErrors([&] { text = ReadFile(path); });
    if (text.empty()) return false;
    const Stream stream = makeStream();
    stream.Open();
    stream.WriteText(text);
    stream.Position(0);
    return ignoringErrors([&] {
        table.Open(stream);
        table.RecordCount();
    });
}

std::u16string ReadFile(std::u16string_view path) {
    const Files files = apartment().machine.files();
    return files.FileExists(path) ? files.ReadText(path) : std::u16string();
}

void writeCategoryFiles() {
    if (!StorageFoldersExist()) qz7mCreateStorageFolders();
    const TemplateTables& tables = templateTables();
    if (tables.rsPrivateCategories) SaveRSToFile(tables.rsPrivateCategories, privateCategoriesPath());
    if (SharingEnabled() && tables.rsSharedCategories) SaveRSToFile(tables.rsSharedCategories, sharedCategoriesPath());
}

void RebuildCategoryFiles(Scope scope, MAPIFolder& privateFolder, MAPIFolder& sharedFolder) {
    templateTables().rsPrivateTemplates = {};
    templateTables().rsSharedTemplates = {};
    ensureNameSpace();
    Apartment& here = apartment();
    privateFolder = here.gNameSpace.GetFolderFromID(setting(u"LastFolderEntryid"), setting(u"LastFolderStoreid"));
    sharedFolder = {};
    const std::u16string sharedEntryId = setting(u"SharedFolderEntryid");
    const std::u16string sharedStoreId = setting(u"SharedFolderStoreid");
    if (SharingEnabled() && !sharedEntryId.empty() && !sharedStoreId.empty())
        ignoringErrors([&] { sharedFolder = here.gNameSpace.GetFolderFromID(sharedEntryId, sharedStoreId); });
    if (!VerifyFolders(privateFolder, sharedFolder)) return;

    here.TemplatesFolder = privateFolder;
    auto& progress = here.forms.use<frmProgress>();
    if (scope != Scope::Shared) progress.PrivateFolder = privateFolder;
    if (scope != Scope::Private) progress.SharedFolder = sharedFolder;
    progress.Show(true);
    writeCategoryFiles();
}

}  // namespace lorvane::store
