#include <QtTest>
#include <cstring>
#include <vector>

#include "link/frame.h"
#include "link/frame_parser.h"

namespace {

struct Received {
    quint16 command;
    quint8 p1;
    quint8 p2;
    QByteArray payload;

    bool operator==(const Received& other) const {
        return command == other.command && p1 == other.p1 && p2 == other.p2 &&
               payload == other.payload;
    }
};

/// Feeds bytes in pieces of the sizes that @p pieceSize gives and keeps what comes out.
class Feed {
 public:
    Feed()
        : parser(
              [this](quint16 command, quint8 p1, quint8 p2, quint16 length, const char* payload) {
                  if ((payload == nullptr) != (length == 0))
                      qFatal("a payload is null exactly when it is empty");
                  frames.push_back({command, p1, p2, QByteArray(payload, length)});
              }) {}

    template <typename PieceSize>
    void give(QByteArray bytes, PieceSize pieceSize) {
        while (!bytes.isEmpty()) {
            const auto size = std::min<std::size_t>(
                {static_cast<std::size_t>(bytes.size()), parser.writeSpace(), pieceSize()});
            std::memcpy(parser.writePosition(), bytes.constData(), size);
            parser.consume(size);
            bytes.remove(0, static_cast<int>(size));
        }
    }
    void give(const QByteArray& bytes) {
        give(bytes, [] { return std::size_t(5000); });
    }

    std::vector<Received> frames;
    FrameParser parser;
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

    void anyPieces_data() {
        QTest::addColumn<int>("piece");
        for (const int piece : {1, 2, 3, 7, 8, 9, 15, 485, 486, 487, 494, 2099, 2100, 5000})
            QTest::addRow("%d", piece) << piece;
    }

    // Every kind of frame behind and before every other, cut into equal pieces.
    void anyPieces() {
        QFETCH(int, piece);
        QByteArray stream;
        std::vector<Received> expected;
        for (const int length : {0, 1, 486, 0, 0, 2092, 380, 2092, 2091, 4, 0}) {
            const QByteArray payload = pattern(length);
            const auto command = static_cast<quint16>(2900 + length % 1000);
            expected.push_back({command, static_cast<quint8>(length), 0xC5, payload});
            stream += Frame::build(command, static_cast<quint8>(length), 0xC5,
                                   static_cast<quint16>(length), payload.constData());
        }
        Feed feed;
        feed.give(stream, [piece] { return static_cast<std::size_t>(piece); });
        QVERIFY(feed.frames == expected);
        QCOMPARE(feed.parser.firstParameter(), quint8(0));
        QCOMPARE(feed.parser.secondParameter(), quint8(0xC5));
    }

    void garbageCostsOnlyItself() {
        Feed feed;
        const QByteArray good = Frame::build(2902, 3, 4, 1, "x");
        feed.give(QByteArray("noise \0\x02\xC5\x01", 10) + good);
        // A start mark behind a start mark is not looked at again: this frame is lost, the next
        // not.
        feed.give("\xC5" + good + good);
        // Longer than any frame: skipped as no header, the payload is then searched like garbage.
        feed.give(QByteArray::fromHex("c502560b00002d08") + good);
        QCOMPARE(feed.frames.size(), std::size_t(3));
        for (const Received& frame : feed.frames)
            QVERIFY(frame == (Received{2902, 3, 4, "x"}));
    }

    void resetForgetsHalfAFrame() {
        Feed feed;
        feed.give(Frame::build(2907, 0, 0, 380, pattern(380).constData()).left(200));
        feed.parser.reset();
        feed.give(Frame::build(6001, 0, 0));
        QCOMPARE(feed.frames.size(), std::size_t(1));
        QCOMPARE(feed.frames[0].command, quint16(6001));
    }
};

QTEST_APPLESS_MAIN(FrameParserTest)
#include "frame_parser_test.moc"
