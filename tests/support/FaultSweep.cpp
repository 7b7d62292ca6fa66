#include "support/FaultSweep.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "host/TextFunctions.h"
#include "instruments/Recorder.h"
#include "mailstore/MemoryStore.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/StoreDefaults.h"
#include "mailstore/TempFolder.h"

namespace lorvane::support {

using namespace host;

namespace {

constexpr std::u16string_view teamName = u"Team";

// The same in every turn, so that what holds identities can be compared.
constexpr mailstore::StoreId ownStoreId{1}, teamStoreId{2};

std::shared_ptr<mailstore::SqliteFile> openFile(const std::filesystem::path& file, std::u16string_view name, std::int32_t kind, const mailstore::StoreId& id) {
    mailstore::SqliteOptions options;
    options.storeName = name;
    options.storeKind = kind;
    options.storeId = id;
    return std::make_shared<mailstore::SqliteFile>(file, options);
}

/// The machine of one turn; the run ends first, its files last.
struct Stage {
    std::optional<mailstore::test::TempFolder> place;
    SeenStores stores;
    std::unique_ptr<TestRun> run;

    Snapshot snapshot() const { return snapshotOf(stores, folderOf(*run)); }
};

/// Makes the machines of a sweep.
class Stages {
public:
    Stages(const FaultSweep& sweep, StoreKind kind) : sweep_(sweep), kind_(kind) {
        if (kind_ != StoreKind::Sqlite) return;
        Stage stage;
        takeFiles(stage, prepared_.path());
        start(stage);
        sweep_.prepare(*stage.run);
    }

    /// With everything that the command needs, and nothing counted yet.
    std::unique_ptr<Stage> next() const {
        auto stage = std::make_unique<Stage>();
        if (kind_ == StoreKind::Sqlite) {
            stage->place.emplace();
            std::filesystem::copy(prepared_.path(), stage->place->path(), std::filesystem::copy_options::recursive);
            takeFiles(*stage, stage->place->path());
        } else {
            stage->stores.mail = {mailstore::makeMemoryStore(std::u16string(mailstore::DefaultStoreName), mailstore::store_kind::PrivateFile, ownStoreId)};
            if (sweep_.team)
                stage->stores.mail.push_back(mailstore::makeMemoryStore(std::u16string(teamName), mailstore::store_kind::PublicFolders, teamStoreId));
            stage->stores.settings = mailstore::makeMemorySettings();
        }
        start(*stage);
        if (kind_ == StoreKind::Memory) sweep_.prepare(*stage->run);
        sweep_.open(*stage->run);
        stage->run->recorder().clear();
        stage->run->faults().clear();
        return stage;
    }

private:
    void takeFiles(Stage& stage, const std::filesystem::path& folder) const {
        const auto own = openFile(folder / "store.sqlite", mailstore::DefaultStoreName, mailstore::store_kind::PrivateFile, ownStoreId);
        stage.stores.mail = {own->mailStore()};
        stage.stores.settings = own->settings();
        if (sweep_.team)
            stage.stores.mail.push_back(openFile(folder / "team.sqlite", teamName, mailstore::store_kind::PublicFolders, teamStoreId)->mailStore());
    }

    void start(Stage& stage) const {
        RunOptions options = sweep_.options;
        options.instruments = true;
        options.store = stage.stores.mail.front();
        options.settings = stage.stores.settings;
        stage.run = std::make_unique<TestRun>(std::move(options));
        if (sweep_.team) stage.run->driver().addStore(stage.stores.mail.back());
    }

    const FaultSweep& sweep_;
    StoreKind kind_;
    mailstore::test::TempFolder prepared_;
};

bool isErrorBox(const screen::ScriptedUser::BoxRecord& box) {
    return box.style == msgbox::Critical && box.text.starts_with(u"Error ");
}

/// Those that came since the machine stood ready.
void expectNamedBoxes(const FaultSweep& sweep, const TestRun& run, std::size_t firstBox, std::size_t mostErrors) {
    const std::vector<screen::ScriptedUser::BoxRecord> boxes(run.boxes().begin() + static_cast<std::ptrdiff_t>(firstBox), run.boxes().end());
    std::string titles;
    for (const auto& box : boxes) {
        titles += "\n    " + toUtf8(box.title) + ": " + toUtf8(box.text);
        const bool named = std::ranges::any_of(
            sweep.boxes, [&](const NamedBox& known) { return known.title == box.title && known.style == box.style && box.text.starts_with(known.textFront); });
        EXPECT_TRUE(named) << "no box of the command: " << box.style << " " << toUtf8(box.title) << ": " << toUtf8(box.text);
    }
    EXPECT_LE(static_cast<std::size_t>(std::ranges::count_if(boxes, isErrorBox)), mostErrors) << titles;
}

/// What the command does when nothing fails.
struct Learned {
    std::vector<instruments::RecordedCall> calls;
    Snapshot whole;
};

class Sweeper {
public:
    Sweeper(const FaultSweep& sweep, StoreKind kind) : sweep_(sweep), stages_(sweep, kind) {}

    void learn() {
        const std::unique_ptr<Stage> stage = stages_.next();
        const std::size_t boxesBefore = stage->run->boxes().size();
        sweep_.command(*stage->run);
        learned_.calls = stage->run->recorder().calls();
        ASSERT_EQ(learned_.calls.size(), stage->run->faults().uses()) << "each call is seen by both instruments";
        ASSERT_FALSE(learned_.calls.empty());
        learned_.whole = stage->snapshot();
        expectNamedBoxes(sweep_, *stage->run, boxesBefore, 0);
        EXPECT_FALSE(forgetTemporaryFiles(learned_.whole)) << "temporary files are left where nothing failed";
    }

    std::size_t calls() const { return learned_.calls.size(); }

    void play(FaultKind kind, std::size_t n) const {
        const instruments::RecordedCall& call = learned_.calls[n - 1];
        const SweptFault fault{kind, n, call.className, call.member, lineText(call)};
        SCOPED_TRACE((kind == FaultKind::Error ? "error at call " : "lost object at call ") + std::to_string(n) + ": " + fault.line);
        const std::unique_ptr<Stage> stage = stages_.next();
        TestRun& run = *stage->run;
        const Snapshot before = stage->snapshot();
        const std::size_t windowsBefore = run.user().Windows().size(), boxesBefore = run.boxes().size();
        if (kind == FaultKind::Error)
            run.faults().failCall(n, sweep_.errorNumber);
        else
            run.faults().loseObjectAt(n);
        runCommand(run);
        EXPECT_GE(run.faults().failures(), 1U) << "the fault never struck";
        run.faults().clear();

        const std::size_t windowsAfter = run.user().Windows().size();
        EXPECT_TRUE(fault.losesScreen() || sweep_.windowsFit(windowsBefore, windowsAfter)) << windowsBefore << " windows before, " << windowsAfter << " behind";
        expectNamedBoxes(sweep_, run, boxesBefore, kind == FaultKind::Error ? sweep_.errorBoxes : std::max(sweep_.errorBoxes, sweep_.lossBoxes));
        Snapshot left = stage->snapshot();
        if (fault.strikesFiles()) forgetTemporaryFiles(left);
        expectNothingElse(sweep_, before, left, learned_.whole);
        try {
            sweep_.check(run, fault);
        } catch (const HostError& error) {
            ADD_FAILURE() << "an error came out of what looks at the turn: " << error.what();
        }
    }

private:
    void runCommand(TestRun& run) const {
        try {
            sweep_.command(run);
        } catch (const HostError& error) {
            if (!sweep_.raises) ADD_FAILURE() << "an error came out of the command: " << error.what();
        }
    }

    const FaultSweep& sweep_;
    Stages stages_;
    Learned learned_;
};

}  // namespace

bool SweptFault::isOf(std::u16string_view classSought) const {
    return equalsIgnoreCase(className, classSought);
}

bool SweptFault::strikesFiles() const {
    return isOf(u"Files") || member == u"Files" || (kind == FaultKind::LostObject && isOf(u"Machine"));
}

NamedBox errorBox(std::u16string_view routine) {
    return {std::u16string(routine) + u" - Lorvane", u"Error ", msgbox::Critical};
}

MAPIFolder teamFolder(const TestRun& run) {
    const Folders stores(run.session().getObject(Member::Folders));
    for (std::int32_t index = 1; index <= stores.Count(); ++index) {
        if (const MAPIFolder top = stores.Item(index); top.Name() == teamName) return run.addFolder(top, u"Shared Templates");
    }
    throw HostError(host_failure::NotFound);
}

std::string nameOf(const SweptTurns& turns) {
    std::string name = turns.store == StoreKind::Memory ? "Memory" : "Sqlite";
    name += turns.fault == FaultKind::Error ? "Error" : "LostObject";
    return turns.every == 1 ? name : name + "Every" + std::to_string(turns.every);
}

std::vector<SweptTurns> sweptTurns() {
    return {{StoreKind::Memory, FaultKind::Error, 1},
            {StoreKind::Memory, FaultKind::LostObject, 1},
            {StoreKind::Sqlite, FaultKind::Error, 3},
            {StoreKind::Sqlite, FaultKind::LostObject, 3}};
}

void sweepFaults(const FaultSweep& sweep, const SweptTurns& turns) {
    Sweeper sweeper(sweep, turns.store);
    sweeper.learn();
    if (testing::Test::HasFatalFailure()) return;
    std::size_t played = 0;
    for (std::size_t n = turns.every; n <= sweeper.calls(); n += turns.every) {
        sweeper.play(turns.fault, n);
        ++played;
        if (testing::Test::HasFatalFailure()) return;
    }
    testing::Test::RecordProperty("turns", static_cast<int>(played));
}

}  // namespace lorvane::support
