#include "mime/MboxSplitter.h"

#include <algorithm>
#include <cstring>

namespace lorvane::mime {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view mailboxWord = "From ";
constexpr std::size_t chunk = std::size_t{1} << 16;

std::string_view textOf(std::span<const std::uint8_t> bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Takes away the blank line that a writer of mailboxes puts behind each message.
void dropLastBlankLine(host::Bytes& message) {
    const std::string_view text = textOf(message);
    for (const std::string_view end : {std::string_view("\r\n"), std::string_view("\n")}) {
        if (!text.ends_with(end)) continue;
        const std::string_view rest = text.substr(0, text.size() - end.size());
        if (rest.empty() || rest.ends_with('\n')) message.resize(rest.size());
        return;
    }
}

}  // namespace

bool beginsMailbox(std::span<const std::uint8_t> head) noexcept {
    std::string_view text = textOf(head);
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
    if (!text.starts_with(mailboxWord)) return false;
    const std::size_t next = text.find_first_not_of(" \t", mailboxWord.size());
    return next == std::string_view::npos || text[next] != ':';
}

/// Whether there is a byte so far behind the place, read in where need be.
bool MboxSplitter::reach(std::size_t offset) {
    while (at_ + offset >= buffer_.size()) {
        if (!read_) return false;
        buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(at_));
        at_ = 0;
        const std::size_t before = buffer_.size();
        buffer_.resize(before + chunk);
        const std::size_t count = read_(std::span(buffer_).subspan(before));
        buffer_.resize(before + count);
        if (count == 0) read_ = nullptr;
    }
    return true;
}

bool MboxSplitter::holds(std::size_t offset, std::string_view text) {
    return reach(offset + text.size() - 1) && textOf(buffer_).substr(at_ + offset).starts_with(text);
}

/// How many of these characters stand there in a row.
std::size_t MboxSplitter::run(std::size_t offset, std::string_view of) {
    std::size_t count = 0;
    while (reach(offset + count) && of.find(static_cast<char>(buffer_[at_ + offset + count])) != std::string_view::npos) ++count;
    return count;
}

bool MboxSplitter::atMailboxLine() {
    if (!holds(0, mailboxWord)) return false;
    return !holds(mailboxWord.size() + run(mailboxWord.size(), " \t"), ":");
}

bool MboxSplitter::atQuotedLine() {
    const std::size_t marks = run(0, ">");
    return marks > 0 && holds(marks, mailboxWord);
}

/// Goes behind the line, a line of any length in pieces.
void MboxSplitter::passLine(host::Bytes* into) {
    while (reach(0)) {
        const std::size_t end = textOf(buffer_).find('\n', at_);
        const std::size_t next = end == std::string_view::npos ? buffer_.size() : end + 1;
        if (into) into->insert(into->end(), buffer_.begin() + static_cast<std::ptrdiff_t>(at_), buffer_.begin() + static_cast<std::ptrdiff_t>(next));
        at_ = next;
        if (end != std::string_view::npos) return;
    }
}

void MboxSplitter::skipByteOrderMark() {
    if (!std::exchange(started_, true) && holds(0, byteOrderMark)) at_ += byteOrderMark.size();
}

std::optional<host::Bytes> MboxSplitter::next() {
    skipByteOrderMark();
    host::Bytes message;
    const auto isMessage = [&](bool wasInside) { return wasInside || textOf(message).find_first_not_of("\r\n") != std::string_view::npos; };
    while (reach(0)) {
        if (atMailboxLine()) {
            passLine(nullptr);
            if (isMessage(std::exchange(inside_, true))) {
                dropLastBlankLine(message);
                return message;
            }
            message.clear();
            continue;
        }
        if (atQuotedLine()) ++at_;
        passLine(&message);
    }
    if (!isMessage(std::exchange(inside_, false))) return std::nullopt;
    dropLastBlankLine(message);
    return message;
}

}  // namespace lorvane::mime
