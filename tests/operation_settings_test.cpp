#include <QPointer>

#include "link/command_code.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/meal_count_form.h"
#include "tests/support/driven_test.h"
#include "ui/list_row.h"

/// The settings of attendance and of meals, as a finger on the panel and the controller see them.
class OperationSettingsTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        t->phrases["WORK"] = "!settings_setup.operation_1 :workMenuWindow";
        t->phrases["FOOD"] = "!settings_setup.operation_2 :foodMenuWindow";
        // With everything in use.
        t->phrases["USED"] = R"(!settings_operation.forcedCloseOff_0
            !settings_operation.saveSimpleAccess_0 !settings_operation.supperOff_0)";
        t->phrases["REFUSED"] = "-^1983 -^1984 ^1908_0_0_cb_00";
        t->phrases["TAKEN"] = "SAVED ^1983 ^1984 -^1908_0_0_cb_00";
    }
    void init() {
        QVERIFY(begin());
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
        PLAYS(R"(!settings_operation.lunchOff_7 !settings_operation.supperOff_8 :zelMenuWindow
            menuWorkTile doorOpenCombo item2 plusButton minusButton forcedOpenBox forcedCloseBox
            forcedCloseTime #120013 forcedCloseTime=12:00~13 #30D weekdayInTime #C07300915
            saturdayOutTime)");
        // The keypad goes over to the next field, low as it lies, and keeps it in sight.
        const QWidget* field = t->find("saturdayOutTime");
        QVERIFY(field->mapTo(window(), QPoint(0, field->height())).y() <= 478);
        PLAYS(
            "#20002400D holidayCombo item1 >recogFailToggle NEXT SAVED "
            "[1983_1_0_00_07_01_08_02_13_01_00_09_00_0c_00_0c_00_0d_1e_00_01,"
            "1984_1_0_07_1e_09_0f_0b_00_0d_00_11_00_13_00_14_00_18_00_01]");
        QVERIFY(t->agrees());
    }

    void mealsAreSaved() {
        // One is kept, and the other has never been set: the default.
        PLAYS(
            "!settings_operation.forcedCloseOff_6 !settings_operation.doorOpenTime_0 "
            "!settings_setup.operation_2 :zelMenuWindow menuFoodTile breakfastBox dinnerBox "
            "supperBox lunchTime #09001700D duplicateUseCombo item1 >lampConditionToggle "
            "<mealCountViewToggle >recogFailToggle NEXT SAVED "
            "[1983_1_0_01_00_00_00_01_03_01_06_09_00_0c_00_00_00_00_00_00_00,"
            "1984_1_0_06_00_09_00_09_00_11_00_11_00_13_00_16_00_02_00_02]");
        QVERIFY(t->agrees());
    }

    void timesAreChecked_data() {
        table(R"(open | WORK forcedOpenTime #25001200 NEXT ?ListItem_DoorOpentimeExceededInputRange
            close | WORK forcedCloseTime #25001200 NEXT ?ListItem_DoorClosetimeExceededInputRange
            in | WORK weekdayInTime #25001200 NEXT ?ListItem_WeekdayWorkTimeExceededInputRange
            out | WORK weekdayOutTime #25001200 NEXT ?ListItem_WeekdayLeaveTimeExceededInputRange
            in6 | WORK saturdayInTime #25001200 NEXT ?ListItem_SaturdayworkTimeExceededInputRange
            out6 | WORK saturdayOutTime #25001200 NEXT ?ListItem_SaturdayLeaveTimeExceededInputRange
            meal1 | FOOD breakfastTime #25001200 NEXT ?ListItem_BrackfastExceededInputRange
            meal2 | FOOD lunchTime #25001200 NEXT ?ListItem_LunchExceededInputRange
            meal3 | FOOD dinnerTime #25001200 NEXT ?ListItem_DinnerExceededInputRange
            meal4 | FOOD supperTime #25001200 NEXT ?ListItem_SupperExceededInputRange
            open, short | WORK forcedOpenTime #0900120 NEXT ?ListItem_CheckInputRangeDoorOpenTime
            close, short | WORK forcedCloseTime #0900120 NEXT ?ListItem_CheckInputRangeDoorCloseTime
            in, short | WORK weekdayInTime #0900120 NEXT
                ?ListItem_CheckInputRangeWeekdayWorkingHours
            out, short | WORK weekdayOutTime #0900120 NEXT ?ListItem_CheckInputRangeWeekdayLeave
            in6, short | WORK saturdayInTime #0900120 NEXT
                ?ListItem_CheckInputRangeSaturdayWorkingHours
            out6, short | WORK saturdayOutTime #0900120 NEXT ?ListItem_CheckInputRangeSaturdayLeave
            meal1, short | FOOD breakfastTime #0900120 NEXT ?ListItem_BrackfastInputRange
            meal2, short | FOOD lunchTime #0900120 NEXT ?ListItem_LunchInputRange
            meal3, short | FOOD dinnerTime #0900120 NEXT ?ListItem_DinnerInputRange
            meal4, short | FOOD supperTime #0900120 NEXT ?ListItem_SupperInputRange
            topmost | WORK saturdayOutTime #1 forcedOpenTime #25001200 NEXT
                ?ListItem_DoorOpentimeExceededInputRange
            in and out 1 | WORK weekdayOutTime #08590900 NEXT ?ListItem_IntimeOuttimeSame
            in and out 2 | WORK weekdayInTime #24002400 NEXT ?ListItem_IntimeOuttimeSame
            in and out 3 | WORK saturdayInTime #02012201 NEXT ?ListItem_IntimeOuttimeSame
            meals 1 2 | FOOD breakfastTime #06001101 NEXT ?ListItem_MealtimeOverlap
            meals 1 3 | FOOD breakfastTime #18002000 NEXT ?ListItem_MealtimeOverlap
            meals 1 4 | FOOD breakfastTime #01590900 NEXT ?ListItem_MealtimeOverlap
            meals 2 4 | FOOD lunchTime #01000300 NEXT ?ListItem_MealtimeOverlap
            meals 3 4 | FOOD dinnerTime #17002201 NEXT ?ListItem_MealtimeOverlap
            meals 2 3 | FOOD dinnerTime #12001900 NEXT ?ListItem_MealtimeOverlap
            work | WORK forcedCloseTime #00002401 weekdayOutTime #09001800 NEXT TAKEN
            meals | FOOD breakfastTime #02001100 dinnerTime #13002200 NEXT TAKEN)");
    }

    void timesAreChecked() {
        const auto [steps] = values<1>();
        PLAYS("USED " + steps + (steps.endsWith("TAKEN") ? "" : " REFUSED"));
    }

    void whatOverlapsIsMarkedUntilItIsChanged() {
        const auto marked = [this](const char* row) { return t->find<ListRow>(row)->isFaulty(); };
        PLAYS(R"(USED FOOD dinnerTime #12001900 NEXT ?ListItem_MealtimeOverlap ?ListItem_LunchTime
            ?ListItem_DinnerTime)");
        QVERIFY(marked("lunchRow") && marked("dinnerRow") && !marked("breakfastRow"));
        PLAYS("OK lunchTime #1");
        QVERIFY(!marked("lunchRow") && marked("dinnerRow"));
    }

    void whatIsNotUsedCannotBeTyped() {
        PLAYS(R"(WORK weekdayInTime +key_0 modeCombo item2 -+weekdayInTime -+weekdayOutTime
            -+saturdayInTime -+saturdayOutTime -+holidayCombo -key_0 weekdayInTime -key_0
            +forcedOpenTime -+forcedCloseTime modeCombo item0 +weekdayInTime +holidayCombo
            :zelMenuWindow FOOD +breakfastTime -+dinnerTime dinnerBox +dinnerTime)");
    }

    void eachShowStartsFromTheRecord() {
        // Numbers that no choice has are shown as near as it goes.
        PLAYS(R"(WORK weekdayInTime #10001100D forcedOpenBox plusButton BACK @zelMenuWindow
            !settings_operation.attendanceMode_200 !settings_operation.doorOpenTime_99
            !settings_operation.weekdayIn_05:00~24:00 !settings_setup.language_0 WORK
            weekdayInTime=05:00~24:00 +forcedOpenTime modeCombo=복귀_용 doorOpenTime=20
            doorOpenRow=문열림_설정)");
    }

    void whatArrivesMeanwhileIsTaken() {
        // One field has been typed in, the next is open with nothing typed yet.
        PLAYS(
            "WORK >simpleAccessToggle weekdayInTime #07300915D saturdayInTime "
            "!settings_sound.volume_9 !settings_operation.lunchOff_5 "
            "!settings_operation.doorOpenTime_7 !settings_operation.weekdayIn_05:00~06:00 "
            "!settings_operation.saturdayIn_16:00~17:00 "
            "!settings_operation.weekdayOut_12:00~14:00 doorOpenTime=7 "
            "weekdayOutTime=12:00~14:00 weekdayInTime=07:30~09:15 #D saturdayInTime=16:00~17:00 "
            "NEXT SAVED [1983_1_0_00_05_00_01_00_07_00_01_09_00_0c_00_00_00_00_00_01_01,"
            "1984_1_0_07_1e_09_0f_0c_00_0e_00_10_00_11_00_16_00_02_00_02]");
        QVERIFY(t->agrees());
        QCOMPARE(window()->menuRecord().sound.volume, quint8(9));
    }

    void aPartIsChosenElsewhere() {
        PLAYS(R"(!settings_sound.volume_5 !settings_sound.alarmSound_1
            !settings_sound.recognitionFailSound_0 :enviSoundWindow plusButton alarmSoundRow
            @enviSound_Alarm)");
        QVERIFY(t->find<ListRow>("bellRow")->isSelected());
        // What arrives meanwhile changes nothing that was touched. Left in another way nothing of
        // it is kept. A number out of range shows as the nearest.
        PLAYS(R"(chimeRow !settings_sound.alarmSound_0 !settings_sound.volume_3 -? BACK
            @enviSoundWindow NEXT ^1954_1_0_06_03_00 SAVED
            :zelMenuWindow :enviSoundWindow plusButton alarmSoundRow
            :zelMenuWindow :enviSoundWindow volume=6
            !settings_ddns.port_0 :ddnsWindow portField=1)");
    }

    void aSaveThatFailsChangesNothing_data() {
        // What arrived on the way is what it goes back to.
        table(R"(refused | !refuse_1984 NEXT | ?Error_SettingsRefused
            silent | !silent_1984 NEXT SAVING | * ?Error_ControllerSilent
            no link | !drop NEXT | ?ListItem_NoController
            link lost | !silent_1984 NEXT SAVING | !drop ?ListItem_NoController
            changed | !silent_1984 NEXT SAVING
                | !settings_operation.doorOpenTime_3 !frame_2984_1_0 ?Error_SettingsRefused)");
    }

    void aSaveThatFailsChangesNothing() {
        const auto [before, after] = values<2>();
        const auto hour = [this] {
            return int(window()->menuRecord().operation.weekdayIn.startHour);
        };
        t->phrases["SAVING"] = "?ListItem_SavingConfiguring -+forwardButton";
        PLAYS("WORK weekdayInTime #07300915D " + before);
        if (before.endsWith("SAVING"))
            QCOMPARE(hour(), 7);
        PLAYS(after + " +forwardButton weekdayInTime=07:30~09:15");
        const auto* screen = window()->getActivateWindowForm();
        QVERIFY(!screen->findChild<QTimer*>(QStringLiteral("answerTimer"))->isActive());
        QVERIFY(t->agrees());
        if (after.endsWith("Silent")) {
            // Better late than never: the controller has it after all.
            PLAYS("!frame_2984_0_0 ?ListItem_ConfigurationComplete");
            QCOMPARE(hour(), 7);
        }
        QVERIFY(t->reconnect());
        PLAYS("OK !normal NEXT SAVED");
        QVERIFY(t->agrees());
    }

    void onlyTheOperationInForceCanBeSet() {
        t->phrases["OTHER"] = "@zelMenuWindow ?Info_OtherOperation OK";
        for (const char* operation : {"0", "1"})
            PLAYS(QByteArray("!settings_setup.operation_") + operation + R"( +menuWorkTile
                -+menuFoodTile :workMenuWindow @workMenuWindow -? :zelMenuWindow
                :foodMenuWindow OTHER)");
        // It changes while one is at it.
        PLAYS(R"(!settings_setup.operation_2 -+menuWorkTile +menuFoodTile :workMenuWindow OTHER
            :foodMenuWindow @foodMenuWindow -? !settings_setup.operation_1 OTHER)");
    }

    void aWrongPasswordLocksTheEntry() {
        PLAYS("!settings_setup.adminPassword_12345678 :liveWindow menuButton @InputAdminPassword");
        auto* screen = qobject_cast<InputAdminPassword*>(window()->getActivateWindowForm());
        // Neither leaving nor coming back makes a fresh start.
        PLAYS(R"(NEXT -messageLabel #1234567 NEXT messageLabel=Info_WrongPassword passwordField=
            #87654321D messageLabel=Info_WrongPassword +key_0 BACK :InputAdminPassword)");
        screen->setLockTime(3000);
        PLAYS(R"(#1 NEXT messageLabel=Try_again_in ^1908_0_0_cb_00 :stayWindow :InputAdminPassword
            -key_0 -+passwordField -+forwardButton +key_0 -messageLabel #12345678 NEXT
            @zelMenuWindow)");
        QCOMPARE(screen->findChild<InputField*>(QStringLiteral("passwordField"))->text(),
                 QString());
    }

    void mealCountsAreShown() {
        StatusReport report{};
        report.meals = {128, 4294967295U, 7, 56};
        QVERIFY(t->open("liveWindow"));
        window()->sendTestPacket(command::SystemStatus, sizeof report,
                                 reinterpret_cast<const char*>(&report));
        MealCountForm::open(window()->getActivateWindowForm());
        PaintRecorder recorder(window()->size());
        window()->render(&recorder);
        QStringList read;
        for (const PaintRecorder::Text& text : recorder.texts())
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
        MealCountForm::open(window()->getActivateWindowForm());
        popup = t->find("mealCountForm");
        window()->changeWindow(QStringLiteral("stayWindow"));
        QTRY_VERIFY(!popup);
    }
};

QTEST_MAIN(OperationSettingsTest)
#include "operation_settings_test.moc"
