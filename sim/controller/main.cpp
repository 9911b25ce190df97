#include <QApplication>
#include <QCommandLineParser>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "base/device_paths.h"
#include "sim/common/console.h"
#include "sim/common/relaunch.h"
#include "sim/controller/controller_sim.h"
#include "sim/controller/panel.h"

namespace {

constexpr char kPanelOption[] = "--panel";

/// A panel needs a display, so only with one is this a program with windows.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char* argv[]) {
    const bool panel = std::any_of(argv + 1, argv + argc, [](const char* argument) {
        return qstrcmp(argument, kPanelOption) == 0;
    });
    if (!panel)
        return std::make_unique<QCoreApplication>(argc, argv);
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

/// The program but for its end: gives the event loop's status.
int runController(int argc, char* argv[]) {
    const Console console;
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Stands in for the device controller. Reads words from standard input and "
                       "from the control port; 'help' lists them."));
    arguments.addHelpOption();
    const QCommandLineOption control(
        QStringLiteral("control"), QStringLiteral("TCP port for words, on 127.0.0.1."),
        QStringLiteral("port"), QString::number(ControllerSim::kControlPort));
    const QCommandLineOption withPanel(
        QLatin1String(kPanelOption).mid(2),
        QStringLiteral("Open a window of buttons; closing it leaves the controller running."));
    const QCommandLineOption supervise(
        QStringLiteral("supervise"),
        QStringLiteral("The terminal's program is started again when the controller ends it."));
    arguments.addOption(control);
    arguments.addOption(supervise);
    arguments.addOption(withPanel);
    arguments.process(*application);
    bool ok = false;
    const quint16 controlPort = arguments.value(control).toUShort(&ok);
    if (!ok) {
        std::fputs("--control takes a port number\n", stderr);
        return 2;
    }

    ControllerSim controller(DevicePaths::linkPort(), controlPort,
                             DevicePaths::at(QStringLiteral("/mnt/data")));
    if (!controller.listening())
        return 1;
    controller.setSupervises(arguments.isSet(supervise));
    std::printf("waiting for the terminal on 127.0.0.1:%d, for words here and on 127.0.0.1:%d\n",
                controller.port(), controller.controlPort());
    std::fflush(stdout);
    QObject::connect(&controller, &ControllerSim::quitRequested, application.get(),
                     &QCoreApplication::quit);
    QObject::connect(&controller, &ControllerSim::restartRequested, application.get(),
                     [] { QCoreApplication::exit(Relaunch::kStatus); });
    console.read([&controller](const QString& line) { return controller.execute(line); },
                 &controller);

    std::unique_ptr<Panel> panel;
    if (arguments.isSet(withPanel)) {
        panel = std::make_unique<Panel>(controller);
        panel->show();
    }
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char* argv[]) {
    const Relaunch relaunch(argc, argv);
    return relaunch.finish(runController(argc, argv));
}
