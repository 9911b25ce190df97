#pragma once

#include <QBasicTimer>
#include <QWidget>

class QPainter;

/// A touchable area: reports the key click when a finger lands on it and touched() when the finger
/// is lifted inside it. Looks like a row (plain, pressed, disabled, selected); derived widgets draw
/// their own content, forms may also lay child widgets on it.
///
/// A press that arrives while the receivers of touched() are still at work, or before the event
/// loop runs again after them, is ignored. So an action never starts twice.
///
/// The object name is the class name until the form sets another.
class WidgetButton : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected)
    Q_PROPERTY(bool autoRepeat READ autoRepeat WRITE setAutoRepeat)

 public:
    explicit WidgetButton(QWidget* parent = nullptr);

    /// Whether it carries the mark of the chosen one.
    bool isSelected() const { return selected_; }
    void setSelected(bool selected);
    /// Held down, it emits touched() again and again (after 500 ms, then every 100 ms) instead of
    /// once at the release.
    bool autoRepeat() const { return autoRepeat_; }
    void setAutoRepeat(bool repeat) { autoRepeat_ = repeat; }

    /// Whether touches have an effect at all; what is not touchable shows none.
    virtual bool isTouchable() const { return true; }
    /// Whether a finger that lands on it is answered with the key click. On at first.
    void setKeyClick(bool on) { keyClick_ = on; }
    /// Whether a finger is on it now.
    bool isDown() const { return down_; }
    /// Forgets the finger that is on it: its release will not count. For a list that starts to
    /// scroll.
    void cancelTouch();

 signals:
    void touched();

 protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    /// Called when a finger has come down on it or has left it; repaints the whole widget.
    virtual void downChanged() { update(); }

    /// Where the finger came down or was lifted, in the widget's own coordinates.
    QPoint touchPoint() const { return touchPoint_; }
    /// The ground of a row or tile in its present state.
    void drawRow(QPainter* painter, const QRect& box, int radius) const;
    /// The ground of a field in its present state.
    void drawField(QPainter* painter, const QRect& box, bool pressed, bool focused = false) const;

 private:
    void setDown(bool down);
    void act();

    QPoint touchPoint_;
    QBasicTimer repeat_;
    bool pressed_ = false;   // a press was accepted and is not released yet
    bool down_ = false;      // ... and the finger is inside
    bool repeated_ = false;  // ... and has had its effect already
    bool busy_ = false;      // the action runs
    bool selected_ = false;
    bool autoRepeat_ = false;
    bool keyClick_ = true;
};
