#include <QDir>
#include <QImage>

#include "base/device_folders.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/portrait.h"
#include "tools/gallery/area_states.h"
#include "tools/gallery/stage.h"
#include "ui/picture_shelf.h"
#include "ui/row_list.h"

namespace {

constexpr int kInFrame = 7;  // logs
constexpr int kPage = 30;

/// Waits until every picture that is to be seen has been read.
void waitForPictures(Stage& stage) {
    // Only what is painted is read.
    stage.picture();
    // A dialog is not the screen's child, but the window's.
    const auto shelves = stage.window().findChildren<PictureShelf*>();
    for (const PictureShelf* shelf : shelves) {
        while (!shelf->isIdle())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

GUI_LOGDATA logNumber(int number) {
    constexpr struct {
        quint8 inOut;
        quint8 method;
        const char* name;
    } kKinds[] = {{quint8(WorkMode::In), AuthMethod::Face, "김서연"},
                  {quint8(WorkMode::Out), AuthMethod::Card, "Daniel Edwards"},
                  {quint8(WorkMode::AccessOnly), AuthMethod::FaceOrCard, ""},
                  {quint8(WorkMode::Return), AuthMethod::FaceAndId, "佐藤 健太"},
                  {quint8(WorkMode::Lunch), AuthMethod::FaceAndCard, "이도윤"}};
    const auto& kind = kKinds[number % 5];
    GUI_LOGDATA log{};
    log.number = static_cast<quint32>(31 - number);
    setFieldText(log.userId, QStringLiteral("0102345%1").arg(6789 - number * 37));
    setFieldText(log.name, QString::fromUtf8(kind.name));
    setFieldText(log.cardNumber, QStringLiteral("20000117"));
    log.inOut = kind.inOut;
    log.authMethod = kind.method;
    log.eventStatus = number % 4 != 3;
    log.payCount = kind.inOut == quint8(WorkMode::Lunch) ? 2 : 0;
    log.score = kind.method == AuthMethod::Card ? 0 : 97;
    log.year = 26;
    log.month = 3;
    log.day = 9;
    log.hour = 8;
    log.minute = static_cast<quint8>(52 - number);
    log.second = 14;
    if (kind.method != AuthMethod::Card) {
        setFieldText(log.visiblePicture, QStringLiteral("gallery_%1.jpg").arg(number % 3));
        setFieldText(log.infraredPicture, QStringLiteral("gallery_infrared.jpg"));
    }
    return log;
}

/// Everything as long as it can be; the number of meals too.
GUI_LOGDATA longestLog(int number) {
    GUI_LOGDATA log = logNumber(number);
    log.number = 4294967295U;
    setFieldText(log.userId, QStringLiteral("88888888888"));
    setFieldText(log.name, QStringLiteral("Maximiliane Wollstonecraft-Meyer"));
    setFieldText(log.cardNumber, QStringLiteral("8888888888888888"));
    log.inOut = quint8(WorkMode::Supper);
    log.authMethod = AuthMethod::FaceAndId;
    log.payCount = 99;
    log.score = 100;
    log.month = log.day = 12;
    log.hour = 20;
    return log;
}

void savePictures(const Stage& stage) {
    const QString folder = stage.root().path("/mnt/data");
    for (int look = 0; look < 3; ++look)
        portrait::saveSnapshot(folder, QStringLiteral("gallery_%1").arg(look), look);
    QImage::fromData(portrait::jpeg(1))
        .convertToFormat(QImage::Format_Grayscale8)
        .save(folder + QStringLiteral("/Images/gallery_infrared.jpg"));
}

/// The list as it comes up after @p total logs have been found.
void found(Stage& stage, quint32 total) {
    stage.window().changeWindow(QStringLiteral("info_logSearchWindow"));
    stage.window().changeWindow(QStringLiteral("info_logListWindow"), total);
}

/// The first page of @p total logs.
void list(Stage& stage, quint32 total, GUI_LOGDATA (*log)(int) = &logNumber) {
    savePictures(stage);
    found(stage, total);
    const int all = static_cast<int>(qMin<quint32>(kPage, total));
    for (int sent = 0; sent < all;) {
        QByteArray payload;
        for (int i = 0; i < kInFrame && sent < all; ++i, ++sent) {
            const GUI_LOGDATA one = log(sent);
            payload.append(reinterpret_cast<const char*>(&one), sizeof one);
        }
        stage.receive(command::LogPage, 0, payload);
    }
    waitForPictures(stage);
}

void search(Stage& stage, const char* id) {
    stage.touch(QStringLiteral("idField"));
    for (; *id != 0; ++id)
        stage.touch(QStringLiteral("key_") + QLatin1Char(*id));
    stage.touch(QStringLiteral("forwardButton"));
}

void chooseDates(Stage& stage) {
    stage.touch(QStringLiteral("periodCombo"));
    stage.touch(QStringLiteral("item4"));
}

HostInfo accessController(bool connected) {
    HostInfo info{};
    info.connected = connected;
    info.port = 4070;
    const quint8 address[] = {192, 168, 100, 200};
    std::memcpy(info.address, address, sizeof info.address);
    setFieldText(info.name, QStringLiteral("Main entrance, second floor east"));
    return info;
}

void useService(Stage& stage) {
    _gui_menu_ settings = stage.settings();
    settings.network.useManager = 1;
    stage.changeSettings(settings);
    stage.receive(command::UnsentDataWaiting);
}

/// What the system's ping would say, said by another program of that name.
void ping(Stage& stage, const char* lines, int count) {
    const QString folder = stage.root().path("/usr/bin");
    QDir().mkpath(folder);
    stage.root().write("/usr/bin/ping",
                       QByteArray("#!/bin/sh\nprintf '") + lines + "'\nexec sleep 60\n");
    const QString program = folder + QStringLiteral("/ping");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder) + ':' + path);
    stage.touch(QStringLiteral("startButton"));
    qputenv("PATH", path);
    const auto* rows = stage.active<QWidget>()->findChild<RowList*>();
    while (rows->model()->rowCount() < count)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// The grid with some pictures, which are gone again afterwards: other screens show them too.
void pictures(Stage& stage, void (*touch)(Stage&) = nullptr) {
    QDir folder(stage.root().path(DeviceFolders::kBackgrounds));
    folder.mkpath(QStringLiteral("."));
    constexpr QRgb kColors[] = {0xff35507a, 0xff7a4a35, 0xff3d7a4a, 0xff6a3d7a, 0xff7a7035};
    int number = 0;
    for (const QRgb color : kColors) {
        QImage picture(number % 2 == 0 ? QSize(480, 800) : QSize(900, 600), QImage::Format_RGB32);
        picture.fill(color);
        picture.save(folder.filePath(QStringLiteral("%1.png").arg(number++)));
    }
    stage.root().write("/usr/img/zel/resources/backgrounds/2.png", "no picture");
    stage.window().changeWindow(QStringLiteral("enviScreen_StayWindow"));
    stage.window().changeWindow(QStringLiteral("enviscreen_imageselect"), 1);
    waitForPictures(stage);
    if (touch != nullptr)
        touch(stage);
    folder.removeRecursively();
}

constexpr AreaState kStates[] = {
    {"info_logSearchWindow", "dates", chooseDates},
    {"info_logSearchWindow", "method-list",
     [](Stage& stage) { stage.touch(QStringLiteral("methodCombo")); }},
    {"info_logSearchWindow", "keypad",
     [](Stage& stage) { stage.touch(QStringLiteral("idField")); }},
    {"info_logSearchWindow", "short-id", [](Stage& stage) { search(stage, "12345"); }},
    {"info_logSearchWindow", "no-date",
     [](Stage& stage) {
         chooseDates(stage);
         stage.touch(QStringLiteral("toField"));
         stage.touch(QStringLiteral("key_2"));
         stage.touch(QStringLiteral("forwardButton"));
     }},
    {"info_logSearchWindow", "waiting", [](Stage& stage) { search(stage, ""); }},
    {"info_logSearchWindow", "nothing-found",
     [](Stage& stage) {
         search(stage, "");
         stage.receiveRecord(command::LogCount, quint32(0));
     }},
    {"info_logSearchWindow", "without-link",
     [](Stage& stage) {
         stage.loseController();
         stage.touch(QStringLiteral("forwardButton"));
     }},
    {"info_logListWindow", "waiting", [](Stage& stage) { found(stage, 31); }},
    {"info_logListWindow", "one", [](Stage& stage) { list(stage, 1); }},
    {"info_logListWindow", "thirty-one", [](Stage& stage) { list(stage, 31); }},
    {"info_logListWindow", "ten-thousand", [](Stage& stage) { list(stage, 10000); }},
    {"info_logListWindow", "longest", [](Stage& stage) { list(stage, 100000000, &longestLog); }},
    {"info_logListWindow", "no-pictures",
     [](Stage& stage) {
         _gui_menu_ settings = stage.settings();
         settings.screen.showThumbnail = 0;
         stage.changeSettings(settings);
         list(stage, 31);
     }},
    {"info_logListWindow", "log",
     [](Stage& stage) {
         list(stage, 31);
         stage.touchRow(0);
         waitForPictures(stage);
     }},
    {"info_logListWindow", "longest-log",
     [](Stage& stage) {
         list(stage, 31, &longestLog);
         stage.touchRow(0);
         waitForPictures(stage);
     }},
    {"info_logListWindow", "link-lost",
     [](Stage& stage) {
         found(stage, 31);
         stage.loseController();
     }},
    {"info_readerWindow", "longest",
     [](Stage& stage) {
         _gui_menu_ settings = stage.settings();
         settings.setup.deviceNumber = 4294967295U;
         setFieldText(settings.serial, QStringLiteral("WWWWWWWWWWWWWWWWWWWWWWWW"));
         setFieldText(settings.firmwareVersion, QStringLiteral("WWWWWWWWWWWWWWWW"));
         stage.changeSettings(settings);
         // The rows below make room.
         stage.picture();
     }},
    {"info_conWindow", "all-reached",
     [](Stage& stage) { stage.receiveRecord(command::ConnectionInfo, accessController(true)); }},
    {"info_conWindow", "service-not-reached",
     [](Stage& stage) {
         useService(stage);
         stage.receiveRecord(command::ConnectionInfo, accessController(false));
     }},
    {"info_conWindow", "without-link", [](Stage& stage) { stage.loseController(); }},
    {"info_keyDataWindow", "full",
     [](Stage& stage) {
         stage.receiveRecord(command::UserCountsAnswer,
                             UserCounts{9999, 9000, 30, 2000, 4500, 969, 1});
     }},
    {"info_keyDataWindow", "without-link", [](Stage& stage) { stage.loseController(); }},
    {"pingWindow", "running",
     [](Stage& stage) {
         ping(stage,
              "64 bytes from 192.168.0.1: icmp_seq=1 ttl=64 time=0.43 ms\\n"
              "no answer yet for icmp_seq=2\\n"
              "From 192.168.0.7 icmp_seq=3 Destination Host Unreachable\\n"
              "64 bytes from 192.168.0.1: icmp_seq=4 ttl=64 time=1024 ms\\n",
              4);
     }},
    {"pingWindow", "no-address",
     [](Stage& stage) {
         stage.touch(QStringLiteral("addressField"));
         stage.touch(QStringLiteral("key_clear"));
         stage.touch(QStringLiteral("key_1"));
         stage.touch(QStringLiteral("startButton"));
     }},
    {"enviscreen_imageselect", "pictures", [](Stage& stage) { pictures(stage); }},
    {"enviscreen_imageselect", "chosen",
     [](Stage& stage) { pictures(stage, [](Stage& grid) { grid.touchRow(3); }); }},
    {"enviScreen_StayWindow", "preview",
     [](Stage& stage) {
         pictures(stage, [](Stage& grid) {
             grid.touch(QStringLiteral("backButton"));
             waitForPictures(grid);
         });
     }},
    {"enviscreen_imageselect", "broken",
     [](Stage& stage) { pictures(stage, [](Stage& grid) { grid.touchRow(2); }); }},
};

}  // namespace

AreaStates logsStates() {
    return kStates;
}
