#include "cloud/command_queue.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>

#include <QFile>
#include <algorithm>
#include <utility>

namespace {

/// Milliseconds between looks while commands come in. Each brings all that have come until then.
constexpr int kBusyInterval = 100;
/// What is done at a time, so that touches need not wait.
constexpr int kEntriesAtOnce = 500;
constexpr int kRemovalsAtOnce = 2;
/// Changes of a folder that are less than this apart may carry the same time.
constexpr qint64 kClockStep = 1000000000;  // nanoseconds

qint64 nanoseconds(const timespec& time) {
    return qint64{time.tv_sec} * 1000000000 + time.tv_nsec;
}

}  // namespace

CommandQueue::CommandQueue() {
    clock_.start();
}

void CommandQueue::follow(const LinkProgress& link) {
    if (link.connection == 0)
        return;
    if (!sent_.empty() && sent_.back().connection != link.connection) {
        for (auto each = sent_.rbegin(); each != sent_.rend(); ++each)
            waiting_.push_front(each->command);
        sent_.clear();
    }
    const qint64 now = clock_.elapsed();
    for (auto each = sent_.rbegin(); each != sent_.rend() && each->leftAt < 0; ++each) {
        if (each->position <= link.left)
            each->leftAt = now;
    }
    // In their order, so that what would be repeated after a sudden end has its last word still.
    for (int i = 0; i < kRemovalsAtOnce && !sent_.empty(); ++i) {
        const Sent& first = sent_.front();
        if (first.leftAt < 0 || now - first.leftAt < settleTime_)
            break;
        remove(first.command);
        sent_.pop_front();
    }
}

void CommandQueue::look() {
    if (!waiting_.empty() || (!folder_ && !beginLook()))
        return;
    for (int i = 0; i < kEntriesAtOnce; ++i) {
        if (const dirent* entry = ::readdir(folder_.get())) {
            consider(*entry);
        } else if (limited_ || newest_.isEmpty()) {
            endLook();
            return;
        } else {
            // One that was written while the folder was being read may have been missed, and a
            // later one found. All before the newest one are there by now.
            limited_ = true;
            ::rewinddir(folder_.get());
        }
    }
}

bool CommandQueue::beginLook() {
    if (busy_ && clock_.elapsed() < lookAt_)
        return false;
    const QByteArray path = QFile::encodeName(CommandFolder::directory());
    struct stat status {};
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (::stat(path.constData(), &status) == 0) {
        const qint64 changed = nanoseconds(status.st_mtim);
        const qint64 age = nanoseconds(now) - changed;
        changed_ = age > kClockStep ? changed : -1;
        // With thousands of pictures in it the folder is not read again for nothing.
        if (changed != emptySince_)
            folder_.reset(::opendir(path.constData()));
    }
    newest_.clear();
    limited_ = false;
    if (!folder_) {
        busy_ = false;
        lookAt_ = clock_.elapsed() + kIdleInterval;
    }
    return folder_ != nullptr;
}

void CommandQueue::endLook() {
    folder_.reset();
    for (const QString& name : std::exchange(removed_, {}))
        taken_.remove(name);
    std::sort(found_.begin(), found_.end(),
              [](const auto& one, const auto& other) { return one.name < other.name; });
    waiting_.assign(found_.begin(), found_.end());
    found_.clear();
    busy_ = !waiting_.empty();
    emptySince_ = busy_ ? -1 : changed_;
    lookAt_ = clock_.elapsed() + (busy_ ? kBusyInterval : kIdleInterval);
}

void CommandQueue::consider(const dirent& entry) {
    if (entry.d_type != DT_DIR && entry.d_type != DT_UNKNOWN)
        return;
    const auto command = CommandFolder::named(QString::fromLatin1(entry.d_name));
    if (!command || taken_.contains(command->name))
        return;
    struct stat status {};
    // A link is no command: what it points to belongs to somebody else.
    if (entry.d_type == DT_UNKNOWN &&
        (::fstatat(::dirfd(folder_.get()), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
         !S_ISDIR(status.st_mode)))
        return;
    if (!limited_)
        newest_ = std::max(newest_, command->name);
    else if (command->name <= newest_)
        found_.push_back(*command);
}

const CommandFolder::Command* CommandQueue::next() const {
    return waiting_.empty() ? nullptr : &waiting_.front();
}

void CommandQueue::sent(const LinkProgress& link) {
    taken_.insert(waiting_.front().name);
    sent_.push_back({waiting_.front(), link.connection, link.accepted});
    waiting_.pop_front();
}

void CommandQueue::drop() {
    taken_.insert(waiting_.front().name);
    remove(waiting_.front());
    waiting_.pop_front();
}

void CommandQueue::remove(const CommandFolder::Command& command) {
    // One that stays on the disk stays in taken_ too and is not carried out again.
    if (!CommandFolder::remove(command))
        return;
    if (folder_)
        removed_.push_back(command.name);
    else
        taken_.remove(command.name);
}

int CommandQueue::untilDue(const LinkProgress& link) const {
    if (link.connection == 0)
        return kIdleInterval;
    const qint64 now = clock_.elapsed();
    qint64 due = now + kIdleInterval;
    if (link.idle())
        due = folder_ || !waiting_.empty() ? now : std::min(due, lookAt_);
    if (!sent_.empty() && sent_.front().leftAt >= 0)
        due = std::min(due, sent_.front().leftAt + settleTime_);
    return static_cast<int>(std::max<qint64>(due - now, 0));
}
