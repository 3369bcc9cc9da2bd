#include "devcloud/store/Database.h"

#include <cerrno>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tavrin::devcloud {
namespace {

constexpr auto schema = R"sql(
CREATE TABLE IF NOT EXISTS accounts(
    id INTEGER PRIMARY KEY, email TEXT NOT NULL UNIQUE, password TEXT NOT NULL,
    created INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS invites(
    hash TEXT PRIMARY KEY, created INTEGER NOT NULL, used INTEGER, account INTEGER);
CREATE TABLE IF NOT EXISTS registrations(
    email TEXT PRIMARY KEY, invite TEXT NOT NULL, code TEXT NOT NULL,
    expires INTEGER NOT NULL, wrong_tries INTEGER NOT NULL, token TEXT, token_expires INTEGER);
CREATE TABLE IF NOT EXISTS families(
    id INTEGER PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE,
    device_id TEXT NOT NULL, device_name TEXT NOT NULL, client_version TEXT NOT NULL,
    created INTEGER NOT NULL, refreshed INTEGER, key TEXT);
CREATE INDEX IF NOT EXISTS families_by_account ON families(account);
CREATE INDEX IF NOT EXISTS families_by_key ON families(key);
CREATE TABLE IF NOT EXISTS access_tokens(
    hash TEXT PRIMARY KEY, family INTEGER NOT NULL REFERENCES families(id) ON DELETE CASCADE,
    expires INTEGER NOT NULL, pair TEXT);
CREATE INDEX IF NOT EXISTS access_tokens_by_family ON access_tokens(family);
CREATE TABLE IF NOT EXISTS refresh_tokens(
    hash TEXT PRIMARY KEY, family INTEGER NOT NULL REFERENCES families(id) ON DELETE CASCADE,
    expires INTEGER NOT NULL, consumed INTEGER, parent TEXT, used INTEGER, ended INTEGER);
CREATE INDEX IF NOT EXISTS refresh_tokens_by_family ON refresh_tokens(family);
CREATE TABLE IF NOT EXISTS usage(
    account INTEGER NOT NULL REFERENCES accounts(id) ON DELETE CASCADE, request TEXT NOT NULL,
    source TEXT NOT NULL, operation TEXT NOT NULL, provider TEXT NOT NULL, model TEXT NOT NULL,
    input_characters INTEGER NOT NULL, output_characters INTEGER NOT NULL,
    audio_seconds INTEGER NOT NULL, latency_ms INTEGER NOT NULL, status TEXT NOT NULL,
    error_code TEXT, created INTEGER NOT NULL, PRIMARY KEY(account, request));
CREATE INDEX IF NOT EXISTS usage_by_time ON usage(created);
)sql";

/// What version 1, which did not count versions, lacks.
constexpr auto versionTwo = R"sql(
ALTER TABLE invites ADD COLUMN account INTEGER;
ALTER TABLE families ADD COLUMN refreshed INTEGER;
ALTER TABLE access_tokens ADD COLUMN pair TEXT;
ALTER TABLE refresh_tokens ADD COLUMN parent TEXT;
ALTER TABLE refresh_tokens ADD COLUMN used INTEGER;
ALTER TABLE refresh_tokens ADD COLUMN ended INTEGER;
)sql";

constexpr auto versionThree = "ALTER TABLE families ADD COLUMN key TEXT";

constexpr std::int64_t schemaVersion = 3;

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

Database::Database(const std::filesystem::path& file, std::chrono::milliseconds patience)
{
    createPrivateFile(file);
    m_connection = opened(file.c_str());
    try {
        prepare(patience);
    } catch (const DatabaseError& error) {
        throw DatabaseError("cannot use the database " + file.string() + ": " + error.what());
    }
}

Database::Database(sqlite3* connection)
    : m_connection(connection)
{
    prepare(std::chrono::milliseconds(0));
}

std::unique_ptr<Database> Database::inMemory()
{
    return std::unique_ptr<Database>(new Database(opened(":memory:")));
}

Database::~Database()
{
    sqlite3_close(m_connection);
}

void Database::prepare(std::chrono::milliseconds patience)
{
    sqlite3_busy_timeout(m_connection, static_cast<int>(patience.count()));
    try {
        // Before anything is written: a later version may keep its data in another way.
        refuseLaterVersion();
        for (const char* sql :
            {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL", "PRAGMA foreign_keys=ON"})
            execute(sql);
        bringUpToDate();
    } catch (const DatabaseError&) {
        sqlite3_close(m_connection);
        throw;
    }
}

void Database::execute(const char* sql)
{
    require(sqlite3_exec(m_connection, sql, nullptr, nullptr, nullptr) == SQLITE_OK, m_connection);
}

std::int64_t Database::asked(const char* sql)
{
    Statement row(m_connection, sql);
    row.step();
    return row.number(0);
}

void Database::refuseLaterVersion()
{
    const std::int64_t version = asked("PRAGMA user_version");
    if (version > schemaVersion)
        throw DatabaseError("a later version of tavrin-devcloud has written it (its version is "
            + std::to_string(version) + ", this program knows " + std::to_string(schemaVersion)
            + ")");
}

/// In one transaction, so that a program that is ended meanwhile leaves the old version whole.
void Database::bringUpToDate()
{
    execute("BEGIN IMMEDIATE");
    try {
        refuseLaterVersion(); // Another program may have been faster.
        const std::int64_t version = asked("PRAGMA user_version");
        const bool hasTables =
            asked("SELECT COUNT(*) FROM sqlite_master WHERE name = 'invites'") == 1;
        if (hasTables && version < 2)
            execute(versionTwo);
        if (hasTables && version < 3)
            execute(versionThree);
        execute(schema);
        execute(("PRAGMA user_version=" + std::to_string(schemaVersion)).c_str());
        execute("COMMIT");
    } catch (const DatabaseError&) {
        sqlite3_exec(m_connection, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

Transaction::Transaction(Database& database, Access access)
    : m_database(database)
    , m_lock(database.m_mutex)
{
    statement(access == Access::Write ? "BEGIN IMMEDIATE" : "BEGIN").run();
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
