#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRegion>
#include <functional>
#include <vector>

class QWidget;

/// Tells when a screen has been painted.
class PaintWatch : public QObject {
 public:
    explicit PaintWatch(const QWidget* screen);
    /// Runs the event loop until the frame is complete; ends the program when it does not come.
    /// Returns the milliseconds from when the watch was made until then. What the event loop finds
    /// to do behind the frame, such as sending what was written meanwhile, nobody waits for.
    double wait() const;
    /// The same, or until the screen has given way to another.
    void waitWhileVisible() const;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void waitUntil(const std::function<bool()>& end) const;

    const QWidget* const screen_;
    QElapsedTimer timer_;
    bool painting_ = false;
    bool painted_ = false;
    double complete_ = -1;  // milliseconds
};

/// Counts the pixels that each frame of a window paints anew.
class PaintMeter : public QObject {
 public:
    explicit PaintMeter(const QWidget* window);
    /// Pixels of each frame since the meter was made.
    std::vector<double> frames();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void endFrame();

    const QWidget* const window_;
    QRegion region_;  // of the present frame
    std::vector<double> frames_;
};

/// Asks for the whole of @p screen to be painted anew and waits for it. Returns the milliseconds
/// that this takes, without anything else.
double repaint(QWidget* screen);
