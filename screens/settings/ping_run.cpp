#include "screens/settings/ping_run.h"

#include <QProcessEnvironment>
#include <QRegularExpression>

namespace {

/// Bytes of a line that is read; ping writes shorter ones.
constexpr int kLongestLine = 1024;
/// Milliseconds that ping gets to end.
constexpr int kEndTime = 500;
constexpr int kNumbers = 65536;  // of requests, before they begin anew

int numberIn(const QString& line) {
    static const QRegularExpression form(QStringLiteral("icmp_seq=(\\d{1,6})"));
    return form.match(line).captured(1).toInt();
}

}  // namespace

PingRun::PingRun(QObject* parent) : QObject(parent) {
    ping_.setProgram(QStringLiteral("ping"));
    ping_.setStandardErrorFile(QProcess::nullDevice());
    ping_.setStandardInputFile(QProcess::nullDevice());
    // Its words are those that are looked for, whatever the system speaks.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    ping_.setProcessEnvironment(environment);
    connect(&ping_, &QProcess::readyReadStandardOutput, this, &PingRun::read);
    connect(&ping_, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &PingRun::ended);
    connect(&ping_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            ended();
    });
}

PingRun::~PingRun() {
    ping_.disconnect(this);
    stop();
}

void PingRun::start(const QString& address) {
    stop();
    reset();
    stopped_ = false;
    // Numbers only, one line for each that does not come, each given up after a second.
    ping_.setArguments({QStringLiteral("-n"), QStringLiteral("-O"), QStringLiteral("-W"),
                        QStringLiteral("1"), QStringLiteral("--"), address});
    ping_.start(QIODevice::ReadOnly);
}

void PingRun::reset() {
    rest_.clear();
    received_ = lostCount_ = 0;
    lost_.clear();
    answered_.clear();
    least_ = most_ = sum_ = 0;
}

void PingRun::stop() {
    stopped_ = true;
    if (!isRunning())
        return;
    ping_.terminate();
    if (!ping_.waitForFinished(kEndTime)) {
        ping_.kill();
        ping_.waitForFinished(kEndTime);
    }
}

void PingRun::read() {
    rest_ += ping_.readAllStandardOutput();
    for (int end = rest_.indexOf('\n'); end >= 0; end = rest_.indexOf('\n')) {
        const QByteArray line = rest_.left(end);
        rest_.remove(0, end + 1);
        if (!stopped_)
            take(line.left(kLongestLine));
    }
    if (rest_.size() > kLongestLine)
        rest_.clear();
}

void PingRun::take(const QByteArray& bytes) {
    const QString line = QString::fromLatin1(bytes);
    const int number = numberIn(line) % kNumbers;
    if (number == 0)
        return;
    // Half a round on they are those of other requests.
    const int passed = (number + kNumbers / 2) % kNumbers;
    lost_.remove(passed);
    answered_.remove(passed);
    static const QRegularExpression answer(QStringLiteral("time[=<](\\d{1,9}(\\.\\d{1,6})?) ms"));
    const QRegularExpressionMatch match = answer.match(line);
    if (match.hasMatch() && !answered_.contains(number)) {
        const double time = match.captured(1).toDouble();
        // One that was given up may come after all.
        lostCount_ -= lost_.remove(number) ? 1 : 0;
        answered_.insert(number);
        least_ = received_ == 0 ? time : qMin(least_, time);
        most_ = qMax(most_, time);
        sum_ += time;
        ++received_;
        emit told(number, Outcome::Answer, time);
    } else if (line.startsWith(QLatin1String("no answer yet"))) {
        lose(number, Outcome::Lost);
    } else if (line.startsWith(QLatin1String("From "))) {
        lose(number, Outcome::Unreachable);
    }
}

void PingRun::lose(int number, Outcome outcome) {
    if (lost_.contains(number) || answered_.contains(number))
        return;
    lost_.insert(number);
    ++lostCount_;
    emit told(number, outcome, 0);
}

void PingRun::ended() {
    if (!stopped_)
        emit failed();
    stopped_ = true;
}
