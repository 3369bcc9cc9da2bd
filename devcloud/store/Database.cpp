#include "devcloud/store/Database.h"

#include <cerrno>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tavrin::devcloud {
namespace {

constexpr int busyMilliseconds = 5000; // The invite command may write while the server runs.

constexpr auto schema = R"sql(
CREATE TABLE IF NOT EXISTS accounts(
    id INTEGER PRIMARY KEY, email TEXT NOT NULL UNIQUE, password TEXT NOT NULL,
    created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS invites(
    hash TEXT PRIMARY KEY, created INTEGER NOT NULL, used INTEGER);
CREATE TABLE IF NOT EXISTS registrations(
    email TEXT PRIMARY KEY, invite TEXT NOT NULL, code TEXT NOT NULL,
    expires INTEGER NOT NULL, wrong_tries INTEGER NOT NULL, token TEXT, token_expires INTEGER);
CREATE TABLE IF NOT EXISTS families(
    id INTEGER PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
    device_id TEXT NOT NULL, device_name TEXT NOT NULL, client_version TEXT NOT NULL,
    created INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS families_by_account ON families(account);
CREATE TABLE IF NOT EXISTS access_tokens(
    hash TEXT PRIMARY KEY, family INTEGER NOT NULL REFERENCES families(id) ON DELETE CASCADE,
    expires INTEGER NOT NULL);
CREATE INDEX IF NOT EXISTS access_tokens_by_family ON access_tokens(family);
CREATE TABLE IF NOT EXISTS refresh_tokens(
    hash TEXT PRIMARY KEY, family INTEGER NOT NULL REFERENCES families(id) ON DELETE CASCADE,
    expires INTEGER NOT NULL, consumed INTEGER);
CREATE INDEX IF NOT EXISTS refresh_tokens_by_family ON refresh_tokens(family);
CREATE TABLE IF NOT EXISTS usage(
    account INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE, request TEXT NOT NULL,
    source TEXT NOT NULL, operation TEXT NOT NULL, provider TEXT NOT NULL, model TEXT NOT NULL,
    input_characters INTEGER NOT NULL, output_characters INTEGER NOT NULL,
    audio_seconds INTEGER NOT NULL, latency_ms INTEGER NOT NULL, status TEXT NOT NULL,
    error_code TEXT, created INTEGER NOT NULL, PRIMARY KEY(account, request));
CREATE INDEX IF NOT EXISTS usage_by_time ON usage(created);
)sql";

void require(bool success, sqlite3* connection)
{
    if (!success)
        throw DatabaseError(connection ? sqlite3_errmsg(connection) : "out of memory");
}

sqlite3* opened(const char* name)
{
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(name, &connection,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code == SQLITE_OK)
        return connection;
    const std::string reason = connection ? sqlite3_errmsg(connection) : "out of memory";
    sqlite3_close(connection);
    throw DatabaseError("cannot open the database " + std::string(name) + ": " + reason);
}

/// SQLite gives its WAL and index files the mode of the main file, so that one decides for all.
void createPrivateFile(const std::filesystem::path& file)
{
    const std::filesystem::path folder = file.parent_path();
    std::error_code error;
    if (!folder.empty() && std::filesystem::create_directories(folder, error))
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    if (error)
        throw DatabaseError("cannot create the folder " + folder.string() + ": " + error.message());
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        throw DatabaseError("cannot create the database " + file.string() + ": "
            + std::system_category().message(errno));
    const bool isPrivate = fchmod(descriptor, S_IRUSR | S_IWUSR) == 0;
    close(descriptor);
    if (!isPrivate)
        throw DatabaseError("cannot make the database " + file.string() + " private");
}

} // namespace

Statement::Statement(sqlite3* connection, std::string_view sql)
    : m_connection(connection)
{
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(
        connection, sql.data(), static_cast<int>(sql.size()), &statement, nullptr));
    m_statement.reset(statement);
}

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

void Statement::check(int code) const
{
    require(code == SQLITE_OK, m_connection);
}

Statement& Statement::bind(std::string_view text)
{
    check(sqlite3_bind_text64(m_statement.get(), ++m_bound, text.data() ? text.data() : "",
        text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

Statement& Statement::bind(std::int64_t number)
{
    check(sqlite3_bind_int64(m_statement.get(), ++m_bound, number));
    return *this;
}

Statement& Statement::bindNull()
{
    check(sqlite3_bind_null(m_statement.get(), ++m_bound));
    return *this;
}

bool Statement::step()
{
    const int code = sqlite3_step(m_statement.get());
    require(code == SQLITE_ROW || code == SQLITE_DONE, m_connection);
    return code == SQLITE_ROW;
}

void Statement::run()
{
    while (step()) { }
}

std::int64_t Statement::number(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string Statement::text(int column) const
{
    const void* bytes = sqlite3_column_blob(m_statement.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    return bytes ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

Database::Database(const std::filesystem::path& file)
{
    createPrivateFile(file);
    m_connection = opened(file.c_str());
    prepare();
}

Database::Database(sqlite3* connection)
    : m_connection(connection)
{
    prepare();
}

std::unique_ptr<Database> Database::inMemory()
{
    return std::unique_ptr<Database>(new Database(opened(":memory:")));
}

Database::~Database()
{
    sqlite3_close(m_connection);
}

void Database::prepare()
{
    sqlite3_busy_timeout(m_connection, busyMilliseconds);
    try {
        for (const char* sql : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL",
                 "PRAGMA foreign_keys=ON", schema})
            require(sqlite3_exec(m_connection, sql, nullptr, nullptr, nullptr) == SQLITE_OK,
                m_connection);
    } catch (const DatabaseError&) {
        sqlite3_close(m_connection);
        throw;
    }
}

Transaction::Transaction(Database& database)
    : m_database(database)
    , m_lock(database.m_mutex)
{
    statement("BEGIN IMMEDIATE").run();
}

Transaction::~Transaction()
{
    if (m_open)
        sqlite3_exec(m_database.m_connection, "ROLLBACK", nullptr, nullptr, nullptr);
}

Statement Transaction::statement(std::string_view sql)
{
    return {m_database.m_connection, sql};
}

std::int64_t Transaction::lastInsertedId() const
{
    return sqlite3_last_insert_rowid(m_database.m_connection);
}

int Transaction::changedRows() const
{
    return sqlite3_changes(m_database.m_connection);
}

void Transaction::commit()
{
    statement("COMMIT").run();
    m_open = false;
}

} // namespace tavrin::devcloud
