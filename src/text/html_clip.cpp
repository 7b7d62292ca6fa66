#include "text/html_clip.h"

#include <algorithm>

#include "host/Apartment.h"
#include "host/Outlook.h"
#include "host/TextFunctions.h"
#include "text/TemplateTags.h"

namespace lorvane::text {

using namespace host;

namespace {

struct HtmlClipState {
    std::int32_t format = 0;  // the registered format's number, 0 until it is first needed
};

constexpr std::u16string_view header =
    u"Version:1.0\r\n"
    u"StartHTML:aaaaaaaaaa\r\n"
    u"EndHTML:bbbbbbbbbb\r\n"
    u"StartFragment:cccccccccc\r\n"
    u"EndFragment:dddddddddd\r\n";

/// "0000000000": ten digits with leading zeros.
std::u16string tenDigits(std::size_t number) {
    const std::u16string digits = decimal(static_cast<std::int64_t>(number));
    return std::u16string(digits.size() < 10 ? 10 - digits.size() : 0, u'0') + digits;
}

std::int32_t registeredFormat(const Clipboard& clipboard) {
    auto& state = apartment().state<HtmlClipState>();
    if (state.format == 0) state.format = clipboard.RegisterClipboardFormat(u"HTML Format");
    return state.format;
}

/// Position of the ">" that ends the body's start tag, 0 where there is no such tag.
std::size_t endOfBodyTag(std::u16string_view html) {
    const std::size_t tag = InStr(1, html, u"<BODY", Compare::IgnoreCase);
    return tag == 0 ? 0 : InStr(tag, html, u">");
}

/// What stands in front of the fragment and behind it; `html` becomes the fragment. The ">" of the body's tag belongs to neither.
void cutToFragment(std::u16string& html, std::u16string& before, std::u16string& after) {
    if (const std::size_t tagEnd = endOfBodyTag(html); tagEnd != 0) {
        before = Left(html, tagEnd - 1);
        html.erase(0, tagEnd - 1);
    }
    if (const std::size_t end = InStr(1, html, u"</BODY", Compare::IgnoreCase); end != 0) {
        after = Mid(html, end);
        html.erase(end - 1);
        html.erase(0, 1);
    }
}

std::u16string wholeBlock(std::u16string_view fragment, std::u16string_view before, std::u16string_view after) {
    const std::size_t start = header.size() + before.size();
    const std::size_t end = start + fragment.size();
    const std::size_t size = end + after.size();

    // Only the header's own placeholders are numbers; the same letters in the fragment stay.
    std::u16string filled = Replace(header, u"aaaaaaaaaa", tenDigits(header.size()));
    filled = Replace(filled, u"bbbbbbbbbb", tenDigits(size));
    filled = Replace(filled, u"cccccccccc", tenDigits(start));
    filled = Replace(filled, u"dddddddddd", tenDigits(end));

    std::u16string whole;
    whole.reserve(size);
    whole.append(filled).append(before).append(fragment).append(after);
    return whole;
}

}  // namespace

std::u16string CopyHTMLToClipBoard(std::u16string& html, const Object& item, std::u16string_view source, bool hasRecipients, const Object& otherItem) {
    std::u16string before;
    std::u16string after;
    cutToFragment(html, before, after);
    if (item) {
        if (source == sourceRecipient)
            ReplaceTemplateTag(html, item, sourceRecipient, false);
        else if (!hasRecipients)
            ReplaceTemplateTag(html, item, u"", false, otherItem);
        else if (MailItem(otherItem).Recipients().Count() > 0)
            ReplaceTemplateTag(html, otherItem, sourceRecipient, false);
        else
            ReplaceTemplateTag(html, item, u"", true);
    }
    PutHTMLClipboard(html, before, after);
    return html;
}

void PutHTMLClipboard(std::u16string_view fragment, std::u16string& before, std::u16string& after) {
    const Machine& machine = apartment().machine;
    const Clipboard clipboard = machine.clipboard();
    const std::int32_t format = registeredFormat(clipboard);
    if (format == 0) return;

    before += u"<!--StartFragment -->";
    after.insert(0, u"<!--EndFragment -->");
    const std::u16string whole = wholeBlock(fragment, before, after);

    if (!clipboard.OpenClipboard()) return;
    const std::int32_t block = clipboard.GlobalAlloc(0, static_cast<std::int32_t>(whole.size() + 10));
    const std::int32_t address = block == 0 ? 0 : clipboard.GlobalLock(block);
    if (address == 0) {
        clipboard.CloseClipboard();
        return;
    }
    // As many bytes as there are characters: right for single-byte text, cut for any other. The block's last ten bytes stay unwritten.
    Bytes ansi = machine.region().ToAnsi(whole);
    ansi.resize(std::min(ansi.size(), whole.size()));
    clipboard.RtlMoveMemory(address, ansi);
    clipboard.GlobalUnlock(block);
    clipboard.EmptyClipboard();
    clipboard.SetClipboardData(format, block);
    clipboard.CloseClipboard();
}

std::u16string MergeHTMLIntoBody(std::u16string_view templateHtml, std::u16string_view bodyHtml, const Object& item, bool hasRecipients,
                                 const Object& otherItem) {
    std::u16string html(templateHtml);
    std::u16string fragment = CopyHTMLToClipBoard(html, item, u"", hasRecipients, otherItem);
    const std::size_t headLength = endOfBodyTag(bodyHtml);
    fragment = Replace(fragment, u"<BR>\r\n<BR>", u"<p class=Msonormal>");

    std::u16string merged;
    merged.reserve(bodyHtml.size() + fragment.size());
    merged.append(Left(bodyHtml, headLength)).append(fragment).append(Mid(bodyHtml, headLength + 1));
    return merged;
}

}  // namespace lorvane::text
