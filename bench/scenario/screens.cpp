#include <QElapsedTimer>
#include <QtTest>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "app/fonts.h"
#include "app/main_window.h"
#include "app/window_form.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/painting.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "bench/scenario/showing.h"
#include "link/command_code.h"
#include "link/device_records.h"
#include "sim/controller/device.h"
#include "ui/top_bar.h"
#include "ui/widget_button.h"

namespace {

constexpr int kRuns = 51;  // of each touch
constexpr int kChanges = 10000;
/// Until every cache holds what it is going to hold.
constexpr int kWarmUpRounds = 20;
/// An index of the menu time-outs: never.
constexpr int kNever = 3;

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// The first time that a screen is shown, its form is built.
void measureFirstShowings(MainWindow& window) {
    std::vector<double> times;
    for (const WindowForm* screen : window.windowList()) {
        if (screen->isFormBuilt())
            continue;
        QElapsedTimer timer;
        timer.start();
        showScreen(window, screen->getTitle());
        times.push_back(milliseconds(timer));
    }
    Figures::title("First showing of a screen, with its form built on the way");
    Figures::row("screens", static_cast<double>(times.size()), "");
    Figures::row("median", Figures::median(times), "ms");
    Figures::row("longest", *std::max_element(times.begin(), times.end()), "ms");
}

/// A touchable place that leads from one screen to another.
struct Way {
    QString from;
    QString to;
    QPoint place;
};

/// The ways that the rows, tiles and title bars of all screens offer.
std::vector<Way> findWays(MainWindow& window) {
    std::vector<Way> ways;
    for (WindowForm* screen : window.windowList()) {
        showScreen(window, screen->getTitle());
        if (window.getActivateWindowForm() != screen)
            continue;
        const auto add = [&](const QWidget* button, const QString& target) {
            if (button->isVisible() && button->isEnabled() && window.getWindow(target) != nullptr)
                ways.push_back(
                    {screen->getTitle(), target, button->mapTo(&window, button->rect().center())});
        };
        for (const WidgetButton* button : screen->findChildren<WidgetButton*>())
            add(button, button->property("target").toString());
    }
    return ways;
}

/// Milliseconds from the moment a touch counts, when the finger is lifted, until the screen that it
/// leads to has been painted; -1 when it leads elsewhere.
double touch(MainWindow& window, const Way& way) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, way.place);
    QCoreApplication::processEvents();
    const PaintWatch watch(window.getWindow(way.to));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, way.place);
    if (window.getActivateWindowForm()->getTitle() != way.to)
        return -1;
    return watch.wait();
}

void measureWays(MainWindow& window) {
    std::vector<double> changes;
    std::vector<double> paints;
    std::vector<double> ratios;
    QString worst;
    double worstRatio = 0;
    for (const Way& way : findWays(window)) {
        std::vector<double> change;
        std::vector<double> paint;
        for (int run = 0; run < kRuns; ++run) {
            showScreen(window, way.from);
            change.push_back(touch(window, way));
            if (change.back() < 0)
                break;
            // With the keypad, where that comes up as well.
            paint.push_back(repaint(&window));
        }
        if (paint.empty())
            continue;
        const double ratio = Figures::median(change) / Figures::median(paint);
        changes.push_back(Figures::median(change));
        paints.push_back(Figures::median(paint));
        ratios.push_back(ratio);
        if (ratio > worstRatio) {
            worstRatio = ratio;
            worst = way.from + QStringLiteral(" to ") + way.to;
        }
    }
    if (ratios.empty())
        qFatal("no touch leads to another screen");
    Figures::title("Screen change, from touch to painted");
    Figures::row("ways from screen to screen", static_cast<double>(ratios.size()), "");
    Figures::row("change, median", Figures::median(changes), "ms");
    Figures::row("painting the screen alone, median", Figures::median(paints), "ms");
    Figures::row("ratio, median", Figures::median(ratios), "", "wanted: at most 2");
    Figures::row(qUtf8Printable(QStringLiteral("ratio, ") + worst), worstRatio, "",
                 "wanted: at most 2");
}

/// What is left behind grows with the number of changes, or it is a cache that has filled.
void measureGrowth(MainWindow& window) {
    const QList<WindowForm*>& screens = window.windowList();
    int number = 0;
    const auto change = [&](int times) {
        for (int i = 0; i < times; ++i, ++number)
            showScreen(window, screens.at(number % screens.size())->getTitle());
    };
    change(kWarmUpRounds * screens.size());
    Figures::title("Screen changes over all screens");
    for (const char* changes : {"the first 10,000", "the second 10,000"}) {
        const double memoryBefore = residentMemory(QStringLiteral("self"));
        const double before = allocatedMemory();
        change(kChanges);
        const double grown = allocatedMemory() - before;
        const double memory = residentMemory(QStringLiteral("self"));
        const auto row = [changes](const char* what, double value, const char* unit,
                                   const char* wanted) {
            Figures::row(qUtf8Printable(QLatin1String(what) + QLatin1String(changes)), value, unit,
                         wanted);
        };
        row("growth of what is allocated, ", grown, "bytes", "wanted: none");
        row("growth of resident memory, ", memory - memoryBefore, "MB", "");
    }
}

}  // namespace

bool measureScreens() {
    Fonts::configure();
    MainWindow window;
    _gui_menu_ settings = factorySettings();
    settings.screen.menuTimeout = kNever;
    window.sendTestPacket(command::Settings, sizeof settings,
                          reinterpret_cast<const char*>(&settings));
    window.show();
    QCoreApplication::processEvents();
    measureFirstShowings(window);
    measureWays(window);
    measureGrowth(window);
    return true;
}
