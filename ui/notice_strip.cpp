#include "ui/notice_strip.h"

#include <QPainter>
#include <utility>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

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

void NoticeStrip::setTop(int top) {
    move(0, top);
    raise();
}

void NoticeStrip::tell(Kind kind, const QString& key, const ScriptHandler::Script& text) {
    kind_ = kind;
    key_ = key;
    text_ = TextFit::roleSized(text);
    timer_.start();
    show();
    raise();
    update();
}

void NoticeStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool done = kind_ == Kind::Done;
    painter.fillRect(rect(), Theme::color(done ? Theme::kAccentTint : Theme::kDialog));
    const int room = width() - 2 * kMargin - kIcon - kGap;
    const int text = qMin(TextFit::width(text_, TextFit::kNotice, QFont::Medium), room);
    const int left = (width() - kIcon - kGap - text) / 2;
    Paint::glyph(&painter, {left, 0, kIcon, height()},
                 done ? QStringLiteral("pass_28.png") : QStringLiteral("fail_28.png"),
                 done ? Theme::kAccent : Theme::kDanger, kIcon);
    TextFit::draw(&painter, {left + kIcon + kGap, 0, text, height()}, Qt::AlignLeft, text_,
                  TextFit::kNotice, QFont::Medium, Theme::kStrong);
}
