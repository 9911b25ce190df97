#include <QApplication>
#include <QTcpServer>
#include <cstdio>
#include <cstring>

#include "bench/scenario/scenarios.h"
#include "sim/device_root.h"

namespace {

struct Scenario {
    const char* name;
    bool (*measure)();
};

constexpr Scenario kScenarios[] = {
    {"start", &measureStart},
    {"idle", &measureIdle},
    {"screens", &measureScreens},
};

void setFreePort(const char* variable) {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    qputenv(variable, QByteArray::number(probe.serverPort()));
}

}  // namespace

int main(int argc, char** argv) {
    for (const Scenario& scenario : kScenarios) {
        if (argc != 2 || std::strcmp(argv[1], scenario.name) != 0)
            continue;
        // The start links and unlinks hundreds of files, and the general folder for temporary
        // files may be slow for what others do there.
        qputenv("TMPDIR", ZEL_BINARY_DIR "/bench");
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const DeviceRoot root;
        qputenv("XDG_RUNTIME_DIR", qgetenv("ZEL_ROOT"));
        setFreePort("ZEL_LINK_PORT");
        setFreePort("ZEL_REST_PORT");
        QApplication application(argc, argv);
        return scenario.measure() ? 0 : 1;
    }
    std::fprintf(stderr, "zel-scenario start | idle | screens\n");
    return 2;
}
