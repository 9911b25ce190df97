#pragma once

#include <QBasicTimer>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollArea>
#include <memory>

/// Content that the finger scrolls vertically. A touch that moves becomes a scroll and never
/// reaches the row below it; a touch that stays is the row's. The list moves with the finger and
/// stops where it is lifted. While there is more than fits, a thin indicator shows where one is.
class ScrollList : public QScrollArea {
    Q_OBJECT

 public:
    explicit ScrollList(QWidget* parent = nullptr);
    ~ScrollList() override;

    /// The color behind the content.
    void setGround(QRgb color);
    /// The room right of the indicator, in pixels.
    void setIndicatorMargin(int margin);
    /// The keypad covers the lowest @p height pixels of the list: what lies there can be scrolled
    /// up. 0 when the keypad is gone.
    void setCoveredHeight(int height);
    /// Scrolls just as far as it takes to show the row with @p widget, which lies in the list.
    void reveal(const QWidget* widget);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    enum class Touch {
        None,
        Held,       // came down; not shown to the row yet, as it may become a scroll
        Row,        // the row has it
        Scrolling,  // the list has it
    };

    void watch(QWidget* widget);
    bool touchDown(QWidget* target, QMouseEvent* event);
    bool touchMove(const QMouseEvent* event);
    bool touchUp();
    void handOver();
    void endTouch();
    void placeIndicator();

    Touch touch_ = Touch::None;
    QBasicTimer hold_;
    QPointer<QWidget> target_;
    std::unique_ptr<QMouseEvent> press_;
    int startValue_ = 0;
    bool handingOver_ = false;

    QWidget* indicator_;
    int indicatorMargin_;
};
