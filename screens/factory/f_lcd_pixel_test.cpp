#include "screens/factory/f_lcd_pixel_test.h"

#include <QBrush>
#include <QImage>
#include <QPainter>

#include "link/command_code.h"

namespace {

constexpr FactoryStep kSteps[] = {
    {command::FactoryPixelTest, 0, 0, "ListItem_FactoryPixels", "Info_FactoryPatterns", nullptr,
     nullptr, 0, 0, FactoryStep::ByPerson, FactoryStep::kAnswerTime, "pixels"},
};

/// Checker and lines, then the same inverted, so that each pixel is lit and dark in both.
constexpr int kPatterns = 4;

void draw(QPainter* painter, const QRect& screen, int pattern) {
    const bool lines = pattern % 2 == 1;
    const int inverted = pattern / 2;
    QImage tile(2, 2, QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 2; ++x)
            tile.setPixelColor(x, y,
                               (y + (lines ? 0 : x) + inverted) % 2 == 0 ? Qt::white : Qt::black);
    }
    painter->fillRect(screen, QBrush(tile));
}

}  // namespace

void f_lcd_pixelTest::built() {
    setSteps(kSteps);
    setPatterns(kPatterns, &draw);
}
