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
    void init();
    void anInstallersFirstHour();
    void faultsAreSaid();
    void savesEndAlike_data();
    void savesEndAlike();
    void whatIsTriedGoesBack();
    void theLanguageWaitsForTheAnswer();
    void thePasswordIsTheAdministrators();
    void theClockIsSetAtOnce();
    void settingsArriveWhileTheyAreShown();
    void addressesAreChecked();
    void theAddressIsTheMachines();
    void linksAreTested();
    void resetsAreAskedFor();
    void theServiceScreenTellsTheContact();

 private:
    bool says(const char* key) {
        return QTest::qWaitFor([&] { return t->says(key); });
    }
    bool ok() {
        return QTest::qWaitFor([this] {
            if (t->find("dialogOkButton"))
                t->tap("dialogOkButton");
            return t->find("dialogOkButton") == nullptr;
        });
    }
    bool saved() { return says("ListItem_ConfigurationComplete") && ok(); }
    QByteArray stored(int offset, int size) const {
        return QByteArray(reinterpret_cast<const char*>(&t->sim.settings()) + offset, size);
    }
    QTimer* answerTimer() const {
        const auto timers =
            window()->getActivateWindowForm()->findChildren<QTimer*>(QStringLiteral("answerTimer"));
        for (QTimer* timer : timers) {
            if (timer->isActive())
                return timer;
        }
        return nullptr;
    }
    QString value(const char* row) const { return t->find<ListRow>(row)->value(); }
};

void DeviceSettingsTest::init() {
    // From wherever the test before has ended, with what the factory has set.
    window()->changeWindow(QStringLiteral("stayWindow"));
    window()->SendCommand(command::Initialise, 1, 0);
    QVERIFY(t->settle());
    words({"normal", "settings commissioned 1", "settings setup.language 1",
           "settings screen.menuTimeout 3"});
    QVERIFY(t->open("zelMenuWindow"));
}

void DeviceSettingsTest::anInstallersFirstHour() {
    window()->changeWindow(QStringLiteral("stayWindow"));
    words({"settings setup.language 0", "settings commissioned 0"});
    QVERIFY(t->open("setupMenuWindow"));
    QVERIFY(!t->find("backButton") && !t->find("setupDefaultRow")->isEnabled());
    PLAYS("languageCombo item1 forwardButton");
    QVERIFY(says("Error_PasswordNeeded") && ok() && sentLine("1981 ").isEmpty());
    PLAYS("passwordField #2580D repeatField #2580D forwardButton");
    QVERIFY(saved());
    QCOMPARE(t->find<ListRow>("relayRow")->text(), QStringLiteral("Relay"));
    PLAYS(">timeFromServiceToggle clockRow dateField #20310402 timeField #0607D setTimeButton");
    QVERIFY(says("ListItem_TimeSet") && ok());
    PLAYS(
        "deviceNumberField #C4711D operationCombo item0 <readerToggle >readerToggle "
        "authMethodCombo item4 >visitorCallToggle <quickRegistrationToggle");
    PLAYS(
        ">relayTypeToggle plusButton >exitButtonToggle >tamperToggle alarmCombo item2 "
        "forwardButton");
    QVERIFY(saved());
    PLAYS(
        "backButton menuNetworkTile netTcpIpTile addressField #C10.1.2.3D maskField "
        "#C255.255.0.0D gatewayField #C10.1.0.1D dnsField #C9.9.9.9D forwardButton");
    QVERIFY(says("ListItem_AskAddress"));
    PLAYS("dialogOkButton");
    QVERIFY(saved());
    PLAYS("backButton netDdnsTile <useToggle hostField #door.kimD portField #C8080D forwardButton");
    QVERIFY(saved());
    PLAYS(
        "backButton netCloudTile <useToggle addressField #C127.0.0.1D portField #C9D "
        "connectPeriodField #C255D checkPeriodField #C5D forwardButton");
    QVERIFY(saved());
    PLAYS("backButton homeButton");
    QVERIFY(t->shows("stayWindow"));
    window()->changeWindow(QStringLiteral("zelMenuWindow"));
    QCOMPARE(t->title(), QStringLiteral("InputAdminPassword"));
    PLAYS(
        "#2580D menuEnvironmentTile enviSoundTile minusButton alarmSoundRow bellRow backButton "
        "recogFailSoundRow beepsRow backButton forwardButton");
    QVERIFY(saved());
    PLAYS(
        "backButton enviScreenTile plusButton screenOffCombo item5 stayViewRow pictureRow "
        "backButton >statusLedToggle menuTimeoutCombo item0 >showPicturesToggle forwardButton");
    QVERIFY(saved());
    PLAYS(
        "backButton enviFaceTile >securityLevel >cameraToggle >saveThumbnailToggle "
        ">useThumbnailToggle <saveRefusedToggle forwardButton");
    QVERIFY(saved() && t->agrees());
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

void DeviceSettingsTest::faultsAreSaid() {
    const struct {
        const char* screen;
        QByteArray steps;
        const char* key;
    } rows[] = {
        {"setupMenuWindow", "deviceNumberField #CD", "Error_DeviceNumber"},
        {"setupMenuWindow", "passwordField #123D repeatField #123D", "Error_PasswordLength"},
        {"setupMenuWindow", "passwordField #1234D repeatField #12345D", "Error_PasswordsDiffer"},
        {"tcpIpWindow", "addressField #C10.0.0.256D", "Error_IpAddress"},
        {"tcpIpWindow", "addressField #C0.0.0.0D", "Error_IpZeroOnes"},
        {"tcpIpWindow", "gatewayField #C1.2D", "Error_Gateway"},
        {"tcpIpWindow", "dnsField #C1..2.3D", "Error_Dns"},
        {"ddnsWindow", "<useToggle", "Error_Host"},
        {"ddnsWindow", "portField #C65536D", "Error_Port"},
        {"cloudWindow", "<useToggle addressField #CD", "Error_ServiceAddress"},
        {"cloudWindow", "connectPeriodField #C4D", "Error_Period"},
        {"cloudWindow", "checkPeriodField #C256D", "Error_Period"},
    };
    for (const auto& row : rows) {
        init();
        QVERIFY(t->open(row.screen));
        PLAYS(row.steps + " forwardButton");
        QVERIFY2(says(row.key), row.steps.constData());
        QCOMPARE(sentLine("19[58]"), QString());
        QVERIFY(t->agrees());
        const auto faulty = window()->getActivateWindowForm()->findChildren<ListRow*>();
        QVERIFY(
            std::any_of(faulty.begin(), faulty.end(), [](auto* one) { return one->isFaulty(); }));
    }
}

void DeviceSettingsTest::savesEndAlike_data() {
    QTest::addColumn<QByteArray>("steps");
    QTest::addColumn<int>("code");
    QTest::newRow("setupMenuWindow") << QByteArray("deviceNumberField #C9D") << 1981;
    QTest::newRow("enviFaceWindow") << QByteArray(">cameraToggle") << 1950;
    QTest::newRow("enviScreenWindow") << QByteArray(">statusLedToggle") << 1951;
    QTest::newRow("enviSoundWindow") << QByteArray("minusButton") << 1954;
    QTest::newRow("tcpIpWindow") << QByteArray("addressField #C192.168.0.7D") << 1986;
    QTest::newRow("ddnsWindow") << QByteArray("hostField #aD") << 1987;
    QTest::newRow("cloudWindow") << QByteArray("portField #C9D") << 1986;
}

void DeviceSettingsTest::savesEndAlike() {
    QFETCH(QByteArray, steps);
    QFETCH(int, code);
    QVERIFY(t->open(QTest::currentDataTag()));
    const _gui_menu_ before = t->sim.settings();
    PLAYS(steps);
    const auto save = [&] {
        PLAYS("forwardButton");
        if (steps.startsWith("address") && says("ListItem_AskAddress"))
            PLAYS("dialogOkButton");
    };
    const auto unchanged = [&] {
        return t->agrees() && memcmp(&before, &t->sim.settings(), sizeof before) == 0;
    };
    QVERIFY(t->tell(QStringLiteral("refuse %1").arg(code)));
    save();
    QVERIFY(says("Error_SettingsRefused") && ok() && unchanged());
    QVERIFY(t->tell(QStringLiteral("silent %1").arg(code)));
    save();
    QVERIFY(t->settle() && t->says("ListItem_SavingConfiguring"));
    QVERIFY(!t->find("forwardButton")->isEnabled());
    answerTimer()->start(0);
    QVERIFY(says("Error_ControllerSilent") && ok() && unchanged());
    word("drop");
    QTRY_VERIFY(!window()->linkUp());
    PLAYS("forwardButton");
    QVERIFY(says("ListItem_NoController") && ok() && unchanged());
    QVERIFY(t->reconnect());
    save();
    QVERIFY(saved() && t->agrees() && !unchanged());
}

void DeviceSettingsTest::whatIsTriedGoesBack() {
    QVERIFY(t->open("enviScreenWindow"));
    PLAYS("plusButton plusButton backButton");
    QCOMPARE(sentLine("1952 "), QStringLiteral("1952 1 8|1952 1 9|1952 1 7"));
    QVERIFY(t->tell("settings sound.recognitionFailSound 200") && t->open("enviSoundWindow"));
    QCOMPARE(value("recogFailSoundRow"), t->text("ListItem_SoundBeeps"));
    PLAYS("forwardButton");
    QVERIFY(saved() && stored(119, 1) == "\4");
    sent();
    PLAYS("minusButton alarmSoundRow chimeRow bellRow");
    QCOMPARE(t->sim.execute(QStringLiteral("shown")),
             QStringLiteral("ok brightness 7 volume 4 sound alarm bell"));
    // Nobody comes back to it.
    emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
    QVERIFY(t->shows("stayWindow"));
    QCOMPARE(sentLine("195[56] "), QStringLiteral("1955 1 4|1956 1 3|1956 1 1|1955 1 5|1956 1 0"));
    QVERIFY(t->agrees());
}

void DeviceSettingsTest::theLanguageWaitsForTheAnswer() {
    QVERIFY(t->open("setupMenuWindow"));
    const auto title = [this] { return t->text("TopDepthTitle_Setup"); };
    const QString english = title();
    word("silent 1981");
    PLAYS("languageCombo item0 forwardButton");
    QVERIFY(t->settle());
    QCOMPARE(title(), english);
    word("frame 2981 0 0");
    QVERIFY(saved());
    QVERIFY(title() != english && t->reads(title()));
    const char* const fonts = "/usr/lib/fonts/logotypejp_mp_m_1.1.ttf";
    for (const char* item : {"item2", "item1", "item2", "item0"}) {
        PLAYS(QByteArray("languageCombo ").append(item).append(" forwardButton"));
        QVERIFY(saved() && t->reads(title()));
        if (qstrcmp(item, "item2") == 0)
            QVERIFY(QFileInfo(t->root.path(fonts)).isSymLink());
    }
    QVERIFY(!QFileInfo::exists(t->root.path("/zel1/image/img/fonts/logotypejp_mp_m_1.1.ttf")));
    // Somebody comes to the door before the answer.
    word("delay 1981 1");
    PLAYS("languageCombo item1 forwardButton");
    window()->changeWindow(QStringLiteral("stayWindow"));
    QCOMPARE(title(), english);
    QTRY_VERIFY(t->agrees());
}

void DeviceSettingsTest::thePasswordIsTheAdministrators() {
    QVERIFY(t->open("setupMenuWindow"));
    QVERIFY(!t->find("removePasswordRow")->isEnabled());
    PLAYS("passwordField #12345678D repeatField #12345678D forwardButton");
    QVERIFY(saved());
    QCOMPARE(stored(131, 8), QByteArray("12345678"));
    QCOMPARE(t->find<InputField>("passwordField")->text(), QString());
    PLAYS("removePasswordRow dialogCancelButton removePasswordRow dialogOkButton");
    word("settings sound.volume 2");  // forgets nothing
    QTRY_VERIFY(t->agrees());
    PLAYS("forwardButton");
    QVERIFY(saved());
    QCOMPARE(stored(131, 8), QByteArray(8, '\0'));
}

void DeviceSettingsTest::theClockIsSetAtOnce() {
    QVERIFY(t->open("setupMenuWindow"));
    QVERIFY(!t->find("clockRow")->isEnabled() && !t->find("dateField"));
    PLAYS(">timeFromServiceToggle clockRow dateField #20310229D setTimeButton");
    QVERIFY(says("ListItem_CheckInputDate") && ok());
    PLAYS("dateField #20310228 timeField #2400D setTimeButton");
    QVERIFY(says("ListItem_CheckInputTime") && ok());
    QCOMPARE(sentLine("1953 "), QString());
    word("silent 1953");
    PLAYS("timeField #2359D setTimeButton");
    QCOMPARE(sentLine("1953 "), QStringLiteral("1953 1 0 1f 02 1c 17 3b 00"));
    answerTimer()->start(0);
    QVERIFY(says("Error_TimeNotSet") && ok());
}

void DeviceSettingsTest::settingsArriveWhileTheyAreShown() {
    const struct {
        const char* screen;
        const char* words;
        const char* shown;
    } rows[] = {
        {"setupMenuWindow", "setup.deviceNumber 4242", "4242"},
        {"setupMenuWindow", "setup.language 2", "端末設定"},
        {"enviScreenWindow", "screen.standbyMode 1", "Picture 1"},
        {"enviSoundWindow", "sound.volume 10", "10"},
        {"tcpIpWindow", "network.own.gateway 192.168.0.77", "192.168.0.77"},
        {"ddnsWindow", "ddns.host here.example", "here.example"},
        {"cloudWindow", "network.checkPeriod 77", "77"},
    };
    for (const auto& row : rows) {
        init();
        QVERIFY(t->open(row.screen));
        QVERIFY2(!t->reads(QString::fromUtf8(row.shown)), row.words);
        QVERIFY(t->tell(QStringLiteral("settings ") + QLatin1String(row.words)));
        QTRY_VERIFY2(t->reads(QString::fromUtf8(row.shown)), row.words);
    }
}

void DeviceSettingsTest::addressesAreChecked() {
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

void DeviceSettingsTest::theAddressIsTheMachines() {
    const auto wouldRun = [](const char* commands) {
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QLatin1String(commands)));
    };
    QVERIFY(t->open("tcpIpWindow"));
    PLAYS("gatewayField #CD dnsField #C1.1.1.1D addressField #C192.168.0.9D forwardButton");
    QVERIFY(says("ListItem_AskAddress"));
    PLAYS("dialogCancelButton");
    QCOMPARE(sentLine("1986 "), QString());
    word("silent 1986");
    PLAYS("forwardButton dialogOkButton");
    QVERIFY(t->settle());
    // Not before the controller has it.
    QCOMPARE(int(window()->menuRecord().network.own.address[3]), 100);
    wouldRun(
        "not run here: ip addr flush dev eth0; ip addr add 192.168.0.9/24 dev eth0; "
        "nameserver 1.1.1.1$");
    word("frame 2986 0 0");
    QVERIFY(saved());
    wouldRun("not run here: udhcpc -n -q -i eth0$");
    PLAYS(">dhcpToggle");
    QVERIFY(!t->find("addressField")->isEnabled());
    PLAYS("forwardButton dialogOkButton");
    QVERIFY(saved() && t->agrees());
    // The fixed address is kept for later.
    QCOMPARE(stored(157, 5).toHex(), QByteArray("01c0a80009"));
    PLAYS("<dhcpToggle");
    QCOMPARE(t->find<InputField>("addressField")->text(), QStringLiteral("192.168.0.9"));
}

void DeviceSettingsTest::linksAreTested() {
    QVERIFY(t->open("networkMenuWindow"));
    PLAYS("testServerRow");
    QTRY_COMPARE(value("testServerRow"), t->text("ListItem_Reached"));
    PLAYS("testDdnsRow");
    QTRY_COMPARE(value("testDdnsRow"), t->text("ListItem_NotReached"));
    word("silent 1989");
    PLAYS("testServerRow testDdnsRow");
    QCOMPARE(sentLine("1989 "), QStringLiteral("1989 1 0|1989 2 0|1989 1 0"));
    QVERIFY(t->tell("frame 2989 0 2") && t->settle());  // of the other test
    QVERIFY(t->find("serverSpinner"));
    answerTimer()->start(0);
    QTRY_COMPARE(value("testServerRow"), t->text("ListItem_NoAnswer"));
    QVERIFY(!t->find("serverSpinner"));
}

void DeviceSettingsTest::resetsAreAskedFor() {
    QVERIFY(t->open("setupDefaultWindow"));
    PLAYS("logsRow dialogCancelButton");
    QCOMPARE(sentLine("1957 "), QString());
    word("refuse 1957");
    PLAYS("logsRow dialogOkButton");
    QVERIFY(says("Error_NotReset") && ok());
    word("silent 1957");
    PLAYS("settingsRow dialogOkButton");
    QVERIFY(says("ListItem_Resetting") && t->settle());
    QVERIFY(t->tell("frame 2957 0 0") && t->settle());  // of another reset
    QVERIFY(t->says("ListItem_Resetting"));
    answerTimer()->start(0);
    QVERIFY(says("Error_NoAnswer") && ok());
    PLAYS("everythingRow");
    const QString users = QString::number(window()->menuRecord().users.all);
    QVERIFY(t->find<QLabel>("dialogSecondText")->text().contains(users));
    PLAYS("dialogOkButton");
    QVERIFY(says("ListItem_AskResetEverything"));  // not so fast
    QTRY_VERIFY(t->find("dialogOkButton")->isEnabled());
    PLAYS("dialogOkButton");
    // The factory's language, and a terminal that has to be set up.
    QTRY_VERIFY(t->says("ListItem_ResetComplete") && t->dialogText().contains(QChar(0xCD08)));
    QCOMPARE(sentLine("1957 2"), QStringLiteral("1957 2 0"));
    QVERIFY(t->agrees() && ok());
    QCOMPARE(window()->menuRecord().users.all, 0U);
    PLAYS("homeButton");
    QCOMPARE(t->title(), QStringLiteral("setupMenuWindow"));
    QVERIFY(!t->find("backButton"));
    QVERIFY(t->tell("settings commissioned 1") && t->open("setupDefaultWindow"));
    PLAYS("restartRow dialogOkButton");
    QTRY_VERIFY(!window()->linkUp());
    QVERIFY(t->dialogText().isEmpty());
    QVERIFY(t->reconnect());
}

void DeviceSettingsTest::theServiceScreenTellsTheContact() {
    ServiceSim service(0, 0, TerminalAddress{QStringLiteral("127.0.0.1"), 1});
    const auto state = [this] { return value("stateRow"); };
    QVERIFY(t->open("cloudWindow"));
    QCOMPARE(state(), t->text("ListItem_ServiceOff"));
    PLAYS("<useToggle addressField #C127.0.0.1D portField");
    PLAYS("#C" + QByteArray::number(service.port()) + "D forwardButton");
    QTRY_COMPARE(state(), t->text("ListItem_Reached"));
    QVERIFY(t->find("sinceRow") && ok());
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
        PLAYS("forwardButton");
        QTRY_COMPARE(state(), t->text(row.key).replace(QLatin1String("%1"), QLatin1String("2000")));
        QVERIFY(saved());
        QVERIFY(!t->find("sinceRow") && value("lastReachedRow") != t->text("ListItem_NotYet"));
    }
}

QTEST_MAIN(DeviceSettingsTest)
#include "device_settings_test.moc"
