#pragma once

#include <QByteArray>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

/// One prepared statement, from its first step to its end. Parameters and columns count from 1 and
/// 0, as in SQLite.
class SqliteStatement {
 public:
    explicit SqliteStatement(sqlite3_stmt* statement) : statement_(statement) {}
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    SqliteStatement& bind(int parameter, qint64 value);
    SqliteStatement& bind(int parameter, const QString& value);
    SqliteStatement& bind(int parameter, const QByteArray& value);

    /// Moves to the next row; false at the end and on an error.
    bool step();
    qint64 number(int column) const;
    QByteArray blob(int column) const;

 private:
    sqlite3_stmt* const statement_;
};

/// A database file. What goes wrong is logged; statements on it then do nothing.
class SqliteDatabase {
 public:
    /// Opens @p path, making the file and its folder, and runs @p schema on it. A file that is no
    /// such database is put aside; where none can be had the data live in memory.
    SqliteDatabase(const QString& path, const char* schema);
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    SqliteStatement prepare(const char* sql);
    bool run(const char* sql);
    qint64 lastRowId() const;

 private:
    bool open(const QString& path, const char* schema);

    sqlite3* handle_ = nullptr;
};
