#include "store/TemplateFolders.h"

#include <array>
#include <optional>

#include "host/Guards.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"

namespace lorvane::store {

using namespace host;

namespace {

constexpr std::u16string_view outerFolderName = u"Meravix Settings";
constexpr std::u16string_view innerFolderName = u"Lorvane";
constexpr std::ptrdiff_t subFolderNameWidth = 250;

MAPIFolder folderFromIdOrNothing(std::u16string_view entryId, std::u16string_view storeId) {
    MAPIFolder folder;
    ignoringErrors([&] { folder = apartment().gNameSpace.GetFolderFromID(entryId, storeId); });
    return folder;
}

void takeNameSpace() {
    ensureOutlook();
    Apartment& here = apartment();
    here.gNameSpace = here.gOutlook.GetNamespace(u"MAPI");
}

/// The folder of exactly this name among `folders`, else Nothing.
MAPIFolder folderNamed(const Folders& folders, std::u16string_view name) {
    const std::int32_t count = folders.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        MAPIFolder folder = folders.Item(index);
        if (folder.Name() == name) return folder;
    }
    return {};
}

/// None for what is no folder, as the name space above the top folder: it has no name. A folder whose name cannot be read is an error: a path without it would
/// be that of another folder.
std::optional<std::u16string> nameOfFolder(const MAPIFolder& level) {
    try {
        return level.Name();
    } catch (const HostError& error) {
        if (error.number() != runtime_error::NoSuchMember) throw;
        return std::nullopt;
    }
}

std::u16string paragraphs(std::initializer_list<std::u16string_view> texts) {
    std::u16string body;
    for (const std::u16string_view text : texts) {
        if (!body.empty()) body.append(CrLf).append(CrLf);
        body += text;
    }
    return body;
}

void showSharedFolderLost() {
    const std::u16string& title = apartment().title;
    std::u16string text = u"Unable to locate your SHARED templates folder.\r\n\r\n";
    text += u"The most likely reason for this are:\r\n";
    text += u"1. You are currently not connected to your network or\r\n";
    text += u"2. The shared templates folder has been deleted or moved\r\n\r\n";
    text += u"Please go to Inbox > Tolvenar menu > " + title + u" > Settings and select your Shared templates folder.";
    MsgBox(text, msgbox::Exclamation, u"Shared Templates Folder Not Found - " + title);
}

}  // namespace

bool SharingEnabled() {
    return equalsIgnoreCase(setting(u"SharedTemplates"), u"True");
}

std::u16string GetFolderPath(const MAPIFolder& folder) {
    std::u16string path;
    for (MAPIFolder level = folder; level;) {
        const std::optional<std::u16string> name = nameOfFolder(level);
        if (!name) break;
        path.insert(0, u"\\" + *name);
        if (!ignoringErrors([&] { level = MAPIFolder(level.Parent()); })) break;
    }
    return path;
}

void CreateLorvaneFolder() {
    takeNameSpace();
    if (!CheckTemplateFolder()) CreateMapiFolder();
}

bool CheckTemplateFolder() {
    const std::u16string storeId = setting(u"LastFolderStoreid");
    const std::u16string entryId = setting(u"LastFolderEntryid");
    const std::u16string path = setting(u"LastFolderName");
    const MAPIFolder folder = folderFromIdOrNothing(entryId, storeId);
    if (!folder) return false;

    const bool found = GetFolderPath(folder) == path;
    apartment().TemplatesFolder = found ? folder : MAPIFolder();
    return found;
}

void CreateMapiFolder() {
    Apartment& here = apartment();
    const MAPIFolder parent(here.gNameSpace.GetDefaultFolder(default_folder::Inbox).Parent());
    MAPIFolder outer = folderNamed(parent.Folders(), outerFolderName);
    MAPIFolder inner = outer ? folderNamed(outer.Folders(), innerFolderName) : MAPIFolder();
    if (inner) {
        here.TemplatesFolder = inner;
    } else {
        if (!outer) outer = parent.Folders().Add(outerFolderName);
        here.TemplatesFolder = outer.Folders().Add(innerFolderName);
        ExampleTemplatesCreate(here.TemplatesFolder);
    }
    saveSetting(u"LastFolderStoreid", here.TemplatesFolder.StoreID());
    saveSetting(u"LastFolderEntryid", here.TemplatesFolder.EntryID());
    saveSetting(u"LastFolderName", GetFolderPath(here.TemplatesFolder));
}

void ExampleTemplatesCreate(const MAPIFolder& folder) {
    TemplateExample(u"Follow Up to Phone Call (Sample)",
                    paragraphs({u"Dear [FirstName]", u"I am writing with regard to our phone conversation on [Date].",
                                u"Should you require further information with regard to any of the ideas discussed, please contact me at your convenience.",
                                u"[Enter your company name and details in TEMPLATE]"}),
                    folder);
    TemplateExample(
        u"Quote (Sample)",
        paragraphs({u"Dear [FirstName]", u"Project: [Enter Project Name Here]",
                    u"Thank you for this opportunity to be of service to your organization. Further to our meeting, please find following our quotation for "
                    u"the above project.",
                    u"The full cost of the project shall be [Cost]. The estimated time frame to complete the project is [Timeframe].",
                    u"Further details of the project are as follows.", u"[Enter Details Here]", u"We look forward to working with you in the near future.",
                    u"[Enter your company name and details in TEMPLATE]"}),
        folder);
    TemplateExample(u"Request for Quote (Sample)",
                    paragraphs({u"Dear [FirstName]", u"Could you please supply a quotation for the following items.", u"[List items here]",
                                u"Your urgent attention to the above will be greatly appreciated.", u"Yours faithfully",
                                u"[Enter your company name and details in TEMPLATE]"}),
                    folder);
}

void TemplateExample(std::u16string_view subject, std::u16string_view body, const MAPIFolder& folder) {
    const MailItem mail = apartment().gOutlook.CreateItem(olMailItem);
    const SafeMailItem safe = makeSafeMailItem(mail);
    safe.Subject(subject);
    safe.Body(body);
    safe.Save();
    safe.Move(folder);
}

bool ResolveTemplateFolder(std::u16string_view entryId, std::u16string_view storeId, std::u16string_view expectedPath) {
    takeNameSpace();
    Apartment& here = apartment();
    here.TemplatesFolder = folderFromIdOrNothing(entryId, storeId);
    if (!here.TemplatesFolder) return false;
    if (GetFolderPath(here.TemplatesFolder) == expectedPath) return true;
    here.TemplatesFolder = {};
    return false;
}

bool VerifyFolders(const MAPIFolder& privateFolder, MAPIFolder& sharedFolder) {
    return holdsIgnoringErrors([&] {
        if (privateFolder) {
            const std::u16string path = GetFolderPath(privateFolder);
            if (path != setting(u"LastFolderName")) saveSetting(u"LastFolderName", path);
        }
        if (SharingEnabled() && !setting(u"SharedFolderEntryid").empty()) {
            // The path is written before the test for a lost folder: one that cannot be reached leaves it empty.
            const std::u16string path = GetFolderPath(sharedFolder);
            if (path != setting(u"SharedTemplFldrPath")) saveSetting(u"SharedTemplFldrPath", path);
            if (!sharedFolder) showSharedFolderLost();
        }
        return true;
    });
}

void SetPrivateSharedOptions(OptionButton& optPrivate, OptionButton& optShared, const MailItem& item) {
    if (!SharingEnabled()) {
        optPrivate.Value = true;
        optShared.Enabled = false;
        return;
    }
    constexpr std::int32_t saveToShared = 2;
    if (Val(setting(u"SaveTemplateDefault", u"1")) == saveToShared)
        optShared.Value = true;
    else
        optPrivate.Value = true;

    const std::u16string folderId = item.Parent().EntryID();
    const std::u16string sharedId = setting(u"SharedFolderEntryid");
    if (folderId == setting(u"LastFolderEntryid")) optPrivate.Value = true;
    if (folderId == sharedId) optShared.Value = true;
    if (Trim(sharedId).empty()) {
        optPrivate.Value = true;
        optShared.Enabled = false;
    }
}

bool HoldsMailItems(const MAPIFolder& folder) {
    constexpr std::int32_t mailItems = 0;
    constexpr std::int32_t postItems = 6;
    const std::int32_t type = folder.DefaultItemType();
    return type == mailItems || type == postItems;
}

void LoadSubFolders(const MAPIFolder& folder, ComboBox& combo) {
    combo.Clear();
    combo.AddItem(u"");
    const Folders folders = folder.Folders();
    const std::int32_t count = folders.Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        const MAPIFolder subFolder = folders.Item(index);
        if (HoldsMailItems(subFolder)) combo.AddItem(MakeSubFolderEntry(subFolder));
    }

    const std::u16string last = setting(u"LastSubFolderName");
    std::int32_t chosen = 0;
    for (std::int32_t line = 0; line < combo.ListCount(); ++line) {
        if (Trim(combo.List(line)) == Trim(last)) {
            chosen = line;
            break;
        }
    }
    combo.ListIndex = chosen;
}

std::u16string MakeSubFolderEntry(const MAPIFolder& folder) {
    const std::u16string name = folder.Name();
    return name + Space(subFolderNameWidth - static_cast<std::ptrdiff_t>(name.size())) + folder.EntryID();
}

std::u16string GetSubFolderEntryId(std::u16string_view line) {
    return std::u16string(Mid(line, subFolderNameWidth + 1));
}

}  // namespace lorvane::store
