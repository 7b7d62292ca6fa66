#include "mailstore/ProcessIdentity.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>

#include "host/TextFunctions.h"

namespace lorvane::mailstore {

namespace {

std::string firstLine(const std::string& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

struct Status {
    char state = '?';
    std::int64_t started = 0;
};

/// What the kernel tells of a process; nothing where there is none of that number, or it does not tell.
std::optional<Status> statusOf(std::int64_t number) {
    const std::string line = firstLine("/proc/" + std::to_string(number) + "/stat");
    // The program's own name stands in brackets and may hold anything; the fields behind it are words. The first is the third of all, the start the 22nd.
    const std::size_t name = line.rfind(')');
    if (name == std::string::npos) return std::nullopt;
    std::istringstream fields(line.substr(name + 1));
    Status status;
    fields >> status.state;
    std::string passedOver;
    for (int field = 4; field < 22; ++field) fields >> passedOver;
    fields >> status.started;
    if (!fields) return std::nullopt;
    return status;
}

std::u16string numberSpace() {
    std::error_code none;
    return host::fromUtf8(std::filesystem::read_symlink("/proc/self/ns/pid", none).string());
}

bool bothToldAndDifferent(const std::u16string& a, const std::u16string& b) {
    return !a.empty() && !b.empty() && a != b;
}

}  // namespace

ProcessIdentity thisProcess() {
    ProcessIdentity process;
    process.number = ::getpid();
    if (const auto status = statusOf(process.number)) process.started = status->started;
    process.machineStart = host::fromUtf8(firstLine("/proc/sys/kernel/random/boot_id"));
    process.numberSpace = numberSpace();
    return process;
}

bool hasEnded(const ProcessIdentity& process) {
    const ProcessIdentity here = thisProcess();
    if (bothToldAndDifferent(process.machineStart, here.machineStart)) return true;
    if (bothToldAndDifferent(process.numberSpace, here.numberSpace)) return false;
    if (process.number <= 0 || process.number > std::numeric_limits<pid_t>::max()) return true;
    if (::kill(static_cast<pid_t>(process.number), 0) != 0 && errno == ESRCH) return true;
    const auto status = statusOf(process.number);
    if (!status) return false;
    const bool ended = status->state == 'Z' || status->state == 'X';
    return ended || (process.started != 0 && status->started != process.started);
}

}  // namespace lorvane::mailstore
