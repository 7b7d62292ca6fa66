#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

#include "automation/DoorRig.h"

/// Lines of the sessions with a few bytes changed: whatever a client says, the door answers what it can and goes on.
namespace lorvane::automation::test {
namespace {

std::vector<std::string> clientLines() {
    std::vector<std::string> lines;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(LORVANE_SOURCE_DIR) / "tests/automation/sessions")) {
        std::ifstream stream(entry.path());
        // Passing years of time is slow, and nothing new.
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with("> {") && line.find("Advance") == std::string::npos) lines.push_back(line.substr(2));
    }
    std::ranges::sort(lines);
    return lines;
}

class Mutation {
public:
    explicit Mutation(std::uint32_t seed) : random_(seed) {}

    std::string of(std::string line) {
        for (std::size_t changes = random_() % 4; changes > 0 && !line.empty(); --changes) change(line);
        return line;
    }

private:
    void change(std::string& line) {
        const std::size_t at = random_() % line.size();
        switch (random_() % 5) {
            case 0:
                line.erase(at, 1 + random_() % 8);
                break;
            case 1:
                line[at] = static_cast<char>(random_());
                break;
            case 2:
                line.insert(at, line.substr(random_() % line.size(), random_() % 16));
                break;
            case 3:
                line[at] = "0123456789\"[]{},:"[random_() % 17];
                break;
            default:
                line.insert(at, std::string(random_() % 80, "[{\"\\"[random_() % 4]));
        }
    }

    std::mt19937 random_;  // of the standard, so that a seed means the same everywhere
};

class Fuzz : public testing::TestWithParam<std::uint32_t> {};

TEST_P(Fuzz, TheDoorOutlivesWhateverItIsTold) {
    const std::vector<std::string> lines = clientLines();
    ASSERT_GT(lines.size(), 100U);
    Mutation mutation(GetParam());
    DoorRig door;
    for (const std::string& line : lines) door.say(mutation.of(line));
    door.say(R"({"jsonrpc":"2.0","id":"last","method":"root","params":{"name":"User"}})");
    door.serve();
    bool lastAnswered = false;
    for (const Json& message : door.sent()) {
        for (const Json& one : message.is_array() ? message : Json::array({message})) {
            EXPECT_EQ(one.value("jsonrpc", ""), "2.0") << one;
            EXPECT_TRUE(one.contains("method") || (one.contains("id") && one.contains("result") != one.contains("error"))) << one;
        }
        if (message.is_object() && message.contains("id") && message["id"] == "last") lastAnswered = message.contains("result");
    }
    EXPECT_TRUE(lastAnswered);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Fuzz, testing::Range(1U, 31U));

}  // namespace
}  // namespace lorvane::automation::test
