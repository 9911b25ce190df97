#pragma once

#include <signal.h>

#include <QProcess>

#include "sim/device_root.h"
#include "tests/support/free_port.h"

/// The real program without a screen, in a device root and with ports of its own. Started by the
/// test, ended with it.
class Program : public QProcess {
 public:
    Program() {
        qputenv("ZEL_LINK_PORT", QByteArray::number(freePort()));
        qputenv("ZEL_REST_PORT", QByteArray::number(restPort));
        qputenv("XDG_RUNTIME_DIR", qgetenv("ZEL_ROOT"));
        setProgram(QStringLiteral(ZEL_BINARY_DIR "/bin/zel-terminal"));
        setArguments({QStringLiteral("-platform"), QStringLiteral("offscreen")});
    }
    ~Program() override {
        kill();
        waitForFinished();
    }
    void signal(int number) { ::kill(static_cast<pid_t>(processId()), number); }

    const DeviceRoot root;
    const quint16 restPort = freePort();
};
