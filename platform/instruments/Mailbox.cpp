#include "instruments/Mailbox.h"

#include <future>
#include <utility>

#include "host/HostError.h"

namespace lorvane::instruments {

/// Work for a thread, and the mailbox of the thread that waits for it; none where nobody does.
struct Mailbox::Call {
    std::packaged_task<void()> work;
    std::shared_ptr<Mailbox> caller;
    // Guarded by the caller's mutex.
    bool isOver = false, isRefused = false;
};

namespace {

/// Closes the mailbox of a thread with it.
struct OfThread {
    std::shared_ptr<Mailbox> mailbox = std::make_shared<Mailbox>();
    OfThread() = default;
    ~OfThread() { mailbox->close(); }
    OfThread(const OfThread&) = delete;
    OfThread& operator=(const OfThread&) = delete;
};

[[noreturn]] void raiseDisconnected() {
    throw host::HostError(Mailbox::Disconnected, u"The object's thread has ended.");
}

}  // namespace

const std::shared_ptr<Mailbox>& Mailbox::ofThisThread() {
    static thread_local OfThread mine;
    return mine.mailbox;
}

void Mailbox::invoke(const std::function<void()>& work) {
    const std::shared_ptr<Mailbox>& mine = ofThisThread();
    if (mine.get() == this) return work();
    const auto call = std::make_shared<Call>();
    call->work = std::packaged_task<void()>(work);
    call->caller = mine;
    std::future<void> outcome = call->work.get_future();
    if (!leave(call)) raiseDisconnected();
    bool isRefused = false;
    mine->serveUntil([&] {
        isRefused = call->isRefused;
        return call->isOver;
    });
    if (isRefused) raiseDisconnected();
    outcome.get();
}

bool Mailbox::post(std::function<void()> work) noexcept {
    const auto call = std::make_shared<Call>();
    call->work = std::packaged_task<void()>(std::move(work));
    return leave(call);
}

bool Mailbox::leave(std::shared_ptr<Call> call) {
    {
        const std::lock_guard lock(mutex_);
        if (closed_) return false;
        waiting_.push_back(std::move(call));
    }
    changed_.notify_all();
    return true;
}

void Mailbox::run(Call& call) {
    call.work();
    if (!call.caller) return;
    {
        const std::lock_guard lock(call.caller->mutex_);
        call.isOver = true;
    }
    call.caller->changed_.notify_all();
}

void Mailbox::serve() {
    while (true) {
        std::shared_ptr<Call> next;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty()) return;
            next = std::move(waiting_.front());
            waiting_.pop_front();
        }
        run(*next);
    }
}

void Mailbox::serveUntil(const std::function<bool()>& isOver) {
    std::unique_lock lock(mutex_);
    while (!isOver()) {
        if (waiting_.empty()) {
            changed_.wait(lock);
            continue;
        }
        std::shared_ptr<Call> next = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        run(*next);
        next.reset();
        lock.lock();
    }
}

void Mailbox::wake() noexcept {
    // The lock orders what was written before with the look that follows.
    { const std::lock_guard lock(mutex_); }
    changed_.notify_all();
}

void Mailbox::close() noexcept {
    std::deque<std::shared_ptr<Call>> refused;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        refused.swap(waiting_);
    }
    for (const std::shared_ptr<Call>& call : refused) {
        if (!call->caller) continue;
        {
            const std::lock_guard lock(call->caller->mutex_);
            call->isOver = call->isRefused = true;
        }
        call->caller->changed_.notify_all();
    }
}

}  // namespace lorvane::instruments
