#include "automation/Door.h"

#include "automation/LineReader.h"

namespace lorvane::automation {

namespace {

bool isBlank(std::string_view line) noexcept {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

}  // namespace

Door::Door(Transport& transport, RemoteUser& user, Pace& pace, std::vector<Root> roots)
    : transport_(transport),
      user_(user),
      pace_(pace),
      methods_(std::move(roots), handles_, user, [this](std::string_view method, Json params) { notify(method, std::move(params)); }) {
    user_.serveFrom(this);
}

Door::~Door() {
    user_.serveFrom(nullptr);
}

void Door::serve(const std::function<void()>& left) {
    for (;;) {
        if (serveNext()) continue;
        handles_.clear();
        left();
        Transport::Awaited awaited = Transport::Awaited::Nothing;
        while (awaited == Transport::Awaited::Nothing) {
            pace_.pass();
            awaited = transport_.awaitClient(pace_.untilNext());
        }
        if (awaited == Transport::Awaited::Never) return;
    }
}

bool Door::serveNext() {
    // What a timer did may be what is waited for.
    if (pace_.pass()) return transport_.isConnected();
    const Transport::Received received = transport_.receive(pace_.untilNext());
    pace_.pass();
    take(received);
    return received.event != Transport::Event::Gone;
}

void Door::serveWaiting() {
    pace_.pass();
    for (;;) {
        const Transport::Received received = transport_.receive(0);
        if (received.event == Transport::Event::Nothing || received.event == Transport::Event::Gone) return;
        take(received);
    }
}

void Door::take(const Transport::Received& received) {
    if (received.event == Transport::Event::Line && !isBlank(received.line)) answerLine(received.line);
    if (received.event == Transport::Event::TooLong)
        transport_.send(lineOf(errorMessage(nullptr, RpcError(rpc_code::InvalidRequest, "the line is longer than " + std::to_string(longestLine) + " bytes"))));
}

void Door::notify(std::string_view method, Json params) {
    transport_.send(lineOf(notificationMessage(method, std::move(params))));
}

void Door::answerLine(const std::string& line) {
    Json message;
    try {
        message = messageFrom(line);
    } catch (const RpcError& error) {
        return transport_.send(lineOf(errorMessage(nullptr, error)));
    }
    if (!message.is_array() || message.empty()) {
        if (const auto answer = answerTo(message)) transport_.send(lineOf(*answer));
        return;
    }
    Json answers = Json::array();
    for (const Json& one : message)
        if (auto answer = answerTo(one)) answers.push_back(std::move(*answer));
    if (!answers.empty()) transport_.send(lineOf(answers));
}

std::optional<Json> Door::answerTo(const Json& message) {
    Request request;
    try {
        request = requestFrom(message);
    } catch (const RpcError& error) {
        return errorMessage(idOf(message), error);
    }
    Json answer = outcomeOf(request);
    return request.wantsAnswer ? std::optional(std::move(answer)) : std::nullopt;
}

Json Door::outcomeOf(const Request& request) {
    const RemoteUser::Scope scope(user_, request.method == "batch");
    try {
        return resultMessage(request.id, methods_.run(request.method, request.params).answer);
    } catch (const RpcError& error) {
        return errorMessage(request.id, error);
    } catch (const host::HostError& error) {
        return errorMessage(request.id, hostFailure(error));
    } catch (const std::exception& error) {
        return errorMessage(request.id, RpcError(rpc_code::InternalError, error.what()));
    }
}

}  // namespace lorvane::automation
