#include <charconv>

#include "Chooser.h"
#include "Commands.h"
#include "OwnItem.h"
#include "Run.h"
#include "Streams.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"
#include "html/RtfText.h"
#include "mime/MimeWriter.h"
#include "respond/TextInsert.h"

namespace lorvane::cli {

using namespace host;
using model::EditorFieldName;

namespace {

/// Where the caret is to stand in the open mail.
struct CaretPlace {
    EditorFieldName field = EditorFieldName::Body;
    std::int32_t position = 0;
};

CaretPlace caretPlaceFrom(const std::string& text) {
    if (text == "body") return {};
    if (text == "subject") return {EditorFieldName::Subject, model::Driver::AtEnd};
    constexpr std::string_view prefix = "body:";
    std::int32_t position = 0;
    const char* end = text.data() + text.size();
    if (text.starts_with(prefix)) {
        const auto [rest, error] = std::from_chars(text.data() + prefix.size(), end, position);
        if (error == std::errc() && rest == end && position >= model::Driver::AtEnd) return {EditorFieldName::Body, position};
    }
    throw CommandEnd(ExitStatus::Usage, "--caret is body, body:N or subject, not " + text);
}

void openNewMail(Run& run, const std::vector<Mailbox>& to, OwnItem& own) {
    own.inspector = run.driver().newMail();
    own.item = Inspector(own.inspector).CurrentItem();
    const Recipients recipients = MailItem(own.item).Recipients();
    for (const Mailbox& mailbox : to) recipients.call(Member::Add, {mailbox.name.empty() ? mailbox.address : mailbox.name + u" <" + mailbox.address + u">"});
    recipients.ResolveAll();
}

void openFromFile(Run& run, const std::string& file, const Bytes& message, OwnItem& own) {
    openStored(run, run.driver().import(run.readMessage(file, message), apartment().gNameSpace.GetDefaultFolder(default_folder::Drafts)), own);
}

/// How the open mail stands, for telling what an insertion did.
struct MailText {
    std::u16string subject, body;
    std::size_t attachments = 0;
    explicit MailText(const mailstore::ItemRecord& record) : subject(record.head.subject), body(record.body), attachments(record.attachments.size()) {}
};

Bytes messageOf(Run& run, const mailstore::ItemRecord& record) {
    mime::WriteOptions writing;
    writing.fromName = run.account().name;
    writing.fromAddress = run.account().address;
    writing.fromGiven = run.accountGiven();
    writing.date = run.now();
    writing.richText = [](std::u16string_view rtf) { return html::rtfToText(rtf); };
    writing.newMessageId = [&run] { return run.newMessageId(); };
    return mime::writeMessage(record, writing);
}

/// What the insertion came to, by what it did to the mail. `offered` is the number of the template's attachments.
ExitStatus outcome(const Run& run, const MailText& before, const MailText& after, EditorFieldName caret, std::size_t offered) {
    if (run.sawError()) return ExitStatus::Fault;
    // An error whose box could not be shown either: the insertion broke off, and its mark stands where the text was to go.
    if (after.body.find(respond::caretMarker) != std::u16string::npos && before.body.find(respond::caretMarker) == std::u16string::npos) {
        tell("lorvane: the insertion broke off");
        return ExitStatus::Fault;
    }
    // The add-in leaves them out in silence where its local folder cannot be made.
    if (after.body != before.body && after.attachments < before.attachments + offered) {
        tell("lorvane: not all attachments of the template came along");
        return ExitStatus::Fault;
    }
    if (after.body != before.body) return ExitStatus::Done;
    // A template may hold nothing but attachments; with the caret elsewhere they come without its text.
    if (caret == EditorFieldName::Body && after.attachments > before.attachments) return ExitStatus::Done;
    if (after.subject != before.subject) {
        tell("lorvane: the text went into the subject, where the caret stood");
        return ExitStatus::Done;
    }
    if (!run.sawBox()) tell("lorvane: nothing was inserted: the caret was not in the body, or there was no text");
    return ExitStatus::Refused;
}

/// What cannot be written out is not lost: the mail stays in Drafts then.
void writeOut(Run& run, const std::string& file, const mailstore::ItemRecord& record, OwnItem& own) {
    try {
        writeOutput(file, messageOf(run, record));
    } catch (const CommandEnd&) {
        own.keep();
        tell("lorvane: the mail was left in Drafts");
        throw;
    }
}

}  // namespace

ExitStatus runInsert(const RunOptions& runOptions, const InsertOptions& options) {
    const CaretPlace caret = caretPlaceFrom(options.caret);
    if (!options.into.empty() && !options.to.empty()) throw CommandEnd(ExitStatus::Usage, "--to is for a new mail; the mail of --into has its own recipients");
    std::vector<Mailbox> to;
    for (const std::string& text : options.to) to.push_back(mailboxFrom(text));
    const Bytes message = options.into.empty() ? Bytes() : readInput(options.into);
    requireWritable(options.out);
    Run run(runOptions);
    run.requireConnected();

    OwnItem own(run, options.keep);
    if (options.into.empty())
        openNewMail(run, to, own);
    else
        openFromFile(run, options.into, message, own);
    run.driver().focus(own.inspector, caret.field, caret.position);
    const MailText before(run.driver().record(own.item));

    std::size_t offered = 0;
    withTemplate(run, ChooserMode::Insert, options.name, [&](screen::ScriptedUser& user, respond::frmEmail& chooser, std::int32_t line) {
        offered = run.driver().record(chooser.itemOfLine(line)).attachments.size();
        user.Select(chooserWindow, u"lstEmails", line);
        user.Click(chooserWindow, options.withFormat ? u"cmdInsertWithFormat" : u"cmdInsert");
    });

    const mailstore::ItemRecord record = run.driver().record(own.item);
    const ExitStatus status = outcome(run, before, MailText(record), caret.field, offered);
    if (status == ExitStatus::Done) writeOut(run, options.out, record, own);
    return status;
}

}  // namespace lorvane::cli
