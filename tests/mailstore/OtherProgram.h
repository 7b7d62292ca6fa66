#pragma once

#include <sys/types.h>

#include <functional>

namespace lorvane::mailstore::test {

/// Another program on the same files: a process of its own that runs a script in steps, each time until the test lets it go on, and can be killed anywhere.
///
///     OtherProgram other([&](const OtherProgram::Pause& pause) {
///         const SqliteFile file(path);
///         pause();
///         file.mailStore()->saveItem(…);
///     });
///     other.goOn();   // has opened the file
///     other.goOn();   // has saved and ended
///
/// Start it before this process opens a store: SQLite does not let a connection be carried over.
class OtherProgram {
public:
    using Pause = std::function<void()>;
    explicit OtherProgram(const std::function<void(const Pause&)>& script);
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    ~OtherProgram();

    /// What it came to.
    enum class Stand {
        Paused,
        Ended,   ///< well
        Killed,  ///< by the script itself
        Failed,  ///< an error came out of the script; it is told on standard error
    };
    Stand goOn();  ///< lets it run to its next pause, or its end
    void kill();
    pid_t number() const noexcept { return process_; }

private:
    Stand reap();

    pid_t process_ = -1;
    bool running_ = false;
    int goes_ = -1;   ///< this end tells it to go on
    int halts_ = -1;  ///< this end hears that it has come to a pause
};

/// A program that does this and is killed behind it; an error fails the test.
void killedBehind(const std::function<void()>& act);

}  // namespace lorvane::mailstore::test
