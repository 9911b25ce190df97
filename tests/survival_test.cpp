#include <QtTest>
#include <functional>
#include <utility>

#include "cloud/command_folder.h"
#include "link/command_code.h"
#include "sim/controller/controller_sim.h"
#include "tests/support/program.h"

/// The real program, killed where it hurts most, with the simulated controller as the judge of what
/// has arrived.
class SurvivalTest : public QObject {
    Q_OBJECT

 private:
    Program terminal_;
    ControllerSim controller_{0, 0, terminal_.root.path("/mnt/data")};
    CommandFolder writer_;
    QSet<QString> told_;         // card numbers of the frames that have come
    std::function<void()> hit_;  // called with the first of them

    QStringList waiting() const {
        return QDir(CommandFolder::directory()).entryList({QStringLiteral("*_???_*")}, QDir::Dirs);
    }
    /// Orders to add and delete as many users, the last one for each a deletion.
    QStringList order(int users) {
        DoReceiveUserData user;
        for (int i = 0; i < users; ++i) {
            user.cardNo = QStringLiteral("900000%1").arg(i);
            if (!writer_.writeAdd(user, "jpg") || !writer_.writeDelete(user.cardNo))
                qFatal("no order can be written");
        }
        return waiting();
    }
    /// Starts the program, which is killed before long.
    void startAndFall() {
        terminal_.start();
        QTRY_COMPARE_WITH_TIMEOUT(terminal_.state(), QProcess::NotRunning, 60000);
        QTRY_VERIFY(!controller_.terminalConnected());
    }

 private slots:
    void initTestCase() {
        connect(&controller_, &ControllerSim::frameReceived, this,
                [this](quint16 code, quint8, quint8, const QByteArray& payload) {
                    if (code != command::EnrolNetworkUser && code != command::DeleteUser)
                        return;
                    told_.insert(QLatin1String(code == command::DeleteUser ? "del_" : "add_") +
                                 QLatin1String(payload.constData()));
                    if (const auto hit = std::exchange(hit_, nullptr))
                        hit();
                });
        qputenv("ZEL_LINK_PORT", QByteArray::number(controller_.port()));
        terminal_.setStandardErrorFile(QProcess::nullDevice());
    }

    /// A command that is gone from the disk has arrived.
    void killedAtTheRemoval() {
        const QStringList orders = order(2);
        qputenv("LD_PRELOAD", KILLED_AT_REMOVAL);
        for (int left = orders.size(); left > 0;) {
            startAndFall();
            const QStringList now = waiting();
            QVERIFY(now.size() < left);
            left = now.size();
            for (const QString& each : orders)
                QVERIFY2(now.contains(each) || told_.contains(each.section(QLatin1Char('_'), 1)),
                         qPrintable(each));
        }
        qunsetenv("LD_PRELOAD");
    }

    /// Right behind its frame a command is still there; what was cut off is carried out at the next
    /// start, and all that was ordered has happened in the end.
    void killedWhenAFrameHasCome() {
        const int orders = order(4).size();
        hit_ = [this] { terminal_.signal(SIGKILL); };
        startAndFall();
        QCOMPARE(waiting().size(), orders);
        told_.clear();
        terminal_.start();
        QTRY_VERIFY_WITH_TIMEOUT(waiting().isEmpty(), 60000);
        QCOMPARE(told_.size(), 8);
        QVERIFY(!controller_.execute(QStringLiteral("users")).contains(QStringLiteral("900000")));
    }
};

QTEST_GUILESS_MAIN(SurvivalTest)
#include "survival_test.moc"
