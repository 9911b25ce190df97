#include <unistd.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

#include "link/device_link.h"
#include "screens/common/factory_test_form.h"
#include "tests/support/driven_terminal.h"
#include "ui/label_button.h"
#include "ui/text_line.h"

/// The factory tests, as a finger on the panel and a board on the line meet them.
class FactoryTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        t = std::make_unique<DrivenTerminal>();
        t->root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t->tell("settings setup.language 1"));
    }
    /// As after power-on: results are of one run of the terminal.
    void init() {
        TouchShield::setTime(0);
        QVERIFY(t->tell("factory all ok") && t->tell("normal"));
        QVERIFY(t->start());
        QVERIFY(t->open("zelMenuWindow"));
        QVERIFY(t->open("factoryMenuWindow"));
    }
    void cleanupTestCase() { t.reset(); }

    void allTests_data() {
        QTest::addColumn<bool>("passes");
        QTest::newRow("pass") << true;
        QTest::newRow("fail") << false;
    }
    void allTests() {
        QFETCH(bool, passes);
        QVERIFY(passes || t->tell("factory all fail"));
        const char* button = passes ? "passButton" : "failButton";
        const Verdict outcome = passes ? Verdict::Pass : Verdict::Fail;
        for (const char* row : kRows) {
            t->tap(row);
            QVERIFY2(t->title() != QLatin1String("factoryMenuWindow"), row);
            if (t->find("showButton") != nullptr) {
                QVERIFY(!t->find("passButton")->isEnabled());
                t->tap("showButton");
                while (t->find("patternView") != nullptr)
                    t->tap("patternView");
            }
            if (t->find("beginButton") != nullptr)
                t->tap("beginButton");
            for (int cell = 0; passes && t->find("touchGrid") != nullptr && cell < 60; ++cell)
                t->tap(QPoint(40 + 80 * (cell % 6), 40 + 80 * (cell / 6)));
            for (const char* word : {"factory proximity 150", "factory proximity 900",
                                     "factory light 20", "factory light 300"})
                QVERIFY(!passes || (t->tell(word) && t->settle()));
            // What is silent, and what nobody brings about, fails by its time.
            const bool waits =
                QByteArray("factoryTouchRow factoryProximityRow factoryLightRow factoryCameraRow")
                    .contains(row);
            QVERIFY2(t->settle() && QTest::qWaitFor([&] {
                         if (!passes && waits)
                             timeIsUp();
                         const auto* judge = t->find(button);
                         if (judge != nullptr && judge->isEnabled())
                             t->tap(button);
                         return test()->verdict() == outcome;
                     }),
                     row);
            t->tap("backButton");
            QVERIFY(t->find<ListRow>(row)->verdict() == outcome);
        }
        QVERIFY(t->reads(passes ? QStringLiteral("17 of 17 passed")
                                : QStringLiteral("0 of 17 passed")));
        const QJsonObject all = report();
        QCOMPARE(all.value(QStringLiteral("passed")).toInt(), passes ? 17 : 0);
        QCOMPARE(all.value(QStringLiteral("failed")).toInt(), passes ? 0 : 17);
        QCOMPARE(all.value(QStringLiteral("serial")).toString(), QStringLiteral("ZEL01-SIM-0001"));
        const QJsonObject volts = step(all, 0, 0);
        QCOMPARE(volts.value(QStringLiteral("value")).toDouble() > 11, passes);
        QCOMPARE(volts.value(QStringLiteral("most")).toDouble(), 13.2);
        QCOMPARE(step(all, 7, 0).value(QStringLiteral("below")).toInt(), 300);
        QCOMPARE(
            step(all, 14, 0).value(QStringLiteral("value")).toString(),
            passes ? QStringLiteral("02:4B:5A:00:00:01") : QStringLiteral("00:00:00:00:00:00"));
        // The tests that ran are the ones that were stopped.
        QVERIFY(t->settle());
        QCOMPARE(t->frames.filter(QRegularExpression(QStringLiteral("^4000 "))), QStringList());
        for (int code = 4002; code <= 4042; code += 2)
            QVERIFY2(t->sent(qPrintable(QStringLiteral("%1 1 0").arg(code))) >
                         t->sent(qPrintable(QStringLiteral("%1 0 0").arg(code))),
                     qPrintable(QString::number(code)));
    }

    void modeFollowsTheScreens() {
        const auto modes = [this] {
            return t->settle() ? t->frames.filter(QRegularExpression(QStringLiteral("^4000 ")))
                                     .join(QLatin1Char(','))
                               : QString();
        };
        // Left from the menu, from a test, and by what happens at the door.
        for (const char* way : {"backButton", "homeButton", "result"}) {
            QVERIFY(t->open("zelMenuWindow") && t->open("factoryMenuWindow"));
            t->tap("factoryPowerRow");
            if (qstrcmp(way, "result") == 0) {
                QVERIFY(t->tell("status 1") && t->tell("card 10000001"));
                QVERIFY(t->shows("recognizeWindow"));
            } else {
                t->tap(way);
                if (qstrcmp(way, "backButton") == 0)
                    t->tap(way);
            }
            QCOMPARE(modes(), QStringLiteral("4000 1 0"));
            QVERIFY2(t->sent("4008 0 0") >= 0 && t->sent("4008 1 0") > t->sent("4008 0 0"), way);
        }
        // The link goes in a test and comes back, before the menu is left and after.
        for (const bool before : {true, false}) {
            QVERIFY(t->open("zelMenuWindow") && t->open("factoryMenuWindow"));
            t->tap("factoryPowerRow");
            QVERIFY(t->sends("4008 0 0") && t->tell("drop"));
            QTRY_VERIFY(!t->window->linkUp());
            t->tap("backButton");
            if (!before)
                t->tap("backButton");
            QVERIFY(t->reconnect());
            if (before)
                t->tap("backButton");
            QCOMPARE(modes(),
                     before ? QStringLiteral("4000 0 0,4000 1 0") : QStringLiteral("4000 1 0"));
            QCOMPARE(t->frames.count(QStringLiteral("4008 1 0")), 1);
        }
    }

    void oneFingerStartsOneTest() {
        TouchShield::setTime(1000);
        const QPoint row = t->place("factoryPixelRow");
        for (int i = 0; i < 3; ++i)
            t->tap(row);
        QVERIFY(t->settle());
        QCOMPARE(t->frames.filter(QStringLiteral("4006 ")),
                 QStringList{QStringLiteral("4006 0 0")});
        QTRY_VERIFY(t->find("touchShield") == nullptr);
        // A finger that trembles skips no pattern and judges nothing.
        t->tap("showButton");
        t->tap("patternView");
        QTRY_VERIFY(t->find("touchShield") == nullptr);
        for (int i = 0; i < 6; ++i)
            t->tap(t->place("passButton"));
        QVERIFY(t->find("patternView") == nullptr);
        QVERIFY(test()->verdict() == Verdict::Running);
    }

    void lateAnswersCountWhileTheyCanBeSeen() {
        for (const char* silent : {"factory memory silent", "factory led silent"})
            QVERIFY(t->tell(silent));
        t->tap("factoryMemoryRow");
        QVERIFY(t->settle());
        timeIsUp();
        QVERIFY(test()->verdict() == Verdict::Fail);
        QVERIFY(t->tell("frame 4038 0 0"));
        QTRY_VERIFY(test()->verdict() == Verdict::Pass);
        t->tap("backButton");
        QVERIFY(t->tell("frame 4038 1 0") && t->settle());
        QVERIFY(t->find<ListRow>("factoryMemoryRow")->verdict() == Verdict::Pass);
        QCOMPARE(report().value(QStringLiteral("passed")).toInt(), 1);
        // One that was left in the middle has not run, unless a part has failed.
        for (const bool failed : {false, true}) {
            t->tap("factoryLedRow");
            QVERIFY(t->settle());
            if (failed)
                timeIsUp();
            t->tap("backButton");
            QVERIFY(t->find<ListRow>("factoryLedRow")->verdict() ==
                    (failed ? Verdict::Fail : Verdict::NotRun));
        }
    }

    void troubleIsMet() {
        const struct {
            const char* word;
            const char* row;
        } rows[] = {{"refuse 4020", "factoryNetRow"},
                    {"refuse 4034", "factoryRtcRow"},
                    {"refuse 4036", "factoryMacRow"},
                    {"refuse 4028", "factoryCardRow"},
                    {"refuse 4026", "factoryCardRow"},
                    {"factory mac 01:00:5e:00:00:01", "factoryMacRow"},
                    {"factory power 9.1 5.0 3.3", "factoryPowerRow"}};
        for (const auto& row : rows) {
            QVERIFY2(t->tell("factory all ok") && t->tell(row.word), row.word);
            t->tap(row.row);
            QTRY_VERIFY2(test()->verdict() == Verdict::Fail, row.word);
            t->tap("backButton");
        }
        for (const char* word :
             {"factory power 9.1 5.0", "factory power 66 5 3", "factory nose ok", "factory led 5",
              "factory mac 0102", "refuse 4008", "factory all 3"})
            QVERIFY2(!t->tell(word), word);
        // What is done out of turn leaves nothing running.
        QVERIFY(t->tell("factory io silent"));
        t->tap("factoryIoRow");
        QVERIFY(t->sends("4014 0 0") && t->tell("frame 4015 2 0"));
        QTRY_VERIFY(test()->verdict() == Verdict::Fail);
        t->tap("backButton");
        // A report that is cut short tells nothing, and without the link nothing passes.
        QVERIFY(t->tell("factory power silent"));
        t->tap("factoryPowerRow");
        QVERIFY(t->tell("frame 4009 0 0 e02e8813") && t->settle());
        QVERIFY(test()->verdict() == Verdict::Running);
        QVERIFY(t->tell("drop"));
        QTRY_VERIFY(test()->verdict() == Verdict::Fail);
    }

    void aFullDiskStopsNothing_data() {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("folder in its place") << false;
        QTest::newRow("read-only folder") << true;
    }
    void aFullDiskStopsNothing() {
        QFETCH(bool, readOnly);
        if (readOnly && ::geteuid() == 0)
            QSKIP("nothing is read-only to the administrator");
        const QString path = t->root.path("/mnt/data/factory_report.json");
        constexpr auto kRead = QFile::ReadOwner | QFile::ExeOwner;
        QFile::remove(path);
        QVERIFY(readOnly ? QFile::setPermissions(t->root.path("/mnt/data"), kRead)
                         : QDir().mkpath(path));
        t->tap("factoryMemoryRow");
        QTRY_VERIFY(t->says("Error_FactoryReport"));
        QVERIFY(test()->verdict() == Verdict::Pass);
        t->tap("dialogOkButton");
        t->tap("backButton");
        QVERIFY(t->readsKey("Error_FactoryReportShort"));
        t->tap("factoryMacRow");
        QTRY_VERIFY(test()->verdict() == Verdict::Pass);
        QVERIFY(t->dialogText().isEmpty());
        QVERIFY(readOnly
                    ? QFile::setPermissions(t->root.path("/mnt/data"), kRead | QFile::WriteOwner)
                    : QDir().rmdir(path));
        t->tap("backButton");
        QVERIFY(!t->readsKey("Error_FactoryReportShort"));
        QCOMPARE(report().value(QStringLiteral("passed")).toInt(), 2);
    }

    void whatCannotBeUndoneIsAsked() {
        const struct {
            const char* row;
            const char* button;
            const char* question;
            const char* frame;
        } rows[] = {{"", "restartRow", "Dialog_FactoryRestart", "4043 0 0"},
                    {"factoryMemoryRow", "resetButton", "Dialog_FactoryReset", "4045 0 0"},
                    {"factoryVersionRow", "updateButton", "Dialog_FactoryUpdate", "4046 0 0"}};
        for (const auto& row : rows) {
            init();
            if (*row.row != '\0')
                t->tap(row.row);
            for (const char* answer : {"dialogCancelButton", "dialogOkButton"}) {
                t->tap(row.button);
                QVERIFY(t->says(row.question));
                QVERIFY(t->settle() && t->sent(row.frame) < 0);
                t->tap(answer);
            }
            QVERIFY2(t->sends(row.frame), row.frame);
        }
        QTRY_VERIFY(t->says("Dialog_FactoryUpdated"));
        QCOMPARE(t->find<ListRow>("step3")->note(), QStringLiteral("1.2"));
        t->tap("dialogOkButton");
        QVERIFY(t->tell("silent 4046"));
        t->tap("updateButton");
        t->tap("dialogOkButton");
        QVERIFY(t->tell("frame 4032 0 0 31"));
        QTRY_VERIFY(t->says("Error_FactoryUpdate"));
    }

 private:
    using Verdict = FactoryTestForm::Verdict;

    /// In the order of the file.
    static constexpr const char* kRows[] = {
        "factoryPowerRow",   "factoryLcdRow", "factoryTouchRow",  "factoryPixelRow",
        "factorySoundRow",   "factoryLedRow", "factoryIoRow",     "factoryProximityRow",
        "factoryLightRow",   "factoryNetRow", "factoryCameraRow", "factoryCardRow",
        "factoryVersionRow", "factoryRtcRow", "factoryMacRow",    "factoryMemoryRow",
        "factoryColourRow"};

    FactoryTestForm* test() const {
        return static_cast<FactoryTestForm*>(t->window->getActivateWindowForm());
    }
    void timeIsUp() const {
        QMetaObject::invokeMethod(test()->findChild<QTimer*>(QStringLiteral("stepTimer")),
                                  "timeout");
    }
    static QJsonObject step(const QJsonObject& all, int test, int number) {
        return all.value(QStringLiteral("tests"))
            .toArray()
            .at(test)
            .toObject()
            .value(QStringLiteral("steps"))
            .toArray()
            .at(number)
            .toObject();
    }
    /// The file of results, empty when it is none.
    QJsonObject report() const {
        const QString path = t->root.path("/mnt/data/factory_report.json");
        const int invalid = QProcess::execute(
            QStringLiteral(ZEL_PYTHON),
            {QStringLiteral("-c"),
             QStringLiteral("import json, sys, jsonschema\n"
                            "read = lambda name: json.load(open(name))\n"
                            "jsonschema.validate(read(sys.argv[1]), read(sys.argv[2]))"),
             path, QStringLiteral(ZEL_SOURCE_DIR "/docs/factory-report.schema.json")});
        QFile file(path);
        return invalid == 0 && file.open(QIODevice::ReadOnly)
                   ? QJsonDocument::fromJson(file.readAll()).object()
                   : QJsonObject();
    }

    std::unique_ptr<DrivenTerminal> t;
};

QTEST_MAIN(FactoryTest)
#include "factory_test.moc"
