#include "sim/facesearch/face_search_sim.h"
#include "tests/support/driven_test.h"

/// The terminal with a face-search server: what it says is seen at the live view.
class FaceSearchDoorTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        qputenv("ZEL_FACE_SEARCH", "127.0.0.1:" + QByteArray::number(sim.port()));
        DrivenTest::initTestCase();
        QTRY_COMPARE(sim.clients(), 1);
    }
    void init() { PLAYS(":liveWindow"); }

    void anAnswerIsSeenUntilItIsTouched() {
        // Without a touch it goes by itself.
        for (const char* end : {"fsvConfirmButton", "fsvCancelButton", "@liveWindow"}) {
            say("tell 10000001");
            PLAYS("=홍길동 =부장 =개발본부 =단말기팀 =95");
            say("tell 10000003");
            PLAYS("=Jane_Doe -=홍길동");
            PLAYS(end);
            QTRY_VERIFY_WITH_TIMEOUT(DialogOverlay::current(window()) == nullptr, 20000);
            PLAYS("@liveWindow");
        }
    }

    void aFloodKeepsNobodyFromTheMenu() {
        say("tell 10000001 5000");
        PLAYS("=홍길동 fsvCancelButton");
        say("tell 10000003");
        QTRY_VERIFY_WITH_TIMEOUT(t->reads(QStringLiteral("Jane Doe")), 30000);
        PLAYS("fsvCancelButton menuButton @zelMenuWindow");
        // Whoever works there is not disturbed.
        say("tell 10000001");
        QTest::qWait(0);
        PLAYS("-=홍길동");
    }

    void theTerminalEndsWhileTheServerIsInTheMiddle() {
        say("trickle 60000");
        say("tell 10000001");
        t->window.reset();
        QTRY_COMPARE(sim.clients(), 0);
    }

 private:
    void say(const char* line) { QCOMPARE(sim.execute(QLatin1String(line)), QStringLiteral("ok")); }

    FaceSearchSim sim{0, 0};
};

QTEST_MAIN(FaceSearchDoorTest)
#include "face_search_door_test.moc"
