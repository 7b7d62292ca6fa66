#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Handles.h"
#include "automation/Methods.h"
#include "automation/Pace.h"
#include "automation/RemoteUser.h"
#include "automation/Transport.h"

namespace lorvane::automation {

/// Serves requests of clients: reads a message, runs it, answers. While one waits for the user, the next ones are served inside it, so they end before it.
class Door final : public RequestSource {
public:
    /// Transport, user and pace outlive the door.
    Door(Transport& transport, RemoteUser& user, Pace& pace, std::vector<Root> roots);
    ~Door() override;
    Door(const Door&) = delete;
    Door& operator=(const Door&) = delete;

    /// Serves client after client until none will come any more. `left` runs behind each one, when nothing of it is under way any more and its objects are let
    /// go.
    void serve(const std::function<void()>& left);

    bool isConnected() const noexcept override { return transport_.isConnected(); }
    bool serveNext() override;
    void serveWaiting() override;
    void notify(std::string_view method, Json params) override;

private:
    void take(const Transport::Received& received);
    void answerLine(const std::string& line);
    std::optional<Json> answerTo(const Json& message);
    Json outcomeOf(const Request& request);

    Transport& transport_;
    RemoteUser& user_;
    Pace& pace_;
    Handles handles_;
    Methods methods_;
};

}  // namespace lorvane::automation
