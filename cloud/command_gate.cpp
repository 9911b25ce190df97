#include "cloud/command_gate.h"

CommandGate::CommandGate() {
    // Posted events, as the commands are, may follow one another without end; a timer's turn comes
    // after them and after whatever else waits in the loop.
    round_.setSingleShot(true);
    connect(&round_, &QTimer::timeout, this, &CommandGate::open);
}

bool CommandGate::admit(Cost cost) {
    std::unique_lock<std::mutex> lock(lock_);
    if (!opened_.wait_for(lock, kPatience, [this, cost] { return admitted_ + cost <= kMost; }))
        return false;
    if (admitted_ == 0)
        QMetaObject::invokeMethod(
            this, [this] { round_.start(0); }, Qt::QueuedConnection);
    admitted_ += cost;
    return true;
}

void CommandGate::open() {
    const std::lock_guard<std::mutex> lock(lock_);
    admitted_ = 0;
    opened_.notify_one();
}
