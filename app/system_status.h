#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <cstdint>
#include <functional>

#include "link/record_values.h"

struct _gui_menu_;

/// The two kinds of state that the device controller reports unasked: the operating status and the
/// result of its hardware self-check, which also paces the contact with the management service.
/// GUI thread only.
class SystemStatus : public QObject {
    Q_OBJECT

 public:
    /// Milliseconds between attempts to reach the management service.
    static constexpr int kRetryInterval = 5000;

    /// @p settings gives the settings in force, @p serviceReachable the state of the link to the
    /// management service.
    SystemStatus(std::function<_gui_menu_()> settings, std::function<bool()> serviceReachable,
                 QObject* parent);

    /// Takes a status report. @p status 1 to 4 is an operating mode, in the numbering that the
    /// settings choose; anything else is access only.
    void setStatus(int status);
    int status() const { return status_; }
    void setWorkMode(WorkMode mode) { workMode_ = mode; }
    WorkMode workMode() const { return workMode_; }

    /// Takes a self-check word; it is evaluated on the next turn of the event loop.
    void setSelfCheck(std::uint32_t word);
    std::uint32_t selfCheck() const { return selfCheck_; }
    /// Shows or takes back the faults and, when the management service is in use, looks after the
    /// contact with it; after that only the contact, every kRetryInterval until it is reachable.
    void evaluateSelfCheck();

    /// Script keys of the faults in @p word, touch panel first, tamper last.
    static QStringList faultKeys(std::uint32_t word);

 signals:
    /// The faults now present that have a text, by script key; none when there is none to show.
    void faultsChanged(const QStringList& keys);
    /// The management service is reachable: check the connection, offer what it has not seen.
    void connectionCheckWanted();
    /// The management service is not reachable: try to connect.
    void connectWanted();

 private:
    void seekService();

    const std::function<_gui_menu_()> settings_;
    const std::function<bool()> serviceReachable_;
    QTimer selfCheckTimer_;
    int status_ = 0;
    WorkMode workMode_ = WorkMode::AccessOnly;
    std::uint32_t selfCheck_ = 0;
    bool selfCheckNew_ = false;  // not evaluated yet
};
