#include <QTimer>

#include "app/menu_timer.h"
#include "app/screen_factory.h"
#include "app/window_registry.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "screens/common/settings_form.h"
#include "screens/common/settings_part.h"
#include "tests/support/driven_test.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/plus_minus.h"
#include "ui/toggle.h"
#include "ui/top_bar.h"

namespace {

constexpr int kBadHost = 1;
constexpr int kBadPort = 2;
constexpr int kBadAddress = 3;
constexpr int kQuestion = 4;

constexpr ScreenText kTexts[] = {
    {kBadHost, "ListItem_CheckInputDate", ScreenText::Error},
    {kBadPort, "ListItem_StartDateAfterEndDate", ScreenText::Error},
    {kBadAddress, "ListItem_InsertUSB", ScreenText::Error},
    {kQuestion, "ListItem_RunDeleteOldLogs", ScreenText::Danger},
};

/// What the forms of the screens below make of themselves: a bar, and rows one after the other.
struct Form {
    void setupUi(QWidget* screen) {
        topBar = new TopBar(screen);
        topBar->setGeometry(0, 0, 480, 72);
        topBar->setForwardKey(QStringLiteral("TopMenu_Save"));
        topBar->setBackVisible(true);
        topBar->setHomeVisible(true);
        const bool part = screen->objectName() == QLatin1String("enviSound_Alarm");
        topBar->setProperty("backTarget",
                            QLatin1String(part ? "enviSoundWindow" : "zelMenuWindow"));
    }
    ListRow* addRow(const char* name) {
        auto* row = new ListRow(topBar->parentWidget());
        row->setObjectName(QLatin1String(name));
        row->setMark(ListRow::Radio);
        row->setGeometry(16, next, 448, 76);
        next += 84;
        return row;
    }
    /// A control on a row of its own.
    template <class Control>
    Control* add(const char* name) {
        auto* control = new Control(addRow("row"));
        control->setObjectName(QLatin1String(name));
        return control;
    }
    TopBar* topBar;
    int next = 88;
};

class Blank : public FormScreen<Form> {
 public:
    using FormScreen::FormScreen;
};

class Sound : public FormScreen<Form, SettingsForm> {
 public:
    using FormScreen::FormScreen;

 protected:
    void built() override {
        slice(&_gui_menu_::sound, command::SaveSoundSettings, command::SoundSettingsSaved);
        auto* volume = ui_->add<PlusMinus>("volume");
        volume->setMaximum(10);
        bind(volume, &SoundBlock::volume);
        atOnce(volume, [](const _gui_menu_& tried) {
            shell()->SendCommand(command::SetVolume, 1, tried.sound.volume);
        });
        bindPart(ui_->addRow("alarm"), &SoundBlock::alarmSound, QStringLiteral("enviSound_Alarm"));
        bind(QVector<ListRow*>{ui_->addRow("fail0"), ui_->addRow("fail1")},
             &SoundBlock::recognitionFailSound);
    }
};

class Alarm : public FormScreen<Form, SettingsPart> {
 public:
    using FormScreen::FormScreen;

 protected:
    void built() override {
        bind({ui_->addRow("sound0"), ui_->addRow("sound1"), ui_->addRow("sound2")});
    }
};

class Ddns : public FormScreen<Form, SettingsForm> {
 public:
    using FormScreen::FormScreen;
    QStringList answers;

    void ask() {
        popup().ask(
            kQuestion, [this] { answers.append(QStringLiteral("yes")); },
            [this] { answers.append(QStringLiteral("no")); });
    }

 protected:
    void built() override {
        popup().add(kTexts);
        slice(&_gui_menu_::ddns, command::SaveDdns, command::DdnsSaved);
        bind(ui_->add<Toggle>("use"), &DdnsBlock::use, kInverted);
        bind(ui_->add<InputField>("host"), &DdnsBlock::host, kBadHost,
             [](const QString& host) { return !host.contains(QLatin1Char(' ')); });
        bind(ui_->add<InputField>("port"), &DdnsBlock::port, Range{1, 65535}, kBadPort);
    }
};

class Address : public FormScreen<Form, SettingsForm> {
 public:
    using FormScreen::FormScreen;

 protected:
    void built() override {
        popup().add(kTexts);
        slice(&_gui_menu_::network, command::SaveNetwork, command::NetworkSaved,
              command::save::TcpIp);
        bind(ui_->add<InputField>("gateway"), &AddressBlock::gateway, kAddressOrNone, kBadAddress);
        bind(ui_->add<InputField>("mask"), &AddressBlock::mask, kAddress, kBadAddress);
    }
};

template <std::size_t number>
std::optional<double> volts(const DeviceMessage& message, const FactoryStep&) {
    const auto millivolts = message.records<quint16>();
    return millivolts.size() == 3 ? std::optional(millivolts[number] / 1000.0) : std::nullopt;
}

std::optional<double> millimetres(const DeviceMessage& message, const FactoryStep&) {
    return message.record<quint16>();
}

std::optional<double> result(const DeviceMessage& message, const FactoryStep&) {
    return message.p1;
}

constexpr FactoryStep kPower[] = {
    {command::FactoryPowerTest, 0, command::FactoryPowerReport, "a", nullptr, &volts<0>, "%.1f V",
     10.8, 13.2},
    {command::FactoryPowerTest, 0, command::FactoryPowerReport, "b", nullptr, &volts<1>, "%.2f V",
     4.75, 5.25},
};
constexpr FactoryStep kNetwork[] = {
    {command::FactoryRs422Test, 0, command::FactoryRs422Report, "a", nullptr, &result, nullptr, 0,
     0},
    {command::FactoryPingTest, 0, command::FactoryPingReport, "b", nullptr, &result, nullptr, 0, 0},
};
constexpr FactoryStep kProximity[] = {
    {command::FactoryProximityTest, 0, command::FactoryProximityReport, "a", nullptr, &millimetres,
     "%.0f mm", 0, 300, FactoryStep::WhenSeen},
    {command::FactoryProximityTest, 0, command::FactoryProximityReport, "b", nullptr, &millimetres,
     "%.0f mm", 600, 65535, FactoryStep::WhenSeen},
};

template <const auto& steps>
class Test : public FormScreen<Form, FactoryTestForm> {
 public:
    using FormScreen::FormScreen;

 protected:
    void built() override { setSteps(steps); }
};

template <class Screen>
void append(QWidget* parent, WindowRegistry& registry, const char* title) {
    registry.append(new Screen(parent, QLatin1String(title)));
}

}  // namespace

/// A terminal with screens that try what screens are made of, under titles that the controller's
/// answers find.
void createScreens(QWidget* parent, WindowRegistry& registry) {
    for (const char* title : {"bootWindow", "stayWindow", "zelMenuWindow"})
        append<Blank>(parent, registry, title);
    append<Sound>(parent, registry, "enviSoundWindow");
    append<Alarm>(parent, registry, "enviSound_Alarm");
    append<Ddns>(parent, registry, "ddnsWindow");
    append<Address>(parent, registry, "tcpIpWindow");
    append<Test<kPower>>(parent, registry, "f_pwrTestWindow");
    append<Test<kNetwork>>(parent, registry, "f_netTestWindow");
    append<Test<kProximity>>(parent, registry, "f_tofTestWindow");
}

class ScreensCommonTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        words({"settings sound.volume 5", "settings sound.alarmSound 1",
               "settings sound.recognitionFailSound 0", "settings ddns.use 1",
               "settings ddns.host a.example", "settings ddns.port 80",
               "settings screen.menuTimeout 3", "settings network.own.gateway 192.168.0.1",
               "settings network.own.mask 255.255.255.0", "normal"});
        QVERIFY(t->open("zelMenuWindow"));
    }

    void everyKindOfFieldIsCarried() {
        word("settings ddns.use 0");
        QVERIFY(t->open("ddnsWindow"));
        QCOMPARE(t->find<Toggle>("use")->currentIndex(), 1);
        QCOMPARE(text("host"), QStringLiteral("a.example"));
        QCOMPARE(text("port"), QStringLiteral("80"));
        t->find<Toggle>("use")->setCurrentIndex(0);
        type("host", "b.example");
        type("port", "65535");
        t->tap("forwardButton");
        QVERIFY(t->sends("1987 1 0 01 62 2e 65 78 61 6d 70 6c 65 00 00 00 00 00 00 00 00 ff ff"));
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        // A number out of range shows as the nearest.
        QVERIFY(t->open("zelMenuWindow"));
        word("settings ddns.port 0");
        QVERIFY(t->open("ddnsWindow"));
        QCOMPARE(text("port"), QStringLiteral("1"));

        // An address of zeros is none.
        word("settings network.own.gateway 0.0.0.0");
        QVERIFY(t->open("tcpIpWindow"));
        QCOMPARE(text("gateway"), QString());
        QCOMPARE(text("mask"), QStringLiteral("255.255.255.0"));
        type("mask", "255.255.0.0");
        t->tap("forwardButton");
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        QVERIFY(t->sends("1986 1 0"));
        QCOMPARE(int(t->sim.settings().network.own.mask[2]), 0);
        QVERIFY(t->agrees());
    }

    void aFaultIsNamedAndMarked() {
        const char* const number = "ListItem_StartDateAfterEndDate";
        const char* const address = "ListItem_InsertUSB";
        const std::tuple<const char*, const char*, const char*> rows[] = {
            {"host", "a b", "ListItem_CheckInputDate"},
            {"port", "0", number},
            {"port", "65536", number},
            {"port", "", number},
            {"port", "99999999999999999999999", number},
            {"gateway", "1.2.3", address},
            {"gateway", "1.2.3.256", address},
            {"gateway", "1.2..3", address},
            {"mask", "", address},
            {"mask", "1.2.3.4.5", address}};
        for (const auto& [field, typed, said] : rows) {
            QVERIFY(t->open(said == address ? "tcpIpWindow" : "ddnsWindow"));
            type(field, typed);
            t->tap("forwardButton");
            QVERIFY2(t->says(said), typed);
            auto* marked = static_cast<ListRow*>(t->find(field)->parentWidget());
            QVERIFY(marked->isFaulty());
            type(field, "1");
            QVERIFY(!marked->isFaulty());
            QCOMPARE(sentLine("198"), QString());
            QVERIFY(t->open("zelMenuWindow"));
        }
    }

    void whatIsHeardGoesBack() {
        // Left without a save, however.
        for (const char* way : {"backButton", "homeButton", ""}) {
            QVERIFY(t->open("enviSoundWindow"));
            t->tap("plusButton");
            t->tap("plusButton");
            if (*way != '\0')
                t->tap(way);
            else
                emit t->window->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
            QCOMPARE(sentLine("1955"), QStringLiteral("1955 1 6|1955 1 7|1955 1 5"));
            QCOMPARE(int(t->window->menuRecord().sound.volume), 5);
            init();
        }
        // So it is when nobody comes back from the screen below.
        QVERIFY(t->open("enviSoundWindow"));
        t->tap("plusButton");
        t->tap("alarm");
        t->tap("homeButton");
        QCOMPARE(sentLine("1955"), QStringLiteral("1955 1 6|1955 1 5"));
        // A refused one goes back, too; a saved one stays.
        for (const bool refused : {true, false}) {
            init();
            word(refused ? "refuse 1954" : "normal");
            QVERIFY(t->open("enviSoundWindow"));
            t->tap("plusButton");
            t->tap("forwardButton");
            QTRY_VERIFY(
                t->says(refused ? "Error_SettingsRefused" : "ListItem_ConfigurationComplete"));
            t->window->changeWindow(QStringLiteral("zelMenuWindow"));
            QCOMPARE(sentLine("1955"),
                     refused ? QStringLiteral("1955 1 6|1955 1 5") : QStringLiteral("1955 1 6"));
        }
    }

    void aPartIsChosenElsewhere() {
        QVERIFY(t->open("enviSoundWindow"));
        t->tap("plusButton");
        t->tap("fail1");
        t->tap("alarm");
        QCOMPARE(t->title(), QStringLiteral("enviSound_Alarm"));
        QVERIFY(t->find<ListRow>("sound1")->isSelected());
        t->tap("sound2");
        // What arrives meanwhile changes nothing that was touched.
        QVERIFY(t->tell("settings sound.alarmSound 0") && t->tell("settings sound.volume 3"));
        QTRY_VERIFY(t->agrees());
        t->tap("backButton");
        QCOMPARE(t->title(), QStringLiteral("enviSoundWindow"));
        QCOMPARE(t->find<PlusMinus>("volume")->value(), 6);
        t->tap("forwardButton");
        QVERIFY(t->sends("1954 1 0 06 02 01"));
        // Left in another way nothing of it is kept.
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        QVERIFY(t->open("zelMenuWindow"));
        QVERIFY(t->open("enviSoundWindow"));
        t->tap("plusButton");
        t->tap("alarm");
        t->tap("homeButton");
        QVERIFY(t->open("enviSoundWindow"));
        QCOMPARE(t->find<PlusMinus>("volume")->value(), 6);
    }

    void aQuestionIsAnsweredOnce() {
        QVERIFY(t->open("ddnsWindow"));
        auto* screen = static_cast<Ddns*>(t->window->getActivateWindowForm());
        for (const char* button : {"dialogOkButton", "dialogCancelButton"}) {
            screen->ask();
            screen->ask();  // the first one is forgotten
            QVERIFY(t->says("ListItem_RunDeleteOldLogs"));
            QVERIFY(QTest::qWaitFor([&] {
                t->tap(button);
                return t->dialogText().isEmpty();
            }));
        }
        QCOMPARE(screen->answers.join(QLatin1Char(' ')), QStringLiteral("yes no"));
    }

    void aTestIsJudgedByItsLimits() {
        QVERIFY(t->open("f_pwrTestWindow"));
        QTRY_COMPARE(verdicts(), QStringLiteral("pass pass"));
        QCOMPARE(t->find<ListRow>("step0")->value(), QStringLiteral("12.0 V"));
        QSignalSpy judged(test(), &FactoryTestForm::judged);
        // A report that is late counts as long as it can be seen; one cut short tells nothing.
        QVERIFY(t->tell("frame 4009 0 0 e02e1027e40c") && t->tell("frame 4009 0 0 e02e8813"));
        QTRY_COMPARE(verdicts(), QStringLiteral("pass fail"));
        QVERIFY(test()->verdict() == FactoryTestForm::Verdict::Fail && judged.count() == 1);

        // Nothing has passed before it was seen.
        QVERIFY(t->open("f_tofTestWindow"));
        QTRY_COMPARE(t->find<ListRow>("step1")->value(), QStringLiteral("450 mm"));
        QCOMPARE(verdicts(), QStringLiteral("running running"));
        word("frame 4017 0 0 2c01");
        QTRY_COMPARE(verdicts(), QStringLiteral("pass running"));
        test()->findChild<QTimer*>(QStringLiteral("stepTimer"))->start(0);
        QTRY_COMPARE(verdicts(), QStringLiteral("pass fail"));
    }

    void aTestIsStartedAndStopped() {
        word("silent 4040");
        QVERIFY(t->open("zelMenuWindow"));
        t->window->changeWindow(QStringLiteral("f_netTestWindow"));
        QTRY_COMPARE(verdicts(), QStringLiteral("pass running"));
        t->tap("homeButton");
        QCOMPARE(sentLine("40"), QStringLiteral("4020 0 0|4020 1 0|4040 0 0|4040 1 0"));
        // What comes when it has been left is of no use the next time either.
        QVERIFY(t->tell("frame 4040 1 0") && t->tell("silent 4020") && t->settle());
        QVERIFY(t->open("f_netTestWindow"));
        QCOMPARE(verdicts(), QStringLiteral("running not"));
        QVERIFY(t->tell("frame 4040 0 0") && t->settle());
        QCOMPARE(verdicts(), QStringLiteral("running not"));
        // Nothing passes without the link.
        word("drop");
        QTRY_COMPARE(verdicts(), QStringLiteral("fail not"));
        t->window->changeWindow(QStringLiteral("zelMenuWindow"));
        t->window->changeWindow(QStringLiteral("f_netTestWindow"));
        QCOMPARE(verdicts(), QStringLiteral("fail not"));
        QVERIFY(t->reconnect());
    }

 private:
    /// Text into a field, as if it had been typed.
    void type(const char* field, const char* text) {
        auto* input = t->find<InputField>(field);
        QVERIFY2(input, field);
        input->setText(QLatin1String(text));
    }
    QString text(const char* field) const { return t->find<InputField>(field)->text(); }
    FactoryTestForm* test() const {
        return static_cast<FactoryTestForm*>(t->window->getActivateWindowForm());
    }
    QString verdicts() const {
        static const char* const words[] = {"", "not", "running", "pass", "fail"};
        QStringList shown;
        for (const char* row : {"step0", "step1"})
            shown.append(QLatin1String(words[int(t->find<ListRow>(row)->verdict())]));
        return shown.join(QLatin1Char(' '));
    }
};

QTEST_MAIN(ScreensCommonTest)
#include "screens_common_test.moc"
