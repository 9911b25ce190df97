#include "screens/settings/time_range.h"

#include <QtTest>
#include <tuple>

using TimeRange::Malformed;
using TimeRange::OutOfRange;
using TimeRange::Valid;

namespace {

constexpr _byte4_time_se_ kBefore{1, 2, 3, 4};

_byte4_time_se_ range(const char* text) {
    _byte4_time_se_ read = kBefore;
    if (TimeRange::getBetweenTime(QString::fromUtf8(text), &read) != Valid)
        qFatal("%s is no range", text);
    return read;
}

}  // namespace

class TimeRangeTest : public QObject {
    Q_OBJECT

 private slots:
    void reads() {
        const std::tuple<const char*, int, const char*> rows[] = {
            {"09:00~18:00", Valid, "09:00~18:00"}, {"00:00~24:00", Valid, "00:00~24:00"},
            {"24:00~24:00", Valid, "24:00~24:00"}, {"009:5~00018", Valid, "09:05~18:00"},
            {"00000000009", Valid, "09:00~00:00"},
        };
        for (const auto& [text, reading, shown] : rows) {
            _byte4_time_se_ read = kBefore;
            QCOMPARE(int(TimeRange::getBetweenTime(QLatin1String(text), &read)), reading);
            QCOMPARE(TimeRange::betweenTimeText(read), QLatin1String(shown));
        }
        const std::pair<int, const char*> faults[] = {{Malformed, "         ~:"},
                                                      {Malformed, "09:00:~18:00"},
                                                      {Malformed, ""},
                                                      {Malformed, "9:00~18:00"},
                                                      {Malformed, "09:00~18:00~"},
                                                      {Malformed, "09:00~18:00:30"},
                                                      {Malformed, "09:00~18:30 pm"},
                                                      {Malformed, "-9:00~18:00"},
                                                      {Malformed, "０９:００~１８:００"},
                                                      {OutOfRange, "25:00~18:00"},
                                                      {OutOfRange, "09:60~18:00"},
                                                      {OutOfRange, "09:00~25:00"},
                                                      {OutOfRange, "09:00~18:60"},
                                                      {OutOfRange, "256:00~18:00"},
                                                      {OutOfRange, "4294967305:00~18:00"}};
        for (const auto& [reading, text] : faults) {
            _byte4_time_se_ read = kBefore;
            QCOMPARE(int(TimeRange::getBetweenTime(QString::fromUtf8(text), &read)), reading);
            QCOMPARE(memcmp(&read, &kBefore, sizeof read), 0);
        }
    }

    void standsBeside() {
        const std::tuple<const char*, const char*, int> rows[] = {
            {"06:00~09:00", "10:00~13:00", 1},
            {"09:00~12:00", "12:00~18:00", 1},
            {"09:00~12:01", "12:00~18:00", 0},
            {"09:00~18:00", "12:00~13:00", 0},
            // Nights.
            {"22:00~06:00", "06:00~22:00", 1},
            {"22:00~06:00", "05:59~22:00", 0},
            {"22:00~06:00", "06:00~22:01", 0},
            {"22:00~06:00", "23:00~24:00", 0},
            {"22:00~06:00", "23:00~05:00", 0},
            {"22:00~06:00", "21:00~20:00", 0},
            // Empty ones.
            {"12:00~12:00", "13:00~14:00", 0},
            {"12:00~12:00", "22:00~06:00", 0},
            {"24:00~24:00", "13:00~14:00", 0},
        };
        for (const auto& [a, b, apart] : rows) {
            // Which of them comes first makes no difference.
            QVERIFY2(TimeRange::CheckTime(range(a), range(b)) == apart, b);
            QVERIFY2(TimeRange::CheckTime(range(b), range(a)) == apart, b);
        }
    }
};

QTEST_APPLESS_MAIN(TimeRangeTest)
#include "time_range_test.moc"
