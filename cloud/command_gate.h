#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <mutex>

/// Keeps what clients order within what the GUI thread gets done: admits what it carries out in a
/// few milliseconds, and as much again once its event loop has come round. Without that, somebody
/// who orders faster than the terminal acts would fill its memory and keep it from everything else.
class CommandGate : public QObject {
    Q_OBJECT

 public:
    /// What a command costs: hardly more than its frame, or changes of screens and records.
    enum Cost { kLight = 1, kHeavy = 256 };

    /// In the GUI thread, which keeps it until no other thread asks any more.
    CommandGate();

    /// Waits a moment until there is room for a command of @p cost; false when there is still none.
    /// Any thread but the GUI thread.
    bool admit(Cost cost);

 private:
    static constexpr int kMost = 1024;
    static constexpr std::chrono::milliseconds kPatience{100};

    void open();

    QTimer round_;
    std::mutex lock_;
    std::condition_variable opened_;
    int admitted_ = 0;
};
