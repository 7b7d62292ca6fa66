#include <gtest/gtest.h>

#include "crash/SavedStates.h"
#include "support/GoldenText.h"

/// What each command saves on its way: a kill may leave any of these states. The goldens are read by people: nothing may stand in them but items as they were
/// made or read, the caret mark with the attachments so far, the letter with which Word's caret is found, and the result.
namespace lorvane::crash {
namespace {

TEST(SavedStatesTest, AreThoseThatTheStepsOfEachCommandSave) {
    const Program program;
    prepareStore(program);
    for (const CommandUnderTest& command : commandsUnderTest()) {
        const std::vector<Items> states = savedStates(program, command, 1);
        std::string text, last;
        for (std::size_t number = 0; number < states.size(); ++number) {
            const std::string now = summary(states.front(), states[number]);
            text += std::to_string(number) + "\n" + (number > 0 && now == last ? "the same, with other properties\n" : now);
            last = now;
        }
        std::string name = command.name;
        std::ranges::replace(name, ' ', '-');
        support::expectGolden("crash/golden/" + name + ".states", text);
    }
}

}  // namespace
}  // namespace lorvane::crash
