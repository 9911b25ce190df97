#include "sim/controller/sqlite_database.h"

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(simDataLog, "zel.sim.data", QtInfoMsg)

namespace {

/// The terminal reads the same file; milliseconds to wait for it.
constexpr int kBusyTimeout = 500;

}  // namespace

SqliteStatement::~SqliteStatement() {
    sqlite3_finalize(statement_);
}

SqliteStatement& SqliteStatement::bind(int parameter, qint64 value) {
    sqlite3_bind_int64(statement_, parameter, value);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int parameter, const QString& value) {
    const QByteArray text = value.toUtf8();
    sqlite3_bind_text(statement_, parameter, text.constData(), text.size(), SQLITE_TRANSIENT);
    return *this;
}

SqliteStatement& SqliteStatement::bind(int parameter, const QByteArray& value) {
    sqlite3_bind_blob(statement_, parameter, value.constData(), value.size(), SQLITE_TRANSIENT);
    return *this;
}

bool SqliteStatement::step() {
    return sqlite3_step(statement_) == SQLITE_ROW;
}

qint64 SqliteStatement::number(int column) const {
    return sqlite3_column_int64(statement_, column);
}

QByteArray SqliteStatement::blob(int column) const {
    const void* bytes = sqlite3_column_blob(statement_, column);
    return QByteArray(static_cast<const char*>(bytes), sqlite3_column_bytes(statement_, column));
}

SqliteDatabase::SqliteDatabase(const QString& path, const char* schema) {
    QDir().mkpath(QFileInfo(path).path());
    if (open(path, schema))
        return;
    qCWarning(simDataLog, "%s cannot be used, put aside", qUtf8Printable(path));
    const QString aside = path + QStringLiteral(".broken");
    QFile::remove(aside);
    QFile::rename(path, aside);
    if (open(path, schema))
        return;
    qCWarning(simDataLog, "%s cannot be made, its data will not last", qUtf8Printable(path));
    open(QStringLiteral(":memory:"), schema);
}

SqliteDatabase::~SqliteDatabase() {
    sqlite3_close(handle_);
}

bool SqliteDatabase::open(const QString& path, const char* schema) {
    sqlite3_close(handle_);
    handle_ = nullptr;
    if (sqlite3_open(QFile::encodeName(path).constData(), &handle_) != SQLITE_OK)
        return false;
    sqlite3_busy_timeout(handle_, kBusyTimeout);
    return run("PRAGMA synchronous=OFF") && run(schema);
}

SqliteStatement SqliteDatabase::prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr) != SQLITE_OK)
        qCWarning(simDataLog, "%s: %s", sql, sqlite3_errmsg(handle_));
    return SqliteStatement(statement);
}

bool SqliteDatabase::run(const char* sql) {
    return sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

qint64 SqliteDatabase::lastRowId() const {
    return sqlite3_last_insert_rowid(handle_);
}
