#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "cloud/parameters.h"

/// Commands concerning users that wait on the disk until the device controller can take them: a
/// folder each, named by time stamp, kind and card number. The REST server writes them, the GUI
/// thread takes them; the two meet only on the disk, so each has an object of its own.
class CommandFolder {
 public:
    enum class Kind { Add, Delete };
    struct Command {
        QString path;
        Kind kind = Kind::Add;
        QString cardNo;
    };

    /// The folder that holds the command folders, and pictures and folders that are none.
    static QString directory();

    /// Removes what a writer that was cut short has left. Only before the writer begins.
    static void removeUnfinished();

    /// Commands that may wait.
    static constexpr int kMaxWaiting = 10000;

    /// Writes a command; false when too many wait or the disk does not take it. Nothing is left of
    /// it then.
    bool writeAdd(const DoReceiveUserData& user, const QByteArray& picture);
    bool writeDelete(const QString& cardNo);

    /// The oldest command, if there is one.
    static std::optional<Command> oldest();
    /// The user of an add command, with its picture moved into directory(). Nothing when the
    /// folder does not hold a whole command.
    static std::optional<DoReceiveUserData> takeUser(const Command& command);
    static void remove(const Command& command);

 private:
    bool hasRoom();
    QString newName(Kind kind, const QString& cardNo);

    qint64 lastStamp_ = 0;       // ms
    int written_ = kMaxWaiting;  // since the folders were counted, and those counted
};
