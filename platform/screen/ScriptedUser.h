#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/HostError.h"
#include "screen/Hands.h"
#include "screen/User.h"

namespace lorvane::screen {

/// A user whose acts are laid ready before, or done at once through `Hands`.
///
///     user.then([](ScriptedUser& she) { she.Type(u"frmEmail", u"txtSearch", u"offer"); });
///     user.then([](ScriptedUser& she) { she.Click(u"frmEmail", u"cmdInsert"); });
///     command();  // shows frmEmail modally
///
/// An act that raises HostError is a mistake of the script: it does not reach the code under the script, but stands in `failures()`.
class ScriptedUser final : public User, public Hands {
public:
    using Act = std::function<void(ScriptedUser&)>;

    struct BoxRecord {
        std::u16string title, text;
        std::int32_t style = 0, answer = 0;
        bool operator==(const BoxRecord&) const = default;
    };

    explicit ScriptedUser(WindowList& windows) noexcept : Hands(windows) {}

    /// The next act for when a modal window is up. Acts go in order, one a turn; a window that an act opens takes the acts behind it first.
    void then(Act act) { acts_.push_back(std::move(act)); }
    std::size_t pending() const noexcept { return acts_.size() + pumpActs_.size(); }  ///< acts that have not come yet
    /// An act in the middle of the n-th coming event pump, 1 for the next one.
    void atPump(std::uint64_t nth, Act act) { pumpActs_.emplace_back(pumps_ + nth, std::move(act)); }
    std::uint64_t pumpCount() const noexcept { return pumps_; }

    /// Lays answers ready for boxes to come.
    void AnswerNext(std::initializer_list<std::int32_t> buttons) { answers_.insert(answers_.end(), buttons.begin(), buttons.end()); }
    /// Lays a choice ready for the next menu, by caption or name; a menu without one is closed.
    void ChooseNext(std::u16string item) { choices_.push_back(std::move(item)); }
    const std::vector<MenuShown>& Menus() const noexcept { return menus_; }  ///< every menu so far
    /// Answers each box for which no answer lies ready; none, or a button the box does not have, leaves it to `carefulAnswer`.
    void answerWith(std::function<std::optional<std::int32_t>(const BoxShown&)> policy) { policy_ = std::move(policy); }
    const std::vector<BoxRecord>& Boxes() const noexcept { return boxes_; }
    void onBox(std::function<void(const BoxRecord&)> told) { onBox_ = std::move(told); }  ///< hears of each box when it is answered

    const std::vector<host::HostError>& failures() const noexcept { return failures_; }
    void onFailure(std::function<void(const host::HostError&)> told) { onFailure_ = std::move(told); }
    /// The names of modal windows that the script left up, and the screen closed.
    const std::vector<std::u16string>& leftUp() const noexcept { return leftUp_; }

    bool attend(ModalTurn& turn) override;
    std::int32_t answer(const BoxShown& box) override;
    std::optional<std::u16string> choose(const MenuShown& menu) override;
    void pumped() override;
    void leftUp(host::Form& form) override { leftUp_.emplace_back(form.name()); }

private:
    void run(const Act& act);
    void fail(const host::HostError& error);

    std::deque<Act> acts_;
    std::vector<std::pair<std::uint64_t, Act>> pumpActs_;
    std::uint64_t pumps_ = 0;
    std::deque<std::int32_t> answers_;
    std::deque<std::u16string> choices_;
    std::vector<MenuShown> menus_;
    std::function<std::optional<std::int32_t>(const BoxShown&)> policy_;
    std::function<void(const BoxRecord&)> onBox_;
    std::function<void(const host::HostError&)> onFailure_;
    std::vector<BoxRecord> boxes_;
    std::vector<host::HostError> failures_;
    std::vector<std::u16string> leftUp_;
};

}  // namespace lorvane::screen
