#pragma once

#include <QObject>
#include <QThread>
#include <QTimer>
#include <memory>
#include <optional>

#include "cloud/command_queue.h"

class ManagementCommands;
class ManagementHost;

/// Has the command folders carried out, one after the other as soon as the device link is ready for
/// the next. The folders are read and removed in a thread of its own, since a disk that is being
/// written to may keep its users waiting for longer than a finger should. GUI thread.
class CommandCarrier : public QObject {
    Q_OBJECT

 public:
    /// Both outlive the object.
    CommandCarrier(ManagementCommands& commands, ManagementHost& host);
    ~CommandCarrier() override;

    /// Starts to look out for command folders.
    void start();
    /// Takes one pending command folder now, if there is one and the link is ready for it.
    void look();
    /// What was sent over the device link has left.
    void linkDrained();
    /// The controller has answered a command, or has sent what may be such an answer.
    void answered() { ++answers_; }

 private:
    void stepped(const std::optional<CommandQueue::Taken>& taken, int untilDue);

    ManagementCommands& commands_;
    ManagementHost& host_;
    CommandQueue queue_;  // the thread's own while it runs
    QThread thread_;
    std::unique_ptr<QObject> inThread_;
    QTimer timer_;
    std::optional<LinkProgress> sent_;  // with which the command that was taken has been sent
    int answers_ = 0;                   // since the latest step
    bool stepping_ = false;
    bool busy_ = false;  // the latest step has brought a command
};
