#include "VeskApp/Sqlite.h"

#include <sqlite3.h>

#include <utility>

namespace {

[[noreturn]] void fail(sqlite3* database, int code) {
    throw SqliteError(code, database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

}  // namespace

Statement::Statement(sqlite3* database, std::string_view sql) : database_(database) {
    int code = sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement_, nullptr);
    if (code != SQLITE_OK) fail(database, code);
}

Statement::Statement(Statement&& other) noexcept
    : database_(other.database_), statement_(std::exchange(other.statement_, nullptr)) {}

Statement::~Statement() { sqlite3_finalize(statement_); }

Statement& Statement::bind(int index, std::string_view text) {
    int code = sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    if (code != SQLITE_OK) fail(database_, code);
    return *this;
}

Statement& Statement::bind(int index, int64_t value) {
    if (int code = sqlite3_bind_int64(statement_, index, value); code != SQLITE_OK) fail(database_, code);
    return *this;
}

Statement& Statement::bind(int index, double value) {
    if (int code = sqlite3_bind_double(statement_, index, value); code != SQLITE_OK) fail(database_, code);
    return *this;
}

Statement& Statement::bind(int index, std::nullopt_t) {
    if (int code = sqlite3_bind_null(statement_, index); code != SQLITE_OK) fail(database_, code);
    return *this;
}

bool Statement::step() {
    int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    fail(database_, code);
}

void Statement::run() {
    while (step()) {
    }
    sqlite3_reset(statement_);
}

bool Statement::isNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

std::string Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return bytes ? std::string(bytes, static_cast<size_t>(sqlite3_column_bytes(statement_, column))) : std::string();
}

int64_t Statement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

double Statement::real(int column) const { return sqlite3_column_double(statement_, column); }

Database::Database(const std::string& path, Mode mode) {
    int flags = mode == Mode::readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    int code = sqlite3_open_v2(path.c_str(), &database_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        std::string message = database_ ? sqlite3_errmsg(database_) : sqlite3_errstr(code);
        sqlite3_close(database_);
        database_ = nullptr;
        throw SqliteError(code, message);
    }
    sqlite3_extended_result_codes(database_, 1);
    sqlite3_busy_timeout(database_, 5000);
}

Database::~Database() { sqlite3_close(database_); }

void Database::execute(std::string_view sql) {
    std::string text(sql);
    char* message = nullptr;
    int code = sqlite3_exec(database_, text.c_str(), nullptr, nullptr, &message);
    if (code != SQLITE_OK) {
        std::string words = message ? message : sqlite3_errstr(code);
        sqlite3_free(message);
        throw SqliteError(code, words);
    }
}

int64_t Database::pragma(std::string_view name) {
    Statement statement = prepare("PRAGMA " + std::string(name));
    return statement.step() ? statement.integer(0) : 0;
}

Database::Transaction::Transaction(Database& database) : database_(database) { database_.execute("BEGIN IMMEDIATE"); }

Database::Transaction::~Transaction() {
    if (open_) sqlite3_exec(database_.database_, "ROLLBACK", nullptr, nullptr, nullptr);
}

void Database::Transaction::commit() {
    database_.execute("COMMIT");
    open_ = false;
}
