#include <signal.h>

#include <QDir>
#include <QProcess>
#include <QtTest>
#include <functional>
#include <memory>
#include <utility>

#include "cloud/command_folder.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/free_port.h"

/// The real program, killed where it hurts most, with the simulated controller as the judge of what
/// has arrived.
class SurvivalTest : public QObject {
    Q_OBJECT

 private:
    DeviceRoot root_;
    std::unique_ptr<ControllerSim> controller_;
    QProcess terminal_;
    CommandFolder writer_;
    QSet<QString> told_;         // card numbers of the frames that have come
    std::function<void()> hit_;  // called with the first of them

    QStringList waiting() const {
        return QDir(CommandFolder::directory()).entryList({QStringLiteral("*_???_*")}, QDir::Dirs);
    }
    void kill() { ::kill(static_cast<pid_t>(terminal_.processId()), SIGKILL); }
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
    void start() {
        terminal_.start();
        QVERIFY(terminal_.waitForStarted());
    }

 private slots:
    void initTestCase() {
        controller_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
        connect(controller_.get(), &ControllerSim::frameReceived, this,
                [this](quint16 code, quint8, quint8, const QByteArray& payload) {
                    if (code != command::EnrolNetworkUser && code != command::DeleteUser)
                        return;
                    told_.insert((code == command::DeleteUser ? QStringLiteral("del_%1")
                                                              : QStringLiteral("add_%1"))
                                     .arg(QString::fromLatin1(payload.constData())));
                    if (const auto hit = std::exchange(hit_, nullptr))
                        hit();
                });
        qputenv("ZEL_LINK_PORT", QByteArray::number(controller_->port()));
        qputenv("ZEL_REST_PORT", QByteArray::number(freePort()));
        qputenv("XDG_RUNTIME_DIR", qgetenv("ZEL_ROOT"));
        terminal_.setProgram(QStringLiteral(ZEL_BINARY_DIR "/bin/zel-terminal"));
        terminal_.setArguments({QStringLiteral("-platform"), QStringLiteral("offscreen")});
        terminal_.setStandardErrorFile(QProcess::nullDevice());
    }
    void cleanupTestCase() {
        kill();
        terminal_.waitForFinished();
    }

    /// A command that is gone from the disk has arrived.
    void killedAtTheRemoval() {
        const QStringList orders = order(2);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(KILLED_AT_REMOVAL));
        terminal_.setProcessEnvironment(environment);
        for (int left = orders.size(); left > 0;) {
            start();
            QTRY_COMPARE_WITH_TIMEOUT(terminal_.state(), QProcess::NotRunning, 60000);
            QTRY_VERIFY(!controller_->terminalConnected());
            const QStringList now = waiting();
            QVERIFY(now.size() < left);
            left = now.size();
            for (const QString& each : orders)
                QVERIFY2(now.contains(each) || told_.contains(each.section(QLatin1Char('_'), 1)),
                         qPrintable(each));
        }
        terminal_.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    }

    /// Right behind its frame a command is still there; what was cut off is carried out at the next
    /// start, and all that was ordered has happened in the end.
    void killedWhenAFrameHasCome() {
        const int orders = order(4).size();
        hit_ = [this] { kill(); };
        start();
        QTRY_COMPARE_WITH_TIMEOUT(terminal_.state(), QProcess::NotRunning, 60000);
        QCOMPARE(waiting().size(), orders);
        told_.clear();
        start();
        QTRY_VERIFY_WITH_TIMEOUT(waiting().isEmpty(), 60000);
        QCOMPARE(told_.size(), 8);
        QVERIFY(!controller_->execute(QStringLiteral("users")).contains(QStringLiteral("900000")));
    }
};

QTEST_GUILESS_MAIN(SurvivalTest)
#include "survival_test.moc"
