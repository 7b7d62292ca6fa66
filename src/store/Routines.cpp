#include "store/Routines.h"

#include "host/RoutineBinding.h"
#include "store/Categories.h"
#include "store/CategoryFiles.h"
#include "store/TemplateFolders.h"
#include "store/TemplateList.h"
#include "store/basSearch.h"

namespace lorvane::store {

namespace {

using host::routine;

constexpr host::Routine rows[] = {
    routine<&SharingEnabled>(u"basGlobals", u"SharingEnabled", u""),
    routine<&GetFolderPath>(u"basGlobals", u"GetFolderPath", u"folder"),
    routine<&HoldsMailItems>(u"basGlobals", u"HoldsMailItems", u"folder"),
    routine<&CreateLorvaneFolder>(u"basGlobals", u"CreateLorvaneFolder", u""),
    routine<&CheckTemplateFolder>(u"basGlobals", u"CheckTemplateFolder", u""),
    routine<&CreateMapiFolder>(u"basGlobals", u"CreateMapiFolder", u""),
    routine<&ExampleTemplatesCreate>(u"basGlobals", u"ExampleTemplatesCreate", u"folder"),
    routine<&TemplateExample>(u"basGlobals", u"TemplateExample", u"subject, body, folder"),
    routine<&ResolveTemplateFolder>(u"basGlobals", u"ResolveTemplateFolder", u"entryId, storeId, expectedPath"),
    routine<&VerifyFolders>(u"basGlobals", u"VerifyFolders", u"privateFolder, sharedFolder"),
    routine<&SetPrivateSharedOptions>(u"basGlobals", u"SetPrivateSharedOptions", u"optPrivate, optShared, item"),
    routine<&LoadSubFolders>(u"basGlobals", u"LoadSubFolders", u"folder, combo"),
    routine<&MakeSubFolderEntry>(u"basGlobals", u"MakeSubFolderEntry", u"folder"),
    routine<&GetSubFolderEntryId>(u"basGlobals", u"GetSubFolderEntryId", u"line"),
    routine<&newTemplateTable>(u"basGlobals", u"newTemplateTable", u""),
    routine<&newCategoryTable>(u"basGlobals", u"newCategoryTable", u""),
    routine<&LoadTemplateList>(u"basGlobals", u"LoadTemplateList", u"privateFolder, sharedFolder, [list], [showProgress]"),
    routine<&IsEncryptedEmail>(u"basGlobals", u"IsEncryptedEmail", u"item"),
    routine<&CopyTemplateRecords>(u"basGlobals", u"CopyTemplateRecords", u"source, target, [addSuffix]"),
    routine<&MakeListEntry>(u"basGlobals", u"MakeListEntry", u"subject, position"),
    routine<&GetListId>(u"basGlobals", u"GetListId", u"line"),
    routine<&AddCategoriesToList>(u"basGlobals", u"AddCategoriesToList", u"text, table"),
    routine<&CategoryInList>(u"basGlobals", u"CategoryInList", u"table, field, value"),
    routine<&LoadCategories>(u"basGlobals", u"LoadCategories", u"combo, privateTable, sharedTable, scope"),
    routine<&privateCategoriesPath>(u"basGlobals", u"privateCategoriesPath", u""),
    routine<&sharedCategoriesPath>(u"basGlobals", u"sharedCategoriesPath", u""),
    routine<&StorageFoldersExist>(u"basGlobals", u"StorageFoldersExist", u""),
    routine<&qz7mCreateStorageFolders>(u"basGlobals", u"qz7mCreateStorageFolders", u""),
    routine<&SaveRSToFile>(u"basGlobals", u"SaveRSToFile", u"table, path"),
    routine<&LoadRSFromFile>(u"basGlobals", u"LoadRSFromFile", u"table, path"),
    routine<&ReadFile>(u"basGlobals", u"ReadFile", u"path"),
    routine<&writeCategoryFiles>(u"basGlobals", u"writeCategoryFiles", u""),
    routine<&RebuildCategoryFiles>(u"basGlobals", u"RebuildCategoryFiles", u"scope, privateFolder, sharedFolder"),
    routine<&FilterEmailSubject>(u"basSearch", u"FilterEmailSubject", u"table, field, text"),
    routine<&FilterEmailSubjectAndCategory>(u"basSearch", u"FilterEmailSubjectAndCategory", u"table, text, category"),
    routine<&CategoryInTemplateCategories>(u"basSearch", u"CategoryInTemplateCategories", u"category, list"),
};

template <auto Table>
constexpr host::GlobalValue table(std::u16string_view name) {
    return {name, [] { return host::Variant(host::Object(templateTables().*Table)); },
            [](const host::Variant& value) { templateTables().*Table = host::Recordset(value.toObject()); }};
}

constexpr host::GlobalValue values[] = {
    table<&TemplateTables::rsPrivateTemplates>(u"rsPrivateTemplates"),
    table<&TemplateTables::rsSharedTemplates>(u"rsSharedTemplates"),
    table<&TemplateTables::rsPrivateCategories>(u"rsPrivateCategories"),
    table<&TemplateTables::rsSharedCategories>(u"rsSharedCategories"),
};

}  // namespace

host::RoutineTable routines() {
    return rows;
}

host::GlobalTable globalValues() {
    return values;
}

}  // namespace lorvane::store
