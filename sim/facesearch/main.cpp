#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>

#include "sim/common/console.h"
#include "sim/common/relaunch.h"
#include "sim/facesearch/face_search_sim.h"

namespace {

/// The program but for its end: gives the event loop's status.
int runServer(int argc, char* argv[]) {
    const Console console;
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("Stands in for an external face-search server. Reads words from standard "
                       "input and from the control port; 'help' lists them."));
    arguments.addHelpOption();
    const QCommandLineOption port(QStringLiteral("port"),
                                  QStringLiteral("TCP port for clients, on 127.0.0.1."),
                                  QStringLiteral("port"), QString::number(FaceSearchSim::kPort));
    const QCommandLineOption control(
        QStringLiteral("control"), QStringLiteral("TCP port for words, on 127.0.0.1."),
        QStringLiteral("port"), QString::number(FaceSearchSim::kControlPort));
    arguments.addOptions({port, control});
    arguments.process(application);

    bool portOk = false;
    bool controlOk = false;
    const quint16 ownPort = arguments.value(port).toUShort(&portOk);
    const quint16 controlPort = arguments.value(control).toUShort(&controlOk);
    if (!portOk || !controlOk) {
        std::fputs("--port and --control take a port number\n", stderr);
        return 2;
    }
    FaceSearchSim server(ownPort, controlPort);
    if (!server.listening()) {
        std::fprintf(stderr, "cannot listen: %s\n", qUtf8Printable(server.errorString()));
        return 1;
    }
    std::printf("waiting for clients on 127.0.0.1:%d, for words here and on 127.0.0.1:%d\n",
                server.port(), server.controlPort());
    std::fflush(stdout);
    QObject::connect(&server, &FaceSearchSim::quitRequested, &application, &QCoreApplication::quit);
    QObject::connect(&server, &FaceSearchSim::restartRequested, &application,
                     [] { QCoreApplication::exit(Relaunch::kStatus); });
    console.read([&server](const QString& line) { return server.execute(line); }, &server);
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char* argv[]) {
    const Relaunch relaunch(argc, argv);
    return relaunch.finish(runServer(argc, argv));
}
