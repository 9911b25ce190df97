#include <QTcpServer>
#include <QtTest>

#include "link/command_code.h"
#include "link/device_link.h"
#include "link/frame.h"

namespace {

/// The controller's side of the link, one peer at a time.
class Peer {
 public:
    bool accept() {
        // Longer than the link's reconnect time; the link needs the event loop meanwhile.
        if (!QTest::qWaitFor([this] { return server.hasPendingConnections(); }, 8000))
            return false;
        delete socket;
        socket = server.nextPendingConnection();
        return true;
    }
    QByteArray received() {
        all += socket->readAll();
        return all;
    }

    QTcpServer server;
    QTcpSocket* socket = nullptr;
    QByteArray all;
};

const QByteArray kGreeting = Frame::build(command::Greeting, 0, 0);

}  // namespace

class DeviceLinkTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        frames.clear();
        link = std::make_unique<DeviceLink>(
            [this](quint16 command, quint8, quint8, quint16 length, const char* payload) {
                frames.append({command, QByteArray(payload, length)});
            },
            nullptr);
    }

    void greetsAndSendsOnlyWhenUp() {
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost));
        link->send(1905, 0, 0);
        link->send(1908, 0, 0, 2, "ab");
        link->open(peer.server.serverPort());
        QVERIFY(peer.accept());
        QTRY_VERIFY(link->connected());
        link->send(1905, 1, 0);
        link->send(1908, 0, 0, 2, "ab");
        link->send(1908, 0, 0, 2093, QByteArray(2093, 'x').constData());
        link->send(2028, 0, 0, 0, nullptr);
        QTRY_COMPARE(peer.received(), kGreeting + Frame::build(1905, 1, 0) +
                                          Frame::build(1908, 0, 0, 2, "ab") +
                                          Frame::build(2028, 0, 0));
        const LinkProgress first = link->progress();
        QVERIFY(first.idle());
        QCOMPARE(first.left, qint64(peer.received().size()));
        peer.socket->close();
        QTRY_COMPARE(link->progress().connection, 0u);
        QVERIFY(peer.accept());
        QTRY_COMPARE(link->progress().connection, first.connection + 1);
    }

    // The socket is up shortly before the link is reported up: only the frame with a payload form
    // may leave in between.
    void theTwoFormsTestDifferentThings() {
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost));
        link->open(peer.server.serverPort());
        auto* socket = link->findChild<QTcpSocket*>();
        bool early = false;
        // Connected before the link's own slot could be: QObject calls in order of connection, so
        // the state change, which comes first, is the place to look from.
        connect(socket, &QTcpSocket::stateChanged, this, [&](QAbstractSocket::SocketState state) {
            if (state != QAbstractSocket::ConnectedState)
                return;
            early = !link->connected();
            link->send(1905, 9, 9);
            link->send(1908, 7, 7, 1, "x");
        });
        QVERIFY(peer.accept());
        QTRY_COMPARE(peer.received(), Frame::build(1908, 7, 7, 1, "x") + kGreeting);
        QVERIFY(early);
    }

    // More than one buffer at once, and a frame that only the next connection completes.
    void takesEverythingAndKeepsHalfAFrame() {
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost));
        link->open(peer.server.serverPort());
        QVERIFY(peer.accept());
        const QByteArray big = Frame::build(2907, 0, 0, 2000, QByteArray(2000, 'm').constData());
        peer.socket->write(big + big + big + big.left(1000));
        QTRY_COMPARE(frames.size(), 3);
        QTRY_VERIFY(link->connected());
        peer.socket->abort();
        QTRY_VERIFY(!link->connected());
        QVERIFY(peer.accept());  // after the reconnect time
        peer.socket->write(big.mid(1000));
        QTRY_COMPARE(frames.size(), 4);
        QCOMPARE(frames.last().second, QByteArray(2000, 'm'));
        // The last byte may come alone.
        peer.socket->write(Frame::build(6001, 0, 0) + big.chopped(1));
        QTRY_COMPARE(frames.size(), 5);
        peer.socket->write(big.right(1));
        QTRY_COMPARE(frames.size(), 6);
        QTRY_COMPARE(peer.received(), kGreeting);
    }

    void findsAControllerThatComesLate() {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            port = probe.serverPort();
        }
        link->open(port);
        const auto timers = link->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timers.size(), 1);
        QTRY_VERIFY(timers[0]->isActive());  // refused
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost, port));
        QVERIFY(peer.accept());
        QTRY_COMPARE(peer.received(), kGreeting);
        QVERIFY(!timers[0]->isActive());
        QCOMPARE(link->findChildren<QTcpSocket*>().size(), 1);
    }

    void closingFlushesAndIsFinal() {
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost));
        link->open(peer.server.serverPort());
        QVERIFY(peer.accept());
        QTRY_VERIFY(link->connected());
        link->send(command::QuitAcknowledged, 0, 0);
        link->close(500);
        QTRY_COMPARE(peer.received(), kGreeting + Frame::build(command::QuitAcknowledged, 0, 0));
        link.reset();
        QVERIFY(frames.isEmpty());
    }

    void endingInsideAHandlerIsSafe() {
        Peer peer;
        QVERIFY(peer.server.listen(QHostAddress::LocalHost));
        int seen = 0;
        DeviceLink* inner = nullptr;
        DeviceLink ending(
            [&](quint16, quint8, quint8, quint16, const char*) {
                ++seen;
                inner->close(0);
            },
            nullptr);
        inner = &ending;
        ending.open(peer.server.serverPort());
        QVERIFY(peer.accept());
        QByteArray many;
        for (int i = 0; i < 1000; ++i)
            many += Frame::build(6001, 0, 0);
        peer.socket->write(many);
        QTRY_VERIFY(seen > 0);
    }

 private:
    QVector<QPair<quint16, QByteArray>> frames;
    std::unique_ptr<DeviceLink> link;
};

QTEST_GUILESS_MAIN(DeviceLinkTest)
#include "device_link_test.moc"
