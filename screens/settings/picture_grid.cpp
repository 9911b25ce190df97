#include "screens/settings/picture_grid.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/paint.h"
#include "ui/picture_shelf.h"
#include "ui/theme.h"

namespace {

constexpr int kLeft = 24;
constexpr int kRight = 244;
constexpr int kFrame = 4;
constexpr int kTick = 52;
constexpr int kTickInset = 10;
constexpr int kSign = 72;

}  // namespace

void PictureModel::setPictures(const QVector<StandbyPictures::Picture>& pictures) {
    beginResetModel();
    pictures_ = pictures;
    endResetModel();
}

int PictureModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : pictures_.size();
}

QVariant PictureModel::data(const QModelIndex& index, int role) const {
    return role == Qt::DisplayRole ? QVariant(pictures_.at(index.row()).name) : QVariant();
}

QRect PicturePainter::boxIn(const QRect& area) const {
    const bool second = area.x() >= area.width();
    return {QPoint(second ? kRight : kLeft, area.y()), kPreview};
}

void PicturePainter::paintGround(QPainter* painter, const QRect& box, const RowState& state) const {
    Paint::box(painter, box, Theme::kRadiusCard, state.pressed ? Theme::kRowPressed : Theme::kRow);
}

void PicturePainter::paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                              const RowState& state) const {
    const auto& picture = static_cast<const PictureModel*>(index.model())->picture(index.row());
    PictureShelf::State shelved{};
    const QImage preview = previews_->picture(picture.folder, picture.name, &shelved);
    if (shelved == PictureShelf::State::Here) {
        painter->save();
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        QPainterPath frame;
        frame.addRoundedRect(box, Theme::kRadiusCard, Theme::kRadiusCard);
        painter->setClipPath(frame);
        painter->drawImage(box, preview);
        if (state.pressed)
            painter->fillRect(box, Theme::color(Theme::kDim));
        painter->restore();
    } else if (shelved == PictureShelf::State::Broken) {
        Paint::icon(painter, box, QStringLiteral("warning.png"));
    } else {
        Paint::glyph(painter, box, QStringLiteral("wait_0.png"), Theme::kMark, kSign);
    }
    if (!state.selected)
        return;
    // A border that can be seen on any picture, and a sign that is none of its colors.
    Paint::box(painter, box, Theme::kRadiusCard, 0, Theme::kAccent, kFrame);
    const QRect tick(box.right() - kTickInset - kTick, box.y() + kTickInset, kTick, kTick);
    Paint::box(painter, tick, kTick / 2.0, Theme::kAccent);
    Paint::glyph(painter, tick, QStringLiteral("tick.png"), Theme::kOnAccent);
}
