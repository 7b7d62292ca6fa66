#include "text/GrammarCheck.h"

#include <algorithm>

#include "host/TextFunctions.h"
#include "text/TagPieces.h"

namespace lorvane::text {

using namespace host;

namespace {

/// The clean-up as it is told, with a pass over the text for each fragment: for delimiters that can overlap something.
std::u16string stepByStep(std::u16string text, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    std::size_t endPos = InStr(1, text, endDelimiter, Compare::IgnoreCase);
    while (endPos != 0) {
        const std::size_t startPos = InStr(1, text, startDelimiter, Compare::IgnoreCase);
        std::size_t next = startPos + 1;
        if (startPos == 0) {
            next = endPos;
        } else if (startPos < endPos) {
            next = endPos + endDelimiter.size();
            const std::u16string fragment(Mid(text, startPos, next - startPos));
            for (const TagWord& each : tagWords) {
                if (InStr(1, fragment, each.word, Compare::IgnoreCase) != 0) text = Replace(text, fragment, each.tag, Compare::IgnoreCase);
            }
        }
        endPos = InStr(next + 1, text, endDelimiter, Compare::IgnoreCase);
    }
    return text;
}

/// The same over pieces. Distances stand for the numbers of the text: the search for the next end delimiter goes on one unit behind the number that ended the
/// fragment, also where the text behind that number has meanwhile moved up.
void overPieces(TagPieces& pieces) {
    constexpr auto nowhere = TagPieces::nowhere;
    constexpr std::size_t missed = 1;  // an end delimiter directly behind a fragment is not seen
    TagPieces::Fragment fragment;
    TagPieces::Words words = 0;
    TagPieces::Place end = pieces.firstEnd(pieces.first(), 0);
    TagPieces::Place start = pieces.firstStart();
    TagPieces::Place unread = start;
    while (start != nowhere && end != nowhere) {
        if (start > end) {
            end = pieces.firstEnd(start, 1 + missed);
            continue;
        }
        // A start delimiter that stays in front makes the fragments longer: only what is new is read.
        words |= pieces.wordsIn(unread, end);
        if (words == 0) {
            unread = pieces.after(end);
            end = pieces.firstEnd(unread, missed);
            continue;
        }

        pieces.read(start, end, fragment);
        std::size_t putIn = 0;  // the length of what stands there now: the first tag, since the fragment is gone for the others
        for (std::size_t tag = 0; tag < tagWords.size(); ++tag) {
            if ((words >> tag & 1) == 0) continue;
            pieces.replaceAll(fragment, tag);
            if (putIn == 0) putIn = tagWords[tag].tag.size();
        }
        end = pieces.firstEnd(pieces.after(start), fragment.length - putIn + missed);
        start = pieces.firstStart();
        unread = start;
        words = 0;
    }
}

/// Whether one of the words stands in the text. Looked for in ever longer parts, since a text that holds one often holds it soon, and not the first of them.
bool holdsWord(std::u16string_view text) {
    constexpr std::size_t reach = 16;  // the words are shorter
    for (std::size_t length = 4096; !text.empty(); length *= 2) {
        const std::u16string_view part = text.substr(0, length + reach);
        if (std::ranges::any_of(tagWords, [part](const TagWord& each) { return InStr(1, part, each.word, Compare::IgnoreCase) != 0; })) return true;
        text = text.substr(std::min(length, text.size()));
    }
    return false;
}

/// Whether a fragment with one of the words can stand in the text at all.
bool canHoldFragment(std::u16string_view text, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    const std::size_t start = InStr(1, text, startDelimiter, Compare::IgnoreCase);
    if (start == 0 || InStr(start, text, endDelimiter, Compare::IgnoreCase) == 0) return false;
    return holdsWord(text.substr(start - 1));
}

}  // namespace

const std::u16string& RemoveGrammarCheck(std::u16string& text, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    if (!TagPieces::canHold(text, startDelimiter, endDelimiter)) {
        text = stepByStep(text, startDelimiter, endDelimiter);
    } else if (canHoldFragment(text, startDelimiter, endDelimiter)) {
        TagPieces pieces(text, startDelimiter, endDelimiter);
        overPieces(pieces);
        if (pieces.isChanged()) pieces.write(text);
    }
    return text;
}

}  // namespace lorvane::text
