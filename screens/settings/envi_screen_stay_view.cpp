#include "screens/settings/envi_screen_stay_view.h"

#include <QPainter>
#include <QTimer>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "screens/settings/standby_choice.h"
#include "screens/standby_pictures.h"
#include "ui/paint.h"
#include "ui/picture_shelf.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

constexpr QSize kPreview(48, 80);
constexpr int kDigits = 26;  // pixels
constexpr int kSign = 36;
constexpr int kBudget = 32 * 1024;  // bytes; one preview takes half

/// What the place of a picture holds that cannot be seen, or not yet.
QPixmap placeholder(bool waits) {
    QPixmap place(kPreview);
    place.fill(Qt::transparent);
    QPainter painter(&place);
    if (waits)
        Paint::glyph(&painter, place.rect(), QStringLiteral("wait_0.png"), Theme::kMark, kSign);
    else
        Paint::icon(&painter, place.rect(), QStringLiteral("file.png"));
    return place;
}

StandbyChoice choiceOf(int value) {
    return StandbyChoice::of(static_cast<std::uint32_t>(value));
}

}  // namespace

EnviScreen_StayView::EnviScreen_StayView(QWidget* parent, const QString& title)
    : FormScreen(parent, title), previews_(new PictureShelf(kPreview, kBudget, this)) {
    connect(previews_, &PictureShelf::arrived, this, &EnviScreen_StayView::showPicture);
}

void EnviScreen_StayView::windowOutEvent() {
    FormScreen::windowOutEvent();
    previews_->clear();
}

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
    showClock();
    // Which it is has to be looked for in folders: not before the screen can be seen.
    QTimer::singleShot(0, this, &EnviScreen_StayView::showPicture);
    ui_->stayImageRow->setValue(
        shell()->getScript(QStringLiteral("Arg_PictureNumber")).script.arg(chosen.ordinal()));
}

void EnviScreen_StayView::showClock() {
    const QString time = Clock::now().toString(QStringLiteral("hh\nmm"));
    const QString family = shell()->getScriptFontFamily();
    if (time + family == clockShown_)
        return;
    clockShown_ = time + family;
    QPixmap preview = Pictures::icon(QStringLiteral("stay_default_48.png"));
    QPainter painter(&preview);
    painter.setFont(Theme::font(family, kDigits, QFont::Medium));
    painter.setPen(Theme::color(Theme::kStrong));
    painter.drawText(preview.rect(), Qt::AlignCenter, time);
    painter.end();
    ui_->clockRow->setPreview(preview);
}

void EnviScreen_StayView::showPicture() {
    if (!isVisible())
        return;
    const StandbyPictures::Picture chosen =
        StandbyPictures::backgrounds().value(choiceOf(value()).picture);
    PictureShelf::State shelved{};
    const QImage preview = previews_->picture(chosen.folder, chosen.name, &shelved);
    const bool waits = shelved == PictureShelf::State::Waiting;
    const bool broken = shelved == PictureShelf::State::Broken;
    const QString name = chosen.folder + chosen.name;
    // What is there is right until it has been read anew.
    if (name == pictureShown_ && (waits || (broken && brokenShown_)))
        return;
    pictureShown_ = name;
    brokenShown_ = broken;
    ui_->pictureRow->setPreview(shelved == PictureShelf::State::Here
                                    ? QPixmap::fromImage(preview).scaled(
                                          kPreview, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                    : placeholder(waits));
}

void EnviScreen_StayView::returned(int picture) {
    StandbyChoice chosen = choiceOf(value());
    // Whoever has picked another one wants to see it.
    chosen.showsPicture = chosen.showsPicture || picture != chosen.picture;
    chosen.picture = static_cast<std::uint8_t>(picture);
    choose(static_cast<int>(chosen.number()));
}
