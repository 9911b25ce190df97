#include "cloud/user_table.h"

#include <sqlite3.h>

#include <QFile>
#include <QString>

#include "base/device_paths.h"
#include "cloud/cloud_log.h"

namespace {

constexpr int kBusyTimeout = 500;  // ms
constexpr int kIdColumn = 1;

}  // namespace

UserTable::~UserTable() {
    sqlite3_close(handle_);
}

bool UserTable::sqlOpen_ex() {
    const QString path = DevicePaths::at(QStringLiteral("%1/%2").arg(
        QStringLiteral("/mnt/data/db_user2"), QStringLiteral("DB_userT.bin")));
    bool opened = sqlite3_open_v2(QFile::encodeName(path).constData(), &handle_,
                                  SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) == SQLITE_OK;
    if (opened) {
        sqlite3_busy_timeout(handle_, kBusyTimeout);
        // Fails on a file that is no database and, after the time-out, on a locked one. The table
        // is read once from front to end: a cache of it would only cost memory.
        const auto run = [this](const char* sql) {
            return sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
        };
        opened = run("PRAGMA synchronous=OFF;PRAGMA count_changes=OFF;PRAGMA temp_store=memory;") &&
                 run("PRAGMA cache_size=32;");
    }
    if (!opened) {
        qCWarning(cloudLog, "user table not opened: %s", sqlite3_errmsg(handle_));
        sqlite3_close(handle_);
        handle_ = nullptr;
    }
    return opened;
}

UserTable::Ids UserTable::sqlGetUserId() {
    if (handle_ == nullptr)
        return {};
    Ids ids;
    sqlite3_stmt* query = nullptr;
    int state =
        sqlite3_prepare_v2(handle_, "SELECT * FROM USER_T WHERE MARK<160;", -1, &query, nullptr);
    if (state == SQLITE_OK) {
        while ((state = sqlite3_step(query)) == SQLITE_ROW) {
            if (ids.count++ > 0)
                ids.joined.append(',');
            const auto* id = reinterpret_cast<const char*>(sqlite3_column_text(query, kIdColumn));
            ids.joined.append(id, sqlite3_column_bytes(query, kIdColumn));
        }
    }
    sqlite3_finalize(query);
    if (state != SQLITE_DONE) {
        qCWarning(cloudLog, "user table not read: %s", sqlite3_errmsg(handle_));
        return {};
    }
    return ids;
}
