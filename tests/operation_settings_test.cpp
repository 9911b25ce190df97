#include <QLabel>
#include <QPointer>
#include <QRegularExpression>
#include <QTcpServer>
#include <QWindow>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "app/main_window.h"
#include "app/window_form.h"
#include "link/command_code.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/meal_count_form.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/text_recorder.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/list_row.h"
#include "ui/plus_minus.h"
#include "ui/scroll_list.h"

/// The settings of attendance and of meals, as a finger on the panel and the controller see them.
class OperationSettingsTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { window_.reset(); }
    void attendanceIsSaved();
    void mealsAreSaved();
    void timesAreChecked_data();
    void timesAreChecked();
    void whatIsNotUsedCannotBeTyped();
    void eachShowStartsFromTheRecord();
    void aSaveKeepsWhatArrivedMeanwhile();
    void aWrongPasswordLocksTheEntry();
    void mealCountsAreShown();

 private:
    void set(const char* field, const QByteArray& value) {
        const QString answer = sim_->execute(
            QStringLiteral("settings %1 %2").arg(QLatin1String(field), QLatin1String(value)));
        QVERIFY2(answer.startsWith(QLatin1String("ok")), qPrintable(answer));
    }
    bool open(const QByteArray& title) {
        // What the controller was told to send comes first.
        const bool settled = QTest::qWaitFor([this] {
            const _gui_menu_ record = window_->menuRecord();
            return memcmp(&record, &sim_->settings(), sizeof record) == 0;
        });
        window_->changeWindow(QLatin1String(title));
        QCoreApplication::processEvents();
        frames_.clear();
        return settled;
    }
    template <class Widget = QWidget>
    Widget* find(const QByteArray& name) {
        return window_->getActivateWindowForm()->findChild<Widget*>(QLatin1String(name));
    }
    /// Touches @p widget, by default in its middle, after scrolling to it.
    void tap(QWidget* widget, qreal across = 0.5) {
        for (QWidget* up = widget; up != nullptr; up = up->parentWidget()) {
            if (auto* list = qobject_cast<ScrollList*>(up))
                list->reveal(widget);
        }
        const QPoint place(static_cast<int>(widget->width() * across), widget->height() / 2);
        QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(window_.get(), place));
        QCoreApplication::processEvents();
    }
    void tap(const QByteArray& name, qreal across = 0.5) { tap(find(name), across); }
    /// Touches keys of the keypad: digits, C for clear and D for done.
    void type(const QByteArray& keys) {
        for (const char key : keys) {
            const QString name = key == 'C'   ? QStringLiteral("key_clear")
                                 : key == 'D' ? QStringLiteral("key_done")
                                              : QStringLiteral("key_") + QLatin1Char(key);
            tap(window_->findChild<QWidget*>(name));
        }
    }
    void pick(const QByteArray& combo, int item) {
        tap(combo);
        tap(window_->findChild<QWidget*>(QStringLiteral("item%1").arg(item)));
    }
    QString popupText() const {
        const QList<QLabel*> labels = window_->findChildren<QLabel*>(QStringLiteral("dialogText"));
        for (const QLabel* label : labels) {
            if (label->isVisible())
                return label->text();
        }
        return {};
    }
    bool says(const QString& shown, const QByteArray& key) const {
        const QString text = window_->getScript(QLatin1String(key)).script;
        return !text.isEmpty() && shown.contains(text);
    }
    QStringList saves() const {
        return frames_.filter(QRegularExpression(QStringLiteral("^198[34] ")));
    }
    /// Waits until whatever the terminal has sent is there.
    bool allFramesArrived() {
        window_->PlaySound(0x7fff);
        return QTest::qWaitFor(
            [this] { return frames_.contains(QStringLiteral("1908 0 0 ff 7f")); });
    }
    bool heardError() const { return frames_.contains(QStringLiteral("1908 0 0 cb 00")); }
    /// Whether the save was sent with these payloads, confirmed, and the same is kept by both.
    void verifySaved(const char* settings, const char* times);

    DeviceRoot root_;
    std::unique_ptr<ControllerSim> sim_;
    std::unique_ptr<MainWindow> window_;
    QStringList frames_;  // from the terminal: code, parameters, payload in hexadecimal
};

void OperationSettingsTest::initTestCase() {
    root_.write("/mnt/data/rebootchkr", {});
    sim_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
    QVERIFY(sim_->listening());
    connect(sim_.get(), &ControllerSim::frameReceived, this,
            [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
                frames_.append(QStringLiteral("%1 %2 %3 %4")
                                   .arg(code)
                                   .arg(p1)
                                   .arg(p2)
                                   .arg(QString::fromLatin1(payload.toHex(' '))));
            });
    qputenv("ZEL_LINK_PORT", QByteArray::number(sim_->port()));
    QTcpServer free;
    QVERIFY(free.listen(QHostAddress::LocalHost));
    qputenv("ZEL_REST_PORT", QByteArray::number(free.serverPort()));
    free.close();
    window_ = std::make_unique<MainWindow>();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    QTRY_VERIFY(window_->settingsArrived());
}

void OperationSettingsTest::init() {
    window_->changeWindow(QStringLiteral("zelMenuWindow"));
    const std::pair<const char*, const char*> values[] = {
        {"setup.language", "1"},
        {"operation.attendanceMode", "0"},
        {"operation.lunchOff", "0"},
        {"operation.saveSimpleAccess", "1"},
        {"operation.supperOff", "1"},
        {"operation.doorOpenSetting", "0"},
        {"operation.doorOpenTime", "20"},
        {"operation.forcedOpenOff", "0"},
        {"operation.forcedCloseOff", "1"},
        {"operation.forcedOpen", "09:00~12:00"},
        {"operation.forcedClose", "00:00~00:00"},
        {"operation.weekdayIn", "06:00~09:00"},
        {"operation.weekdayOut", "11:00~13:00"},
        {"operation.saturdayIn", "17:00~19:00"},
        {"operation.saturdayOut", "22:00~02:00"},
        {"operation.holidayRule", "2"},
        {"operation.saveRecognitionFail", "1"},
        {"operation.mealCountView", "1"},
    };
    for (const auto& [field, value] : values)
        set(field, value);
}

void OperationSettingsTest::verifySaved(const char* settings, const char* times) {
    // Touched without the event loop, which may bring the answer at once.
    QTest::mouseClick(find("forwardButton"), Qt::LeftButton);
    QVERIFY(says(popupText(), "ListItem_SavingConfiguring"));
    QTRY_VERIFY(says(popupText(), "ListItem_ConfigurationComplete"));
    QCOMPARE(saves(), QStringList({QLatin1String("1983 1 0 ") + QLatin1String(settings),
                                   QLatin1String("1984 1 0 ") + QLatin1String(times)}));
    const _gui_menu_ record = window_->menuRecord();
    QCOMPARE(memcmp(&record, &sim_->settings(), sizeof record), 0);
}

void OperationSettingsTest::attendanceIsSaved() {
    set("operation.lunchOff", "7");  // kept
    set("operation.supperOff", "8");
    QVERIFY(open("zelMenuWindow"));
    tap("menuWorkTile");
    tap("simpleAccessToggle", 0.8);
    pick("doorOpenCombo", 2);
    tap("plusButton");  // is at its end
    tap("minusButton");
    tap("forcedOpenBox", 0.1);
    tap("forcedCloseBox", 0.1);
    tap("forcedCloseTime");
    type("120013");
    QCOMPARE(find<InputField>("forcedCloseTime")->text(), QStringLiteral("12:00~13"));
    type("30D");
    tap("weekdayInTime");
    type("C07300915");
    // The keypad goes over to the next field, low as it lies, and keeps it in sight.
    tap("saturdayOutTime");
    const QWidget* field = find("saturdayOutTime");
    QVERIFY(field->mapTo(window_.get(), QPoint(0, field->height())).y() <= 478);
    type("20002400D");
    pick("holidayCombo", 1);
    tap("recogFailToggle", 0.8);
    verifySaved("00 07 00 08 02 13 01 00 09 00 0c 00 0c 00 0d 1e 00 01",
                "07 1e 09 0f 0b 00 0d 00 11 00 13 00 14 00 18 00 01");
}

void OperationSettingsTest::mealsAreSaved() {
    set("operation.forcedCloseOff", "6");  // kept
    set("operation.doorOpenTime", "0");    // never set: the default
    QVERIFY(open("zelMenuWindow"));
    tap("menuFoodTile");
    tap("breakfastBox", 0.1);
    tap("dinnerBox", 0.1);
    tap("supperBox", 0.1);
    tap("lunchTime");
    type("09001700D");
    pick("duplicateUseCombo", 1);
    tap("lampConditionToggle", 0.8);
    tap("mealCountViewToggle", 0.2);
    tap("recogFailToggle", 0.8);
    verifySaved("01 00 00 00 01 03 01 06 09 00 0c 00 00 00 00 00 00 00",
                "06 00 09 00 09 00 11 00 11 00 13 00 16 00 02 00 02");
}

void OperationSettingsTest::timesAreChecked_data() {
    QTest::addColumn<QByteArray>("screen");
    QTest::addColumn<QStringList>("typed");  // field=digits
    QTest::addColumn<QByteArray>("key");
    const auto row = [](const char* screen, const char* typed, const char* key) {
        QTest::addRow("%s %s", screen, typed)
            << QByteArray(screen) << QString::fromLatin1(typed).split(QLatin1Char(' '))
            << QByteArray(key);
    };
    const char* work = "workMenuWindow";
    row(work, "forcedOpen=25001200", "ListItem_DoorOpentimeExceededInputRange");
    row(work, "forcedOpen=0900120", "ListItem_CheckInputRangeDoorOpenTime");
    row(work, "forcedClose=00002460", "ListItem_DoorClosetimeExceededInputRange");
    row(work, "forcedClose=C", "ListItem_CheckInputRangeDoorCloseTime");
    row(work, "weekdayIn=09600000", "ListItem_WeekdayWorkTimeExceededInputRange");
    row(work, "weekdayIn=09", "ListItem_CheckInputRangeWeekdayWorkingHours");
    row(work, "weekdayOut=09002500", "ListItem_WeekdayLeaveTimeExceededInputRange");
    row(work, "weekdayOut=0", "ListItem_CheckInputRangeWeekdayLeave");
    row(work, "saturdayIn=99999999", "ListItem_SaturdayworkTimeExceededInputRange");
    row(work, "saturdayIn=1", "ListItem_CheckInputRangeSaturdayWorkingHours");
    row(work, "saturdayOut=25000000", "ListItem_SaturdayLeaveTimeExceededInputRange");
    row(work, "saturdayOut=1", "ListItem_CheckInputRangeSaturdayLeave");
    row(work, "saturdayOut=1 forcedOpen=25001200", "ListItem_DoorOpentimeExceededInputRange");
    row(work, "weekdayOut=08590900", "ListItem_IntimeOuttimeSame");
    row(work, "weekdayIn=24002400", "ListItem_IntimeOuttimeSame");
    row(work, "saturdayIn=02012201", "ListItem_IntimeOuttimeSame");
    row(work, "saturdayIn=23000100 saturdayOut=22000200", "ListItem_IntimeOuttimeSame");
    row(work, "forcedClose=00002401", "");
    row(work, "weekdayOut=09001800", "");
    row(work, "saturdayIn=02002200", "");
    const char* food = "foodMenuWindow";
    row(food, "breakfast=25001200", "ListItem_BrackfastExceededInputRange");
    row(food, "breakfast=0", "ListItem_BrackfastInputRange");
    row(food, "lunch=00600100", "ListItem_LunchExceededInputRange");
    row(food, "lunch=0", "ListItem_LunchInputRange");
    row(food, "dinner=00002500", "ListItem_DinnerExceededInputRange");
    row(food, "dinner=0", "ListItem_DinnerInputRange");
    row(food, "supper=00000160", "ListItem_SupperExceededInputRange");
    row(food, "supper=0", "ListItem_SupperInputRange");
    row(food, "breakfast=06001101", "ListItem_MealtimeOverlap");
    row(food, "breakfast=18002000", "ListItem_MealtimeOverlap");
    row(food, "breakfast=01590900", "ListItem_MealtimeOverlap");
    row(food, "dinner=12001900", "ListItem_MealtimeOverlap");
    row(food, "lunch=01000300", "ListItem_MealtimeOverlap");
    row(food, "dinner=17002201", "ListItem_MealtimeOverlap");
    row(food, "breakfast=02001100 dinner=13002200", "");
}

void OperationSettingsTest::timesAreChecked() {
    QFETCH(QByteArray, screen);
    QFETCH(QStringList, typed);
    QFETCH(QByteArray, key);
    set("operation.forcedCloseOff", "0");
    set("operation.saveSimpleAccess", "0");
    set("operation.supperOff", "0");
    QVERIFY(open(screen));
    for (const QString& one : qAsConst(typed)) {
        const QByteArray name = one.section(QLatin1Char('='), 0, 0).toLatin1() + "Time";
        tap(name);
        type(one.section(QLatin1Char('='), 1).toLatin1());
    }
    tap("forwardButton");
    if (key.isEmpty())
        QTRY_VERIFY(says(popupText(), "ListItem_ConfigurationComplete"));
    else
        QVERIFY2(says(popupText(), key), qPrintable(popupText()));
    QVERIFY(allFramesArrived());
    QCOMPARE(saves().size(), key.isEmpty() ? 2 : 0);
    QCOMPARE(heardError(), !key.isEmpty());
}

void OperationSettingsTest::whatIsNotUsedCannotBeTyped() {
    QVERIFY(open("workMenuWindow"));
    const auto enabled = [this](const char* name) { return find(name)->isEnabled(); };
    tap("weekdayInTime");
    QVERIFY(find<InputField>("weekdayInTime")->isEditing());
    pick("modeCombo", 2);
    for (const char* name :
         {"weekdayInTime", "weekdayOutTime", "saturdayInTime", "saturdayOutTime", "holidayCombo"})
        QVERIFY2(!enabled(name), name);
    QVERIFY(!find<InputField>("weekdayInTime")->isEditing());
    tap("weekdayInTime");
    QVERIFY(!find<InputField>("weekdayInTime")->isEditing());
    QVERIFY(enabled("forcedOpenTime"));
    QVERIFY(!enabled("forcedCloseTime"));
    pick("modeCombo", 0);
    QVERIFY(enabled("weekdayInTime"));
    QVERIFY(enabled("holidayCombo"));

    QVERIFY(open("foodMenuWindow"));
    QVERIFY(enabled("breakfastTime"));
    QVERIFY(!enabled("dinnerTime"));
    tap("dinnerBox", 0.5);
    QVERIFY(enabled("dinnerTime"));
}

void OperationSettingsTest::eachShowStartsFromTheRecord() {
    QVERIFY(open("workMenuWindow"));
    tap("weekdayInTime");
    type("10001100D");
    tap("forcedOpenBox", 0.1);
    tap("plusButton");
    tap("backButton");
    QCOMPARE(window_->getActivateWindowForm()->getTitle(), QStringLiteral("zelMenuWindow"));
    // Numbers that no choice has are shown as the first one, or as near as it goes.
    set("operation.attendanceMode", "200");
    set("operation.doorOpenTime", "99");
    set("operation.weekdayIn", "05:00~24:00");
    set("setup.language", "0");
    QVERIFY(open("workMenuWindow"));
    QCOMPARE(find<InputField>("weekdayInTime")->text(), QStringLiteral("05:00~24:00"));
    QVERIFY(find("forcedOpenTime")->isEnabled());
    QCOMPARE(find<Combo>("modeCombo")->currentText(), QStringLiteral("자동"));
    QCOMPARE(find<PlusMinus>("doorOpenTime")->value(), 20);
    QCOMPARE(find<ListRow>("doorOpenRow")->text(), QStringLiteral("문열림 설정"));
}

void OperationSettingsTest::aSaveKeepsWhatArrivedMeanwhile() {
    QVERIFY(open("foodMenuWindow"));
    const quint8 volume = sim_->settings().sound.volume == 1 ? 2 : 1;
    set("sound.volume", QByteArray::number(volume));
    QTRY_COMPARE(window_->menuRecord().sound.volume, volume);
    tap("forwardButton");
    QCOMPARE(window_->menuRecord().sound.volume, volume);
    QTRY_VERIFY(says(popupText(), "ListItem_ConfigurationComplete"));
}

void OperationSettingsTest::aWrongPasswordLocksTheEntry() {
    set("setup.adminPassword", "12345678");
    QVERIFY(open("liveWindow"));
    tap("menuButton");
    auto* screen = qobject_cast<InputAdminPassword*>(window_->getActivateWindowForm());
    QVERIFY(screen);
    auto* field = find<InputField>("passwordField");
    const auto message = [this] { return find<QLabel>("messageLabel")->text(); };
    const auto enter = [&](const QByteArray& digits) {
        type(digits);
        tap("forwardButton");
    };
    enter("");
    QVERIFY(find("messageLabel")->isHidden());
    enter("1234567");
    QVERIFY(says(message(), "Info_WrongPassword"));
    QCOMPARE(field->text(), QString());
    enter("87654321");
    // Neither leaving nor coming back makes a fresh start.
    tap("backButton");
    QVERIFY(open("InputAdminPassword"));
    screen->setLockTime(3000);
    enter("1");
    QVERIFY(message().contains(QLatin1String("Try again in")));
    QVERIFY(allFramesArrived());
    QVERIFY(heardError());
    QVERIFY(open("stayWindow"));
    QVERIFY(open("InputAdminPassword"));
    QVERIFY(!field->isEnabled());
    QVERIFY(!field->isEditing());
    QVERIFY(!find("forwardButton")->isEnabled());
    QTRY_VERIFY(field->isEditing());
    QVERIFY(find("messageLabel")->isHidden());
    enter("12345678");
    QCOMPARE(window_->getActivateWindowForm()->getTitle(), QStringLiteral("zelMenuWindow"));
    QCOMPARE(field->text(), QString());
}

void OperationSettingsTest::mealCountsAreShown() {
    StatusReport report{};
    report.meals = {128, 4294967295U, 7, 56};
    QVERIFY(open("liveWindow"));
    window_->sendTestPacket(command::SystemStatus, sizeof report,
                            reinterpret_cast<const char*>(&report));
    MealCountForm::open(window_->getActivateWindowForm());
    TextRecorder recorder(window_->size());
    window_->render(&recorder);
    for (const char* text :
         {"Breakfast", "Lunch", "Dinner", "Supper", "128", "4294967295", "7", "56", "OK"})
        QVERIFY2(recorder.has(QLatin1String(text)), text);
    QPointer<QWidget> popup = find("mealCountForm");
    tap("mealCountOkButton");
    QTRY_VERIFY(!popup);
    MealCountForm::open(window_->getActivateWindowForm());
    popup = find("mealCountForm");
    window_->changeWindow(QStringLiteral("stayWindow"));
    QTRY_VERIFY(!popup);
}

QTEST_MAIN(OperationSettingsTest)
#include "operation_settings_test.moc"
