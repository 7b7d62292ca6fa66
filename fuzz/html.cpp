#include "fuzz/FuzzInput.h"
#include "html/ClipboardHtml.h"
#include "html/EditorDocument.h"
#include "html/HtmlText.h"
#include "html/RtfText.h"

namespace {

using namespace lorvane;
using html::EditorDocument;

/// What a person may do to an open document, by a byte. Positions never leave the text.
void act(EditorDocument& document, fuzz::Input& input) {
    switch (input.byte() % 12) {
        case 0:
            return document.setCaret(input.below(document.length() + 2));
        case 1:
            return document.select(input.below(document.length() + 1), input.below(8));
        case 2:
            return document.backspace();
        case 3:
            return document.del();
        case 4:
            return document.enter();
        case 5:
            return document.left();
        case 6:
            return document.right();
        case 7:
            return document.home();
        case 8:
            return document.end();
        case 9:
            return document.paste(input.text(12), std::nullopt);
        case 10:
            return document.paste(std::nullopt, input.text(12));
        default:
            return document.typeText(input.text(6));
    }
}

/// Text typed into any document and taken back leaves the source as it was.
void typeAndTakeBack(EditorDocument& document) {
    const std::u16string source = document.source();
    document.setCaret(document.caret());
    document.typeText(u"ab");
    document.backspace();
    document.backspace();
    fuzz::require(document.source() == source, "typing that is taken back leaves the source as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::size_t acts = input.byte() % 24;
    const auto kind = static_cast<html::TextKind>(1 + input.byte() % 3);
    fuzz::Input script = input;
    EditorDocument document(kind, input.text());
    document.setCaret(script.below(document.length() + 1));
    typeAndTakeBack(document);
    for (std::size_t i = 0; i < acts; ++i) {
        act(document, script);
        fuzz::require(document.caret() <= document.length(), "the caret stands in the text");
        fuzz::require(document.selectionStart() + document.selectionLength() <= document.length(), "the selection lies in the text");
    }

    const std::u16string text = fuzz::Input(data, size).text();
    html::visibleText(html::textToHtml(text));
    html::clipboardFragment(text);
    const auto fragment = html::clipboardFragment(html::clipboardBlock(text), [](std::string_view bytes) { return host::fromUtf8(bytes); });
    fuzz::require(fragment && *fragment == text, "the fragment of a block is what it was made around");
    return 0;
}
