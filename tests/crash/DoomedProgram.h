#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "cli/Program.h"

/// The built program, killed or short of room at a moment that the test chooses.
namespace lorvane::crash {

/// When the program is killed; at the first of both. Neither: it comes to its end.
struct Doom {
    std::optional<std::chrono::microseconds> time = {};  ///< after its start
    std::optional<std::uint32_t> writes = {};            ///< changes of files in the store's folder
    std::size_t lines = 0;                               ///< that it has to have said before the first write that counts
    std::optional<std::uint64_t> room = {};              ///< bytes that a file may have; it is not killed by that
};

/// Whoever speaks with the program over its standard input and output.
class Client {
public:
    virtual ~Client() = default;
    virtual std::string_view says() = 0;             ///< what it would write now; nothing where it waits for an answer
    virtual void said(std::size_t bytes) = 0;        ///< so much of that went out
    virtual void hears(std::string_view bytes) = 0;  ///< also what a killed program had still written
    virtual bool isThere() const = 0;                ///< false: it lets go of both streams
    virtual bool maySayMore() const = 0;             ///< false: it closes the program's input, and goes on to listen
};

/// How it ended.
struct Fate {
    bool killed = false;
    int status = -1;  ///< of one that was not killed
    std::string out, err;
    std::chrono::microseconds time{};
    std::uint32_t writes = 0;
};

/// Runs it as `Program` does, with `--store` and `--now`, its temporary files in the folder of the test. Without a client its input is empty.
Fate runDoomed(const cli::test::Program& program, const cli::test::Program::Words& words, const Doom& doom, Client* client = nullptr);

}  // namespace lorvane::crash
