#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "contract/HostUnderTest.h"
#include "host/Apartment.h"
#include "host/HostError.h"
#include "host/Redemption.h"

namespace lorvane::contract {

using namespace host;

// Members by name, as late binding has them.
Variant get(const Object& object, std::u16string_view name, std::initializer_list<Argument> args = {});
void put(const Object& object, std::u16string_view name, const Variant& value, std::initializer_list<Argument> args = {});
Variant call(const Object& object, std::u16string_view name, std::initializer_list<Argument> args = {});
inline std::u16string text(const Object& object, std::u16string_view name) {
    return get(object, name).toText();
}
inline std::int32_t number(const Object& object, std::u16string_view name) {
    return get(object, name).toInt32();
}
inline bool truth(const Object& object, std::u16string_view name) {
    return get(object, name).toBoolean();
}
inline Object object(const Object& of, std::u16string_view name, std::initializer_list<Argument> args = {}) {
    return get(of, name, args).toObject();
}

inline constexpr std::u16string_view emptyHtml = u"<HTML><BODY></BODY></HTML>";
/// A document around a body's source.
std::u16string html(std::u16string_view body);
/// Rich text of one run.
std::u16string rtf(std::u16string_view run);
Bytes bytes(std::string_view text);
/// A block of "HTML Format" around a fragment, all in UTF-8, with offsets that are right.
std::string htmlBlock(std::string_view fragment);

/// `Recipients.Add`.
Recipient addRecipient(const MailItem& item, std::u16string_view name);

HostUnderTest::Identity identityOf(const MailItem& item);
HostUnderTest::Identity identityOf(const MAPIFolder& folder);

/// The HostError that `use` raises; a failure of the test, and error 0, where it raises none.
template <class F>
HostError errorOf(F&& use) {
    try {
        use();
    } catch (const HostError& error) {
        return error;
    }
    ADD_FAILURE() << "no error was raised";
    return HostError(0, u"");
}
#define EXPECT_HOST_ERROR(expected, ...) EXPECT_EQ(::lorvane::contract::errorOf([&] { (void)(__VA_ARGS__); }).number(), expected) << #__VA_ARGS__
#define EXPECT_NEGATIVE_ERROR(...) EXPECT_LT(::lorvane::contract::errorOf([&] { (void)(__VA_ARGS__); }).number(), 0) << #__VA_ARGS__

/// A running host with short ways to what most cases begin with. The machine is entered as the add-in's own, so that wrappers are made as the add-in makes
/// them.
class RunningHost {
public:
    RunningHost(const HostWay& way, const HostSetup& setup);
    ~RunningHost();

    HostUnderTest& person() { return *host_; }
    Machine machine() { return host_->machine(); }
    Application application() { return Application(machine().CreateObject(u"Outlook.Application")); }
    NameSpace session() { return application().GetNamespace(u"MAPI"); }
    MAPIFolder folder(std::int32_t number) { return session().GetDefaultFolder(number); }
    MAPIFolder inbox() { return folder(default_folder::Inbox); }
    MAPIFolder storeRoot(std::u16string_view name);

    MailItem newItem() { return application().CreateItem(olMailItem); }
    MailItem newItem(std::u16string_view messageClass);  ///< in the Inbox, unsaved
    MailItem htmlItem(std::u16string_view body);         ///< an unsaved mail with `html(body)`
    MailItem plainItem(std::u16string_view body);
    MailItem savedItem(std::u16string_view subject);
    MailItem again(const MailItem& item);  ///< the saved item, taken afresh by its identity

    Inspector open(const MailItem& item);  ///< saves it where it is new, and opens it
    void pump(int times = 1);
    void sendKeys(std::u16string_view keys) { machine().screen().SendKeys(keys, true); }
    void restart();

private:
    std::unique_ptr<HostUnderTest> host_;
    std::unique_ptr<ApartmentScope> scope_;
};

/// One host, of the first way.
class OneHost : public testing::Test {
protected:
    /// The host; the first use starts it.
    RunningHost& host();
    /// Starts it with this setup; once, before the first use.
    RunningHost& start(const HostSetup& setup);
    HostUnderTest& person() { return host().person(); }

private:
    std::unique_ptr<RunningHost> host_;
};

/// The same over each kind of store.
class EachStore : public testing::TestWithParam<HostWay> {
protected:
    RunningHost& host();
    RunningHost& start(const HostSetup& setup);
    HostUnderTest& person() { return host().person(); }

private:
    std::unique_ptr<RunningHost> host_;
};
#define INSTANTIATE_EACH_STORE(suite) \
    INSTANTIATE_TEST_SUITE_P(Stores, suite, testing::ValuesIn(hostWays()), [](const testing::TestParamInfo<HostWay>& way) { return way.param.name; })

}  // namespace lorvane::contract
