#include <algorithm>

#include "host/TextFunctions.h"
#include "model/Failures.h"
#include "model/ItemState.h"

namespace lorvane::model {

namespace {

struct ItemClass {
    std::int32_t type;  ///< of `CreateItem`; -1 for one it does not make
    std::int32_t itemClass;
    std::u16string_view messageClass;
};

constexpr ItemClass itemClasses[] = {
    {0, 43, u"IPM.Note"},     {1, 26, u"IPM.Appointment"}, {2, 40, u"IPM.Contact"},  {3, 48, u"IPM.Task"},      {6, 45, u"IPM.Post"},
    {4, 42, u"IPM.Activity"}, {5, 44, u"IPM.StickyNote"},  {7, 69, u"IPM.DistList"}, {-1, 41, u"IPM.Document"},
};

bool isOrDerivesFrom(std::u16string_view messageClass, std::u16string_view base) {
    return host::equalsIgnoreCase(messageClass.substr(0, base.size()), base) && (messageClass.size() == base.size() || messageClass[base.size()] == u'.');
}

}  // namespace

std::int32_t itemClassOf(std::u16string_view messageClass) {
    const auto found = std::ranges::find_if(itemClasses, [messageClass](const ItemClass& row) { return isOrDerivesFrom(messageClass, row.messageClass); });
    return found == std::end(itemClasses) ? itemClasses[0].itemClass : found->itemClass;
}

std::u16string messageClassOfType(std::int32_t type) {
    const auto found = std::ranges::find(itemClasses, type, &ItemClass::type);
    if (type < 0 || found == std::end(itemClasses)) raiseInvalidArgument(u"The host makes no items of that type.");
    return std::u16string(found->messageClass);
}

mailstore::ItemRecord freshRecord(std::int32_t itemClass, std::u16string_view messageClass, host::DateTime now) {
    mailstore::ItemRecord record;
    record.head.itemClass = itemClass;
    record.head.messageClass = std::u16string(messageClass);
    record.properties.emplace(mailstore::tags::MessageFlags, mailstore::message_flags::Read | mailstore::message_flags::Unsent);
    record.properties.emplace(mailstore::tags::CreationTime, now);
    return record;
}

}  // namespace lorvane::model
