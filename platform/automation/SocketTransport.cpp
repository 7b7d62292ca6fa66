#include "automation/SocketTransport.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "automation/Ready.h"

namespace lorvane::automation {

namespace {

constexpr int waitingClients = 16;
constexpr mode_t withoutRightsOfOthers = 0177;

[[noreturn]] void fail(const std::filesystem::path& path, int error) {
    throw std::system_error(error, std::generic_category(), "cannot listen at " + path.string());
}

sockaddr_un addressOf(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string& name = path.native();
    if (name.size() >= sizeof address.sun_path) fail(path, ENAMETOOLONG);
    std::memcpy(address.sun_path, name.c_str(), name.size() + 1);
    return address;
}

int newSocket(const std::filesystem::path& path) {
    const int number = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (number < 0) fail(path, errno);
    return number;
}

/// A socket's file outlives a program that was killed.
void removeAbandoned(const std::filesystem::path& path, const sockaddr_un& address) {
    struct stat found {};
    if (::lstat(path.c_str(), &found) != 0) return;
    if (!S_ISSOCK(found.st_mode)) fail(path, EEXIST);
    const Descriptor probe(newSocket(path));
    if (::connect(probe.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) fail(path, EADDRINUSE);
    if (errno != ECONNREFUSED) fail(path, errno);
    if (::unlink(path.c_str()) != 0) fail(path, errno);
}

}  // namespace

void Descriptor::reset(int number) noexcept {
    if (number_ >= 0) ::close(number_);
    number_ = number;
}

SocketTransport::SocketTransport(std::filesystem::path path, int stop) : path_(std::move(path)), stop_(stop), listener_(newSocket(path_)) {
    const sockaddr_un address = addressOf(path_);
    removeAbandoned(path_, address);
    const mode_t before = ::umask(withoutRightsOfOthers);
    const int bound = ::bind(listener_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int error = errno;
    ::umask(before);
    if (bound != 0) fail(path_, error);
    if (::listen(listener_.number(), waitingClients) != 0) fail(path_, errno);
}

SocketTransport::~SocketTransport() {
    ::unlink(path_.c_str());
}

Transport::Received SocketTransport::receive(Milliseconds timeout) {
    if (!client_) return {Event::Gone};
    Received received = client_->receive(timeout);
    stopped_ = stopped_ || client_->isStopped();
    return received;
}

void SocketTransport::send(std::string_view message) {
    if (client_) client_->send(message);
}

Transport::Awaited SocketTransport::awaitClient(Milliseconds timeout) {
    if (isConnected()) return Awaited::Client;
    if (stopped_) return Awaited::Never;
    client_.reset();
    connection_.reset();
    switch (awaitReadable(listener_.number(), stop_, timeout)) {
        case Ready::Stop:
            stopped_ = true;
            return Awaited::Never;
        case Ready::TimeUp:
            return Awaited::Nothing;
        case Ready::Yes:
            break;
    }
    connection_.reset(::accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC));
    if (connection_.number() < 0) return Awaited::Nothing;
    client_.emplace(connection_.number(), connection_.number(), stop_);
    return Awaited::Client;
}

}  // namespace lorvane::automation
