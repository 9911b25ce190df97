#include "bench/scenario/program.h"

#include <malloc.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTcpServer>
#include <QTimer>

namespace {

constexpr int kPatience = 10000;  // milliseconds

}  // namespace

double clockTime(clockid_t clock) {
    timespec now{};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

Program::Program(const char* name, const QStringList& arguments) {
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardErrorFile(QProcess::nullDevice());
    started_ = clockTime(CLOCK_MONOTONIC);
    process_.start(QStringLiteral(ZEL_BINARY_DIR "/bin/") + QLatin1String(name), arguments);
    process_.waitForStarted();
}

Program::~Program() {
    process_.terminate();
    if (!process_.waitForFinished(kPatience))
        process_.kill();
}

double Program::firstFrame() {
    const QByteArray time = lineAfter("first frame ");
    return time.isNull() ? -1 : static_cast<double>(time.toLongLong()) / 1e6 - started_;
}

QByteArray Program::lineAfter(const QByteArray& mark) {
    const QDeadlineTimer deadline(kPatience);
    while (!deadline.hasExpired()) {
        while (process_.canReadLine()) {
            const QByteArray line = process_.readLine().trimmed();
            if (line.startsWith(mark))
                return line.mid(mark.size());
        }
        if (!process_.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            break;
    }
    return {};
}

bool Program::runFor(int milliseconds) {
    return !process_.waitForFinished(milliseconds) && process_.state() == QProcess::Running;
}

double Program::residentMemory() const {
    return ::residentMemory(QString::number(process_.processId()));
}

double Program::cpuTime() const {
    clockid_t clock{};
    if (::clock_getcpuclockid(static_cast<pid_t>(process_.processId()), &clock) != 0)
        return -1;
    return clockTime(clock) / 1e3;
}

double Program::mainThreadTime() const {
    // The first field, in nanoseconds.
    QFile statistics(QStringLiteral("/proc/%1/schedstat").arg(process_.processId()));
    if (!statistics.open(QIODevice::ReadOnly))
        return -1;
    return statistics.readAll().split(' ').first().toDouble() / 1e6;
}

int Program::countOf(const char* folder) const {
    const QString path =
        QStringLiteral("/proc/%1/%2").arg(process_.processId()).arg(QLatin1String(folder));
    return QDir(path).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

double residentMemory(const QString& pid) {
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray field = "VmRSS:";
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (line.startsWith(field))
            return line.mid(field.size()).trimmed().split(' ').first().toDouble() / 1024;
    }
    return -1;
}

double allocatedMemory() {
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

quint16 freePort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

void runEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}
