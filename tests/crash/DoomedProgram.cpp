#include "crash/DoomedProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <vector>

namespace lorvane::crash {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using cli::test::Program;

/// A descriptor that is closed with its owner.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0) throw std::runtime_error("no descriptor");
    }
    ~Descriptor() { ::close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const noexcept { return number_; }

private:
    int number_;
};

/// A pipe that holds all that a command tells; a file could be short of room itself.
class Pipe {
public:
    Pipe() : Pipe(made()) {}
    /// What lies in it, once its writer has ended.
    std::string content() const {
        std::string text;
        char bytes[4096];
        for (ssize_t size; (size = ::read(from, bytes, sizeof bytes)) > 0;) text.append(bytes, static_cast<std::size_t>(size));
        return text;
    }
    const Descriptor from, to;

private:
    struct Ends {
        int number[2];
    };
    static Ends made() {
        Ends ends{};
        if (::pipe2(ends.number, O_CLOEXEC | O_NONBLOCK) != 0) throw std::runtime_error("no pipe");
        ::fcntl(ends.number[1], F_SETFL, 0);
        return ends;
    }
    explicit Pipe(const Ends& ends) : from(ends.number[0]), to(ends.number[1]) {}
};

/// The largest size of a file for what this process starts meanwhile.
class RoomLimit {
public:
    explicit RoomLimit(const std::optional<std::uint64_t>& bytes) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        if (!bytes) return;
        rlimit limit = before_;
        limit.rlim_cur = *bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~RoomLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    RoomLimit(const RoomLimit&) = delete;
    RoomLimit& operator=(const RoomLimit&) = delete;

private:
    rlimit before_{};
};

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> result;
    for (std::string& word : words) result.push_back(word.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentOf(const Program& program) {
    const fs::path temporary = program.home() / "tmp";
    fs::create_directories(temporary);
    std::map<std::string, std::string> values = {{"HOME", program.home().string()}, {"TMPDIR", temporary.string()}, {"TZ", "UTC"}};
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "PATH"})
        if (const char* value = std::getenv(name)) values[name] = value;
    std::vector<std::string> lines;
    for (const auto& [name, value] : values) lines.push_back(name + "=" + value);
    return lines;
}

pid_t start(const Program& program, Program::Words words, const Pipe& out, const Pipe& err, const Doom& doom) {
    words.insert(words.begin(), {LORVANE_PROGRAM, "--store", program.store().string(), "--now", "2028-01-10T09:00"});
    std::vector<std::string> environment = environmentOf(program);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, out.to, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err.to, STDERR_FILENO);
    ::posix_spawn_file_actions_addchdir_np(&actions, program.folder().c_str());
    pid_t child = -1;
    const RoomLimit limit(doom.room);
    const int error = ::posix_spawn(&child, LORVANE_PROGRAM, &actions, nullptr, pointers(words).data(), pointers(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot start " LORVANE_PROGRAM);
    return child;
}

std::uint32_t eventsIn(int notifier) {
    alignas(inotify_event) char buffer[16384];
    const ssize_t size = ::read(notifier, buffer, sizeof buffer);
    std::uint32_t count = 0;
    for (ssize_t at = 0; at < size; ++count) at += static_cast<ssize_t>(sizeof(inotify_event) + reinterpret_cast<inotify_event*>(buffer + at)->len);
    return count;
}

/// Waits for its end, or for the moment at which it is to be killed.
void accompany(pid_t child, const Doom& doom, int notifier, Fate& fate) {
    const Descriptor end(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
    const Clock::time_point started = Clock::now();
    const auto since = [started] { return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - started); };
    pollfd polled[] = {{end, POLLIN, 0}, {notifier, POLLIN, 0}};
    for (;;) {
        const auto left = doom.time ? std::max(*doom.time - since(), std::chrono::microseconds(0)) : std::chrono::microseconds(std::chrono::minutes(2));
        const timespec wait{left.count() / 1'000'000, left.count() % 1'000'000 * 1'000};
        const int ready = ::ppoll(polled, std::size(polled), &wait, nullptr);
        if (polled[1].revents != 0) fate.writes += eventsIn(notifier);
        if (polled[0].revents != 0) break;
        if (ready == 0 || (doom.writes && fate.writes >= *doom.writes)) {
            ::kill(child, SIGKILL);
            break;
        }
    }
    fate.time = since();
}

}  // namespace

Fate runDoomed(const Program& program, const Program::Words& words, const Doom& doom) {
    const Pipe out, err;
    fs::create_directories(program.store());
    const Descriptor notifier(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    ::inotify_add_watch(notifier, program.store().c_str(), IN_MODIFY);
    Fate fate;
    const pid_t child = start(program, words, out, err, doom);
    accompany(child, doom, notifier, fate);
    int status = 0;
    if (::waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
    fate.killed = WIFSIGNALED(status);
    fate.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    fate.out = out.content();
    fate.err = err.content();
    return fate;
}

}  // namespace lorvane::crash
