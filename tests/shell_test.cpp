#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

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
#include "ui/dialog_form.h"
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
        const struct {
            bool rebooted;
            const char* commissioned;
            const char* last;
        } rows[] = {{true, "settings commissioned 0", "stayWindow"},
                    {false, "settings commissioned 1", "stayWindow"},
                    {false, "settings commissioned 0", "setupMenuWindow"}};
        for (const auto& row : rows) {
            if (row.rebooted)
                t->root.write("/mnt/data/rebootchkr", {});
            else
                QFile::remove(t->root.path("/mnt/data/rebootchkr"));
            word(row.commissioned);
            QVERIFY(t->start());
            QCOMPARE(t->title(), QLatin1String(row.rebooted ? "stayWindow" : "bootWindow"));
            sent();
            QVERIFY(t->shows(row.last));
            const QString frames = sentLine();
            QVERIFY2(row.rebooted || frames.startsWith(QLatin1String("2011 0 0|2003 1 0|2010 0 0")),
                     qPrintable(frames));
            QVERIFY(!window()->findChild<MenuTimer*>()->isRunning());
        }
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
        QVERIFY(
            QFile::link(t->root.path("/nowhere"), links.filePath(QStringLiteral("nowhere.png"))));
        QVERIFY(QFile::link(elsewhere, t->root.path("/usr/lib/fonts/NotoSerif-Bold.ttf.old")));
        QVERIFY(links.mkpath(QStringLiteral("folder/below")));

        QVERIFY(t->start());
        QStringList wanted;
        for (const QFileInfo& picture : there) {
            wanted.append(picture.fileName());
            QCOMPARE(QFileInfo(links.filePath(picture.fileName())).symLinkTarget(),
                     picture.filePath());
        }
        QStringList found = links.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        found.removeOne(QStringLiteral("folder"));
        QCOMPARE(found, wanted);
        QVERIFY(links.exists(QStringLiteral(".hidden")) &&
                links.exists(QStringLiteral("folder/below")));
        QVERIFY(QFile::exists(elsewhere));
        QCOMPARE(QDir(t->root.path("/usr/lib/fonts")).entryList(QDir::Files | QDir::System).size(),
                 5);
        // What was right has not been written once more.
        struct stat after {};
        QCOMPARE(::lstat(QFile::encodeName(kept).constData(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
    }

    /// By the controller, a screen and the management service.
    void everyChangeOfSettingsCounts_data() {
        QTest::addColumn<int>("by");
        for (const int by : {0, 1, 2})
            QTest::addRow("%d", by) << by;
    }

    void everyChangeOfSettingsCounts() {
        QFETCH(int, by);
        words({"status 2", "settings screen.menuTimeout 0"});
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

    void settingsCountOnce() {
        RecordStore records;
        SettingsEntrance settings(records, nullptr);
        int changes = 0;
        connect(&settings, &SettingsEntrance::changed, this, [&](const SettingsChange& change) {
            ++changes;
            QVERIFY(change.in(&_gui_menu_::sound));
            QCOMPARE(change.first, changes == 1);
            QCOMPARE(change.in(&_gui_menu_::screen), change.first);
            QCOMPARE(change.in(&_gui_menu_::setup, &SetupBlock::operation), change.first);
        });
        _gui_menu_ record{};
        QVERIFY(!settings.arrived());
        // The first record counts even if it says nothing new.
        settings.receive(record);
        QVERIFY(settings.arrived());
        settings.receive(record);
        QCOMPARE(changes, 1);
        record.sound.volume = 3;
        settings.store(record);
        settings.receive(record);
        QCOMPARE(changes, 2);
        QCOMPARE(int(records.menu().sound.volume), 3);
    }

    void languageOfTheSettings() {
        // A screen that is there already takes the new texts when it comes up next.
        window()->changeWindow(QStringLiteral("enviWindow"));
        QVERIFY(t->reads(QStringLiteral("환경 설정")));
        window()->changeWindow(QStringLiteral("stayWindow"));
        for (const auto& [number, text] :
             {std::pair(1, "Environment"), std::pair(2, "環境設定"), std::pair(0, "환경 설정")}) {
            QVERIFY(t->tell(QStringLiteral("settings setup.language %1").arg(number)));
            QTRY_COMPARE(int(window()->menuRecord().setup.language), number);
            window()->changeWindow(QStringLiteral("enviWindow"));
            QVERIFY2(t->reads(QString::fromUtf8(text)), text);
            window()->changeWindow(QStringLiteral("stayWindow"));
        }
        // A number that the list does not have leaves the language as it is.
        word("settings setup.language 200");
        QTRY_COMPARE(int(window()->menuRecord().setup.language), 200);
        QCOMPARE(window()->getScript(QStringLiteral("TopMenu_OK")).script, QStringLiteral("확인"));
        // Nothing that the language may need later has been removed meanwhile.
        QVERIFY(QFile::exists(t->root.path("/zel1/image/img/fonts/logotypejp_mp_m_1.1.ttf")));
    }

    void languageAtTheUsersWish() {
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
        QVERIFY(t->reads(QStringLiteral("환경 설정")));
    }

    void faultsCome() {
        word("fault tamper touch network");
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
        word("fault network");
        QTRY_VERIFY(t->says("Popup_ErrNetwork") && !t->says("Popup_ErrTamper"));
        word("fault none");
        QTRY_COMPARE(t->dialogText(), QString());

        // It stays until somebody has seen it, whatever comes up; only a result at the door lies
        // above it.
        word("fault tamper");
        QTRY_VERIFY(t->says("Popup_ErrTamper"));
        for (const char* screen :
             {"bootWindow", "recognizeWindow", "usbMenuWindow", "liveWindow"}) {
            window()->changeWindow(QLatin1String(screen));
            QCOMPARE(t->says("Popup_ErrTamper"), qstrcmp(screen, "recognizeWindow") != 0);
        }
        window()->ShowPopup(2, 5);
        window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
        QVERIFY(t->shows("stayWindow"));
        QVERIFY(t->says("Popup_ErrTamper"));
        word("settings setup.language 2");
        QTRY_COMPARE(int(window()->menuRecord().setup.language), 2);
        QVERIFY(t->says("Popup_ErrTamper"));
        t->tap("dialogOkButton");
        QVERIFY(t->says("ListItem_NetworkConfigurationFailed"));
        t->tap("dialogOkButton");
        QCOMPARE(t->dialogText(), QString());
        QCOMPARE(t->title(), QStringLiteral("stayWindow"));
    }

    void reportsComeUp() {
        const struct {
            const char* frame;
            const char* key;
            bool isError;
            const char* screen = "enviWindow";
        } reports[] = {
            {"frame 2924 1 0", "Error_MaxUsersExcceeded", true},
            {"frame 2924 2 0", "Error_EnrollingUsers", true},
            {"frame 2924 9 0", "Error_NoResponse", true},
            {"frame 2931 0 0", "ListItem_UserDeleted", false},
            {"frame 2931 1 0", "ListItem_FailedDeleted", true},
            {"frame 3039 0 0", "ListItem_LogStoreEmptied", false},
            {"frame 3039 1 0", "ListItem_LogStoreNearlyFull", false},
            {"frame 3039 7 0", "ListItem_LogStoreNearlyFull", false},
            {"frame 2990 0 0", "ListItem_FwRestart", false, "upgradingWindow"},
            {"frame 2990 1 0", "ListItem_FwUpgradeFailed", true, "stayWindow"},
        };
        for (const auto& report : reports) {
            window()->changeWindow(QStringLiteral("enviWindow"));
            sent();
            word(report.frame);
            QTRY_VERIFY2(t->says(report.key), report.key);
            QCOMPARE(t->title(), QLatin1String(report.screen));
            QVERIFY(t->settle());
            QCOMPARE(t->sent("1908 0 0 cb 00") >= 0, report.isError);
            t->tap("dialogOkButton");
            QVERIFY(!t->says(report.key));
            QVERIFY(t->settle());
            QCOMPARE(t->sent("2032 0 0") >= 0,
                     report.key == QByteArray("ListItem_LogStoreNearlyFull"));
        }
        // Emptied meanwhile, there is nothing left to ask for.
        DialogOverlay::closeAll(window());
        word("frame 3039 1 0");
        QTRY_VERIFY(t->says("ListItem_LogStoreNearlyFull"));
        word("frame 3039 0 0");
        QTRY_VERIFY(t->says("ListItem_LogStoreEmptied"));
        t->tap("dialogOkButton");
        QCOMPARE(t->dialogText(), QString());
    }

    void oldLogsGoAtTheAdministratorsWord() {
        QVERIFY(t->lock());
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
        t->enterPassword();
        QVERIFY(t->sends("2032 0 0"));
        QCOMPARE(t->title(), QStringLiteral("stayWindow"));
        // Who has entered it is not asked again.
        window()->changeWindow(QStringLiteral("zelMenuWindow"));
        t->enterPassword();
        QVERIFY(agree());
        QVERIFY(t->sends("2032 0 0"));
        QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    }

    void anUpgradeIsNotLeftAlone() {
        word("settings screen.menuTimeout 0");
        QVERIFY(t->settle());
        const auto* timer = window()->findChild<MenuTimer*>();
        for (int download = 0; download < 2; ++download) {
            window()->fwFileDownloadStart(QStringLiteral("archive"));
            QCOMPARE(t->title(), QStringLiteral("upgradingWindow"));
            QVERIFY(t->find("downloadText") && !t->find("restartText"));
            QVERIFY(!timer->isRunning());
            word("frame 2990 0 0");
            QTRY_VERIFY(t->says("ListItem_FwRestart"));
            QVERIFY(t->find("restartText") && !t->find("downloadText"));
            QVERIFY(!timer->isRunning());
            t->tap("dialogOkButton");
        }
        // Without the controller nothing comes after a download.
        window()->fwFileDownloadStart(QStringLiteral("archive"));
        word("drop");
        QTRY_VERIFY(!window()->linkUp());
        QVERIFY(!timer->isRunning());
        emit window()->downloads().finished();
        QVERIFY(timer->isRunning());
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

    void statusChoosesTheMode() {
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

    void theServiceIsSought() {
        FakeService service;
        bool refuses = true;
        service.answer = [&refuses](const FakeService::Request&) {
            return FakeService::json(refuses ? R"({"resultCode":"9999"})"
                                             : R"({"resultCode":"1000"})");
        };
        const auto asked = [&service](const char* what) {
            int count = 0;
            for (const FakeService::Request& request : qAsConst(service.requests))
                count += request.line.contains(what);
            return count;
        };
        // A self-check means nothing to a service that is not in use.
        set("network.own.managerPort", service.serverPort());
        words({"settings network.own.managerAddress 127.0.0.1",
               "settings network.connectPeriod 200", "settings network.checkPeriod 200",
               "fault none"});
        QVERIFY(t->settle());
        QCOMPARE(service.requests.size(), 0);

        words({"settings network.useManager 1", "fault tamper"});
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
        sent();
        word("fault none");
        QTRY_COMPARE(asked("/connection-check.do"), 1);
        QVERIFY(t->sends("2039 0 0"));
        QVERIFY(t->sent("2040 0 0") >= 0 && t->sent("2040 0 0") < t->sent("2039 0 0"));
        QCOMPARE(asked("/connect.do"), 2);
    }

    void asksForWhatIsUnsent() {
        const std::pair<const char*, const char*> answers[] = {
            {"frame 3021 0 0", "2040 0 0|2039 0 0"},
            {"frame 3038 1 2 00", "2040 0 0|2039 0 0"},
            {"frame 3032 0 0", "2039 0 0"},
            {"frame 3033 0 0", "2033 0 0"}};
        for (const char* screen : {"stayWindow", "f_ledTestWindow", "userEnroll_FaceWindow"}) {
            window()->changeWindow(QLatin1String(screen));
            sent();
            for (const auto& [frame, answer] : answers) {
                word(frame);
                QVERIFY(t->settle());
                QCOMPARE(sentLine(), QLatin1String(answer));
            }
        }
        window()->EnrollPlaySoundTts(261, "text");
        QVERIFY(sentLine().startsWith(QLatin1String("2033 0 5 74 65 78 74 00")));
        // So is what stayed behind while the service or the controller was away.
        const QStringList both{QStringLiteral("2040 0 0"), QStringLiteral("2039 0 0")};
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
            QVERIFY(t->settle());
            QCOMPARE(t->frames, both);
        }
        word("drop");
        QTRY_VERIFY(!window()->linkUp());
        service->setConnected(false);
        service->setConnected(true);
        t->frames.clear();
        QVERIFY(t->reconnect() && t->sends("2039 0 0"));
        QCOMPARE(t->frames.mid(0, 3), QStringList({QStringLiteral("1901 0 0")}) + both);
        QVERIFY(t->settle());
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
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("2907.*379.*380")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("2908.*0 .*380")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("6003.*3 .*4")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("status.*1 .*20")));
        QVERIFY(t->tell(QStringLiteral("frame 2907 0 0 ") + QString(379 * 2, QLatin1Char('f'))));
        words({"frame 2908 0 0", "frame 6003 0 0 ffffff", "frame 2902 0 0 ff"});
        QVERIFY(t->settle());
        const _gui_menu_ after = window()->menuRecord();
        QCOMPARE(memcmp(&before, &after, sizeof before), 0);
        QCOMPARE(t->dialogText(), QString());
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
