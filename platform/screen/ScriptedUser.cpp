#include "screen/ScriptedUser.h"

#include <algorithm>

namespace lorvane::screen {

bool ScriptedUser::attend(ModalTurn&) {
    if (acts_.empty()) return false;
    const Act act = std::move(acts_.front());
    acts_.pop_front();
    run(act);
    return true;
}

std::int32_t ScriptedUser::answer(const BoxShown& box) {
    std::optional<std::int32_t> button;
    if (!answers_.empty()) {
        button = answers_.front();
        answers_.pop_front();
        try {
            requireButton(box, *button);
        } catch (const host::HostError& error) {
            fail(error);
        }
    } else if (policy_) {
        button = policy_(box);
    }
    if (!button || !hasButton(box.style, *button)) button = carefulAnswer(box.style);
    const BoxRecord record{box.title, box.text, box.style, *button};
    boxes_.push_back(record);
    if (onBox_) onBox_(record);
    return *button;
}

std::optional<std::u16string> ScriptedUser::choose(const MenuShown& menu) {
    menus_.push_back(menu);
    if (choices_.empty()) return std::nullopt;
    std::u16string choice = std::move(choices_.front());
    choices_.pop_front();
    return choice;
}

void ScriptedUser::pumped() {
    ++pumps_;
    // An act may pump itself, so it is out of the list before it runs.
    for (;;) {
        const auto due = std::ranges::find_if(pumpActs_, [this](const auto& entry) { return entry.first <= pumps_; });
        if (due == pumpActs_.end()) return;
        const Act act = std::move(due->second);
        pumpActs_.erase(due);
        run(act);
    }
}

void ScriptedUser::run(const Act& act) {
    try {
        act(*this);
    } catch (const host::HostError& error) {
        fail(error);
    }
}

void ScriptedUser::fail(const host::HostError& error) {
    failures_.push_back(error);
    if (onFailure_) onFailure_(error);
}

}  // namespace lorvane::screen
