#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

#include "Commands.h"
#include "support/FaultSweep.h"
#include "support/Snapshot.h"

/// The program's commands in this process, with a host that fails at a chosen call.
namespace lorvane::sweep {

/// What a command came to, as `main` ends it.
struct Ended {
    cli::ExitStatus status = cli::ExitStatus::Done;
    std::string out, err;
    bool operator==(const Ended&) const = default;
};

/// A command with what it needs. Paths in `files` are those of the turn's own folder.
struct SweptCommand : support::Leftovers {
    using Files = std::filesystem::path;
    /// Makes templates and message files, once: each turn has a copy.
    std::function<void(const cli::RunOptions&, const Files& files)> prepare;
    std::function<cli::ExitStatus(const cli::RunOptions&, const Files& files)> command;
    /// Of the run without faults.
    cli::ExitStatus status = cli::ExitStatus::Done;
    std::function<void(cli::RunOptions&)> adjust = [](cli::RunOptions&) {};
    /// True for results of a command that claims to be done which differ from those without faults, and may.
    std::function<bool(const Ended&)> mayAlsoGive = [](const Ended&) { return false; };
};

/// Writes a file of the turn's folder, and gives its path.
std::string file(const SweptCommand::Files& files, const std::string& name, std::string_view content);

/// Which of its host calls fail: all, or those behind the add-in's connection, which begins each command alike.
enum class From { FirstCall, Connected };

/// Learns the command's host calls, then lets each fail, each time over a copy of the prepared store. With `every` 3 errors strike the first, fourth, seventh …
/// and objects are lost at the second, fifth, eighth ….
///
/// The status is 0, 1 or 3. Where it is 0 the whole work is done and the whole result written; else standard error has a line, nothing is on standard output,
/// no file is written, and no item is new or changed but as the leftovers tell.
void sweepCommand(const SweptCommand& command, support::FaultKind kind, std::size_t every = 1, From from = From::Connected);

}  // namespace lorvane::sweep
