#include "respond/basAttachments.h"

#include <vector>

#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "text/BodyFormat.h"

namespace lorvane::respond {

using namespace host;

namespace {

constexpr std::int32_t contentIdTag = 0x3712001E;
constexpr std::int32_t hiddenTag = 0x7FFE000B;
constexpr std::int32_t flagsTag = 0x7FFD0003;
constexpr std::int32_t byValue = 1;
constexpr std::int32_t booleanType = 11;

/// What became of the template's attachments in the target.
struct AttachedRecord {
    std::u16string displayName, contentID;
};
struct AttachmentMap {
    std::vector<AttachedRecord> records;
};
AttachmentMap& attachmentMap() {
    return apartment().state<AttachmentMap>();
}

constexpr std::u16string_view outerName = u"Tolvenar", innerName = u"\\Lorvane";

std::u16string localFolder() {
    return GetTempFolder().append(outerName).append(innerName);
}

/// The names, each wrapped in commas, all joined.
std::u16string wrappedNames(const Attachments& attachments) {
    std::u16string names;
    const std::int32_t count = attachments.Count();
    for (std::int32_t index = 1; index <= count; ++index) names += u"," + attachments.Item(index).FileName() + u",";
    return names;
}

std::size_t occurrences(std::u16string_view text, std::u16string_view sought) {
    std::size_t found = 0;
    for (std::size_t at = InStr(1, text, sought, Compare::IgnoreCase); at != 0; at = InStr(at + sought.size(), text, sought, Compare::IgnoreCase)) ++found;
    return found;
}

/// "a.txt" with 1 becomes "a_1.txt"; a name without "." gets the number at its end.
std::u16string numbered(std::u16string_view name, std::int32_t number) {
    const std::size_t dot = InStrRev(name, u".");
    if (dot == 0) return std::u16string(name) + u"_" + decimal(number);
    return std::u16string(Left(name, dot - 1)) + u"_" + decimal(number) + std::u16string(Mid(name, dot));
}

/// False where the local folder cannot be made, which ends the copying.
bool copyOne(std::int32_t index, const SafeMailItem& templateSafe, const MailItem& target, std::u16string& html) {
    const Attachment source = templateSafe.Attachments().Item(index);
    std::u16string name = source.FileName();
    const std::u16string contentID = fieldText(source.Fields(contentIdTag));
    name = GetUniqueAttachmentName(name, contentID, templateSafe, target, html);
    name = RemoveSpecialCharFromFilename(text::RemoveSpecChars(name));
    if (!CreateStorageFolders()) return false;

    std::u16string path = localFolder() + u"\\" + name;
    if (!VerifyWindowsPathLlimit(path)) return true;
    path = GetAttachmentName(path);
    source.SaveAsFile(path);
    const Attachment added = target.Attachments().Add(path, byValue, index, name);
    target.Save();
    attachmentMap().records.push_back({added.DisplayName(), fieldText(source.Fields(contentIdTag))});
    return true;
}

/// The reference "cid:..." in `html` that begins with `wanted`, up to the next quote; "" where there is none.
std::u16string referenceTo(std::u16string_view html, std::u16string_view wanted) {
    const std::size_t start = InStr(1, html, u"cid:" + std::u16string(wanted), Compare::IgnoreCase);
    if (start == 0) return {};
    const std::size_t quote = InStr(start, html, u"\"");
    return std::u16string(quote == 0 ? Mid(html, start) : Mid(html, start, quote - start));
}

/// Turns the HTML's reference to an embedded attachment into its file name, which becomes its content id. `rewritten` runs through the whole call: while
/// nothing was replaced it is empty, and an attachment that the HTML does not mention then empties `html`.
void rewriteReference(const Attachment& attachment, std::u16string_view contentID, std::u16string& html, std::u16string& rewritten) {
    const std::size_t at = InStr(1, contentID, u"@");
    std::u16string old = referenceTo(html, at == 0 ? contentID : Left(contentID, at - 1));
    if (old.empty()) old = referenceTo(html, attachment.FileName());
    if (!old.empty()) rewritten = Replace(html, old, u"cid:" + attachment.FileName(), Compare::IgnoreCase);
    if (!equalsIgnoreCase(html, rewritten)) html = rewritten;
}

void markAsEmbedded(const Attachment& attachment) {
    ignoringErrors([&] { attachment.setFields(contentIdTag, attachment.FileName()); });
    ignoringErrors([&] { attachment.setFields(hiddenTag, true); });
    ignoringErrors([&] { attachment.setFields(flagsTag, 8); });
}

/// The template's embedded attachments keep showing in the HTML: from version 12 on that takes new references.
void embedPictures(const MailItem& target, const SafeMailItem& targetSafe, bool twelveOrAbove, std::u16string& html) {
    std::u16string rewritten;
    const std::int32_t count = target.Attachments().Count();
    for (std::int32_t index = 1; index <= count; ++index) {
        const Attachment attachment = targetSafe.Attachments().Item(index);
        std::u16string contentID;
        if (!IsAttachedFromTemplate(attachment.DisplayName(), contentID) || !twelveOrAbove) continue;
        rewriteReference(attachment, contentID, html, rewritten);
        markAsEmbedded(attachment);
    }
}

bool allAreEmbedded(const MailItem& target) {
    std::int32_t embedded = 0;
    for (const AttachedRecord& record : attachmentMap().records) embedded += record.contentID.empty() ? 0 : 1;
    return embedded == target.Attachments().Count();
}

/// Tells the host whether all attachments are embedded pictures, which it then shows without a paper clip.
void markItem(const SafeMailItem& targetSafe, bool embeddedOnly) {
    targetSafe.setFields(0x800A000B, embeddedOnly);
    targetSafe.setFields(0x10F4000B, embeddedOnly);
    if (!embeddedOnly) return;
    const std::int32_t named = targetSafe.GetIDsFromNames(u"{00062008-0000-0000-C000-000000000046}", 0x8514) | booleanType;
    targetSafe.setFields(named, true);
}

}  // namespace

std::u16string CopyAttachments(const MailItem& templateItem, const MailItem& target, std::u16string& html) {
    std::u16string folder;
    withErrorBox(u"Copy Attachments", [&] {
        attachmentMap().records.clear();
        const bool twelveOrAbove = OutlookMajorVersion() >= 12;
        const SafeMailItem templateSafe = makeSafeMailItem(templateItem);
        const std::int32_t count = templateSafe.Attachments().Count();
        if (count > 0) {
            folder = localFolder();
            for (std::int32_t index = 1; index <= count; ++index)
                if (!copyOne(index, templateSafe, target, html)) return;
            target.Save();
        }
        const SafeMailItem targetSafe = makeSafeMailItem(target);
        if (count > 0) embedPictures(target, targetSafe, twelveOrAbove, html);
        markItem(targetSafe, twelveOrAbove && allAreEmbedded(target));
        targetSafe.Save();
        target.Save();
    });
    return folder;
}

bool IsAttachedFromTemplate(std::u16string_view name, std::u16string& contentID) {
    for (const AttachedRecord& record : attachmentMap().records) {
        if (!equalsIgnoreCase(Trim(record.displayName), Trim(name)) || Trim(record.contentID).empty()) continue;
        contentID = record.contentID;
        return true;
    }
    return false;
}

void RemoveAttachmentsFromTemp(std::u16string_view folder) {
    if (Trim(folder).empty()) return;
    withErrorBox(u"basAttachments.RemoveAttachmentsFromTemp", [&] {
        const Files files = apartment().machine.files();
        if (!files.FolderExists(folder)) return;
        for (const std::u16string& name : files.ListFiles(folder)) files.DeleteFile(std::u16string(folder) + u"\\" + name);
    });
}

std::u16string GetUniqueAttachmentName(std::u16string_view name, std::u16string_view, const SafeMailItem& templateSafe, const MailItem& target,
                                       std::u16string& html) {
    const std::u16string templateList = wrappedNames(templateSafe.Attachments());
    const std::u16string targetList = wrappedNames(target.Attachments());
    std::u16string candidate(name);
    for (std::int32_t number = 1;; ++number) {
        const std::u16string wrapped = u"," + candidate + u",";
        const bool taken = occurrences(targetList, wrapped) > 0 || occurrences(templateList, wrapped) > 1;
        if (!taken) break;
        candidate = numbered(candidate, number);
    }
    html = Replace(html, name, candidate, Compare::IgnoreCase);
    return candidate;
}

std::u16string GetTempFolder() {
    return apartment().machine.files().GetTempPath();
}

bool CreateStorageFolders() {
    return holdsIgnoringErrors([&] {
        std::u16string folder = GetTempFolder();
        if (folder.empty()) return false;
        const Files files = apartment().machine.files();
        for (const std::u16string_view name : {outerName, innerName}) {
            folder += name;
            if (!files.FolderExists(folder)) files.CreateFolder(folder);
        }
        return true;
    });
}

bool VerifyWindowsPathLlimit(std::u16string_view path) {
    return path.size() < 260;
}

std::u16string GetAttachmentName(std::u16string_view path) {
    const Files files = apartment().machine.files();
    std::u16string free(path);
    for (std::int32_t number = 0; files.FileExists(free); ++number) free = MakeDuplicateFileName(path, number);
    return free;
}

std::u16string MakeDuplicateFileName(std::u16string_view path, std::int32_t number) {
    const std::u16string reversed = ReverseString(path);
    const std::size_t dot = InStr(1, reversed, u".");
    if (dot == 0) return std::u16string(path) + decimal(number);
    const std::u16string extension = ReverseString(Left(reversed, dot));
    return std::u16string(Left(path, path.size() - extension.size())) + decimal(number) + extension;
}

std::u16string ReverseString(std::u16string_view text) {
    return StrReverse(text);
}

std::u16string RemoveSpecialCharFromFilename(std::u16string_view name) {
    return Replace(Replace(name, u"%20", u" "), u"#", u"_");
}

}  // namespace lorvane::respond
