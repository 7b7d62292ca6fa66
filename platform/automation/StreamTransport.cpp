#include "automation/StreamTransport.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "automation/Ready.h"

namespace lorvane::automation {

namespace {

constexpr std::size_t readAtOnce = 64 << 10;
/// What a pipe or socket takes without blocking, once it takes anything.
constexpr std::size_t writtenAtOnce = 4096;

}  // namespace

Transport::Received StreamTransport::receive(Milliseconds timeout) {
    for (;;) {
        if (!connected_) return {Event::Gone};
        if (auto line = reader_.next()) return std::move(*line);
        if (ended_) {
            connected_ = false;
            continue;
        }
        switch (awaitReadable(input_, stop_, timeout)) {
            case Ready::TimeUp:
                return {Event::Nothing};
            case Ready::Stop:
                stop();
                break;
            case Ready::Yes:
                read();
        }
    }
}

void StreamTransport::read() {
    char buffer[readAtOnce];
    const ssize_t count = ::read(input_, buffer, sizeof buffer);
    if (count > 0) return reader_.feed({buffer, static_cast<std::size_t>(count)});
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    ended_ = true;
    reader_.finish();
}

void StreamTransport::send(std::string_view message) {
    write(message);
    write("\n");
}

void StreamTransport::write(std::string_view bytes) {
    while (writable_ && !bytes.empty()) {
        if (awaitWritable(output_, stop_) == Ready::Stop) return stop();
        const ssize_t count = ::write(output_, bytes.data(), std::min(bytes.size(), writtenAtOnce));
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR && errno != EAGAIN)
            connected_ = writable_ = false;
    }
}

void StreamTransport::stop() noexcept {
    stopped_ = true;
    connected_ = writable_ = false;
}

Transport::Awaited StreamTransport::awaitClient(Milliseconds) {
    return connected_ ? Awaited::Client : Awaited::Never;
}

}  // namespace lorvane::automation
