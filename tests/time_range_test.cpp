#include "screens/settings/time_range.h"

#include <QtTest>

namespace {

/// What reading @p text gives, and the range after that, which was 01:02~03:04.
QString read(const char* text) {
    _byte4_time_se_ range{1, 2, 3, 4};
    const int reading = TimeRange::getBetweenTime(QString::fromUtf8(text), &range);
    return QString::number(reading) + QLatin1Char(' ') + TimeRange::betweenTimeText(range);
}

}  // namespace

class TimeRangeTest : public QObject {
    Q_OBJECT

 private slots:
    void reads() {
        const std::pair<const char*, const char*> ranges[] = {
            {"09:00~18:00", "1 09:00~18:00"}, {"00:00~24:00", "1 00:00~24:00"},
            {"24:00~24:00", "1 24:00~24:00"}, {"009:5~00018", "1 09:05~18:00"},
            {"00000000009", "1 09:00~00:00"},
        };
        for (const auto& [text, shown] : ranges)
            QCOMPARE(read(text), QLatin1String(shown));
        for (const char* malformed :
             {"", "         ~:", "09:00:~18:00", "9:00~18:00", "09:00~18:00~", "09:00~18:00:30",
              "09:00~18:30 pm", "-9:00~18:00", "０９:００~１８:００"})
            QCOMPARE(read(malformed), QStringLiteral("0 01:02~03:04"));
        for (const char* outOfRange : {"25:00~18:00", "09:60~18:00", "09:00~25:00", "09:00~18:60",
                                       "256:00~18:00", "4294967305:00~18:00"})
            QCOMPARE(read(outOfRange), QStringLiteral("-1 01:02~03:04"));
    }

    void standsBeside() {
        // Which of them comes first makes no difference.
        const auto check = [](const char* ranges) {
            _byte4_time_se_ a{};
            _byte4_time_se_ b{};
            TimeRange::getBetweenTime(QString::fromLatin1(ranges, 11), &a);
            TimeRange::getBetweenTime(QLatin1String(ranges + 12), &b);
            return QPoint(TimeRange::CheckTime(a, b), TimeRange::CheckTime(b, a));
        };
        for (const char* apart :
             {"06:00~09:00 10:00~13:00", "09:00~12:00 12:00~18:00", "22:00~06:00 06:00~22:00"})
            QVERIFY2(check(apart) == QPoint(1, 1), apart);
        // By day, across midnight, and empty ones.
        for (const char* overlap :
             {"09:00~12:01 12:00~18:00", "09:00~18:00 12:00~13:00", "22:00~06:00 05:59~22:00",
              "22:00~06:00 06:00~22:01", "22:00~06:00 23:00~24:00", "22:00~06:00 23:00~05:00",
              "22:00~06:00 21:00~20:00", "12:00~12:00 13:00~14:00", "12:00~12:00 22:00~06:00",
              "24:00~24:00 13:00~14:00"})
            QVERIFY2(check(overlap) == QPoint(0, 0), overlap);
    }
};

QTEST_APPLESS_MAIN(TimeRangeTest)
#include "time_range_test.moc"
