#include "contract/HostFixture.h"

#include <cstdio>

namespace lorvane::contract {

namespace {

Member memberOf(const Object& object, std::u16string_view name) {
    if (!object) throw HostError(runtime_error::ObjectNotSet);
    if (const auto member = object.dispatch()->memberNamed(name)) return *member;
    throw HostError(runtime_error::NoSuchMember, std::u16string(object.dispatch()->className()).append(u".").append(name));
}

}  // namespace

Variant get(const Object& object, std::u16string_view name, std::initializer_list<Argument> args) {
    return object.get(memberOf(object, name), args);
}

void put(const Object& object, std::u16string_view name, const Variant& value, std::initializer_list<Argument> args) {
    object.put(memberOf(object, name), value, args);
}

Variant call(const Object& object, std::u16string_view name, std::initializer_list<Argument> args) {
    return object.call(memberOf(object, name), args);
}

std::u16string html(std::u16string_view body) {
    return std::u16string(u"<HTML><BODY>").append(body).append(u"</BODY></HTML>");
}

std::u16string rtf(std::u16string_view run) {
    return std::u16string(u"{\\rtf1\\ansi ").append(run).append(u"}");
}

Bytes bytes(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

std::string htmlBlock(std::string_view fragment) {
    const std::string head = "<html><body><!--StartFragment-->", tail = "<!--EndFragment--></body></html>";
    constexpr std::size_t header = 105;
    char buffer[header + 1];
    std::snprintf(buffer, sizeof buffer, "Version:0.9\r\nStartHTML:%010zu\r\nEndHTML:%010zu\r\nStartFragment:%010zu\r\nEndFragment:%010zu\r\n", header,
                  header + head.size() + fragment.size() + tail.size(), header + head.size(), header + head.size() + fragment.size());
    return std::string(buffer).append(head).append(fragment).append(tail);
}

Recipient addRecipient(const MailItem& item, std::u16string_view name) {
    return Recipient(call(item.Recipients(), u"Add", {name}).toObject());
}

HostUnderTest::Identity identityOf(const MailItem& item) {
    return {item.EntryID(), item.Parent().StoreID()};
}

HostUnderTest::Identity identityOf(const MAPIFolder& folder) {
    return {folder.EntryID(), folder.StoreID()};
}

RunningHost::RunningHost(const HostWay& way, const HostSetup& setup) : host_(way.make(setup)), scope_(std::make_unique<ApartmentScope>(host_->machine())) {}

RunningHost::~RunningHost() = default;

MAPIFolder RunningHost::storeRoot(std::u16string_view name) {
    const Folders stores(object(session(), u"Folders"));
    return MAPIFolder(stores.call(Member::Item, {name}).toObject());
}

MailItem RunningHost::newItem(std::u16string_view messageClass) {
    return MailItem(call(inbox().Items(), u"Add", {messageClass}).toObject());
}

MailItem RunningHost::htmlItem(std::u16string_view body) {
    MailItem item = newItem();
    item.HTMLBody(html(body));
    return item;
}

MailItem RunningHost::plainItem(std::u16string_view body) {
    MailItem item = newItem();
    item.Body(body);
    return item;
}

MailItem RunningHost::savedItem(std::u16string_view subject) {
    MailItem item = newItem();
    item.Subject(subject);
    item.Save();
    return item;
}

MailItem RunningHost::again(const MailItem& item) {
    return session().GetItemFromID(item.EntryID(), item.Parent().StoreID());
}

Inspector RunningHost::open(const MailItem& item) {
    if (item.EntryID().empty()) item.Save();
    return host_->openItem(identityOf(item));
}

void RunningHost::pump(int times) {
    for (int i = 0; i < times; ++i) machine().screen().DoEvents();
}

void RunningHost::restart() {
    scope_.reset();
    host_->restart();
    scope_ = std::make_unique<ApartmentScope>(host_->machine());
}

RunningHost& OneHost::host() {
    return host_ ? *host_ : start({});
}

RunningHost& OneHost::start(const HostSetup& setup) {
    EXPECT_EQ(host_, nullptr) << "the host was started before";
    host_ = std::make_unique<RunningHost>(hostWays().front(), setup);
    return *host_;
}

RunningHost& EachStore::host() {
    return host_ ? *host_ : start({});
}

RunningHost& EachStore::start(const HostSetup& setup) {
    EXPECT_EQ(host_, nullptr) << "the host was started before";
    host_ = std::make_unique<RunningHost>(GetParam(), setup);
    return *host_;
}

}  // namespace lorvane::contract
