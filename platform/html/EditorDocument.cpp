#include "html/EditorDocument.h"

#include <algorithm>
#include <utility>

#include "html/HtmlParser.h"
#include "html/HtmlText.h"
#include "html/MarkupScanner.h"
#include "html/SourceEdit.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

TextMap mapPlain(std::u16string_view source) {
    TextMap map;
    for (std::size_t i = 0; i < source.size();) {
        const std::size_t lineEnd = lineEndLength(source, i);
        if (lineEnd == 2) {
            map.addAtom(u"\n", {i, i + 2});
        } else {
            map.addLiteral(lineEnd == 1 ? u'\n' : source[i], i);
        }
        i += std::max<std::size_t>(lineEnd, 1);
    }
    return map;
}

bool isBlankRun(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return isBlank(unit); });
}

std::size_t alikeAtEnd(std::u16string_view a, std::u16string_view b) {
    const auto [fromA, fromB] = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
    static_cast<void>(fromB);
    return static_cast<std::size_t>(fromA - a.rbegin());
}

}  // namespace

std::u16string textOfSource(TextKind kind, std::u16string_view source) {
    switch (kind) {
        case TextKind::Html:
            return visibleText(source);
        case TextKind::Rich:
            return rtfToText(source);
        case TextKind::Plain:
            break;
    }
    return std::u16string(source);
}

std::u16string sourceOfText(TextKind kind, std::u16string_view text) {
    switch (kind) {
        case TextKind::Html:
            return textToHtml(text);
        case TextKind::Rich:
            return textToRtf(text);
        case TextKind::Plain:
            break;
    }
    return std::u16string(text);
}

std::u16string emptySource(TextKind kind) {
    return sourceOfText(kind, u"");
}

EditorDocument::EditorDocument(TextKind kind, std::u16string source, Lines lines) : kind_(kind), lines_(lines), source_(std::move(source)) {}

TextMap EditorDocument::mapOf(TextKind kind, std::u16string_view source) const {
    switch (kind) {
        case TextKind::Html:
            return mapHtml(source);
        case TextKind::Rich:
            return mapRtf(source, decoder_);
        case TextKind::Plain:
            break;
    }
    return mapPlain(source);
}

const TextMap& EditorDocument::map() const {
    if (!map_) map_ = std::make_shared<const TextMap>(mapOf(kind_, source_));
    return *map_;
}

std::u16string EditorDocument::visible() const {
    return map().text();
}

std::size_t EditorDocument::length() const {
    return map().length();
}

std::size_t EditorDocument::selectionStart() const {
    if (!position_) position_ = map().positionAt(*sourceOffset_);
    return *position_;
}

std::size_t EditorDocument::caret() const {
    return selectionStart() + selectionLength_;
}

std::size_t EditorDocument::caretOffset() const {
    if (!sourceOffset_) sourceOffset_ = map().sourceOffsetAt(caret());
    return *sourceOffset_;
}

void EditorDocument::setCaret(std::size_t position) {
    select(position, 0);
}

void EditorDocument::select(std::size_t start, std::size_t length) {
    typed_.clear();
    sourceOffset_.reset();
    selectionLength_ = 0;
    if (start == 0 && length == 0) {
        position_ = 0;
        return;
    }
    const std::size_t all = map().length();
    position_ = std::min(start, all);
    selectionLength_ = std::min(length, all - *position_);
}

std::u16string EditorDocument::selectedText() const {
    if (selectionLength_ == 0) return {};
    const std::size_t start = selectionStart();
    return map().text(start, start + selectionLength_);
}

std::u16string_view EditorDocument::cutToField(std::u16string_view text) const {
    return lines_ == Lines::One ? text.substr(0, text.find_first_of(u"\r\n")) : text;
}

void EditorDocument::typeText(std::u16string_view text) {
    text = cutToField(text);
    if (text.empty()) return;
    deleteSelection();
    insert(text, u"<BR>");
}

void EditorDocument::replaceSelection(std::u16string_view text) {
    deleteSelection();
    insert(cutToField(text), u"<BR>");
}

void EditorDocument::paste(const std::optional<std::u16string>& fragmentHtml, const std::optional<std::u16string>& text) {
    if (kind_ == TextKind::Html && fragmentHtml) {
        deleteSelection();
        insertSource(*fragmentHtml);
        typed_.clear();
        return;
    }
    if (!text && !fragmentHtml) return;
    const std::u16string shown = text ? *text : visibleText(*fragmentHtml);
    deleteSelection();
    insert(cutToField(shown), u"<BR>\r\n");
}

void EditorDocument::insert(std::u16string_view text, std::u16string_view lineEnd) {
    if (text.empty()) return;
    const std::size_t offset = caretOffset();
    EncodedText encoded;
    switch (kind_) {
        case TextKind::Html:
            encoded = encodeForHtml(source_, offset, text, lineEnd);
            break;
        case TextKind::Rich:
            encoded = encodeForRtf(source_, offset, text);
            break;
        case TextKind::Plain:
            encoded = encodePlain(text);
            break;
    }
    // The second half of a surrogate pair that comes as two keystrokes is part of the character before it.
    const bool completesPair = !typed_.empty() && isLowSurrogate(text.front()) && offset > 0 && isHighSurrogate(source_[offset - 1]);
    insertSource(encoded.source);
    auto first = encoded.lengths.begin();
    if (completesPair) typed_.back() += *first++;
    typed_.insert(typed_.end(), first, encoded.lengths.end());
}

void EditorDocument::insertSource(std::u16string_view text) {
    if (text.empty()) return;
    const std::size_t offset = caretOffset();
    source_.insert(offset, text);
    sourceChanged(offset + text.size());
}

void EditorDocument::sourceChanged(std::size_t caretOffset) {
    map_.reset();
    sourceOffset_ = caretOffset;
    position_.reset();
    selectionLength_ = 0;
    ++revision_;
}

void EditorDocument::deleteSelection() {
    if (selectionLength_ == 0) return;
    const std::size_t start = selectionStart();
    deletePositions(start, start + selectionLength_);
    selectionLength_ = 0;
}

void EditorDocument::erase(const std::vector<SourceRange>& ranges, std::size_t caret) {
    Erasure erasure(source_, ranges);
    caret = erasure.moved(caret);
    source_ = erasure.take();
    if (kind_ == TextKind::Html) caret = keepApartInHtml(source_, caret);
    if (kind_ == TextKind::Rich && rtfNeedsDelimiter(source_, caret)) source_.insert(caret++, 1, u' ');
    sourceChanged(caret);
}

void EditorDocument::deletePositions(std::size_t from, std::size_t to) {
    typed_.clear();
    const Removal removal = map().removal(from, to);
    if (!removal.edges.empty() && joinBlocks(from, to, removal)) return;
    const std::size_t caret = map().sourceOffsetAt(from);
    if (removal.characters.empty()) {
        position_ = to;
        selectionLength_ = 0;
        return;
    }
    erase(removal.characters, caret);
}

/// Takes out characters and, with the blanks between, the tags whose edges parted them. Done only where exactly those characters go.
bool EditorDocument::joinBlocks(std::size_t from, std::size_t to, const Removal& removal) {
    const std::size_t begin = map().sourceOffsetAt(from);
    const std::size_t end = map().sourceOffsetAt(to);
    if (end < begin) return false;
    std::vector<SourceRange> ranges = removal.characters;
    ranges.insert(ranges.end(), removal.edges.begin(), removal.edges.end());
    const std::u16string_view between = std::u16string_view(source_).substr(begin, end - begin);
    MarkupScanner scanner(between);
    while (const std::optional<MarkupToken> token = scanner.next()) {
        const std::u16string_view text = between.substr(token->range.begin, token->range.end - token->range.begin);
        if (token->kind == MarkupToken::Kind::Text && isBlankRun(text)) ranges.push_back({begin + token->range.begin, begin + token->range.end});
    }
    Erasure erasure(source_, std::move(ranges));
    auto joined = std::make_shared<const TextMap>(mapOf(kind_, erasure.result()));
    std::u16string expected = map().units();
    expected.erase(from, to - from);
    if (joined->units() != expected) return false;
    const std::size_t caret = erasure.moved(begin);
    source_ = erasure.take();
    sourceChanged(caret);
    position_ = from;
    map_ = std::move(joined);
    return true;
}

void EditorDocument::backspace() {
    if (selectionLength_ != 0) {
        deleteSelection();
        return;
    }
    if (!typed_.empty()) {
        const std::size_t length = typed_.back();
        typed_.pop_back();
        const std::size_t offset = caretOffset() - length;
        source_.erase(offset, length);
        sourceChanged(offset);
        return;
    }
    const CharacterRange range = map().characterRangeBefore(caret());
    if (!range.empty()) deletePositions(range.from, range.to);
}

void EditorDocument::del() {
    if (selectionLength_ != 0) {
        deleteSelection();
        return;
    }
    const CharacterRange range = map().characterRangeAfter(caret());
    if (!range.empty()) deletePositions(range.from, range.to);
}

void EditorDocument::enter() {
    typeText(u"\r\n");
}

void EditorDocument::left() {
    setCaret(selectionLength_ != 0 ? selectionStart() : map().characterRangeBefore(caret()).from);
}

void EditorDocument::right() {
    setCaret(selectionLength_ != 0 ? caret() : map().characterRangeAfter(caret()).to);
}

void EditorDocument::home() {
    const std::size_t at = caret();
    const std::size_t lineEnd = at == 0 ? std::u16string::npos : map().units().rfind(u'\n', at - 1);
    setCaret(lineEnd == std::u16string::npos ? 0 : lineEnd + 1);
}

void EditorDocument::end() {
    setCaret(map().units().find(u'\n', caret()));
}

/// False inside a tag, an entity, a control word or a line end, where no text can go.
bool EditorDocument::isSoundPlace(std::size_t offset) const {
    if (kind_ == TextKind::Html) return !liesInMarkup(source_, offset) && !splitsReference(source_, offset);
    return !map().splitsCharacter(offset);
}

void EditorDocument::setSource(TextKind kind, std::u16string source) {
    typed_.clear();
    std::optional<std::size_t> behind;
    if (kind == kind_) {
        const std::size_t kept = source_.size() - caretOffset();
        if (alikeAtEnd(source_, source) >= kept) behind = kept;
    }
    // The visible position needs a reading of the old source, so it is asked for only where the place in the source does not serve.
    const std::optional<std::size_t> position = behind && !position_ ? std::nullopt : std::optional(caret());
    const std::size_t formerOffset = sourceOffset_.value_or(0);
    const TextKind formerKind = std::exchange(kind_, kind);
    const std::u16string former = std::exchange(source_, std::move(source));
    sourceChanged(source_.size() - behind.value_or(0));
    if (behind && isSoundPlace(*sourceOffset_)) return;
    setCaret(position ? *position : mapOf(formerKind, former).positionAt(formerOffset));
}

void EditorDocument::setByteDecoder(ByteDecoder decoder) {
    decoder_ = std::move(decoder);
    if (kind_ == TextKind::Rich) map_.reset();
}

}  // namespace lorvane::html
