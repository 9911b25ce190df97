#include "ui/step_bar.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kCircle = 36;
constexpr int kJoint = 48;
constexpr int kJointHeight = 4;
constexpr int kTick = 24;
constexpr TextFit::Rule kNumber{{{20, 1}}};

}  // namespace

StepBar::StepBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("StepBar"));
}

void StepBar::setStepCount(int count) {
    count_ = count;
    update();
}

void StepBar::setCurrentStep(int step) {
    current_ = step;
    update();
}

void StepBar::applyScripts(const Lookup& lookup) {
    family_ = lookup(QString()).fontFamily;
    update();
}

QSize StepBar::sizeHint() const {
    return {Theme::kScreenWidth, 72};
}

void StepBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int pitch = kCircle + kJoint;
    int left = (width() - count_ * pitch + kJoint) / 2;
    const int top = (height() - kCircle) / 2;
    for (int step = 1; step <= count_; ++step, left += pitch) {
        const QRect circle(left, top, kCircle, kCircle);
        const bool done = step < current_;
        if (step < count_)
            painter.fillRect(left + kCircle, (height() - kJointHeight) / 2, kJoint, kJointHeight,
                             Theme::color(done ? Theme::kAccent : Theme::kPressed));
        if (done) {
            Paint::box(&painter, circle, kCircle / 2.0, Theme::kAccent);
            Paint::glyph(&painter, circle, QStringLiteral("tick.png"), Theme::kOnAccent, kTick);
            continue;
        }
        const bool current = step == current_;
        Paint::box(&painter, circle, kCircle / 2.0,
                   current ? Theme::kAccentTint : Theme::kBackground,
                   current ? Theme::kAccent : Theme::kOff, 2);
        ScriptHandler::Script number;
        number.fontFamily = family_;
        number.script = QString::number(step);
        TextFit::draw(&painter, circle, Qt::AlignHCenter, number, kNumber,
                      current ? QFont::Bold : QFont::Medium,
                      current ? Theme::kAccent : Theme::kHint);
    }
}
