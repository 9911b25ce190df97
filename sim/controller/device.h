#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

#include "link/device_records.h"
#include "sim/controller/log_store.h"
#include "sim/controller/user_store.h"

class TerminalLink;

/// What all subjects of the simulated controller share: the terminal's connection, the settings
/// record, the clock, the users and the logs.
class Device : public QObject {
    Q_OBJECT

 public:
    /// @p dataFolder stands for "/mnt/data".
    Device(TerminalLink& link, const QString& dataFolder, QObject* parent);

    TerminalLink& link() { return link_; }
    /// @p path below the data folder.
    QString dataPath(const QString& path) const { return dataFolder_ + QLatin1Char('/') + path; }
    UserStore& users() { return users_; }
    /// To be called when users have been stored or removed: the settings record counts them.
    void usersChanged();
    /// Tells the management service, by way of the terminal, of a user.
    void reportUser(const _gui_user_& user);
    LogStore& logs() { return logs_; }
    /// Empties it; meals that were counted are counted no more.
    void removeLogs();

    /// Who gets the next card that is held to the reader instead of the door; an empty function
    /// ends that.
    using CardTaker = std::function<void(const QString& number)>;
    void setCardTaker(const CardTaker& taker) { cardTaker_ = taker; }
    /// Gives a card to whoever waits for one, once. False when nobody does.
    bool giveCard(const QString& number);

    /// The same for faces before the running camera: nobody's number for somebody who is not known.
    void setFaceTaker(const CardTaker& taker) { faceTaker_ = taker; }
    bool giveFace(const QString& number);

    /// Whether a card that was read for an enrolment waits for ChangeUser to be registered; the
    /// frame changes nobody's record then.
    bool registersCard() const { return registersCard_; }
    void setRegistersCard(bool registers) { registersCard_ = registers; }

    const _gui_menu_& settings() const { return settings_; }
    /// Replaces the settings record and sees to it that it is stored. The terminal is not told.
    void setSettings(const _gui_menu_& settings);

    /// The status number in force: forced by hand, or decided from the periods.
    int status() const;
    std::optional<int> forcedStatus() const { return forcedStatus_; }
    void forceStatus(std::optional<int> status);
    /// Whether the site is armed.
    bool armed() const { return armed_; }
    void setArmed(bool armed);

    /// The controller's own clock: the machine's, moved by setTime().
    QDateTime now() const { return QDateTime::currentDateTime().addMSecs(clockOffset_); }
    void setTime(const QDateTime& time);
    /// Milliseconds by which the controller's clock is ahead of the machine's.
    qint64 clockOffset() const { return clockOffset_; }
    void setClockOffset(qint64 milliseconds);

    /// Whether the terminal's program is started again when it ends. The controller ends it only
    /// then: a terminal that a test holds would be gone for good.
    bool supervises() const { return supervises_; }
    void setSupervises(bool supervises) { supervises_ = supervises; }

    void send(quint16 command, quint8 p1 = 0, quint8 p2 = 0, const QByteArray& payload = {});
    template <typename T>
    void sendRecord(quint16 command, quint8 p1, quint8 p2, const T& record) {
        send(command, p1, p2, QByteArray(reinterpret_cast<const char*>(&record), sizeof record));
    }

    /// To be called by a subject whose part of the state has changed.
    void stateChanged() { emit changed(); }

 signals:
    void changed();
    void settingsChanged();
    void timeChanged();
    /// What a status report says has changed, apart from what the time of day does to it.
    void statusChanged();
    /// The firmware in @p file was accepted for installation.
    void firmwareAccepted(const QString& file);
    /// The word `quit` was given: the simulated controller is to end.
    void quitRequested();
    /// The word `restart` was given: it is to start anew.
    void restartRequested();

 private:
    TerminalLink& link_;
    UserStore users_;
    LogStore logs_;
    _gui_menu_ settings_;
    qint64 clockOffset_ = 0;
    std::optional<int> forcedStatus_;
    bool armed_ = false;
    bool supervises_ = false;
    CardTaker cardTaker_;
    CardTaker faceTaker_;
    bool registersCard_ = false;
    const QString dataFolder_;
};

/// The settings of a terminal fresh from the factory.
_gui_menu_ factorySettings();
/// @p time in the form that records hold; years before 2000 do not exist.
ClockTime clockTime(const QDateTime& time);

/// An event of @p user at @p time, with what the user's record says of it.
GUI_LOGDATA eventOf(const _gui_user_& user, const QDateTime& time);
