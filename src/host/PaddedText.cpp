#include "host/PaddedText.h"

namespace lorvane::host {

PaddedText::PaddedText(std::u16string_view text) {
    std::size_t longest = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] != u' ') {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < text.size() && text[end] == u' ') ++end;
        if (end - i > longest) {
            longest = end - i;
            start = i;
        }
        i = end;
    }
    *this = PaddedText(text.substr(0, start), longest, text.substr(start + longest));
}

PaddedText::PaddedText(std::u16string_view head, std::size_t blanks, std::u16string_view tail)
    : at_(static_cast<std::uint32_t>(head.size())), blanks_(static_cast<std::uint32_t>(blanks)) {
    rest_.reserve(head.size() + tail.size());
    rest_.append(head).append(tail);
}

std::u16string PaddedText::text() const {
    std::u16string whole;
    whole.reserve(length());
    whole.append(rest_, 0, at_).append(blanks_, u' ').append(rest_, at_);
    return whole;
}

bool PaddedText::operator==(const PaddedText& other) const {
    return length() == other.length() && text() == other.text();
}

}  // namespace lorvane::host
