#include "cli/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>

#include "host/TextFunctions.h"
#include "mailstore/MailStore.h"
#include "mailstore/SqliteStore.h"

namespace lorvane::cli::test {

namespace {

constexpr int longestSilence = 120'000;  // milliseconds

/// Both ends of a pipe, closed with it.
struct Pipe {
    Pipe() {
        if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void closeEnd(int end) {
        if (ends[end] >= 0) ::close(ends[end]);
        ends[end] = -1;
    }
    int ends[2] = {-1, -1};
};

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> result;
    for (std::string& word : words) result.push_back(word.data());
    result.push_back(nullptr);
    return result;
}

/// What every process needs to be found out and to stop at the first mistake, as the test itself was started.
std::vector<std::string> environmentOf(const Program& program, const Call& call) {
    std::map<std::string, std::string> values = {{"HOME", program.home().string()}, {"TZ", "UTC"}};
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "PATH"})
        if (const char* value = std::getenv(name)) values[name] = value;
    for (const auto& [name, value] : call.environment) values[name] = value;
    std::vector<std::string> lines;
    for (const auto& [name, value] : values) lines.push_back(name + "=" + value);
    return lines;
}

/// Starts the program in its folder. Spawned, not forked: that costs little however large the test's own memory is.
pid_t start(const Program& program, const Call& call, std::vector<std::string> words, const Pipe& in, const Pipe& out, const Pipe& err) {
    std::vector<std::string> environment = environmentOf(program, call);
    words.insert(words.begin(), LORVANE_PROGRAM);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, in.ends[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
    if (!call.outTo.empty()) ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, call.outTo.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::posix_spawn_file_actions_addchdir_np(&actions, program.folder().c_str());
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t ordinary;
    ::sigemptyset(&ordinary);
    ::sigaddset(&ordinary, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attributes, &ordinary);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, LORVANE_PROGRAM, &actions, &attributes, pointers(words).data(), pointers(environment).data());
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot start " LORVANE_PROGRAM);
    return child;
}

/// Feeds the input and takes both outputs until they end. A process that says nothing for too long is ended.
void converse(pid_t child, Pipe& in, Pipe& out, Pipe& err, std::string_view input, Ended& ended) {
    char buffer[65536];
    while (out.ends[0] >= 0 || err.ends[0] >= 0) {
        pollfd polled[] = {{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}, {in.ends[1], POLLOUT, 0}};
        if (::poll(polled, std::size(polled), longestSilence) <= 0) ::kill(child, SIGKILL);
        if (polled[2].revents != 0) {
            const ssize_t written = input.empty() ? -1 : ::write(in.ends[1], input.data(), input.size());
            if (written > 0) input.remove_prefix(static_cast<std::size_t>(written));
            if (written < 0 || input.empty()) in.closeEnd(1);
        }
        for (int stream = 0; stream < 2; ++stream) {
            if (polled[stream].revents == 0) continue;
            Pipe& pipe = stream == 0 ? out : err;
            const ssize_t count = ::read(pipe.ends[0], buffer, sizeof buffer);
            if (count <= 0) {
                pipe.closeEnd(0);
                continue;
            }
            (stream == 0 ? ended.out : ended.err).append(buffer, static_cast<std::size_t>(count));
        }
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Ended& ended) {
    return stream << "status " << ended.status << "\n--- out\n" << ended.out << "--- err\n" << ended.err;
}

Program::Program(const std::filesystem::path& root) : place_(root) {
    std::filesystem::create_directories(folder());
    std::filesystem::create_directories(home());
}

Ended Program::bare(const Words& words, const Call& call) const {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe in, out, err;
    const pid_t child = start(*this, call, words, in, out, err);
    in.closeEnd(0);
    out.closeEnd(1);
    err.closeEnd(1);
    if (call.readerGone) out.closeEnd(0);
    Ended ended;
    converse(child, in, out, err, call.input, ended);
    int status = 0;
    if (::waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ended;
}

Ended Program::operator()(const Words& words, const Call& call) const {
    Words all = {"--store", store().string()};
    if (std::ranges::find(words, "--now") == words.end()) all.insert(all.end(), {"--now", "2028-01-10T09:00"});
    all.insert(all.end(), words.begin(), words.end());
    return bare(all, call);
}

std::string Program::done(const Words& words, const Call& call) const {
    const Ended ended = (*this)(words, call);
    EXPECT_EQ(ended.status, 0) << ended;
    return ended.out;
}

std::filesystem::path Program::file(const std::string& name, std::string_view content) const {
    const std::filesystem::path path = folder() / name;
    mailstore::test::writeBytes(path, {content.begin(), content.end()});
    return path;
}

std::string Program::content(const std::string& name) const {
    return textOf(folder() / name);
}

void Program::addText(const std::string& subject, std::string_view text) const {
    done({"template", "add", "--subject", subject, "--text", "-"}, {.input = std::string(text)});
}

void Program::addHtml(const std::string& subject, std::string_view html) const {
    done({"template", "add", "--subject", subject, "--html", "-"}, {.input = std::string(html)});
}

namespace {

using Visit = std::function<void(const mailstore::MailStore&, const mailstore::FolderRecord&)>;

void forEachFolder(const mailstore::MailStore& store, const mailstore::FolderRecord& folder, const Visit& visit) {
    visit(store, folder);
    for (const mailstore::FolderRecord& child : store.childFolders(folder.entryId)) forEachFolder(store, child, visit);
}

void forEachFolder(const std::filesystem::path& place, const Visit& visit) {
    const auto store = mailstore::SqliteFile(place / "store.sqlite").mailStore();
    forEachFolder(*store, store->rootFolder(), visit);
}

}  // namespace

std::vector<mailstore::ItemRecord> Program::itemsIn(std::string_view folderName) const {
    std::vector<mailstore::ItemRecord> items;
    forEachFolder(store(), [&](const mailstore::MailStore& store, const mailstore::FolderRecord& folder) {
        if (folder.name != host::fromUtf8(folderName)) return;
        for (const mailstore::ItemHead& head : store.itemHeads(folder.entryId)) items.push_back(store.loadItem(head.entryId));
    });
    return items;
}

std::size_t Program::itemCount() const {
    std::size_t count = 0;
    forEachFolder(store(), [&](const mailstore::MailStore& store, const mailstore::FolderRecord& folder) { count += store.itemCount(folder.entryId); });
    return count;
}

std::string Program::storedState() const {
    std::u16string state;
    forEachFolder(store(), [&](const mailstore::MailStore& store, const mailstore::FolderRecord& folder) {
        state += folder.name + u" " + folder.entryId + u"\n";
        for (const mailstore::ItemHead& head : store.itemHeads(folder.entryId))
            state += u"  " + head.subject + u" " + head.entryId + u" " + host::decimal(static_cast<std::int64_t>(head.version)) + u"\n";
    });
    return host::toUtf8(state);
}

std::string python(const std::string& script, const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"python3", LORVANE_SOURCE_DIR "/tests/cli/" + script};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::string command;
    for (const std::string& word : words) command += "'" + host::toUtf8(host::Replace(host::fromUtf8(word), u"'", u"'\\''")) + "' ";
    FILE* stream = ::popen((command + "2>&1").c_str(), "r");
    if (!stream) throw std::runtime_error("no python3");
    std::string printed;
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stream)) > 0;) printed.append(buffer, count);
    EXPECT_EQ(::pclose(stream), 0) << printed;
    return printed;
}

std::filesystem::path dataFolder() {
    return LORVANE_SOURCE_DIR "/../shared/data";
}

std::vector<std::filesystem::path> realMails() {
    std::vector<std::filesystem::path> mails;
    for (const auto& entry : std::filesystem::directory_iterator(dataFolder() / "mail"))
        if (entry.path().extension() == ".eml") mails.push_back(entry.path());
    std::ranges::sort(mails);
    return mails;
}

std::string textOf(const std::filesystem::path& file) {
    const auto bytes = mailstore::test::readBytes(file);
    return {bytes.begin(), bytes.end()};
}

std::string draft(std::string_view body, std::string_view fields) {
    return "X-Unsent: 1\r\n" + std::string(fields) + "To: Mary Major <mary@example.com>\r\nSubject: Begun\r\n\r\n" + std::string(body);
}

}  // namespace lorvane::cli::test
