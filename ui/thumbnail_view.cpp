#include "ui/thumbnail_view.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/dismissible_overlay.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

constexpr int kTallest = 640;

/// The photo in its own shape, as large as it goes on a card. Any touch closes it.
class LargePhoto : public DismissibleOverlay {
 public:
    LargePhoto(QWidget* owner, const QPixmap& photo)
        : DismissibleOverlay(owner), photo_(new ThumbnailView(card())) {
        setObjectName(QStringLiteral("LargePhoto"));
        photo_->setAttribute(Qt::WA_TransparentForMouseEvents);
        photo_->setEnlargeable(false);
        photo_->setPhoto(photo);
        photo_->resize(photo.size().scaled(kInnerWidth, kTallest, Qt::KeepAspectRatio));
    }

 protected:
    int arrange() override {
        photo_->move((kCardWidth - photo_->width()) / 2, kSide);
        return photo_->height() + 2 * kSide;
    }
    bool closesAt(const QPoint&) const override { return true; }

 private:
    ThumbnailView* photo_;
};

}  // namespace

ThumbnailView::ThumbnailView(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("ThumbnailView"));
    connect(this, &WidgetButton::touched, this, [this] { (new LargePhoto(this, photo_))->show(); });
}

void ThumbnailView::setPhoto(const QPixmap& photo) {
    photo_ = photo;
    update();
}

QSize ThumbnailView::sizeHint() const {
    return {160, 192};
}

void ThumbnailView::paintEvent(QPaintEvent*) {
    const QPixmap source = hasPhoto() ? photo_ : Pictures::icon(QStringLiteral("nophoto.png"));
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(rect(), Theme::kRadiusPhoto, Theme::kRadiusPhoto);
    painter.setClipPath(frame);
    // A photo fills the frame, the silhouette stays whole.
    if (!hasPhoto())
        painter.fillRect(rect(), Theme::color(Theme::kPhoto));
    const QSizeF filling =
        QSizeF(source.size())
            .scaled(size(), hasPhoto() ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio);
    painter.drawPixmap(
        QRectF(QPointF((width() - filling.width()) / 2, (height() - filling.height()) / 2),
               filling),
        source, source.rect());
    if (isDown())
        painter.fillRect(rect(), Theme::color(Theme::kDim));
}
