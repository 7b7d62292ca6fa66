#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Apartment.h"
#include "instruments/FaultInjector.h"
#include "instruments/Recorder.h"
#include "mailstore/MailStore.h"
#include "mailstore/TempFolder.h"
#include "model/Driver.h"
#include "model/ModelHost.h"
#include "screen/ScriptedScreen.h"
#include "screen/ScriptedUser.h"
#include "services/Services.h"

/// What tests of the add-in's logic stand on.
namespace lorvane::support {

/// What varies between runs.
struct RunOptions {
    std::u16string now = u"2028-01-10T09:00:00";
    std::u16string locale = u"en-US";
    std::u16string version = u"11.0.0.5510";
    model::EditorKind editor = model::EditorKind::Html;
    model::EditorKind wordKind = model::EditorKind::Html;             ///< with Word as editor: the kind of new text
    std::uint32_t commitDelay = 0;                                    ///< event pumps
    std::u16string toolsCaption = u"&Tools", helpCaption = u"&Help";  ///< of the host's menus, in its language
    bool explorer = true;                                             ///< one is open from the start
    bool connected = true;     ///< the host has loaded the add-in; else the routines find a running host and nothing more
    bool samples = false;      ///< a first run, with the three samples; else the private folder is there already, and empty
    bool instruments = false;  ///< recorder and fault injector stand in front of all that the add-in sees

    std::shared_ptr<mailstore::MailStore> store = {};         ///< in memory where there is none; two runs may share one
    std::shared_ptr<mailstore::SettingsStore> settings = {};  ///< likewise
};

/// A body and its kind.
struct BodyText {
    mailstore::BodyKind kind = mailstore::BodyKind::Plain;
    std::u16string source;
};
inline BodyText plain(std::u16string_view text) {
    return {mailstore::BodyKind::Plain, std::u16string(text)};
}
inline BodyText html(std::u16string_view source) {
    return {mailstore::BodyKind::Html, std::u16string(source)};
}

/// An entry of the address book; `type` is "SMTP" or "EX".
struct Person {
    std::u16string name{}, address{};
    std::u16string prefix{}, given{}, middle{}, surname{}, generation{};
    std::u16string type = u"SMTP";
    std::vector<std::u16string> proxies{};
};

/// A whole machine in memory, entered on this thread for the length of a test: host, services, scripted user and the add-in.
///
///     TestRun run;
///     run.addTemplate(u"Offer", plain(u"Dear [FirstName]"));
///     const host::Inspector mail = run.newMail({u"John Public <john@example.com>"});
///     run.focus(mail, model::EditorFieldName::Body);
///     …
///     EXPECT_EQ(run.bodyShown(mail), u"Dear John");
///     EXPECT_TRUE(run.boxes().empty());
///
/// What a test sets up is not seen by the instruments; the objects it gets back have them in front, to be handed to the routine under test.
/// An act of the scripted user that failed, or never came, fails the test.
class TestRun {
public:
    explicit TestRun(RunOptions options = {});
    ~TestRun();
    TestRun(const TestRun&) = delete;
    TestRun& operator=(const TestRun&) = delete;

    // The add-in's side.
    host::Apartment& apartment() { return scope_->apartment(); }
    void connect();
    void disconnect();

    // The host.
    host::Application application() const;
    host::NameSpace session() const { return application().GetNamespace(u"MAPI"); }
    host::MAPIFolder folder(std::int32_t number) const { return session().GetDefaultFolder(number); }
    const model::Driver& driver() const { return *driver_; }
    /// The object as the add-in sees it, with the instruments in front.
    host::Object seen(const host::Object& object) const;

    // Folders and what lies in them.
    host::MAPIFolder templatesFolder() const;                                                    ///< the private one; made where it is missing
    host::MAPIFolder addFolder(const host::MAPIFolder& parent, std::u16string_view name) const;  ///< or the one that is there
    host::MAPIFolder addStore(std::u16string_view name, std::int32_t kind = 5) const;            ///< its top folder; 5 is a team's public one
    host::MailItem addTemplate(std::u16string_view subject, const BodyText& body, std::u16string_view categories = u"") const;
    host::MailItem addTemplate(const host::MAPIFolder& folder, std::u16string_view subject, const BodyText& body, std::u16string_view categories = u"") const;
    host::MailItem draft(std::u16string_view subject, const BodyText& body, std::initializer_list<std::u16string_view> to = {}) const;  ///< saved into Drafts
    host::MailItem receivedMail(std::u16string_view subject, const BodyText& body, std::u16string_view senderName = u"Jane Sender",
                                std::u16string_view senderAddress = u"jane@example.com", std::u16string_view senderAddressType = u"SMTP") const;
    /// A recipient as a person writes it: "Name <a@b>", a name or an address; not resolved yet.
    host::Recipient addRecipient(const host::MailItem& item, std::u16string_view text, std::int32_t type = host::olTo) const;
    void addContact(const Person& person) const;
    /// A file by value from the run's folder; the item is not saved.
    host::Attachment attach(const host::MailItem& item, std::string_view fileName, const host::Bytes& content) const;
    std::u16string writeFile(std::string_view name, const host::Bytes& content) const;  ///< in the run's folder; its path with "\"

    // Windows of the host.
    host::Inspector newMail(std::initializer_list<std::u16string_view> to = {}) const;                            ///< a new mail, shown
    host::Inspector openMail(const host::MailItem& item) const;                                                   ///< a saved item's window, shown and in front
    void focus(const host::Inspector& inspector, model::EditorFieldName field, std::int32_t position = 0) const;  ///< -1 is the end
    void type(std::u16string_view text);                                                                          ///< on the keyboard, into the window in front
    std::u16string bodyShown(const host::Inspector& inspector) const;                                             ///< the visible text, committed or not
    /// The item's record with all that was typed committed: `body` is the source.
    mailstore::ItemRecord record(const host::Object& item) const { return driver_->record(item); }

    // The user, the screen and time.
    screen::ScriptedUser& user() { return user_; }
    screen::Desktop& desktop() { return desktop_; }
    void pump(int times = 1);
    const std::vector<screen::ScriptedUser::BoxRecord>& boxes() const { return user_.Boxes(); }
    screen::ScriptedUser::BoxRecord lastBox() const;  ///< an empty one where there was none
    void setNow(std::u16string_view iso) { now_ = host::dateTimeFromIso(iso); }

    // The clipboard and the settings.
    std::optional<std::u16string> clipboardText() const { return services_.clipboardContent().text(); }
    /// The block of "HTML Format", a unit for each byte.
    std::optional<std::u16string> clipboardHtml() const;
    services::Clipboard& clipboard() const { return services_.clipboardContent(); }
    std::u16string setting(std::u16string_view key) const;  ///< "" where it was never written
    void setSetting(std::u16string_view key, std::u16string_view value) const;
    const services::Services& services() const { return services_; }

    const mailstore::MailStore& store() const { return *options_.store; }  ///< the first store: what the host has saved in it

    // Only in a run with instruments.
    instruments::Recorder& recorder() { return recorder_; }
    instruments::FaultInjector& faults() { return faults_; }

private:
    services::ServiceOptions serviceOptions() const;
    model::HostOptions hostOptions();
    host::Application ownApplication() const { return host::Application(host_->application()); }
    host::NameSpace ownSession() const { return ownApplication().GetNamespace(u"MAPI"); }
    host::MAPIFolder privateFolder() const;
    void write(const host::MailItem& item, std::u16string_view subject, const BodyText& body) const;

    RunOptions options_;
    host::DateTime now_;
    mailstore::test::TempFolder place_;
    std::shared_ptr<mailstore::SettingsStore> settings_;
    screen::Desktop desktop_;
    screen::WindowList windows_{desktop_};
    screen::ScriptedUser user_{windows_};
    services::Services services_;
    instruments::Recorder recorder_;
    instruments::FaultInjector faults_;
    std::unique_ptr<model::ModelHost> host_;
    std::unique_ptr<model::Driver> driver_;
    std::unique_ptr<host::ApartmentScope> scope_;
};

}  // namespace lorvane::support
