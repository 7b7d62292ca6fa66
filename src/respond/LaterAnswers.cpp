#include "respond/LaterAnswers.h"

namespace lorvane::respond {

using namespace host;

void oe_NewMail_UsingTempl(const Object&, bool, bool, std::u16string_view, std::u16string_view, bool) {}

MailItem ReplyUsingTemplate(const MailItem&, const Object&, bool, std::int32_t, bool, std::u16string_view, std::u16string_view) {
    return {};
}

}  // namespace lorvane::respond
