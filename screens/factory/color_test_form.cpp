#include "screens/factory/color_test_form.h"

#include <QHBoxLayout>
#include <QPainter>
#include <iterator>

#include "link/command_code.h"

namespace {

constexpr FactoryStep kSteps[] = {
    {command::FactoryColourTest, 0, 0, "ListItem_FactoryChart", "Info_FactoryColour", nullptr,
     nullptr, 0, 0, FactoryStep::ByPerson, FactoryStep::kAnswerTime, "chart"},
};

constexpr QSize kChartSize(152, 400);
constexpr QSize kPictureSize(288, 400);
constexpr int kGap = 8;
constexpr int kColumns = 4;
constexpr QRgb kChart[] = {
    // Skins, from light to dark
    0xfff7dcc8,
    0xffeec3a2,
    0xffdba27a,
    0xffbf8358,  //
    0xff9c6440,
    0xff774729,
    0xff52301b,
    0xff33200f,  //
    // The display's own colors and their mixtures
    0xffff0000,
    0xff00ff00,
    0xff0000ff,
    0xffffffff,  //
    0xff00ffff,
    0xffff00ff,
    0xffffff00,
    0xff000000,  //
    // The same in half the light, and grays
    0xff800000,
    0xff008000,
    0xff000080,
    0xff808080,  //
    0xff008080,
    0xff800080,
    0xff808000,
    0xff404040,
};

/// The colors that a person compares with those of the live picture.
class ColourChart : public QWidget {
 public:
    using QWidget::QWidget;

 protected:
    void paintEvent(QPaintEvent*) override {
        constexpr int kRows = static_cast<int>(std::size(kChart)) / kColumns;
        QPainter painter(this);
        for (int i = 0; i < kRows * kColumns; ++i) {
            const int column = i % kColumns;
            const int row = i / kColumns;
            const QPoint from(width() * column / kColumns, height() * row / kRows);
            const QPoint to(width() * (column + 1) / kColumns, height() * (row + 1) / kRows);
            painter.fillRect(QRect(from, to - QPoint(1, 1)), QColor(kChart[i]));
        }
    }
};

}  // namespace

void ColorTestForm::built() {
    setSteps(kSteps);
    auto* both = new QWidget;
    auto* layout = new QHBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGap);
    const auto add = [&](QWidget* part, const QSize& size) {
        part->setFixedSize(size);
        layout->addWidget(part);
    };
    add(new ColourChart(both), kChartSize);
    add(new CameraPicture(both), kPictureSize);
    addContent(both);
}
