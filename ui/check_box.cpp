#include "ui/check_box.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kTouch = 56;
constexpr int kLabelGap = 2;

}  // namespace

CheckBox::CheckBox(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("CheckBox"));
    connect(this, &WidgetButton::touched, this, [this] { setChecked(!checked_); });
}

void CheckBox::setChecked(bool checked) {
    if (checked_ == checked)
        return;
    checked_ = checked;
    update();
    emit toggled(checked_);
}

void CheckBox::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    updateGeometry();
    update();
}

QSize CheckBox::sizeHint() const {
    if (text_.isEmpty())
        return {kTouch, kTouch};
    return {kTouch + kLabelGap + TextFit::width(text_.entry(), TextFit::kRowLabel, QFont::Medium),
            kTouch};
}

void CheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (isDown())
        Paint::box(&painter, rect(), Theme::kRadiusControl, Theme::kRowPressed);
    QString name = checked_ ? QStringLiteral("checkbox_on") : QStringLiteral("checkbox_off");
    if (!isEnabled())
        name += QLatin1String("_disabled");
    Paint::icon(&painter, {0, 0, kTouch, height()}, name + QLatin1String(".png"));
    const int left = kTouch + kLabelGap;
    TextFit::draw(&painter, {left, 0, width() - left, height()}, Qt::AlignLeft, text_.entry(),
                  TextFit::kRowLabel, QFont::Medium, isEnabled() ? Theme::kCaption : Theme::kOff);
}
