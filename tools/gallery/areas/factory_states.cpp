#include "tools/gallery/area_states.h"

#include <QCoreApplication>
#include <QDir>
#include <QMouseEvent>
#include <QTimer>

#include "link/command_code.h"
#include "link/device_message.h"
#include "tools/gallery/stage.h"

namespace {

constexpr unsigned char kDone = 0;
constexpr unsigned char kFailed = 1;

/// A finger on what is no button, in the middle of each of @p count columns from the left.
void touchWidget(Stage& stage, const char* name, int count = 1) {
    auto* widget = stage.window().getActivateWindowForm()->findChild<QWidget*>(QLatin1String(name));
    for (int i = 0; i < count; ++i) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(40 + 80 * (i % 6), 40 + 80 * (i / 6)),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &press);
    }
}

/// The time of the step that runs is over.
void timeIsUp(Stage& stage) {
    auto* timer =
        stage.window().getActivateWindowForm()->findChild<QTimer*>(QStringLiteral("stepTimer"));
    QMetaObject::invokeMethod(timer, "timeout");
}

template <unsigned short code>
void result(Stage& stage, unsigned char p1, unsigned char option = 0) {
    stage.receive(code, p1, option);
}

QByteArray numbers(const QVector<quint16>& of) {
    return {reinterpret_cast<const char*>(of.constData()), of.size() * 2};
}

template <quint16 first, quint16 second, quint16 third>
void power(Stage& stage) {
    stage.receive(command::FactoryPowerReport, 0, numbers({first, second, third}));
}

template <unsigned short code, quint16 value>
void sensor(Stage& stage) {
    stage.receive(code, 0, numbers({value}));
}

template <int count>
void patterns(Stage& stage) {
    stage.touch(QStringLiteral("showButton"));
    for (int i = 0; i < count; ++i)
        touchWidget(stage, "patternView");
}

void cells(Stage& stage, int count) {
    stage.touch(QStringLiteral("beginButton"));
    touchWidget(stage, "touchGrid", count);
}

/// The I/O test after @p done steps, of which the first @p passed have passed.
void factoryIo(Stage& stage, int done, int passed) {
    for (int step = 0; step < done; ++step) {
        if (step < passed)
            stage.receive(command::FactoryIoReport, static_cast<unsigned char>(step),
                          static_cast<unsigned char>(1));
        stage.receive(command::FactoryIoStepDone, static_cast<unsigned char>(step));
    }
}

void lights(Stage& stage, unsigned char color) {
    result<command::FactoryLedReport>(stage, kDone, color);
}

/// Up to the question about the picture of a camera.
void picture(Stage& stage, unsigned char camera) {
    result<command::FactoryCameraReport>(stage, kDone, camera);
    stage.receive(command::FactoryCameraSwitched, camera);
}

void card(Stage& stage, unsigned char outcome) {
    result<command::FactoryCardAntennaReport>(stage, kDone);
    stage.receive(command::FactoryCardReport, outcome,
                  outcome == kDone ? QByteArray("8405127733190026") : QByteArray(16, '\0'));
}

void versions(Stage& stage) {
    const _gui_menu_ menu = stage.settings();
    QByteArray all;
    for (const auto& version :
         {menu.firmwareVersion, menu.kernelVersion, menu.mainBoardVersion, menu.ioBoardVersion})
        all.append(version, sizeof menu.firmwareVersion);
    stage.receive(command::FactoryVersionReport, 0, all);
    stage.receive(command::FactoryTouchVersionReport, 0,
                  QByteArray("GT-2.10.345-rc1x", sizeof menu.firmwareVersion));
}

void updating(Stage& stage) {
    versions(stage);
    stage.touch(QStringLiteral("updateButton"));
    stage.touch(QStringLiteral("dialogOkButton"));
}

void resetting(Stage& stage) {
    result<command::FactoryMemoryReport>(stage, kDone);
    stage.touch(QStringLiteral("resetButton"));
}

void mac(Stage& stage, const char* address) {
    stage.receive(command::FactoryMacReport, kDone, QByteArray::fromHex(address));
}

/// The menu after some tests.
template <unsigned char memory>
void results(Stage& stage) {
    const struct {
        const char* title;
        void (*run)(Stage&);
    } kRuns[] = {
        {"f_pwrTestWindow", power<12010, 4990, 3310>},
        {"f_ioTestWindow", [](Stage& on) { factoryIo(on, 3, 2); }},
        {"f_macRegTestWindow", [](Stage& on) { mac(on, "024b5a000001"); }},
        {"f_cardTestWindow", [](Stage& on) { card(on, kFailed); }},
        {"f_memoryTestWindow", [](Stage& on) { result<command::FactoryMemoryReport>(on, memory); }},
        {"f_lightTestWindow",
         [](Stage& on) {
             sensor<command::FactoryLightReport, 12>(on);
             sensor<command::FactoryLightReport, 640>(on);
         }},
    };
    for (const auto& one : kRuns) {
        stage.window().changeWindow(QLatin1String(one.title));
        one.run(stage);
    }
    stage.window().changeWindow(QStringLiteral("factoryMenuWindow"));
}

/// The same when results that are new to the file cannot be written, with what is said of it.
template <unsigned char memory>
void notSaved(Stage& stage) {
    const QString path = stage.root().path("/mnt/data/factory_report.json");
    QFile::remove(path);
    QDir().mkpath(path);
    results<memory>(stage);
    QDir().rmdir(path);
}

constexpr AreaState kStates[] = {
    {"factoryMenuWindow", "results", results<kDone>},
    {"factoryMenuWindow", "not-saved-said", notSaved<kFailed>},
    {"factoryMenuWindow", "not-saved",
     [](Stage& stage) {
         notSaved<kDone>(stage);
         stage.touch(QStringLiteral("dialogOkButton"));
     }},
    {"factoryMenuWindow", "restart",
     [](Stage& stage) { stage.touch(QStringLiteral("restartRow")); }},
    {"factoryMenuWindow", "restart-without-link",
     [](Stage& stage) {
         stage.loseController();
         stage.touch(QStringLiteral("restartRow"));
         stage.touch(QStringLiteral("dialogOkButton"));
     }},
    {"f_pwrTestWindow", "passed", power<12010, 4990, 3310>},
    {"f_pwrTestWindow", "failed", power<9100, 5000, 3300>},
    {"f_pwrTestWindow", "link-lost", [](Stage& stage) { stage.loseController(); }},
    {"f_lcdTestWindow", "red", patterns<0>},
    {"f_lcdTestWindow", "green", patterns<1>},
    {"f_lcdTestWindow", "blue", patterns<2>},
    {"f_lcdTestWindow", "white", patterns<3>},
    {"f_lcdTestWindow", "black", patterns<4>},
    {"f_lcdTestWindow", "grays", patterns<5>},
    {"f_lcdTestWindow", "seen", patterns<6>},
    {"f_lcdTouchTestWindow", "grid", [](Stage& stage) { cells(stage, 0); }},
    {"f_lcdTouchTestWindow", "some", [](Stage& stage) { cells(stage, 21); }},
    {"f_lcdTouchTestWindow", "passed", [](Stage& stage) { cells(stage, 60); }},
    {"f_lcdTouchTestWindow", "failed",
     [](Stage& stage) {
         cells(stage, 57);
         timeIsUp(stage);
     }},
    {"f_lcdPixelTestWindow", "checker", patterns<0>},
    {"f_lcdPixelTestWindow", "lines", patterns<1>},
    {"f_lcdPixelTestWindow", "checker-inverted", patterns<2>},
    {"f_lcdPixelTestWindow", "lines-inverted", patterns<3>},
    {"f_lcdPixelTestWindow", "passed",
     [](Stage& stage) {
         patterns<4>(stage);
         stage.touch(QStringLiteral("passButton"));
     }},
    {"f_soundTestWindow", "second",
     [](Stage& stage) { stage.touch(QStringLiteral("passButton")); }},
    {"f_soundTestWindow", "pressed",
     [](Stage& stage) { stage.press(QStringLiteral("replayButton")); }},
    {"f_ledTestWindow", "red", [](Stage& stage) { lights(stage, 0); }},
    {"f_ledTestWindow", "blue",
     [](Stage& stage) {
         lights(stage, 0);
         stage.touch(QStringLiteral("passButton"));
         lights(stage, 1);
         stage.touch(QStringLiteral("failButton"));
         lights(stage, 2);
     }},
    {"f_ioTestWindow", "passed", [](Stage& stage) { factoryIo(stage, 3, 3); }},
    {"f_ioTestWindow", "failed", [](Stage& stage) { factoryIo(stage, 2, 1); }},
    {"f_tofTestWindow", "between", sensor<command::FactoryProximityReport, 450>},
    {"f_tofTestWindow", "near", sensor<command::FactoryProximityReport, 152>},
    {"f_lightTestWindow", "bright", sensor<command::FactoryLightReport, 320>},
    {"f_netTestWindow", "second",
     [](Stage& stage) { result<command::FactoryRs422Report>(stage, kDone); }},
    {"f_netTestWindow", "failed",
     [](Stage& stage) {
         result<command::FactoryRs422Report>(stage, kDone);
         timeIsUp(stage);
     }},
    {"f_camTestWindow", "infrared", [](Stage& stage) { picture(stage, 0); }},
    {"f_camTestWindow", "color",
     [](Stage& stage) {
         picture(stage, 0);
         stage.touch(QStringLiteral("passButton"));
         picture(stage, 1);
     }},
    {"f_cardTestWindow", "waiting",
     [](Stage& stage) { result<command::FactoryCardAntennaReport>(stage, kDone); }},
    {"f_cardTestWindow", "passed", [](Stage& stage) { card(stage, kDone); }},
    {"f_verTestWindow", "shown", versions},
    {"f_verTestWindow", "question",
     [](Stage& stage) {
         versions(stage);
         stage.touch(QStringLiteral("updateButton"));
     }},
    {"f_verTestWindow", "updating", updating},
    {"f_verTestWindow", "updated",
     [](Stage& stage) {
         updating(stage);
         versions(stage);
     }},
    {"f_verTestWindow", "no-answer",
     [](Stage& stage) {
         updating(stage);
         auto* timer = stage.window().getActivateWindowForm()->findChild<QTimer*>(
             QStringLiteral("answerTimer"));
         timer->stop();
         QMetaObject::invokeMethod(timer, "timeout");
     }},
    {"f_verTestWindow", "link-lost",
     [](Stage& stage) {
         updating(stage);
         stage.loseController();
     }},
    {"f_rtcTestWindow", "shown",
     [](Stage& stage) {
         stage.receiveRecord(command::FactoryClockReport, ClockTime{26, 3, 9, 8, 51, 58}, kDone);
     }},
    {"f_macRegTestWindow", "passed", [](Stage& stage) { mac(stage, "024b5a000001"); }},
    {"f_macRegTestWindow", "group", [](Stage& stage) { mac(stage, "ffffffffffff"); }},
    {"f_memoryTestWindow", "question", resetting},
    {"f_memoryTestWindow", "reset",
     [](Stage& stage) {
         resetting(stage);
         stage.touch(QStringLiteral("dialogOkButton"));
     }},
    {"colorTestWindow", "passed", [](Stage& stage) { stage.touch(QStringLiteral("passButton")); }},
};

}  // namespace

AreaStates factoryStates() {
    return kStates;
}
