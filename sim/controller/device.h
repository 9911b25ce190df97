#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include "link/device_records.h"

class TerminalLink;

/// What all subjects of the simulated controller share: the terminal's connection, the settings
/// record and the folders that stand for the device's storage.
class Device : public QObject {
    Q_OBJECT

 public:
    /// @p dataFolder stands for "/mnt/data".
    Device(TerminalLink& link, const QString& dataFolder, QObject* parent);

    TerminalLink& link() { return link_; }
    /// @p path below the data folder.
    QString dataPath(const QString& path) const;

    const _gui_menu_& settings() const { return settings_; }
    /// Replaces the settings record and sees to it that it is stored. The terminal is not told.
    void setSettings(const _gui_menu_& settings);
    /// Sends the settings record with SettingsChanged.
    void sendSettings();

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
    /// The word `quit` was given: the simulated controller is to end.
    void quitRequested();

 private:
    TerminalLink& link_;
    const QString dataFolder_;
    _gui_menu_ settings_;
};

/// The settings of a terminal fresh from the factory.
_gui_menu_ factorySettings();
