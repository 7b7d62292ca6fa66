#include "automation/Ready.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace lorvane::automation {

namespace {

Ready await(int descriptor, short events, int stop, Transport::Milliseconds timeout) {
    pollfd polled[] = {{descriptor, events, 0}, {stop, POLLIN, 0}};
    const int wait = timeout ? static_cast<int>(std::min<std::int64_t>(*timeout, std::numeric_limits<int>::max())) : -1;
    const int count = ::poll(polled, 2, wait);
    if (count > 0 && polled[1].revents != 0) return Ready::Stop;
    if (count > 0) return Ready::Yes;
    // A signal that has something to say is told by `stop`, which is looked at with the next wait.
    return count < 0 && errno != EINTR ? Ready::Stop : Ready::TimeUp;
}

}  // namespace

Ready awaitReadable(int descriptor, int stop, Transport::Milliseconds timeout) {
    return await(descriptor, POLLIN, stop, timeout);
}

Ready awaitWritable(int descriptor, int stop) {
    Ready ready = Ready::TimeUp;
    while (ready == Ready::TimeUp) ready = await(descriptor, POLLOUT, stop, std::nullopt);
    return ready;
}

}  // namespace lorvane::automation
