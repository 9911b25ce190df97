#pragma once

#include <QScrollArea>

class FingerScroll;

/// Content that the finger scrolls vertically, as FingerScroll says.
class ScrollList : public QScrollArea {
    Q_OBJECT

 public:
    explicit ScrollList(QWidget* parent = nullptr);

    /// The color behind the content.
    void setGround(QRgb color);
    /// The room right of the indicator, in pixels.
    void setIndicatorMargin(int margin);
    /// The keypad covers the lowest @p height pixels of the list: what lies there can be scrolled
    /// up. 0 when the keypad is gone.
    void setCoveredHeight(int height);
    /// Scrolls just as far as it takes to show the row with @p widget, which lies in the list.
    void reveal(const QWidget* widget);
    /// Scrolls to the beginning.
    void rewind();

 private:
    FingerScroll* const finger_;
};
