#include <QImage>
#include <QProcess>
#include <QScrollBar>
#include <QTimer>

#include "app/peer_history.h"
#include "base/clock.h"
#include "base/device_folders.h"
#include "cloud/parameters.h"
#include "cloud/rest_client.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/information/count_bar.h"
#include "screens/information/peer_card.h"
#include "screens/logs/log_pages.h"
#include "sim/common/portrait.h"
#include "tests/cloud_test_support.h"
#include "tests/support/driven_test.h"
#include "ui/combo.h"
#include "ui/fact_list.h"
#include "ui/list_row.h"
#include "ui/picture_shelf.h"
#include "ui/text_line.h"

/// Logs, information, ping and the grid of pictures, as a finger on the panel and the controller
/// see them.
class LogsTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
        QVERIFY(begin());
        PLAYS("!time_2026-03-09_08:52 !settings_screen.menuTimeout_3 :stayWindow");
    }

    // --- Logs ------------------------------------------------------------------------------

    void pagesAreAskedForAsCounted() {
        const struct {
            quint32 total;
            const char* pages;
        } cases[] = {{0, ""},
                     {29, ""},
                     {30, "0@0"},
                     {31, "1@1"},
                     {65, "30@30 5@10"},
                     {90, "30@30 30@60 0@0"},
                     {100, "30@30 30@60 10@30"}};
        for (const auto& one : cases) {
            LogPages pages;
            pages.setTotal(one.total);
            QStringList asked;
            while (const auto page = pages.next())
                asked += QStringLiteral("%1@%2").arg(page->count).arg(page->start);
            QCOMPARE(asked.join(QLatin1Char(' ')), QLatin1String(one.pages));
        }
    }

    void theListGoesOnToTheLastPage_data() {
        // How many there are, and the rows before and after each touch of the button.
        table("1 | 1 1\n30 | 30 30\n31 | 30 31 31\n65 | 30 65 65\n10000 | 30 90 150");
    }
    void theListGoesOnToTheLastPage() {
        const auto [rows] = values<1>();
        const int total = QByteArray(QTest::currentDataTag()).toInt();
        openList(total);
        for (const QByteArray& count : rows.split(' ')) {
            QTRY_COMPARE(logs()->rowCount(), count.toInt());
            QTRY_COMPARE(t->dialogText(), QString());
            const QByteArray all = QLocale(QLocale::English).toString(total).toLatin1();
            PLAYS("rangeLine=1_~_" + count + "_/_" + all + " lastButton []");
        }
        const auto* bar = t->find<RowList>("list")->verticalScrollBar();
        QCOMPARE(bar->value() > 0, total > 6);
        // While a page is on its way it does nothing.
        QTRY_COMPARE((t->tap("firstButton"), bar->value()), 0);
        PLAYS("BACK @info_logSearchWindow");
        QCOMPARE(logs()->rowCount(), 0);
    }

    void everyFilterCountsWhatItSays() {
        words({"users 50", "logs 600"});
        LogStore store(t->root.path("/mnt/data"));
        const QVector<GUI_LOGDATA> all = store.newest(600);
        const QString id = fieldText(all.at(300).userId);
        const QDate today(2026, 3, 9);
        const struct {
            const char* combo;
            int choice;
            std::function<bool(const GUI_LOGDATA&)> matches;
        } cases[] = {
            {"periodCombo", 0, [](const auto&) { return true; }},
            {"periodCombo", 2,
             [&](const auto& log) { return logTime(log).date() > today.addDays(-7); }},
            {"periodCombo", 3,
             [&](const auto& log) { return logTime(log).date() > today.addDays(-30); }},
            {"periodCombo", 4,
             [&](const auto& log) { return logTime(log).date() >= QDate(2026, 3, 1); }},
            {"resultCombo", 1, [](const auto& log) { return log.eventStatus == 1; }},
            {"resultCombo", 2, [](const auto& log) { return log.eventStatus == 0; }},
            {"methodCombo", 1, [](const auto& log) { return log.authMethod == AuthMethod::Face; }},
            {"methodCombo", 2, [](const auto& log) { return log.authMethod == AuthMethod::Card; }},
            {"methodCombo", 5,
             [](const auto& log) { return log.authMethod == AuthMethod::FaceAndId; }},
            {nullptr, 0, [&](const auto& log) { return fieldText(log.userId) == id; }},
        };
        for (const auto& one : cases) {
            QVERIFY(t->open("info_logSearchWindow"));
            if (one.combo != nullptr)
                t->find<Combo>(one.combo)->setCurrentIndex(one.choice);
            else
                t->find<InputField>("idField")->setText(id);
            PLAYS("NEXT @info_logListWindow");
            const auto expected = std::count_if(all.begin(), all.end(), one.matches);
            QVERIFY(expected > 0);
            const QString total = QStringLiteral(" / %1").arg(expected);
            QTRY_VERIFY2(t->find<TextLine>("rangeLine")->text().endsWith(total), one.combo);
            QTRY_COMPARE(logs()->rowCount(), qMin(30, int(expected)));
            // The latest one comes first.
            const auto first = std::find_if(all.begin(), all.end(), one.matches);
            QVERIFY(logs()->index(0, 0).data().toString().startsWith(
                logTime(*first).toString(QStringLiteral("yyyy.MM.dd<br>HH:mm:ss "))));
        }
    }

    void whatCannotBeSearchedIsRefused_data() {
        table(R"(five digits | idField #12345D NEXT ?ListItem_LogIdLength -^1976
            twelve | idField #123456789012D NEXT ?ListItem_LogIdLength -^1976
            no day | periodCombo item4 fromField #C20260230D NEXT ?ListItem_CheckInputDate -^1976
            the number first | idField #12345D periodCombo item4 fromField #C20260230D NEXT
                ?ListItem_LogIdLength -^1976
            half a day | periodCombo item4 toField #C2026031D NEXT ?ListItem_CheckInputDate -^1976
            in no order | periodCombo item4 fromField #C20260310D toField #C20260309D NEXT
                ?ListItem_StartDateAfterEndDate -^1976
            too early | periodCombo item4 fromField #C19991231D NEXT ?ListItem_CheckInputDate -^1976
            too late | periodCombo item4 toField #C22560101D NEXT ?ListItem_CheckInputDate -^1976
            one day | periodCombo item4 fromField #C20000101D toField #C20000101D NEXT
                ?ListItem_NoLogsFound ^1976
            nobody | idField #999999D NEXT ?ListItem_NoLogsFound ^1976
            nobody at all | idField #99999999999D NEXT ?ListItem_NoLogsFound ^1976)");
    }
    void whatCannotBeSearchedIsRefused() {
        const auto [steps] = values<1>();
        PLAYS(":info_logSearchWindow " + steps + " OK @info_logSearchWindow");
    }

    void theCountOfOneThatWasGivenUpIsNotThatOfTheNext() {
        PLAYS(":info_logSearchWindow !silent_1976 NEXT ?ListItem_WaitASecond");
        const QByteArray former = QByteArray::number(tagOf("1976"));
        PLAYS("* ?Error_NoResponse OK !silent_1976 NEXT !frame_2976_0_" + former +
              "_01000000 [] ?ListItem_WaitASecond * ?Error_NoResponse");
    }

    void aPageThatDoesNotComeWholeIsToldOf() {
        t->tell("silent 1975");
        openList(31);
        QVERIFY(t->says("ListItem_WaitASecond"));
        // Three of thirty, and nothing behind them.
        sendLogs(0, 3);
        QTRY_COMPARE(logs()->rowCount(), 3);
        QVERIFY(t->says("ListItem_WaitASecond"));
        PLAYS("*5000 ?ListItem_LogsIncomplete =3_/_30 OK lastButton");
        // The next page can be had all the same, also by the list itself, which is not full.
        QTRY_COMPARE(logs()->rowCount(), 4);

        // What comes late of it joins the list and does not make the next page whole; what an
        // earlier list has asked for is none of it.
        for (const bool leave : {false, true}) {
            words({"silent 1975", "silent 1975"});
            openList(90);
            const int first = tagOf("1975");
            sendLogs(first, 3);
            QTRY_COMPARE(logs()->rowCount(), 3);
            PLAYS("* ?ListItem_LogsIncomplete OK [] " +
                  QByteArray(leave ? "BACK NEXT" : "lastButton") + " ^1975");
            const int second = tagOf("1975");
            sendLogs(first, 27);
            sendLogs(second, 29);
            QVERIFY(t->settle());
            QCOMPARE(logs()->rowCount(), leave ? 29 : 59);
            QVERIFY(t->says("ListItem_WaitASecond"));
        }

        t->tell("lose-link-at 1975");
        openList(31);
        PLAYS("?ListItem_NoController =0_/_30");
    }

    void aLogIsShownWithItsPictures() {
        openList(65);
        QTRY_COMPARE(logs()->rowCount(), 30);
        LogStore store(t->root.path("/mnt/data"));
        const QVector<GUI_LOGDATA> all = store.newest(65);
        int row = 0;
        while (all.at(row).visiblePicture[0] == 0)
            ++row;
        const QString time = logs()->index(row, 0).data().toString();
        t->tapRow(t->row(time));
        auto* facts = t->find<FactList>("FactList");
        QVERIFY(facts != nullptr);
        QCOMPARE(facts->value(0), QString::number(all.at(row).number));
        QCOMPARE(facts->value(2), fieldText(all.at(row).userId));
        t->tap(QPoint(240, 400));
        QTRY_VERIFY(t->find("LogCard") == nullptr);
        // Another touch opens it anew, and leaving the screen closes it.
        t->tapRow(t->row(time));
        QVERIFY(t->find("LogCard") != nullptr);
        t->window->changeWindow(QStringLiteral("stayWindow"));
        QTRY_VERIFY(t->find("LogCard") == nullptr);
    }

    void picturesAreReadBehindTheScenes() {
        const QString folder = QLatin1String(DeviceFolders::kImages);
        const auto path = [this](const char* name) {
            return t->root.path(DeviceFolders::kImages) + QLatin1String(name);
        };
        QDir().mkpath(path(""));
        portrait::saveSnapshot(t->root.path("/mnt/data"), QStringLiteral("good"), 1);
        QVERIFY(QFile::copy(path("good.jpg"), t->root.path("/mnt/data/outside.jpg")));
        t->root.write("/mnt/data/Images/broken.jpg", "\xff\xd8\xff\xe0 and no more");
        QVERIFY(QImage(5000, 10, QImage::Format_Mono).save(path("wide.png")));
        t->root.write("/mnt/data/Images/huge.jpg", QByteArray(9 * 1024 * 1024, 'x'));
        PictureShelf shelf({68, 68}, 64 * 1024, nullptr);
        QSignalSpy arrived(&shelf, &PictureShelf::arrived);
        const struct {
            const char* name;
            bool isThere;
        } cases[] = {{"good.jpg", true},  {"missing.jpg", false},    {"broken.jpg", false},
                     {"wide.png", false}, {"../outside.jpg", false}, {"huge.jpg", false}};
        for (const auto& one : cases) {
            PictureShelf::State state{};
            const QString name = QLatin1String(one.name);
            QVERIFY(shelf.picture(folder, name, &state).isNull());
            QCOMPARE(state, PictureShelf::State::Waiting);
            QTRY_VERIFY(shelf.isIdle());
            QCOMPARE(shelf.picture(folder, name, &state).isNull(), !one.isThere);
            QCOMPARE(state, one.isThere ? PictureShelf::State::Here : PictureShelf::State::Broken);
        }
        QCOMPARE(shelf.picture(folder, QStringLiteral("good.jpg")).size(), QSize(68, 68));
        // However many there are, only so many are held, and those scrolled past are not read.
        arrived.clear();
        for (int i = 0; i < 100; ++i) {
            const QString name = QStringLiteral("copy_%1.jpg").arg(i);
            QFile::link(path("good.jpg"), path("") + name);
            shelf.picture(folder, name);
        }
        QTRY_VERIFY(shelf.isIdle());
        QVERIFY(arrived.count() <= 18);
        QVERIFY(shelf.held() <= 64 * 1024);
        shelf.clear();
        QCOMPARE(shelf.held(), 0);
    }

    // --- Information -------------------------------------------------------------------------

    void usersAreCounted() {
        PLAYS("!users_50 :info_keyDataWindow allBar=50_/_9,999");
        QCOMPARE(t->find<CountBar>("visitorBar")->countText(),
                 QStringLiteral("%1 / 9,999").arg(t->sim.settings().users.visitor));
        PLAYS("!silent_1933 :stayWindow :info_keyDataWindow * ?Error_NoResponse");
    }

    void longTextsTakeTheRoomThatTheyNeed() {
        QVERIFY(t->open("info_readerWindow"));
        const auto* facts = t->find<FactList>("facts");
        const int height = facts->height();
        QVERIFY(t->set({{"serial", QString(24, QLatin1Char('W'))}}));
        QTRY_COMPARE(facts->value(1), QString(24, QLatin1Char('W')));
        QTRY_VERIFY(facts->height() > height);
        QVERIFY(t->set({{"serial", QStringLiteral("ZEL01")}}));
        QTRY_COMPARE(facts->height(), height);
    }

    void connectionsAreToldAsTheyChange() {
        PLAYS(":info_readerWindow infoConnectionRow @info_conWindow ^1933_0_0");
        const auto card = [this](const char* name) { return t->find<PeerCard>(name); };
        QCOMPARE(card("controllerCard")->state(), PeerCard::State::Good);
        QCOMPARE(card("serviceCard")->state(), PeerCard::State::Off);
        QTRY_COMPARE(card("accessCard")->state(), PeerCard::State::Good);
        t->tell("host off");
        QTRY_COMPARE(card("accessCard")->state(), PeerCard::State::Bad);
        t->tell("host 10.1.2.3 4070 Side door");
        const auto since = [&](const char* time) {
            return t->text("Info_SinceTime").arg(QLatin1String(time));
        };
        QTRY_COMPARE(card("accessCard")->lines(),
                     QStringList({since("2026-03-09 08:52:00"), QStringLiteral("Side door"),
                                  QStringLiteral("10.1.2.3:4070")}));
        // Behind another screen both go on; the cable is looked at.
        QVERIFY(t->open("stayWindow"));
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(9, 30)));
        t->tell("host on");
        QVERIFY(t->settle());
        QDir().mkpath(t->root.path("/sys/class/net/eth0"));
        t->root.write("/sys/class/net/eth0/carrier", "1\n");
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(9, 31)));
        QVERIFY(t->open("info_conWindow"));
        QTRY_COMPARE(card("accessCard")->lines().first(), since("2026-03-09 09:30:00"));
        QCOMPARE(card("networkCard")->state(), PeerCard::State::Good);
        QCOMPARE(card("networkCard")->lines().first(), since("2026-03-09 09:31:00"));

        // What the service has confirmed, and what still waits for it.
        set("network.own.managerPort", freePort());
        words({"settings network.own.managerAddress 127.0.0.1", "settings network.useManager 1"});
        QTRY_COMPARE(card("serviceCard")->state(), PeerCard::State::Bad);
        t->window->connectService();
        QTRY_VERIFY_WITH_TIMEOUT(
            card("serviceCard")->lines().contains(t->text("Info_ServiceRefused")), 30000);
        RestClass::instance()->setTransferTimeout(200);
        FakeService service;
        set("network.own.managerPort", service.serverPort());
        QTRY_VERIFY(t->agrees());
        const std::pair<QByteArray, QString> answers[] = {
            {FakeService::json(R"({"resultCode":"1234","resultMessage":"not today"})"),
             t->text("Info_ServiceDeclined").arg(1234).arg(QStringLiteral("not today"))},
            {FakeService::json("<html>"), t->text("Info_ServiceStrange")},
            {{}, t->text("Info_ServiceSilent")}};
        for (const auto& [answer, told] : answers) {
            service.says(answer);
            t->window->connectService();
            QTRY_VERIFY2(card("serviceCard")->lines().contains(told), qPrintable(told));
        }
        RestClass::instance()->setTransferTimeout(RestClass::kTransferTimeout);
        t->tell("frame 3021 0 0");
        QTRY_VERIFY(card("serviceCard")->lines().contains(t->text("Info_BothWait")));
        for (const int command : {RestClass::kUserInOutLog, RestClass::kUserEnroll})
            t->window->completedRestCommand(
                QVariant::fromValue(ProcIDX{command, 0, 1000, QVariant()}));
        const auto confirmed = [&](int count) {
            return card("serviceCard")->lines().contains(t->text("Info_ConfirmedToday").arg(count));
        };
        QVERIFY(confirmed(2));
        QVERIFY(card("serviceCard")->lines().contains(t->text("Info_NothingWaits")));
        Clock::fix(QDateTime(QDate(2026, 3, 10), QTime(0, 1)));
        t->window->completedRestCommand(
            QVariant::fromValue(ProcIDX{RestClass::kUserInOutLog, 0, 1000, QVariant()}));
        QVERIFY(confirmed(1));

        // Nothing goes on behind another screen.
        const QList<QTimer*> timers = screen()->findChildren<QTimer*>();
        QVERIFY(t->open("stayWindow"));
        for (const QTimer* timer : timers)
            QVERIFY(!timer->isActive());
        PLAYS("!settings_network.useManager_0 []");
    }

    // --- Ping --------------------------------------------------------------------------------

    void pingsAreCountedUntilTheScreenIsLeft() {
        const QString folder = t->root.path("/tmp");
        const QString pidFile = folder + QStringLiteral("/pid");
        QDir().mkpath(folder);
        t->root.write("/tmp/ping",
                      "#!/bin/sh\necho $$ > " + QFile::encodeName(pidFile) +
                          "\necho \"PING $5\"\n"
                          "echo '64 bytes from 127.0.0.1: icmp_seq=1 ttl=64 time=0.50 ms'\n"
                          "echo 'no answer yet for icmp_seq=2'\n"
                          "echo '64 bytes from 127.0.0.1: icmp_seq=3 ttl=64 time=1.50 ms'\n"
                          "echo '64 bytes from 127.0.0.1: icmp_seq=3 ttl=64 time=9.99 ms (DUP!)'\n"
                          "echo 'From 127.0.0.1 icmp_seq=4 Destination Host Unreachable'\n"
                          "exec sleep 600\n");
        QFile::setPermissions(folder + QStringLiteral("/ping"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(folder) + ':' + path);

        QVERIFY(t->open("pingWindow"));
        for (const char* address :
             {"", "1.2.3", "1.2.3.256", "0.0.0.0", "224.0.0.1", "1.2.3.4.5"}) {
            t->find<InputField>("addressField")->setText(QLatin1String(address));
            PLAYS("startButton ?ListItem_CheckInputAddress OK");
            QVERIFY(!QFile::exists(pidFile));
        }
        // With DHCP those of the settings are not in force.
        QDir().mkpath(t->root.path("/etc"));
        t->root.write("/etc/resolv.conf", "nameserver 10.9.8.7\n");
        PLAYS(R"(gatewayButton addressField=192.168.0.1 !settings_network.own.dhcp_1 [] dnsButton
            addressField=10.9.8.7 !settings_network.own.dhcp_0 [])");
        for (const char* end : {"stopButton", "backButton"}) {
            PLAYS("addressField #C127.0.0.1 startButton -key_1");
            QTRY_COMPARE(t->find<RowList>("list")->model()->rowCount(), 4);
            const auto* facts = t->find<FactList>("facts");
            QCOMPARE(facts->value(0), QStringLiteral("2 / 4"));
            QCOMPARE(facts->value(1), QStringLiteral("50 %"));
            QCOMPARE(facts->value(2), QStringLiteral("0.50 ms / 1.00 ms / 1.50 ms"));
            QFile pid(pidFile);
            QVERIFY(pid.open(QIODevice::ReadOnly));
            const QString process =
                QStringLiteral("/proc/") + QString::fromLatin1(pid.readAll().trimmed());
            QVERIFY(QFile::exists(process));
            t->tap(end);
            QVERIFY2(!QFile::exists(process), end);
        }
        QVERIFY(t->shows("networkMenuWindow"));
        // One that ends by itself could not do its work.
        t->root.write("/tmp/ping", "#!/bin/sh\nexit 2\n");
        QFile::setPermissions(folder + QStringLiteral("/ping"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        PLAYS(":pingWindow startButton ?ListItem_PingFailed +startButton");
        qputenv("PATH", path);
    }

    // --- Pictures ----------------------------------------------------------------------------

    void aPictureIsChosenByTouch() {
        const QString folder = t->root.path(DeviceFolders::kBackgrounds);
        QDir().mkpath(folder);
        QVERIFY(t->open("enviscreen_imageselect"));
        QVERIFY(t->reads(t->text("Info_NoPictures").section(QLatin1String("<br>"), 0, 0)));
        QVERIFY(t->open("stayWindow"));
        for (int i = 0; i < 260; ++i)
            QImage(48, 80, QImage::Format_RGB32)
                .save(QStringLiteral("%1/%2.png").arg(folder).arg(i, 3, 10, QLatin1Char('0')));
        t->root.write("/usr/img/zel/resources/backgrounds/002.png", "no picture");
        t->window->changeWindow(QStringLiteral("enviscreen_imageselect"), 1);
        auto* list = t->find<RowList>("list");
        auto* shelf = screen()->findChild<PictureShelf*>();
        QCOMPARE(list->model()->rowCount(), 260);
        QCOMPARE(list->selected().row(), 1);
        const auto tap = [&](int row) {
            const QModelIndex index = list->model()->index(row, 0);
            list->reveal(index);
            t->window->grab();
            QVERIFY(QTest::qWaitFor([&] { return shelf->isIdle(); }));
            t->tapRow(index);
        };
        // Two columns, side by side.
        QCOMPARE(list->rowBox(list->model()->index(0, 0)), QRect(24, 0, 212, 353));
        QCOMPARE(list->rowBox(list->model()->index(1, 0)), QRect(244, 0, 212, 353));
        tap(2);
        PLAYS("?ListItem_PictureBroken OK");
        tap(256);
        PLAYS("?ListItem_PictureTooMany OK");
        QCOMPARE(list->selected().row(), 1);
        tap(255);
        QCOMPARE(list->selected().row(), 255);
        t->tap("backButton");
        QVERIFY(t->shows("enviScreen_StayWindow"));
        QCOMPARE(shelf->held(), 0);
        QTRY_VERIFY(screen()->findChild<PictureShelf*>()->held() > 0);
        // Another one is wanted instead of the clock, and is kept with the screen above.
        PLAYS(
            "!settings_screen.standbyMode_0 :enviScreenWindow stayViewRow stayImageRow "
            "@enviscreen_imageselect");
        tap(7);
        PLAYS("BACK stayImageRow=Picture_8 BACK stayViewRow=Picture_8 NEXT SAVED");
        QTRY_VERIFY(t->agrees());
        QCOMPARE(int(window()->menuRecord().screen.standbyPicture), 7);
        QCOMPARE(int(window()->menuRecord().screen.standbyMode), int(StandbyMode::ChosenPicture));
        QVERIFY(QDir(folder).removeRecursively());
    }

 private:
    WindowForm* screen() { return t->window->getActivateWindowForm(); }
    QAbstractItemModel* logs() {
        return t->window->getWindow(QStringLiteral("info_logListWindow"))
            ->findChild<RowList*>()
            ->model();
    }
    /// The tag of the query that was sent last as the request @p code.
    int tagOf(const char* code) {
        t->settle();
        const QString frame = t->frames.filter(QRegularExpression(QLatin1String(code))).last();
        return frame.split(QLatin1Char(' ')).at(3 + int(offsetof(GUI_USERLOG, tag))).toInt({}, 16);
    }
    /// The controller answers the query @p tag with @p count logs.
    void sendLogs(int tag, int count) {
        for (; count > 0; count -= 7)
            t->tell(QStringLiteral("frame 2975 0 %1 ").arg(tag) +
                    QString(qMin(7, count) * 2 * int(sizeof(GUI_LOGDATA)), QLatin1Char('0')));
    }
    /// The list of @p total logs, by touch.
    void openList(int total) {
        QVERIFY(t->tell(QStringLiteral("logs %1").arg(total)));
        PLAYS(":info_logSearchWindow NEXT @info_logListWindow");
    }
};

QTEST_MAIN(LogsTest)
#include "logs_test.moc"
