#include "ui/wait_form.h"

#include <QLabel>

#include "ui/progress_bar.h"
#include "ui/spinner.h"
#include "ui/theme.h"

namespace {

constexpr int kBarGap = 24;
constexpr int kBarHeight = 12;
constexpr int kPercentGap = 12;
constexpr int kPercentHeight = 38;

}  // namespace

WaitForm::WaitForm(QWidget* parent)
    : MessageOverlay(parent, DialogRank::Wait),
      spinner_(new Spinner(card())),
      bar_(new ProgressBar(card())),
      percent_(new QLabel(card())) {
    // On an opaque ground the turning repaints nothing that lies behind.
    QPalette ground = spinner_->palette();
    ground.setColor(QPalette::Window, Theme::color(Theme::kDialog));
    spinner_->setPalette(ground);
    spinner_->setAutoFillBackground(true);

    bar_->setInDialog(true);
    percent_->setObjectName(QStringLiteral("waitPercent"));
    percent_->setAlignment(Qt::AlignCenter);
    QPalette ink = percent_->palette();
    ink.setColor(QPalette::WindowText, Theme::color(Theme::kAccent));
    percent_->setPalette(ink);
    setProgress(-1);
}

void WaitForm::setProgress(int percent, bool numbered) {
    bar_->setVisible(percent >= 0);
    bar_->setValue(percent);
    percent_->setVisible(percent >= 0 && numbered);
    percent_->setText(QString::number(bar_->value()) + QLatin1Char('%'));
    partsChanged();
}

int WaitForm::arrange() {
    int y = arrangeMessage(spinner_);
    if (!bar_->isHidden()) {
        y += kBarGap;
        bar_->setGeometry(kSide, y, kInnerWidth, kBarHeight);
        y += kBarHeight;
    }
    if (!percent_->isHidden()) {
        y += kPercentGap;
        percent_->setFont(Theme::font(family(), 26, QFont::Bold));
        percent_->setGeometry(kSide, y, kInnerWidth, kPercentHeight);
        y += kPercentHeight;
    }
    return y + kBottom;
}
