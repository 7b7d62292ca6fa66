#include "respond/TextInsert.h"

#include "host/Apartment.h"
#include "host/Redemption.h"
#include "host/TextFunctions.h"
#include "text/TemplateTags.h"
#include "text/html_clip.h"

namespace lorvane::respond {

using namespace host;

std::u16string Insert(std::u16string_view body, std::u16string_view marker, std::u16string_view text) {
    const std::size_t position = InStr(1, body, marker);
    if (position == 0) return std::u16string(marker);
    std::u16string result;
    result.reserve(body.size() - marker.size() + text.size());
    result.append(Left(body, position - 1)).append(text).append(Mid(body, position + marker.size()));
    return result;
}

void removeSpecialString(std::int32_t count) {
    const Screen screen = apartment().machine.screen();
    for (std::int32_t sent = 0; sent < count; ++sent) screen.SendKeys(u"{BACKSPACE}", true);
}

bool PlainTextInWord(const MailItem& item) {
    if (item.Class() != item_class::Mail || item.GetInspector().EditorType() != editor_type::Word) return false;
    // The item itself has no BodyFormat on a host of version 9.
    return makeSafeMailItem(item).BodyFormat() == body_format::Plain;
}

void InsertMail_TaskAppnt(const MailItem& targetItem, const MailItem& templateItem) {
    if (!targetItem || !templateItem) return;
    Apartment& here = apartment();
    const SafeMailItem target = makeSafeMailItem(targetItem);
    const SafeMailItem templateSafe = makeSafeMailItem(templateItem);

    if (PlainTextInWord(targetItem)) {
        const Object editor = here.machine.CreateObject(u"qz7mredemption.qz7msafemailitem");
        editor.put(Member::Item, here.gOutlook.ActiveInspector());
        const Object document = editor.getObject(Member::WordEditor);
        std::u16string text = templateSafe.Body();
        text::ReplaceTemplateTag(text, target, text::sourceRecipient, false);
        document.getObject(Member::Application).getObject(Member::Selection).call(Member::TypeText, {Argument::named(Member::Text, Variant(text))});
        return;
    }
    std::u16string html = templateSafe.HTMLBody();
    if (html.empty()) {
        std::u16string text = templateSafe.Body();
        text::ReplaceTemplateTag(text, target, text::sourceRecipient, false);
        here.machine.clipboard().SetText(text);
    } else {
        text::CopyHTMLToClipBoard(html, target, text::sourceRecipient, false);
    }
    here.machine.screen().SendKeys(u"^v", true);
}

}  // namespace lorvane::respond
