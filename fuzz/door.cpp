#include <algorithm>

#include "automation/DoorRig.h"
#include "fuzz/FuzzInput.h"

/// A client may say anything: each answer is JSON, and the session ends as one does whose client went away.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lorvane;
    constexpr std::size_t mostLines = 60;
    automation::test::DoorRig door;
    std::string_view rest = fuzz::Input(data, size).utf8();
    for (std::size_t lines = 0; !rest.empty() && lines < mostLines; ++lines) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        door.say(std::string(line));
    }
    door.serve();
    const auto isMessage = [](const automation::Json& message) { return message.is_object() && message.value("jsonrpc", "") == "2.0"; };
    for (const automation::Json& sent : door.sent()) {
        const bool holds = sent.is_array() ? std::all_of(sent.begin(), sent.end(), isMessage) : isMessage(sent);
        fuzz::require(holds, "each answer is a message of the protocol, or a list of them");
    }
    return 0;
}
