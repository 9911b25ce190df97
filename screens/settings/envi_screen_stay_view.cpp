#include "screens/settings/envi_screen_stay_view.h"

#include <QPainter>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "screens/settings/standby_choice.h"
#include "screens/standby_pictures.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

constexpr QSize kPreview(48, 80);
constexpr int kDigits = 26;  // pixels

QPixmap small(const QPixmap& picture) {
    if (picture.isNull())
        return picture;
    const QPixmap covering =
        picture.scaled(kPreview, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    return covering.copy((covering.width() - kPreview.width()) / 2,
                         (covering.height() - kPreview.height()) / 2, kPreview.width(),
                         kPreview.height());
}

QPixmap clockPreview() {
    QPixmap preview = small(Pictures::icon(QStringLiteral("stay_default.png")));
    QPainter painter(&preview);
    painter.setFont(
        Theme::font(WindowForm::shell()->getScriptFontFamily(), kDigits, QFont::Medium));
    painter.setPen(Theme::color(Theme::kStrong));
    painter.drawText(preview.rect(), Qt::AlignCenter,
                     Clock::now().toString(QStringLiteral("hh\nmm")));
    return preview;
}

StandbyChoice choiceOf(int value) {
    return StandbyChoice::of(static_cast<std::uint32_t>(value));
}

}  // namespace

void EnviScreen_StayView::built() {
    const auto show = [this](bool picture) {
        StandbyChoice chosen = choiceOf(value());
        chosen.showsPicture = picture;
        choose(static_cast<int>(chosen.number()));
    };
    connect(ui_->clockRow, &WidgetButton::touched, this, [show] { show(false); });
    connect(ui_->pictureRow, &WidgetButton::touched, this, [show] { show(true); });
    ui_->stayImageRow->setProperty("target", QString(screen_title::kStandbyPicture));
    connect(ui_->stayImageRow, &WidgetButton::touched, this,
            [this] { openPart(screen_title::kStandbyPicture, choiceOf(value()).picture); });
}

void EnviScreen_StayView::valueShown() {
    const StandbyChoice chosen = choiceOf(value());
    ui_->clockRow->setSelected(!chosen.showsPicture);
    ui_->pictureRow->setSelected(chosen.showsPicture);
    ui_->clockRow->setPreview(clockPreview());
    const QPixmap picture = small(StandbyPictures::background(chosen.picture));
    ui_->pictureRow->setPreview(picture.isNull() ? Pictures::icon(QStringLiteral("file.png"))
                                                 : picture);
    ui_->stayImageRow->setValue(
        shell()->getScript(QStringLiteral("Arg_PictureNumber")).script.arg(chosen.ordinal()));
}

void EnviScreen_StayView::returned(int picture) {
    StandbyChoice chosen = choiceOf(value());
    // Whoever has picked another one wants to see it.
    chosen.showsPicture = chosen.showsPicture || picture != chosen.picture;
    chosen.picture = static_cast<std::uint8_t>(picture);
    choose(static_cast<int>(chosen.number()));
}
