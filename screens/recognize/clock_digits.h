#pragma once

#include <QFont>
#include <QPainterPath>
#include <QString>

/// The large characters of the standby clock as outlines: 0 to 9 and the colon, light and medium.
/// Of the fonts that they come from they would be the only use on a screen that is up all day, at
/// two megabytes a face.
namespace ClockDigits {

/// How far @p text reaches, in pixels, at @p pixelSize.
int width(const QString& text, QFont::Weight weight, int pixelSize);
/// The outlines of @p text from @p origin on, which lies on its baseline.
QPainterPath path(const QString& text, QFont::Weight weight, int pixelSize, const QPointF& origin);

}  // namespace ClockDigits
