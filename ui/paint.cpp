#include "ui/paint.h"

#include <QPainter>
#include <QPixmapCache>

#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

QPixmap colored(const QString& name, QRgb color, int size) {
    const QString key = QStringLiteral("glyph/%1/%2/%3").arg(name).arg(color, 0, 16).arg(size);
    QPixmap glyph;
    if (QPixmapCache::find(key, &glyph))
        return glyph;
    glyph = Pictures::icon(name);
    if (glyph.isNull())
        return glyph;
    if (size > 0 && glyph.width() != size)
        glyph = glyph.scaledToWidth(size, Qt::SmoothTransformation);
    QPainter painter(&glyph);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(glyph.rect(), Theme::color(color));
    painter.end();
    QPixmapCache::insert(key, glyph);
    return glyph;
}

void drawCentred(QPainter* painter, const QRect& box, const QPixmap& pixmap) {
    if (!pixmap.isNull())
        painter->drawPixmap(box.x() + (box.width() - pixmap.width()) / 2,
                            box.y() + (box.height() - pixmap.height()) / 2, pixmap);
}

}  // namespace

namespace Paint {

void box(QPainter* painter, const QRectF& box, qreal radius, QRgb fill) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(Theme::color(fill));
    painter->drawRoundedRect(box, radius, radius);
}

void box(QPainter* painter, const QRectF& box, qreal radius, QRgb fill, QRgb border,
         qreal borderWidth) {
    const qreal half = borderWidth / 2;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(Theme::color(border), borderWidth));
    painter->setBrush(Theme::color(fill));
    painter->drawRoundedRect(box.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void row(QPainter* painter, const QRectF& where, qreal radius, bool pressed, bool chosen) {
    if (chosen)
        box(painter, where, radius, Theme::kAccentTint, Theme::kAccent, 2);
    else
        box(painter, where, radius, pressed ? Theme::kRowPressed : Theme::kRow);
}

void icon(QPainter* painter, const QRect& box, const QString& name) {
    drawCentred(painter, box, Pictures::icon(name));
}

void glyph(QPainter* painter, const QRect& box, const QString& name, QRgb color, int size) {
    drawCentred(painter, box, colored(name, color, size));
}

void cameraPicture(QPainter* painter, const QPoint& origin) {
    // Kept at half its size: at its full one it would drive all icons out of the cache.
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(QRect(origin, QSize(Theme::kScreenWidth, Theme::kScreenHeight)),
                        Pictures::icon(QStringLiteral("live_default.png")));
    painter->restore();
}

}  // namespace Paint
