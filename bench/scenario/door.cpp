#include <time.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>
#include <QTimer>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <vector>

#include "app/main_window.h"
#include "app/window_form.h"
#include "base/device_paths.h"
#include "bench/scenario/figures.h"
#include "bench/scenario/painting.h"
#include "bench/scenario/program.h"
#include "bench/scenario/scenarios.h"
#include "link/command_code.h"
#include "link/device_records.h"
#include "sim/common/portrait.h"
#include "sim/controller/device.h"
#include "sim/controller/terminal_link.h"

namespace {

constexpr int kResults = 51;
constexpr int kFramesPerSecond = 30;
constexpr int kTrackingTime = 20000;  // milliseconds
constexpr int kMinute = 60000;        // milliseconds

/// The terminal, and at the other end of a real socket a controller that says what it is told to.
class Door {
 public:
    Door() : link_(nullptr) {
        link_.listen(0);
        qputenv("ZEL_LINK_PORT", QByteArray::number(link_.port()));
        window_ = std::make_unique<MainWindow>();
        window_->show();
        while (!link_.connected())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        send(command::Settings, factorySettings());
        while (!window_->settingsArrived())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    MainWindow& window() { return *window_; }
    /// Brings the screen @p title up, painted.
    WindowForm* open(const QString& title) {
        window_->changeWindow(title);
        QCoreApplication::processEvents();
        return window_->getActivateWindowForm();
    }
    template <typename Record>
    void send(quint16 command, const Record& record) {
        link_.send(command, 0, 0,
                   QByteArray(reinterpret_cast<const char*>(&record), sizeof record));
    }

 private:
    TerminalLink link_;
    std::unique_ptr<MainWindow> window_;
};

double sum(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

/// Pixels in which two pictures of one size differ.
double changed(const QImage& before, const QImage& after) {
    int pixels = 0;
    for (int y = 0; y < before.height(); ++y) {
        const auto* a = reinterpret_cast<const QRgb*>(before.constScanLine(y));
        const auto* b = reinterpret_cast<const QRgb*>(after.constScanLine(y));
        for (int x = 0; x < before.width(); ++x)
            pixels += a[x] != b[x];
    }
    return pixels;
}

// --- A result ------------------------------------------------------------------------------

RecognitionResult resultOf(const QString& userId) {
    RecognitionResult result{};
    std::strcpy(result.userId, qUtf8Printable(userId));
    std::strcpy(result.name, "Kim Seoyeon");
    return result;
}

/// Milliseconds from the first byte of the result until it has been painted. A function of its own,
/// so that a profiler finds it.
[[gnu::noinline]] double showResult(Door& door, const RecognitionResult& result) {
    const PaintWatch watch(door.window().getWindow(QStringLiteral("recognizeWindow")));
    door.send(command::Recognised, result);
    return watch.wait();
}

/// Results of the persons that @p person names by the number of the run.
void measureResults(Door& door, const char* title, const std::function<QString(int)>& person) {
    std::vector<double> results;
    std::vector<double> paints;
    std::vector<double> ratios;
    for (int number = 0; number < kResults; ++number) {
        const RecognitionResult result = resultOf(person(number));
        door.open(QStringLiteral("liveWindow"));
        results.push_back(showResult(door, result));
        paints.push_back(repaint(door.window().getActivateWindowForm()));
        ratios.push_back(results.back() / paints.back());
    }
    Figures::title(title);
    Figures::row("first byte to painted", Figures::median(results), "ms");
    Figures::row("painting the screen alone", Figures::median(paints), "ms");
    Figures::row("ratio", Figures::median(ratios), "", "wanted: at most 2");
}

// --- The box -------------------------------------------------------------------------------

/// A face that moves with every frame.
TrackedFace face(int frame) {
    TrackedFace box{};
    box.x = static_cast<std::int16_t>(60 + 2 * std::abs(frame % 120 - 60));
    box.y = static_cast<std::int16_t>(230 + std::abs((frame + 30) % 80 - 40));
    box.width = 232;
    box.height = 296;
    box.state = 1;
    return box;
}

}  // namespace

bool measureResult() {
    Door door;
    const QString dataFolder = DevicePaths::at(QStringLiteral("/mnt/data"));
    measureResults(door, "A result, no picture of the person",
                   [](int) { return QStringLiteral("1"); });
    // Drawn beforehand, or the results would be shown with the caches full of that.
    const auto person = [](int number) { return QString::number(1000 + number); };
    for (int number = 0; number < kResults; ++number)
        portrait::save(dataFolder, person(number), number);
    measureResults(door, "A result, a picture read from its file", person);
    return true;
}

bool measureTracking() {
    Door door;
    const WindowForm* const live = door.open(QStringLiteral("liveWindow"));
    int frame = 0;
    PaintMeter meter(&door.window());

    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer,
                     [&] { door.send(command::TrackingBox, face(++frame)); });
    timer.start(1000 / kFramesPerSecond);
    runEvents(1000);
    meter.frames();
    const double before = clockTime(CLOCK_PROCESS_CPUTIME_ID);
    runEvents(kTrackingTime);
    const double used = clockTime(CLOCK_PROCESS_CPUTIME_ID) - before;
    timer.stop();
    const std::vector<double> painted = meter.frames();
    Figures::title("A face that moves, 30 boxes a second");
    Figures::row("share of a core", used * 100 / kTrackingTime, "%", "wanted: below 3");
    Figures::row("frames a second", static_cast<double>(painted.size()) * 1000 / kTrackingTime, "");

    std::vector<double> paintedPixels;
    std::vector<double> changedPixels;
    QImage picture = door.window().grab().toImage();
    for (int number = 0; number < kResults; ++number) {
        meter.frames();
        const PaintWatch watch(live);
        door.send(command::TrackingBox, face(++frame));
        watch.wait();
        paintedPixels.push_back(sum(meter.frames()));
        const QImage next = door.window().grab().toImage();
        changedPixels.push_back(changed(picture, next));
        picture = next;
    }
    Figures::row("pixels painted a frame", Figures::median(paintedPixels), "");
    Figures::row("pixels changed a frame", Figures::median(changedPixels), "");
    Figures::row("pixels of the screen", picture.width() * picture.height(), "");
    return true;
}

bool measureStandby() {
    Door door;
    door.open(QStringLiteral("stayWindow"));
    runEvents(1000);
    const QImage before = door.window().grab().toImage();
    PaintMeter meter(&door.window());
    runEvents(kMinute);
    const std::vector<double> painted = meter.frames();
    const QImage after = door.window().grab().toImage();
    Figures::title("Standby screen, one minute");
    Figures::row("frames", static_cast<double>(painted.size()), "", "wanted: 1");
    Figures::row("pixels painted", sum(painted), "");
    Figures::row("pixels changed", changed(before, after), "");
    Figures::row("pixels of the screen", before.width() * before.height(), "");
    return true;
}
