#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

#include "app/main_window.h"
#include "app/screen_titles.h"
#include "app/window_form.h"
#include "bench/scenario/showing.h"

namespace {

constexpr int kBootTime = 3000;  // milliseconds
constexpr int kRounds = 3;

/// Linked into the terminal, shows each of its screens and goes back to the standby screen; then
/// "every form" is written to standard output.
void showEveryScreen() {
    MainWindow& window = *MainWindow::getMainWindow();
    for (int round = 0; round < kRounds; ++round) {
        for (const WindowForm* screen : window.windowList())
            showScreen(window, screen->getTitle());
    }
    showScreen(window, screen_title::kStandby);
    std::puts("every form");
    std::fflush(stdout);
}

void waitForBoot() {
    QTimer::singleShot(kBootTime, QCoreApplication::instance(), &showEveryScreen);
}
Q_COREAPP_STARTUP_FUNCTION(waitForBoot)

}  // namespace
