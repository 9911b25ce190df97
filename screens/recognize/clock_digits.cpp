#include "screens/recognize/clock_digits.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr double kUnits = 1000;  // of the outlines, for the font's size
constexpr int kMostSteps = 48;

/// A part of an outline, y upwards: 'M' moves to a point, 'L' draws a line there, 'C' a cubic curve
/// whose end is the last of three.
struct Step {
    char verb;
    short at[6];
};

struct Character {
    QFont::Weight weight;
    char name;
    short advance;
    Step outline[kMostSteps];  // the rest is empty
};

constexpr Character kCharacters[] = {
#include "clock_digits.inc"
};

/// The first one for what there is not.
const Character& character(QChar name, QFont::Weight weight) {
    const auto* const found =
        std::find_if(std::begin(kCharacters), std::end(kCharacters), [&](const Character& each) {
            return each.weight == weight && QLatin1Char(each.name) == name;
        });
    return found != std::end(kCharacters) ? *found : kCharacters[0];
}

}  // namespace

int ClockDigits::width(const QString& text, QFont::Weight weight, int pixelSize) {
    int units = 0;
    for (const QChar name : text)
        units += character(name, weight).advance;
    return qRound(units * pixelSize / kUnits);
}

QPainterPath ClockDigits::path(const QString& text, QFont::Weight weight, int pixelSize,
                               const QPointF& origin) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    const double scale = pixelSize / kUnits;
    double left = origin.x();
    for (const QChar name : text) {
        const Character& drawn = character(name, weight);
        const auto point = [&](const Step& step, int number) {
            return QPointF(left + step.at[2 * number] * scale,
                           origin.y() - step.at[2 * number + 1] * scale);
        };
        for (const Step& step : drawn.outline) {
            if (step.verb == 'M')
                path.moveTo(point(step, 0));
            else if (step.verb == 'L')
                path.lineTo(point(step, 0));
            else if (step.verb == 'C')
                path.cubicTo(point(step, 0), point(step, 1), point(step, 2));
        }
        path.closeSubpath();
        left += drawn.advance * scale;
    }
    return path;
}
