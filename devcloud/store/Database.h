#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace tavrin::devcloud {

/// SQLite failed. Thrown inside the store only; Service answers it as a 500.
class DatabaseError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One SQL statement with its values, read row by row.
class Statement {
public:
    Statement(sqlite3* connection, std::string_view sql);

    Statement& bind(std::string_view text);
    Statement& bind(std::int64_t number);
    Statement& bindNull();

    /// Goes to the next row; false after the last.
    bool step();
    /// For statements that give no rows.
    void run();

    [[nodiscard]] std::int64_t number(int column) const;
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] bool isNull(int column) const;

private:
    void check(int code) const;

    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
    sqlite3* m_connection;
    int m_bound = 0;
};

/// The service's database: one connection, used by one thread at a time.
///
/// The file is created with mode 0600 in a folder of mode 0700, in WAL mode, with its tables.
class Database {
public:
    /// Creates the folder and the file where they are missing, and brings one of an earlier version
    /// up to date. One of a later version is left as it is. @throws DatabaseError
    ///
    /// @param patience how long to wait while another program writes.
    explicit Database(const std::filesystem::path& file,
        std::chrono::milliseconds patience = std::chrono::seconds(5));
    /// A database that lives in memory and ends with this object.
    static std::unique_ptr<Database> inMemory();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

private:
    friend class Transaction;
    explicit Database(sqlite3* connection);
    void prepare(std::chrono::milliseconds patience);
    void execute(const char* sql);
    std::int64_t asked(const char* sql);
    void refuseLaterVersion();
    void bringUpToDate();

    sqlite3* m_connection = nullptr;
    std::mutex m_mutex;
};

/// Exclusive use of the database, as one transaction: what is not committed is undone.
class Transaction {
public:
    /// Reading alone waits for no other program, and goes on when the disk is full.
    enum class Access { Read, Write };

    explicit Transaction(Database& database, Access access = Access::Write);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    [[nodiscard]] Statement statement(std::string_view sql);
    [[nodiscard]] std::int64_t lastInsertedId() const;
    /// How many rows the last statement changed.
    [[nodiscard]] int changedRows() const;
    void commit();

private:
    Database& m_database;
    std::unique_lock<std::mutex> m_lock;
    bool m_open = true;
};

} // namespace tavrin::devcloud
