#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QSet>

/// The system's ping at work on one address, once a second until it is stopped. It ends with this
/// object. GUI thread only.
class PingRun : public QObject {
    Q_OBJECT

 public:
    enum class Outcome {
        Answer,
        Lost,
        Unreachable,  ///< the network says that there is no way
    };

    explicit PingRun(QObject* parent);
    ~PingRun() override;

    /// Begins anew. @p address must be a machine's.
    void start(const QString& address);
    void stop();
    /// Forgets what has been counted.
    void reset();
    bool isRunning() const { return ping_.state() != QProcess::NotRunning; }

    int received() const { return received_; }
    int lost() const { return lostCount_; }
    /// Milliseconds; 0 without an answer.
    double least() const { return least_; }
    double mean() const { return received_ == 0 ? 0 : sum_ / received_; }
    double most() const { return most_; }

 signals:
    /// What became of the request number @p number, from 1; @p milliseconds of an answer.
    void told(int number, PingRun::Outcome outcome, double milliseconds);
    /// It has ended without having been stopped.
    void failed();

 private:
    void read();
    void take(const QByteArray& line);
    void lose(int number, Outcome outcome);
    void ended();

    QProcess ping_;
    QByteArray rest_;  // of a line that has not come whole
    bool stopped_ = false;
    int received_ = 0;
    int lostCount_ = 0;
    // The numbers of the latest requests: lines may tell of one twice.
    QSet<int> lost_;
    QSet<int> answered_;
    double least_ = 0;
    double most_ = 0;
    double sum_ = 0;
};
