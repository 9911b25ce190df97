#include <QPointer>
#include <QRegularExpression>
#include <QtTest>

#include "link/command_code.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/meal_count_form.h"
#include "tests/support/driven_test.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/plus_minus.h"

/// The settings of attendance and of meals, as a finger on the panel and the controller see them.
class OperationSettingsTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        t->window->changeWindow(QStringLiteral("zelMenuWindow"));
        words({"settings setup.language 1",
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
               "normal"});
        QVERIFY(t->open("zelMenuWindow"));
    }

    void attendanceIsSaved() {
        set("operation.lunchOff", 7);  // kept
        set("operation.supperOff", 8);
        QVERIFY(t->open("zelMenuWindow"));
        t->tap("menuWorkTile");
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
        verifySaved("00 07 01 08 02 13 01 00 09 00 0c 00 0c 00 0d 1e 00 01",
                    "07 1e 09 0f 0b 00 0d 00 11 00 13 00 14 00 18 00 01");
    }

    void mealsAreSaved() {
        set("operation.forcedCloseOff", 6);  // kept
        set("operation.doorOpenTime", 0);    // never set: the default
        set("setup.operation", 2);
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

    void timesAreChecked() {
        const char* const work = "workMenuWindow";
        const char* const food = "foodMenuWindow";
        const struct {
            const char* screen;
            const char* field;
            const char* tooLarge;
            const char* incomplete;
        } fields[] = {
            {work, "forcedOpen", "DoorOpentimeExceededInputRange", "CheckInputRangeDoorOpenTime"},
            {work, "forcedClose", "DoorClosetimeExceededInputRange",
             "CheckInputRangeDoorCloseTime"},
            {work, "weekdayIn", "WeekdayWorkTimeExceededInputRange",
             "CheckInputRangeWeekdayWorkingHours"},
            {work, "weekdayOut", "WeekdayLeaveTimeExceededInputRange",
             "CheckInputRangeWeekdayLeave"},
            {work, "saturdayIn", "SaturdayworkTimeExceededInputRange",
             "CheckInputRangeSaturdayWorkingHours"},
            {work, "saturdayOut", "SaturdayLeaveTimeExceededInputRange",
             "CheckInputRangeSaturdayLeave"},
            {food, "breakfast", "BrackfastExceededInputRange", "BrackfastInputRange"},
            {food, "lunch", "LunchExceededInputRange", "LunchInputRange"},
            {food, "dinner", "DinnerExceededInputRange", "DinnerInputRange"},
            {food, "supper", "SupperExceededInputRange", "SupperInputRange"},
        };
        for (const auto& one : fields) {
            checkTimes(one.screen, QByteArray(one.field) + "=25001200", one.tooLarge);
            checkTimes(one.screen, QByteArray(one.field) + "=0900120", one.incomplete);
        }
        // The topmost fault is named. Every two meals are held against one another, and the times
        // in and out of a day.
        checkTimes(work, "saturdayOut=1 forcedOpen=25001200", "DoorOpentimeExceededInputRange");
        for (const char* typed :
             {"weekdayOut=08590900", "weekdayIn=24002400", "saturdayIn=02012201"})
            checkTimes(work, typed, "IntimeOuttimeSame");
        for (const char* typed : {"breakfast=06001101", "breakfast=18002000", "breakfast=01590900",
                                  "lunch=01000300", "dinner=17002201", "dinner=12001900"})
            checkTimes(food, typed, "MealtimeOverlap");
        // Both are marked, until one of them is changed.
        const QString below = t->find<QLabel>("dialogSecondText")->text();
        QVERIFY(below.contains(t->text("ListItem_LunchTime")));
        QVERIFY(below.contains(t->text("ListItem_DinnerTime")));
        QVERIFY(marked("lunchRow") && marked("dinnerRow") && !marked("breakfastRow"));
        QVERIFY(closeDialog());
        t->tap("lunchTime");
        type("1");
        QVERIFY(!marked("lunchRow") && marked("dinnerRow"));

        checkTimes(work, "forcedClose=00002401 weekdayOut=09001800", "ConfigurationComplete");
        checkTimes(food, "breakfast=02001100 dinner=13002200", "ConfigurationComplete");
    }

    void whatIsNotUsedCannotBeTyped() {
        QVERIFY(open("workMenuWindow"));
        const auto enabled = [this](const char* name) { return t->find(name)->isEnabled(); };
        t->tap("weekdayInTime");
        QVERIFY(t->find<InputField>("weekdayInTime")->isEditing());
        pick("modeCombo", "item2");
        for (const char* name : {"weekdayInTime", "weekdayOutTime", "saturdayInTime",
                                 "saturdayOutTime", "holidayCombo"})
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

    void eachShowStartsFromTheRecord() {
        QVERIFY(t->open("workMenuWindow"));
        t->tap("weekdayInTime");
        type("10001100D");
        t->tap("forcedOpenBox", 0.1);
        t->tap("plusButton");
        t->tap("backButton");
        QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
        // Numbers that no choice has are shown as near as it goes.
        set("operation.attendanceMode", 200);
        set("operation.doorOpenTime", 99);
        word("settings operation.weekdayIn 05:00~24:00");
        set("setup.language", 0);
        QVERIFY(open("workMenuWindow"));
        QCOMPARE(t->find<InputField>("weekdayInTime")->text(), QStringLiteral("05:00~24:00"));
        QVERIFY(t->find("forcedOpenTime")->isEnabled());
        QCOMPARE(t->find<Combo>("modeCombo")->currentText(), QStringLiteral("복귀 용"));
        QCOMPARE(t->find<PlusMinus>("doorOpenTime")->value(), 20);
        QCOMPARE(t->find<ListRow>("doorOpenRow")->text(), QStringLiteral("문열림 설정"));
    }

    void whatArrivesMeanwhileIsTaken() {
        QVERIFY(open("workMenuWindow"));
        t->tap("simpleAccessToggle", 0.8);
        t->tap("weekdayInTime");
        type("07300915D");
        t->tap("saturdayInTime");  // open, with nothing typed yet
        words({"settings sound.volume 9", "settings operation.lunchOff 5",
               "settings operation.doorOpenTime 7", "settings operation.weekdayIn 05:00~06:00",
               "settings operation.saturdayIn 16:00~17:00",
               "settings operation.weekdayOut 12:00~14:00"});
        QTRY_VERIFY(t->agrees());
        QCOMPARE(t->find<PlusMinus>("doorOpenTime")->value(), 7);
        QCOMPARE(field("weekdayInTime"), QStringLiteral("07:30~09:15"));
        QCOMPARE(field("weekdayOutTime"), QStringLiteral("12:00~14:00"));
        type("D");
        QCOMPARE(field("saturdayInTime"), QStringLiteral("16:00~17:00"));
        verifySaved("00 05 00 01 00 07 00 01 09 00 0c 00 00 00 00 00 01 01",
                    "07 1e 09 0f 0c 00 0e 00 10 00 11 00 16 00 02 00 02");
        QCOMPARE(t->window->menuRecord().sound.volume, quint8(9));
    }

    void aPartIsChosenElsewhere() {
        words({"settings sound.volume 5", "settings sound.alarmSound 1",
               "settings sound.recognitionFailSound 0"});
        QVERIFY(t->open("enviSoundWindow"));
        t->tap("plusButton");
        t->tap("alarmSoundRow");
        QCOMPARE(t->title(), QStringLiteral("enviSound_Alarm"));
        QVERIFY(t->find<ListRow>("bellRow")->isSelected());
        t->tap("chimeRow");
        // What arrives meanwhile changes nothing that was touched.
        words({"settings sound.alarmSound 0", "settings sound.volume 3"});
        QTRY_VERIFY(t->agrees());
        t->tap("backButton");
        QCOMPARE(t->title(), QStringLiteral("enviSoundWindow"));
        t->tap("forwardButton");
        QVERIFY(t->sends("1954 1 0 06 03 00"));
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        // Left in another way nothing of it is kept.
        QVERIFY(t->open("zelMenuWindow") && t->open("enviSoundWindow"));
        t->tap("plusButton");
        t->tap("alarmSoundRow");
        window()->changeWindow(QStringLiteral("zelMenuWindow"));
        QVERIFY(t->open("enviSoundWindow"));
        QCOMPARE(t->find<PlusMinus>("volume")->value(), 6);
        // A number out of range shows as the nearest.
        word("settings ddns.port 0");
        QVERIFY(t->open("ddnsWindow"));
        QCOMPARE(field("portField"), QStringLiteral("1"));
    }

    void aSaveThatFailsChangesNothing_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("said");
        const struct {
            const char* before;
            const char* after;
            const char* said;
        } rows[] = {{"refuse 1984", "", "Error_SettingsRefused"},
                    {"silent 1984", "wait", "Error_ControllerSilent"},
                    {"drop", "", "ListItem_NoController"},
                    {"silent 1984", "drop", "ListItem_NoController"},
                    // What arrived on the way is what it goes back to.
                    {"silent 1984", "settings operation.doorOpenTime 3;frame 2984 1 0",
                     "Error_SettingsRefused"}};
        for (const auto& row : rows)
            QTest::addRow("%s;%s", row.before, row.after)
                << QString::fromLatin1(row.before) << QString::fromLatin1(row.after)
                << QString::fromLatin1(row.said);
    }

    void aSaveThatFailsChangesNothing() {
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
            word("frame 2984 0 0");
            QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
            QCOMPARE(t->window->menuRecord().operation.weekdayIn.startHour, quint8(7));
        }
        QVERIFY(t->reconnect());
        QVERIFY(closeDialog());
        word("normal");
        t->tap("forwardButton");
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        QVERIFY(t->agrees());
    }

    void onlyTheOperationInForceCanBeSet() {
        const struct {
            int operation;
            bool attendance;
            bool meals;
        } rows[] = {{0, true, false}, {1, true, false}, {2, false, true}};
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
        set("setup.operation", 1);
        QTRY_COMPARE(t->title(), QStringLiteral("zelMenuWindow"));
        QVERIFY(t->says("Info_OtherOperation"));
        QVERIFY(closeDialog());
    }

    void aWrongPasswordLocksTheEntry() {
        set("setup.adminPassword", 12345678);
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

    void mealCountsAreShown() {
        StatusReport report{};
        report.meals = {128, 4294967295U, 7, 56};
        QVERIFY(t->open("liveWindow"));
        t->window->sendTestPacket(command::SystemStatus, sizeof report,
                                  reinterpret_cast<const char*>(&report));
        MealCountForm::open(t->window->getActivateWindowForm());
        TextRecorder recorder(window()->size());
        window()->render(&recorder);
        QStringList read;
        for (const TextRecorder::Text& text : recorder.texts())
            read.append(text.text);
        for (const auto& [meal, count] : {std::pair("Breakfast", "128"),
                                          {"Lunch", "4294967295"},
                                          {"Dinner", "7"},
                                          {"Supper", "56"}})
            QCOMPARE(read.value(read.indexOf(QLatin1String(meal)) - 1), QLatin1String(count));
        QVERIFY(t->reads(QStringLiteral("OK")));
        QPointer<QWidget> popup = t->find("mealCountForm");
        t->tap("mealCountOkButton");
        QTRY_VERIFY(!popup);
        MealCountForm::open(t->window->getActivateWindowForm());
        popup = t->find("mealCountForm");
        t->window->changeWindow(QStringLiteral("stayWindow"));
        QTRY_VERIFY(!popup);
    }

 private:
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
        set("setup.operation", qstrcmp(screen, "foodMenuWindow") == 0 ? 2 : 1);
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
    /// Types field=digits on the screen with everything in use, and saves.
    void checkTimes(const char* screen, const QByteArray& typed, const char* said) {
        init();
        for (const char* off :
             {"operation.forcedCloseOff", "operation.saveSimpleAccess", "operation.supperOff"})
            set(off, 0);
        QVERIFY(open(screen));
        for (const QByteArray& one : typed.split(' ')) {
            t->tap((one.left(one.indexOf('=')) + "Time").constData());
            type(one.mid(one.indexOf('=') + 1));
        }
        t->tap("forwardButton");
        const QByteArray key = QByteArray("ListItem_") + said;
        QTRY_VERIFY2(t->says(key.constData()), typed.constData());
        const bool saved = key.endsWith("Complete");
        QVERIFY2(t->settle() && saves().size() == (saved ? 2 : 0), typed.constData());
        QVERIFY2((t->sent("1908 0 0 cb 00") >= 0) != saved, typed.constData());
    }
    QStringList saves() const {
        return t->frames.filter(QRegularExpression(QStringLiteral("^198[34] ")));
    }
    /// Whether the save was sent with these payloads, confirmed, and the same is kept by both.
    void verifySaved(const char* settings, const char* times) {
        // Touched without the event loop, which may bring the answer at once.
        QTest::mouseClick(t->find("forwardButton"), Qt::LeftButton);
        QVERIFY(t->says("ListItem_SavingConfiguring"));
        QTRY_VERIFY(t->says("ListItem_ConfigurationComplete"));
        QCOMPARE(saves(), QStringList({QLatin1String("1983 1 0 ") + QLatin1String(settings),
                                       QLatin1String("1984 1 0 ") + QLatin1String(times)}));
        QVERIFY(t->agrees());
    }
};

QTEST_MAIN(OperationSettingsTest)
#include "operation_settings_test.moc"
