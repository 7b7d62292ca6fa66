#include "NaiveGrammarCheck.h"

#include "host/TextFunctions.h"

namespace lorvane::text {

namespace {

/// A text with its folded copy beside it, in which everything is looked for. Positions count from 1; 0 is "not there".
class Text {
public:
    explicit Text(std::u16string_view text) : text_(text), folded_(fold(text)) {}

    std::size_t find(std::size_t from, std::u16string_view sought) const {
        if (from > text_.size()) return 0;
        return folded_.find(fold(sought), from - 1) + 1;
    }
    Text part(std::size_t from, std::size_t to) const { return Text(std::u16string_view(text_).substr(from - 1, to - from)); }
    bool has(std::u16string_view word) const { return find(1, word) != 0; }

    void replaceAll(const Text& fragment, std::u16string_view tag) {
        std::u16string replaced;
        std::size_t done = 0;
        for (std::size_t at = folded_.find(fragment.folded_); at != std::u16string::npos; at = folded_.find(fragment.folded_, done)) {
            replaced.append(text_, done, at - done).append(tag);
            done = at + fragment.folded_.size();
        }
        if (done == 0) return;
        replaced.append(text_, done);
        *this = Text(replaced);
    }

    const std::u16string& value() const { return text_; }

private:
    static std::u16string fold(std::u16string_view text) {
        std::u16string folded(text);
        for (char16_t& unit : folded) unit = host::foldUnit(unit);
        return folded;
    }

    std::u16string text_, folded_;
};

}  // namespace

std::u16string naiveRemoveGrammarCheck(std::u16string_view source, std::u16string_view startDelimiter, std::u16string_view endDelimiter) {
    Text text(source);
    std::size_t endPos = text.find(1, endDelimiter);
    while (endPos != 0) {
        const std::size_t startPos = text.find(1, startDelimiter);
        std::size_t next = 0;
        if (startPos == 0) {
            next = endPos;
        } else if (startPos < endPos) {
            next = endPos + endDelimiter.size();
            const Text fragment = text.part(startPos, next);
            if (fragment.has(u"FullName")) text.replaceAll(fragment, u"[FullName]");
            if (fragment.has(u"FirstName")) text.replaceAll(fragment, u"[FirstName]");
            if (fragment.has(u"Date")) text.replaceAll(fragment, u"[Date]");
        } else {
            next = startPos + 1;
        }
        endPos = text.find(next + 1, endDelimiter);
    }
    return text.value();
}

}  // namespace lorvane::text
