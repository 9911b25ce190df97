#include "sim/controller/log_store.h"

#include <cstring>

#include "link/device_message.h"
#include "link/record_values.h"

namespace {

constexpr char kSchema[] =
    "CREATE TABLE IF NOT EXISTS LOG_T (NUMBER INTEGER PRIMARY KEY AUTOINCREMENT, TIME INTEGER NOT "
    "NULL, USER_ID TEXT NOT NULL, MODE INTEGER NOT NULL, STATUS INTEGER NOT NULL, METHOD INTEGER "
    "NOT NULL, MEALS INTEGER NOT NULL, REPORTED INTEGER NOT NULL, RECORD BLOB NOT NULL);"
    "SELECT NUMBER, TIME, USER_ID, MODE, STATUS, METHOD, MEALS, REPORTED, RECORD FROM LOG_T LIMIT "
    "1;";

std::optional<GUI_LOGDATA> next(SqliteStatement& query) {
    if (!query.step())
        return {};
    const QByteArray record = query.blob(1);
    GUI_LOGDATA log{};
    if (record.size() != static_cast<int>(sizeof log))
        return {};
    std::memcpy(&log, record.constData(), sizeof log);
    log.number = static_cast<quint32>(query.number(0));
    return log;
}

/// Seconds since the epoch, from the first one to before the last one. Empty when the query's days
/// make no sense.
struct Span {
    qint64 from = 0;
    qint64 to = 0;
};

QDate dateOf(const RecordDate& date) {
    return {date.year, date.month, date.day};
}

Span spanOf(const GUI_USERLOG& query, const QDate& today) {
    constexpr qint64 kFarOff = 1LL << 40;
    constexpr int kWeek = 7;
    constexpr int kMonth = 30;
    const auto last = [&today](int days) {
        return Span{today.addDays(1 - days).startOfDay().toSecsSinceEpoch(), kFarOff};
    };
    switch (query.period) {
        case LogPeriod::All:
            return {0, kFarOff};
        case LogPeriod::Today:
            return last(1);
        case LogPeriod::Week:
            return last(kWeek);
        case LogPeriod::Month:
            return last(kMonth);
        case LogPeriod::FromTo:
            break;
        default:
            return {};
    }
    Span span{0, kFarOff};
    if (query.from.year != 0) {
        if (!dateOf(query.from).isValid())
            return {};
        span.from = dateOf(query.from).startOfDay().toSecsSinceEpoch();
    }
    if (query.to.year != 0) {
        if (!dateOf(query.to).isValid())
            return {};
        span.to = dateOf(query.to).addDays(1).startOfDay().toSecsSinceEpoch();
    }
    return span;
}

/// What a query asks for. Its last two parameters are the page.
constexpr char kMatching[] =
    " FROM LOG_T WHERE TIME>=?1 AND TIME<?2 AND (?3='' OR USER_ID=?3) AND (?4=0 OR STATUS=(?4=1)) "
    "AND (?5=0 OR METHOD=?5-1) ORDER BY TIME DESC, NUMBER DESC LIMIT ?6 OFFSET ?7";

SqliteStatement& bind(SqliteStatement& statement, const GUI_USERLOG& query, const QDate& today) {
    const Span span = spanOf(query, today);
    return statement.bind(1, span.from)
        .bind(2, span.to)
        .bind(3, query.kind == 1 ? fieldText(query.userId) : QString(QLatin1String("")))
        .bind(4, qint64(query.viewType))
        .bind(5, qint64(query.authMethod));
}

}  // namespace

QDateTime logTime(const GUI_LOGDATA& log) {
    return {QDate(2000 + log.year, log.month, log.day), QTime(log.hour, log.minute, log.second)};
}

LogStore::LogStore(const QString& dataFolder)
    : database_(dataFolder + QStringLiteral("/sim/logs.bin"), kSchema) {}

GUI_LOGDATA LogStore::add(GUI_LOGDATA log, bool reported) {
    database_
        .prepare(
            "INSERT INTO LOG_T (TIME, USER_ID, MODE, STATUS, METHOD, MEALS, REPORTED, RECORD) "
            "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)")
        .bind(1, logTime(log).toSecsSinceEpoch())
        .bind(2, fieldText(log.userId))
        .bind(3, qint64(log.inOut))
        .bind(4, qint64(log.eventStatus))
        .bind(5, qint64(log.authMethod))
        .bind(6, qint64(log.payCount))
        .bind(7, qint64(reported))
        .bind(8, QByteArray(reinterpret_cast<const char*>(&log), sizeof log))
        .step();
    log.number = static_cast<quint32>(database_.lastRowId());
    return log;
}

void LogStore::add(const QVector<GUI_LOGDATA>& logs) {
    database_.run("BEGIN");
    for (const GUI_LOGDATA& log : logs)
        add(log, true);
    database_.run("COMMIT");
}

QVector<GUI_LOGDATA> LogStore::newest(int count) {
    QVector<GUI_LOGDATA> logs;
    SqliteStatement query =
        database_.prepare("SELECT NUMBER, RECORD FROM LOG_T ORDER BY NUMBER DESC LIMIT ?1");
    query.bind(1, qint64(count));
    while (const auto log = next(query))
        logs.append(*log);
    return logs;
}

void LogStore::removeAll() {
    database_.run("DELETE FROM LOG_T");
}

quint32 LogStore::count(const GUI_USERLOG& query, const QDate& today) {
    SqliteStatement statement =
        database_.prepare((QByteArray("SELECT COUNT(*)") + kMatching).constData());
    bind(statement, query, today).bind(6, qint64(1)).bind(7, qint64(0));
    return statement.step() ? static_cast<quint32>(statement.number(0)) : 0;
}

QVector<GUI_LOGDATA> LogStore::find(const GUI_USERLOG& query, const QDate& today) {
    QVector<GUI_LOGDATA> logs;
    SqliteStatement statement =
        database_.prepare((QByteArray("SELECT NUMBER, RECORD") + kMatching).constData());
    bind(statement, query, today).bind(6, qint64(query.count)).bind(7, qint64(query.start));
    while (const auto log = next(statement))
        logs.append(*log);
    return logs;
}

std::optional<GUI_LOGDATA> LogStore::oldestUnreported() {
    SqliteStatement query = database_.prepare(
        "SELECT NUMBER, RECORD FROM LOG_T WHERE REPORTED=0 ORDER BY NUMBER LIMIT 1");
    return next(query);
}

void LogStore::setReported(quint32 number) {
    database_.prepare("UPDATE LOG_T SET REPORTED=1 WHERE NUMBER=?1").bind(1, qint64(number)).step();
}

quint32 LogStore::mealsSince(int mode, const QDateTime& since, const QString& userId) {
    SqliteStatement query = database_.prepare(
        "SELECT TOTAL(MEALS) FROM LOG_T WHERE MODE=?1 AND STATUS=1 AND TIME>=?2 AND (?3='' OR "
        "USER_ID=?3)");
    query.bind(1, qint64(mode)).bind(2, since.toSecsSinceEpoch()).bind(3, userId);
    return query.step() ? static_cast<quint32>(query.number(0)) : 0;
}
