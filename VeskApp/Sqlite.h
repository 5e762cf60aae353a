#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

// A failed SQLite call, with SQLite's own words for it.
struct SqliteError : std::runtime_error {
    SqliteError(int code, const std::string& message) : std::runtime_error(message), code(code) {}
    int code;
};

// One prepared statement. Binding counts from 1, columns from 0, as in SQLite.
class Statement {
public:
    Statement(sqlite3* database, std::string_view sql);
    ~Statement();
    Statement(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& bind(int index, std::string_view text);
    Statement& bind(int index, int64_t value);
    Statement& bind(int index, double value);
    Statement& bind(int index, std::nullopt_t);
    template <class T>
    Statement& bind(int index, const std::optional<T>& value) {
        return value ? bind(index, *value) : bind(index, std::nullopt);
    }

    // Steps once: true while a row is there to read.
    bool step();
    // Runs to the end, for statements that return no rows, and makes the statement ready
    // to run again with new bindings.
    void run();

    bool isNull(int column) const;
    std::string text(int column) const;
    int64_t integer(int column) const;
    double real(int column) const;

private:
    sqlite3* database_;
    sqlite3_stmt* statement_ = nullptr;
};

// A connection to one database file.
class Database {
public:
    enum class Mode { readWrite, readOnly };
    // Opens (readWrite creates) the file; throws SqliteError when it can't.
    Database(const std::string& path, Mode mode);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void execute(std::string_view sql);
    Statement prepare(std::string_view sql) { return Statement(database_, sql); }
    int64_t pragma(std::string_view name);

    // One transaction: begun at construction, committed by `commit`, rolled back when
    // destroyed uncommitted.
    class Transaction {
    public:
        explicit Transaction(Database& database);
        ~Transaction();
        void commit();

    private:
        Database& database_;
        bool open_ = true;
    };

private:
    sqlite3* database_ = nullptr;
};
