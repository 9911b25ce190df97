#include "screens/factory/f_lcd_test.h"

#include <QPainter>
#include <iterator>

#include "link/command_code.h"

namespace {

constexpr FactoryStep kSteps[] = {
    {command::FactoryLcdTest, 0, 0, "ListItem_FactoryLcd", "Info_FactoryPatterns", nullptr, nullptr,
     0, 0, FactoryStep::ByPerson, FactoryStep::kAnswerTime, "colours"},
};

constexpr QRgb kColors[] = {0xffff0000, 0xff00ff00, 0xff0000ff, 0xffffffff, 0xff000000};
constexpr int kRamp = static_cast<int>(std::size(kColors));
constexpr int kGrays = 16;

void draw(QPainter* painter, const QRect& screen, int pattern) {
    if (pattern < kRamp) {
        painter->fillRect(screen, QColor(kColors[pattern]));
        return;
    }
    for (int i = 0; i < kGrays; ++i) {
        const int gray = 255 * i / (kGrays - 1);
        painter->fillRect(QRect(QPoint(0, screen.height() * i / kGrays),
                                QPoint(screen.right(), screen.height() * (i + 1) / kGrays - 1)),
                          QColor(gray, gray, gray));
    }
}

}  // namespace

void f_lcdTest::built() {
    setSteps(kSteps);
    setPatterns(kRamp + 1, &draw);
}
