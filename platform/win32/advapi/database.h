// SQLite, with owners for what it hands out.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace win32 {

struct DatabaseCloser {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;

// One prepared statement and its run. Results are SQLite's; after a failure everything that follows gives the same.
class Statement {
public:
    Statement(sqlite3* database, std::string_view sql)
    {
        sqlite3_stmt* prepared = nullptr;
        result_ = sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &prepared, nullptr);
        statement_.reset(prepared);
    }

    // The texts' bytes are taken as they are, whatever their encoding, and must outlive the run.
    Statement& bind(int place, std::string_view text)
    {
        return note(sqlite3_bind_text64(statement_.get(), place, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    }
    Statement& bind_bytes(int place, std::string_view bytes)
    {
        return note(bytes.empty()
                        ? sqlite3_bind_zeroblob(statement_.get(), place, 0)
                        : sqlite3_bind_blob64(statement_.get(), place, bytes.data(), bytes.size(), SQLITE_STATIC));
    }
    Statement& bind(int place, std::int64_t number)
    {
        return note(sqlite3_bind_int64(statement_.get(), place, number));
    }

    // SQLITE_ROW, SQLITE_DONE or an error.
    int step() { return result_ == SQLITE_OK ? sqlite3_step(statement_.get()) : result_; }

    // The current row's columns.
    std::string bytes(int column)
    {
        const void* data = sqlite3_column_blob(statement_.get(), column);
        return { static_cast<const char*>(data),
                 static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)) };
    }
    std::int64_t number(int column) { return sqlite3_column_int64(statement_.get(), column); }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    Statement& note(int result)
    {
        if (result_ == SQLITE_OK)
            result_ = result;
        return *this;
    }

    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    int result_ = SQLITE_OK;
};

} // namespace win32
