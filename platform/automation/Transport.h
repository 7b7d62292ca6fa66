#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lorvane::automation {

/// Lines from and to the program at the other end, one client at a time.
class Transport {
public:
    enum class Event {
        Line,
        TooLong,  ///< a line beyond the limit; what it held is skipped
        Nothing,  ///< the time is up
        Gone,     ///< there is no client any more, and none before `awaitClient`
    };
    struct Received {
        Event event = Event::Nothing;
        std::string line{};  ///< without its end
    };
    enum class Awaited {
        Client,
        Nothing,  ///< the time is up
        Never,    ///< no client will come any more
    };
    using Milliseconds = std::optional<std::int64_t>;  ///< none waits for as long as it takes, 0 not at all

    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default;

    virtual bool isConnected() const noexcept = 0;
    virtual Received receive(Milliseconds timeout) = 0;
    /// Sends one message, which holds no line end. Nothing where nobody is there; a client that cannot be written to is gone.
    virtual void send(std::string_view message) = 0;
    virtual Awaited awaitClient(Milliseconds timeout) = 0;
};

}  // namespace lorvane::automation
