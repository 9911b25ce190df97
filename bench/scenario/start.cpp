#include <QDir>
#include <QFile>
#include <QFileInfo>
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

/// Until what the last screens have left behind is gone.
constexpr int kSettling = 2000;

const QStringList kPlatform{QStringLiteral("-platform"), QStringLiteral("offscreen")};

QString fontFolder() {
    return DevicePaths::at(QStringLiteral("/zel1/image/img/fonts/"));
}

QStringList blankArguments() {
    QStringList arguments = kPlatform;
    for (const char* name :
         {"NotoSansCJKkr-Light.otf", "NotoSansCJKkr-Regular.otf", "NotoSansCJKkr-Medium.otf",
          "NotoSansCJKkr-Bold.otf", "NotoSerif-Bold.ttf"})
        arguments.append(fontFolder() + QLatin1String(name));
    return arguments;
}

double timeOf(const char* program, const QStringList& arguments) {
    return Program(program, arguments).firstFrame();
}

double memoryOf(const char* program, const QStringList& arguments) {
    Program running(program, arguments);
    return running.runFor(kUntilStandby) ? running.residentMemory() : -1;
}

bool measureFirstFrame(const char* title, const char* wanted) {
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
    Figures::title(title);
    Figures::row("blank window", Figures::median(blank), "ms");
    Figures::row("terminal", Figures::median(terminal), "ms");
    Figures::row("ratio", Figures::median(terminal) / Figures::median(blank), "", wanted);
    return true;
}

bool measureMemory() {
    const double blank = memoryOf("blank_window", blankArguments());
    const double terminal = memoryOf("zel-terminal", kPlatform);
    Figures::title("Resident memory, on the standby screen");
    Figures::row("blank window", blank, "MB");
    Figures::row("terminal", terminal, "MB");
    Figures::row("ratio", terminal / blank, "", "wanted: at most 1.8");

    Program toured("terminal_every_form", kPlatform);
    const bool shown = !toured.lineAfter("every form").isNull() && toured.runFor(kSettling);
    const double every = shown ? toured.residentMemory() : -1;
    Figures::title("The same after every screen has been shown, all of them still built");
    Figures::row("terminal", every, "MB");
    Figures::row("ratio", every / blank, "", "wanted: at most 2.1");
    return blank > 0 && terminal > 0 && every > 0;
}

/// A device has files of one face each; those of Debian hold ten, which every program registers.
bool takeSingleFaces() {
    const QDir singleFaces(QStringLiteral(ZEL_BINARY_DIR "/bench/fonts"));
    const QFileInfoList files = singleFaces.entryInfoList(QDir::Files);
    for (const QFileInfo& file : files) {
        const QString place = fontFolder() + file.fileName();
        if (!QFile::remove(place) || !QFile::link(file.filePath(), place))
            return false;
    }
    return !files.isEmpty();
}

}  // namespace

bool measureStart() {
    Program controller("zel-controller-sim", {QStringLiteral("--control"), QStringLiteral("0")});
    controller.runFor(kControllerStart);
    return measureFirstFrame("Start to first painted frame", "wanted: at most 1.4") &&
           measureMemory() && takeSingleFaces() &&
           measureFirstFrame("The same with fonts of a single face", "wanted: at most 1.8");
}
