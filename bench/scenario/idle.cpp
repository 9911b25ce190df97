#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"

namespace {

// In milliseconds.

/// Until the boot screen has gone and the controller has said what it has to say.
constexpr int kSettle = 10000;
constexpr int kControllerStart = 500;
constexpr int kMinute = 60000;

}  // namespace

bool measureIdle() {
    Program controller("zel-controller-sim", {QStringLiteral("--control"), QStringLiteral("0")});
    controller.runFor(kControllerStart);
    Program terminal("zel-terminal", {QStringLiteral("-platform"), QStringLiteral("offscreen")});
    if (!terminal.runFor(kSettle))
        return false;
    const double before = terminal.cpuTime();
    const bool alive = terminal.runFor(kMinute);
    const double used = terminal.cpuTime() - before;
    Figures::title("Standby screen, one minute, controller connected");
    Figures::row("CPU time", used * 1e3, "ms");
    Figures::row("share of a core", used * 1e5 / kMinute, "%", "wanted: below 0.1");
    return alive;
}
