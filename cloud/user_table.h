#pragma once

#include <QByteArray>

struct sqlite3;

/// The device controller's table of users, read only. It belongs to another process, which may be
/// writing it, have it locked or not have made it yet.
class UserTable {
 public:
    /// Identifiers in the order of the table, separated by commas.
    struct Ids {
        int count = 0;
        QByteArray joined;
    };

    UserTable() = default;
    ~UserTable();
    UserTable(const UserTable&) = delete;
    UserTable& operator=(const UserTable&) = delete;

    /// Opens the table; it is never created. Waits for a lock for half a second at most, now and
    /// in sqlGetUserId().
    bool sqlOpen_ex();
    /// The identifiers of the users present. None at all when the table cannot be read to its end.
    Ids sqlGetUserId();

 private:
    sqlite3* handle_ = nullptr;
};
