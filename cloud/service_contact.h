#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

/// How the contact with the management service stands, for whoever shows it. GUI thread only.
class ServiceContact : public QObject {
    Q_OBJECT

 public:
    enum class State {
        NotTried,  ///< since the start, or since the settings of the network have changed
        Trying,    ///< for the first time
        Reached,
        Failed,
    };
    enum class Failure {
        None,
        Refused,      ///< nobody there, or nobody who listens
        NoAnswer,     ///< in time
        WrongAnswer,  ///< none that a management service gives
        Result,       ///< a code by which the service declines
    };

    explicit ServiceContact(QObject* parent) : QObject(parent) {}

    State state() const { return state_; }
    /// Since when it has been reached; invalid while it is not.
    QDateTime connectedSince() const;
    /// When it has last answered as it should; invalid when it has not since the start.
    const QDateTime& lastReached() const { return lastReached_; }
    /// Why it is not reached, and when that was found last.
    Failure failure() const { return failure_; }
    const QDateTime& failedAt() const { return failedAt_; }
    /// Of a declining answer: the code, and the service's own words, which may be anything.
    int resultCode() const { return resultCode_; }
    const QString& message() const { return message_; }

    void tried();
    void reached();
    void failed(Failure failure, int resultCode = 0, const QString& message = QString());
    /// It is no longer known whether it can be reached.
    void interrupted();
    /// Another service is the terminal's now.
    void forget();

 signals:
    void changed();

 private:
    State state_ = State::NotTried;
    Failure failure_ = Failure::None;
    int resultCode_ = 0;
    QString message_;
    QDateTime connectedSince_;
    QDateTime lastReached_;
    QDateTime failedAt_;
};
