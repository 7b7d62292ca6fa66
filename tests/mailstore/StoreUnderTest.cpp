#include "mailstore/StoreUnderTest.h"

#include "mailstore/MemoryStore.h"
#include "mailstore/SqliteStore.h"
#include "mailstore/TempFolder.h"

namespace lorvane::mailstore::test {

namespace {

/// Passes each use on to the store that `next` gives for it.
class PassingStore final : public MailStore {
public:
    PassingStore(std::function<MailStore&()> next, std::function<std::uint64_t()> changeCount) : next_(std::move(next)), changeCount_(std::move(changeCount)) {}

    const std::u16string& storeId() const override { return next_().storeId(); }
    const std::u16string& name() const override { return next_().name(); }
    std::int32_t kind() const override { return next_().kind(); }
    FolderRecord rootFolder() const override { return next_().rootFolder(); }
    std::vector<FolderRecord> childFolders(std::u16string_view folder) const override { return next_().childFolders(folder); }
    std::optional<FolderRecord> findFolder(std::u16string_view folder) const override { return next_().findFolder(folder); }
    std::optional<FolderRecord> wellKnownFolder(std::int32_t number) const override { return next_().wellKnownFolder(number); }
    FolderRecord addFolder(std::u16string_view parent, FolderRecord folder) override { return next_().addFolder(parent, std::move(folder)); }
    void renameFolder(std::u16string_view folder, std::u16string_view newName) override { next_().renameFolder(folder, newName); }
    void removeFolder(std::u16string_view folder) override { next_().removeFolder(folder); }
    std::size_t itemCount(std::u16string_view folder) const override { return next_().itemCount(folder); }
    std::vector<ItemHead> itemHeads(std::u16string_view folder) const override { return next_().itemHeads(folder); }
    std::optional<ItemHead> findItem(std::u16string_view item) const override { return next_().findItem(item); }
    std::u16string folderOfItem(std::u16string_view item) const override { return next_().folderOfItem(item); }
    ItemRecord loadItem(std::u16string_view item) const override { return next_().loadItem(item); }
    ItemHead saveItem(std::u16string_view folder, const ItemRecord& item) override { return next_().saveItem(folder, item); }
    std::u16string moveItem(std::u16string_view item, std::u16string_view folder) override { return next_().moveItem(item, folder); }
    void removeItem(std::u16string_view item) override { next_().removeItem(item); }
    std::uint64_t changeCount() const override { return changeCount_(); }

private:
    std::function<MailStore&()> next_;
    std::function<std::uint64_t()> changeCount_;
};

class PassingSettings final : public SettingsStore {
public:
    explicit PassingSettings(std::function<SettingsStore&()> next) : next_(std::move(next)) {}

    std::optional<std::u16string> find(std::u16string_view application, std::u16string_view section, std::u16string_view key) const override {
        return next_().find(application, section, key);
    }
    void save(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) override {
        next_().save(application, section, key, value);
    }
    void remove(std::u16string_view application, std::u16string_view section, std::u16string_view key) override { next_().remove(application, section, key); }
    std::vector<Entry> list() const override { return next_().list(); }

private:
    std::function<SettingsStore&()> next_;
};

class InMemory final : public StoreUnderTest {
public:
    InMemory(std::u16string name, std::int32_t kind) : store_(makeMemoryStore(std::move(name), kind)), settings_(makeMemorySettings()) {}
    MailStore& store() override { return *store_; }
    SettingsStore& settings() override { return *settings_; }

private:
    std::unique_ptr<MailStore> store_;
    std::unique_ptr<SettingsStore> settings_;
};

struct Program {
    std::unique_ptr<MailStore> store;
    std::unique_ptr<SettingsStore> settings;

    void open(const std::filesystem::path& path, const SqliteOptions& options) {
        const SqliteFile file(path, options);
        store = file.mailStore();
        settings = file.settings();
    }
    void close() { *this = {}; }
};

enum class Use { OneProgram, TwoInTurn, Reopening };

class InFile final : public StoreUnderTest {
public:
    InFile(std::u16string name, std::int32_t kind, Use use)
        : use_(use),
          store_([this]() -> MailStore& { return *next().store; }, [this] { return (use_ == Use::TwoInTurn ? watcher_ : programs_[0]).store->changeCount(); }),
          settings_([this]() -> SettingsStore& { return *next().settings; }) {
        options_.storeName = std::move(name);
        options_.storeKind = kind;
        for (Program& program : programs_) {
            if (use_ == Use::TwoInTurn || &program == programs_) program.open(path(), options_);
        }
        if (use_ == Use::TwoInTurn) watcher_.open(path(), options_);
    }
    MailStore& store() override { return store_; }
    SettingsStore& settings() override { return settings_; }

private:
    std::filesystem::path path() const { return folder_.file("mail.lorvane"); }

    Program& next() {
        if (use_ == Use::TwoInTurn) turn_ = 1 - turn_;
        if (use_ == Use::Reopening) {
            programs_[0].close();
            programs_[0].open(path(), options_);
        }
        return programs_[turn_];
    }

    TempFolder folder_;
    SqliteOptions options_;
    Use use_;
    Program programs_[2];
    Program watcher_;
    int turn_ = 0;
    PassingStore store_;
    PassingSettings settings_;
};

StoreWay inFile(std::string name, Use use) {
    return {std::move(name), [use](std::u16string storeName, std::int32_t kind) { return std::make_unique<InFile>(std::move(storeName), kind, use); }};
}

}  // namespace

std::vector<StoreWay> lastingWays() {
    const auto inMemory = [](std::u16string name, std::int32_t kind) { return std::make_unique<InMemory>(std::move(name), kind); };
    return {{"Memory", inMemory}, inFile("Sqlite", Use::OneProgram), inFile("SqliteTwoPrograms", Use::TwoInTurn)};
}

std::vector<StoreWay> storeWays() {
    std::vector<StoreWay> ways = lastingWays();
    ways.push_back(inFile("SqliteReopened", Use::Reopening));
    return ways;
}

}  // namespace lorvane::mailstore::test
