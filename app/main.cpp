#include <signal.h>

#include <QApplication>

#include "app/capi.h"
#include "app/main_window.h"
#include "app/unix_signals.h"
#include "base/descriptors.h"

namespace {

CAPI capi;

}  // namespace

int main(int argc, char** argv) {
    holdUnixSignals({SIGQUIT, SIGINT, SIGTERM, SIGHUP});
    Descriptors::raiseLimit();
    capi.setEnv();
    capi.sleep(1);

    QApplication application(argc, argv);
    MainWindow window;
    window.show();
    catchUnixSignals({SIGQUIT, SIGINT, SIGTERM, SIGHUP});
    return QApplication::exec();
}
