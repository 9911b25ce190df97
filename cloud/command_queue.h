#pragma once

#include <dirent.h>
#include <QElapsedTimer>
#include <QSet>
#include <QString>
#include <deque>
#include <memory>
#include <vector>

#include "cloud/command_folder.h"
#include "link/link_progress.h"

/// The way of the command folders to the device controller: found in their order, sent one after
/// the other, and removed when they have surely arrived.
///
/// A command that has been sent stays on the disk until its frame has left the process and the
/// connection has stood for some time after. One whose connection ends before that is sent again,
/// with all that were sent behind it: a repeated command does no harm, a lost one does. Each call
/// does a small piece of work only. GUI thread.
class CommandQueue {
 public:
    /// Milliseconds that the connection has to stand after a command before that is removed.
    static constexpr int kSettleTime = 2000;
    /// Milliseconds between looks at the disk that find nothing.
    static constexpr int kIdleInterval = 2000;

    CommandQueue();

    /// Removes what has arrived, and takes what may be lost up again.
    void follow(const LinkProgress& link);
    /// Looks for commands, a piece of the folder at a time, unless some are at hand.
    void look();
    /// The command to send next, null while none has been found.
    const CommandFolder::Command* next() const;
    /// The next command has been sent; @p link is how far the link has come with that.
    void sent(const LinkProgress& link);
    /// The next command is none that could be sent.
    void drop();
    /// Milliseconds until there is something to do.
    int untilDue(const LinkProgress& link) const;

    void setSettleTime(int milliseconds) { settleTime_ = milliseconds; }

 private:
    struct Sent {
        CommandFolder::Command command;
        quint32 connection;
        qint64 position;     // of the link when the command had been accepted
        qint64 leftAt = -1;  // when it had come as far as that, milliseconds
    };
    struct CloseFolder {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    bool beginLook();
    void endLook();
    void consider(const dirent& entry);
    void remove(const CommandFolder::Command& command);

    int settleTime_ = kSettleTime;
    QElapsedTimer clock_;
    std::deque<CommandFolder::Command> waiting_;
    std::deque<Sent> sent_;
    /// Names of commands that lie on the disk, or may still be met with in a look under way, and
    /// have had their turn.
    QSet<QString> taken_;
    std::vector<QString> removed_;  // those of taken_ that the next look will not meet with

    std::unique_ptr<DIR, CloseFolder> folder_;  // while a look is under way
    QString newest_;                            // of the commands that its first reading has found
    bool limited_ = false;                      // it reads for the second time
    std::vector<CommandFolder::Command> found_;
    qint64 changed_ = -1;     // when the folder had changed last as the look began, if that is sure
    qint64 emptySince_ = -1;  // the same of a look that found nothing
    qint64 lookAt_ = 0;       // when the next one is due, milliseconds
    bool busy_ = false;       // the last one found something
};
