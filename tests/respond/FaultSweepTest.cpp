#include "support/FaultSweep.h"

#include <algorithm>
#include <vector>

#include "InsertRig.h"
#include "html/RtfText.h"

/// Each host call of an insertion fails once: the target holds nothing but what the ordered steps save, and everything else is as it was.
namespace lorvane::support {
namespace {

using namespace host;
using mailstore::ItemRecord;

constexpr std::u16string_view boldSource = u"<HTML><BODY><B>Dear</B> [FirstName]</BODY></HTML>";
constexpr std::u16string_view logFile = u"TemplatesLogFile.csv";

/// What an insertion goes into, and the texts that its steps may leave there.
struct Insertion {
    std::u16string_view offer = u"Bold";
    std::u16string_view button = insertWithFormat;
    const OtherKind* kind = nullptr;  ///< a mail unless told
    BodyText text;
    std::int32_t caret = 1;
    model::EditorFieldName field = model::EditorFieldName::Body;
    model::EditorKind editor = model::EditorKind::Html;
    std::u16string_view version = u"11.0.0.5510";
    std::vector<std::u16string> bodies = {};  ///< saved on the way
    bool received = false;
};

std::int32_t folderOf(const Insertion& insertion) {
    return insertion.kind || insertion.received ? default_folder::Inbox : default_folder::Drafts;
}

void putTarget(const TestRun& run, const Insertion& insertion) {
    ItemRecord record;
    record.head.subject = u"About us";
    record.bodyKind = insertion.text.kind;
    record.body = insertion.text.source;
    if (insertion.kind) {
        record.head.itemClass = insertion.kind->itemClass;
        record.head.messageClass = insertion.kind->messageClass;
    } else if (!insertion.received) {
        record.recipients = {johnPublic()};
        record.properties[mailstore::tags::MessageFlags] = mailstore::message_flags::Unsent;
    }
    run.driver().import(std::move(record), run.folder(folderOf(insertion)));
}

void prepare(TestRun& run, const Insertion& insertion) {
    const MailItem bold = run.addTemplate(u"Bold", html(boldSource), u"Sales");
    run.attach(bold, "logo.png", {1, 2});
    giveContentId(bold, u"logo@somewhere");
    run.attach(bold, "terms.txt", {3});
    bold.Save();
    run.addTemplate(u"Plain", plain(u"Dear [FirstName]"), u"Letters");
    if (insertion.received)
        run.receivedMail(u"About us", insertion.text);
    else
        putTarget(run, insertion);
}

/// The target's window with the caret, and the chooser over it with a template chosen.
void openOver(TestRun& run, const Insertion& insertion) {
    const Inspector open = run.openMail(run.folder(folderOf(insertion)).Items().Item(1));
    run.focus(open, insertion.field, insertion.field == model::EditorFieldName::Body ? insertion.caret : -1);
    chooser().Show(false);
    selectSubject(run.user(), insertion.offer);
}

/// The template's attachments so far, in their order.
bool areFirstOfTemplate(const std::vector<mailstore::AttachmentRecord>& attachments) {
    static const struct {
        std::u16string_view name;
        Bytes content;
    } known[] = {{u"logo.png", {1, 2}}, {u"terms.txt", {3}}};
    if (attachments.size() > std::size(known)) return false;
    return std::ranges::equal(attachments, std::span(known).first(attachments.size()),
                              [](const auto& left, const auto& is) { return left.fileName == is.name && left.data && *left.data == is.content; });
}

bool startsWith(std::u16string_view text, std::u16string_view front) {
    return text.substr(0, front.size()) == front;
}

/// Without all that an insertion writes on its way.
ItemRecord withoutInsertion(ItemRecord record) {
    record.head.version = 0;
    record.head.subject.clear();
    record.body.clear();
    record.bodyChanged = false;
    record.attachments.clear();
    for (const std::uint32_t tag : {0x800A000Bu, 0x10F4000Bu}) record.properties.erase(tag);
    return record;
}

/// A text as `Insertion::bodies` tell it: of rich text what it shows.
std::u16string told(mailstore::BodyKind kind, const std::u16string& source) {
    return kind == mailstore::BodyKind::Rich ? html::rtfToText(source) : source;
}

bool isBodyOnItsWay(const Insertion& insertion, mailstore::BodyKind kind, const std::u16string& source) {
    return source == insertion.text.source || std::ranges::find(insertion.bodies, told(kind, source)) != insertion.bodies.end();
}

bool isOnItsWay(const Insertion& insertion, const PlacedItem& before, const PlacedItem& now) {
    const std::u16string withMarker = u"About us" + std::u16string(caretMarker);
    const std::u16string& subject = now.record.head.subject;
    const bool subjectFits =
        insertion.field == model::EditorFieldName::Subject ? startsWith(withMarker, subject) && startsWith(subject, u"About us") : subject == u"About us";
    return now.folder == before.folder && before.record.head.subject == u"About us" && subjectFits &&
           isBodyOnItsWay(insertion, now.record.bodyKind, now.record.body) && areFirstOfTemplate(now.record.attachments) &&
           withoutInsertion(now.record) == withoutInsertion(before.record);
}

FaultSweep sweepOf(const Insertion& insertion) {
    FaultSweep sweep;
    sweep.options.editor = insertion.editor;
    sweep.options.version = insertion.version;
    sweep.prepare = [insertion](TestRun& run) { prepare(run, insertion); };
    sweep.open = [insertion](TestRun& run) { openOver(run, insertion); };
    sweep.command = [insertion](TestRun& run) { run.user().Click(chooserName, insertion.button); };
    sweep.mayLeaveChanged = [insertion](const PlacedItem& before, const PlacedItem& now) { return isOnItsWay(insertion, before, now); };
    sweep.boxes = {errorBox(u"frmEmail.cmdInsert_Click"),
                   errorBox(u"Copy Attachments"),
                   errorBox(u"basAttachments.RemoveAttachmentsFromTemp"),
                   errorBox(u"modTemplateLog.TemplateLogRecord"),
                   errorBox(u"basGlobals.GetFullName"),
                   errorBox(u"PasteRangeToEmail"),
                   {u"Invalid E-mail Address", u"E-mail address cannot be resolved. Please check e-mail address.", msgbox::Exclamation}};
    sweep.lossBoxes = 2;
    // The chooser was over the item before and is gone behind every attempt.
    sweep.windowsFit = [](std::size_t before, std::size_t after) { return after == before - 1; };
    // What is typed and not saved must be one of the states too.
    sweep.check = [insertion](TestRun& run, const SweptFault&) {
        const MailItem item = run.folder(folderOf(insertion)).Items().Item(1);
        const ItemRecord shown = run.record(run.application().ActiveInspector().CurrentItem());
        EXPECT_EQ(shown.head.entryId, item.EntryID());
        EXPECT_TRUE(isBodyOnItsWay(insertion, shown.bodyKind, shown.body)) << toUtf8(shown.body);
    };
    return sweep;
}

std::u16string bodyWith(std::u16string_view inserted) {
    return document(u"<P>Hello " + std::u16string(inserted) + u"<I>there</I></P>");
}

class FaultSweepTest : public SweepTest {
protected:
    void insert(const Insertion& insertion) { run(sweepOf(insertion)); }
};
SWEEP_CALLS(FaultSweepTest);

TEST_P(FaultSweepTest, AnHtmlMailWithFormat) {
    insert({.text = html(bodyWith(u"")), .caret = 6, .bodies = {bodyWith(caretMarker), bodyWith(u"<B>Dear</B> John"), bodyWith(u"<B>Dear</B> [FirstName]")}});
}

TEST_P(FaultSweepTest, AnHtmlMailAsText) {
    insert(
        {.offer = u"Plain", .button = insertText, .text = html(bodyWith(u"")), .caret = 6, .bodies = {bodyWith(u"Dear John"), bodyWith(u"Dear [FirstName]")}});
}

TEST_P(FaultSweepTest, AnHtmlMailWhileTheCaretIsInTheSubject) {
    insert({.text = html(bodyWith(u"")), .field = model::EditorFieldName::Subject});
}

TEST_P(FaultSweepTest, APlainMail) {
    insert({.text = plain(u"ab"), .bodies = {u"aDear Johnb", u"aDear [FirstName]b"}});
}

TEST_P(FaultSweepTest, ARichMail) {
    insert({.button = insertText, .text = rich(u"ab"), .bodies = {u"a" + std::u16string(caretMarker) + u"b", u"aDear Johnb", u"aDear [FirstName]b"}});
}

// A letter of the look at the caret stays where the key that takes it away failed.
TEST_P(FaultSweepTest, AWordMailWithFormat) {
    insert({.text = html(document(u"ab")),
            .editor = model::EditorKind::Word,
            .bodies = {document(u"aIb"), document(u"a<B>Dear</B> Johnb"), document(u"a<B>Dear</B> [FirstName]b")}});
}

TEST_P(FaultSweepTest, APlainWordMail) {
    insert({.button = insertText, .text = plain(u"ab"), .editor = model::EditorKind::Word, .bodies = {u"aIb", u"aDear Johnb", u"aDear [FirstName]b"}});
}

TEST_P(FaultSweepTest, APost) {
    insert({.kind = &postKind,
            .text = html(document(u"ab")),
            .bodies = {document(u"a" + std::u16string(caretMarker) + u"b"), document(u"a<B>Dear</B> [FirstName]b")}});
}

TEST_P(FaultSweepTest, ATask) {
    insert({.kind = &taskKind, .text = plain(u"ab"), .bodies = {u"aDear [FirstName]b"}});
}

TEST_P(FaultSweepTest, AnAppointmentAsText) {
    insert({.offer = u"Plain", .button = insertText, .kind = &appointmentKind, .text = plain(u"ab"), .bodies = {u"aDear [FirstName]b"}});
}

TEST_P(FaultSweepTest, AReceivedMailIsNeverInsertedInto) {
    FaultSweep sweep = sweepOf({.text = html(document(u"ab")), .received = true});
    sweep.boxes.push_back({u"Lorvane", u"You can only insert text into mails that are to be sent out.", msgbox::Information});
    run(sweep);
}

TEST_P(FaultSweepTest, ALoggedInsertion) {
    const Insertion insertion{
        .offer = u"Plain", .button = insertText, .text = html(bodyWith(u"")), .caret = 6, .bodies = {bodyWith(u"Dear John"), bodyWith(u"Dear [FirstName]")}};
    FaultSweep sweep = sweepOf(insertion);
    sweep.open = [insertion](TestRun& run) {
        run.setSetting(u"LogTemplate", u"True");
        run.setSetting(u"TemplatesLogFilePath", Files(run.services().files).GetFolderPath(5) + u"\\" + std::u16string(logFile));
        openOver(run, insertion);
    };
    sweep.files = {"documents/" + toUtf8(logFile)};
    sweep.boxes.push_back({u"Unable to create the file - Lorvane", u"Unable to create or write to the file TemplatesLogFile.csv", msgbox::Exclamation});
    run(sweep);
}

}  // namespace
}  // namespace lorvane::support
