#include "screens/factory/touch_grid.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/key_click.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr QRect kMap(108, 200, 264, 440);
constexpr QRect kPrompt(40, 362, 400, 76);
constexpr int kSign = 28;

}  // namespace

TouchGrid::TouchGrid(QWidget* screen) : QWidget(screen) {
    setObjectName(QStringLiteral("touchGrid"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
    prompt_.setKey(QStringLiteral("Info_FactoryTouch"));
    hide();
}

void TouchGrid::begin() {
    touched_.reset();
    running_ = true;
    setGeometry(parentWidget()->rect());
    raise();
    show();
}

void TouchGrid::end() {
    running_ = false;
    setGeometry(kMap);
    update();
}

void TouchGrid::applyScripts(const Lookup& lookup) {
    prompt_.apply(lookup);
    update();
}

QRect TouchGrid::cell(int number) const {
    const int column = number % kColumns;
    const int row = number / kColumns;
    return {QPoint(width() * column / kColumns, height() * row / kRows),
            QPoint(width() * (column + 1) / kColumns - 1, height() * (row + 1) / kRows - 1)};
}

void TouchGrid::touch(const QPoint& at) {
    for (int i = 0; running_ && i < kCells; ++i) {
        if (touched_[static_cast<std::size_t>(i)] || !cell(i).contains(at))
            continue;
        touched_.set(static_cast<std::size_t>(i));
        update(cell(i));
        emit touched(static_cast<int>(touched_.count()));
        return;
    }
}

void TouchGrid::mousePressEvent(QMouseEvent* event) {
    KeyClick::send();
    touch(event->pos());
}

void TouchGrid::mouseMoveEvent(QMouseEvent* event) {
    touch(event->pos());
}

void TouchGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.fillRect(rect(), Theme::color(Theme::kBackground));
    for (int i = 0; i < kCells; ++i) {
        const QRect box = cell(i).adjusted(1, 1, -1, -1);
        if (!event->region().intersects(box))
            continue;
        if (touched_[static_cast<std::size_t>(i)]) {
            Paint::box(&painter, box, Theme::kRadiusCheck, Theme::kAccentTint);
            Paint::glyph(&painter, box, QStringLiteral("tick.png"), Theme::kAccent, kSign);
        } else if (running_) {
            Paint::box(&painter, box, Theme::kRadiusCheck, Theme::kRow, Theme::kOutline, 1);
        } else {
            Paint::box(&painter, box, Theme::kRadiusCheck, Theme::kRow, Theme::kDanger, 2);
            Paint::glyph(&painter, box, QStringLiteral("close.png"), Theme::kDanger, kSign);
        }
    }
    if (!running_)
        return;
    Paint::box(&painter, kPrompt, Theme::kRadiusControl, Theme::kVeil);
    TextFit::draw(&painter, kPrompt.adjusted(Theme::kRadiusControl, 0, -Theme::kRadiusControl, 0),
                  Qt::AlignHCenter, prompt_.entry(), TextFit::kTitle, QFont::Medium,
                  Theme::kStrong);
}
