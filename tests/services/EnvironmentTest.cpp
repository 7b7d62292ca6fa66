#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "host/TextFunctions.h"
#include "services/Environment.h"
#include "services/ServicesRig.h"
#include "services/SurfacePath.h"

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

TEST_F(EnvironmentTest, TheAddInsFolderIsTheRunningPrograms) {
    const std::u16string own = environment.get(host::Member::AppPath).toText();
    EXPECT_EQ(systemPath(own), std::filesystem::read_symlink("/proc/self/exe").parent_path());
    EXPECT_FALSE(own.ends_with(u'\\'));
}

TEST(Environment, ARunCanNameTheAddInsFolder) {
    ServiceOptions options;
    options.appPath = u"C:\\Lorvane";
    EXPECT_EQ(Services(std::move(options)).environment.get(host::Member::AppPath), host::Variant(u"C:\\Lorvane"));
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
