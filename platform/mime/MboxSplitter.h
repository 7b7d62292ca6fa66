#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "host/Object.h"

namespace lorvane::mime {

/// Whether a file that begins with these bytes is a mailbox file: its first line that is not blank begins with "From " and is no header field.
bool beginsMailbox(std::span<const std::uint8_t> head) noexcept;

/// The messages of a mailbox file, one after the other, without holding more of the file than one of them.
///
/// Each line that begins with "From " starts a message and is no part of it (a field "From :" of an old header is none). The blank line at a message's end is
/// none of its own, and a line of ">" marks in front of "From " is given without the first mark. Line ends are CRLF or LF and stay as they are. What stands
/// in front of the first such line is a message too, unless it is blank. Any bytes may come; whether a message is one is for its reader to say.
///
///     MboxSplitter mailbox([&](std::span<std::uint8_t> buffer) { return file.read(buffer); });
///     while (const auto message = mailbox.next()) take(*message);
class MboxSplitter {
public:
    /// Fills the buffer from its start with what comes next and tells how much that is; 0 at the end. What it raises comes out of `next`.
    using Read = std::function<std::size_t(std::span<std::uint8_t> buffer)>;
    explicit MboxSplitter(Read read) : read_(std::move(read)) {}

    /// The next message, which may be empty; nothing behind the last.
    std::optional<host::Bytes> next();

private:
    bool reach(std::size_t offset);
    bool holds(std::size_t offset, std::string_view text);
    std::size_t run(std::size_t offset, std::string_view of);
    bool atMailboxLine();
    bool atQuotedLine();
    void passLine(host::Bytes* into);
    void skipByteOrderMark();

    Read read_;
    host::Bytes buffer_;
    std::size_t at_ = 0;  // in the buffer; what stands in front of it was passed
    bool started_ = false;
    bool inside_ = false;  // the mailbox line of the coming message was passed
};

}  // namespace lorvane::mime
