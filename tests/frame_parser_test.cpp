#include <QtTest>

#include "link/frame.h"
#include "tests/support/feed.h"

namespace {

/// Feeds bytes in pieces of @p piece and returns what comes out: "command p1 p2 payload".
class Feed {
 public:
    QStringList give(const QByteArray& bytes, std::size_t piece = 5000) {
        feed(parser, bytes, piece);
        return std::exchange(frames_, {});
    }
    static QString text(quint16 command, quint8 p1, quint8 p2, const QByteArray& payload) {
        return QStringLiteral("%1 %2 %3 ").arg(command).arg(p1).arg(p2) +
               QString::fromLatin1(payload.toHex());
    }

    FrameParser parser{
        [this](quint16 command, quint8 p1, quint8 p2, quint16 length, const char* payload) {
            if ((payload == nullptr) != (length == 0))
                qFatal("a payload is null exactly when it is empty");
            frames_ << text(command, p1, p2, QByteArray(payload, length));
        }};

 private:
    QStringList frames_;
};

QByteArray pattern(int size) {
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + size);
    return bytes;
}

}  // namespace

class FrameParserTest : public QObject {
    Q_OBJECT

 private slots:
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
            expected << Feed::text(command, p1, 0xC5, payload);
            stream +=
                Frame::build(command, p1, 0xC5, static_cast<quint16>(length), payload.constData());
        }
        for (const unsigned piece : {1, 2, 3, 7, 8, 9, 15, 485, 486, 487, 494, 2099, 2100, 5000}) {
            Feed feed;
            QVERIFY2(feed.give(stream, piece) == expected, QByteArray::number(piece).constData());
            QCOMPARE(feed.parser.firstParameter(), quint8(0));
            QCOMPARE(feed.parser.secondParameter(), quint8(0xC5));
        }
    }

    void garbageCostsOnlyItself() {
        Feed feed;
        const QByteArray good = Frame::build(2902, 3, 4, 1, "x");
        const QStringList one{QStringLiteral("2902 3 4 78")};
        QCOMPARE(feed.give(QByteArray("noise \0\x02\xC5\x01", 10) + good), one);
        // A start mark behind a start mark is not looked at again: this frame is lost, the next
        // not.
        QCOMPARE(feed.give("\xC5" + good + good), one);
        // Longer than any frame: skipped as no header, the payload is then searched like garbage.
        QCOMPARE(feed.give(QByteArray::fromHex("c502560b00002d08") + good), one);
    }

    void resetForgetsHalfAFrame() {
        Feed feed;
        feed.give(Frame::build(2907, 0, 0, 380, pattern(380).constData()).left(200));
        feed.parser.reset();
        QCOMPARE(feed.give(Frame::build(6001, 0, 0)), QStringList(QStringLiteral("6001 0 0 ")));
    }
};

QTEST_APPLESS_MAIN(FrameParserTest)
#include "frame_parser_test.moc"
