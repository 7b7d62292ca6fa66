#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace lorvane::instruments {

/// The calls that other threads have for one thread. A thread that waits for another one's answer serves its own calls meanwhile, so that two threads that call
/// each other never wait for ever.
///
/// One mutex guards a mailbox; no call runs while it is held, and no thread holds two. What a call touches is handed over by these mutexes: the caller's
/// writes come before the call, and the call's before the caller goes on.
class Mailbox {
public:
    /// The error of a call into a thread that has ended (RPC_E_DISCONNECTED).
    static constexpr std::int32_t Disconnected = static_cast<std::int32_t>(0x80010108);

    /// That of the calling thread; it closes when the thread ends.
    static const std::shared_ptr<Mailbox>& ofThisThread();

    /// Runs the call on the mailbox's thread and returns when it has run; what it throws is thrown here. At once where that is this thread.
    /// HostError 0x80010108 where the thread has ended.
    void invoke(const std::function<void()>& call);
    /// Leaves work for the thread's next serving; false where the thread has ended.
    bool post(std::function<void()> work) noexcept;

    /// Runs what waits. For the mailbox's own thread.
    void serve();
    /// Runs what comes until `isOver`, which is asked again behind each call and each `wake`, with the mailbox locked. For the mailbox's own thread.
    void serveUntil(const std::function<bool()>& isOver);
    /// Has a thread that waits look again.
    void wake() noexcept;

    void close() noexcept;

private:
    struct Call;

    bool leave(std::shared_ptr<Call> call);
    static void run(Call& call);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Call>> waiting_;
    bool closed_ = false;
};

}  // namespace lorvane::instruments
