#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <functional>
#include <optional>

#include "cloud/parameters.h"

/// Commands concerning users that wait on the disk until the device controller can take them: a
/// folder each, named by time stamp, kind and card number. The REST server writes them, the GUI
/// thread takes them; the two meet only on the disk.
///
/// An object writes, and there is one: names are in the order of the writing because each goes on
/// from the one before, and the first from those that wait on the disk.
class CommandFolder {
 public:
    enum class Kind { Add, Delete };
    struct Command {
        QString name;
        Kind kind = Kind::Add;
        QString cardNo;

        QString path() const { return directory() + name; }
    };

    /// The folder that holds the command folders, and pictures and folders that are none.
    static QString directory();

    /// Removes what a writer or a removal that was cut short has left. Only before the writer
    /// begins.
    static void removeUnfinished();

    /// Commands that may wait.
    static constexpr int kMaxWaiting = 10000;

    /// @p now is the clock that the names are taken from.
    explicit CommandFolder(std::function<QDateTime()> now = &QDateTime::currentDateTime);

    /// Writes a command, and returns when a power cut no longer undoes it; false when too many wait
    /// or the disk does not take it. Nothing is left of it then.
    bool writeAdd(const DoReceiveUserData& user, const QByteArray& picture);
    bool writeDelete(const QString& cardNo);

    /// The command that a folder called @p name is, if it is one. Names are in the commands' order.
    static std::optional<Command> named(const QString& name);
    /// The user of an add command, with its picture where the controller takes it from, in the
    /// place of an earlier one. Nothing, with the earlier one still there, when the folder does not
    /// hold a whole command. The folder stays as it is.
    static std::optional<DoReceiveUserData> takeUser(const Command& command);
    /// Whether all that is in @p command can be read just now; what cannot may be whole all the
    /// same.
    static bool isReadable(const Command& command);
    /// Removes a command at one blow. False when it stays on the disk, as a command.
    static bool remove(const Command& command);

 private:
    bool hasRoom();
    /// Empty when the clock has left the century.
    QString newName(Kind kind, const QString& cardNo);

    const std::function<QDateTime()> now_;
    std::optional<qint64> lastStamp_;  // milliseconds
    int written_ = kMaxWaiting;        // since the folders were counted, and those counted
};
