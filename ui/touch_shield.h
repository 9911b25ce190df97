#pragma once

#include <QTimer>
#include <QWidget>

/// Keeps a finger that was meant for what has been there before from setting off what has just
/// come up in its place. Lies invisibly over its parent for a moment. GUI thread only.
class TouchShield : public QWidget {
    Q_OBJECT

 public:
    explicit TouchShield(QWidget* parent);

    /// Something new has come up: what is down on the parent's buttons does not count any more,
    /// and no touch that begins within the next 300 ms does.
    void raiseShield();
    /// Another time, for tests that touch whatever comes up at once (0) or must not be slower than
    /// it.
    static void setTime(int ms);

 private:
    QTimer timer_;
};
