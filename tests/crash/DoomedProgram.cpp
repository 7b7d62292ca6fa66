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

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lorvane::crash {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using cli::test::Program;

/// A descriptor that is closed with its owner, or before.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0) throw std::runtime_error("no descriptor");
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const noexcept { return number_; }
    void close() noexcept {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

private:
    int number_;
};

/// A pipe to or from the program, whose own end waits for nothing.
class Pipe {
public:
    enum class Own { Reading, Writing };
    explicit Pipe(Own own) : Pipe(made(), own) {}
    Descriptor from, to;

    /// What lies in it; nothing where its writer is gone or has written nothing since.
    std::string taken() {
        std::string text;
        char bytes[16384];
        for (ssize_t size; (size = ::read(from, bytes, sizeof bytes)) > 0;) text.append(bytes, static_cast<std::size_t>(size));
        return text;
    }
    /// How much of a text goes in now; its reader may be gone.
    std::size_t give(std::string_view text) const { return static_cast<std::size_t>(std::max<ssize_t>(::write(to, text.data(), text.size()), 0)); }

private:
    struct Ends {
        int number[2];
    };
    static Ends made() {
        Ends ends{};
        if (::pipe2(ends.number, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        return ends;
    }
    Pipe(const Ends& ends, Own own) : from(ends.number[0]), to(ends.number[1]) { ::fcntl(own == Own::Reading ? from : to, F_SETFL, O_NONBLOCK); }
};

/// The program's three streams.
struct Streams {
    Pipe in{Pipe::Own::Writing}, out{Pipe::Own::Reading}, err{Pipe::Own::Reading};
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

pid_t start(const Program& program, Program::Words words, const Streams& streams, const Doom& doom) {
    words.insert(words.begin(), {LORVANE_PROGRAM, "--store", program.store().string(), "--now", "2028-01-10T09:00"});
    std::vector<std::string> environment = environmentOf(program);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, streams.in.from, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, streams.out.to, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, streams.err.to, STDERR_FILENO);
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

/// Nobody speaks with a command; what it writes out is kept.
class NoClient final : public Client {
public:
    std::string_view says() override { return {}; }
    void said(std::size_t) override {}
    void hears(std::string_view) override {}
    bool isThere() const override { return true; }
    bool maySayMore() const override { return false; }
};

/// One program from its start to its end, and who speaks with it.
class Doomed {
public:
    Doomed(const Program& program, const Program::Words& words, const Doom& doom, Client& client)
        : doom_(doom), client_(client), notifier_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
        ::inotify_add_watch(notifier_, program.store().c_str(), IN_MODIFY);
        child_ = start(program, words, streams_, doom);
        if (doom.lines == 0) countedFrom_ = 0;
        streams_.in.from.close();
        streams_.out.to.close();
        streams_.err.to.close();
    }

    Fate fate() {
        accompany();
        fate_.time = since();
        int status = 0;
        if (::waitpid(child_, &status, 0) != child_) throw std::runtime_error("the process is lost");
        if (hangs_) throw std::runtime_error("the process neither ended nor said anything any more");
        fate_.killed = WIFSIGNALED(status);
        fate_.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        hear();
        fate_.err = streams_.err.taken();
        return std::move(fate_);
    }

private:
    std::chrono::microseconds since() const { return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - started_); }
    bool isDue() const { return (doom_.time && since() >= *doom_.time) || (doom_.writes && countedFrom_ && fate_.writes - *countedFrom_ >= *doom_.writes); }

    /// Waits for its end, or for the moment at which it is to be killed.
    void accompany() {
        const Descriptor end(static_cast<int>(::syscall(SYS_pidfd_open, child_, 0)));
        while (!isDue() && !hangs_) {
            letGo();
            const std::string_view text = streams_.in.to >= 0 ? client_.says() : std::string_view();
            pollfd polled[] = {{end, POLLIN, 0}, {notifier_, POLLIN, 0}, {streams_.out.from, POLLIN, 0}, {text.empty() ? -1 : streams_.in.to, POLLOUT, 0}};
            waitFor(polled);
            if (polled[1].revents != 0) fate_.writes += eventsIn(notifier_);
            if (polled[0].revents != 0) return;
            if (polled[3].revents != 0) speak(text);
            if (polled[2].revents != 0 && hear() == 0) streams_.out.from.close();
            hangs_ = !doom_.time && std::ranges::all_of(polled, [](const pollfd& one) { return one.revents == 0; });
        }
        ::kill(child_, SIGKILL);
    }

    /// Until one of them is ready, or the time has come, or for too long.
    template <std::size_t Count>
    void waitFor(pollfd (&polled)[Count]) const {
        const auto left = doom_.time ? std::max(*doom_.time - since(), std::chrono::microseconds(0)) : std::chrono::microseconds(std::chrono::minutes(2));
        const timespec wait{left.count() / 1'000'000, left.count() % 1'000'000 * 1'000};
        ::ppoll(polled, Count, &wait, nullptr);
    }

    void letGo() {
        if (!client_.maySayMore() || !client_.isThere()) streams_.in.to.close();
        if (!client_.isThere()) streams_.out.from.close();
    }

    std::size_t hear() {
        const std::string text = streams_.out.from >= 0 ? streams_.out.taken() : std::string();
        if (!text.empty()) client_.hears(text);
        fate_.out += text;
        lines_ += static_cast<std::size_t>(std::ranges::count(text, '\n'));
        if (!countedFrom_ && lines_ >= doom_.lines) countedFrom_ = fate_.writes;
        return text.size();
    }

    /// A program that reads no more is about to end.
    void speak(std::string_view text) {
        const std::size_t size = streams_.in.give(text);
        client_.said(size);
        if (size == 0) streams_.in.to.close();
    }

    const Doom& doom_;
    Client& client_;
    const Descriptor notifier_;
    Streams streams_;
    const Clock::time_point started_ = Clock::now();
    pid_t child_ = -1;
    bool hangs_ = false;
    std::size_t lines_ = 0;
    std::optional<std::uint32_t> countedFrom_;  // what was written before does not count
    Fate fate_;
};

}  // namespace

Fate runDoomed(const Program& program, const Program::Words& words, const Doom& doom, Client* client) {
    std::signal(SIGPIPE, SIG_IGN);
    fs::create_directories(program.store());
    NoClient nobody;
    return Doomed(program, words, doom, client ? *client : nobody).fate();
}

}  // namespace lorvane::crash
