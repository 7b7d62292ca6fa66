#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Outlook.h"

namespace lorvane::respond {

/// Typed at the caret of an open item, saved and read back, to find the place where a template goes in. Chosen only so that it never occurs in a mail.
inline constexpr std::u16string_view caretMarker = u"Asdw34r2wjkytui983jnd2m";

/// `body` with its first `marker` (compared exactly) replaced by `text`. Without a marker the result is the marker: callers look for it first.
std::u16string Insert(std::u16string_view body, std::u16string_view marker, std::u16string_view text);

/// Sends `count` backspaces to the foreground window, each with the wait flag.
void removeSpecialString(std::int32_t count);

/// Puts a template with its formatting into an open task or appointment: typed into Word where that edits it as plain text, else by a simulated paste. Nothing
/// where either is Nothing.
void InsertMail_TaskAppnt(const host::MailItem& targetItem, const host::MailItem& templateItem);

/// True for a mail that Word edits as plain text.
bool PlainTextInWord(const host::MailItem& item);

}  // namespace lorvane::respond
