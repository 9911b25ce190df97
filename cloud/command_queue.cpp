#include "cloud/command_queue.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

#include <QFile>
#include <algorithm>
#include <memory>

#include "cloud/cloud_log.h"

namespace {

/// Milliseconds between looks while commands come in. Each brings all that have come until then.
constexpr int kBusyInterval = 100;
/// Removals in a step, which must not keep those waiting that come behind.
constexpr int kRemovalsAtOnce = 4;
/// Changes of a folder that are less than this apart may carry the same time.
constexpr qint64 kClockStep = 1000000000;  // nanoseconds

qint64 nanoseconds(const timespec& time) {
    return qint64{time.tv_sec} * 1000000000 + time.tv_nsec;
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// A link is none: what it points to belongs to somebody else.
bool isFolder(DIR* parent, const dirent& entry) {
    struct stat status {};
    return entry.d_type == DT_DIR ||
           (entry.d_type == DT_UNKNOWN &&
            ::fstatat(::dirfd(parent), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(status.st_mode));
}

}  // namespace

CommandQueue::CommandQueue() {
    clock_.start();
}

std::optional<CommandQueue::Taken> CommandQueue::step(const LinkProgress& link, int answers) {
    removeKept();
    follow(link, answers);
    // Only then the one before is on its way, and there is room for the next.
    if (!link.idle() || clock_.elapsed() < retryAt_)
        return std::nullopt;
    if (waiting_.empty())
        look();
    while (!waiting_.empty()) {
        const CommandFolder::Command& command = waiting_.front();
        if (command.kind == CommandFolder::Kind::Delete)
            return Taken{command, {}};
        if (const auto user = CommandFolder::takeUser(command))
            return Taken{command, *user};
        if (!CommandFolder::isReadable(command)) {
            // It was answered with success: a moment without memory or descriptors is not its end.
            retryAt_ = clock_.elapsed() + kIdleInterval;
            return std::nullopt;
        }
        qCWarning(cloudLog, "%s holds no user", qUtf8Printable(command.path()));
        taken_.insert(command.name);
        remove(command);
        waiting_.pop_front();
    }
    return std::nullopt;
}

void CommandQueue::follow(const LinkProgress& link, int answers) {
    if (link.connection == 0)
        return;
    if (!sent_.empty() && sent_.front().connection != link.connection) {
        for (auto each = sent_.rbegin(); each != sent_.rend(); ++each)
            waiting_.push_front(each->command);
        sent_.clear();
        answered_ = 0;
    }
    // What else makes the controller speak may count for one of them, but not for those to come.
    answered_ = std::min(answered_ + static_cast<std::size_t>(answers), sent_.size());
    const qint64 now = clock_.elapsed();
    for (auto each = sent_.rbegin(); each != sent_.rend() && each->leftAt < 0; ++each) {
        if (each->position <= link.left)
            each->leftAt = now;
    }
    // In their order, so that what would be repeated after a sudden end has its last word still.
    for (int i = 0; i < kRemovalsAtOnce && !sent_.empty(); ++i) {
        if (sent_.front().leftAt < 0 || now < removalDue())
            break;
        remove(sent_.front().command);
        sent_.pop_front();
        answered_ -= std::min<std::size_t>(answered_, 1);
    }
}

/// When the first of those whose frame has left may go.
qint64 CommandQueue::removalDue() const {
    return sent_.front().leftAt + (answered_ > 0 ? settleTime_ : kAnswerTime);
}

void CommandQueue::remove(const CommandFolder::Command& command) {
    const bool behind = std::any_of(kept_.begin(), kept_.end(), [&command](const auto& each) {
        return each.cardNo == command.cardNo;
    });
    // One that stays on the disk stays in taken_ too and is not carried out again.
    if (!behind && CommandFolder::remove(command)) {
        taken_.remove(command.name);
        return;
    }
    if (!behind)
        qCWarning(cloudLog, "%s cannot be removed", qUtf8Printable(command.path()));
    if (kept_.empty())
        keptDue_ = clock_.elapsed() + kIdleInterval;
    kept_.push_back(command);
}

void CommandQueue::removeKept() {
    if (kept_.empty() || clock_.elapsed() < keptDue_)
        return;
    QSet<QString> users;
    const auto stays = [this, &users](const CommandFolder::Command& each) {
        if (users.contains(each.cardNo) || !CommandFolder::remove(each)) {
            users.insert(each.cardNo);
            return true;
        }
        taken_.remove(each.name);
        return false;
    };
    kept_.erase(std::stable_partition(kept_.begin(), kept_.end(), stays), kept_.end());
    keptDue_ = clock_.elapsed() + kIdleInterval;
}

void CommandQueue::look() {
    if (busy_ && clock_.elapsed() < lookAt_)
        return;
    struct stat status {};
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const bool there =
        ::stat(QFile::encodeName(CommandFolder::directory()).constData(), &status) == 0;
    const qint64 changed = nanoseconds(status.st_mtim);
    // With thousands of pictures in it the folder is not read again for nothing.
    if (there && changed != emptySince_) {
        const auto found = findWaiting();
        if (found)
            waiting_.assign(found->begin(), found->end());
        const bool sure = found && nanoseconds(now) - changed > kClockStep;
        emptySince_ = waiting_.empty() && sure ? changed : -1;
    }
    busy_ = !waiting_.empty();
    lookAt_ = clock_.elapsed() + (busy_ ? kBusyInterval : kIdleInterval);
}

std::optional<std::vector<CommandFolder::Command>> CommandQueue::findWaiting() const {
    std::vector<CommandFolder::Command> found;
    const QByteArray path = QFile::encodeName(CommandFolder::directory());
    const std::unique_ptr<DIR, CloseFolder> folder(::opendir(path.constData()));
    if (!folder)
        return std::nullopt;
    const auto readAll = [&](const QString& newest) {
        found.clear();
        while (const dirent* entry = ::readdir(folder.get())) {
            const auto command = CommandFolder::named(QString::fromLatin1(entry->d_name));
            if (command && !taken_.contains(command->name) && isFolder(folder.get(), *entry) &&
                (newest.isEmpty() || command->name <= newest))
                found.push_back(*command);
        }
        std::sort(found.begin(), found.end(),
                  [](const auto& one, const auto& other) { return one.name < other.name; });
    };
    readAll({});
    if (!found.empty()) {
        // One that was written while the folder was being read may have been missed, and a later
        // one found. All before the latest one are there by now.
        const QString newest = found.back().name;
        ::rewinddir(folder.get());
        readAll(newest);
    }
    return found;
}

void CommandQueue::sent(const LinkProgress& link) {
    taken_.insert(waiting_.front().name);
    sent_.push_back({waiting_.front(), link.connection, link.accepted});
    waiting_.pop_front();
}

int CommandQueue::untilDue(const LinkProgress& link) const {
    const qint64 now = clock_.elapsed();
    qint64 due = now + kIdleInterval;
    if (link.idle())
        due = waiting_.empty() ? std::min(due, lookAt_) : std::max(now, retryAt_);
    if (link.connection != 0 && !sent_.empty() && sent_.front().leftAt >= 0)
        due = std::min(due, removalDue());
    return static_cast<int>(std::max<qint64>(due - now, 0));
}
