#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include "sim/common/words.h"

/// Where the terminal's REST server is.
struct TerminalAddress {
    QString host;
    quint16 port = 0;
};

/// What the management service orders from the terminal: a word for each route of the terminal's
/// REST server. Each waits for the terminal's answer and gives it back.
class TerminalOrders : public WordSet {
 public:
    /// Milliseconds that an order waits for the terminal. Nothing else is done meanwhile; the
    /// terminal's server never waits for the service in turn.
    static constexpr int kPatience = 5000;

    /// Firmware is offered at @p firmwarePort of the manager's host.
    TerminalOrders(const TerminalAddress& terminal, quint16 firmwarePort);

 private:
    void onRoute(const char* word, const char* route, const char* usage);

    QString post(const QString& route, const QByteArray& body) const;
    QString post(const QString& route, const QJsonObject& body) const;
    /// Sends an order and waits for its answer, whose text it returns.
    QString exchange(const QString& route, const QByteArray& body) const;
    QString setTime(const QString& text) const;
    QString addUser(const QString& text) const;
    QString enrolUser(const QString& text) const;
    QString setDevice(const QString& text) const;
    QString updateFirmware(const QString& text) const;

    const TerminalAddress terminal_;
    const quint16 firmwarePort_;
};
