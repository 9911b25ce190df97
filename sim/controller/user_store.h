#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>
#include <functional>
#include <optional>

#include "link/device_records.h"
#include "sim/controller/sqlite_database.h"

/// The users, in the table that the terminal reads too, and their pictures. A new store is given a
/// handful of users with pictures drawn for them.
class UserStore {
 public:
    static constexpr quint32 kMostUsers = 10000;
    static constexpr quint32 kMostAdministrators = 5;

    /// @p dataFolder stands for "/mnt/data".
    explicit UserStore(const QString& dataFolder);

    /// All present users, oldest first.
    QVector<_gui_user_> users();
    std::optional<_gui_user_> find(const QString& userId);
    std::optional<_gui_user_> findByCard(const QString& cardNumber);
    /// The user with that customer number; an empty one is nobody's.
    std::optional<_gui_user_> findByNumber(const QString& number);
    /// Adds the user, or replaces the one with the same userId. @p reported: the management service
    /// knows of the user.
    void store(const _gui_user_& user, bool reported = false);
    /// Marks the user as deleted, as the table's readers expect. False if there is none.
    bool remove(const QString& userId);
    /// The same for all whom @p goes says yes of.
    void removeIf(const std::function<bool(const _gui_user_&)>& goes);
    const UserCounts& counts() const { return counts_; }
    /// Adds made-up people, of whom the management service knows, or removes the newest users until
    /// there are @p count.
    void fill(int count, const QDateTime& now);

    std::optional<_gui_user_> oldestUnreported();
    void setReported(const QString& userId);

 private:
    std::optional<_gui_user_> first(SqliteStatement& query);
    void addFirstUsers(const QString& dataFolder);
    void countAll();
    void count(const _gui_user_& user, int by);

    const QString dataFolder_;
    SqliteDatabase database_;
    UserCounts counts_{};
};
