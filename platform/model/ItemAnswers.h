#pragma once

#include <memory>

#include "host/Object.h"
#include "model/ItemState.h"

namespace lorvane::model {

/// `Reply`, `ReplyAll` or `Forward` of a mail or post: a new mail, neither saved nor shown, that quotes the item and goes to whom the member says. The item
/// stays as it is.
///
/// The item's event of the member's name is raised with the mail and `Cancel` before it is handed out. Error 0x80004004 where a listener cancels it, and then
/// no mail is left, even if the listener saved it; 0x80004005 for a reply to what was neither sent nor received.
host::Object answerItem(std::shared_ptr<ItemState> item, host::Member answer);

}  // namespace lorvane::model
