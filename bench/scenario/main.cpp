#include <QApplication>
#include <QLoggingCategory>
#include <cstdio>
#include <cstring>

#include "base/heap.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "sim/device_root.h"

namespace {

struct Scenario {
    const char* name;
    bool (*measure)();
};

constexpr Scenario kScenarios[] = {
    {"start", &measureStart},   {"idle", &measureIdle},         {"screens", &measureScreens},
    {"result", &measureResult}, {"tracking", &measureTracking}, {"standby", &measureStandby},
    {"rest", &measureRest},     {"users", &measureUsers},       {"orders", &measureOrders},
    {"load", &measureLoad},     {"lists", &measureLists},       {"enrol", &measureEnrolments},
    {"day", &measureDay},
};

void setFreePort(const char* variable) {
    qputenv(variable, QByteArray::number(freePort()));
}

}  // namespace

int main(int argc, char** argv) {
    for (const Scenario& scenario : kScenarios) {
        if (argc < 2 || std::strcmp(argv[1], scenario.name) != 0)
            continue;
        // The start makes nearly two hundred links. On the device their targets are short and lie
        // in the link itself; below a long path on a disk each would take a block of its own.
        if (qEnvironmentVariableIsEmpty("TMPDIR"))
            qputenv("TMPDIR", "/dev/shm");
        qputenv("QT_QPA_PLATFORM", "offscreen");
        Heap::giveBackLargeBlocks();
        const DeviceRoot root;
        qputenv("XDG_RUNTIME_DIR", qgetenv("ZEL_ROOT"));
        setFreePort("ZEL_LINK_PORT");
        setFreePort("ZEL_REST_PORT");
        QLoggingCategory::setFilterRules(QStringLiteral("zel.*.info=false"));
        QApplication application(argc, argv);
        return scenario.measure() ? 0 : 1;
    }
    std::fprintf(stderr, "zel-scenario");
    for (const Scenario& scenario : kScenarios)
        std::fprintf(stderr, " | %s", scenario.name);
    std::fprintf(stderr, "\n");
    return 2;
}
