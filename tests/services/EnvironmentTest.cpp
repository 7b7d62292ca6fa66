#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "host/TextFunctions.h"
#include "services/Environment.h"
#include "services/ServicesRig.h"

namespace lorvane::services::test {
namespace {

class EnvironmentTest : public testing::Test, protected Rig {};

TEST_F(EnvironmentTest, TheUserNameIsTheLoginNameWhateverTheEnvironmentSays) {
    const VariableScope variable("USERNAME", "somebody else");
    EXPECT_EQ(environment.Variable(u"username"), loginName());
    EXPECT_EQ(environment.Variable(u"UserName"), loginName());
}

TEST_F(EnvironmentTest, TheLoginNameIsThatOfTheProcessesUser) {
    const VariableScope variable("LOGNAME", "told");
    const passwd* entry = ::getpwuid(::getuid());
    EXPECT_EQ(loginName(), entry ? host::fromUtf8(entry->pw_name) : u"told");
}

TEST(Environment, ARunCanNameItsUser) {
    ServiceOptions options;
    options.userName = u"ann";
    EXPECT_EQ(host::Environment(Services(std::move(options)).environment).Variable(u"USERNAME"), u"ann");
}

TEST_F(EnvironmentTest, OtherVariablesAreTheProcessesOwnInAnyCase) {
    const VariableScope variable("Lorvane_Test_Variable", "Grüße=ja");
    EXPECT_EQ(environment.Variable(u"LORVANE_TEST_VARIABLE"), u"Grüße=ja");
    EXPECT_EQ(environment.Variable(u"lorvane_test"), u"");
}

TEST_F(EnvironmentTest, TheOneSpelledAsAskedForGoesFirst) {
    const VariableScope upper("LORVANE_TEST_VARIABLE", "upper");
    const VariableScope lower("lorvane_test_variable", "lower");
    EXPECT_EQ(environment.Variable(u"LORVANE_TEST_VARIABLE"), u"upper");
    EXPECT_EQ(environment.Variable(u"lorvane_test_variable"), u"lower");
}

}  // namespace
}  // namespace lorvane::services::test
