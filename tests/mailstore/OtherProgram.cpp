#include "mailstore/OtherProgram.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>

#include "host/HostError.h"

namespace lorvane::mailstore::test {

namespace {

constexpr int failed = 1;

[[noreturn]] void run(const std::function<void(const OtherProgram::Pause&)>& script, int goes, int halts) {
    char byte = 0;
    const OtherProgram::Pause pause = [&] {
        if (::write(halts, &byte, 1) != 1 || ::read(goes, &byte, 1) != 1) ::_exit(failed);
    };
    try {
        if (::read(goes, &byte, 1) != 1) ::_exit(failed);
        script(pause);
        ::_exit(0);
    } catch (const host::HostError& error) {
        std::fprintf(stderr, "the other program: %s\n", error.what());
        ::_exit(failed);
    }
}

}  // namespace

OtherProgram::OtherProgram(const std::function<void(const Pause&)>& script) {
    int go[2], halt[2];
    if (::pipe(go) != 0 || ::pipe(halt) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ < 0) throw std::runtime_error("no process");
    if (process_ == 0) {
        ::close(go[1]);
        ::close(halt[0]);
        run(script, go[0], halt[1]);
    }
    ::close(go[0]);
    ::close(halt[1]);
    goes_ = go[1];
    halts_ = halt[0];
    running_ = true;
}

OtherProgram::~OtherProgram() {
    kill();
    ::close(goes_);
    ::close(halts_);
}

OtherProgram::Stand OtherProgram::goOn() {
    char byte = 0;
    if (!running_ || ::write(goes_, &byte, 1) != 1) throw std::runtime_error("the other program does not listen");
    return ::read(halts_, &byte, 1) == 1 ? Stand::Paused : reap();
}

OtherProgram::Stand OtherProgram::reap() {
    int status = 0;
    if (::waitpid(process_, &status, 0) != process_) throw std::runtime_error("the other program is lost");
    running_ = false;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return Stand::Killed;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? Stand::Ended : Stand::Failed;
}

void OtherProgram::kill() {
    if (!running_) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    running_ = false;
}

void killedBehind(const std::function<void()>& act) {
    OtherProgram program([&act](const OtherProgram::Pause& pause) {
        act();
        pause();
    });
    EXPECT_EQ(program.goOn(), OtherProgram::Stand::Paused);
}

}  // namespace lorvane::mailstore::test
