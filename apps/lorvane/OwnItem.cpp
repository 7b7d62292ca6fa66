#include "OwnItem.h"

#include "Streams.h"
#include "host/HostError.h"
#include "host/Outlook.h"

namespace lorvane::cli {

using host::MailItem;

OwnItem::~OwnItem() {
    if (!item) return;
    try {
        const bool saves = keep_ && !MailItem(item).EntryID().empty();
        if (inspector) run_.driver().closeInspector(inspector, saves);
        if (!keep_) run_.driver().purge(item);
    } catch (const host::HostError& error) {
        tell(std::string("lorvane: the mail stays in the store: ") + error.what());
    }
}

void openStored(Run& run, const host::Object& stored, OwnItem& own) {
    own.item = stored;
    const MailItem item(stored);
    own.inspector = run.driver().openItem(item.EntryID(), item.Parent().StoreID());
    own.item = host::Inspector(own.inspector).CurrentItem();
}

}  // namespace lorvane::cli
