#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QSocketNotifier>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "base/device_paths.h"
#include "sim/controller/controller_sim.h"
#include "sim/controller/line_buffer.h"
#include "sim/controller/panel.h"

namespace {

/// Feeds the console's lines to the simulated controller. The end of the input is not the end of
/// the program, which may run in the background.
void readConsole(ControllerSim& controller) {
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &controller);
    auto lines = std::make_shared<LineBuffer>();
    QObject::connect(
        notifier, &QSocketNotifier::activated, &controller, [notifier, lines, &controller] {
            char bytes[4096];
            const ssize_t got = ::read(STDIN_FILENO, bytes, sizeof bytes);
            if (got <= 0) {
                notifier->setEnabled(false);
                return;
            }
            lines->feed(QByteArray(bytes, static_cast<int>(got)),
                        [&controller](const QByteArray& line) {
                            const QString answer = controller.execute(QString::fromUtf8(line));
                            if (!answer.isEmpty())
                                std::puts(qUtf8Printable(answer));
                            std::fflush(stdout);
                        });
        });
}

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

}  // namespace

int main(int argc, char* argv[]) {
    // Asked first: without standard input its number goes to the next thing opened.
    const bool console = ::fcntl(STDIN_FILENO, F_GETFD) >= 0;
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
    arguments.addOption(control);
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
    std::printf("waiting for the terminal on 127.0.0.1:%d, for words here and on 127.0.0.1:%d\n",
                controller.port(), controller.controlPort());
    std::fflush(stdout);
    QObject::connect(&controller, &ControllerSim::quitRequested, application.get(),
                     &QCoreApplication::quit);
    if (console)
        readConsole(controller);

    std::unique_ptr<Panel> panel;
    if (arguments.isSet(withPanel)) {
        panel = std::make_unique<Panel>(controller);
        panel->show();
    }
    return QCoreApplication::exec();
}
