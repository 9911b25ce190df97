#include "ui/notice_strip.h"

#include <QPainter>
#include <utility>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kHeight = 24;  // ends above the titles of bars and bands
constexpr int kIcon = 20;
constexpr int kGap = 8;
constexpr int kMargin = 12;

}  // namespace

NoticeStrip::NoticeStrip(QWidget* window, int seconds) : QWidget(window) {
    setGeometry(0, 0, Theme::kScreenWidth, kHeight);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_OpaquePaintEvent);
    hide();
    timer_.setSingleShot(true);
    timer_.setInterval(seconds * 1000);
    connect(&timer_, &QTimer::timeout, this, &QWidget::hide);
}

void NoticeStrip::setText(const ScriptHandler::Script& text) {
    text_ = TextFit::roleSized(text);
    update();
}

void NoticeStrip::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    timer_.start();
}

void NoticeStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::color(Theme::kAccentTint));
    const int room = width() - 2 * kMargin - kIcon - kGap;
    const int text = qMin(TextFit::width(text_, TextFit::kNotice, QFont::Medium), room);
    const int left = (width() - kIcon - kGap - text) / 2;
    Paint::glyph(&painter, {left, 0, kIcon, height()}, QStringLiteral("pass_28.png"),
                 Theme::kAccent, kIcon);
    TextFit::draw(&painter, {left + kIcon + kGap, 0, text, height()}, Qt::AlignLeft, text_,
                  TextFit::kNotice, QFont::Medium, Theme::kStrong);
}
