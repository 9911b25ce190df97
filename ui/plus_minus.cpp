#include "ui/plus_minus.h"

#include <QPainter>

#include "ui/label_button.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kButtonWidth = 60;
constexpr int kGap = 6;
constexpr int kWithBar = 428;
constexpr int kNumberWidth = 56;  // beside a bar
constexpr int kBarLeft = 16;
constexpr int kPieceGap = 4;
constexpr int kPieceHeight = 24;

}  // namespace

PlusMinus::PlusMinus(QWidget* parent)
    : QWidget(parent), minus_(new LabelButton(this)), plus_(new LabelButton(this)) {
    setObjectName(QStringLiteral("PlusMinus"));
    minus_->setObjectName(QStringLiteral("minusButton"));
    minus_->setIconName(QStringLiteral("minus.png"));
    plus_->setObjectName(QStringLiteral("plusButton"));
    plus_->setIconName(QStringLiteral("plus.png"));
    minus_->setAutoRepeat(true);
    plus_->setAutoRepeat(true);
    connect(minus_, &WidgetButton::touched, this, [this] { setValue(value_ - step_); });
    connect(plus_, &WidgetButton::touched, this, [this] { setValue(value_ + step_); });
    showLimits();
}

void PlusMinus::setMinimum(int minimum) {
    minimum_ = minimum;
    setValue(value_);
    showLimits();
}

void PlusMinus::setMaximum(int maximum) {
    maximum_ = maximum;
    setValue(value_);
    showLimits();
}

void PlusMinus::setBar(bool bar) {
    bar_ = bar;
    updateGeometry();
    update();
}

void PlusMinus::setValue(int value) {
    value = qMax(minimum_, qMin(value, maximum_));
    if (value_ == value)
        return;
    value_ = value;
    showLimits();
    update();
    emit valueChanged(value_);
}

void PlusMinus::applyScripts(const Lookup& lookup) {
    family_ = lookup(QString()).fontFamily;
    update();
}

QSize PlusMinus::sizeHint() const {
    return {bar_ ? kWithBar : 208, 56};
}

void PlusMinus::showLimits() {
    minus_->setLimited(value_ <= minimum_);
    plus_->setLimited(value_ >= maximum_);
}

void PlusMinus::resizeEvent(QResizeEvent*) {
    minus_->setGeometry(0, 0, kButtonWidth, height());
    plus_->setGeometry(width() - kButtonWidth, 0, kButtonWidth, height());
}

void PlusMinus::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int left = kButtonWidth + kGap;
    QRect box(left, 0, width() - 2 * left, height());
    Paint::box(&painter, box, Theme::kRadiusControl, isEnabled() ? Theme::kBackground : Theme::kRow,
               isEnabled() ? Theme::kOutline : Theme::kOffLine, 1);
    if (bar_ && maximum_ > 0) {
        const int room = box.width() - kBarLeft - kNumberWidth + kPieceGap;
        for (int i = 0; i < maximum_; ++i) {
            const int x = room * i / maximum_;
            const QRgb fill = i >= value_   ? Theme::kPressed
                              : isEnabled() ? Theme::kAccent
                                            : Theme::kOffFill;
            Paint::box(&painter,
                       QRect(box.x() + kBarLeft + x, (height() - kPieceHeight) / 2,
                             room * (i + 1) / maximum_ - x - kPieceGap, kPieceHeight),
                       kPieceGap, fill);
        }
        box.setLeft(box.right() + 1 - kNumberWidth);
    }
    ScriptHandler::Script number;
    number.fontFamily = family_;
    number.script = QString::number(value_);
    TextFit::draw(&painter, box, Qt::AlignHCenter, number, TextFit::kButton, QFont::Bold,
                  isEnabled() ? Theme::kStrong : Theme::kOff);
}
