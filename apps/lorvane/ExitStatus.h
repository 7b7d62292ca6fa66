#pragma once

#include <stdexcept>
#include <string>

namespace lorvane::cli {

/// What a command came to, as scripts see it.
enum class ExitStatus : int {
    Done = 0,
    Refused = 1,  ///< by the add-in's own message, or nothing was done
    Usage = 2,    ///< the command line is wrong
    Fault = 3,    ///< the store or the host failed, or a listing broke off
};

/// Ends a command with a status and a line for standard error.
class CommandEnd : public std::runtime_error {
public:
    CommandEnd(ExitStatus status, const std::string& line) : std::runtime_error(line), status_(status) {}
    ExitStatus status() const noexcept { return status_; }

private:
    ExitStatus status_;
};

}  // namespace lorvane::cli
