#pragma once

#include <QElapsedTimer>
#include <QSet>
#include <QString>
#include <deque>
#include <optional>
#include <vector>

#include "cloud/command_folder.h"
#include "link/link_progress.h"

/// The way of the command folders to the device controller: found in their order, sent one after
/// the other, and removed when they have surely arrived.
///
/// A command that has been sent stays on the disk until the controller has answered it and the
/// connection has stood for some time after its frame: what has left the process may lie unread at
/// the other end. One whose connection ends before that is sent again, with all that were sent
/// behind it: a repeated command does no harm, a lost one does. One that cannot be removed keeps
/// the later ones of its user on the disk, or the next process would repeat it without them. In
/// one thread at a time, which waits for the disk.
class CommandQueue {
 public:
    /// Milliseconds that the connection has to stand after a command before that is removed.
    static constexpr int kSettleTime = 2000;
    /// Milliseconds after which a controller that does not answer counts as having answered.
    static constexpr int kAnswerTime = 60000;
    /// Milliseconds between looks at the disk that find nothing, and between attempts to remove
    /// what could not be removed.
    static constexpr int kIdleInterval = 2000;

    struct Taken {
        CommandFolder::Command command;
        DoReceiveUserData user;  // of an add command
    };

    CommandQueue();

    /// Removes what has arrived, takes what may be lost up again, and returns the command that is
    /// to be sent now, if the link is ready for one: the same one until sent(). @p answers have
    /// come since the last call; the controller answers in the order of the commands.
    std::optional<Taken> step(const LinkProgress& link, int answers);
    /// The command that step() has returned has been sent; @p link is how far the link has come
    /// with that.
    void sent(const LinkProgress& link);
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

    void follow(const LinkProgress& link, int answers);
    qint64 removalDue() const;
    void look();
    /// Nothing when the folder cannot be read.
    std::optional<std::vector<CommandFolder::Command>> findWaiting() const;
    void remove(const CommandFolder::Command& command);
    void removeKept();

    int settleTime_ = kSettleTime;
    QElapsedTimer clock_;
    std::deque<CommandFolder::Command> waiting_;
    std::deque<Sent> sent_;
    std::size_t answered_ = 0;  // of sent_, from its front
    /// Those that have arrived and could not be removed, and later ones of the same users.
    std::vector<CommandFolder::Command> kept_;
    qint64 keptDue_ = 0;  // when the next attempt to remove them is due, milliseconds
    /// Names of commands that lie on the disk and have had their turn.
    QSet<QString> taken_;
    qint64 lookAt_ = 0;       // when the next look is due, milliseconds
    qint64 retryAt_ = 0;      // when one that could not be read may be by then
    bool busy_ = false;       // the last one found something
    qint64 emptySince_ = -1;  // when the folder had changed last as one found nothing, if sure
};
