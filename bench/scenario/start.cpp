#include <cstdio>
#include <vector>

#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"

namespace {

constexpr int kRuns = 15;
constexpr int kControllerStart = 500;  // milliseconds
/// Until the boot screen has gone and the standby screen has been painted.
constexpr int kUntilStandby = 6000;

const QStringList kPlatform{QStringLiteral("-platform"), QStringLiteral("offscreen")};

QStringList blankArguments() {
    QStringList arguments = kPlatform;
    for (const char* name :
         {"NotoSansCJKkr-Light.otf", "NotoSansCJKkr-Regular.otf", "NotoSansCJKkr-Medium.otf",
          "NotoSansCJKkr-Bold.otf", "NotoSerif-Bold.ttf"})
        arguments.append(DevicePaths::at(QStringLiteral("/zel1/image/img/fonts/")) +
                         QLatin1String(name));
    return arguments;
}

double timeOf(const char* program, const QStringList& arguments) {
    return Program(program, arguments).firstFrame();
}

double memoryOf(const char* program, const QStringList& arguments) {
    Program running(program, arguments);
    return running.runFor(kUntilStandby) ? running.residentMemory() : -1;
}

}  // namespace

bool measureStart() {
    Program controller("zel-controller-sim", {QStringLiteral("--control"), QStringLiteral("0")});
    controller.runFor(kControllerStart);
    const QStringList forBlank = blankArguments();
    std::vector<double> blank;
    std::vector<double> terminal;
    for (int run = 0; run < kRuns; ++run) {
        blank.push_back(timeOf("blank_window", forBlank));
        terminal.push_back(timeOf("terminal_first_frame", kPlatform));
        if (blank.back() < 0 || terminal.back() < 0) {
            std::fprintf(stderr, "no frame was painted\n");
            return false;
        }
    }
    Figures::title("Start to first painted frame");
    Figures::row("blank window", Figures::median(blank), "ms");
    Figures::row("terminal", Figures::median(terminal), "ms");
    Figures::row("ratio", Figures::median(terminal) / Figures::median(blank), "",
                 "wanted: at most 2");

    const double blankMemory = memoryOf("blank_window", forBlank);
    const double terminalMemory = memoryOf("zel-terminal", kPlatform);
    Figures::title("Resident memory, on the standby screen");
    Figures::row("blank window", blankMemory, "MB");
    Figures::row("terminal", terminalMemory, "MB");
    Figures::row("ratio", terminalMemory / blankMemory, "", "wanted: at most 2");
    return blankMemory > 0 && terminalMemory > 0;
}
