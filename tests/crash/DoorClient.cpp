#include "crash/DoorClient.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lorvane::crash {

DoorClient::DoorClient(const DoorPlan& plan, std::size_t ahead, std::optional<Leaving> leaving) : plan_(plan), ahead_(ahead), leaving_(leaving) {
    for (const DoorPlan::Request& request : plan.requests()) {
        text_ += request.line;
        ends_.push_back(text_.size());
    }
}

std::size_t DoorClient::sent() const {
    return static_cast<std::size_t>(std::ranges::upper_bound(ends_, said_) - ends_.begin());
}

std::string DoorClient::transcript() const {
    std::string lines = std::to_string(sent()) + " sent, " + std::to_string(answers()) + " answered\n";
    for (std::size_t request = 1; request <= sent(); ++request)
        lines += (ids_.contains(request) ? "  " : "? ") + plan_.requests()[request - 1].line.substr(0, 300);
    return lines;
}

std::size_t DoorClient::sizeToSay() const {
    const std::size_t requests = std::min(answers() + ahead_, ends_.size());
    const bool halfALine = leaving_ && leaving_->inTheMiddle && requests < ends_.size();
    return ends_[requests - 1] + (halfALine ? plan_.requests()[requests].line.size() / 2 : 0);
}

std::string_view DoorClient::says() {
    const std::size_t size = sizeToSay();
    return std::string_view(text_).substr(said_, size - std::min(size, said_));
}

void DoorClient::hears(std::string_view bytes) {
    heard_ += bytes;
    for (std::size_t end; (end = heard_.find('\n')) != std::string::npos; heard_.erase(0, end + 1)) takeLine(heard_.substr(0, end));
}

void DoorClient::takeLine(const std::string& line) {
    const Json message = Json::parse(line);
    if (message.contains("method")) {
        EXPECT_TRUE(message["method"] == "shown" || message["method"] == "closed") << line;
        return;
    }
    if (leaving_ && leaving_->inTheMiddle && message["id"].is_null()) return;  // what it says of half a line
    const auto id = message.at("id").get<std::size_t>();
    EXPECT_TRUE(id >= 1 && id <= sent() && ids_.insert(id).second) << "no such request waits: " << line;
    if (id < 1 || id > plan_.requests().size()) return;
    const int expected = plan_.requests()[id - 1].objectGiven;
    const Json given = message.contains("result") && message["result"].is_object() ? message["result"].value("$obj", Json()) : Json();
    EXPECT_TRUE(message.contains("result") && (expected == 0 || given == expected)) << plan_.requests()[id - 1].line << line;
}

}  // namespace lorvane::crash
