#include "screens/factory/f_lcd_touch_test.h"

#include "link/command_code.h"
#include "screens/factory/touch_grid.h"
#include "ui/label_button.h"

namespace {

constexpr int kTime = 60000;  // milliseconds

constexpr FactoryStep kSteps[] = {
    {command::FactoryTouchTest, 0, 0, "ListItem_FactoryCells", "Info_FactoryTouch", nullptr,
     "%.0f/60", TouchGrid::kCells - 1, FactoryStep::kOpen, FactoryStep::WhenSeen, kTime, "cells"},
};
static_assert(TouchGrid::kCells == 60, "as the format says");

}  // namespace

void f_lcd_touchTest::built() {
    setSteps(kSteps);
    grid_ = new TouchGrid(this);
    begin_ = addAction("Button_FactoryBegin", "beginButton");
    connect(begin_, &LabelButton::touched, this, [this] {
        grid_->begin();
        beginTime();
    });
    connect(grid_, &TouchGrid::touched, this, [this](int count) { take(0, count); });
    connect(this, &FactoryTestForm::judged, grid_, [this] {
        grid_->end();
        begin_->setEnabled(false);
        // The finger that was still on its way meant a cell.
        shield();
    });
}

void f_lcd_touchTest::windowInEvent() {
    grid_->hide();
    begin_->setEnabled(true);
    FormScreen::windowInEvent();
}
