#include "host/basOutlInsp.h"

#include "host/Apartment.h"
#include "host/Guards.h"
#include "host/Outlook.h"
#include "host/wrapperKeys.h"

namespace lorvane::host {

namespace {

/// Hands the wrapper its item, by the item's class.
void setItem(clsInspWrap& wrapper, const Inspector& inspector) {
    const MailItem item = inspector.CurrentItem();
    switch (item.Class()) {
        case item_class::Mail:
            return wrapper.MailItem(item);
        case item_class::Contact:
            return wrapper.ContactItem(item);
        case item_class::Post:
            return wrapper.PostItem(item);
        case item_class::Appointment:
            return wrapper.AppointmentItem(item);
        case item_class::Task:
            return wrapper.TaskItem(item);
        default:
            return;
    }
}

}  // namespace

InspectorWraps& inspectorWraps() {
    return apartment().state<InspectorWraps>();
}

std::u16string AddInsp(const Object& inspector) {
    InspectorWraps& wraps = inspectorWraps();
    const auto wrapper = std::make_shared<clsInspWrap>();
    ignoringErrors([&] { wrapper->Inspector(inspector); });
    ignoringErrors([&] { setItem(*wrapper, Inspector(inspector)); });
    wrapper->Key(wraps.gInspectorKey);
    const std::u16string key = keyText(wrapper->Key());
    ignoringErrors([&] { wraps.gInspectorWraps.Add(wrapper, key); });
    ignoringErrors([&] { wrapper->InitButton(); });
    ignoringErrors([&] { increment(wraps.gInspectorKey); });
    return key;
}

void KillInsp(std::int16_t key, std::shared_ptr<clsInspWrap>& wrapper) {
    ignoringErrors([&] {
        WrapperCollection<clsInspWrap>& wraps = inspectorWraps().gInspectorWraps;
        if (wraps.Item(keyText(key)) != wrapper) throw HostError(1, u"Unexpected Error in KillInsp");
        wraps.Remove(keyText(key));
        wrapper.reset();
    });
}

}  // namespace lorvane::host
