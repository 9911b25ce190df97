#include "app/menu_timer.h"
#include "app/network_setup.h"
#include "link/command_code.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_test.h"
#include "ui/list_row.h"

/// The device's settings, as a finger on the panel and the controller see them.
class DeviceSettingsTest : public DrivenTest {
    Q_OBJECT

 private slots:
    /// From wherever the test before has ended, with what the factory has set.
    void init() {
        QVERIFY(begin() && window()->SendCommand(command::Initialise, 1, 0));
        PLAYS(
            "!settings_commissioned_1 !settings_setup.language_1 !settings_screen.menuTimeout_3 "
            ":zelMenuWindow");
    }

    void anInstallersFirstHour() {
        PLAYS(
            ":stayWindow !settings_setup.language_0 !settings_commissioned_0 :setupMenuWindow "
            "-backButton -+setupDefaultRow languageCombo item1 NEXT ?Error_PasswordNeeded OK "
            "-^1981 passwordField #2580D repeatField #2580D NEXT SAVED relayRow=Relay "
            ">timeFromServiceToggle clockRow dateField #20310402D timeField #0607D setTimeButton "
            "?ListItem_TimeSet OK deviceNumberField #C4711D operationCombo item0 <readerToggle "
            ">readerToggle authMethodCombo item4 >visitorCallToggle <quickRegistrationToggle "
            ">relayTypeToggle plusButton >exitButtonToggle >tamperToggle alarmCombo item2 NEXT "
            "SAVED BACK menuNetworkTile netTcpIpTile addressField #C10.1.2.3D maskField "
            "#C255.255.0.0D gatewayField #C10.1.0.1D dnsField #C9.9.9.9D NEXT "
            "?ListItem_AskAddress OK SAVED BACK netDdnsTile <useToggle hostField #door.kimD "
            "portField #C8080D NEXT SAVED BACK netCloudTile <useToggle addressField #C127.0.0.1D "
            "portField #C9D connectPeriodField #C255D checkPeriodField #C5D NEXT SAVED BACK "
            "homeButton @stayWindow :zelMenuWindow @InputAdminPassword #2580D "
            "menuEnvironmentTile enviSoundTile minusButton alarmSoundRow bellRow BACK "
            "recogFailSoundRow beepsRow BACK NEXT SAVED BACK enviScreenTile plusButton "
            "screenOffCombo item5 stayViewRow pictureRow BACK >statusLedToggle menuTimeoutCombo "
            "item0 >showPicturesToggle NEXT SAVED BACK enviFaceTile >securityLevel >cameraToggle "
            ">saveThumbnailToggle >useThumbnailToggle <saveRefusedToggle NEXT SAVED");
        QVERIFY(t->agrees());
        QCOMPARE(window()->menuRecord().commissioned, quint8(1));
        const struct {
            int offset;
            const char* bytes;
        } rows[] = {
            {0, "01"},
            {85, "01 646f6f722e6b696d000000000000000000 901f"},             // ddns
            {112, "05 01 00 00 01"},                                        // face
            {117, "04 01 04"},                                              // sound
            {120, "08 05 01 00 00 00 00"},                                  // screen
            {127, "67120000 3235383000000000 01 01 01 06 00 00 01 04 00"},  // setup
            {148, "02 01 00 00 00 00"},
            {154, "01 ff 05 00 0a010203 ffff0000 0a010001 09090909 7f000001 0900"},
        };
        for (const auto& row : rows) {
            const QByteArray bytes = QByteArray::fromHex(row.bytes);
            QCOMPARE(stored(row.offset, bytes.size()).toHex(' '), bytes.toHex(' '));
        }
        QCOMPARE(t->sim.now().toString(QStringLiteral("yyyy-MM-dd hh:mm")),
                 QStringLiteral("2031-04-02 06:07"));
        word("time now");
    }

    void faultsAreSaid() {
        for (const QByteArray& row :
             QByteArrayList{":setupMenuWindow deviceNumberField #CD NEXT ?Error_DeviceNumber",
                            ":setupMenuWindow passwordField #123D repeatField #123D NEXT "
                            "?Error_PasswordLength",
                            ":setupMenuWindow passwordField #1234D repeatField #12345D NEXT "
                            "?Error_PasswordsDiffer",
                            ":tcpIpWindow addressField #C10.0.0.256D NEXT ?Error_IpAddress",
                            ":tcpIpWindow addressField #C0.0.0.0D NEXT ?Error_IpZeroOnes",
                            ":tcpIpWindow gatewayField #C1.2D NEXT ?Error_Gateway",
                            ":tcpIpWindow dnsField #C1..2.3D NEXT ?Error_Dns",
                            ":ddnsWindow <useToggle NEXT ?Error_Host",
                            ":ddnsWindow portField #C65536D NEXT ?Error_Port",
                            ":cloudWindow <useToggle addressField #CD NEXT ?Error_ServiceAddress",
                            ":cloudWindow connectPeriodField #C4D NEXT ?Error_Period",
                            ":cloudWindow checkPeriodField #C256D NEXT ?Error_Period"}) {
            init();
            PLAYS(row + " -^195 -^198");
            QVERIFY(t->agrees());
            const auto rows = window()->getActivateWindowForm()->findChildren<ListRow*>();
            QVERIFY(
                std::any_of(rows.begin(), rows.end(), [](auto* one) { return one->isFaulty(); }));
        }
    }

    void savesEndAlike() {
        const struct {
            QByteArray steps;
            QByteArray code;
        } rows[] = {{":setupMenuWindow deviceNumberField #C9D", "1981"},
                    {":enviFaceWindow >cameraToggle", "1950"},
                    {":enviScreenWindow >statusLedToggle", "1951"},
                    {":enviSoundWindow minusButton", "1954"},
                    {":tcpIpWindow addressField #C192.168.0.7D", "1986"},
                    {":ddnsWindow hostField #aD", "1987"},
                    {":cloudWindow portField #C9D", "1986"}};
        for (const auto& row : rows) {
            init();
            const _gui_menu_ before = t->sim.settings();
            const auto unchanged = [&] {
                return t->agrees() && memcmp(&before, &t->sim.settings(), sizeof before) == 0;
            };
            t->phrases["SAVE"] =
                row.steps.contains("address") ? "NEXT ?ListItem_AskAddress OK" : "NEXT";
            PLAYS(row.steps + " !refuse_" + row.code + " SAVE ?Error_SettingsRefused OK");
            QVERIFY(unchanged());
            PLAYS("!silent_" + row.code +
                  " SAVE ?ListItem_SavingConfiguring -+forwardButton * ?Error_ControllerSilent OK");
            QVERIFY(unchanged());
            PLAYS("!drop NEXT ?ListItem_NoController OK");
            QVERIFY(unchanged() && t->reconnect());
            PLAYS("SAVE SAVED");
            QVERIFY(t->agrees() && !unchanged());
        }
        // What changes elsewhere in the record meanwhile keeps no refused save in force.
        PLAYS(":enviFaceWindow >cameraToggle !silent_1950 NEXT ^1950 !frame_2933_0_0_" +
              QByteArray(sizeof(UserCounts), 1).toHex() + " * ?Error_ControllerSilent OK");
        const _gui_menu_ record = window()->menuRecord();
        QVERIFY(memcmp(&record.face, &t->sim.settings().face, sizeof record.face) == 0);
    }

    void whatIsTriedGoesBack() {
        PLAYS(
            ":enviScreenWindow plusButton plusButton BACK [1952_1_8,1952_1_9,1952_1_7] "
            "!settings_sound.recognitionFailSound_200 :enviSoundWindow "
            "recogFailSoundRow=ListItem_SoundBeeps NEXT SAVED");
        QCOMPARE(stored(119, 1), QByteArray("\4"));
        sent();
        PLAYS("minusButton alarmSoundRow chimeRow bellRow");
        QCOMPARE(t->sim.execute(QStringLiteral("shown")),
                 QStringLiteral("ok brightness 7 volume 4 sound alarm bell"));
        // Nobody comes back to it.
        emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
        PLAYS("@stayWindow [1955_1_4,1956_1_3,1956_1_1,1955_1_5,1956_1_0]");
        QVERIFY(t->agrees());
    }

    void theLanguageWaitsForTheAnswer() {
        const auto title = [this] { return t->text("TopDepthTitle_Setup"); };
        const QString english = title();
        PLAYS(":setupMenuWindow !silent_1981 languageCombo item0 NEXT");
        QVERIFY(t->settle());
        QCOMPARE(title(), english);
        PLAYS("!frame_2981_0_0 SAVED =TopDepthTitle_Setup");
        QVERIFY(title() != english);
        const char* const fonts = "/usr/lib/fonts/logotypejp_mp_m_1.1.ttf";
        for (const QByteArray& item : QByteArrayList{"item2", "item1", "item2", "item0"}) {
            PLAYS("languageCombo " + item + " NEXT SAVED =TopDepthTitle_Setup");
            QVERIFY(item != "item2" || QFileInfo(t->root.path(fonts)).isSymLink());
        }
        QVERIFY(!QFileInfo::exists(t->root.path("/zel1/image/img/fonts/logotypejp_mp_m_1.1.ttf")));
        // Somebody comes to the door before the answer.
        PLAYS("!delay_1981_1 languageCombo item1 NEXT");
        window()->changeWindow(QStringLiteral("stayWindow"));
        QCOMPARE(title(), english);
        QTRY_VERIFY(t->agrees());
    }

    void thePasswordIsTheAdministrators() {
        PLAYS(
            ":setupMenuWindow -+removePasswordRow passwordField #12345678D repeatField #12345678D "
            "NEXT SAVED passwordField=");
        QCOMPARE(stored(131, 8), QByteArray("12345678"));
        PLAYS("removePasswordRow NO removePasswordRow OK !settings_sound.volume_2");
        QTRY_VERIFY(t->agrees());  // and nothing is forgotten
        PLAYS("NEXT SAVED");
        QCOMPARE(stored(131, 8), QByteArray(8, '\0'));
    }

    void theClockIsSetAtOnce() {
        PLAYS(
            ":setupMenuWindow -+clockRow -dateField >timeFromServiceToggle clockRow dateField "
            "#20310229D setTimeButton ?ListItem_CheckInputDate OK dateField #20310228 timeField "
            "#2400D setTimeButton ?ListItem_CheckInputTime OK -^1953 !silent_1953 timeField #2359D "
            "setTimeButton [1953_1_0_1f_02_1c_17_3b_00] * ?Error_TimeNotSet OK");
    }

    void settingsArriveWhileTheyAreShown() {
        const struct {
            const char* screen;
            const char* words;
            const char* shown;
        } rows[] = {
            {":setupMenuWindow ", " !settings_setup.deviceNumber_4242 ", "=4242"},
            {":setupMenuWindow ", " !settings_setup.language_2 ", "=端末設定"},
            {":enviScreenWindow ", " !settings_screen.standbyMode_1 ", "=Picture_1"},
            {":enviSoundWindow ", " !settings_sound.volume_10 ", "=10"},
            {":tcpIpWindow ", " !settings_network.own.gateway_192.168.0.77 ", "=192.168.0.77"},
            {":ddnsWindow ", " !settings_ddns.host_here.example ", "=here.example"},
            {":cloudWindow ", " !settings_network.checkPeriod_77 ", "=77"},
        };
        for (const auto& row : rows) {
            init();
            PLAYS(QByteArray(row.screen) + '-' + row.shown + row.words + row.shown);
        }
    }

    void addressesAreChecked() {
        using Fault = NetworkSetup::Fault;
        const struct {
            const char* block;
            Fault fault;
        } rows[] = {
            {"10.0.0.2 255.0.0.0 0.0.0.0 0.0.0.0", Fault::None},
            {"10.0.0.2 255.255.255.252 10.0.0.1 127.0.0.1", Fault::None},
            {"255.255.255.255 255.0.0.0 0.0.0.0 0.0.0.0", Fault::AddressZeroOnes},
            {"224.0.0.1 255.0.0.0 0.0.0.0 0.0.0.0", Fault::Address},
            {"10.0.0.0 255.0.0.0 0.0.0.0 0.0.0.0", Fault::AddressReserved},
            {"10.0.0.2 255.0.255.0 0.0.0.0 0.0.0.0", Fault::Mask},
            {"10.0.0.2 255.255.255.254 0.0.0.0 0.0.0.0", Fault::Mask},
            {"10.0.0.2 255.255.0.0 10.1.0.1 0.0.0.0", Fault::GatewayOutside},
            {"10.0.0.2 255.255.0.0 240.0.0.1 0.0.0.0", Fault::Gateway},
            {"10.0.0.2 255.255.0.0 10.0.0.1 255.255.255.255", Fault::Dns},
        };
        for (const auto& row : rows) {
            AddressBlock own{};
            std::uint8_t* byte = own.address;
            for (const QByteArray& number : QByteArray(row.block).replace(' ', '.').split('.'))
                *byte++ = static_cast<std::uint8_t>(number.toInt());
            QVERIFY2(NetworkSetup::check(own) == row.fault, row.block);
            QCOMPARE(NetworkSetup::commands(own).isEmpty(), row.fault != Fault::None);
        }
    }

    void theAddressIsTheMachines() {
        const auto wouldRun = [](const char* commands) {
            QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QLatin1String(commands)));
        };
        PLAYS(
            ":tcpIpWindow gatewayField #CD dnsField #C1.1.1.1D addressField #C192.168.0.9D NEXT "
            "?ListItem_AskAddress NO -^1986 !silent_1986 NEXT OK ^1986");
        // Not before the controller has it.
        QCOMPARE(int(window()->menuRecord().network.own.address[3]), 100);
        wouldRun(
            "not run here: ip addr flush dev eth0; ip addr add 192.168.0.9/24 dev eth0; "
            "nameserver 1.1.1.1$");
        PLAYS("!frame_2986_0_0 SAVED");
        wouldRun("not run here: udhcpc -n -q -i eth0$");
        PLAYS(">dhcpToggle -+addressField NEXT OK SAVED");
        // The fixed address is kept for later.
        QVERIFY(t->agrees());
        QCOMPARE(stored(157, 5).toHex(), QByteArray("01c0a80009"));
        PLAYS("<dhcpToggle addressField=192.168.0.9");
    }

    void linksAreTested() {
        PLAYS(
            ":networkMenuWindow testServerRow testServerRow=ListItem_Reached testDdnsRow "
            "testDdnsRow=ListItem_NotReached !silent_1989 testServerRow testDdnsRow "
            "[1989_1_0,1989_2_0,1989_1_0] !frame_2989_0_2");
        QVERIFY(t->settle());  // it was of the other test
        PLAYS("+serverSpinner * testServerRow=ListItem_NoAnswer -serverSpinner");
    }

    void resetsAreAskedFor() {
        PLAYS(
            ":setupDefaultWindow logsRow NO -^1957 !refuse_1957 logsRow OK ?Error_NotReset OK "
            "!silent_1957 settingsRow OK ?ListItem_Resetting !frame_2957_0_0");
        QVERIFY(t->settle());  // it was of another reset
        PLAYS("?ListItem_Resetting * ?Error_NoAnswer OK everythingRow");
        const QString users = QString::number(window()->menuRecord().users.all);
        QVERIFY(t->find<QLabel>("dialogSecondText")->text().contains(users));
        sent();
        // Not so fast.
        PLAYS("OK ?ListItem_AskResetEverything +dialogOkButton OK");
        // The factory's language, and a terminal that has to be set up.
        QTRY_VERIFY(t->says("ListItem_ResetComplete") && t->dialogText().contains(QChar(0xCD08)));
        PLAYS("[1957_2_0] OK");
        QVERIFY(t->agrees());
        QCOMPARE(window()->menuRecord().users.all, 0U);
        PLAYS(
            "homeButton @setupMenuWindow -backButton !settings_commissioned_1 "
            ":setupDefaultWindow restartRow OK");
        QTRY_VERIFY(!window()->linkUp());
        PLAYS("-?");
    }

    void theServiceScreenTellsTheContact() {
        ServiceSim service(0, 0, TerminalAddress{QStringLiteral("127.0.0.1"), 1});
        PLAYS(
            ":cloudWindow stateRow=ListItem_ServiceOff <useToggle addressField #C127.0.0.1D "
            "portField #C" +
            QByteArray::number(service.port()) + "D NEXT stateRow=ListItem_Reached +sinceRow OK");
        const struct {
            const char* words;
            const char* key;
        } rows[] = {{"garbage", "ListItem_WrongAnswer"},
                    {"refuse", "ListItem_WrongAnswer"},
                    {"away", "ListItem_Refused"},
                    {"answer 2000", "Arg_ResultCode"}};
        for (const auto& row : rows) {
            service.execute(QStringLiteral("normal"));
            service.execute(QLatin1String(row.words));
            PLAYS("NEXT");
            QTRY_COMPARE(t->find<ListRow>("stateRow")->value(),
                         t->text(row.key).replace(QLatin1String("%1"), QLatin1String("2000")));
            PLAYS("SAVED -sinceRow -lastReachedRow=ListItem_NotYet");
        }
    }

 private:
    QByteArray stored(int offset, int size) const {
        return QByteArray(reinterpret_cast<const char*>(&t->sim.settings()) + offset, size);
    }
};

QTEST_MAIN(DeviceSettingsTest)
#include "device_settings_test.moc"
