#include <QTcpServer>
#include <QtTest>

#include "link/command_code.h"
#include "link/device_link.h"
#include "link/frame.h"
#include "tests/support/feed.h"

namespace {

QString text(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload) {
    return QStringLiteral("%1 %2 %3 ").arg(command).arg(p1).arg(p2) +
           QString::fromLatin1(payload.toHex());
}

/// A parser, and what comes out of it.
struct Parsing {
    QStringList frames;
    FrameParser parser{
        [this](quint16 command, quint8 p1, quint8 p2, quint16 length, const char* payload) {
            if ((payload == nullptr) != (length == 0))
                qFatal("a payload is null exactly when it is empty");
            frames << text(command, p1, p2, QByteArray(payload, length));
        }};
};

QByteArray pattern(int size) {
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + size);
    return bytes;
}

const QByteArray kGreeting = Frame::build(command::Greeting, 0, 0);

}  // namespace

class DeviceLinkTest : public QObject {
    Q_OBJECT

 private slots:
    void init() {
        frames.clear();
        all.clear();
        server = std::make_unique<QTcpServer>();
        QVERIFY(server->listen(QHostAddress::LocalHost));
        link = std::make_unique<DeviceLink>(
            [this](quint16 command, quint8, quint8, quint16 length, const char* payload) {
                frames.append({command, QByteArray(payload, length)});
            },
            nullptr);
    }

    void layout() {
        QCOMPARE(Frame::build(0x07F4, 1, 2), QByteArray::fromHex("c502f40701020000"));
        QCOMPARE(Frame::build(1908, 0, 0, 2, "\x2c\x01"), QByteArray::fromHex("c502740700000200"
                                                                              "2c01"));
        QCOMPARE(Frame::build(1927, 0, 0, 2092, pattern(2092).constData()).size(), 2100);
        QVERIFY(Frame::build(1927, 0, 0, 2093, pattern(2093).constData()).isEmpty());
    }

    // Every kind of frame behind and before every other, cut into equal pieces.
    void anyPieces() {
        QByteArray stream;
        QStringList expected;
        for (const int length : {0, 1, 486, 0, 0, 2092, 380, 2092, 2091, 4, 0}) {
            const QByteArray payload = pattern(length);
            const auto command = static_cast<quint16>(2900 + length % 1000);
            const auto p1 = static_cast<quint8>(length);
            expected << text(command, p1, 0xC5, payload);
            stream +=
                Frame::build(command, p1, 0xC5, static_cast<quint16>(length), payload.constData());
        }
        for (const unsigned piece : {1, 2, 3, 7, 8, 9, 15, 485, 486, 487, 494, 2099, 2100, 5000}) {
            Parsing got;
            feed(got.parser, stream, piece);
            QVERIFY2(got.frames == expected, QByteArray::number(piece).constData());
            QCOMPARE(got.parser.firstParameter(), quint8(0));
            QCOMPARE(got.parser.secondParameter(), quint8(0xC5));
        }
    }

    void garbageCostsOnlyItself() {
        const QByteArray good = Frame::build(2902, 3, 4, 1, "x");
        const QString one = QStringLiteral("2902 3 4 78");
        // A start mark behind a start mark is not looked at again: this frame is lost, the next
        // not. Longer than any frame: skipped as no header, the payload is then searched like
        // garbage.
        for (const QByteArray& bytes :
             {QByteArray("noise \0\x02\xC5\x01", 10) + good, "\xC5" + good + good,
              QByteArray::fromHex("c502560b00002d08") + good}) {
            Parsing got;
            feed(got.parser, bytes);
            QCOMPARE(got.frames, QStringList(one));
        }
        // Nor does half a frame that is to be forgotten cost the next.
        Parsing got;
        feed(got.parser, Frame::build(2907, 0, 0, 380, pattern(380).constData()).left(200));
        got.parser.reset();
        feed(got.parser, good);
        QCOMPARE(got.frames, QStringList(one));
    }

    void greetsAndSendsOnlyWhenUp() {
        link->send(1905, 0, 0);
        link->send(1908, 0, 0, 2, "ab");
        QVERIFY(comesUp());
        link->send(1905, 1, 0);
        link->send(1908, 0, 0, 2, "ab");
        link->send(1908, 0, 0, 2093, QByteArray(2093, 'x').constData());
        link->send(2028, 0, 0, 0, nullptr);
        QTRY_COMPARE(received(), kGreeting + Frame::build(1905, 1, 0) +
                                     Frame::build(1908, 0, 0, 2, "ab") + Frame::build(2028, 0, 0));
        const LinkProgress first = link->progress();
        QVERIFY(first.idle());
        QCOMPARE(first.left, qint64(received().size()));
        peer->close();
        QTRY_COMPARE(link->progress().connection, 0u);
        QVERIFY(accept());
        QTRY_COMPARE(link->progress().connection, first.connection + 1);
    }

    // The socket is up shortly before the link is reported up: only the frame with a payload form
    // may leave in between.
    void theTwoFormsTestDifferentThings() {
        link->open(server->serverPort());
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
        QVERIFY(accept());
        QTRY_COMPARE(received(), Frame::build(1908, 7, 7, 1, "x") + kGreeting);
        QVERIFY(early);
    }

    // More than one buffer at once, and a frame that only the next connection completes.
    void takesEverythingAndKeepsHalfAFrame() {
        QVERIFY(comesUp());
        const QByteArray big = Frame::build(2907, 0, 0, 2000, QByteArray(2000, 'm').constData());
        peer->write(big + big + big + big.left(1000));
        QTRY_COMPARE(frames.size(), 3);
        peer->abort();
        QTRY_VERIFY(!link->connected());
        QVERIFY(accept());  // after the reconnect time
        peer->write(big.mid(1000));
        QTRY_COMPARE(frames.size(), 4);
        QCOMPARE(frames.last().second, QByteArray(2000, 'm'));
        // The last byte may come alone.
        peer->write(Frame::build(6001, 0, 0) + big.chopped(1));
        QTRY_COMPARE(frames.size(), 5);
        peer->write(big.right(1));
        QTRY_COMPARE(frames.size(), 6);
        QTRY_COMPARE(received(), kGreeting);
    }

    void findsAControllerThatComesLate() {
        const quint16 port = server->serverPort();
        server->close();
        link->open(port);
        const auto timers = link->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(timers.size(), 1);
        QTRY_VERIFY(timers[0]->isActive());  // refused
        QVERIFY(server->listen(QHostAddress::LocalHost, port));
        QVERIFY(accept());
        QTRY_COMPARE(received(), kGreeting);
        QVERIFY(!timers[0]->isActive());
        QCOMPARE(link->findChildren<QTcpSocket*>().size(), 1);
    }

    void closingFlushesAndIsFinal() {
        QVERIFY(comesUp());
        link->send(command::QuitAcknowledged, 0, 0);
        link->close(500);
        QTRY_COMPARE(received(), kGreeting + Frame::build(command::QuitAcknowledged, 0, 0));
        link.reset();
        QVERIFY(frames.isEmpty());
    }

    void endingInsideAHandlerIsSafe() {
        int seen = 0;
        DeviceLink* inner = nullptr;
        DeviceLink ending(
            [&](quint16, quint8, quint8, quint16, const char*) {
                ++seen;
                inner->close(0);
            },
            nullptr);
        inner = &ending;
        ending.open(server->serverPort());
        QVERIFY(accept());
        QByteArray many;
        for (int i = 0; i < 1000; ++i)
            many += Frame::build(6001, 0, 0);
        peer->write(many);
        QTRY_VERIFY(seen > 0);
    }

 private:
    /// Waits for the link, which may have to try again first; it needs the event loop meanwhile.
    bool accept() {
        const bool comes =
            QTest::qWaitFor([this] { return server->hasPendingConnections(); }, 8000);
        peer = server->nextPendingConnection();
        return comes;
    }
    bool comesUp() {
        link->open(server->serverPort());
        return accept() && QTest::qWaitFor([this] { return link->connected(); });
    }
    QByteArray received() { return all += peer->readAll(); }

    QVector<QPair<quint16, QByteArray>> frames;
    std::unique_ptr<QTcpServer> server;  // the controller
    QTcpSocket* peer = nullptr;          // its side of the latest connection
    QByteArray all;                      // that it has received
    std::unique_ptr<DeviceLink> link;
};

QTEST_GUILESS_MAIN(DeviceLinkTest)
#include "device_link_test.moc"
