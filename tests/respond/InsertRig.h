#pragma once

#include <string>
#include <string_view>

#include "ChooserRig.h"
#include "host/Redemption.h"
#include "store/FoldersRig.h"

/// An open mail with a caret, into which the chooser inserts.
namespace lorvane::support {

inline constexpr std::u16string_view insertText = u"cmdInsert", insertWithFormat = u"cmdInsertWithFormat";
inline constexpr std::u16string_view caretMarker = u"Asdw34r2wjkytui983jnd2m";

inline std::u16string document(std::u16string_view body) {
    return u"<HTML><BODY>" + std::u16string(body) + u"</BODY></HTML>";
}

inline BodyText rich(std::u16string_view text) {
    return {mailstore::BodyKind::Rich, u"{\\rtf1\\ansi " + std::u16string(text) + u"}"};
}

/// A template of any kind of text in the private folder; `addTemplate` has no rich ones.
inline host::MailItem addAnyTemplate(const TestRun& run, std::u16string_view subject, const BodyText& body) {
    mailstore::ItemRecord record;
    record.head.subject = subject;
    record.bodyKind = body.kind;
    record.body = body.source;
    return host::MailItem(run.seen(run.driver().import(std::move(record), run.templatesFolder())));
}

/// A class of items beside mails.
struct OtherKind {
    std::int32_t itemClass;
    std::u16string_view messageClass;
};
inline constexpr OtherKind postKind{host::item_class::Post, u"IPM.Post"}, taskKind{host::item_class::Task, u"IPM.Task"},
    appointmentKind{host::item_class::Appointment, u"IPM.Appointment"};

/// An item of another class that lies in the Inbox, open and with the caret at a place of its visible text.
inline host::Inspector openOther(const TestRun& run, const OtherKind& kind, const BodyText& body, std::int32_t caret = 0,
                                 const std::vector<mailstore::RecipientRecord>& recipients = {}) {
    mailstore::ItemRecord record;
    record.head.itemClass = kind.itemClass;
    record.head.messageClass = kind.messageClass;
    record.head.subject = u"Open";
    record.bodyKind = body.kind;
    record.body = body.source;
    record.recipients = recipients;
    const host::Object item = run.driver().import(std::move(record), run.folder(host::default_folder::Inbox));
    const host::Inspector inspector = run.openMail(host::MailItem(run.seen(item)));
    run.focus(inspector, model::EditorFieldName::Body, caret);
    return inspector;
}

inline mailstore::RecipientRecord johnPublic(std::int32_t type = host::olTo) {
    return {u"John Public", u"john@example.com", u"SMTP", type, true};
}

/// An unsent mail of any kind of text to John Public, open with the caret at a place of its visible text.
inline host::Inspector openAnyDraft(const TestRun& run, const BodyText& body, std::int32_t caret) {
    mailstore::ItemRecord record;
    record.head.subject = u"About us";
    record.properties[mailstore::tags::MessageFlags] = mailstore::message_flags::Unsent;
    record.bodyKind = body.kind;
    record.body = body.source;
    record.recipients = {johnPublic()};
    const host::Object item = run.driver().import(std::move(record), run.folder(host::default_folder::Drafts));
    const host::Inspector inspector = run.openMail(host::MailItem(run.seen(item)));
    run.focus(inspector, model::EditorFieldName::Body, caret);
    return inspector;
}

/// A run at a host of this version; from 12 on the add-in is not connected, and its routines are used all the same.
inline RunOptions atVersion(std::u16string_view version, model::EditorKind editor = model::EditorKind::Html) {
    return {.version = std::u16string(version), .editor = editor, .connected = host::Val(version) < 12, .instruments = true};
}

/// What copying a template for an editor of this kind gave.
struct CopiedText {
    respond::InsertionRoute route{};
    std::u16string html;
};
/// Copies as the chooser does; its flag is set by the button itself, on an empty choice that goes no further.
inline CopiedText copyText(TestRun& run, const host::SafeMailItem& templateSafe, std::int32_t format, bool withFormat, const host::Object& target) {
    CopiedText copied;
    openChooser(run, [&](ScriptedUser& she) {
        if (withFormat) {
            chooser().lstEmails.ListIndex = -1;
            she.Click(chooserName, insertWithFormat);
        }
        run.clipboard().clear();
        copied.route = chooser().CopyTextFromEmail(templateSafe, format, copied.html, target);
    });
    return copied;
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

/// The source that the store has, without what was typed since the last save.
inline std::u16string savedSourceOf(const TestRun& run, const host::Inspector& inspector) {
    return run.store().loadItem(inspector.CurrentItem().EntryID()).body;
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

/// The keys that were sent, in their order.
inline Subjects allKeys(TestRun& run) {
    Subjects keys;
    for (const auto& call : run.recorder().calls())
        if (call.member == u"SendKeys") keys.push_back(call.arguments[0].toText());
    return keys;
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
