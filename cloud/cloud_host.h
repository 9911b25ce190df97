#pragma once

#include <QVariant>
#include <cstdint>

#include "link/device_records.h"

/// The management commands that the terminal takes over, by the number that names them. Running
/// recognition has no effect there.
namespace host_command {
enum HostCommand {
    kEnrolUser = 4,
    kGetUser = 5,
    kDeleteUser = 6,
    kRunEnrolment = 10,
    kRunRecognition = 11,
    kUpdateFirmware = 12,
    kSetDevice = 14,
    kSetSystem = 15,
    kOpenDoor = 16,
    kSetTime = 18,
};
}

/// What the cloud link needs from the terminal around it. The main window implements it.
///
/// settings(), settingsCurrent() and parsingRestCommand() are called from the thread that serves
/// HTTP as well as from the GUI thread; the others only from the GUI thread. None of them may wait
/// for the GUI thread: it joins the serving thread when the terminal ends.
class CloudHost {
 public:
    /// A copy of the whole settings record. Any thread.
    virtual _gui_menu_ settings() const = 0;
    /// Whether settings() is what the device controller has, which is connected; before it has
    /// sent them, settings() is empty. Any thread.
    virtual bool settingsCurrent() const = 0;
    /// Takes one decoded management command over: a host_command and its record from
    /// cloud/parameters.h. Returns at once, the command is carried out later. Any thread.
    virtual void parsingRestCommand(int command, QVariant parameter) = 0;

    /// Stores whether the management service is reachable.
    virtual void updateRestConnectStatus(bool up) = 0;
    /// Takes note of a finished request of the REST client; @p procIdx holds a ProcIDX.
    virtual void completedRestCommand(QVariant procIdx) = 0;
    /// The controller's latest self-check word, a SelfCheckFault bit per fault.
    virtual std::uint32_t selfCheckWord() const = 0;

 protected:
    ~CloudHost() = default;
};
