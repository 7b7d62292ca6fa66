#include "host/Redemption.h"

#include "host/Apartment.h"

namespace lorvane::host {

namespace {

Object wrapped(std::u16string_view progId, const Object& target) {
    const Object wrapper = apartment().machine.CreateObject(progId);
    wrapper.put(Member::Item, target);
    return wrapper;
}

}  // namespace

SafeMailItem makeSafeMailItem(const Object& item) {
    return SafeMailItem(wrapped(u"qz7mRedemption.qz7mSafeMailItem", item));
}

SafeMailItem makeSafePostItem(const Object& item) {
    return SafeMailItem(wrapped(u"qz7mRedemption.qz7mSafePostItem", item));
}

SafeInspector makeSafeInspector(const Object& inspector) {
    return SafeInspector(wrapped(u"qz7mRedemption.qz7mSafeInspector", inspector));
}

void SafeMapiCleanup() {
    apartment().machine.CreateObject(u"qz7mRedemption.qz7mMAPIUtils").call(Member::Cleanup);
}

}  // namespace lorvane::host
