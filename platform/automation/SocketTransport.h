#pragma once

#include <filesystem>
#include <optional>

#include "automation/StreamTransport.h"

namespace lorvane::automation {

/// An open descriptor, closed with its owner.
class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const noexcept { return number_; }
    void reset(int number = -1) noexcept;

private:
    int number_;
};

/// A Unix socket that only its owner may open (mode 0600). One client is served at a time; further ones wait. The socket's file goes with the object.
class SocketTransport final : public Transport {
public:
    /// std::system_error where it cannot listen there, as where another program does. A socket that nobody listens on any more is replaced.
    SocketTransport(std::filesystem::path path, int stop);
    ~SocketTransport() override;

    bool isConnected() const noexcept override { return client_ && client_->isConnected(); }
    Received receive(Milliseconds timeout) override;
    void send(std::string_view message) override;
    Awaited awaitClient(Milliseconds timeout) override;

private:
    std::filesystem::path path_;
    int stop_;
    bool stopped_ = false;
    Descriptor listener_, connection_;
    std::optional<StreamTransport> client_;
};

}  // namespace lorvane::automation
