#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/Rpc.h"
#include "host/HostError.h"
#include "screen/User.h"

namespace lorvane::automation {

/// Where the acts of the person at the other end come from: one request after the other.
class RequestSource {
public:
    virtual ~RequestSource() = default;
    virtual bool isConnected() const noexcept = 0;
    /// Waits for one more request and serves it, or comes back since a timer ran. False where the client is gone.
    virtual bool serveNext() = 0;
    /// Serves what has come already.
    virtual void serveWaiting() = 0;
    virtual void notify(std::string_view method, Json params) = 0;
};

/// The user at the other end of a line. What comes up is told by notifications; while it is up, the client's further requests are served.
///
/// Where no client is there, windows are closed and boxes get the careful answer, so that nothing hangs.
class RemoteUser final : public screen::User {
public:
    struct BoxRecord {
        std::u16string title, text;
        std::int32_t style = 0;
        std::optional<std::int32_t> answer{};  ///< none while it is up
    };

    /// How many requests may be under way inside each other. Deeper ones can open nothing that waits.
    static constexpr std::size_t deepestRequest = 32;
    static constexpr std::int32_t outOfStack = 28;

    /// Null: nobody is there any more.
    void serveFrom(RequestSource* source) noexcept { source_ = source; }

    /// One request under way. In a batch nothing may wait for the user: what would is refused before it appears, and the refusal kept.
    class Scope {
    public:
        Scope(RemoteUser& user, bool inBatch) noexcept : user_(user), outer_(std::exchange(user.inBatch_, inBatch)) { ++user_.requests_; }
        ~Scope() {
            user_.inBatch_ = outer_;
            --user_.requests_;
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        RemoteUser& user_;
        bool outer_;
    };
    /// What was refused since the last time it was asked; code may have swallowed the error.
    std::optional<host::HostError> takeRefusal() noexcept { return std::exchange(refusal_, std::nullopt); }

    // What the client does. Error 5 where it does not fit what is up.
    void Answer(std::int32_t button);  ///< of the box on top
    void AnswerNext(const std::vector<std::int32_t>& buttons) { answers_.insert(answers_.end(), buttons.begin(), buttons.end()); }
    void ChooseMenu(std::u16string_view item);  ///< by caption or name; "" closes the menu
    const std::vector<BoxRecord>& Boxes() const noexcept { return boxes_; }
    void forgetAnswers() noexcept { answers_.clear(); }

    bool attend(screen::ModalTurn& turn) override;
    std::int32_t answer(const screen::BoxShown& box) override;
    std::optional<std::u16string> choose(const screen::MenuShown& menu) override;
    void opening(host::Form& form, bool modal) override;
    void pumped() override;
    void shown(host::Form& form, bool modal) override;
    void closed(host::Form& form) override;

private:
    /// Something that waits for the user.
    struct Wait {
        enum class Kind { Window, Box, Menu } kind;
        const screen::BoxShown* box = nullptr;
        const screen::MenuShown* menu = nullptr;
        std::optional<std::int32_t> button{};
        std::optional<std::u16string> item{};
    };
    class Waiting;

    bool isThere() const noexcept { return source_ && source_->isConnected(); }
    void requireWait(const std::u16string& what);
    Wait& top(Wait::Kind kind, std::u16string_view what);
    std::optional<std::int32_t> answerLaidReady(const screen::BoxShown& box);
    std::int32_t answerOf(const screen::BoxShown& box);
    bool mayActInPump() const noexcept;

    RequestSource* source_ = nullptr;
    std::vector<Wait*> waits_;
    std::vector<const host::Form*> up_;  // the add-in's windows that are up
    std::vector<const host::Form*> comingUp_;
    std::deque<std::int32_t> answers_;
    std::vector<BoxRecord> boxes_;
    std::optional<host::HostError> refusal_;
    std::size_t requests_ = 0;
    bool inBatch_ = false;
};

}  // namespace lorvane::automation
