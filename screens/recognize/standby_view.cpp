#include "screens/recognize/standby_view.h"

#include <QLocale>
#include <QPaintEvent>
#include <QPainter>

#include "screens/recognize/clock_digits.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

// Where things stand, in pixels. The hour's digits are heavier than the minute's, so that the two
// lines are told apart from a distance.
constexpr int kDigitSize = 230;
constexpr int kDigitsRight = 351;
constexpr int kHourBaseline = 306;
constexpr int kMinuteBaseline = 517;
constexpr int kHalfDayLeft = 360;
constexpr int kHalfDaySize = 44;
constexpr QRect kHours(0, 120, 480, 210);
constexpr QRect kMinutes(0, 330, 480, 210);
constexpr QRect kDate(0, 572, 480, 48);
constexpr QRect kHint(24, 688, 432, 72);
constexpr int kHintIcon = 36;
constexpr int kHintGap = 12;
constexpr QPoint kLogo(24, 24);
constexpr QSize kLogoSize(240, 72);

// The terminal's own background: rings around the lower right corner.
constexpr double kGroundMiddleAt = 0.55;
constexpr double kRingWidth = 1.5;
constexpr int kSmallestRing = 140;
constexpr int kLargestRing = 500;
constexpr int kRingDistance = 90;

}  // namespace

StandbyView::StandbyView(QWidget* parent) : WidgetButton(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setKeyClick(false);
}

void StandbyView::setTime(const QDateTime& now) {
    const QDateTime before = time_;
    time_ = now;
    if (!before.isValid() || before.time().hour() != now.time().hour())
        update(kHours);
    if (!before.isValid() || before.time().minute() != now.time().minute())
        update(kMinutes);
    if (before.date() != now.date())
        update(kDate);
}

void StandbyView::setBackground(const QPixmap& picture) {
    background_ = picture.isNull()
                      ? QPixmap()
                      : picture.scaled(Theme::kScreenWidth, Theme::kScreenHeight,
                                       Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    update();
}

void StandbyView::setLogo(const QPixmap& logo) {
    logo_ = logo;
    if (logo.width() > kLogoSize.width() || logo.height() > kLogoSize.height())
        logo_ = logo.scaled(kLogoSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    update(QRect(kLogo, kLogoSize));
}

void StandbyView::setDark(bool dark) {
    if (dark_ == dark)
        return;
    dark_ = dark;
    update();
}

void StandbyView::applyScripts(const Lookup& lookup) {
    hint_ = lookup(QStringLiteral("Info_TouchToStart"));
    date_ = lookup(QStringLiteral("Arg_LongDate"));
    locale_ = QLocale(lookup(QStringLiteral("Arg_Locale")).script);
    update();
}

void StandbyView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    if (dark_) {
        painter.fillRect(event->rect(), Qt::black);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    if (background_.isNull()) {
        paintOwnBackground(painter, event->rect());
    } else {
        const QRect place(QPoint(0, 0), background_.size());
        painter.fillRect(event->rect(), Theme::color(Theme::kBackground));
        painter.drawPixmap(place.translated(rect().center() - place.center()), background_);
        painter.fillRect(event->rect(), Theme::color(Theme::kDim));
    }
    if (!logo_.isNull() && event->rect().intersects(QRect(kLogo, kLogoSize)))
        painter.drawPixmap(kLogo, logo_);

    if (time_.isValid() && event->rect().intersects(kHours | kMinutes | kDate))
        paintClock(painter);
    if (event->rect().intersects(kHint))
        paintHint(painter);
}

// Drawn, since a picture of the whole screen would take memory for as long as the terminal runs.
void StandbyView::paintOwnBackground(QPainter& painter, const QRect& area) const {
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, Theme::color(Theme::kGroundTop));
    ground.setColorAt(kGroundMiddleAt, Theme::color(Theme::kGroundMiddle));
    ground.setColorAt(1, Theme::color(Theme::kGroundBottom));
    painter.fillRect(area, ground);
    painter.setPen(QPen(Theme::color(Theme::kRing), kRingWidth));
    painter.setBrush(Qt::NoBrush);
    for (int radius = kSmallestRing; radius <= kLargestRing; radius += kRingDistance)
        painter.drawEllipse(QPoint(width(), height()), radius, radius);
}

void StandbyView::paintClock(QPainter& painter) const {
    const int hour = time_.time().hour();
    const QString hours = QStringLiteral("%1").arg((hour + 11) % 12 + 1, 2, 10, QLatin1Char('0'));
    const QString minutes =
        QStringLiteral("%1").arg(time_.time().minute(), 2, 10, QLatin1Char('0'));

    const auto paint = [&](const QString& text, QFont::Weight weight, int right, int baseline) {
        const int left = right - ClockDigits::width(text, weight, kDigitSize);
        painter.drawPath(ClockDigits::path(text, weight, kDigitSize, QPointF(left, baseline)));
        return left;
    };
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::color(Theme::kStrong));
    paint(hours, QFont::Medium, kDigitsRight, kHourBaseline);
    // The colon hangs left of the digits, so that these stand under the hours.
    const int minutesLeft = paint(minutes, QFont::Light, kDigitsRight, kMinuteBaseline);
    paint(QStringLiteral(":"), QFont::Light, minutesLeft, kMinuteBaseline);

    painter.setPen(Theme::color(Theme::kAccent));
    painter.setFont(Theme::font(hint_.fontFamily, kHalfDaySize, QFont::Medium));
    painter.drawText(kHalfDayLeft, kHourBaseline,
                     hour < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));

    painter.setPen(Theme::color(Theme::kCaption));
    painter.setFont(Theme::font(date_.fontFamily, static_cast<int>(date_.size)));
    painter.drawText(kDate, Qt::AlignCenter, dateText());
}

QString StandbyView::dateText() const {
    return locale_.toString(time_.date(), date_.script);
}

void StandbyView::paintHint(QPainter& painter) const {
    painter.setPen(QPen(Theme::color(Theme::kOutline), 1));
    painter.setBrush(isDown() ? Theme::color(Theme::kRowPressed) : Theme::color(Theme::kVeil));
    painter.drawRoundedRect(QRectF(kHint).adjusted(0.5, 0.5, -0.5, -0.5), kHint.height() / 2.0,
                            kHint.height() / 2.0);

    painter.setFont(Theme::font(hint_.fontFamily, static_cast<int>(hint_.size), QFont::Medium));
    const int textWidth = painter.fontMetrics().horizontalAdvance(hint_.script);
    const int left = kHint.center().x() - (kHintIcon + kHintGap + textWidth) / 2;
    const int middle = kHint.center().y();
    painter.drawPixmap(left, middle - kHintIcon / 2,
                       Pictures::icon(QStringLiteral("touch_accent.png")));
    painter.setPen(Theme::color(Theme::kCaption));
    painter.drawText(QRect(left + kHintIcon + kHintGap, kHint.top(), textWidth, kHint.height() - 2),
                     Qt::AlignVCenter, hint_.script);
}

void StandbyView::downChanged() {
    update(kHint);
}
