#include "services/Clock.h"

#include <time.h>

#include "host/Locale.h"

namespace lorvane::services {

host::DateTime machineNow() {
    const time_t now = ::time(nullptr);
    tm local{};
    ::localtime_r(&now, &local);
    return host::dateTimeFrom({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec});
}

std::span<const Clock::Row> Clock::rows() noexcept {
    static constexpr Row table[] = {{host::Member::Now, &Clock::Now}};
    return table;
}

host::Variant Clock::Now(host::Args) {
    return now_();
}

}  // namespace lorvane::services
