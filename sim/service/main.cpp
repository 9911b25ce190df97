#include <QCommandLineParser>
#include <QCoreApplication>
#include <QUrl>
#include <cstdio>

#include "base/device_paths.h"
#include "sim/common/console.h"
#include "sim/common/relaunch.h"
#include "sim/service/service_sim.h"

namespace {

/// The program but for its end: gives the event loop's status.
int runService(int argc, char* argv[]) {
    const Console console;
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Stands in for the management service. Reads words from standard input and "
                       "from the control port; 'help' lists them."));
    arguments.addHelpOption();
    const QCommandLineOption port(
        QStringLiteral("port"), QStringLiteral("TCP port for the terminal's calls, on 127.0.0.1."),
        QStringLiteral("port"), QString::number(ServiceSim::kPort));
    const QCommandLineOption control(
        QStringLiteral("control"), QStringLiteral("TCP port for words, on 127.0.0.1."),
        QStringLiteral("port"), QString::number(ServiceSim::kControlPort));
    const QCommandLineOption terminal(
        QStringLiteral("terminal"), QStringLiteral("Where the terminal's REST server is."),
        QStringLiteral("host:port"), QStringLiteral("127.0.0.1:%1").arg(DevicePaths::restPort()));
    arguments.addOptions({port, control, terminal});
    arguments.process(application);

    bool portOk = false;
    bool controlOk = false;
    const quint16 ownPort = arguments.value(port).toUShort(&portOk);
    const quint16 controlPort = arguments.value(control).toUShort(&controlOk);
    const QUrl address(QStringLiteral("http://") + arguments.value(terminal));
    if (!portOk || !controlOk || address.host().isEmpty() || address.port() <= 0) {
        std::fputs("--port and --control take a port number, --terminal host:port\n", stderr);
        return 2;
    }

    ServiceSim service(ownPort, controlPort,
                       {address.host(), static_cast<quint16>(address.port())});
    if (!service.listening()) {
        std::fprintf(stderr, "cannot listen: %s\n", qUtf8Printable(service.errorString()));
        return 1;
    }
    std::printf(
        "waiting for the terminal's calls on 127.0.0.1:%d, for words here and on "
        "127.0.0.1:%d; orders go to %s\n",
        service.port(), service.controlPort(), qUtf8Printable(arguments.value(terminal)));
    std::fflush(stdout);
    QObject::connect(&service, &ServiceSim::quitRequested, &application, &QCoreApplication::quit);
    QObject::connect(&service, &ServiceSim::restartRequested, &application,
                     [] { QCoreApplication::exit(Relaunch::kStatus); });
    console.read([&service](const QString& line) { return service.execute(line); }, &service);
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char* argv[]) {
    const Relaunch relaunch(argc, argv);
    return relaunch.finish(runService(argc, argv));
}
