#include <sys/stat.h>

#include <QDir>

#include "app/management_link.h"
#include "app/menu_timer.h"
#include "app/message_routes.h"
#include "app/record_store.h"
#include "app/settings_entrance.h"
#include "app/status_popup.h"
#include "app/system_status.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "tests/cloud_test_support.h"
#include "tests/support/driven_test.h"
#include "ui/notice_strip.h"

/// The shell around the screens, as a finger on the panel, the controller and the management
/// service see it.
class ShellTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        t->root.write("/mnt/data/rebootchkr", {});
        words({"settings commissioned 1", "settings setup.language 0",
               "settings screen.menuTimeout 3", "settings network.useManager 0",
               "settings setup.adminPassword \"\"", "settings setup.operation 1",
               "settings setup.readerMode 0", "settings setup.serviceMode 0",
               "settings setup.alarmMode 0", "settings registration.on 1", "status 0",
               "fault none"});
        QVERIFY(t->start());
        sent();
    }

    void firstScreen() {
        const std::tuple<bool, int, const char*> rows[] = {
            {true, 0, "stayWindow"}, {false, 1, "stayWindow"}, {false, 0, "setupMenuWindow"}};
        for (const auto& [rebooted, commissioned, last] : rows) {
            if (!rebooted)
                QFile::remove(t->root.path("/mnt/data/rebootchkr"));
            set("commissioned", commissioned);
            QVERIFY(t->start());
            QCOMPARE(t->title(), QLatin1String(rebooted ? "stayWindow" : "bootWindow"));
            sent();
            QVERIFY(t->shows(last));
            const QString frames = sentLine();
            QVERIFY2(rebooted || frames.startsWith(QLatin1String("2011 0 0|2003 1 0|2010 0 0")),
                     qPrintable(frames));
            QVERIFY(!window()->findChild<MenuTimer*>()->isRunning());
        }
        // Also when its controller comes late.
        word("silent 1901");
        t->window.reset();
        t->window = std::make_unique<MainWindow>();
        t->window->show();
        QVERIFY(t->shows("bootWindow") && t->shows("stayWindow"));
        word("settings setup.operation 0");
        QVERIFY(t->shows("setupMenuWindow"));
    }

    void upgradeIsToldOnce() {
        QVERIFY(QFile::remove(t->root.path("/mnt/data/rebootchkr")));
        for (const auto& [marker, key] :
             {std::pair("/mnt/data/fw_upgrade_ok", "Info_UpgradeDone"),
              {"/mnt/data/fw_upgrade_fail", "ListItem_FwUpgradeFailed"}}) {
            t->root.write(marker, {});
            for (const bool told : {true, false}) {
                QVERIFY(t->start());
                QCOMPARE(t->title(), QStringLiteral("bootWindow"));
                QCOMPARE(t->readsKey(key), told);
                QVERIFY(!QFile::exists(t->root.path(marker)));
            }
        }
    }

    void linksAreRenewed() {
        const QDir links(t->root.path("/usr/img"));
        const QFileInfoList pictures = QDir(t->root.path("/zel1/image/img"))
                                           .entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
        QVERIFY(pictures.size() > 20);
        const auto link = [&](int number) {
            return links.filePath(pictures.at(number).fileName());
        };
        const auto written = [&] {
            struct stat is {};
            ::lstat(QFile::encodeName(link(0)).constData(), &is);
            return is.st_ctim.tv_sec * 1000000000LL + is.st_ctim.tv_nsec;
        };
        const auto before = written();
        const QString elsewhere = t->root.path("/elsewhere");
        for (const char* own :
             {"/elsewhere", "/usr/img/.hidden", "/usr/img/stale.png", "/usr/lib/fonts/stale.otf"})
            t->root.write(own, "x");
        QVERIFY(QFile::remove(link(1)) && QFile::link(elsewhere, link(1)) &&
                QFile::remove(link(2)));
        QVERIFY(QFile::link(t->root.path("/nowhere"), t->root.path("/usr/img/nowhere.png")));
        QVERIFY(QFile::link(elsewhere, t->root.path("/usr/lib/fonts/NotoSerif-Bold.ttf.old")));
        QVERIFY(links.mkpath(QStringLiteral("folder/below")));

        QVERIFY(t->start());
        QStringList wanted{QStringLiteral(".hidden")};
        for (int number = 0; number < pictures.size(); ++number) {
            wanted.append(pictures.at(number).fileName());
            QCOMPARE(QFileInfo(link(number)).symLinkTarget(), pictures.at(number).filePath());
        }
        QStringList found =
            links.entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
        QVERIFY(found.removeOne(QStringLiteral("folder")));
        QCOMPARE(found, wanted);
        QVERIFY(links.exists(QStringLiteral("folder/below")) && QFile::exists(elsewhere));
        QCOMPARE(QDir(t->root.path("/usr/lib/fonts")).entryList(QDir::Files | QDir::System).size(),
                 5);
        // What was right has not been written once more.
        QCOMPARE(written(), before);
    }

    /// By the controller, a screen and the management service.
    void everyChangeOfSettingsCounts() {
        for (const int by : {0, 1, 2}) {
            init();
            words({"status 2", "settings screen.menuTimeout 0"});
            QTRY_COMPARE(int(window()->getWorkMode()), 2);
            QVERIFY(t->settle());
            auto* service = window()->managementLink();
            service->setConnected(true);
            PLAYS(":liveWindow +enrollButton");
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
            const auto* bytes = reinterpret_cast<const char*>(&record);
            const auto receive = [&] {
                window()->sendTestPacket(command::SettingsChanged, sizeof record, bytes);
            };
            Device_Setup_Parameter order;
            for (std::size_t i = 0; i < sizeof record; ++i)
                order.bytes.push_back({i, static_cast<std::uint8_t>(bytes[i])});
            if (by == 0)
                receive();
            else if (by == 1)
                window()->SetGuiMenu(&record);
            else
                window()->sendCommand_ReceiveNetDeviceSetting(QVariant::fromValue(order));
            const _gui_menu_ now = window()->menuRecord();
            QCOMPARE(memcmp(&now, &record, sizeof now), 0);
            QCOMPARE(window()->getWorkMode(), WorkMode::Lunch);
            QCOMPARE(window()->getReaderMode(), ReaderMode::Out);
            QCOMPARE(window()->getServiceMode(), ServiceMode::OutOfService);
            QCOMPARE(window()->getAlarmMode(), AlarmMode::Disarm);
            QVERIFY(!service->connected());
            QCOMPARE(window()->findChild<MenuTimer*>()->seconds(), 20);
            PLAYS("-enrollButton =Lunch");
            // The same record once more changes nothing: neither does what was set by hand since.
            window()->setAlarmMode(AlarmMode::Arm);
            service->setConnected(true);
            receive();
            QCOMPARE(window()->getAlarmMode(), AlarmMode::Arm);
            QVERIFY(service->connected());
        }
    }

    void settingsCountOnce() {
        RecordStore records;
        SettingsEntrance settings(records, nullptr);
        QByteArray changes;
        connect(&settings, &SettingsEntrance::changed, this, [&](const SettingsChange& change) {
            for (const bool is :
                 {change.first, change.in(&_gui_menu_::sound), change.in(&_gui_menu_::screen),
                  change.in(&_gui_menu_::setup, &SetupBlock::operation)})
                changes.append(is ? '1' : '0');
        });
        _gui_menu_ record{};
        QVERIFY(!settings.arrived());
        // The first record counts even if it says nothing new.
        settings.receive(record);
        QVERIFY(settings.arrived());
        settings.receive(record);
        record.sound.volume = 3;
        settings.store(record);
        settings.receive(record);
        QCOMPARE(changes, QByteArray("11110100"));
        QCOMPARE(int(records.menu().sound.volume), 3);
    }

    void languageOfTheSettings() {
        // A screen that is there already takes the new texts when it comes up next.
        PLAYS(
            ":enviWindow =환경_설정 :stayWindow !settings_setup.language_1 "
            ":enviWindow =Environment :stayWindow !settings_setup.language_2 "
            ":enviWindow =環境設定 :stayWindow !settings_setup.language_0 :enviWindow =환경_설정");
        // A number that the list does not have leaves the language as it is.
        word("settings setup.language 200");
        QTRY_COMPARE(int(window()->menuRecord().setup.language), 200);
        QCOMPARE(t->text("TopMenu_OK"), QStringLiteral("확인"));
        // Nothing that the language may need later has been removed meanwhile.
        QVERIFY(QFile::exists(t->root.path("/zel1/image/img/fonts/logotypejp_mp_m_1.1.ttf")));
    }

    void languageAtTheUsersWish() {
        const QString folder = t->root.path("/zel1/image/img/fonts/");
        const QString medium = QStringLiteral("logotypejp_mp_m_1.1.ttf");
        const auto fonts = [&] {
            QString all;
            for (const QString& font : {medium, QStringLiteral("logotypejp_mp_b_1.1.ttf")}) {
                const QFileInfo link(t->root.path("/usr/lib/fonts/") + font);
                all += QLatin1String(link.symLinkTarget() == folder + font ? "link " : "- ");
                all += QLatin1String(QFile::exists(folder + font) ? "file " : "- ");
            }
            return all;
        };
        QCOMPARE(fonts(), QStringLiteral("- file - file "));
        window()->changeLanguage(3);
        window()->changeLanguage(-1);
        QCOMPARE(window()->getScriptFontFamily(), QStringLiteral("Noto Sans CJK KR"));
        window()->changeLanguage(2);
        QCOMPARE(window()->getScriptFontFamily(), QStringLiteral("Noto Sans CJK JP"));
        QCOMPARE(fonts(), QStringLiteral("link file link file "));

        // The files go, not the links, and only while the medium one is there.
        QVERIFY(QFile::rename(folder + medium, t->root.path("/kept")));
        window()->changeLanguage(1);
        QCOMPARE(fonts(), QStringLiteral("link - link file "));
        QVERIFY(QFile::rename(t->root.path("/kept"), folder + medium));
        window()->changeLanguage(0);
        QCOMPARE(fonts(), QStringLiteral("link - link - "));
        PLAYS(":enviWindow =환경_설정");
    }

    void faultsCome() {
        PLAYS("!fault_tamper_touch_network ?Popup_ErrTamper +dialogOkButton -dialogCancelButton");
        int last = -1;
        for (const char* key : {"Popup_ErrCtouch", "Popup_ErrNetwork", "Popup_ErrTamper"}) {
            const int at = t->dialogText().indexOf(t->text(key));
            QVERIFY2(at > last, key);
            last = at;
        }
        PLAYS("!fault_network -?Popup_ErrTamper ?Popup_ErrNetwork");
        // What there is no text for is the service's to know.
        PLAYS("!frame_6003_0_0_0b000000 -dialogOkButton !fault_none -?");

        // It stays until somebody has seen it, whatever comes up; only a result at the door lies
        // above it.
        PLAYS(
            "!fault_tamper ?Popup_ErrTamper :bootWindow ?Popup_ErrTamper "
            ":recognizeWindow -?Popup_ErrTamper :usbMenuWindow ?Popup_ErrTamper "
            ":liveWindow ?Popup_ErrTamper");
        window()->ShowPopup(2, 5);
        window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
        PLAYS(
            "@stayWindow ?Popup_ErrTamper !settings_setup.language_2 ?Popup_ErrTamper "
            "dialogOkButton ?ListItem_NetworkConfigurationFailed dialogOkButton -? @stayWindow");
        QCOMPARE(int(window()->menuRecord().setup.language), 2);
        // What a fault covers does not come back when its time is over.
        PLAYS("!fault_none");
        window()->showPopupText(QStringLiteral("Info_OtherOperation"));
        PLAYS(
            "?Info_OtherOperation !fault_tamper ?Popup_ErrTamper *autoCloseTimer5000 "
            "dialogOkButton -?");
    }

    void reportsComeUp() {
        const std::pair<const char*, const char*> reports[] = {
            {"!frame_2924_1_0 @enviWindow ?Error_MaxUsersExcceeded", "1908 0 0 cb 00"},
            {"!frame_2924_2_0 @enviWindow ?Error_EnrollingUsers", "1908 0 0 cb 00"},
            {"!frame_2924_9_0 @enviWindow ?Error_NoResponse", "1908 0 0 cb 00"},
            {"!frame_2931_0_0 @enviWindow ?ListItem_UserDeleted", ""},
            {"!frame_2931_1_0 @enviWindow ?ListItem_FailedDeleted", "1908 0 0 cb 00"},
            {"!frame_3039_0_0 @enviWindow ?ListItem_LogStoreEmptied", ""},
            {"!frame_3039_1_0 @enviWindow ?ListItem_LogStoreNearlyFull", "2032 0 0"},
            {"!frame_3039_7_0 @enviWindow ?ListItem_LogStoreNearlyFull", "2032 0 0"},
            {"!frame_2990_0_0 @upgradingWindow ?ListItem_FwRestart", ""},
            {"!frame_2990_1_0 @stayWindow ?ListItem_FwUpgradeFailed", "1908 0 0 cb 00"},
        };
        for (const auto& [report, frames] : reports) {
            PLAYS(QByteArray(":enviWindow ") + report + " -^2032 dialogOkButton -" +
                  strchr(report, '?'));
            QCOMPARE(sentLine("(1908 0 0 cb|2032)"), QLatin1String(frames));
        }
        // Emptied meanwhile, there is nothing left to ask for.
        PLAYS(
            "!frame_3039_1_0 ?ListItem_LogStoreNearlyFull !frame_3039_0_0 "
            "?ListItem_LogStoreEmptied dialogOkButton -?");
    }

    void oldLogsGoAtTheAdministratorsWord() {
        QVERIFY(t->lock());
        t->phrases["AGREE"] = "!frame_3039_1_0 ?ListItem_LogStoreNearlyFull dialogOkButton";
        PLAYS(":liveWindow AGREE @InputAdminPassword ^2011_0_0 ^2010_0_0 backButton AGREE -^2032");
        t->enterPassword();
        PLAYS("^2032_0_0 @stayWindow :zelMenuWindow");
        // Who has entered it is not asked again.
        t->enterPassword();
        PLAYS("AGREE ^2032_0_0 @zelMenuWindow");
    }

    void anUpgradeIsNotLeftAlone() {
        word("settings screen.menuTimeout 0");
        QVERIFY(t->settle());
        for (int download = 0; download < 2; ++download) {
            window()->fwFileDownloadStart(QStringLiteral("archive"));
            PLAYS(
                "@upgradingWindow +downloadText -restartText ~ "
                "!frame_2990_0_0 ?ListItem_FwRestart +restartText -downloadText ~ dialogOkButton");
        }
        // Without the controller nothing comes after a download.
        window()->fwFileDownloadStart(QStringLiteral("archive"));
        PLAYS("!drop ~");
        emit window()->downloads().finished();
        PLAYS("-~");
    }

    void recordedAccessLeavesTheScreenFree() {
        const QString event(int(sizeof(GUI_LOGDATA)) * 2, QLatin1Char('0'));
        const auto* strip = window()->findChild<NoticeStrip*>();
        QVERIFY(t->tell(QStringLiteral("frame 3020 0 0 ") + event));
        QTRY_VERIFY(strip->isVisible());
        // Neither the next screen nor a finger takes it away.
        window()->changeWindow(QStringLiteral("enviWindow"));
        QVERIFY(!strip->visibleRegion().isEmpty());
        QVERIFY(window()->childAt(strip->geometry().center()) != strip);
        QTRY_VERIFY(!strip->isVisible());
    }

    void statusPopupsClose() {
        const auto* popup = window()->findChild<StatusPopup*>();
        window()->ShowPopup(1, 1);
        // It stays above a screen that comes up meanwhile.
        PLAYS("?Info_DownloadingSettingsManager :enviWindow ?Info_DownloadingSettingsManager");
        QTRY_VERIFY(!popup->isShown());
        QCOMPARE(popup->key(), 0);
        window()->ShowPopup(2, 0);
        PLAYS("?ListItem_NetworkConfigurationFailed");
        QCOMPARE(popup->key(), 2);
        window()->ClosePopup();
        QVERIFY(!popup->isShown());
        window()->ShowPopup(3, 1);
        QVERIFY(!popup->isShown());
    }

    void theServiceIsSought() {
        FakeService service;
        bool refuses = true;
        QByteArray asked;
        service.answer = [&](const FakeService::Request& request) {
            for (const char* what : {"connect", "connection-check"}) {
                if (request.line.contains(QByteArray("/") + what + ".do"))
                    asked += QByteArray(what) + ' ';
            }
            return FakeService::json(refuses ? R"({"resultCode":"9999"})"
                                             : R"({"resultCode":"1000"})");
        };
        // A self-check means nothing to a service that is not in use.
        set("network.own.managerPort", service.serverPort());
        words({"settings network.own.managerAddress 127.0.0.1",
               "settings network.connectPeriod 200", "settings network.checkPeriod 200",
               "fault none"});
        QVERIFY(t->settle());
        QCOMPARE(service.requests.size(), 0);

        words({"settings network.useManager 1", "fault tamper"});
        QTRY_COMPARE(asked, QByteArray("connect "));
        PLAYS("?Popup_ErrTamper dialogOkButton -?");
        // Again by itself until it is reached, without the fault that somebody has seen; then the
        // connection is checked, and no more sought.
        refuses = false;
        QTRY_COMPARE_WITH_TIMEOUT(asked, QByteArray("connect connect "),
                                  SystemStatus::kRetryInterval + 3000);
        QTRY_VERIFY(window()->managementLink()->connected());
        PLAYS("^2039_0_0 -?");
        sent();
        word("fault none");
        QTRY_COMPARE(asked, QByteArray("connect connect connection-check "));
        PLAYS("^2039_0_0");
        QCOMPARE(sentLine("20(39|40)"), QStringLiteral("2040 0 0|2039 0 0"));
    }

    void asksForWhatIsUnsent() {
        for (const char* screen : {":stayWindow", ":f_ledTestWindow", ":userEnroll_FaceWindow"}) {
            PLAYS(screen);
            for (const auto& [frame, answer] : {std::pair("frame 3021 0 0", "2040 0 0|2039 0 0"),
                                                {"frame 3038 1 2 00", "2040 0 0|2039 0 0"},
                                                {"frame 3032 0 0", "2039 0 0"},
                                                {"frame 3033 0 0", "2033 0 0"}}) {
                word(frame);
                QVERIFY(t->settle());
                QCOMPARE(sentLine(), QLatin1String(answer));
            }
        }
        window()->EnrollPlaySoundTts(261, "text");
        QVERIFY(sentLine().startsWith(QLatin1String("2033 0 5 74 65 78 74 00")));
        // So is what stayed behind while the service or the controller was away.
        const QString both = QStringLiteral("2040 0 0|2039 0 0");
        auto* service = window()->managementLink();
        FakeService silent;  // what the controller has for it is neither confirmed nor refused
        word("settings network.own.managerAddress 127.0.0.1");
        set("network.own.managerPort", silent.serverPort());
        set("network.useManager", 1);
        QTRY_VERIFY(window()->serviceInUse());
        for (int outage = 0; outage < 2; ++outage) {
            t->frames.clear();
            service->setConnected(false);
            service->setConnected(true);
            service->setConnected(true);
            QCOMPARE(sentLine(), both);
        }
        word("drop");
        QTRY_VERIFY(!window()->linkUp());
        service->setConnected(false);
        service->setConnected(true);
        t->frames.clear();
        QVERIFY(t->reconnect() && t->sends("2039 0 0"));
        QVERIFY(sentLine().startsWith(QStringLiteral("1901 0 0|") + both));
    }

    void everyFrameHasARouteThatLeadsToAScreen() {
        for (std::size_t i = 0; i < command::count(); ++i) {
            const command::Description& row = command::all()[i];
            const MessageRoute* route = findMessageRoute(row.code);
            if (row.direction != command::Direction::FromController)
                continue;
            QVERIFY2(route != nullptr, row.name);
            const bool titled = route->rule == RouteRule::ActiveScreen ||
                                route->rule == RouteRule::NamedScreen ||
                                route->rule == RouteRule::ScreenFirst;
            QCOMPARE(window()->getWindow(route->title) != nullptr, titled);
            QVERIFY(route->secondTitle.isNull() ||
                    window()->getWindow(route->secondTitle) != nullptr);
        }
        QVERIFY(findMessageRoute(2900) == nullptr);
    }

    void aNoteIsLogged() {
        const std::pair<QByteArray, QString> notes[] = {
            {{}, {}},
            {"relay \xEB\xAC\xB8", QStringLiteral("relay 문")},
            // What would spoil a log.
            {QByteArray("\x1b[2Ja\nb\\\0c", 10),
             QStringLiteral("\\u001b[2Ja\\u000ab\\u005c\\u0000c")},
            {QByteArray(500, 'x'), QString(200, QLatin1Char('x')) + QStringLiteral("...")},
        };
        for (const auto& [payload, text] : notes) {
            const QString line = QStringLiteral("controller note 3 7: ") + text;
            QTest::ignoreMessage(
                QtInfoMsg, QRegularExpression(QRegularExpression::escape(line) + QLatin1Char('$')));
            QVERIFY(t->tell(QStringLiteral("frame %1 3 7 %2")
                                .arg(int(command::ControllerNote))
                                .arg(QLatin1String(payload.toHex()))));
            QVERIFY(t->settle());
        }
    }

    void aShortRecordIsIgnored() {
        const _gui_menu_ before = window()->menuRecord();
        for (const char* line :
             {"2907.*379.*380", "2908.*0 .*380", "6003.*3 .*4", "status.*1 .*20"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QLatin1String(line)));
        QVERIFY(t->tell(QStringLiteral("frame 2907 0 0 ") + QString(379 * 2, QLatin1Char('f'))));
        PLAYS("!frame_2908_0_0 !frame_6003_0_0_ffffff !frame_2902_0_0_ff -?");
        const _gui_menu_ after = window()->menuRecord();
        QCOMPARE(memcmp(&before, &after, sizeof before), 0);
    }

    void ends() {
        for (const bool byController : {true, false}) {
            init();
            window()->ShowPopup(1, 0);
            window()->setChangeWindowFlag(false);
            QTimer::singleShot(0, this, [this, byController] {
                if (byController)
                    t->tell("quit-gui");
                else
                    window()->close();
            });
            QTimer::singleShot(5000, window(), [] { QCoreApplication::exit(1); });
            QCOMPARE(QApplication::exec(), 0);
            QVERIFY(!window()->isVisible());
            if (byController)
                QVERIFY(t->sends("1902 0 0"));
        }
    }
};

QTEST_MAIN(ShellTest)
#include "shell_test.moc"
