#include "model/QuotedText.h"

#include "host/TextFunctions.h"
#include "html/HtmlParser.h"
#include "html/HtmlText.h"
#include "html/MarkupScanner.h"
#include "model/ItemText.h"

namespace lorvane::model {

namespace {

constexpr std::u16string_view lineEnd = u"\r\n";

void addLine(std::u16string& block, std::u16string_view label, std::u16string_view text) {
    block.append(label).append(text).append(lineEnd);
}

/// Where the block goes into HTML. A body tag with text in front of it does not begin what a reader sees.
std::size_t placeOfBlock(std::u16string_view html) {
    html::MarkupScanner scanner(html);
    while (const auto token = scanner.next()) {
        if (token->kind != html::MarkupToken::Kind::StartTag || !host::equalsIgnoreCase(token->name, u"body")) continue;
        const html::TextMap shown = html::mapHtml(html);
        const bool begins = shown.length() == 0 || shown.sourceOffsetAt(0) >= token->range.end;
        return begins ? token->range.end : 0;
    }
    return 0;
}

}  // namespace

std::u16string quotedBlock(const QuotedHeader& header) {
    std::u16string block(lineEnd);
    block += lineEnd;
    addLine(block, u"-----Original Message-----", u"");
    if (!header.senderName.empty() || !header.senderAddress.empty()) {
        std::u16string sender = header.senderName.empty() ? header.senderAddress : header.senderName;
        if (!header.senderAddress.empty()) sender.append(u" [mailto:").append(header.senderAddress).append(u"]");
        addLine(block, u"From: ", sender);
    }
    if (!header.sent.empty()) addLine(block, u"Sent: ", header.sent);
    addLine(block, u"To: ", header.to);
    if (!header.cc.empty()) addLine(block, u"Cc: ", header.cc);
    addLine(block, u"Subject: ", header.subject);
    return block.append(lineEnd);
}

std::u16string quotedSource(mailstore::BodyKind kind, std::u16string_view source, std::u16string_view block) {
    switch (kind) {
        case BodyKind::Html: {
            std::u16string whole(source);
            return whole.insert(placeOfBlock(source), html::escapeHtml(block, u"<BR>\r\n"));
        }
        case BodyKind::Rich:
            return sourceFromText(kind, std::u16string(block).append(visibleBody(kind, source)));
        default:
            return std::u16string(block).append(source);
    }
}

}  // namespace lorvane::model
