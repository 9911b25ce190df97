#include <QtTest>
#include <memory>

#include "sim/facesearch/face_search_sim.h"
#include "tests/support/driven_terminal.h"

/// The terminal with a face-search server: what it says is seen at the live view.
class FaceSearchDoorTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        qputenv("ZEL_FACE_SEARCH", "127.0.0.1:" + QByteArray::number(sim.port()));
        t = std::make_unique<DrivenTerminal>();
        t->root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t->start());
        QTRY_COMPARE(sim.clients(), 1);
    }
    void init() { QVERIFY(t->open("liveWindow")); }

    void anAnswerIsSeenUntilItIsTouched_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("confirm") << QStringLiteral("fsvConfirmButton");
        QTest::newRow("cancel") << QStringLiteral("fsvCancelButton");
        QTest::newRow("nothing") << QString();
    }
    void anAnswerIsSeenUntilItIsTouched() {
        QFETCH(QString, button);
        word("tell 10000001");
        QTRY_VERIFY(t->reads(QStringLiteral("홍길동")));
        for (const char* text : {"부장", "개발본부", "단말기팀", "95"})
            QVERIFY2(t->reads(QString::fromUtf8(text)), text);
        word("tell 10000003");
        QTRY_VERIFY(t->reads(QStringLiteral("Jane Doe")));
        QVERIFY(!t->reads(QStringLiteral("홍길동")));
        if (!button.isEmpty())
            t->tap(button.toLatin1().constData());
        // Without a touch it goes by itself.
        QTRY_VERIFY_WITH_TIMEOUT(DialogOverlay::current(t->window.get()) == nullptr, 20000);
        QCOMPARE(t->title(), QStringLiteral("liveWindow"));
    }

    void aFloodKeepsNobodyFromTheMenu() {
        word("tell 10000001 5000");
        QTRY_VERIFY(t->reads(QStringLiteral("홍길동")));
        t->tap("fsvCancelButton");
        word("tell 10000003");
        QTRY_VERIFY_WITH_TIMEOUT(t->reads(QStringLiteral("Jane Doe")), 30000);
        t->tap("fsvCancelButton");
        t->tap("menuButton");
        QVERIFY(t->shows("zelMenuWindow"));
        // Whoever works there is not disturbed.
        word("tell 10000001");
        QTest::qWait(0);
        QVERIFY(!t->reads(QStringLiteral("홍길동")));
    }

    void theTerminalEndsWhileTheServerIsInTheMiddle() {
        word("trickle 60000");
        word("tell 10000001");
        t->window.reset();
        QTRY_COMPARE(sim.clients(), 0);
    }

 private:
    void word(const char* line) {
        QCOMPARE(sim.execute(QLatin1String(line)), QStringLiteral("ok"));
    }

    FaceSearchSim sim{0, 0};
    std::unique_ptr<DrivenTerminal> t;
};

QTEST_MAIN(FaceSearchDoorTest)
#include "face_search_door_test.moc"
