#include <gtest/gtest.h>
#include <time.h>

#include <cmath>

#include "host/Locale.h"
#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

TEST(Clock, AFixedMomentStandsStill) {
    ServiceOptions options;
    options.now = [] { return host::dateTimeFromIso(u"2028-01-10T09:00"); };
    const Services services(std::move(options));
    const host::Clock clock(services.clock);
    EXPECT_EQ(host::isoText(clock.Now()), u"2028-01-10T09:00:00");
    EXPECT_EQ(clock.Now(), clock.Now());
}

TEST(Clock, TheRunMovesIt) {
    host::DateTime moment{46762};
    ServiceOptions options;
    options.now = [&moment] { return moment; };
    const Services services(std::move(options));
    const host::Clock clock(services.clock);
    moment.days += 1;
    EXPECT_EQ(clock.Now(), host::DateTime{46763});
}

TEST(Clock, OtherwiseItIsTheMachinesLocalTime) {
    // Half past five ahead of UTC: neither that zone nor a whole hour by chance.
    const VariableScope zone("TZ", "TST-5:30");
    ::tzset();
    const host::Clock clock(Services(ServiceOptions{}).clock);
    const double before = 25569 + (static_cast<double>(::time(nullptr)) + 5.5 * 3600) / 86400;
    const double shown = clock.Now().days;
    const double after = 25569 + (static_cast<double>(::time(nullptr)) + 5.5 * 3600) / 86400;
    EXPECT_GE(shown, before - 0.5 / 86400);
    EXPECT_LE(shown, after + 0.5 / 86400);
}

}  // namespace
}  // namespace lorvane::services::test
