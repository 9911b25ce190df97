#include "screens/recognize/ok_form.h"

#include <QPainter>

#include "base/clock.h"
#include "screens/recognize/animation_play_widget.h"
#include "ui/text_line.h"
#include "ui/theme.h"

namespace {

constexpr QRect kMark(136, 24, 160, 160);
// Room for two lines and some air around them.
constexpr QRect kText(16, 184, 400, 98);
constexpr int kFrameTime = 70;  // milliseconds

constexpr int kLineTop = 284;
constexpr int kLineSide = 24;
constexpr int kBaseline = 369;
constexpr int kDateSize = 40;
constexpr int kTimeSize = 56;
constexpr int kHalfDaySize = 32;
constexpr int kDateGap = 28;
constexpr int kHalfDayGap = 14;

}  // namespace

OkForm::OkForm(QWidget* parent)
    : Panel(parent), mark_(new AnimationPlayWidget(this)), text_(new TextLine(this)) {
    mark_->setGeometry(kMark);
    text_->setGeometry(kText);
    text_->setRole(TextLine::Confirmation);
    text_->setAlignment(Qt::AlignHCenter);
    hide();
}

void OkForm::confirm(const ScriptHandler::Script& text) {
    setContent(
        {QStringLiteral("check_1.png"), QStringLiteral("check_2.png"), QStringLiteral("check.png")},
        text);
}

void OkForm::tell(const QString& picture, const ScriptHandler::Script& text) {
    setContent({picture}, text);
}

void OkForm::setContent(const QStringList& pictures, const ScriptHandler::Script& text) {
    mark_->play(pictures, kFrameTime, false);
    text_->setScript(text);
    family_ = text.fontFamily;
    time_ = Clock::now();
    update();
}

void OkForm::paintEvent(QPaintEvent* event) {
    Panel::paintEvent(event);
    QPainter painter(this);
    painter.fillRect(kLineSide, kLineTop, width() - 2 * kLineSide, 1,
                     Theme::color(Theme::kPressed));

    const struct {
        QString text;
        QFont font;
        QRgb ink;
        int gap;
    } pieces[] = {
        {time_.toString(QStringLiteral("MM/dd")), Theme::font(family_, kDateSize, QFont::Medium),
         Theme::kCaption, kDateGap},
        // Twelve hours as long as the half of the day is asked for along with them.
        {time_.toString(QStringLiteral("hh:mm AP")).left(5),
         Theme::font(family_, kTimeSize, QFont::Bold), Theme::kStrong, kHalfDayGap},
        {time_.toString(QStringLiteral("AP")), Theme::font(family_, kHalfDaySize, QFont::Medium),
         Theme::kCaption, 0},
    };
    int total = 0;
    for (const auto& piece : pieces)
        total += QFontMetrics(piece.font).horizontalAdvance(piece.text) + piece.gap;
    int x = (width() - total) / 2;
    for (const auto& piece : pieces) {
        painter.setFont(piece.font);
        painter.setPen(Theme::color(piece.ink));
        painter.drawText(x, kBaseline, piece.text);
        x += painter.fontMetrics().horizontalAdvance(piece.text) + piece.gap;
    }
}
