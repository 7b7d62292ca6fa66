#include "automation/ServeProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "mailstore/SqliteStore.h"

namespace lorvane::automation::test {

namespace {

constexpr int longestSilence = 60'000;  // milliseconds

struct Pipe {
    Pipe() {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    std::array<int, 2> ends{-1, -1};
};

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> result;
    for (std::string& word : words) result.push_back(word.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentIn(const std::filesystem::path& home) {
    std::vector<std::string> lines = {"HOME=" + home.string(), "TZ=UTC", "LC_ALL=C.UTF-8"};
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "PATH"})
        if (const char* value = std::getenv(name)) lines.push_back(std::string(name) + "=" + value);
    return lines;
}

/// Starts a program with its three streams on these descriptors.
pid_t spawn(std::vector<std::string> words, std::vector<std::string> environment, int in, int out, int err) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    pid_t child = -1;
    const int error = ::posix_spawnp(&child, words.front().c_str(), &actions, nullptr, pointers(words).data(), pointers(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot start " + words.front());
    return child;
}

int statusOf(pid_t process) {
    int status = 0;
    if (::waitpid(process, &status, 0) != process) throw std::runtime_error("the process is lost");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

Json resultOf(Json message) {
    return message.contains("result") ? message["result"] : message;
}

std::string requestLine(int id, const std::string& method, const Json& params) {
    return Json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump() + "\n";
}

}  // namespace

void Line::open(int reading, int writing) {
    reading_.reset(reading);
    writing_.reset(writing);
}

void Line::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(writing_.number() >= 0 ? writing_.number() : reading_.number(), bytes.data(), bytes.size());
        if (count <= 0) throw std::runtime_error("nobody reads");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string Line::read() {
    for (;;) {
        if (const std::size_t end = rest_.find('\n'); end != std::string::npos) {
            std::string line = rest_.substr(0, end);
            rest_.erase(0, end + 1);
            return line;
        }
        pollfd polled{reading_.number(), POLLIN, 0};
        if (::poll(&polled, 1, longestSilence) <= 0) throw std::runtime_error("nothing comes");
        char buffer[65536];
        const ssize_t count = ::read(reading_.number(), buffer, sizeof buffer);
        if (count <= 0) return std::exchange(rest_, {});
        rest_.append(buffer, static_cast<std::size_t>(count));
    }
}

void Line::closeWriting() noexcept {
    writing_.reset();
}

ServeProcess::ServeProcess(const std::vector<std::string>& options, const std::filesystem::path& store)
    : store_(store.empty() ? place_.path() / "store" : store) {
    std::signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> words = {LORVANE_PROGRAM, "serve", "--store", store_.string()};
    words.insert(words.end(), options.begin(), options.end());
    const Pipe in, out, err;
    process_ = spawn(words, environmentIn(place_.path()), in.ends[0], out.ends[1], err.ends[1]);
    for (const int end : {in.ends[0], out.ends[1], err.ends[1]}) ::close(end);
    line_.open(out.ends[0], in.ends[1]);
    errors_.open(err.ends[0], -1);
}

ServeProcess::~ServeProcess() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    statusOf(process_);
}

void ServeProcess::send(const std::string& method, const Json& params) {
    write(requestLine(++lastId_, method, params));
}

Json ServeProcess::read() {
    const std::string line = line_.read();
    return line.empty() ? Json() : Json::parse(line);
}

Json ServeProcess::ask(const std::string& method, const Json& params) {
    send(method, params);
    for (;;) {
        Json message = read();
        if (message.is_null() || message.contains("id")) return message.is_null() ? message : resultOf(std::move(message));
    }
}

void ServeProcess::signal(int number) const {
    ::kill(process_, number);
}

int ServeProcess::wait() {
    return statusOf(std::exchange(process_, -1));
}

std::unique_ptr<Line> connectTo(const std::filesystem::path& socket) {
    const int number = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.native().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::connect(number, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << socket;
    return std::make_unique<Line>(number);
}

Json askOver(Line& line, const std::string& method, const Json& params) {
    line.write(requestLine(1, method, params));
    for (;;) {
        const std::string answer = line.read();
        if (answer.empty()) return nullptr;
        Json message = Json::parse(answer);
        if (message.contains("id")) return resultOf(std::move(message));
    }
}

Printed runExample(const std::string& script, const std::vector<std::string>& arguments) {
    const mailstore::test::TempFolder home;
    std::vector<std::string> words = {"python3", LORVANE_SOURCE_DIR "/examples/" + script};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = environmentIn(home.path());
    environment.emplace_back("PYTHONDONTWRITEBYTECODE=1");
    const Pipe in, out;
    const pid_t child = spawn(words, environment, in.ends[0], out.ends[1], out.ends[1]);
    for (const int end : {in.ends[0], in.ends[1], out.ends[1]}) ::close(end);
    const Descriptor reading(out.ends[0]);
    std::string text;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(reading.number(), buffer, sizeof buffer)) > 0;) text.append(buffer, static_cast<std::size_t>(count));
    return {statusOf(child), text};
}

namespace {

std::size_t countIn(const mailstore::MailStore& store, const mailstore::FolderRecord& folder, std::u16string_view name) {
    std::size_t count = folder.name == name ? store.itemCount(folder.entryId) : 0;
    for (const mailstore::FolderRecord& child : store.childFolders(folder.entryId)) count += countIn(store, child, name);
    return count;
}

}  // namespace

std::size_t itemCount(const std::filesystem::path& store, std::u16string_view folder) {
    const mailstore::SqliteFile file(store / "store.sqlite");
    const auto mails = file.mailStore();
    return countIn(*mails, mails->rootFolder(), folder);
}

}  // namespace lorvane::automation::test
