#pragma once

#include <QPixmap>

#include "ui/widget_button.h"

/// A photo with round corners, cut to the widget's shape; a silhouette when there is none. Where
/// the form allows it, a touch shows the photo large until the next touch.
class ThumbnailView : public WidgetButton {
    Q_OBJECT
    Q_PROPERTY(bool enlargeable READ isEnlargeable WRITE setEnlargeable)

 public:
    explicit ThumbnailView(QWidget* parent = nullptr);

    /// A null pixmap means that there is no photo.
    void setPhoto(const QPixmap& photo);
    bool hasPhoto() const { return !photo_.isNull(); }
    bool isEnlargeable() const { return enlargeable_; }
    void setEnlargeable(bool enlargeable) { enlargeable_ = enlargeable; }

    bool isTouchable() const override { return enlargeable_ && hasPhoto(); }
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QPixmap photo_;
    bool enlargeable_ = true;
};
