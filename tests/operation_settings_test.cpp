#include <QPointer>
#include <QRegularExpression>
#include <QtTest>

#include "link/command_code.h"
#include "link/device_link.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/meal_count_form.h"
#include "tests/support/driven_terminal.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/plus_minus.h"

/// The settings of attendance and of meals, as a finger on the panel and the controller see them.
class OperationSettingsTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { t.reset(); }
    void attendanceIsSaved();
    void mealsAreSaved();
    void timesAreChecked();
    void whatIsNotUsedCannotBeTyped();
    void eachShowStartsFromTheRecord();
    void whatArrivesMeanwhileIsTaken();
    void aSaveThatFailsChangesNothing_data();
    void aSaveThatFailsChangesNothing();
    void onlyTheOperationInForceCanBeSet();
    void aWrongPasswordLocksTheEntry();
    void mealCountsAreShown();

 private:
    void set(const char* field, const char* value) {
        QVERIFY2(t->set({{field, QLatin1String(value)}}), field);
    }
    /// Touches keys of the keypad: digits, C for clear and D for done.
    void type(const QByteArray& keys) {
        for (const char key : keys) {
            const QByteArray name = key == 'C'   ? "key_clear"
                                    : key == 'D' ? "key_done"
                                                 : QByteArray("key_") + key;
            t->tap(name.constData());
        }
    }
    void pick(const char* combo, const char* item) {
        t->tap(combo);
        t->tap(item);
    }
    /// Goes to the screen on a terminal that is run so.
    bool open(const char* screen) {
        t->window->changeWindow(QStringLiteral("zelMenuWindow"));
        set("setup.operation", qstrcmp(screen, "foodMenuWindow") == 0 ? "2" : "1");
        return t->open(screen);
    }
    bool closeDialog() {
        return QTest::qWaitFor([this] {
            if (t->find("dialogOkButton"))
                t->tap("dialogOkButton");
            return t->find("dialogOkButton") == nullptr;
        });
    }
    QString field(const char* name) const { return t->find<InputField>(name)->text(); }
    bool marked(const char* row) const { return t->find<ListRow>(row)->isFaulty(); }
    QStringList saves() const {
        return t->frames.filter(QRegularExpression(QStringLiteral("^198[34] ")));
    }
    /// Whether the save was sent with these payloads, confirmed, and the same is kept by both.
    void verifySaved(const char* settings, const char* times);

    std::unique_ptr<DrivenTerminal> t;
};

void OperationSettingsTest::initTestCase() {
    t = std::make_unique<DrivenTerminal>();
    t->root.write("/mnt/data/rebootchkr", {});
    QVERIFY(t->start());
}

void OperationSettingsTest::init() {
    t->window->changeWindow(QStringLiteral("zelMenuWindow"));
    for (const char* line : {"settings setup.language 1",
                             "settings operation.attendanceMode 0",
                             "settings operation.lunchOff 0",
                             "settings operation.saveSimpleAccess 1",
                             "settings operation.supperOff 1",
                             "settings operation.doorOpenSetting 0",
                             "settings operation.doorOpenTime 20",
                             "settings operation.forcedOpenOff 0",
                             "settings operation.forcedCloseOff 1",
                             "settings operation.forcedOpen 09:00~12:00",
                             "settings operation.forcedClose 00:00~00:00",
                             "settings operation.weekdayIn 06:00~09:00",
                             "settings operation.weekdayOut 11:00~13:00",
                             "settings operation.saturdayIn 17:00~19:00",
                             "settings operation.saturdayOut 22:00~02:00",
                             "settings operation.holidayRule 2",
                             "settings operation.saveRecognitionFail 1",
                             "settings operation.mealCountView 1",
                             "settings setup.operation 1",
                             "normal"})
        QVERIFY2(t->tell(line), line);
    QVERIFY(t->open("zelMenuWindow"));
}

void OperationSettingsTest::verifySaved(const char* settings, const char* times) {
    // Touched without the event loop, which may bring the answer at once.
    QTest::mouseClick(t->find("forwardButton"), Qt::LeftButton);
    QVERIFY(t->says("ListItem_SavingConfiguring"));
    QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
    QCOMPARE(saves(), QStringList({QLatin1String("1983 1 0 ") + QLatin1String(settings),
                                   QLatin1String("1984 1 0 ") + QLatin1String(times)}));
    QVERIFY(t->agrees());
}

void OperationSettingsTest::attendanceIsSaved() {
    set("operation.lunchOff", "7");  // kept
    set("operation.supperOff", "8");
    QVERIFY(t->open("zelMenuWindow"));
    t->tap("menuWorkTile");
    t->tap("simpleAccessToggle", 0.8);
    pick("doorOpenCombo", "item2");
    t->tap("plusButton");  // is at its end
    t->tap("minusButton");
    t->tap("forcedOpenBox", 0.1);
    t->tap("forcedCloseBox", 0.1);
    t->tap("forcedCloseTime");
    type("120013");
    QCOMPARE(t->find<InputField>("forcedCloseTime")->text(), QStringLiteral("12:00~13"));
    type("30D");
    t->tap("weekdayInTime");
    type("C07300915");
    // The keypad goes over to the next field, low as it lies, and keeps it in sight.
    t->tap("saturdayOutTime");
    const QWidget* field = t->find("saturdayOutTime");
    QVERIFY(field->mapTo(t->window.get(), QPoint(0, field->height())).y() <= 478);
    type("20002400D");
    pick("holidayCombo", "item1");
    t->tap("recogFailToggle", 0.8);
    verifySaved("00 07 00 08 02 13 01 00 09 00 0c 00 0c 00 0d 1e 00 01",
                "07 1e 09 0f 0b 00 0d 00 11 00 13 00 14 00 18 00 01");
}

void OperationSettingsTest::mealsAreSaved() {
    set("operation.forcedCloseOff", "6");  // kept
    set("operation.doorOpenTime", "0");    // never set: the default
    set("setup.operation", "2");
    QVERIFY(t->open("zelMenuWindow"));
    t->tap("menuFoodTile");
    t->tap("breakfastBox", 0.1);
    t->tap("dinnerBox", 0.1);
    t->tap("supperBox", 0.1);
    t->tap("lunchTime");
    type("09001700D");
    pick("duplicateUseCombo", "item1");
    t->tap("lampConditionToggle", 0.8);
    t->tap("mealCountViewToggle", 0.2);
    t->tap("recogFailToggle", 0.8);
    verifySaved("01 00 00 00 01 03 01 06 09 00 0c 00 00 00 00 00 00 00",
                "06 00 09 00 09 00 11 00 11 00 13 00 16 00 02 00 02");
}

void OperationSettingsTest::timesAreChecked() {
    const char* const work = "workMenuWindow";
    const char* const food = "foodMenuWindow";
    const struct {
        const char* screen;
        const char* typed;  // field=digits
        const char* key;    // what is said; null when it is saved
    } rows[] = {
        {work, "forcedOpen=25001200", "ListItem_DoorOpentimeExceededInputRange"},
        {work, "forcedOpen=0900120", "ListItem_CheckInputRangeDoorOpenTime"},
        {work, "forcedClose=00002460", "ListItem_DoorClosetimeExceededInputRange"},
        {work, "forcedClose=C", "ListItem_CheckInputRangeDoorCloseTime"},
        {work, "weekdayIn=09600000", "ListItem_WeekdayWorkTimeExceededInputRange"},
        {work, "weekdayIn=09", "ListItem_CheckInputRangeWeekdayWorkingHours"},
        {work, "weekdayOut=09002500", "ListItem_WeekdayLeaveTimeExceededInputRange"},
        {work, "weekdayOut=0", "ListItem_CheckInputRangeWeekdayLeave"},
        {work, "saturdayIn=99999999", "ListItem_SaturdayworkTimeExceededInputRange"},
        {work, "saturdayIn=1", "ListItem_CheckInputRangeSaturdayWorkingHours"},
        {work, "saturdayOut=25000000", "ListItem_SaturdayLeaveTimeExceededInputRange"},
        {work, "saturdayOut=1", "ListItem_CheckInputRangeSaturdayLeave"},
        {work, "saturdayOut=1 forcedOpen=25001200", "ListItem_DoorOpentimeExceededInputRange"},
        {work, "weekdayOut=08590900", "ListItem_IntimeOuttimeSame"},
        {work, "weekdayIn=24002400", "ListItem_IntimeOuttimeSame"},
        {work, "saturdayIn=02012201", "ListItem_IntimeOuttimeSame"},
        {work, "forcedClose=00002401 weekdayOut=09001800", nullptr},
        {food, "breakfast=25001200", "ListItem_BrackfastExceededInputRange"},
        {food, "breakfast=0", "ListItem_BrackfastInputRange"},
        {food, "lunch=00600100", "ListItem_LunchExceededInputRange"},
        {food, "lunch=0", "ListItem_LunchInputRange"},
        {food, "dinner=00002500", "ListItem_DinnerExceededInputRange"},
        {food, "dinner=0", "ListItem_DinnerInputRange"},
        {food, "supper=00000160", "ListItem_SupperExceededInputRange"},
        {food, "supper=0", "ListItem_SupperInputRange"},
        {food, "breakfast=06001101", "ListItem_MealtimeOverlap"},
        {food, "breakfast=18002000", "ListItem_MealtimeOverlap"},
        {food, "breakfast=01590900", "ListItem_MealtimeOverlap"},
        {food, "dinner=12001900", "ListItem_MealtimeOverlap"},
        {food, "lunch=01000300", "ListItem_MealtimeOverlap"},
        {food, "dinner=17002201", "ListItem_MealtimeOverlap"},
        {food, "breakfast=02001100 dinner=13002200", nullptr},
    };
    for (const auto& row : rows) {
        init();
        for (const char* off :
             {"operation.forcedCloseOff", "operation.saveSimpleAccess", "operation.supperOff"})
            set(off, "0");
        QVERIFY(open(row.screen));
        for (const QByteArray& one : QByteArray(row.typed).split(' ')) {
            t->tap((one.left(one.indexOf('=')) + "Time").constData());
            type(one.mid(one.indexOf('=') + 1));
        }
        t->tap("forwardButton");
        const char* said = row.key != nullptr ? row.key : "ListItem_ConfigurationComplete";
        QVERIFY2(QTest::qWaitFor([&] { return t->says(said); }) && t->settle(), row.typed);
        QVERIFY2(saves().size() == (row.key == nullptr ? 2 : 0), row.typed);
        QVERIFY2((t->sent("1908 0 0 cb 00") >= 0) == (row.key != nullptr), row.typed);
        if (qstrcmp(row.typed, "dinner=12001900") != 0)
            continue;
        // Both are named and marked, until one of them is changed.
        const QString below = t->find<QLabel>("dialogSecondText")->text();
        QVERIFY(below.contains(t->text("ListItem_LunchTime")));
        QVERIFY(below.contains(t->text("ListItem_DinnerTime")));
        QVERIFY(marked("lunchRow") && marked("dinnerRow") && !marked("breakfastRow"));
        QVERIFY(closeDialog());
        t->tap("lunchTime");
        type("1");
        QVERIFY(!marked("lunchRow") && marked("dinnerRow"));
    }
}

void OperationSettingsTest::whatIsNotUsedCannotBeTyped() {
    QVERIFY(open("workMenuWindow"));
    const auto enabled = [this](const char* name) { return t->find(name)->isEnabled(); };
    t->tap("weekdayInTime");
    QVERIFY(t->find<InputField>("weekdayInTime")->isEditing());
    pick("modeCombo", "item2");
    for (const char* name :
         {"weekdayInTime", "weekdayOutTime", "saturdayInTime", "saturdayOutTime", "holidayCombo"})
        QVERIFY2(!enabled(name), name);
    QVERIFY(!t->find<InputField>("weekdayInTime")->isEditing());
    t->tap("weekdayInTime");
    QVERIFY(!t->find<InputField>("weekdayInTime")->isEditing());
    QVERIFY(enabled("forcedOpenTime"));
    QVERIFY(!enabled("forcedCloseTime"));
    pick("modeCombo", "item0");
    QVERIFY(enabled("weekdayInTime"));
    QVERIFY(enabled("holidayCombo"));

    QVERIFY(open("foodMenuWindow"));
    QVERIFY(enabled("breakfastTime"));
    QVERIFY(!enabled("dinnerTime"));
    t->tap("dinnerBox", 0.5);
    QVERIFY(enabled("dinnerTime"));
}

void OperationSettingsTest::eachShowStartsFromTheRecord() {
    QVERIFY(t->open("workMenuWindow"));
    t->tap("weekdayInTime");
    type("10001100D");
    t->tap("forcedOpenBox", 0.1);
    t->tap("plusButton");
    t->tap("backButton");
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    // Numbers that no choice has are shown as near as it goes.
    set("operation.attendanceMode", "200");
    set("operation.doorOpenTime", "99");
    set("operation.weekdayIn", "05:00~24:00");
    set("setup.language", "0");
    QVERIFY(open("workMenuWindow"));
    QCOMPARE(t->find<InputField>("weekdayInTime")->text(), QStringLiteral("05:00~24:00"));
    QVERIFY(t->find("forcedOpenTime")->isEnabled());
    QCOMPARE(t->find<Combo>("modeCombo")->currentText(), QStringLiteral("복귀 용"));
    QCOMPARE(t->find<PlusMinus>("doorOpenTime")->value(), 20);
    QCOMPARE(t->find<ListRow>("doorOpenRow")->text(), QStringLiteral("문열림 설정"));
}

void OperationSettingsTest::whatArrivesMeanwhileIsTaken() {
    QVERIFY(open("workMenuWindow"));
    t->tap("weekdayInTime");
    type("07300915D");
    t->tap("saturdayInTime");  // open, with nothing typed yet
    for (const char* line :
         {"settings sound.volume 9", "settings operation.lunchOff 5",
          "settings operation.doorOpenTime 7", "settings operation.weekdayIn 05:00~06:00",
          "settings operation.saturdayIn 16:00~17:00", "settings operation.weekdayOut 12:00~14:00"})
        QVERIFY2(t->tell(line), line);
    QTRY_VERIFY(t->agrees());
    QCOMPARE(t->find<PlusMinus>("doorOpenTime")->value(), 7);
    QCOMPARE(field("weekdayInTime"), QStringLiteral("07:30~09:15"));
    QCOMPARE(field("weekdayOutTime"), QStringLiteral("12:00~14:00"));
    type("D");
    QCOMPARE(field("saturdayInTime"), QStringLiteral("16:00~17:00"));
    verifySaved("00 05 01 01 00 07 00 01 09 00 0c 00 00 00 00 00 01 01",
                "07 1e 09 0f 0c 00 0e 00 10 00 11 00 16 00 02 00 02");
    QCOMPARE(t->window->menuRecord().sound.volume, quint8(9));
}

void OperationSettingsTest::aSaveThatFailsChangesNothing_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("said");
    const auto row = [](const char* name, const char* before, const char* after, const char* said) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after)
                            << QString::fromLatin1(said);
    };
    row("refused", "refuse 1984", "", "Error_SettingsRefused");
    row("no answer", "silent 1984", "wait", "Error_ControllerSilent");
    row("no link", "drop", "", "ListItem_NoController");
    row("link lost", "silent 1984", "drop", "ListItem_NoController");
    // What arrived on the way is what it goes back to.
    row("changed and refused", "silent 1984", "settings operation.doorOpenTime 3;frame 2984 1 0",
        "Error_SettingsRefused");
}

void OperationSettingsTest::aSaveThatFailsChangesNothing() {
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, said);
    QVERIFY(open("workMenuWindow"));
    t->tap("weekdayInTime");
    type("07300915D");
    QVERIFY(t->tell(before));
    QTRY_COMPARE(t->window->linkUp(), before != QLatin1String("drop"));
    QTest::mouseClick(t->find("forwardButton"), Qt::LeftButton);
    if (t->window->linkUp()) {
        QVERIFY(t->says("ListItem_SavingConfiguring"));
        QVERIFY(!t->find("forwardButton")->isEnabled());
        QCOMPARE(t->window->menuRecord().operation.weekdayIn.startHour, quint8(7));
    }
    auto* timer =
        t->window->getActivateWindowForm()->findChild<QTimer*>(QStringLiteral("answerTimer"));
    for (const QString& one : after.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (one == QLatin1String("wait")) {
            QVERIFY(t->settle());
            timer->start(0);
        } else {
            QVERIFY2(t->tell(one), qPrintable(one));
        }
    }
    QTRY_VERIFY(t->says(said.toLatin1().constData()));
    QVERIFY(t->find("forwardButton")->isEnabled() && !timer->isActive());
    QVERIFY(t->agrees());
    QCOMPARE(field("weekdayInTime"), QStringLiteral("07:30~09:15"));
    if (said == QLatin1String("Error_ControllerSilent")) {
        // Better late than never: the controller has it after all.
        QVERIFY(t->tell("frame 2984 0 0"));
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        QCOMPARE(t->window->menuRecord().operation.weekdayIn.startHour, quint8(7));
    }
    t->window->findChild<DeviceLink*>()->open(t->sim.port());
    QTRY_VERIFY(t->window->linkUp());
    QVERIFY(closeDialog());
    QVERIFY(t->tell("normal"));
    t->tap("forwardButton");
    QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
    QVERIFY(t->agrees());
}

void OperationSettingsTest::onlyTheOperationInForceCanBeSet() {
    const struct {
        const char* operation;
        bool attendance;
        bool meals;
    } rows[] = {{"0", true, false}, {"1", true, false}, {"2", false, true}};
    for (const auto& row : rows) {
        set("setup.operation", row.operation);
        QTRY_COMPARE(t->find("menuWorkTile")->isEnabled(), row.attendance);
        QCOMPARE(t->find("menuFoodTile")->isEnabled(), row.meals);
        for (const auto& [screen, allowed] :
             {std::pair("workMenuWindow", row.attendance), {"foodMenuWindow", row.meals}}) {
            t->window->changeWindow(QLatin1String(screen));
            QCOMPARE(t->title(), QLatin1String(allowed ? screen : "zelMenuWindow"));
            QCOMPARE(t->says("Info_OtherOperation"), !allowed);
            QVERIFY(closeDialog());
            QVERIFY(t->open("zelMenuWindow"));
        }
    }
    // It changes while one is at it.
    QVERIFY(t->open("foodMenuWindow"));
    set("setup.operation", "1");
    QTRY_COMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    QVERIFY(t->says("Info_OtherOperation"));
    QVERIFY(closeDialog());
}

void OperationSettingsTest::aWrongPasswordLocksTheEntry() {
    set("setup.adminPassword", "12345678");
    QVERIFY(t->open("liveWindow"));
    t->tap("menuButton");
    auto* screen = qobject_cast<InputAdminPassword*>(t->window->getActivateWindowForm());
    QVERIFY(screen);
    auto* field = t->find<InputField>("passwordField");
    const auto message = [this] { return t->find<QLabel>("messageLabel")->text(); };
    const auto enter = [&](const QByteArray& digits) {
        type(digits);
        t->tap("forwardButton");
    };
    enter("");
    QVERIFY(!t->find("messageLabel"));
    enter("1234567");
    QVERIFY(message().contains(t->text("Info_WrongPassword")));
    QCOMPARE(field->text(), QString());
    type("87654321");
    t->tap("key_done");
    QVERIFY(message().contains(t->text("Info_WrongPassword")) && field->isEditing());
    // Neither leaving nor coming back makes a fresh start.
    t->tap("backButton");
    QVERIFY(t->open("InputAdminPassword"));
    screen->setLockTime(3000);
    enter("1");
    QVERIFY(message().contains(QLatin1String("Try again in")));
    QVERIFY(t->sends("1908 0 0 cb 00"));
    QVERIFY(t->open("stayWindow"));
    QVERIFY(t->open("InputAdminPassword"));
    QVERIFY(!field->isEnabled() && !field->isEditing());
    QVERIFY(!t->find("forwardButton")->isEnabled());
    QTRY_VERIFY(field->isEditing());
    QVERIFY(!t->find("messageLabel"));
    enter("12345678");
    QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
    QCOMPARE(field->text(), QString());
}

void OperationSettingsTest::mealCountsAreShown() {
    StatusReport report{};
    report.meals = {128, 4294967295U, 7, 56};
    QVERIFY(t->open("liveWindow"));
    t->window->sendTestPacket(command::SystemStatus, sizeof report,
                              reinterpret_cast<const char*>(&report));
    MealCountForm::open(t->window->getActivateWindowForm());
    for (const char* text :
         {"Breakfast", "Lunch", "Dinner", "Supper", "128", "4294967295", "7", "56", "OK"})
        QVERIFY2(t->reads(QLatin1String(text)), text);
    QPointer<QWidget> popup = t->find("mealCountForm");
    t->tap("mealCountOkButton");
    QTRY_VERIFY(!popup);
    MealCountForm::open(t->window->getActivateWindowForm());
    popup = t->find("mealCountForm");
    t->window->changeWindow(QStringLiteral("stayWindow"));
    QTRY_VERIFY(!popup);
}

QTEST_MAIN(OperationSettingsTest)
#include "operation_settings_test.moc"
