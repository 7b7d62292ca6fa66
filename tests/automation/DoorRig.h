#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "automation/Session.h"
#include "automation/Transport.h"
#include "host/Apartment.h"
#include "mailstore/TempFolder.h"
#include "model/ModelHost.h"
#include "screen/ScriptedScreen.h"
#include "services/Services.h"

namespace lorvane::automation::test {

/// A client whose lines are known before. Every line that goes either way stands in the transcript, "> " in front of the client's own, ">> " where it came
/// early.
class ScriptedTransport final : public Transport {
public:
    /// A line comes when it is waited for, or one that is early in the middle of the command before, at its next event pump.
    void say(std::string line, bool early = false) { lines_.push_back({std::move(line), early}); }
    const std::vector<std::string>& transcript() const noexcept { return transcript_; }
    /// What was sent, as JSON.
    std::vector<Json> sent() const;

    bool isConnected() const noexcept override { return connected_; }
    Received receive(Milliseconds timeout) override;
    void send(std::string_view message) override { transcript_.push_back("< " + std::string(message)); }
    Awaited awaitClient(Milliseconds) override { return Awaited::Never; }

private:
    struct Line {
        std::string text;
        bool early;
    };
    std::deque<Line> lines_;
    std::vector<std::string> transcript_;
    bool connected_ = true;
};

struct DoorOptions {
    std::u16string version = u"11.0.0.5510";
    bool virtualTime = true;
    std::shared_ptr<mailstore::MailStore> store = {};  ///< in memory where there is none
};

/// A machine in memory with the add-in in it, and a door on it: 2028-01-10 09:00, the three sample templates, always the same identities.
///
///     DoorRig door;
///     door.ask("root", {{"name", "User"}});
///     door.serve();
///     EXPECT_EQ(door.answers().back()["result"]["class"], "User");
class DoorRig {
public:
    explicit DoorRig(const DoorOptions& options = {});
    ~DoorRig();
    DoorRig(const DoorRig&) = delete;
    DoorRig& operator=(const DoorRig&) = delete;

    /// A request for later; ids count from 1.
    int ask(const std::string& method, Json params, bool early = false);
    void say(std::string line, bool early = false) { transport_.say(std::move(line), early); }
    /// Connects the add-in and serves until the client has nothing more to say.
    void serve();
    const std::vector<std::string>& transcript() const noexcept { return transport_.transcript(); }
    std::vector<Json> sent() const { return transport_.sent(); }
    /// The answer to a request: its `result`, or the whole message where it has none.
    Json answerTo(int id) const;

    const mailstore::MailStore& store() const noexcept { return *store_; }
    screen::WindowList& windows() noexcept { return windows_; }

private:
    services::ServiceOptions serviceOptions();
    model::HostOptions hostOptions(const DoorOptions& options);
    SessionParts sessionParts(bool virtualTime);

    mailstore::test::TempFolder place_;
    std::shared_ptr<mailstore::MailStore> store_;
    ScriptedTransport transport_;
    screen::Desktop desktop_;
    screen::WindowList windows_{desktop_};
    RemoteUser user_;
    Instruments instruments_;
    VirtualClock clock_;
    Pace pace_;
    services::Services services_;
    std::unique_ptr<model::ModelHost> host_;
    std::unique_ptr<model::Driver> driver_;
    std::unique_ptr<host::ApartmentScope> scope_;
    host::Object application_, addInInst_, connection_;
    std::unique_ptr<Session> session_;
    int lastId_ = 0;
};

}  // namespace lorvane::automation::test
