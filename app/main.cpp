#include <signal.h>

#include <QApplication>
#include <cstdio>
#include <cstring>

#include "app/capi.h"
#include "app/fonts.h"
#include "app/main_window.h"
#include "app/service_manager.h"
#include "app/unix_signals.h"
#include "base/descriptors.h"
#include "base/heap.h"
#include "base/version.h"

namespace {

CAPI capi;

constexpr char kHelp[] =
    "usage: zel-terminal [--help | --version]\n"
    "The touch-screen program of a face-recognition terminal. It takes no other arguments but\n"
    "Qt's own, such as -platform. The environment may move it:\n"
    "  ZEL_ROOT         folder to put before every path of the device\n"
    "  ZEL_LINK_PORT    port of the device controller (15150)\n"
    "  ZEL_REST_PORT    port of the HTTP server (80)\n"
    "  ZEL_FACE_SEARCH  address[:port] of an external face-search server (none)\n";

/// Answers a command line that asks for nothing but words; false for any other.
bool tells(int argc, char** argv) {
    if (argc != 2)
        return false;
    if (std::strcmp(argv[1], "--version") == 0)
        std::printf("zel-terminal %s\n", programVersion());
    else if (std::strcmp(argv[1], "--help") == 0)
        std::fputs(kHelp, stdout);
    else
        return false;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (tells(argc, argv))
        return 0;
    holdUnixSignals({SIGQUIT, SIGINT, SIGTERM, SIGHUP});
    Descriptors::raiseLimit();
    Heap::giveBackLargeBlocks();
    capi.setEnv();
    capi.sleep(1);
    Fonts::configure();
    ServiceManager manager;

    QApplication application(argc, argv);
    // Qt has taken what it knows.
    if (argc > 1) {
        std::fputs(kHelp, stderr);
        return 2;
    }
    MainWindow window;
    window.show();
    catchUnixSignals({SIGQUIT, SIGINT, SIGTERM, SIGHUP});
    manager.start();
    const int status = QApplication::exec();
    manager.stopping();
    return status;
}
