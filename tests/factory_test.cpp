#include <unistd.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTimer>

#include "screens/common/factory_test_form.h"
#include "tests/support/driven_test.h"
#include "tests/support/finger.h"

/// The factory tests, as a finger on the panel and a board on the line meet them.
class FactoryTest : public DrivenTest {
    Q_OBJECT

 private slots:
    /// As after power-on: results are of one run of the terminal.
    void init() {
        TouchShield::setTime(0);
        words({"factory all ok", "normal"});
        QVERIFY(t->start());
        PLAYS(":zelMenuWindow :factoryMenuWindow");
    }

    void allTests_data() { table("pass | x\nfail |"); }
    void allTests() {
        const bool passes = !values<1>()[0].isEmpty();
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
            Finger finger(window());
            for (int y = 40; passes && t->find("touchGrid") != nullptr && y < 800; y += 80) {
                finger.down(QPoint(40, y));
                finger.move(200, 0);
                finger.move(200, 0);
                finger.up();
            }
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
        // Left from the menu, from a test, and by what happens at the door.
        for (const char* way :
             {"BACK BACK", "homeButton", "!status_1 !card_10000001 @recognizeWindow"}) {
            PLAYS(QByteArray(":zelMenuWindow :factoryMenuWindow factoryPowerRow ^4008_0_0 ") + way +
                  " [4008_0_0,4008_1_0,4000_1_0]");
        }
        // The link goes in a test and comes back, before the menu is left and after.
        for (const bool before : {true, false}) {
            PLAYS(R"(:zelMenuWindow :factoryMenuWindow factoryPowerRow ^4008_0_0 !drop BACK)" +
                  QByteArray(before ? "" : " BACK"));
            QVERIFY(t->reconnect());
            PLAYS(before ? "BACK [4008_0_0,4008_1_0,4000_0_0,4000_1_0]"
                         : "[4008_0_0,4008_1_0,4000_1_0]");
        }
    }

    void oneFingerStartsOneTest() {
        TouchShield::setTime(1000);
        const QPoint row = t->place("factoryPixelRow");
        for (int i = 0; i < 3; ++i)
            t->tap(row);
        PLAYS("[4006_0_0]");
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
        PLAYS("!factory_memory_silent !factory_led_silent factoryMemoryRow []");
        timeIsUp();
        QVERIFY(test()->verdict() == Verdict::Fail);
        word("frame 4038 0 0");
        QTRY_VERIFY(test()->verdict() == Verdict::Pass);
        PLAYS("BACK !frame_4038_1_0 []");
        QVERIFY(t->find<ListRow>("factoryMemoryRow")->verdict() == Verdict::Pass);
        QCOMPARE(report().value(QStringLiteral("passed")).toInt(), 1);
        // One that was left in the middle has not run, unless a part has failed, and no other than
        // the one that runs.
        for (const bool failed : {false, true}) {
            PLAYS("factoryLedRow !frame_4013_1_2 []");
            if (failed)
                timeIsUp();
            t->tap("backButton");
            QVERIFY(t->find<ListRow>("factoryLedRow")->verdict() ==
                    (failed ? Verdict::Fail : Verdict::NotRun));
        }
    }

    void troubleIsMet() {
        for (const char* steps :
             {"!refuse_4020 factoryNetRow", "!refuse_4034 factoryRtcRow",
              "!refuse_4036 factoryMacRow", "!refuse_4028 factoryCardRow",
              "!refuse_4026 factoryCardRow", "!factory_mac_01:00:5e:00:00:01 factoryMacRow",
              "!factory_power_9.1_5.0_3.3 factoryPowerRow",
              // What is done out of turn leaves nothing running.
              "!factory_io_silent factoryIoRow ^4014_0_0 !frame_4015_2_0"}) {
            word("factory all ok");
            PLAYS(steps);
            QTRY_VERIFY2(test()->verdict() == Verdict::Fail, steps);
            t->tap("backButton");
        }
        for (const char* word :
             {"factory power 9.1 5.0", "factory power 66 5 3", "factory nose ok", "factory led 5",
              "factory mac 0102", "refuse 4008", "factory all 3"})
            QVERIFY2(!t->tell(word), word);
        // A report that is cut short tells nothing, and without the link nothing passes.
        PLAYS("!factory_power_silent factoryPowerRow !frame_4009_0_0_e02e8813 []");
        QVERIFY(test()->verdict() == Verdict::Running);
        PLAYS("!drop");
        QTRY_VERIFY(test()->verdict() == Verdict::Fail);
        QVERIFY(t->reconnect());
    }

    void aFullDiskStopsNothing_data() { table("folder in its place |\nread-only folder | x"); }
    void aFullDiskStopsNothing() {
        const bool readOnly = !values<1>()[0].isEmpty();
        if (readOnly && ::geteuid() == 0)
            QSKIP("nothing is read-only to the administrator");
        const QString path = t->root.path("/mnt/data/factory_report.json");
        constexpr auto kRead = QFile::ReadOwner | QFile::ExeOwner;
        QFile::remove(path);
        QVERIFY(readOnly ? QFile::setPermissions(t->root.path("/mnt/data"), kRead)
                         : QDir().mkpath(path));
        PLAYS("factoryMemoryRow ?Error_FactoryReport");
        QVERIFY(test()->verdict() == Verdict::Pass);
        PLAYS("OK BACK =Error_FactoryReportShort factoryMacRow");
        QTRY_VERIFY(test()->verdict() == Verdict::Pass);
        QVERIFY(t->dialogText().isEmpty());
        QVERIFY(readOnly
                    ? QFile::setPermissions(t->root.path("/mnt/data"), kRead | QFile::WriteOwner)
                    : QDir().rmdir(path));
        PLAYS("BACK -=Error_FactoryReportShort");
        QCOMPARE(report().value(QStringLiteral("passed")).toInt(), 2);
    }

    void whatCannotBeUndoneIsAsked() {
        for (const char* steps :
             {"restartRow ?Dialog_FactoryRestart NO -^4043 restartRow ?Dialog_FactoryRestart "
              "-^4043 OK "
              "^4043_0_0",
              "factoryMemoryRow resetButton ?Dialog_FactoryReset NO -^4045 resetButton "
              "?Dialog_FactoryReset -^4045 OK ^4045_0_0",
              "factoryVersionRow updateButton ?Dialog_FactoryUpdate NO -^4046 updateButton "
              "?Dialog_FactoryUpdate -^4046 OK ^4046_0_0 ?Dialog_FactoryUpdated"}) {
            init();
            PLAYS(steps);
        }
        QCOMPARE(t->find<ListRow>("step3")->note(), QStringLiteral("1.2"));
        PLAYS("OK !silent_4046 updateButton OK !frame_4032_0_0_31 ?Error_FactoryUpdate");
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
};

QTEST_MAIN(FactoryTest)
#include "factory_test.moc"
