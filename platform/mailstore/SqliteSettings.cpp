#include "mailstore/SqliteSettings.h"

#include <algorithm>
#include <tuple>

#include "mailstore/StoreDefaults.h"

namespace lorvane::mailstore {

namespace {

/// The three names in the form in which they are compared. Bound texts must outlive their statement.
struct FoldedKey {
    std::u16string application, section, key;
    FoldedKey(std::u16string_view a, std::u16string_view s, std::u16string_view k) : application(foldedName(a)), section(foldedName(s)), key(foldedName(k)) {}
    auto operator<=>(const FoldedKey&) const = default;
    void bindTo(Statement& statement) const { statement.bind(application).bind(section).bind(key); }
};

class SqliteSettings final : public SettingsStore {
public:
    explicit SqliteSettings(std::shared_ptr<SqliteDatabase> database) : database_(std::move(database)) {}

    std::optional<std::u16string> find(std::u16string_view application, std::u16string_view section, std::u16string_view key) const override {
        const FoldedKey folded(application, section, key);
        Statement row(*database_, "SELECT value FROM settings WHERE folded_application = ? AND folded_section = ? AND folded_key = ?");
        folded.bindTo(row);
        return row.step() ? std::optional(row.text(0)) : std::nullopt;
    }

    void save(std::u16string_view application, std::u16string_view section, std::u16string_view key, std::u16string_view value) override {
        const FoldedKey folded(application, section, key);
        Transaction transaction(*database_, Transaction::Kind::Write);
        {
            Statement upsert(*database_, R"sql(
                INSERT INTO settings (folded_application, folded_section, folded_key, application, section, key, value) VALUES (?, ?, ?, ?, ?, ?, ?)
                ON CONFLICT (folded_application, folded_section, folded_key) DO UPDATE SET value = excluded.value)sql");
            folded.bindTo(upsert);
            upsert.bind(application).bind(section).bind(key).bind(value).run();
        }
        transaction.commit();
    }

    void remove(std::u16string_view application, std::u16string_view section, std::u16string_view key) override {
        const FoldedKey folded(application, section, key);
        Transaction transaction(*database_, Transaction::Kind::Write);
        {
            Statement row(*database_, "DELETE FROM settings WHERE folded_application = ? AND folded_section = ? AND folded_key = ?");
            folded.bindTo(row);
            row.run();
        }
        transaction.commit();
    }

    std::vector<Entry> list() const override {
        std::vector<Entry> entries;
        Statement row(*database_, "SELECT application, section, key, value FROM settings");
        while (row.step()) entries.push_back({row.text(0), row.text(1), row.text(2), row.text(3)});
        // The file orders by bytes, low byte first; callers are promised the order of the letters.
        std::ranges::sort(entries, {}, [](const Entry& entry) { return FoldedKey(entry.application, entry.section, entry.key); });
        return entries;
    }

private:
    std::shared_ptr<SqliteDatabase> database_;
};

}  // namespace

std::unique_ptr<SettingsStore> makeSqliteSettings(std::shared_ptr<SqliteDatabase> database) {
    return std::make_unique<SqliteSettings>(std::move(database));
}

}  // namespace lorvane::mailstore
