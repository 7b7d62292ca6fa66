#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "cli/Program.h"
#include "mailstore/StoreContent.h"

/// The commands that are killed, over one store that they share.
namespace lorvane::crash {

using cli::test::Program;

/// A command whose texts name the round: "Round 17". Only the digits differ from round to round.
struct CommandUnderTest {
    std::string name;
    int status = 0;  ///< at its own end
    std::function<Program::Words(const Program&, std::uint32_t round)> prepare;
};

/// Makes the store with its templates, and the message files.
void prepareStore(const Program& program);

const std::vector<CommandUnderTest>& commandsUnderTest();

/// The text with each "Round 17" as "Round @".
std::string withoutRound(std::string text);

}  // namespace lorvane::crash
