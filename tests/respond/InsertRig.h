#pragma once

#include <string>
#include <string_view>

#include "ChooserRig.h"
#include "host/Redemption.h"

/// An open mail with a caret, into which the chooser inserts.
namespace lorvane::support {

inline constexpr std::u16string_view insertText = u"cmdInsert", insertWithFormat = u"cmdInsertWithFormat";
inline constexpr std::u16string_view caretMarker = u"Asdw34r2wjkytui983jnd2m";

inline std::u16string document(std::u16string_view body) {
    return u"<HTML><BODY>" + std::u16string(body) + u"</BODY></HTML>";
}

/// A saved mail with this body, open and with the caret at a place of its visible text.
inline host::Inspector openDraft(const TestRun& run, const BodyText& body, std::int32_t caret,
                                 std::initializer_list<std::u16string_view> to = {u"John Public <john@example.com>"}) {
    const host::Inspector inspector = run.openMail(run.draft(u"About us", body, to));
    run.focus(inspector, model::EditorFieldName::Body, caret);
    return inspector;
}

/// The source of the open item, with all that was typed.
inline std::u16string sourceOf(const TestRun& run, const host::Inspector& inspector) {
    return run.record(inspector.CurrentItem()).body;
}

/// The source that was saved last.
inline std::u16string savedSourceOf(const TestRun& run, const host::Inspector& inspector) {
    const host::MailItem item = inspector.CurrentItem();
    return run.record(run.session().GetItemFromID(item.EntryID(), item.Parent().StoreID())).body;
}

/// How often a text was sent as keys.
inline std::size_t keysSent(TestRun& run, std::u16string_view keys) {
    std::size_t count = 0;
    for (const auto& call : run.recorder().calls())
        if (call.member == u"SendKeys" && !call.arguments.empty() && call.arguments[0].toText() == keys) ++count;
    return count;
}

inline std::size_t timesCalled(TestRun& run, std::u16string_view className, std::u16string_view member) {
    std::size_t count = 0;
    for (const auto& call : run.recorder().calls())
        if (call.className == className && call.member == member) ++count;
    return count;
}

/// The files in the local folder that attachments pass through.
inline std::vector<std::u16string> localFiles() {
    const host::Files files = host::apartment().machine.files();
    const std::u16string folder = files.GetTempPath() + u"Tolvenar\\Lorvane";
    return files.FolderExists(folder) ? files.ListFiles(folder) : std::vector<std::u16string>{};
}

/// Makes the last attachment one that HTML refers to; the item is not saved.
inline void giveContentId(const host::MailItem& item, std::u16string_view contentId) {
    constexpr std::int32_t contentIdTag = 0x3712001E;
    const host::Attachments attachments = host::makeSafeMailItem(item).Attachments();
    attachments.Item(attachments.Count()).setFields(contentIdTag, host::Variant(contentId));
}

inline std::vector<std::u16string> attachmentNames(const TestRun& run, const host::Object& item) {
    std::vector<std::u16string> names;
    for (const auto& attachment : run.record(item).attachments) names.push_back(attachment.fileName);
    return names;
}

}  // namespace lorvane::support
