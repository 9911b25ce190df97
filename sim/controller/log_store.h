#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>
#include <optional>

#include "link/device_records.h"
#include "sim/controller/sqlite_database.h"

/// The access events, each with whether the management service has confirmed it.
class LogStore {
 public:
    /// @p dataFolder stands for "/mnt/data".
    explicit LogStore(const QString& dataFolder);

    /// Stores the event and returns it with its number.
    GUI_LOGDATA add(GUI_LOGDATA log, bool reported);
    /// Stores many events that the management service knows, oldest first.
    void add(const QVector<GUI_LOGDATA>& logs);
    /// The newest @p count events, newest first.
    QVector<GUI_LOGDATA> newest(int count);
    void removeAll();

    /// How many events match @p query, whose periods count back from @p today.
    quint32 count(const GUI_USERLOG& query, const QDate& today);
    /// Those of them that it asks for, newest first.
    QVector<GUI_LOGDATA> find(const GUI_USERLOG& query, const QDate& today);

    std::optional<GUI_LOGDATA> oldestUnreported();
    void setReported(quint32 number);

    /// Meals paid in operating mode @p mode since @p since, of one user or of all.
    quint32 mealsSince(int mode, const QDateTime& since, const QString& userId = {});

 private:
    SqliteDatabase database_;
};

/// The event's time.
QDateTime logTime(const GUI_LOGDATA& log);
