#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include "link/command_code.h"
#include "link/device_records.h"

// What docs/device-link.md says about codes and records is what the program does.

namespace {

struct Row {
    const char* record;
    const char* field;
    std::size_t recordSize;
    std::size_t offset;
    std::size_t size;
    std::size_t documentedOffset;
    std::size_t documentedSize;
};

constexpr Row kRows[] = {
#define FIELD(record, member, documentedOffset, documentedSize) \
    {#record,                                                   \
     #member,                                                   \
     sizeof(record),                                            \
     offsetof(record, member),                                  \
     sizeof(static_cast<record*>(nullptr)->member),             \
     documentedOffset,                                          \
     documentedSize},
#include "device_link_doc_rows.inc"
#undef FIELD
};

}  // namespace

class DeviceLinkDocTest : public QObject {
    Q_OBJECT

 private slots:
    void everyCommandIsListedUnderItsDirection();
    void everyRecordIsDescribedToTheLastByte();
};

void DeviceLinkDocTest::everyCommandIsListedUnderItsDirection() {
    QFile file(QStringLiteral(ZEL_SOURCE_DIR "/docs/device-link.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRegularExpression row(QStringLiteral("^\\| (\\d+) \\| `(\\w+)` \\|"));
    QStringList documented;
    QChar direction;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line == QLatin1String("## From the terminal to the controller"))
            direction = QLatin1Char('>');
        else if (line == QLatin1String("## From the controller to the terminal"))
            direction = QLatin1Char('<');
        else if (line.startsWith(QLatin1String("## ")))
            direction = QChar();
        const QRegularExpressionMatch match = row.match(line);
        if (!direction.isNull() && match.hasMatch())
            documented += direction + match.captured(1) + match.captured(2);
    }
    QStringList known;
    for (std::size_t i = 0; i < command::count(); ++i) {
        const command::Description& code = command::all()[i];
        known += QLatin1Char(code.direction == command::Direction::ToController ? '>' : '<') +
                 QString::number(code.code) + QLatin1String(code.name);
    }
    QCOMPARE(documented, known);
}

void DeviceLinkDocTest::everyRecordIsDescribedToTheLastByte() {
    std::size_t described = 0;
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        const Row& row = kRows[i];
        const QString name =
            QLatin1String(row.record) + QLatin1Char('.') + QLatin1String(row.field);
        QVERIFY2(row.offset == row.documentedOffset, qPrintable(name));
        QVERIFY2(row.size == row.documentedSize, qPrintable(name));
        QVERIFY2(row.offset == described,
                 qPrintable(QStringLiteral("nothing is said before ") + name));
        described += row.size;
        if (i + 1 == std::size(kRows) || qstrcmp(kRows[i + 1].record, row.record) != 0) {
            QVERIFY2(described == row.recordSize,
                     qPrintable(QStringLiteral("nothing is said behind ") + name));
            described = 0;
        }
    }
}

QTEST_MAIN(DeviceLinkDocTest)
#include "device_link_doc_test.moc"
