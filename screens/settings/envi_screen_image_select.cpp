#include "screens/settings/envi_screen_image_select.h"

#include <limits>

#include "screens/settings/picture_grid.h"
#include "ui/picture_shelf.h"

namespace {

constexpr int kPopupSeconds = 3;
/// Bytes of the previews: those of 80 pictures.
constexpr int kPreviews = 24 * 1024 * 1024;
/// The settings hold the choice in a byte.
constexpr int kMostChoices = std::numeric_limits<std::uint8_t>::max() + 1;

enum Popup { kPopupBroken, kPopupTooMany };
constexpr ScreenText kTexts[] = {
    {kPopupBroken, "ListItem_PictureBroken", ScreenText::Error},
    {kPopupTooMany, "ListItem_PictureTooMany", ScreenText::Info},
};

}  // namespace

EnviScreen_ImageSelect::EnviScreen_ImageSelect(QWidget* parent, const QString& title)
    : FormScreen(parent, title),
      pictures_(new PictureModel(this)),
      previews_(new PictureShelf(PicturePainter::kPreview, kPreviews, this)),
      popup_(this, kTexts) {}

void EnviScreen_ImageSelect::built() {
    ui_->list->setRowPainter(new PicturePainter(previews_, this));
    ui_->list->setWrapping(true);
    ui_->list->setModel(pictures_);
    connect(ui_->list, &RowList::rowTouched, this,
            [this](const QModelIndex& row) { pictureTouched(row.row()); });
    connect(previews_, &PictureShelf::arrived, ui_->list->viewport(),
            QOverload<>::of(&QWidget::update));
}

void EnviScreen_ImageSelect::windowInEvent() {
    pictures_->setPictures(StandbyPictures::backgrounds());
    ui_->list->rewind();
    FormScreen::windowInEvent();
    const QModelIndex chosen = ui_->list->selected();
    if (chosen.isValid())
        ui_->list->reveal(chosen);
}

void EnviScreen_ImageSelect::windowOutEvent() {
    FormScreen::windowOutEvent();
    pictures_->setPictures({});
    previews_->clear();
}

void EnviScreen_ImageSelect::valueShown() {
    ui_->list->select(pictures_->index(value()));
}

void EnviScreen_ImageSelect::pictureTouched(int number) {
    const auto& picture = pictures_->picture(number);
    PictureShelf::State state{};
    previews_->picture(picture.folder, picture.name, &state);
    if (state == PictureShelf::State::Broken)
        popup_.show(kPopupBroken, kPopupSeconds);
    else if (number >= kMostChoices)
        popup_.show(kPopupTooMany, kPopupSeconds);
    else if (state == PictureShelf::State::Here)
        choose(number);
}
