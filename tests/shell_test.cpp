#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>
#include <memory>

#include "app/management_link.h"
#include "app/menu_timer.h"
#include "app/message_dispatch.h"
#include "app/message_routes.h"
#include "app/status_popup.h"
#include "app/system_status.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_link.h"
#include "tests/cloud_test_support.h"
#include "tests/support/driven_terminal.h"
#include "tests/support/text_recorder.h"
#include "ui/dialog_form.h"
#include "ui/input_field.h"
#include "ui/notice_strip.h"

/// The shell around the screens, as a finger on the panel, the controller and the management
/// service see it.
class ShellTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() { t = std::make_unique<DrivenTerminal>(); }
    void init();
    void cleanupTestCase() { t.reset(); }

    void firstScreen_data();
    void firstScreen();
    void upgradeIsToldOnce_data();
    void upgradeIsToldOnce();
    void linksAreRenewed();
    void everyChangeOfSettingsCounts_data();
    void everyChangeOfSettingsCounts();
    void languageOfTheSettings();
    void languageAtTheUsersWish();
    void screensChangeOrNot();
    void aFrozenScreenStays();
    void theMenuIsTheAdministrators();
    void enrolmentAtTheDoor_data();
    void enrolmentAtTheDoor();
    void requestsAskForThePassword();
    void menuTimesOut();
    void everyTouchKeepsTheScreen();
    void factoryTests();
    void faultsCome();
    void reportsComeUp();
    void oldLogsGoAtTheAdministratorsWord();
    void anUpgradeIsNotLeftAlone();
    void recordedAccessLeavesTheScreenFree();
    void statusPopupsClose();
    void statusChoosesTheMode();
    void theServiceIsSought();
    void asksForWhatIsUnsent();
    void routesLeadToScreens();
    void aShortRecordIsIgnored();
    void theLinkComesBack();
    void ends_data();
    void ends();

 private:
    MainWindow* window() { return t->window.get(); }
    bool reads(const QString& text) {
        TextRecorder recorder(window()->size());
        window()->render(&recorder);
        return recorder.has(text);
    }

    /// Has the administrator know the word from now on, and nobody else.
    bool locked() {
        return t->tell("settings setup.adminPassword 2468") && QTest::qWaitFor([this] {
                   return window()->menuRecord().setup.adminPassword[0] == '2';
               });
    }
    /// Has the terminal be run so that the screen @p title can be had.
    void runFor(const QString& title) {
        const bool meals = title == QLatin1String("foodMenuWindow");
        if (!meals && window()->menuRecord().setup.operation != Operation::Meals)
            return;
        QVERIFY(t->tell(meals ? "settings setup.operation 2" : "settings setup.operation 1"));
        QTRY_VERIFY(t->agrees());
    }
    void enterPassword() {
        t->find<InputField>("passwordField")->setText(QStringLiteral("2468"));
        t->tap("forwardButton");
    }

    std::unique_ptr<DrivenTerminal> t;
};

void ShellTest::init() {
    QFile::remove(t->root.path("/mnt/data/rebootchkr"));
    t->root.write("/mnt/data/rebootchkr", {});
    for (const char* words :
         {"settings commissioned 1", "settings setup.language 0", "settings screen.menuTimeout 3",
          "settings network.useManager 0", "settings setup.adminPassword \"\"",
          "settings setup.operation 1", "settings setup.readerMode 0",
          "settings setup.serviceMode 0", "settings setup.alarmMode 0",
          "settings registration.on 1", "status 0", "fault none"})
        QVERIFY2(t->tell(words), words);
    QVERIFY(t->start());
    QVERIFY(t->settle());
    t->frames.clear();
}

void ShellTest::firstScreen_data() {
    QTest::addColumn<bool>("rebooted");
    QTest::addColumn<int>("commissioned");
    QTest::addColumn<QString>("last");
    QTest::newRow("planned restart") << true << 0 << QStringLiteral("stayWindow");
    QTest::newRow("power-on") << false << 1 << QStringLiteral("stayWindow");
    QTest::newRow("never set up") << false << 0 << QStringLiteral("setupMenuWindow");
}

void ShellTest::firstScreen() {
    QFETCH(bool, rebooted);
    QFETCH(int, commissioned);
    if (!rebooted)
        QVERIFY(QFile::remove(t->root.path("/mnt/data/rebootchkr")));
    QVERIFY(t->tell(QStringLiteral("settings commissioned %1").arg(commissioned)));
    QVERIFY(t->start());
    QCOMPARE(t->title(), rebooted ? QStringLiteral("stayWindow") : QStringLiteral("bootWindow"));
    QVERIFY(t->settle());
    t->frames.clear();
    QTRY_COMPARE(t->title(), QTest::currentDataTag() == QByteArray("planned restart")
                                 ? QStringLiteral("stayWindow")
                                 : (commissioned != 0 ? QStringLiteral("stayWindow")
                                                      : QStringLiteral("setupMenuWindow")));
    QVERIFY(t->settle());
    if (!rebooted)
        QCOMPARE(t->frames.mid(0, 3),
                 QStringList({QStringLiteral("2011 0 0"), QStringLiteral("2003 1 0"),
                              QStringLiteral("2010 0 0")}));
    QVERIFY(!window()->findChild<MenuTimer*>()->isRunning());
}

void ShellTest::upgradeIsToldOnce_data() {
    QTest::addColumn<QByteArray>("marker");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("done") << QByteArray("/mnt/data/fw_upgrade_ok")
                          << QByteArray("Info_UpgradeDone");
    QTest::newRow("failed") << QByteArray("/mnt/data/fw_upgrade_fail")
                            << QByteArray("ListItem_FwUpgradeFailed");
}

void ShellTest::upgradeIsToldOnce() {
    QFETCH(QByteArray, marker);
    QFETCH(QByteArray, key);
    QVERIFY(QFile::remove(t->root.path("/mnt/data/rebootchkr")));
    t->root.write(marker.constData(), {});
    for (const bool told : {true, false}) {
        QVERIFY(t->start());
        QCOMPARE(t->title(), QStringLiteral("bootWindow"));
        QCOMPARE(reads(window()->getScript(QLatin1String(key)).script), told);
        QVERIFY(!QFile::exists(t->root.path(marker.constData())));
    }
}

void ShellTest::linksAreRenewed() {
    const QDir links(t->root.path("/usr/img"));
    const QDir pictures(t->root.path("/zel1/image/img"));
    const QFileInfoList there = pictures.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QVERIFY(there.size() > 20);
    const QString kept = links.filePath(there.at(0).fileName());
    struct stat before {};
    QCOMPARE(::lstat(QFile::encodeName(kept).constData(), &before), 0);
    t->root.write("/elsewhere", "x");
    const QString elsewhere = t->root.path("/elsewhere");
    for (int wrong : {1, 2}) {
        QVERIFY(QFile::remove(links.filePath(there.at(wrong).fileName())));
        QVERIFY(wrong == 2 || QFile::link(elsewhere, links.filePath(there.at(1).fileName())));
    }
    t->root.write("/usr/img/stale.png", "x");
    t->root.write("/usr/lib/fonts/stale.otf", "x");
    t->root.write("/usr/img/.hidden", "x");
    QVERIFY(QFile::link(t->root.path("/nowhere"), links.filePath(QStringLiteral("nowhere.png"))));
    QVERIFY(QFile::link(elsewhere, t->root.path("/usr/lib/fonts/NotoSerif-Bold.ttf.old")));
    QVERIFY(links.mkpath(QStringLiteral("folder/below")));

    QVERIFY(t->start());
    QStringList wanted;
    for (const QFileInfo& picture : there) {
        wanted.append(picture.fileName());
        QCOMPARE(QFileInfo(links.filePath(picture.fileName())).symLinkTarget(), picture.filePath());
    }
    QStringList found = links.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    found.removeOne(QStringLiteral("folder"));
    QCOMPARE(found, wanted);
    QVERIFY(links.exists(QStringLiteral(".hidden")) &&
            links.exists(QStringLiteral("folder/below")));
    QVERIFY(QFile::exists(elsewhere));
    QCOMPARE(QDir(t->root.path("/usr/lib/fonts")).entryList(QDir::Files | QDir::System).size(), 5);
    // What was right has not been written once more.
    struct stat after {};
    QCOMPARE(::lstat(QFile::encodeName(kept).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
}

void ShellTest::everyChangeOfSettingsCounts_data() {
    QTest::addColumn<int>("by");
    QTest::newRow("the controller") << 0;
    QTest::newRow("a screen") << 1;
    QTest::newRow("the management service") << 2;
}

void ShellTest::everyChangeOfSettingsCounts() {
    QFETCH(int, by);
    QVERIFY(t->tell("status 2"));
    QVERIFY(t->tell("settings screen.menuTimeout 0"));
    QTRY_COMPARE(int(window()->getWorkMode()), 2);
    QVERIFY(t->settle());
    auto* service = window()->managementLink();
    service->setConnected(true);
    window()->changeWindow(QStringLiteral("liveWindow"));
    QVERIFY(t->find("enrollButton") != nullptr);
    window()->StartMenuTimer();

    _gui_menu_ record = window()->menuRecord();
    record.setup.operation = Operation::Meals;
    record.setup.readerMode = 1;
    record.setup.serviceMode = 1;
    record.setup.alarmMode = 2;
    record.setup.language = 1;
    record.registration.on = 0;
    record.network.checkPeriod = 77;
    record.screen.menuTimeout = 1;
    if (by == 0) {
        window()->sendTestPacket(command::SettingsChanged, sizeof record,
                                 reinterpret_cast<const char*>(&record));
    } else if (by == 1) {
        window()->SetGuiMenu(&record);
    } else {
        const _gui_menu_ before = window()->menuRecord();
        Device_Setup_Parameter order;
        for (std::size_t i = 0; i < sizeof record; ++i) {
            const auto byte = reinterpret_cast<const std::uint8_t*>(&record)[i];
            if (byte != reinterpret_cast<const std::uint8_t*>(&before)[i])
                order.bytes.push_back({i, byte});
        }
        window()->sendCommand_ReceiveNetDeviceSetting(QVariant::fromValue(order));
    }
    const _gui_menu_ now = window()->menuRecord();
    QCOMPARE(memcmp(&now, &record, sizeof now), 0);
    QCOMPARE(window()->getWorkMode(), WorkMode::Lunch);
    QCOMPARE(window()->getReaderMode(), ReaderMode::Out);
    QCOMPARE(window()->getServiceMode(), ServiceMode::OutOfService);
    QCOMPARE(window()->getAlarmMode(), AlarmMode::Disarm);
    QVERIFY(!service->connected());
    QCOMPARE(window()->findChild<MenuTimer*>()->seconds(), 20);
    QVERIFY(t->find("enrollButton") == nullptr);
    QVERIFY(t->reads(QStringLiteral("Lunch")));
    // The same record once more changes nothing: neither does what was set by hand since.
    window()->setAlarmMode(AlarmMode::Arm);
    service->setConnected(true);
    window()->sendTestPacket(command::SettingsChanged, sizeof record,
                             reinterpret_cast<const char*>(&record));
    QCOMPARE(window()->getAlarmMode(), AlarmMode::Arm);
    QVERIFY(service->connected());
}

void ShellTest::languageOfTheSettings() {
    // A screen that is there already takes the new texts when it comes up next.
    window()->changeWindow(QStringLiteral("enviWindow"));
    QVERIFY(reads(QStringLiteral("환경 설정")));
    window()->changeWindow(QStringLiteral("stayWindow"));
    for (const auto& [number, text] :
         {std::pair(1, "Environment"), std::pair(2, "環境設定"), std::pair(0, "환경 설정")}) {
        QVERIFY(t->tell(QStringLiteral("settings setup.language %1").arg(number)));
        QTRY_COMPARE(int(window()->menuRecord().setup.language), number);
        window()->changeWindow(QStringLiteral("enviWindow"));
        QVERIFY2(reads(QString::fromUtf8(text)), text);
        window()->changeWindow(QStringLiteral("stayWindow"));
    }
    // A number that the list does not have leaves the language as it is.
    QVERIFY(t->tell("settings setup.language 200"));
    QTRY_COMPARE(int(window()->menuRecord().setup.language), 200);
    QCOMPARE(window()->getScript(QStringLiteral("TopMenu_OK")).script, QStringLiteral("확인"));
    // Nothing that the language may need later has been removed meanwhile.
    QVERIFY(QFile::exists(t->root.path("/zel1/image/img/fonts/logotypejp_mp_m_1.1.ttf")));
}

void ShellTest::languageAtTheUsersWish() {
    const auto link = [this](const char* name) {
        return QFileInfo(t->root.path("/usr/lib/fonts/") + QLatin1String(name));
    };
    const auto file = [this](const char* name) {
        return QFileInfo(t->root.path("/zel1/image/img/fonts/") + QLatin1String(name));
    };
    constexpr char kMedium[] = "logotypejp_mp_m_1.1.ttf";
    constexpr char kBold[] = "logotypejp_mp_b_1.1.ttf";
    QVERIFY(!link(kMedium).isSymLink());

    window()->changeLanguage(3);
    window()->changeLanguage(-1);
    QCOMPARE(window()->getScriptFontFamily(), QStringLiteral("Noto Sans CJK KR"));
    window()->changeLanguage(2);
    QCOMPARE(window()->getScriptFontFamily(), QStringLiteral("Noto Sans CJK JP"));
    for (const char* name : {kMedium, kBold})
        QCOMPARE(link(name).symLinkTarget(), file(name).filePath());
    QVERIFY(file(kMedium).exists() && file(kBold).exists());

    // The files go, not the links, and only while the medium one is there.
    QVERIFY(QFile::rename(file(kMedium).filePath(), t->root.path("/kept")));
    window()->changeLanguage(1);
    QVERIFY(file(kBold).exists());
    QVERIFY(QFile::rename(t->root.path("/kept"), file(kMedium).filePath()));
    window()->changeLanguage(0);
    QVERIFY(!file(kMedium).exists() && !file(kBold).exists());
    QVERIFY(link(kMedium).isSymLink() && link(kBold).isSymLink());
    QCOMPARE(window()->getScript(QStringLiteral("TopMenu_OK")).script, QStringLiteral("확인"));
    window()->changeWindow(QStringLiteral("enviWindow"));
    QVERIFY(reads(QStringLiteral("환경 설정")));
}

void ShellTest::screensChangeOrNot() {
    QSignalSpy changes(window(), &MainWindow::signal_changeWindow);
    QCOMPARE(window()->changeWindow(QStringLiteral("stayWindow")), -1);
    QCOMPARE(window()->changeWindow(QStringLiteral("StayWindow")), 1);
    QCOMPARE(changes.count(), 0);
    QVERIFY(window()->getActivateWindowForm()->isVisible());
    window()->setChangeWindowFlag(false);
    QCOMPARE(window()->changeWindow(QStringLiteral("enviWindow")), -1);
    QCOMPARE(window()->changeWindow(QStringLiteral("StayWindow")), -1);
    QCOMPARE(t->title(), QStringLiteral("stayWindow"));
    window()->setChangeWindowFlag(true);
    QCOMPARE(window()->changeWindow(QStringLiteral("enviWindow"), 7), 0);
    QCOMPARE(t->title(), QStringLiteral("enviWindow"));
    QCOMPARE(changes.count(), 1);
    for (const WindowForm* screen : window()->windowList())
        QCOMPARE(screen->isVisible(), screen == window()->getActivateWindowForm());
}

void ShellTest::aFrozenScreenStays() {
    auto* dispatch = window()->findChild<MessageDispatch*>();
    const QByteArray result(sizeof(RecognitionResult), '\0');
    const DeviceMessage messages[] = {
        {command::RecognitionFailed, 1, command::failure::ByCard, 0, nullptr},
        {command::RecognitionFailed, 1, command::failure::ByFace, 0, nullptr},
        {command::ShowLiveView, 0, 0, 0, nullptr},
        {command::Recognised, 0, 0, sizeof(RecognitionResult), result.constData()},
        {command::FirmwareUpdateAnswer, 0, 0, 0, nullptr},
        {command::FirmwareUpdateAnswer, 1, 0, 0, nullptr},
    };
    for (const WindowForm* screen : window()->windowList()) {
        const QString title = screen->getTitle();
        runFor(title);
        window()->changeWindow(title);
        QCOMPARE(t->title(), title);
        window()->setChangeWindowFlag(false);
        for (const DeviceMessage& message : messages)
            dispatch->dispatch(message);
        window()->startEnrolment();
        window()->asAdministrator([] {});
        emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("liveWindow"));
        QVERIFY(screen->isVisible());
        QCOMPARE(t->title(), title);
        window()->setChangeWindowFlag(true);
    }
    // The time-out was only put off.
    window()->changeWindow(QStringLiteral("enviWindow"));
    window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
    window()->setChangeWindowFlag(false);
    emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
    window()->setChangeWindowFlag(true);
    QVERIFY(t->shows("stayWindow"));
}

void ShellTest::theMenuIsTheAdministrators() {
    const QStringList everybodys{
        QStringLiteral("bootWindow"),         QStringLiteral("stayWindow"),
        QStringLiteral("liveWindow"),         QStringLiteral("recognizeWindow"),
        QStringLiteral("inputSubWindow"),     QStringLiteral("InputDestinationForm"),
        QStringLiteral("InputAdminPassword"), QStringLiteral("upgradingWindow")};
    const QString password = QStringLiteral("InputAdminPassword");
    QVERIFY(locked());
    for (const WindowForm* screen : window()->windowList()) {
        const QString title = screen->getTitle();
        runFor(title);
        window()->changeWindow(QStringLiteral("inputSubWindow"));
        window()->changeWindow(QStringLiteral("stayWindow"));
        if (everybodys.contains(title)) {
            window()->changeWindow(title);
            QCOMPARE(t->title(), title);
            continue;
        }
        QVERIFY2(window()->changeWindow(title, 7) == -1, qPrintable(title));
        QCOMPARE(t->title(), password);
        // Once it has been entered the way is free, until somebody else may stand there.
        enterPassword();
        QCOMPARE(t->title(), title);
        window()->changeWindow(QStringLiteral("upgradingWindow"));
        for (const char* end : {"stayWindow", "liveWindow", "recognizeWindow"}) {
            QCOMPARE(window()->changeWindow(title), 0);
            window()->changeWindow(QLatin1String(end));
            window()->changeWindow(title);
            QCOMPARE(t->title(), password);
            enterPassword();
            QCOMPARE(t->title(), title);
            window()->changeWindow(QStringLiteral("inputSubWindow"));
        }
    }
    // A password that is set while somebody is at work does not throw them out; one that nobody
    // knows yet lets nobody in, and one that is taken back needs not be entered.
    QVERIFY(t->tell("settings setup.adminPassword \"\"") && t->settle());
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    QVERIFY(locked());
    t->tap("menuUserTile");
    QCOMPARE(t->title(), QStringLiteral("userMenuWindow"));
    t->window.reset();
    t->window = std::make_unique<MainWindow>();
    window()->show();
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    QCOMPARE(t->title(), password);
    QVERIFY(!t->find("passwordField")->isEnabled());
    QTRY_VERIFY(t->find("passwordField")->isEnabled());
    QVERIFY(t->tell("settings setup.adminPassword \"\""));
    QVERIFY(t->shows("zelMenuWindow"));
}

void ShellTest::enrolmentAtTheDoor_data() {
    QTest::addColumn<bool>("byService");
    QTest::newRow("the live view's button") << false;
    QTest::newRow("the service's order") << true;
}

void ShellTest::enrolmentAtTheDoor() {
    QFETCH(bool, byService);
    QVERIFY(locked());
    const QStringList steps{
        QStringLiteral("userEnroll_IDWindow"), QStringLiteral("userEnroll_cardTagWindow"),
        QStringLiteral("userEnroll_reCardTagWindow"), QStringLiteral("userEnroll_FaceWindow")};
    const auto begin = [&] {
        window()->changeWindow(QStringLiteral("liveWindow"));
        if (byService)
            window()->startEnrolment();
        else
            t->tap("enrollButton");
        QCOMPARE(t->title(), QStringLiteral("userEnroll_qualWindow"));
    };
    for (const QString& step : steps) {
        begin();
        QCOMPARE(window()->changeWindow(step), 0);
    }
    // Out of the steps the way leads to nothing of the administrator's.
    window()->changeWindow(QStringLiteral("userEnrollMenuWindow"));
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
    window()->changeWindow(steps.first());
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
    // Nor does it when an administrator was there before.
    enterPassword();
    QCOMPARE(t->title(), steps.first());
    window()->startEnrolment();
    QCOMPARE(t->title(), QStringLiteral("userEnroll_qualWindow"));
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
}

void ShellTest::requestsAskForThePassword() {
    int done = 0;
    const auto request = [&done] { ++done; };
    window()->asAdministrator(request);
    QCOMPARE(done, 1);
    QVERIFY(locked());
    window()->changeWindow(QStringLiteral("liveWindow"));
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    // It takes the place of what the password was wanted for before.
    window()->asAdministrator(request);
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
    QCOMPARE(done, 1);
    enterPassword();
    QCOMPARE(done, 2);
    QCOMPARE(t->title(), QStringLiteral("stayWindow"));
    // Who goes away has not agreed.
    window()->asAdministrator(request);
    t->tap("backButton");
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    enterPassword();
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    QCOMPARE(done, 2);
    window()->asAdministrator(request);
    QCOMPARE(done, 3);
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
}

void ShellTest::menuTimesOut() {
    const auto* timer = window()->findChild<MenuTimer*>();
    for (const auto& [commissioned, choice, seconds] :
         {std::tuple(1, 0, 10), std::tuple(1, 2, 30), std::tuple(1, 3, 0), std::tuple(1, 9, 0),
          std::tuple(0, 0, 0)}) {
        QVERIFY(t->tell(QStringLiteral("settings commissioned %1").arg(commissioned)));
        QVERIFY(t->tell(QStringLiteral("settings screen.menuTimeout %1").arg(choice)));
        QVERIFY(t->settle());
        window()->changeWindow(QStringLiteral("enviWindow"));
        QCOMPARE(timer->isRunning(), seconds > 0);
        if (seconds > 0)
            QCOMPARE(timer->seconds(), seconds);
        window()->changeWindow(QStringLiteral("stayWindow"));
        QVERIFY(!timer->isRunning());
    }

    QVERIFY(t->tell("settings commissioned 1"));
    QVERIFY(t->settle());
    window()->changeWindow(QStringLiteral("enviSoundWindow"));
    QVERIFY(t->settle());
    t->frames.clear();
    window()->StartMenuTimer(1, QStringLiteral("liveWindow"));
    QTRY_COMPARE(t->title(), QStringLiteral("liveWindow"));
    QVERIFY(t->settle());
    QCOMPARE(t->frames.value(0), QStringLiteral("1905 1 0"));
}

void ShellTest::everyTouchKeepsTheScreen() {
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    auto* tile = t->find("menuUserTile");
    tile->setEnabled(false);  // a touch that leads nowhere is a touch all the same
    const QPoint place = tile->mapTo(window(), tile->rect().center());
    t->tap(place);  // the finger is there from now on, and does not move
    window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
    for (int i = 0; i < 3; ++i) {
        QTest::qWait(600);
        t->tap(place);
        QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    }
    // One long press: its end counts as well.
    QTest::mousePress(window()->windowHandle(), Qt::LeftButton, {}, place);
    QTest::qWait(600);
    QTest::mouseRelease(window()->windowHandle(), Qt::LeftButton, {}, place);
    QTest::qWait(600);
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    QTRY_COMPARE(t->title(), QStringLiteral("stayWindow"));
}

void ShellTest::factoryTests() {
    const QPoint titleText(90, 36);
    QVERIFY(t->tell("settings screen.menuTimeout 0"));
    QTRY_COMPARE(int(window()->menuRecord().screen.menuTimeout), 0);
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    for (int i = 0; i < 4; ++i)
        t->tap(titleText);
    QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, QPoint(20, 790));
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    // Taps that follow quickly come as double clicks.
    QTest::mouseDClick(window()->windowHandle(), Qt::LeftButton, {}, titleText);
    QCOMPARE(t->title(), QStringLiteral("factoryMenuWindow"));

    const auto* timer = window()->findChild<MenuTimer*>();
    QVERIFY(!timer->isRunning());
    t->tap("factoryLedRow");
    QCOMPARE(t->title(), QStringLiteral("f_ledTestWindow"));
    t->tap("homeButton");
    // From then on no screen times out.
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    QVERIFY(!timer->isRunning());

    // The board tells each step of the I/O test done, and the test goes on to its end.
    QVERIFY(t->settle());
    t->frames.clear();
    QVERIFY(t->tell("frame 4015 0 0"));
    QVERIFY(t->sends("4014 1 0"));
    QCOMPARE(t->frames, QStringList({QStringLiteral("4014 0 1"), QStringLiteral("4014 0 2"),
                                     QStringLiteral("4014 1 0")}));
}

void ShellTest::faultsCome() {
    QVERIFY(t->tell("fault tamper touch network"));
    QTRY_VERIFY(t->says("Popup_ErrTamper"));
    const QString text = t->dialogText();
    int last = -1;
    for (const char* key : {"Popup_ErrCtouch", "Popup_ErrNetwork", "Popup_ErrTamper"}) {
        const int at = text.indexOf(window()->getScript(QLatin1String(key)).script);
        QVERIFY2(at > last, key);
        last = at;
    }
    QVERIFY(t->find("dialogOkButton") != nullptr);
    QVERIFY(t->find("dialogCancelButton") == nullptr);
    QVERIFY(t->tell("fault network"));
    QTRY_VERIFY(t->says("Popup_ErrNetwork") && !t->says("Popup_ErrTamper"));
    QVERIFY(t->tell("fault none"));
    QTRY_COMPARE(t->dialogText(), QString());

    // It stays until somebody has seen it, whatever comes up; only a result at the door lies above
    // it.
    QVERIFY(t->tell("fault tamper"));
    QTRY_VERIFY(t->says("Popup_ErrTamper"));
    for (const char* screen : {"bootWindow", "recognizeWindow", "usbMenuWindow", "liveWindow"}) {
        window()->changeWindow(QLatin1String(screen));
        QCOMPARE(t->says("Popup_ErrTamper"), qstrcmp(screen, "recognizeWindow") != 0);
    }
    window()->ShowPopup(2, 5);
    window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
    QVERIFY(t->shows("stayWindow"));
    QVERIFY(t->says("Popup_ErrTamper"));
    QVERIFY(t->tell("settings setup.language 2"));
    QTRY_COMPARE(int(window()->menuRecord().setup.language), 2);
    QVERIFY(t->says("Popup_ErrTamper"));
    t->tap("dialogOkButton");
    QVERIFY(t->says("ListItem_NetworkConfigurationFailed"));
    t->tap("dialogOkButton");
    QCOMPARE(t->dialogText(), QString());
    QCOMPARE(t->title(), QStringLiteral("stayWindow"));
}

void ShellTest::reportsComeUp() {
    const struct {
        QString frame;
        const char* key;
        bool isError;
        const char* screen = "enviWindow";
    } reports[] = {
        {QStringLiteral("2924 1 0"), "Error_MaxUsersExcceeded", true},
        {QStringLiteral("2924 2 0"), "Error_EnrollingUsers", true},
        {QStringLiteral("2924 9 0"), "Error_NoResponse", true},
        {QStringLiteral("2931 0 0"), "ListItem_UserDeleted", false},
        {QStringLiteral("2931 1 0"), "ListItem_FailedDeleted", true},
        {QStringLiteral("3039 0 0"), "ListItem_LogStoreEmptied", false},
        {QStringLiteral("3039 1 0"), "ListItem_LogStoreNearlyFull", false},
        {QStringLiteral("3039 7 0"), "ListItem_LogStoreNearlyFull", false},
        {QStringLiteral("2990 0 0"), "ListItem_FwRestart", false, "upgradingWindow"},
        {QStringLiteral("2990 1 0"), "ListItem_FwUpgradeFailed", true, "stayWindow"},
    };
    for (const auto& report : reports) {
        window()->changeWindow(QStringLiteral("enviWindow"));
        QVERIFY(t->settle());
        t->frames.clear();
        QVERIFY(t->tell(QStringLiteral("frame ") + report.frame));
        QTRY_VERIFY2(t->says(report.key), report.key);
        QCOMPARE(t->title(), QLatin1String(report.screen));
        QVERIFY(t->settle());
        QCOMPARE(t->sent("1908 0 0 cb 00") >= 0, report.isError);
        t->tap("dialogOkButton");
        QVERIFY(!t->says(report.key));
        QVERIFY(t->settle());
        QCOMPARE(t->sent("2032 0 0") >= 0, report.key == QByteArray("ListItem_LogStoreNearlyFull"));
    }
    // Emptied meanwhile, there is nothing left to ask for.
    DialogOverlay::closeAll(window());
    QVERIFY(t->tell("frame 3039 1 0"));
    QTRY_VERIFY(t->says("ListItem_LogStoreNearlyFull"));
    QVERIFY(t->tell("frame 3039 0 0"));
    QTRY_VERIFY(t->says("ListItem_LogStoreEmptied"));
    t->tap("dialogOkButton");
    QCOMPARE(t->dialogText(), QString());
}

void ShellTest::oldLogsGoAtTheAdministratorsWord() {
    QVERIFY(locked());
    const auto agree = [this] {
        t->frames.clear();
        return t->tell("frame 3039 1 0") &&
               QTest::qWaitFor([this] { return t->says("ListItem_LogStoreNearlyFull"); }) &&
               (t->tap("dialogOkButton"), t->settle());
    };
    window()->changeWindow(QStringLiteral("liveWindow"));
    QVERIFY(agree());
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
    QVERIFY(t->sent("2011 0 0") >= 0 && t->sent("2010 0 0") >= 0);
    t->tap("backButton");
    QVERIFY(agree());
    QCOMPARE(t->sent("2032 0 0"), -1);
    enterPassword();
    QVERIFY(t->sends("2032 0 0"));
    QCOMPARE(t->title(), QStringLiteral("stayWindow"));
    // Who has entered it is not asked again.
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    enterPassword();
    QVERIFY(agree());
    QVERIFY(t->sends("2032 0 0"));
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
}

void ShellTest::anUpgradeIsNotLeftAlone() {
    QVERIFY(t->tell("settings screen.menuTimeout 0"));
    QVERIFY(t->settle());
    const auto* timer = window()->findChild<MenuTimer*>();
    for (int download = 0; download < 2; ++download) {
        window()->fwFileDownloadStart(QStringLiteral("archive"));
        QCOMPARE(t->title(), QStringLiteral("upgradingWindow"));
        QVERIFY(t->find("downloadText") && !t->find("restartText"));
        QVERIFY(!timer->isRunning());
        QVERIFY(t->tell("frame 2990 0 0"));
        QTRY_VERIFY(t->says("ListItem_FwRestart"));
        QVERIFY(t->find("restartText") && !t->find("downloadText"));
        QVERIFY(!timer->isRunning());
        t->tap("dialogOkButton");
    }
    // Without the controller nothing comes after a download.
    window()->fwFileDownloadStart(QStringLiteral("archive"));
    QVERIFY(t->tell("drop"));
    QTRY_VERIFY(!window()->linkUp());
    QVERIFY(!timer->isRunning());
    emit window()->downloads().finished();
    QVERIFY(timer->isRunning());
}

void ShellTest::recordedAccessLeavesTheScreenFree() {
    const QString event(int(sizeof(GUI_LOGDATA)) * 2, QLatin1Char('0'));
    const auto* strip = window()->findChild<NoticeStrip*>();
    QVERIFY(t->tell(QStringLiteral("frame 3020 0 0 ") + event));
    QTRY_VERIFY(strip->isVisible());
    QVERIFY(
        strip->text().startsWith(window()->getScript(QStringLiteral("Info_AccessEvent")).script));
    // Neither the next screen nor a finger takes it away.
    window()->changeWindow(QStringLiteral("enviWindow"));
    QVERIFY(!strip->visibleRegion().isEmpty());
    QVERIFY(window()->childAt(strip->geometry().center()) != strip);
    QTRY_VERIFY(!strip->isVisible());
}

void ShellTest::statusPopupsClose() {
    const auto* popup = window()->findChild<StatusPopup*>();
    window()->ShowPopup(1, 1);
    QVERIFY(t->says("Info_DownloadingSettingsManager"));
    // It stays above a screen that comes up meanwhile.
    window()->changeWindow(QStringLiteral("enviWindow"));
    QVERIFY(t->says("Info_DownloadingSettingsManager"));
    QVERIFY(popup->isShown());
    QTRY_VERIFY(!popup->isShown());
    QCOMPARE(popup->key(), 0);
    window()->ShowPopup(2, 0);
    QVERIFY(t->says("ListItem_NetworkConfigurationFailed"));
    QCOMPARE(popup->key(), 2);
    window()->ClosePopup();
    QVERIFY(!popup->isShown());
    window()->ShowPopup(3, 1);
    QVERIFY(!popup->isShown());
}

void ShellTest::statusChoosesTheMode() {
    for (const auto& [operation, status, mode] :
         {std::tuple(1, 1, 1), std::tuple(1, 4, 4), std::tuple(1, 5, 0), std::tuple(2, 1, 6),
          std::tuple(2, 4, 9), std::tuple(2, 0, 0)}) {
        QVERIFY(t->tell(QStringLiteral("settings setup.operation %1").arg(operation)));
        QVERIFY(t->tell(QStringLiteral("status %1").arg(status)));
        QTRY_COMPARE(int(window()->getWorkMode()), mode);
        QCOMPARE(window()->getSystemStatus(), status);
    }
    QCOMPARE(t->title(), QStringLiteral("stayWindow"));
}

void ShellTest::theServiceIsSought() {
    FakeService service;
    bool refuses = true;
    service.answer = [&refuses](const FakeService::Request&) {
        return FakeService::json(refuses ? R"({"resultCode":"9999"})" : R"({"resultCode":"1000"})");
    };
    const auto asked = [&service](const char* what) {
        int count = 0;
        for (const FakeService::Request& request : qAsConst(service.requests))
            count += request.line.contains(what);
        return count;
    };
    // A self-check means nothing to a service that is not in use.
    QVERIFY(t->tell("settings network.own.managerAddress 127.0.0.1"));
    QVERIFY(
        t->tell(QStringLiteral("settings network.own.managerPort %1").arg(service.serverPort())));
    QVERIFY(t->tell("settings network.connectPeriod 200"));
    QVERIFY(t->tell("settings network.checkPeriod 200"));
    QVERIFY(t->tell("fault none"));
    QVERIFY(t->settle());
    QCOMPARE(service.requests.size(), 0);

    QVERIFY(t->tell("settings network.useManager 1"));
    QVERIFY(t->tell("fault tamper"));
    QTRY_COMPARE(asked("/connect.do"), 1);
    QTRY_VERIFY(t->says("Popup_ErrTamper"));
    t->tap("dialogOkButton");
    QCOMPARE(t->dialogText(), QString());
    // Again by itself until it is reached, without the fault that somebody has seen; then the
    // connection is checked, and no more sought.
    refuses = false;
    QTRY_COMPARE_WITH_TIMEOUT(asked("/connect.do"), 2, SystemStatus::kRetryInterval + 3000);
    QCOMPARE(asked("/connection-check.do"), 0);
    QTRY_VERIFY(window()->managementLink()->connected());
    QVERIFY(t->sends("2039 0 0"));
    QCOMPARE(t->dialogText(), QString());
    QVERIFY(t->settle());
    t->frames.clear();
    QVERIFY(t->tell("fault none"));
    QTRY_COMPARE(asked("/connection-check.do"), 1);
    QVERIFY(t->sends("2039 0 0"));
    QVERIFY(t->sent("2040 0 0") >= 0 && t->sent("2040 0 0") < t->sent("2039 0 0"));
    QCOMPARE(asked("/connect.do"), 2);
}

void ShellTest::asksForWhatIsUnsent() {
    for (const char* screen : {"stayWindow", "f_ledTestWindow", "userEnroll_FaceWindow"}) {
        window()->changeWindow(QLatin1String(screen));
        for (const char* frame : {"frame 3021 0 0", "frame 3038 1 2 00"}) {
            QVERIFY(t->settle());
            t->frames.clear();
            QVERIFY(t->tell(frame));
            QVERIFY(t->sends("2039 0 0"));
            QCOMPARE(t->frames,
                     QStringList({QStringLiteral("2040 0 0"), QStringLiteral("2039 0 0")}));
        }
    }
    // So is what stayed behind while the service or the controller was away.
    const QStringList both{QStringLiteral("2040 0 0"), QStringLiteral("2039 0 0")};
    auto* service = window()->managementLink();
    QVERIFY(t->tell("settings network.useManager 1"));
    QTRY_VERIFY(window()->serviceInUse());
    for (int outage = 0; outage < 2; ++outage) {
        t->frames.clear();
        service->setConnected(false);
        service->setConnected(true);
        service->setConnected(true);
        QVERIFY(t->settle());
        QCOMPARE(t->frames, both);
    }
    QVERIFY(t->tell("drop"));
    QTRY_VERIFY(!window()->linkUp());
    service->setConnected(false);
    service->setConnected(true);
    t->frames.clear();
    window()->findChild<DeviceLink*>()->open(t->sim.port());
    QVERIFY(t->sends("2039 0 0"));
    QCOMPARE(t->frames.mid(0, 3), QStringList({QStringLiteral("1901 0 0")}) + both);
    QVERIFY(t->settle());
}

void ShellTest::routesLeadToScreens() {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const MessageRoute* route = findMessageRoute(static_cast<std::uint16_t>(code));
        if (route == nullptr)
            continue;
        const bool titled =
            route->rule == RouteRule::ActiveScreen || route->rule == RouteRule::NamedScreen;
        QCOMPARE(window()->getWindow(route->title) != nullptr, titled);
        QVERIFY(route->secondTitle.isNull() || window()->getWindow(route->secondTitle) != nullptr);
    }
}

void ShellTest::aShortRecordIsIgnored() {
    const _gui_menu_ before = window()->menuRecord();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("2907.*379.*380")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("2908.*0 .*380")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("6003.*3 .*4")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("status.*1 .*20")));
    QVERIFY(t->tell(QStringLiteral("frame 2907 0 0 ") + QString(379 * 2, QLatin1Char('f'))));
    QVERIFY(t->tell("frame 2908 0 0"));
    QVERIFY(t->tell("frame 6003 0 0 ffffff"));
    QVERIFY(t->tell("frame 2902 0 0 ff"));
    QVERIFY(t->settle());
    const _gui_menu_ after = window()->menuRecord();
    QCOMPARE(memcmp(&before, &after, sizeof before), 0);
    QCOMPARE(t->dialogText(), QString());
}

void ShellTest::theLinkComesBack() {
    window()->changeWindow(QStringLiteral("enviWindow"));
    QVERIFY(t->tell("drop"));
    QTRY_VERIFY(!t->sim.terminalConnected());
    QVERIFY(t->tell("settings setup.language 1"));
    t->tap("enviFaceTile");
    QCOMPARE(t->title(), QStringLiteral("enviFaceWindow"));
    t->frames.clear();
    // Rather than wait for the next attempt.
    window()->findChild<DeviceLink*>()->open(t->sim.port());
    QVERIFY(t->sends("1901 0 0"));
    QCOMPARE(t->sent("1901 0 0"), 0);
    QTRY_COMPARE(int(window()->menuRecord().setup.language), 1);
}

void ShellTest::ends_data() {
    QTest::addColumn<bool>("byController");
    QTest::newRow("the controller's order") << true;
    QTest::newRow("the window is closed") << false;
}

void ShellTest::ends() {
    QFETCH(bool, byController);
    window()->ShowPopup(1, 0);
    window()->setChangeWindowFlag(false);
    QTimer::singleShot(0, this, [this, byController] {
        if (byController)
            t->tell("quit-gui");
        else
            window()->close();
    });
    QTimer::singleShot(5000, this, [] { QCoreApplication::exit(1); });
    QCOMPARE(QApplication::exec(), 0);
    QVERIFY(!window()->isVisible());
    if (byController)
        QVERIFY(t->sends("1902 0 0"));
}

QTEST_MAIN(ShellTest)
#include "shell_test.moc"
