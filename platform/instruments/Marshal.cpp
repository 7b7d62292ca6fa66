#include "instruments/Marshal.h"

#include <utility>

#include "instruments/Decorator.h"
#include "instruments/Mailbox.h"

namespace lorvane::instruments {

namespace {

/// Between the thread `home`, where the objects live, and whichever thread uses them.
class MarshalTap final : public Tap {
public:
    explicit MarshalTap(std::shared_ptr<Mailbox> home) : home_(std::move(home)) {}

    host::Variant onUse(const Use&, const std::function<host::Variant()>& proceed) override {
        host::Variant result;
        home_->invoke([&] { result = proceed(); });
        return result;
    }
    void atObject(const std::function<void()>& act) override { home_->invoke(act); }
    void letGo(host::Object object) noexcept override { atHome(std::move(object)); }
    void letGo(host::Subscription connection) noexcept override { atHome(std::move(connection)); }
    ClientSide clientSide() override {
        return [client = Mailbox::ofThisThread()](const std::function<void()>& act) { client->invoke(act); };
    }

private:
    /// Where the thread has ended nobody else uses what it had, and it goes here.
    template <class Held>
    void atHome(Held held) noexcept {
        if (Mailbox::ofThisThread() != home_) home_->post([kept = std::move(held)]() mutable { kept = {}; });
    }

    std::shared_ptr<Mailbox> home_;
};

}  // namespace

Marshal::Marshal() : home_(Mailbox::ofThisThread()) {}

host::Object Marshal::carried(const host::Object& object) const {
    return decorated(object, std::make_shared<MarshalTap>(home_));
}

void Marshal::serve() const {
    home_->serve();
}

void Marshal::serveUntil(const std::function<bool()>& isOver) const {
    home_->serveUntil(isOver);
}

void Marshal::wake() const noexcept {
    home_->wake();
}

}  // namespace lorvane::instruments
