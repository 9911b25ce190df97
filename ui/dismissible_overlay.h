#pragma once

#include "ui/dialog_overlay.h"

/// A dialog that a widget opens for a moment: a touch beside its card closes it, and so does the
/// end of the screen it was opened from. It deletes itself when closed.
class DismissibleOverlay : public DialogOverlay {
    Q_OBJECT

 public:
    /// Covers the window of @p owner.
    explicit DismissibleOverlay(QWidget* owner);

 protected:
    /// Whether a touch at @p point, which is none of a part's, closes it.
    virtual bool closesAt(const QPoint& point) const;

    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

 private:
    QWidget* const owner_;
    bool closing_ = false;
};
