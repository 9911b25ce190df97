#pragma once

#include <QPointer>
#include <QWidget>

#include "ui/dialog_stack.h"

class TouchShield;

/// What every dialog stands on: a layer over the whole window it belongs to, with a card in the
/// middle. The layer dims what is behind it and keeps touches and keys away from it.
///
/// Showing a dialog opens it and hiding it closes it; of those that are open in one window only one
/// is to be seen at a time (see DialogStack). So a dialog that has been shown and is not visible is
/// covered, and comes back as long as nobody has hidden it. One of a screen ends typing when it
/// comes up. It closes when the screen it belongs to goes away, and stays closed when that comes
/// back. A dialog is not deleted when it is done with. GUI thread only.
class DialogOverlay : public QWidget {
    Q_OBJECT

 public:
    static constexpr int kCardWidth = 416;

    /// @p parent is the window or screen to cover; it must not be null.
    explicit DialogOverlay(QWidget* parent, DialogRank rank = DialogRank::Message);
    ~DialogOverlay() override;

    /// The dialog that is visible in @p widget's top-level window, or null. Whoever raises a
    /// screen raises this one afterwards.
    static DialogOverlay* current(const QWidget* widget);
    /// Closes all that are open in that window, seen or covered.
    static void closeAll(const QWidget* widget);
    /// As long as @p screen is up it lies above the dialogs of its window, which come back when
    /// null is given instead. A dialog of its own lies above it all the same.
    static void coverWith(const QWidget* window, QWidget* screen);

    DialogRank rank() const { return rank_; }
    /// Whether the dialog is open, to be seen or covered.
    bool isOpen() const;
    void setVisible(bool visible) override;

    /// When on, the dialog hides itself as soon as windowChanged() is called. Off at first.
    void checkWindowChange(bool on) { followsWindowChange_ = on; }
    /// When off, nothing is dimmed and what lies beside the card can be touched. On at first.
    void setBackgroundDisabled(bool on);
    /// For dialogs that are made for one use. Off at first.
    void setDeleteOnClose(bool on) { deleteOnClose_ = on; }

 public slots:
    /// Tells the dialog that the terminal goes to another screen.
    void windowChanged();

 protected:
    /// Space between the card's edge, which includes a border of one pixel, and its parts.
    static constexpr int kSide = 25;
    static constexpr int kTop = 33;
    static constexpr int kBottom = 25;
    static constexpr int kInnerWidth = kCardWidth - 2 * kSide;

    /// The parent of all parts.
    QWidget* card() const { return card_; }
    /// Places the parts on the card and returns the card's height in pixels.
    virtual int arrange() = 0;
    /// To be called after a part has changed: arranges the parts and centres the card anew.
    void partsChanged();
    /// Called when the dialog is being opened, and when it has been closed. When it is covered
    /// and when it comes back only hideEvent() and showEvent() are.
    virtual void opened() {}
    virtual void closed() {}
    /// A touch right after the dialog has come up is meant for it. Otherwise, as at first, it is
    /// not, and has no effect.
    void takeTouchesAtOnce();

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    /// Shows the one of @p window that is to be seen, and hides the others.
    static void settle(const QWidget* window);

    const DialogRank rank_;
    QWidget* card_;
    TouchShield* shield_;
    QPointer<QWidget> focusBefore_;
    bool followsWindowChange_ = false;
    bool backgroundDisabled_ = true;
    bool deleteOnClose_ = false;
};
