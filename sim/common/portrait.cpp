#include "sim/common/portrait.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <map>

namespace {

constexpr QSize kPhoto{320, 384};
constexpr QSize kThumbnail{136, 136};
constexpr char kFormat[] = "JPG";
constexpr int kQuality = 88;

struct Look {
    QRgb ground;
    QRgb hair;
    QRgb skin;
    QRgb shirt;
    bool longHair;
};

constexpr Look kLooks[] = {
    {0xffc9d3de, 0xff2a2320, 0xffe8b98f, 0xff3f5a80, true},
    {0xffb9c6bf, 0xff1c1917, 0xffe0ab80, 0xff3e4b44, false},
    {0xffd3c9bd, 0xff8a5a34, 0xfff0c9a6, 0xff5b6f86, true},
    {0xffd3ccc0, 0xff4a3026, 0xffecc39d, 0xff7a4652, true},
    {0xffb9bed3, 0xffc9a35f, 0xfff2d0b4, 0xff4c4668, true},
    {0xffc4cfd6, 0xff262a33, 0xffc98e62, 0xff34506b, false},
    {0xffc9c4d6, 0xff5a4a3a, 0xffe4b48c, 0xff4a6a5a, true},
    {0xffcfd6c4, 0xff3a2f28, 0xffd9a274, 0xff6b5a34, false},
};

QImage draw(const Look& look) {
    QImage image(kPhoto, QImage::Format_RGB32);
    image.fill(look.ground);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const QPointF centre(160, 156);
    if (look.longHair) {
        painter.setBrush(QColor(look.hair));
        painter.drawRoundedRect(QRectF(76, 56, 168, 236), 80, 80);
    }
    painter.setBrush(QColor(look.shirt));
    painter.drawEllipse(QPointF(160, 420), 150, 140);
    painter.setBrush(QColor(look.skin).darker(110));
    painter.drawRoundedRect(QRectF(130, 210, 60, 100), 28, 28);
    painter.setBrush(QColor(look.skin));
    painter.drawEllipse(centre, 70, 90);

    QPainterPath cap;
    cap.addEllipse(QPointF(160, 140), look.longHair ? 78 : 73, 90);
    QPainterPath brow;
    brow.addRect(QRectF(0, 118, 320, 300));
    painter.setBrush(QColor(look.hair));
    painter.drawPath(cap.subtracted(brow));

    painter.setBrush(QColor(0xff2a2320));
    painter.drawEllipse(QPointF(134, 158), 6, 8);
    painter.drawEllipse(QPointF(186, 158), 6, 8);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xff8a4a40), 5, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF(136, 186, 48, 26), 200 * 16, 140 * 16);
    return image;
}

const Look& lookOf(int number) {
    return kLooks[static_cast<std::size_t>(number) % std::size(kLooks)];
}

QByteArray encode(const QImage& image) {
    QBuffer buffer;
    image.save(&buffer, kFormat, kQuality);
    return buffer.data();
}

/// What the terminal's screens show of a user: the picture, and its upper part small.
struct Pictures {
    explicit Pictures(const QImage& image)
        : photo(encode(image)),
          thumbnail(
              encode(image.copy(0, 20, kPhoto.width(), kPhoto.width())
                         .scaled(kThumbnail, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))) {}

    QByteArray photo;
    QByteArray thumbnail;
};

/// Drawn once: a store full of people has thousands of them.
const Pictures& picturesOf(int look) {
    static std::map<const Look*, Pictures> drawn;
    const Look& one = lookOf(look);
    const auto known = drawn.find(&one);
    return known != drawn.end() ? known->second : drawn.emplace(&one, draw(one)).first->second;
}

void write(const QByteArray& jpeg, const QString& folder, const QString& userId) {
    QDir().mkpath(folder);
    QFile file(folder + QLatin1Char('/') + userId + QStringLiteral(".jpg"));
    if (file.open(QIODevice::WriteOnly))
        file.write(jpeg);
}

void writeForScreens(const Pictures& pictures, const QString& dataFolder, const QString& userId) {
    write(pictures.photo, dataFolder + QStringLiteral("/user"), userId);
    write(pictures.thumbnail, dataFolder + QStringLiteral("/thumb"), userId);
}

}  // namespace

namespace portrait {

QByteArray jpeg(int look) {
    return picturesOf(look).photo;
}

void save(const QString& dataFolder, const QString& userId, int look) {
    writeForScreens(picturesOf(look), dataFolder, userId);
    saveSnapshot(dataFolder, userId, look);
}

void adopt(const QString& dataFolder, const QString& userId, const QString& name) {
    const QImage snapshot(dataFolder + QStringLiteral("/Images/") + name);
    if (snapshot.isNull())
        return;
    const QImage filling =
        snapshot.scaled(kPhoto, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QRect middle(QPoint((filling.width() - kPhoto.width()) / 2, 0), kPhoto);
    writeForScreens(Pictures(filling.copy(middle)), dataFolder, userId);
}

void saveSnapshot(const QString& dataFolder, const QString& name, int look) {
    write(picturesOf(look).photo, dataFolder + QStringLiteral("/Images"), name);
}

}  // namespace portrait
