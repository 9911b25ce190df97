#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QObject>
#include <QPointer>
#include <QVector>
#include <memory>

class QAbstractScrollArea;
class QWidget;

/// Has the finger scroll an area vertically. The content follows the finger; thrown, it goes on,
/// slows down and stops, at the latest with the next touch, which does nothing else. A touch that
/// hardly moves is that of whatever lies below it, which sees it when the finger has rested for a
/// moment or is lifted; should it move on then, the press is taken back. Where everything fits,
/// touches go through at once.
///
/// While there is more than fits, a thin indicator at the right edge shows where one is. Nothing
/// runs while nothing moves. GUI thread only.
class FingerScroll : public QObject {
    Q_OBJECT

 public:
    /// @p area owns the object. What it shows may come and go.
    explicit FingerScroll(QAbstractScrollArea* area);
    ~FingerScroll() override;

    /// The room right of the indicator, in pixels.
    void setIndicatorMargin(int margin);
    /// The lowest @p height pixels of the area are covered by something else.
    void setCoveredHeight(int height);
    /// Ends whatever goes on, for a position that is set by the program.
    void stop();
    /// The finger that is down, if there is one, sets nothing off any more, whatever it lies on.
    void cancelTouch();

 signals:
    /// The touch that something below has seen is not its own any more.
    void touchTaken();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

 private:
    enum class Touch {
        None,
        Held,       // came down; not shown to what is below yet, as it may become a scroll
        Below,      // that has it
        Scrolling,  // the list has it
        Stopping,   // came down on what was moving
    };
    struct Sample {
        ulong time;  // of the event, in milliseconds
        int y;
    };

    void watch(QWidget* widget);
    bool touchDown(QWidget* target, QMouseEvent* event);
    bool touchMove(const QMouseEvent* event);
    bool touchUp(const QMouseEvent* event);
    void beginScroll();
    void takeBack();
    void handOver();
    void endTouch();
    /// Pixels a second at which the finger has left, downwards.
    double speedAt(ulong time) const;
    void throwContent(double speed);
    void moveThrown();
    void placeIndicator();

    QAbstractScrollArea* const area_;
    QWidget* const indicator_;
    int indicatorMargin_;
    int covered_ = 0;

    Touch touch_ = Touch::None;
    QBasicTimer hold_;
    QPointer<QWidget> target_;
    std::unique_ptr<QMouseEvent> press_;
    QVector<Sample> samples_;
    int startValue_ = 0;
    bool handingOver_ = false;

    QBasicTimer frames_;  // runs while the content goes on by itself
    QElapsedTimer thrown_;
    double speed_ = 0;  // at which it began, in pixels a second
};
