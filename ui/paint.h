#pragma once

#include <QRectF>
#include <QRgb>
#include <QString>

class QPainter;

/// The few shapes that all widgets are made of.
namespace Paint {

/// A rounded box. The border, if any, lies inside @p box.
void box(QPainter* painter, const QRectF& box, qreal radius, QRgb fill);
void box(QPainter* painter, const QRectF& box, qreal radius, QRgb fill, QRgb border,
         qreal borderWidth);

/// The ground of a row or tile, pressed or chosen.
void row(QPainter* painter, const QRectF& where, qreal radius, bool pressed, bool chosen);

/// The picture @p name of Pictures::icon() in the middle of @p box, in its own size.
void icon(QPainter* painter, const QRect& box, const QString& name);
/// The same as a glyph: @p size pixels wide and all in @p color. A size of 0 means its own.
void glyph(QPainter* painter, const QRect& box, const QString& name, QRgb color, int size = 0);

/// What stands in for the camera's picture where there is no panel that shows it: a picture of the
/// whole screen, whose upper left corner is at @p origin.
void cameraPicture(QPainter* painter, const QPoint& origin);

}  // namespace Paint
