#include "host/Redemption.h"

#include "host/Apartment.h"

namespace lorvane::host {

namespace {

SafeMailItem wrapped(std::u16string_view progId, const Object& item) {
    SafeMailItem safe(apartment().machine.CreateObject(progId));
    safe.Item(item);
    return safe;
}

}  // namespace

SafeMailItem makeSafeMailItem(const Object& item) { return wrapped(u"qz7mRedemption.qz7mSafeMailItem", item); }

SafeMailItem makeSafePostItem(const Object& item) { return wrapped(u"qz7mRedemption.qz7mSafePostItem", item); }

void SafeMapiCleanup() { apartment().machine.CreateObject(u"qz7mRedemption.qz7mMAPIUtils").call(Member::Cleanup); }

}  // namespace lorvane::host
