#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "automation/DoorRig.h"
#include "host/BuildSwitches.h"
#include "host/TextFunctions.h"
#include "support/GoldenText.h"

/// Sessions as text files: what a client says ("> ", or ">> " without waiting for the answer before) and what comes back ("< "), in the order it goes over the
/// line. "# " is a comment, "! " an option.
namespace lorvane::automation::test {
namespace {

const std::filesystem::path folder = std::filesystem::path(LORVANE_SOURCE_DIR) / "tests/automation/sessions";

std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

bool isOfClient(const std::string& line) {
    return line.starts_with("> ") || line.starts_with(">> ");
}

std::vector<std::filesystem::path> sessionFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".session") files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

/// Where the two configurations of the build show a client different things each has a session of its own: "! processes on", "! processes off".
std::vector<std::filesystem::path> sessionsOfThisConfiguration() {
    const std::string other = host::ProcessFeatureEnabled ? "! processes off" : "! processes on";
    std::vector<std::filesystem::path> files = sessionFiles();
    std::erase_if(files, [&](const auto& file) {
        const std::vector<std::string> lines = linesOf(file);
        return std::ranges::find(lines, other) != lines.end();
    });
    return files;
}

DoorOptions optionsOf(const std::vector<std::string>& lines) {
    DoorOptions options;
    constexpr std::string_view version = "! version ";
    for (const std::string& line : lines) {
        if (line.starts_with(version)) options.version = host::fromUtf8(line.substr(version.size()));
        if (line == "! real time") options.virtualTime = false;
    }
    return options;
}

/// The comments stay where they are: in front of the line of the client that they were written for.
std::string transcriptOf(const std::vector<std::string>& lines) {
    DoorRig door(optionsOf(lines));
    for (const std::string& line : lines)
        if (isOfClient(line)) door.say(line.substr(line.find(' ') + 1), line.starts_with(">>"));
    door.serve();
    std::string text;
    auto source = lines.begin();
    for (const std::string& line : door.transcript()) {
        if (isOfClient(line)) {
            for (; source != lines.end() && !isOfClient(*source); ++source)
                if (!source->starts_with("< ")) text += *source + "\n";
            if (source != lines.end()) ++source;
        }
        text += line + "\n";
    }
    return text;
}

class Sessions : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Sessions, GoAsTheFileTells) {
    support::expectGolden(std::filesystem::relative(GetParam(), std::filesystem::path(LORVANE_SOURCE_DIR) / "tests"), transcriptOf(linesOf(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(All, Sessions, testing::ValuesIn(sessionsOfThisConfiguration()), [](const auto& session) {
    std::string name = session.param.stem().string();
    std::erase_if(name, [](char character) { return !std::isalnum(static_cast<unsigned char>(character)); });
    return name;
});

TEST(SessionFiles, UseEachMethodEachRootAndEachMemberOfTheUser) {
    std::set<std::string> methods, roots, members;
    const auto note = [&](const auto& again, const Json& request) -> void {
        if (!request.is_object() || !request.contains("method")) return;
        methods.insert(request["method"]);
        const Json params = request.value("params", Json::object());
        if (params.is_object() && params.contains("name") && params["name"].is_string()) roots.insert(params["name"]);
        if (params.is_object() && params.contains("member") && params["member"].is_string()) members.insert(params["member"]);
        if (params.is_array())
            for (const Json& entry : params) again(again, entry);
    };
    for (const auto& file : sessionFiles())
        for (const std::string& line : linesOf(file))
            if (isOfClient(line)) note(note, Json::parse(line.substr(line.find(' ') + 1), nullptr, false));
    for (const MethodRow& row : methodRows()) EXPECT_TRUE(methods.contains(std::string(row.name))) << row.name;
    for (const RootRow& row : rootRows()) EXPECT_TRUE(roots.contains(std::string(row.name))) << row.name;
    for (const PersonRow& row : personRows()) EXPECT_TRUE(members.contains(host::toUtf8(row.name))) << host::toUtf8(row.name);
}

}  // namespace
}  // namespace lorvane::automation::test
