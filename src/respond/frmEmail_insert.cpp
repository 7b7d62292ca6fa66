#include "host/Guards.h"
#include "host/TextFunctions.h"
#include "host/basGlobals.h"
#include "respond/LaterAnswers.h"
#include "respond/TextInsert.h"
#include "respond/basAttachments.h"
#include "respond/frmEmail.h"
#include "respond/modTemplateLog.h"
#include "text/BodyFormat.h"
#include "text/RecipientNames.h"
#include "text/TemplateTags.h"
#include "text/html_clip.h"

/// The two insert buttons: the chosen template goes into the open item, at the user's caret.
///
/// The host neither tells nor sets the caret. So a marker is typed there with simulated keys, the item is saved and read back, and the marker gives way to the
/// template. Plain text goes through the clipboard and a simulated paste.
namespace lorvane::respond {

using namespace host;

namespace {

constexpr std::int32_t caretMarkerLength = static_cast<std::int32_t>(caretMarker.size());

void sendKeys(std::u16string_view keys) {
    apartment().machine.screen().SendKeys(keys, true);
}

/// Gives the editor the time it needs to commit what was typed. A single wait, not a loop on a condition.
void waitForEditor() {
    const Screen screen = apartment().machine.screen();
    for (int pump = 0; pump <= 50; ++pump) screen.DoEvents();
}

Inspector activeInspector() {
    return apartment().gOutlook.ActiveInspector();
}

/// The open item and its wrapper anew: saving through the wrapper and adding attachments leave the old objects stale.
void takeAgain(MailItem& item, SafeMailItem& safe) {
    item = {};
    safe = {};
    item = activeInspector().CurrentItem();
    item.Save();
    safe = makeSafeMailItem(item);
}

void copyAttachmentsOf(const MailItem& templateItem, const MailItem& target, std::u16string& html) {
    RemoveAttachmentsFromTemp(CopyAttachments(templateItem, target, html));
}

bool holdsMarker(std::u16string_view body) {
    return InStr(1, body, caretMarker) != 0;
}

/// The marker went into a field of a post: takes it away and leaves the field.
void leaveFieldOfPost() {
    removeSpecialString(caretMarkerLength);
    sendKeys(u"{ENTER}");
    sendKeys(u"+{TAB}");
}

/// Brings the open item to the front and empties the clipboard.
void prepareInspector() {
    activeInspector().Activate();
    activeInspector().Display();
    apartment().machine.clipboard().Clear();
}

}  // namespace

void frmEmail::cmdInsertWithFormat_Click() {
    withFormat_ = true;
    cmdInsert_Click();
}

void frmEmail::cmdInsert_Click() {
    const Object keepAlive(this);
    bool closes = true;
    const bool done = withErrorBox(u"frmEmail.cmdInsert_Click", [&] {
        SaveLastUsedFolder();
        closes = false;
        if (!privateFolder_ && !sharedFolder_) return;
        if (lstEmails.ListCount() == 0) {
            MsgBox(u"There are no items to insert text from.\r\nPlease search for another e-mail or create a standard item first.", msgbox::Information);
            return;
        }
        if (lstEmails.ListIndex == -1) {
            MsgBox(u"Please select an item from the list first.", msgbox::Information, apartment().title);
            return;
        }
        closes = true;
        insertChosenTemplate();
    });
    if (done && !closes) return;
    ignoringErrors([&] { SafeMapiCleanup(); });
    ignoringErrors([&] { unload(); });
}

void frmEmail::insertChosenTemplate() {
    const TemplateIdentity identity = identityOfLine(lstEmails.ListIndex);
    const MailItem templateItem = apartment().gNameSpace.GetItemFromID(identity.entryId, identity.storeId);
    TemplateLogRecord(identity.entryId, identity.storeId);

    if (NewMailUsingTempl) {
        Hide();
        oe_NewMail_UsingTempl(templateItem, withFormat_, false, u"", u"", true);
        return;
    }
    if (ReplyUsingTempl) {
        Hide();
        AnsweredMail = ReplyUsingTemplate(templateItem, AnsweredMail, withFormat_, ReplyKind, FromInspector, u"", u"");
        return;
    }
    SafeMailItem target;
    if (insertIntoActiveItem(templateItem, target) == NextStep::SaveTarget && target) target.Save();
}

frmEmail::NextStep frmEmail::insertIntoActiveItem(const MailItem& templateItem, SafeMailItem& target) {
    const SafeMailItem templateSafe = makeSafeMailItem(templateItem);
    switch (activeInspector().CurrentItem().Class()) {
        case item_class::Mail:
            return insertIntoMail(templateItem, templateSafe, target);
        case item_class::Post:
            return insertIntoPost(templateItem, templateSafe, target);
        case item_class::Task:
        case item_class::Appointment:
            return insertIntoTask(templateItem, templateSafe, target);
        default:
            MsgBox(u"You can only insert text into items that has mails.", msgbox::Information, apartment().title);
            return NextStep::Release;
    }
}

frmEmail::NextStep frmEmail::insertIntoMail(const MailItem& templateItem, const SafeMailItem& templateSafe, SafeMailItem& target) {
    MailItem item = activeInspector().CurrentItem();
    item.Save();
    target = makeSafeMailItem(item);
    if (text::IsReceivedMail(item) || !text::SenderEmail(item).empty()) {
        MsgBox(u"You can only insert text into mails that are to be sent out.", msgbox::Information);
        return NextStep::Release;
    }
    Hide();
    prepareInspector();

    const bool word = activeInspector().EditorType() == editor_type::Word;
    const bool wordBelowTwelve = word && OutlookMajorVersion() < 12;
    if (wordBelowTwelve && !caretIsInWordBody()) return NextStep::Release;
    const std::int32_t format = word ? target.BodyFormat() : activeInspector().EditorType();
    std::u16string html;
    switch (CopyTextFromEmail(templateSafe, format, html, target)) {
        case InsertionRoute::HtmlReady:
            if (wordBelowTwelve) {
                copyAttachmentsOf(templateItem, item, html);
                // The clipboard holds the HTML; Word pastes it at its own selection.
                apartment().gOutlook.CreateObject(u"Lorvane.Connect").call(Member::PasteRangeToEmail);
            } else {
                spliceHtml(templateItem, item, target, html);
            }
            break;
        case InsertionRoute::PlainSplice:
            splicePlain(templateItem, templateSafe, item, target, html);
            break;
        case InsertionRoute::ClipboardText: {
            sendKeys(u"^v");
            std::u16string noHtml;
            copyAttachmentsOf(templateItem, item, noHtml);
            break;
        }
    }
    return NextStep::SaveTarget;
}

/// Types one letter, looks whether a field of the window took it, and takes it away again.
bool frmEmail::caretIsInWordBody() {
    CheckMouseInBody(false);
    sendKeys(u"I");
    const bool inBody = CheckMouseInBody(true);
    removeSpecialString(1);
    return inBody;
}

void frmEmail::spliceHtml(const MailItem& templateItem, MailItem& item, SafeMailItem& target, std::u16string& html) {
    activeInspector().Activate();
    const std::u16string before = target.HTMLBody();
    sendKeys(caretMarker);
    target.Save();
    if (target.HTMLBody() == before) waitForEditor();
    target.Save();
    copyAttachmentsOf(templateItem, item, html);
    takeAgain(item, target);
    const std::u16string body = target.HTMLBody();
    if (holdsMarker(body))
        target.HTMLBody(Insert(body, caretMarker, html));
    else
        removeSpecialString(caretMarkerLength);  // it went into the subject or an address field
}

void frmEmail::splicePlain(const MailItem& templateItem, const SafeMailItem& templateSafe, MailItem& item, SafeMailItem& target, std::u16string& html) {
    sendKeys(caretMarker);
    target.Save();
    // This way never reads the body before typing, so it waits just where there is no HTML body.
    if (target.HTMLBody().empty()) waitForEditor();
    copyAttachmentsOf(templateItem, item, html);
    takeAgain(item, target);
    const std::u16string body = target.Body();
    std::u16string templateText = templateSafe.Body();
    text::ReplaceTemplateTag(templateText, target, text::sourceRecipient, false);
    if (holdsMarker(body))
        target.Body(Insert(body, caretMarker, templateText));
    else
        removeSpecialString(caretMarkerLength);
}

frmEmail::NextStep frmEmail::insertIntoPost(const MailItem& templateItem, const SafeMailItem& templateSafe, SafeMailItem& target) {
    const MailItem item = activeInspector().CurrentItem();
    item.Save();
    target = makeSafePostItem(item);
    std::u16string noHtml;
    copyAttachmentsOf(templateItem, item, noHtml);
    Hide();
    prepareInspector();

    const std::int32_t editor = activeInspector().EditorType();
    const std::int32_t format = editor == editor_type::Word ? target.BodyFormat() : editor;
    std::u16string html;
    switch (CopyTextFromEmail(templateSafe, format, html, target)) {
        case InsertionRoute::HtmlReady: {
            sendKeys(caretMarker);
            target.Save();
            const std::u16string body = target.HTMLBody();
            if (holdsMarker(body))
                target.HTMLBody(Insert(body, caretMarker, html));
            else
                leaveFieldOfPost();
            break;
        }
        case InsertionRoute::PlainSplice: {
            sendKeys(caretMarker);
            target.Save();
            const std::u16string body = target.Body();
            std::u16string templateText = templateSafe.Body();
            Insert(body, caretMarker, templateText);  // thrown away: its tags are not replaced yet
            text::ReplaceTemplateTag(templateText, target, text::sourceRecipient, false);
            if (holdsMarker(body))
                target.Body(Insert(body, caretMarker, templateText));
            else
                leaveFieldOfPost();
            break;
        }
        case InsertionRoute::ClipboardText:
            sendKeys(u"^v");
            break;
    }
    return NextStep::SaveTarget;
}

/// Attachments of a template do not go into tasks and appointments.
frmEmail::NextStep frmEmail::insertIntoTask(const MailItem& templateItem, const SafeMailItem& templateSafe, SafeMailItem& target) {
    target = makeSafePostItem(activeInspector().CurrentItem());
    Hide();
    prepareInspector();
    if (withFormat_) {
        InsertMail_TaskAppnt(activeInspector().CurrentItem(), templateItem);
    } else {
        std::u16string html;
        CopyTextFromEmail(templateSafe, body_format::Plain, html, target);
        sendKeys(u"^v");
    }
    return NextStep::SaveTarget;
}

InsertionRoute frmEmail::CopyTextFromEmail(const SafeMailItem& templateSafe, std::int32_t format, std::u16string& html, const Object& targetItem) {
    const Clipboard clipboard = apartment().machine.clipboard();
    std::u16string plain = templateSafe.Body();
    if (targetItem) text::ReplaceTemplateTag(plain, targetItem, text::sourceRecipient, false);

    const auto asHtml = [&](std::u16string source) { html = text::CopyHTMLToClipBoard(source, targetItem, text::sourceRecipient, false); };
    const bool belowTwelve = OutlookMajorVersion() < 12;
    const auto templateEditor = [&] { return templateSafe.GetInspector().EditorType(); };

    switch (format) {
        case body_format::Plain:
            clipboard.SetText(plain);
            return InsertionRoute::ClipboardText;
        case body_format::Html: {
            if (templateSafe.HTMLBody().empty() || !withFormat_) {
                clipboard.SetText(plain);
                return InsertionRoute::ClipboardText;
            }
            if (belowTwelve && templateEditor() == editor_type::Word) {
                if (templateSafe.BodyFormat() != body_format::Html) {
                    clipboard.SetText(plain);
                    return InsertionRoute::ClipboardText;
                }
                asHtml(templateSafe.HTMLBody());
                return InsertionRoute::HtmlReady;
            }
            const SafeMailItem second = makeSafeMailItem(templateSafe.Item());
            const std::int32_t kind = OutlookVersion() == u"9" ? second.GetInspector().EditorType() : second.BodyFormat();
            if (kind != body_format::Plain)
                asHtml(second.HTMLBody());
            else
                asHtml(belowTwelve ? text::GetHtmlFromBody(second.Body()) : text::ConvertPlainTextToHtml(second.Body()));
            return InsertionRoute::HtmlReady;
        }
        case body_format::RichText: {
            std::int32_t kind = templateEditor();
            if (kind == editor_type::Word) kind = templateSafe.BodyFormat();
            if (kind == body_format::Plain) {
                clipboard.SetText(plain);
                return InsertionRoute::ClipboardText;
            }
            if (kind != body_format::Html && kind != body_format::RichText) return InsertionRoute::ClipboardText;
            asHtml(templateSafe.HTMLBody());
            return InsertionRoute::PlainSplice;
        }
        default:
            return InsertionRoute::ClipboardText;
    }
}

bool frmEmail::CheckMouseInBody(bool compare) {
    const Screen screen = apartment().machine.screen();
    screen.DoEvents();
    ensureOutlook();
    const SafeMailItem safe = makeSafeMailItem(activeInspector().CurrentItem());
    safe.Save();
    if (!compare) {
        caretSnapshot_ = {safe.To(), safe.CC(), safe.BCC(), safe.SentOnBehalfOfName(), safe.Subject()};
        return false;
    }
    screen.DoEvents();
    const auto grew = [](std::u16string_view snapshot, std::u16string_view now) { return StrComp(snapshot, now) < 0; };
    const bool changed = grew(caretSnapshot_[0], safe.To()) || grew(caretSnapshot_[1], safe.CC()) || grew(caretSnapshot_[2], safe.BCC()) ||
                         caretSnapshot_[3] != safe.SentOnBehalfOfName() || grew(caretSnapshot_[4], safe.Subject());
    return !changed;
}

}  // namespace lorvane::respond
