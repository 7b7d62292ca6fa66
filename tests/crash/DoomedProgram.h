#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "cli/Program.h"

/// The built program, killed or short of room at a moment that the test chooses.
namespace lorvane::crash {

/// When the program is killed; at the first of both. Neither: it comes to its end.
struct Doom {
    std::optional<std::chrono::microseconds> time = {};  ///< after its start
    std::optional<std::uint32_t> writes = {};            ///< changes of files in the store's folder
    std::optional<std::uint64_t> room = {};              ///< bytes that a file may have; it is not killed by that
};

/// How it ended.
struct Fate {
    bool killed = false;
    int status = -1;  ///< of one that was not killed
    std::string out, err;
    std::chrono::microseconds time{};
    std::uint32_t writes = 0;
};

/// Runs it as `Program` does, with `--store` and `--now`, its temporary files in the folder of the test.
Fate runDoomed(const cli::test::Program& program, const cli::test::Program::Words& words, const Doom& doom);

}  // namespace lorvane::crash
