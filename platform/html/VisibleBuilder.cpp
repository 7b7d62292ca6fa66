#include "html/VisibleBuilder.h"

#include <algorithm>
#include <utility>

#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr char16_t NoBreakSpace = u'\u00A0';

bool isBlankText(std::u16string_view units) noexcept {
    return units.size() == 1 && isBlank(units.front());
}

}  // namespace

void VisibleBuilder::open(TagRole role, SourceRange tag) {
    switch (role) {
        case TagRole::Break:
            lineBreak(tag);
            return;
        case TagRole::Cell:
            openCell(tag);
            return;
        case TagRole::TextBox:
            ++keptBlanks_;
            return;
        case TagRole::Preformatted:
            ++keptBlanks_;
            break;
        case TagRole::Row:
            rows_.emplace_back();
            break;
        case TagRole::Block:
        case TagRole::Rule:
            break;
        case TagRole::Inline:
        case TagRole::Hidden:
            return;
    }
    edge();
    remember(tag, true);
}

void VisibleBuilder::close(TagRole role, SourceRange tag) {
    switch (role) {
        case TagRole::Cell:
            if (!floors_.empty()) floors_.pop_back();
            blanks_.clear();
            remember(tag, false);
            return;
        case TagRole::TextBox:
            if (keptBlanks_ > 0) --keptBlanks_;
            return;
        case TagRole::Preformatted:
            if (keptBlanks_ > 0) --keptBlanks_;
            break;
        case TagRole::Row:
            if (!rows_.empty()) rows_.pop_back();
            break;
        case TagRole::Block:
            break;
        case TagRole::Rule:
        case TagRole::Break:
        case TagRole::Inline:
        case TagRole::Hidden:
            return;
    }
    edge();
    remember(tag, false);
}

bool VisibleBuilder::textInFront() const {
    const std::size_t floor = floors_.empty() ? 0 : floors_.back();
    return map_.length() > std::max(lineStart_, floor);
}

void VisibleBuilder::edge() {
    blanks_.clear();
    if (textInFront()) edgePending_ = true;
}

void VisibleBuilder::remember(SourceRange tag, bool starts) {
    if (tag.empty()) return;
    tags_.push_back(tag);
    lastTagStarts_ = starts;
}

void VisibleBuilder::contentAdded() {
    tags_.clear();
    lastTagStarts_ = false;
    behindCarriageReturn_ = false;
}

void VisibleBuilder::flushEdge(std::size_t behind) {
    if (!edgePending_) return;
    edgePending_ = false;
    map_.addEdge(behind, std::exchange(tags_, {}));
    lineStart_ = map_.length();
}

void VisibleBuilder::flushBlanks() {
    if (blanks_.empty()) return;
    const SourceRange first = blanks_.front();
    if (first.end - first.begin == 1) {
        map_.addLiteral(u' ', first.begin);
    } else {
        map_.addAtom(u" ", first);
    }
    for (std::size_t i = 1; i < blanks_.size(); ++i) map_.extendLast(blanks_[i]);
    blanks_.clear();
}

void VisibleBuilder::lineBreak(SourceRange tag) {
    // An empty line that a start tag made takes text right behind that tag, else right in front of the break.
    flushEdge(lastTagStarts_ && !tags_.empty() ? tags_.back().end : tag.begin);
    blanks_.clear();
    map_.addBreak(tag);
    lineStart_ = map_.length();
    contentAdded();
}

void VisibleBuilder::openCell(SourceRange tag) {
    blanks_.clear();
    if (rows_.empty()) rows_.emplace_back();
    Row& row = rows_.back();
    if (row.cells > 0) {
        const bool cellHasText = map_.length() > row.cellStart;
        const std::size_t front = cellHasText ? tag.end : row.inside;
        // Edges at the end of a cell that has text make nothing: the tab parts it from the next.
        if (cellHasText) edgePending_ = false;
        flushEdge(front);
        std::vector<SourceRange> tags = std::exchange(tags_, {});
        tags.push_back(tag);
        map_.addTab(front, tag.end, std::move(tags));
        contentAdded();
    }
    ++row.cells;
    row.cellStart = map_.length();
    row.inside = tag.end;
    floors_.push_back(map_.length());
    remember(tag, true);
}

void VisibleBuilder::blank(SourceRange range) {
    if (edgePending_ || !textInFront()) return;
    if (!blanks_.empty() && blanks_.back().end == range.begin) {
        blanks_.back().end = range.end;
    } else {
        blanks_.push_back(range);
    }
}

void VisibleBuilder::append(std::u16string_view units, SourceRange range) {
    if (units.size() == range.end - range.begin) {
        for (std::size_t i = 0; i < units.size(); ++i) map_.addLiteral(units[i], range.begin + i);
    } else {
        map_.addAtom(units, range);
    }
}

void VisibleBuilder::preformatted(std::u16string_view units, SourceRange range) {
    const bool lineEnd = isLineEnd(units.front());
    if (units.front() == u'\n' && behindCarriageReturn_) {
        // A CR and an LF written as two entities are one line end.
        map_.extendLast(range);
        behindCarriageReturn_ = false;
        return;
    }
    append(lineEnd ? u"\n" : units, range);
    if (lineEnd) lineStart_ = map_.length();
    contentAdded();
    behindCarriageReturn_ = units.front() == u'\r';
}

void VisibleBuilder::character(std::u16string_view units, SourceRange range) {
    if (units.empty()) return;
    const bool kept = keptBlanks_ > 0;
    if (!kept && isBlankText(units)) {
        blank(range);
        return;
    }
    flushEdge(range.begin);
    flushBlanks();
    if (kept && isBlankText(units)) {
        preformatted(units, range);
        return;
    }
    append(units == std::u16string_view(&NoBreakSpace, 1) ? u" " : units, range);
    contentAdded();
}

TextMap VisibleBuilder::finish(std::size_t emptyStart) {
    map_.setEmptyStart(emptyStart);
    return std::move(map_);
}

}  // namespace lorvane::html
