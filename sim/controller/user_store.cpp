#include "sim/controller/user_store.h"

#include <cstring>

#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/portrait.h"
#include "sim/controller/made_up.h"

namespace {

// Readers rely on the second column being the identifier, and take rows with a MARK below 160 as
// present.
constexpr char kSchema[] =
    "CREATE TABLE IF NOT EXISTS USER_T (IDX INTEGER PRIMARY KEY, USER_ID TEXT UNIQUE NOT NULL, "
    "NAME TEXT, CARD_NO TEXT, MARK INTEGER NOT NULL, REPORTED INTEGER NOT NULL, RECORD BLOB NOT "
    "NULL);"
    "SELECT IDX, USER_ID, NAME, CARD_NO, MARK, REPORTED, RECORD FROM USER_T LIMIT 1;";
constexpr qint64 kPresent = 0;

/// Users that a fresh controller comes with: three scripts, every way of authentication, a name as
/// long as names get, someone who may only come at night and someone without a picture.
const struct FirstUser {
    const char* userId;
    const char* name;
    const char* cardNumber;
    const char* timeSchedule;
    quint8 authMethod;
    quint8 level;
    quint8 rights;
    bool picture;
} kFirstUsers[] = {
    {"01023456789", "김서연", "10000001", "", 2, UserLevel::Administrator, 0, true},
    {"01098765432", "박지훈", "10000002", "", 2, 1, 0, true},
    {"01055501234", "Emily Carter", "10000003", "", 2, 1, UserRights::InOutOnly, false},
    {"01044447777", "佐藤 美咲", "", "", 4, 1, 0, true},
    {"01031313131", "Maximiliana Featherstonehaugh-Li", "10000005", "", 3, 1, 0, true},
    {"01077778888", "이도윤", "10000006", "22:00~06:00", 0, 1, UserRights::InOutOnly, true},
    {"01066665555", "中村 蓮", "", "", AuthMethod::Face, UserLevel::Visitor, UserRights::InOutOnly,
     true},
};

}  // namespace

UserStore::UserStore(const QString& dataFolder)
    : dataFolder_(dataFolder),
      database_(dataFolder + QStringLiteral("/db_user2/DB_userT.bin"), kSchema) {
    if (!database_.prepare("SELECT 1 FROM USER_T").step())
        addFirstUsers(dataFolder);
    countAll();
}

void UserStore::addFirstUsers(const QString& dataFolder) {
    int look = 0;
    for (const FirstUser& first : kFirstUsers) {
        _gui_user_ user{};
        const QString id = QLatin1String(first.userId);
        setFieldText(user.userId, id);
        setFieldText(user.customerId, id);
        setFieldText(user.name, QString::fromUtf8(first.name));
        setFieldText(user.cardNumber, QLatin1String(first.cardNumber));
        setFieldText(user.timeSchedule, QLatin1String(first.timeSchedule));
        setFieldText(user.nationCode, QStringLiteral("kr"));
        setFieldText(user.registrationTime, QStringLiteral("2026-03-02 09:00:00"));
        user.authMethod = first.authMethod;
        user.level = first.level;
        user.rights = first.rights;
        user.cardPresent = first.cardNumber[0] != '\0';
        user.facePresent = first.authMethod != 0;
        if (first.picture) {
            setFieldText(user.picture, id + QStringLiteral(".jpg"));
            portrait::save(dataFolder, id, look);
        }
        ++look;
        store(user);
    }
    portrait::saveSnapshot(dataFolder, QLatin1String(portrait::kVisitor), look);
}

std::optional<_gui_user_> UserStore::first(SqliteStatement& query) {
    if (!query.step())
        return {};
    const QByteArray record = query.blob(0);
    _gui_user_ user{};
    if (record.size() != static_cast<int>(sizeof user))
        return {};
    std::memcpy(&user, record.constData(), sizeof user);
    return user;
}

QVector<_gui_user_> UserStore::users() {
    QVector<_gui_user_> users;
    SqliteStatement query =
        database_.prepare("SELECT RECORD FROM USER_T WHERE MARK<160 ORDER BY IDX");
    while (const auto user = first(query))
        users.append(*user);
    return users;
}

std::optional<_gui_user_> UserStore::find(const QString& userId) {
    SqliteStatement query =
        database_.prepare("SELECT RECORD FROM USER_T WHERE MARK<160 AND USER_ID=?1");
    return first(query.bind(1, userId));
}

std::optional<_gui_user_> UserStore::findByCard(const QString& cardNumber) {
    SqliteStatement query =
        database_.prepare("SELECT RECORD FROM USER_T WHERE MARK<160 AND CARD_NO=?1");
    return first(query.bind(1, cardNumber));
}

std::optional<_gui_user_> UserStore::findByNumber(const QString& number) {
    // Nearly everybody is stored under it.
    const auto first = find(number);
    if (number.isEmpty() || (first && fieldText(first->customerId) == number))
        return number.isEmpty() ? std::nullopt : first;
    for (const _gui_user_& user : users()) {
        if (fieldText(user.customerId) == number)
            return user;
    }
    return {};
}

void UserStore::store(const _gui_user_& user, bool reported) {
    if (const auto former = find(fieldText(user.userId)))
        count(*former, -1);
    count(user, 1);
    database_
        .prepare(
            "INSERT INTO USER_T (USER_ID, NAME, CARD_NO, MARK, REPORTED, RECORD) "
            "VALUES (?1, ?2, NULLIF(?3, ''), ?4, ?5, ?6) ON CONFLICT (USER_ID) DO UPDATE SET "
            "NAME=?2, CARD_NO=NULLIF(?3, ''), MARK=?4, REPORTED=?5, RECORD=?6")
        .bind(1, fieldText(user.userId))
        .bind(2, fieldText(user.name))
        .bind(3, fieldText(user.cardNumber))
        .bind(4, kPresent)
        .bind(5, qint64(reported))
        .bind(6, QByteArray(reinterpret_cast<const char*>(&user), sizeof user))
        .step();
}

bool UserStore::remove(const QString& userId) {
    const auto user = find(userId);
    if (!user)
        return false;
    count(*user, -1);
    database_.prepare("UPDATE USER_T SET MARK=160 WHERE USER_ID=?1").bind(1, userId).step();
    return true;
}

void UserStore::removeIf(const std::function<bool(const _gui_user_&)>& goes) {
    database_.run("BEGIN");
    for (const _gui_user_& user : users()) {
        if (goes(user))
            remove(fieldText(user.userId));
    }
    database_.run("COMMIT");
}

void UserStore::fill(int count, const QDateTime& now) {
    // Pictures for as many as somebody may scroll through.
    constexpr int kWithPicture = 300;
    database_.run("BEGIN");
    database_
        .prepare(
            "UPDATE USER_T SET MARK=160 WHERE IDX IN "
            "(SELECT IDX FROM USER_T WHERE MARK<160 ORDER BY IDX LIMIT -1 OFFSET ?1)")
        .bind(1, qint64(count))
        .step();
    countAll();
    for (int number = 0; counts_.all < static_cast<quint32>(count); ++number) {
        _gui_user_ user = made_up::user(number, now);
        const QString id = fieldText(user.userId);
        if (find(id))
            continue;
        if (number < kWithPicture && user.facePresent == 1) {
            setFieldText(user.picture, id + QStringLiteral(".jpg"));
            portrait::save(dataFolder_, id, number);
        }
        store(user, true);
    }
    database_.run("COMMIT");
}

std::optional<_gui_user_> UserStore::oldestUnreported() {
    SqliteStatement query = database_.prepare(
        "SELECT RECORD FROM USER_T WHERE MARK<160 AND REPORTED=0 ORDER BY IDX LIMIT 1");
    return first(query);
}

void UserStore::setReported(const QString& userId) {
    database_.prepare("UPDATE USER_T SET REPORTED=1 WHERE USER_ID=?1").bind(1, userId).step();
}

void UserStore::countAll() {
    counts_ = {};
    for (const _gui_user_& user : users())
        count(user, 1);
}

void UserStore::count(const _gui_user_& user, int by) {
    const auto difference = static_cast<quint32>(by);
    counts_.all += difference;
    (user.level == UserLevel::Administrator ? counts_.admin
     : user.level == UserLevel::Visitor     ? counts_.visitor
                                            : counts_.general) += difference;
    if (user.rights == UserRights::InOutOnly)
        counts_.inOut += difference;
    if (user.authMethod == AuthMethod::Face)
        counts_.faceOnly += difference;
}
