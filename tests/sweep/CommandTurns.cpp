#include "CommandTurns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>

#include "Run.h"
#include "host/TextFunctions.h"
#include "instruments/FaultInjector.h"
#include "instruments/Recorder.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::sweep {

using cli::ExitStatus;
using support::FaultKind;
using support::Snapshot;
namespace fs = std::filesystem;

namespace {

/// The folders of a turn; they go with it.
struct Place {
    mailstore::test::TempFolder root;
    fs::path store() const { return root.path() / "store"; }
    fs::path files() const { return root.path() / "files"; }
    fs::path temporary() const { return root.path() / "temporary"; }
};

/// What a stream gets while this lives.
class Caught {
public:
    explicit Caught(std::ostream& stream) : stream_(stream), before_(stream.rdbuf(text_.rdbuf())) {}
    ~Caught() { stream_.rdbuf(before_); }
    Caught(const Caught&) = delete;
    Caught& operator=(const Caught&) = delete;
    std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::ostream& stream_;
    std::streambuf* before_;
};

/// The program's temporary files lie in the turn's folder while this lives.
class TemporaryPlace {
public:
    explicit TemporaryPlace(const fs::path& folder) {
        if (const char* const before = std::getenv("TMPDIR")) before_ = before;
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    ~TemporaryPlace() {
        if (before_.empty())
            ::unsetenv("TMPDIR");
        else
            ::setenv("TMPDIR", before_.c_str(), 1);
    }
    TemporaryPlace(const TemporaryPlace&) = delete;
    TemporaryPlace& operator=(const TemporaryPlace&) = delete;

private:
    std::string before_;
};

cli::RunOptions optionsOf(const SweptCommand& command, const Place& place) {
    cli::RunOptions options;
    options.store = place.store();
    options.now = "2028-01-10T09:00";
    options.locale = "en-US";
    command.adjust(options);
    return options;
}

/// As `main` does.
Ended endOf(const std::function<ExitStatus()>& command) {
    const Caught out(std::cout), err(std::cerr);
    Ended ended;
    try {
        ended.status = command();
    } catch (const cli::CommandEnd& end) {
        ended.status = end.status();
        std::cerr << "lorvane: " << end.what() << '\n';
    } catch (const host::HostError& error) {
        ended.status = ExitStatus::Fault;
        std::cerr << "lorvane: " << host::toUtf8(error.description()) << '\n';
    }
    ended.out = out.text();
    ended.err = err.text();
    return ended;
}

Snapshot snapshotOf(const Place& place) {
    const mailstore::SqliteFile file(place.store() / cli::storeFileName);
    file.check();
    return support::snapshotOf({{file.mailStore()}, file.settings()}, place.root.path());
}

/// Where a file was written for the user.
std::map<std::string, std::string> resultFiles(const Snapshot& snapshot) {
    std::map<std::string, std::string> files = snapshot.files;
    std::erase_if(files, [](const auto& entry) { return !entry.first.starts_with("files/"); });
    return files;
}

class Turns {
public:
    explicit Turns(const SweptCommand& command) : command_(command) {
        fs::create_directories(prepared_.files());
        fs::create_directories(prepared_.temporary());
        const TemporaryPlace temporary(prepared_.temporary());
        command_.prepare(optionsOf(command_, prepared_), prepared_.files());
        before_ = snapshotOf(prepared_);
    }

    void learn() {
        const Place place;
        whole_ = play(place, [](instruments::FaultInjector&) {});
        EXPECT_EQ(whole_.status, command_.status) << whole_.err;
        left_ = snapshotOf(place);
        EXPECT_EQ(calls_.size(), uses_);
        ASSERT_FALSE(calls_.empty());
    }

    std::size_t calls() const { return calls_.size(); }

    /// How many calls the connection makes: it ends with the session that shares the host's logon.
    std::size_t callsOfConnection() const {
        const auto last = std::ranges::find_if(calls_, [](const instruments::RecordedCall& call) {
            return call.kind == instruments::UseKind::Put && call.className == u"RDOSession" && call.member == u"MAPIOBJECT";
        });
        EXPECT_NE(last, calls_.end());
        return static_cast<std::size_t>(last - calls_.begin()) + 1;
    }

    void turn(FaultKind kind, std::size_t n) {
        const instruments::RecordedCall call = calls_[n - 1];
        SCOPED_TRACE((kind == FaultKind::Error ? "error at call " : "lost object at call ") + std::to_string(n) + ": " + lineText(call));
        const Place place;
        const Ended ended = play(place, [&](instruments::FaultInjector& faults) {
            if (kind == FaultKind::Error)
                faults.failCall(n, host::host_failure::Failed);
            else
                faults.loseObjectAt(n);
        });
        EXPECT_GE(failures_, 1U) << "the fault never struck";
        const Snapshot now = snapshotOf(place);
        SCOPED_TRACE("status " + std::to_string(static_cast<int>(ended.status)) + ", standard error: " + ended.err);
        support::expectNothingElse(command_, before_, now, left_);
        if (ended.status == ExitStatus::Done)
            expectDone(ended, now);
        else
            expectRefused(ended, now);
    }

private:
    using Arm = std::function<void(instruments::FaultInjector&)>;

    Ended play(const Place& place, const Arm& arm) {
        for (const char* folder : {"store", "files", "temporary"})
            fs::copy(prepared_.root.path() / folder, place.root.path() / folder, fs::copy_options::recursive);
        instruments::Recorder recorder;
        instruments::FaultInjector faults;
        arm(faults);
        cli::RunOptions options = optionsOf(command_, place);
        options.decorate = [&](const host::Object& object) { return faults.decorate(recorder.decorate(object)); };
        const TemporaryPlace temporary(place.temporary());
        const Ended ended = endOf([&] { return command_.command(options, place.files()); });
        if (calls_.empty()) calls_ = recorder.calls();
        uses_ = faults.uses();
        failures_ = faults.failures();
        return ended;
    }

    void expectDone(const Ended& ended, const Snapshot& now) const {
        EXPECT_TRUE(command_.status == ExitStatus::Done);
        EXPECT_TRUE(sameItems(now, left_)) << "the command says that it is done, and its items are others";
        EXPECT_TRUE(ended.out == whole_.out || command_.mayAlsoGive(ended)) << ended.out;
        EXPECT_EQ(resultFiles(now), resultFiles(left_));
    }

    void expectRefused(const Ended& ended, const Snapshot& now) const {
        EXPECT_TRUE(ended.status == ExitStatus::Refused || ended.status == ExitStatus::Fault);
        EXPECT_FALSE(ended.err.empty());
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(resultFiles(now), resultFiles(before_));
        EXPECT_TRUE(ended.err.ends_with('\n') || command_.status != ExitStatus::Refused);
    }

    const SweptCommand& command_;
    Place prepared_;
    Snapshot before_, left_;
    Ended whole_;
    std::vector<instruments::RecordedCall> calls_;
    std::size_t uses_ = 0, failures_ = 0;
};

}  // namespace

std::string file(const SweptCommand::Files& files, const std::string& name, std::string_view content) {
    const fs::path path = files / name;
    mailstore::test::writeBytes(path, {content.begin(), content.end()});
    return path.string();
}

void sweepCommand(const SweptCommand& command, FaultKind kind, std::size_t every, From from) {
    Turns turns(command);
    turns.learn();
    if (testing::Test::HasFatalFailure()) return;
    int played = 0;
    const std::size_t before = from == From::Connected ? turns.callsOfConnection() : 0;
    for (std::size_t n = before + (kind == FaultKind::Error || every == 1 ? 1 : 2); n <= turns.calls(); n += every, ++played) turns.turn(kind, n);
    testing::Test::RecordProperty("turns", played);
}

}  // namespace lorvane::sweep
