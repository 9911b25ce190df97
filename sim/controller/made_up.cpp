#include "sim/controller/made_up.h"

#include <QRandomGenerator>
#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>

#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/controller/device.h"
#include "sim/controller/work_status.h"

namespace made_up {
namespace {

constexpr const char* kKoreanFamily[] = {"김", "이", "박", "최", "정",  "강", "조",
                                         "윤", "장", "임", "한", "오",  "서", "신",
                                         "권", "황", "안", "송", "남궁"};
constexpr const char* kKoreanGiven[] = {
    "서준", "하준", "도윤", "시우", "주원", "예준", "지호", "준서", "민준", "현우", "건우",
    "우진", "서연", "서윤", "지우", "하윤", "지민", "채원", "수아", "지유", "은서", "다은",
    "예린", "혜진", "영숙", "정희", "미경", "상철", "동현", "태형", "솔",   "결"};
constexpr const char* kEnglishGiven[] = {
    "Alice", "Benjamin", "Charlotte", "Daniel", "Emma",     "Frank", "Grace",  "Henry",
    "Isla",  "Jack",     "Katherine", "Liam",   "Margaret", "Noah",  "Olivia", "Peter"};
constexpr const char* kEnglishFamily[] = {"Baker",    "Carter",    "Davies",   "Edwards",
                                          "Fletcher", "Graham",    "Harrison", "Ingram",
                                          "Johnson",  "Kendall",   "Lawson",   "Mitchell",
                                          "O'Connor", "Patterson", "Reed",     "Whitfield-Moore"};
constexpr const char* kJapaneseFamily[] = {"佐藤",   "鈴木", "高橋",   "田中",  "渡辺", "伊藤",
                                           "山本",   "中村", "小林",   "加藤",  "吉田", "山田",
                                           "佐々木", "林",   "長谷川", "五十嵐"};
constexpr const char* kJapaneseGiven[] = {"蓮",   "陽翔", "湊",   "大翔",  "悠真", "健太",
                                          "翔太", "誠",   "陽菜", "結衣",  "美咲", "さくら",
                                          "葵",   "凛",   "恵子", "由美子"};

template <std::size_t size>
QString any(const char* const (&texts)[size], QRandomGenerator& random) {
    return QString::fromUtf8(texts[random.bounded(static_cast<int>(size))]);
}

/// Yes in @p percent of a hundred cases.
bool likely(int percent, QRandomGenerator& random) {
    return random.bounded(100) < percent;
}

void setName(_gui_user_& user, QRandomGenerator& random) {
    const int share = random.bounded(100);
    if (share < 60) {
        setFieldText(user.name, any(kKoreanFamily, random) + any(kKoreanGiven, random));
        setFieldText(user.nationCode, QStringLiteral("kr"));
    } else if (share < 80) {
        setFieldText(user.name,
                     any(kEnglishGiven, random) + QLatin1Char(' ') + any(kEnglishFamily, random));
        setFieldText(user.nationCode, QStringLiteral("us"));
    } else {
        setFieldText(user.name,
                     any(kJapaneseFamily, random) + QLatin1Char(' ') + any(kJapaneseGiven, random));
        setFieldText(user.nationCode, QStringLiteral("jp"));
    }
}

/// When people do what, and in how many of a hundred cases.
constexpr struct Habit {
    int percent;
    quint8 mode;
    int from;  // minutes of the day
    int to;
} kAccess[] = {{100, work::AccessOnly, 6 * 60, 22 * 60}},
  kAttendance[] = {{35, work::In, 7 * 60 + 30, 9 * 60 + 20},
                   {35, work::Out, 17 * 60 + 30, 20 * 60 + 30},
                   {10, work::Break, 11 * 60 + 30, 15 * 60},
                   {10, work::Return, 12 * 60 + 15, 16 * 60},
                   {10, work::AccessOnly, 6 * 60, 22 * 60}},
  kMeals[] = {{20, work::Breakfast, 7 * 60, 9 * 60},
              {50, work::Breakfast + 1, 11 * 60 + 30, 13 * 60 + 30},
              {20, work::Breakfast + 2, 17 * 60 + 30, 19 * 60 + 30},
              {10, work::Supper, 22 * 60, 24 * 60}};

template <std::size_t size>
const Habit& any(const Habit (&habits)[size], QRandomGenerator& random) {
    int share = random.bounded(100);
    for (const Habit& habit : habits) {
        share -= habit.percent;
        if (share < 0)
            return habit;
    }
    return habits[0];
}

const Habit& anyHabit(quint8 operation, QRandomGenerator& random) {
    switch (operation) {
        case Operation::Attendance:
            return any(kAttendance, random);
        case Operation::Meals:
            return any(kMeals, random);
        default:
            return any(kAccess, random);
    }
}

QDateTime anyTime(const Habit& habit, const QDateTime& now, QRandomGenerator& random) {
    QDate day = now.date().addDays(-1 - random.bounded(365));
    if (day.dayOfWeek() == Qt::Sunday && !likely(10, random))
        day = day.addDays(-2);
    const int second = habit.from * 60 + random.bounded((habit.to - habit.from) * 60);
    return {day, QTime::fromMSecsSinceStartOfDay(second * 1000)};
}

/// How @p user was identified this time.
quint8 anyMethod(const _gui_user_& user, QRandomGenerator& random) {
    switch (user.authMethod) {
        case AuthMethod::FaceAndCard:
        case AuthMethod::FaceAndId:
            return user.authMethod;
        case AuthMethod::FaceOrCard:
            if (likely(20, random))
                return AuthMethod::FaceOrCard;
            break;
        default:
            break;
    }
    const bool byFace = user.facePresent != 0 && (user.cardPresent == 0 || likely(70, random));
    return byFace ? command::failure::ByFace : command::failure::ByCard;
}

void setFace(GUI_LOGDATA& log, int face) {
    setFieldText(log.visiblePicture, facePicture(face));
    setFieldText(log.infraredPicture, infraredPicture(face));
}

void setMethod(GUI_LOGDATA& log, const _gui_user_& user, QRandomGenerator& random) {
    log.authMethod = anyMethod(user, random);
    const bool byFace = log.authMethod != command::failure::ByCard;
    if (byFace && user.picture[0] == 0)
        setFace(log, static_cast<int>(qHash(fieldText(user.userId)) % kFaces));
    log.score = static_cast<quint8>(byFace ? 88 + random.bounded(12) : 0);
}

GUI_LOGDATA event(const QVector<_gui_user_>& users, const _gui_menu_& settings,
                  const QDateTime& now, QRandomGenerator& random) {
    const Habit& habit = anyHabit(settings.setup.operation, random);
    const QDateTime time = anyTime(habit, now, random);
    const bool stranger = users.isEmpty() || likely(2, random);
    const _gui_user_ user = stranger ? _gui_user_{} : users[random.bounded(users.size())];
    GUI_LOGDATA log = eventOf(user, time);
    if (stranger) {
        log.authMethod = command::failure::ByFace;
        setFace(log, random.bounded(kFaces));
    } else {
        setMethod(log, user, random);
    }
    log.eventStatus = !stranger && !likely(2, random);
    log.inOut = stranger ? quint8(work::AccessOnly) : habit.mode;
    if (log.eventStatus == 1 && log.inOut >= work::Breakfast)
        log.payCount = static_cast<quint8>(likely(5, random) ? 2 + random.bounded(3) : 1);
    return log;
}

}  // namespace

_gui_user_ user(int number, const QDateTime& now) {
    QRandomGenerator random(static_cast<quint32>(number));
    _gui_user_ user{};
    // The step has no divisor in common with the numbers that there are, so none comes twice.
    const QString id = QStringLiteral("010%1").arg(20000000 + number * 6997LL % 79999999);
    setFieldText(user.userId, id);
    setFieldText(user.customerId, id);
    setName(user, random);
    user.authMethod = static_cast<quint8>(
        likely(70, random) ? AuthMethod::FaceOrCard : random.bounded(AuthMethod::FaceAndId + 1));
    user.level = likely(6, random) ? UserLevel::Visitor : UserLevel::General;
    user.rights = likely(20, random) ? UserRights::InOutOnly : UserRights::AlarmAndInOut;
    user.glasses = likely(40, random);
    user.facePresent = user.authMethod != AuthMethod::Card;
    user.cardPresent = user.authMethod == AuthMethod::Card ||
                       user.authMethod == AuthMethod::FaceOrCard ||
                       user.authMethod == AuthMethod::FaceAndCard;
    if (user.cardPresent == 1)
        setFieldText(user.cardNumber, QString::number(20000000 + number));
    if (likely(5, random))
        setFieldText(user.timeSchedule, QStringLiteral("08:00~20:00"));
    setFieldText(user.registrationTime, now.addSecs(-random.bounded(2 * 365 * 24 * 60) * 60LL)
                                            .toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    return user;
}

QString facePicture(int face) {
    return QStringLiteral("made_up_%1.jpg").arg(face);
}

QString infraredPicture(int face) {
    return QStringLiteral("made_up_%1_ir.jpg").arg(face);
}

QVector<GUI_LOGDATA> events(int count, const QVector<_gui_user_>& users, const _gui_menu_& settings,
                            const QDateTime& now) {
    QRandomGenerator random(1);
    QVector<GUI_LOGDATA> logs;
    logs.reserve(count);
    for (int i = 0; i < count; ++i)
        logs.append(event(users, settings, now, random));
    const auto when = [](const GUI_LOGDATA& log) {
        return std::make_tuple(log.year, log.month, log.day, log.hour, log.minute, log.second);
    };
    std::sort(logs.begin(), logs.end(), [when](const GUI_LOGDATA& one, const GUI_LOGDATA& other) {
        return when(one) < when(other);
    });
    return logs;
}

}  // namespace made_up
