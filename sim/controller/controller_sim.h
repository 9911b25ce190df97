#pragma once

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

#include "sim/common/control_port.h"
#include "sim/common/words.h"
#include "sim/controller/device.h"
#include "sim/controller/subject.h"
#include "sim/controller/terminal_link.h"
#include "sim/controller/trouble.h"

/// A stand-in for the device controller: answers the terminal as the real one does, keeps users,
/// settings and logs of its own, and is driven by words.
///
/// Tests and the development program use it alike. Everything runs in the thread that made it; its
/// event loop must run. State lives below the data folder and survives a restart.
class ControllerSim : public QObject {
    Q_OBJECT

 public:
    static constexpr quint16 kControlPort = 15151;

    /// Listens at once, on the loopback address only; port 0 takes a free one. @p dataFolder
    /// stands for "/mnt/data" and is made when missing. Check listening().
    ControllerSim(quint16 linkPort, quint16 controlPort, const QString& dataFolder,
                  QObject* parent = nullptr);
    ~ControllerSim() override;

    /// Whether both ports could be had; errorString() says why not.
    bool listening() const { return port() != 0 && controlPort() != 0; }
    QString errorString() const;
    /// The port that the terminal connects to.
    quint16 port() const { return link_.port(); }
    quint16 controlPort() const { return control_.port(); }
    bool terminalConnected() const { return link_.connected(); }

    /// Carries out one line of words, as from the console or the control port, and returns the
    /// answer: possibly several lines, the last of which begins with "ok" or "error". Nothing for
    /// an empty line.
    QString execute(const QString& line) { return words_.execute(line); }

    /// What the terminal was told last.
    const _gui_menu_& settings() const { return device_.settings(); }
    /// The controller's clock.
    QDateTime now() const { return device_.now(); }
    /// Says that the terminal's program is started again whenever it ends, so that an upgrade and a
    /// reboot may end it.
    void setSupervises(bool supervises) { device_.setSupervises(supervises); }

 signals:
    /// A frame from the terminal, before it is answered.
    void frameReceived(quint16 code, quint8 p1, quint8 p2, const QByteArray& payload);
    /// Settings, clock or anything else that words show may have changed.
    void changed();
    /// The word `quit` was given.
    void quitRequested();
    /// The word `restart` was given.
    void restartRequested();

 private:
    void handleFrame(const Request& request);
    void carryOut(const Request& request);
    QString statePath() const;
    void loadState();
    void storeState();

    TerminalLink link_;
    ControlPort control_;
    Device device_;
    Trouble trouble_;
    std::vector<std::unique_ptr<Subject>> subjects_;
    QHash<quint16, QVector<Subject::RequestHandler>> requests_;
    WordTable words_;
    bool storePending_ = false;
};
