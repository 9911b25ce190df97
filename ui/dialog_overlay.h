#pragma once

#include <QPointer>
#include <QWidget>

/// What every dialog stands on: a layer over the whole window it belongs to, with a card in the
/// middle. The layer dims what is behind it and keeps touches and keys away from it.
///
/// There is one dialog at a time: showing one takes the place of any other that is visible in the
/// same top-level window, and one of a screen ends typing. A dialog is hidden, not deleted, when it
/// is done with, and stays hidden when the screen it belongs to goes away and comes back. GUI
/// thread only.
class DialogOverlay : public QWidget {
    Q_OBJECT

 public:
    static constexpr int kCardWidth = 416;

    /// @p parent is the window or screen to cover; it must not be null.
    explicit DialogOverlay(QWidget* parent);
    ~DialogOverlay() override;

    /// The dialog that is visible in @p widget's top-level window, or null. Whoever raises a
    /// screen raises this one afterwards.
    static DialogOverlay* current(const QWidget* widget);

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
    /// Called when another dialog has taken the place of this one.
    virtual void replaced() {}

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    QWidget* card_;
    QPointer<QWidget> focusBefore_;
    bool followsWindowChange_ = false;
    bool backgroundDisabled_ = true;
    bool deleteOnClose_ = false;
};
