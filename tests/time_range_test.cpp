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
    void reads_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("reading");
        QTest::addColumn<QString>("range");
        const auto row = [](const char* text, int reading, const char* range = "01:02~03:04") {
            QTest::newRow(text) << QString::fromUtf8(text) << reading << QString::fromUtf8(range);
        };
        row("09:00~18:00", Valid, "09:00~18:00");
        row("00:00~24:00", Valid, "00:00~24:00");
        row("24:00~24:00", Valid, "24:00~24:00");
        row("009:5~00018", Valid, "09:05~18:00");
        row("         ~:", Malformed);
        row("00000000009", Valid, "09:00~00:00");
        row("09:00:~18:00", Malformed);

        row("", Malformed);
        row("9:00~18:00", Malformed);
        row("09:00~18:00~", Malformed);
        row("09:00~18:00:30", Malformed);
        row("09:00~18:30 pm", Malformed);
        row("-9:00~18:00", Malformed);
        row("０９:００~１８:００", Malformed);

        row("25:00~18:00", OutOfRange);
        row("09:60~18:00", OutOfRange);
        row("09:00~25:00", OutOfRange);
        row("09:00~18:60", OutOfRange);
        row("256:00~18:00", OutOfRange);
        row("4294967305:00~18:00", OutOfRange);
    }

    void reads() {
        QFETCH(QString, text);
        _byte4_time_se_ read = kBefore;
        QTEST(static_cast<int>(TimeRange::getBetweenTime(text, &read)), "reading");
        QTEST(TimeRange::betweenTimeText(read), "range");
    }

    void standsBeside_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("apart");
        const std::tuple<const char*, const char*, const char*, int> rows[] = {
            {"one behind the other", "06:00~09:00", "10:00~13:00", 1},
            {"touching", "09:00~12:00", "12:00~18:00", 1},
            {"a minute in common", "09:00~12:01", "12:00~18:00", 0},
            {"one in the other", "09:00~18:00", "12:00~13:00", 0},
            {"filling the gap of a night", "22:00~06:00", "06:00~22:00", 1},
            {"beginning in the night", "22:00~06:00", "05:59~22:00", 0},
            {"reaching into the night", "22:00~06:00", "06:00~22:01", 0},
            {"in the evening of a night", "22:00~06:00", "23:00~24:00", 0},
            {"two nights", "22:00~06:00", "23:00~05:00", 0},
            {"two nights that seem apart", "22:00~06:00", "21:00~20:00", 0},
            {"empty", "12:00~12:00", "13:00~14:00", 0},
            {"empty beside a night", "12:00~12:00", "22:00~06:00", 0},
            {"empty at midnight", "24:00~24:00", "13:00~14:00", 0},
        };
        for (const auto& [name, a, b, apart] : rows)
            QTest::newRow(name) << QString::fromUtf8(a) << QString::fromUtf8(b) << apart;
    }

    void standsBeside() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        const _byte4_time_se_ first = range(qPrintable(a));
        const _byte4_time_se_ second = range(qPrintable(b));
        QTEST(TimeRange::CheckTime(first, second), "apart");
        // Which of them comes first makes no difference.
        QTEST(TimeRange::CheckTime(second, first), "apart");
    }
};

QTEST_APPLESS_MAIN(TimeRangeTest)
#include "time_range_test.moc"
