#include "automation/LineReader.h"

#include <utility>

namespace lorvane::automation {

void LineReader::feed(std::string_view bytes) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        take(bytes.substr(0, end));
        endLine();
        bytes.remove_prefix(end + 1);
    }
    take(bytes);
}

void LineReader::finish() {
    if (!line_.empty() || tooLong_) endLine();
}

std::optional<Transport::Received> LineReader::next() {
    if (ready_.empty()) return std::nullopt;
    Transport::Received received = std::move(ready_.front());
    ready_.pop_front();
    return received;
}

void LineReader::take(std::string_view part) {
    if (tooLong_) return;
    if (part.size() > limit_ - line_.size()) {
        tooLong_ = true;
        std::string().swap(line_);
    } else {
        line_.append(part);
    }
}

void LineReader::endLine() {
    if (!line_.empty() && line_.back() == '\r') line_.pop_back();
    ready_.push_back({tooLong_ ? Transport::Event::TooLong : Transport::Event::Line, std::exchange(line_, {})});
    tooLong_ = false;
}

}  // namespace lorvane::automation
