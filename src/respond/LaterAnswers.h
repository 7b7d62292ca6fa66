#pragma once

#include <cstdint>
#include <string_view>

#include "host/Outlook.h"

/// The chooser's other two modes: a mail that is made of the template, and a mail that is answered with it. Neither is there yet.
namespace lorvane::respond {

/// Makes a new mail from a template and shows it. With both identities of an appointment the mail is linked with it; without `skipPrompt` the user is asked
/// before a sent or received mail serves as template. Not there yet: does nothing and shows nothing.
void oe_NewMail_UsingTempl(const host::Object& templateItem, bool withFormat, bool skipPrompt, std::u16string_view appointmentEntryID,
                           std::u16string_view appointmentStoreID, bool replaceTags);

/// Answers a mail with a template and shows the answer, which it gives back; `kind` is 1 reply, 2 reply to all, 3 forward. With both identities of an
/// appointment the answer is linked with it. Not there yet: shows nothing and answers Nothing.
host::MailItem ReplyUsingTemplate(const host::MailItem& templateItem, const host::Object& answered, bool withFormat, std::int32_t kind, bool fromInspector,
                                  std::u16string_view appointmentEntryID, std::u16string_view appointmentStoreID);

}  // namespace lorvane::respond
