#include <gtest/gtest.h>

#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

const ShellRequest page{7, u"Open", u"https://example.com/", u"", u"", 1};

TEST(Shell, ARequestIsNotedAndNothingStarted) {
    const Rig rig;
    rig.shell.ShellExecute(7, u"Open", u"https://example.com/", u"", u"", 1);
    EXPECT_EQ(rig.services.shellRequests().requests(), std::vector<ShellRequest>{page});
}

TEST(Shell, TheRunDecidesWhatBecomesOfIt) {
    std::vector<ShellRequest> seen;
    ServiceOptions options;
    options.shell = [&](const ShellRequest& request) {
        seen.push_back(request);
        return 2;
    };
    const Rig rig(std::move(options));
    EXPECT_EQ(rig.services.shell.call(host::Member::ShellExecute, {7, u"Open", u"https://example.com/", u"", u"", 1}), host::Variant(2));
    EXPECT_EQ(seen, std::vector<ShellRequest>{page});
    EXPECT_EQ(rig.services.shellRequests().requests().size(), 1u);
}

}  // namespace
}  // namespace lorvane::services::test
