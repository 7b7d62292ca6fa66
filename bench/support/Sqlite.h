#pragma once

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// SQLite as a peer. A call that fails ends the program: what it measured would be worth nothing.
namespace lorvane::bench {

class Sqlite {
public:
    explicit Sqlite(const std::string& file) { check(sqlite3_open(file.c_str(), &connection_)); }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;
    ~Sqlite() { sqlite3_close_v2(connection_); }

    void execute(const std::string& sql) { check(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr)); }

    class Statement {
    public:
        Statement(Sqlite& database, const std::string& sql) : database_(database) {
            database.check(sqlite3_prepare_v2(database.connection_, sql.c_str(), -1, &statement_, nullptr));
        }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;
        ~Statement() { sqlite3_finalize(statement_); }

        void bind(int number, std::u16string_view text) {
            database_.check(sqlite3_bind_text16(statement_, number, text.data(), static_cast<int>(text.size() * 2), SQLITE_TRANSIENT));
        }
        bool step() {
            const int result = sqlite3_step(statement_);
            if (result == SQLITE_ROW) return true;
            database_.check(result == SQLITE_DONE ? SQLITE_OK : result);
            return false;
        }
        void reset() { sqlite3_reset(statement_); }
        /// All rows; the number of them.
        std::size_t run() {
            std::size_t rows = 0;
            while (step()) {
                ++rows;
                sqlite3_column_int64(statement_, 0);
            }
            reset();
            return rows;
        }
        /// Text of a column, in bytes of UTF-8.
        std::string_view text(int column) {
            const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
            return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))) : std::string_view();
        }

    private:
        Sqlite& database_;
        sqlite3_stmt* statement_ = nullptr;
    };

private:
    void check(int result) const {
        if (result == SQLITE_OK) return;
        std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(connection_));
        std::exit(1);
    }
    sqlite3* connection_ = nullptr;
};

}  // namespace lorvane::bench
