#pragma once

#include "automation/LineReader.h"
#include "automation/Transport.h"

namespace lorvane::automation {

/// One client over two open descriptors, which are not owned. It is gone with the end of its input, once its last line has been read, and where it cannot be
/// written to. What is sent behind the end of its input still goes out. A descriptor that becomes readable ends everything: `stop`, -1 for none.
class StreamTransport final : public Transport {
public:
    StreamTransport(int input, int output, int stop = -1, std::size_t limit = longestLine) noexcept
        : input_(input), output_(output), stop_(stop), reader_(limit) {}

    bool isConnected() const noexcept override { return connected_; }
    bool isStopped() const noexcept { return stopped_; }
    Received receive(Milliseconds timeout) override;
    void send(std::string_view message) override;
    Awaited awaitClient(Milliseconds timeout) override;

private:
    void write(std::string_view bytes);
    void read();
    void stop() noexcept;

    int input_, output_, stop_;
    LineReader reader_;
    bool connected_ = true;
    bool ended_ = false;  // the input; lines may still wait
    bool writable_ = true;
    bool stopped_ = false;
};

}  // namespace lorvane::automation
