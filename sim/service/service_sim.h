#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>

#include "sim/common/control_port.h"
#include "sim/common/words.h"
#include "sim/service/service_calls.h"
#include "sim/service/terminal_orders.h"

/// A stand-in for the management service: answers the terminal's calls, sends orders to its REST
/// server, offers firmware, and is driven by words.
///
/// Tests and the development program use it alike. Everything runs in the thread that made it; its
/// event loop must run.
class ServiceSim : public QObject, private WordSet {
    Q_OBJECT

 public:
    static constexpr quint16 kPort = 8090;
    static constexpr quint16 kControlPort = 15152;

    /// Listens at once, on the loopback address only; port 0 takes a free one. Check listening().
    ServiceSim(quint16 port, quint16 controlPort, const TerminalAddress& terminal,
               QObject* parent = nullptr);

    /// Whether both ports could be had; errorString() says why not.
    bool listening() const { return port() != 0 && controlPort() != 0; }
    QString errorString() const;
    /// The port that the terminal calls.
    quint16 port() const { return calls_.port(); }
    quint16 controlPort() const { return control_.port(); }

    /// Carries out one line of words, as from the console or the control port, and returns the
    /// answer: possibly several lines, the last of which begins with "ok" or "error". Nothing for
    /// an empty line.
    QString execute(const QString& line) { return words_.execute(line); }

 signals:
    /// See ServiceCalls::called().
    void called(const QString& name, const QJsonObject& body);
    /// The word `quit` was given.
    void quitRequested();
    /// The word `restart` was given.
    void restartRequested();

 private:
    ServiceCalls calls_;
    TerminalOrders orders_;
    WordTable words_;
    ControlPort control_;
};
