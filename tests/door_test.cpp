#include <QElapsedTimer>
#include <QImage>
#include <QSignalSpy>
#include <QTcpServer>
#include <QWindow>
#include <QtTest>
#include <memory>

#include "app/main_window.h"
#include "app/window_form.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "screens/recognize/live_view.h"
#include "screens/recognize/work_banner.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/text_recorder.h"
#include "ui/dialog_form.h"
#include "ui/text_line.h"
#include "ui/thumbnail_view.h"

namespace {

/// Notes what is painted on the widgets of a screen.
class PaintCounter : public QObject {
 public:
    explicit PaintCounter(QWidget* root) : root_(root) { qApp->installEventFilter(this); }

    int count = 0;
    QRegion region;  // on the root

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && (widget == root_ || root_->isAncestorOf(widget))) {
            ++count;
            region |= static_cast<QPaintEvent*>(event)->region().translated(
                widget->mapTo(root_->window(), QPoint()));
        }
        return false;
    }

 private:
    QWidget* const root_;
};

int area(const QRegion& region) {
    int pixels = 0;
    for (const QRect& rect : region)
        pixels += rect.width() * rect.height();
    return pixels;
}

QByteArray redPicture() {
    QImage image(320, 384, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "JPG");
    return bytes;
}

}  // namespace

/// A day at the door: the real terminal, with a finger on its panel, and the simulated controller.
class DoorTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { window_.reset(); }
    void aTouchWakesTheStandbyScreen();
    void theStandbyScreenSleeps();
    void theBannerTellsTheMode_data();
    void theBannerTellsTheMode();
    void theBannerOfAnUnknownModeStays();
    void theStripOffersWhatIsSet();
    void theLiveViewEnds();
    void aVisitorRings();
    void theBoxPaintsLittle();
    void attendanceIsChosenOnce_data();
    void attendanceIsChosenOnce();
    void mealsArePaid();
    void refusalsAreTold_data();
    void refusalsAreTold();
    void anAlarmIsConfirmed();
    void aNewResultReplacesTheOld();
    void aCardWorksAtTheStandbyScreen();
    void onlyTheRightPicturesAreShown();
    void aStormOfResultsIsCheap();

 private:
    void word(const QString& line) {
        const QString answer = sim_->execute(line);
        QVERIFY2(answer.startsWith(QLatin1String("ok")) || answer.contains(QLatin1String("\nok")),
                 qPrintable(line + QLatin1String(": ") + answer));
    }
    void word(const char* line) { word(QString::fromUtf8(line)); }
    void set(const char* field, int value) {
        word(QStringLiteral("settings %1 %2").arg(QLatin1String(field)).arg(value));
    }
    template <typename Record>
    void frame(quint16 code, const Record& record) {
        const QByteArray bytes(reinterpret_cast<const char*>(&record), sizeof record);
        word(QStringLiteral("frame %1 0 0 %2").arg(code).arg(QLatin1String(bytes.toHex())));
    }
    static RecognitionResult resultOf(const QString& userId, const QString& name) {
        RecognitionResult result{};
        setFieldText(result.userId, userId);
        setFieldText(result.name, name);
        return result;
    }
    bool settled() {
        return QTest::qWaitFor([this] {
            const _gui_menu_ record = window_->menuRecord();
            return memcmp(&record, &sim_->settings(), sizeof record) == 0;
        });
    }
    bool shows(const char* title) {
        return QTest::qWaitFor([this, title] { return active() == QLatin1String(title); });
    }
    void openLive() {
        QVERIFY(settled());
        window_->changeWindow(QStringLiteral("liveWindow"));
        QVERIFY(sent());
        frames_.clear();
    }
    QString active() const { return window_->getActivateWindowForm()->getTitle(); }
    template <class Widget = QWidget>
    Widget* find(const QByteArray& name) const {
        return window_->getActivateWindowForm()->findChild<Widget*>(QLatin1String(name));
    }
    bool visible(const QByteArray& name) const {
        const auto* widget = find(name);
        return widget != nullptr && widget->isVisible();
    }
    QString text(const QByteArray& key) const {
        return window_->getScript(QLatin1String(key)).script;
    }
    bool reads(const QString& text) const {
        TextRecorder recorder(window_->size());
        window_->render(&recorder);
        return recorder.has(text);
    }
    QPoint middle(const QWidget* widget) const {
        return widget->mapTo(window_.get(), widget->rect().center());
    }
    void tap(const QByteArray& name) { tap(middle(find(name))); }
    void tap(const QPoint& place) {
        QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    /// Waits until whatever the terminal has sent so far is there.
    bool sent() {
        const QString mark = QStringLiteral("1908 0 %1").arg(++mark_);
        window_->SendCommand(command::PlaySound, 0, static_cast<unsigned char>(mark_));
        return QTest::qWaitFor([this, mark] { return frames_.removeAll(mark) > 0; });
    }
    /// The frames from the terminal since they were last taken, without key clicks.
    QStringList takeFrames() {
        if (!sent())
            return {QStringLiteral("lost")};
        frames_.removeAll(QStringLiteral("5000 0 0"));
        return std::exchange(frames_, {});
    }

    DeviceRoot root_;
    std::unique_ptr<ControllerSim> sim_;
    std::unique_ptr<MainWindow> window_;
    QStringList frames_;  // code and parameters; of a sound also its number
    int mark_ = 0;
};

void DoorTest::initTestCase() {
    root_.write("/mnt/data/rebootchkr", {});
    sim_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
    QVERIFY(sim_->listening());
    connect(sim_.get(), &ControllerSim::frameReceived, this,
            [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
                QString line = QStringLiteral("%1 %2 %3").arg(code).arg(p1).arg(p2);
                if (payload.size() == 2)
                    line += QStringLiteral(" %1").arg(static_cast<quint8>(payload[0]));
                frames_.append(line);
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

void DoorTest::init() {
    Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
    window_->changeWindow(QStringLiteral("stayWindow"));
    word("track off");
    word("status auto");
    word("time 2026-03-09 08:52");
    const std::pair<const char*, int> values[] = {
        {"setup.language", 1},
        {"setup.operation", 0},
        {"setup.alarmMode", 0},
        {"setup.visitorCall", 1},
        {"setup.authMethod", 2},
        {"registration.on", 1},
        {"liveSeconds", 60},
        {"resultSeconds", 60},
        {"paymentDoneSeconds", 60},
        {"attendanceDoneSeconds", 60},
        {"operation.attendanceMode", 0},
        {"operation.lunchOff", 0},
        {"operation.saveSimpleAccess", 1},
        {"operation.supperOff", 0},
        {"operation.doorOpenSetting", 0},
        {"screen.standbyMode", 0},
        {"screen.showThumbnail", 1},
    };
    for (const auto& [field, value] : values)
        set(field, value);
    word("settings operation.weekdayIn 08:00~09:30");
    word("settings operation.weekdayOut 17:30~22:00");
    word("settings operation.saturdayIn 08:00~10:00");
    word("settings operation.saturdayOut 13:00~18:00");
    QVERIFY(settled());
    QVERIFY(sent());
    frames_.clear();
}

void DoorTest::aTouchWakesTheStandbyScreen() {
    window_->changeWindow(QStringLiteral("liveWindow"));
    QVERIFY(sent());
    frames_.clear();
    window_->changeWindow(QStringLiteral("stayWindow"));
    QCOMPARE(takeFrames(), QStringList({QStringLiteral("2003 0 0"), QStringLiteral("2011 0 0"),
                                        QStringLiteral("2010 0 0"), QStringLiteral("1905 1 0")}));
    tap("standbyView");
    QCOMPARE(active(), QStringLiteral("liveWindow"));
    QCOMPARE(takeFrames(), QStringList({QStringLiteral("1908 0 0 201"), QStringLiteral("2011 1 0"),
                                        QStringLiteral("2010 1 0"), QStringLiteral("2030 0 0"),
                                        QStringLiteral("2035 1 0"), QStringLiteral("2003 1 0")}));
}

void DoorTest::theStandbyScreenSleeps() {
    word("sleep");
    QTRY_VERIFY(frames_.contains(QStringLiteral("2035 0 0")));
    const QImage dark = window_->grab().toImage();
    QImage black(dark.size(), dark.format());
    black.fill(Qt::black);
    QCOMPARE(dark, black);
    // Settings that arrive meanwhile do not light it up.
    set("screen.standbyMode", 1);
    QVERIFY(settled());
    QVERIFY(!reads(text("Info_TouchToStart")));
    word("wake");
    QTRY_VERIFY(frames_.contains(QStringLiteral("2035 1 0")));
    QVERIFY(reads(text("Info_TouchToStart")));

    word("sleep");
    QTRY_VERIFY(!reads(text("Info_TouchToStart")));
    tap("standbyView");
    QCOMPARE(active(), QStringLiteral("liveWindow"));
    // Nobody is woken by a report for the standby screen while another one is up.
    takeFrames();
    word("sleep");
    word("track on");
    QTRY_VERIFY(sent());
    QCOMPARE(takeFrames(), QStringList());
}

void DoorTest::theBannerTellsTheMode_data() {
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("status");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("range");
    QTest::addColumn<QString>("picture");
    const QDate monday(2026, 3, 9);
    const QDate friday(2026, 3, 13);
    const QDate saturday(2026, 3, 14);
    const QDate sunday(2026, 3, 15);
    const auto row = [](const char* name, int operation, int status, const QDate& day,
                        const char* mode, const char* range, const char* picture) {
        QTest::newRow(name) << operation << status << day << QString::fromUtf8(mode)
                            << QString::fromUtf8(range) << QString::fromUtf8(picture);
    };
    const char* plain = "qlineargradient";
    row("in", 1, 1, monday, "출근 모드입니다.", "출근 시간 08:00 ~ 09:30", plain);
    row("out, Friday", 1, 2, friday, "퇴근 모드입니다.", "퇴근 시간 17:30 ~ 22:00", plain);
    row("in, Saturday", 1, 1, saturday, "출근 모드입니다.", "출근 시간 08:00 ~ 10:00", plain);
    row("out, Sunday", 1, 2, sunday, "퇴근 모드입니다.", "퇴근 시간 13:00 ~ 18:00", plain);
    row("break", 1, 3, monday, "외출 모드입니다.", "외출 시간 17:30 ~ 22:00", plain);
    row("breakfast", 2, 1, monday, "조식", "조식 시간 08:00 ~ 09:30",
        "/zel1/image/food_noti_breakfast.png);};");
    row("lunch", 2, 2, saturday, "중식", "중식 시간 17:30 ~ 22:00",
        "/zel1/image/food_noti_lunch.png);};");
    row("dinner", 2, 3, monday, "석식", "석식 시간 08:00 ~ 10:00",
        "/zel1/image/food_noti_dinner.png);};");
    row("supper", 2, 4, monday, "야식", "야식 시간 13:00 ~ 18:00",
        "/zel1/image/food_noti_dinner.png);};");
    row("no meal", 2, 0, monday, "식사 시간이 아닙니다", "",
        "/zel1/image/food_noti_closed.png);};");
}

void DoorTest::theBannerTellsTheMode() {
    QFETCH(int, operation);
    QFETCH(int, status);
    QFETCH(QDate, day);
    Clock::fix(QDateTime(day, QTime(12, 0)));
    set("setup.language", 0);
    set("setup.operation", operation);
    openLive();
    word(QStringLiteral("status %1").arg(status));
    auto* banner = find<WorkBanner>("noti_layer");
    QFETCH(QString, mode);
    QTRY_COMPARE(banner->modeText(), mode);
    QVERIFY(banner->isVisible());
    QTEST(banner->rangeText(), "range");
    QFETCH(QString, picture);
    QVERIFY2(banner->ground().contains(picture), qPrintable(banner->ground()));
}

void DoorTest::theBannerOfAnUnknownModeStays() {
    set("setup.operation", 1);
    word("status 2");
    openLive();
    auto* banner = find<WorkBanner>("noti_layer");
    QTRY_COMPARE(banner->modeText(), QStringLiteral("Check-out mode"));
    for (const int mode : {4, 10, -1, 255}) {
        static_cast<LiveView*>(window_->getActivateWindowForm())->updateWorkState(mode);
        QVERIFY(banner->isVisible());
        QCOMPARE(banner->modeText(), QStringLiteral("Check-out mode"));
    }
    // A terminal that records nothing but coming back says so, all the same.
    set("operation.attendanceMode", 5);
    word("status auto");
    QTRY_COMPARE(banner->modeText(), QStringLiteral("Return mode"));
    // With nothing but the door there is nothing to tell, and no place to keep free for it.
    set("setup.operation", 0);
    word("status 0");
    QTRY_VERIFY(!banner->isVisible());
}

void DoorTest::theStripOffersWhatIsSet() {
    openLive();
    const int three = find("menuButton")->width();
    QVERIFY(!visible("keypadButton"));
    set("setup.authMethod", 4);
    QTRY_VERIFY(visible("keypadButton"));
    QCoreApplication::sendPostedEvents();
    const int four = find("menuButton")->width();
    QVERIFY(four < three);
    QCOMPARE(find("callButton")->width(), four);
    set("setup.visitorCall", 0);
    set("registration.on", 0);
    set("setup.authMethod", 2);
    QTRY_VERIFY(!visible("callButton") && !visible("enrollButton") && !visible("keypadButton"));
    QTRY_COMPARE(find("menuButton")->width(), find("strip")->width() - 2 * 16);

    set("registration.on", 1);
    set("setup.authMethod", 4);
    QTRY_VERIFY(visible("keypadButton"));
    QCoreApplication::sendPostedEvents();
    takeFrames();
    tap("keypadButton");
    QCOMPARE(active(), QStringLiteral("inputSubWindow"));
    QCOMPARE(takeFrames().mid(0, 2),
             QStringList({QStringLiteral("2011 0 0"), QStringLiteral("2010 0 0")}));
    openLive();
    tap("enrollButton");
    QCOMPARE(active(), QStringLiteral("userEnroll_qualWindow"));
    QCOMPARE(takeFrames().mid(0, 4),
             QStringList({QStringLiteral("2003 1 0"), QStringLiteral("2011 2 0"),
                          QStringLiteral("2010 0 0"), QStringLiteral("2028 0 0")}));
    openLive();
    tap("menuButton");
    QCOMPARE(active(), QStringLiteral("zelMenuWindow"));
    openLive();
    _gui_menu_ locked = window_->menuRecord();
    setFieldText(locked.setup.adminPassword, QStringLiteral("1234"));
    window_->SetGuiMenu(&locked);
    tap("menuButton");
    QCOMPARE(active(), QStringLiteral("InputAdminPassword"));
}

void DoorTest::theLiveViewEnds() {
    set("liveSeconds", 1);
    openLive();
    QElapsedTimer since;
    since.start();
    // A face keeps it, and a report of no face does not.
    const TrackedFace face{100, 200, 200, 260, 1, 0};
    while (since.elapsed() < 1500) {
        frame(command::TrackingBox, face);
        QVERIFY(sent());
        QCOMPARE(active(), QStringLiteral("liveWindow"));
    }
    frame(command::TrackingBox, TrackedFace{});
    QVERIFY(shows("stayWindow"));
    QCOMPARE(takeFrames().last(), QStringLiteral("2010 0 0"));
}

void DoorTest::aVisitorRings() {
    openLive();
    tap("callButton");
    QCOMPARE(takeFrames(), QStringList(QStringLiteral("2020 36 0")));
    QVERIFY(visible("doorDialog"));
    // What lies behind is out of reach until the dialog is gone, and so is it with the screen.
    tap(middle(find("menuButton")));
    QCOMPARE(active(), QStringLiteral("liveWindow"));
    word("face 01023456789");
    QVERIFY(shows("recognizeWindow"));
    QCOMPARE(DialogOverlay::current(window_.get()), nullptr);
    openLive();
    QVERIFY(!visible("doorDialog"));
}

void DoorTest::theBoxPaintsLittle() {
    openLive();
    frame(command::TrackingBox, TrackedFace{124, 232, 232, 296, 1, 0});
    QVERIFY(sent());
    window_->grab();
    PaintCounter moved(window_->getActivateWindowForm());
    frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
    QTRY_VERIFY(moved.count > 0);
    QVERIFY2(area(moved.region) < 480 * 800 / 10, qPrintable(QString::number(area(moved.region))));
    QVERIFY(!moved.region.contains(QPoint(240, 380)));
    // The same again is nothing new.
    PaintCounter same(window_->getActivateWindowForm());
    frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
    QVERIFY(sent());
    QTest::qWait(0);
    QCOMPARE(same.count, 0);

    // Failure says why, wherever the face is and however little of it can be seen.
    for (const TrackedFace& face :
         {TrackedFace{124, 232, 232, 296, 3, 1}, TrackedFace{-200, 700, 240, 300, 3, 1},
          TrackedFace{470, 790, 32767, 32767, 3, 1}, TrackedFace{-3, 1, 4, 4, 3, 1}}) {
        frame(command::TrackingBox, face);
        QTRY_VERIFY(reads(text("Info_FaceNotRegistered")));
        frame(command::TrackingBox, TrackedFace{});
        QTRY_VERIFY(!reads(text("Info_FaceNotRegistered")));
    }
    for (const TrackedFace& none :
         {TrackedFace{10, 10, -5, 5, 3, 1}, TrackedFace{-32768, -32768, 20, 20, 3, 1},
          TrackedFace{100, 100, 100, 100, 9, 1}}) {
        frame(command::TrackingBox, none);
        QVERIFY(sent());
        QVERIFY(!reads(text("Info_FaceNotRegistered")));
    }
    // A card's failure outlasts the boxes of a face that is only tracked.
    word("card 99999999");
    QTRY_VERIFY(reads(text("Info_CardNotRegistered")));
    frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
    QVERIFY(sent());
    QVERIFY(reads(text("Info_CardNotRegistered")));
    QTRY_VERIFY(!reads(text("Info_CardNotRegistered")));
}

void DoorTest::attendanceIsChosenOnce_data() {
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<int>("key");
    QTest::addColumn<QByteArray>("confirmation");
    QTest::newRow("in") << QByteArray("inButton") << 16
                        << QByteArray("Info_Authenticated_Complet_In");
    QTest::newRow("out") << QByteArray("outButton") << 17
                         << QByteArray("Info_Authenticated_Complet_Out");
    QTest::newRow("break") << QByteArray("outDutyButton") << 18
                           << QByteArray("Info_Authenticated_Complet_Break");
    QTest::newRow("return") << QByteArray("inDutyButton") << 19
                            << QByteArray("Info_Authenticated_Complet_Return");
}

void DoorTest::attendanceIsChosenOnce() {
    QFETCH(QByteArray, button);
    QFETCH(int, key);
    QFETCH(QByteArray, confirmation);
    set("setup.operation", 1);
    set("attendanceDoneSeconds", 1);
    openLive();
    word("face 01023456789");
    QVERIFY(shows("recognizeWindow"));
    QVERIFY(reads(QStringLiteral("김서연")));
    QVERIFY(reads(QStringLiteral("Check-in mode")));
    QVERIFY(find<ThumbnailView>("thumbnail")->hasPhoto());
    takeFrames();

    // Two presses in one go, before the event loop runs again.
    const QPoint place = middle(find(button));
    QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {}, place);
    QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {}, place);
    QCOMPARE(takeFrames(), QStringList(QStringLiteral("2020 %1 0").arg(key)));
    QVERIFY(reads(text(confirmation)));
    QVERIFY(reads(QStringLiteral("03/09")) && reads(QStringLiteral("08:52")) &&
            reads(QStringLiteral("AM")));
    QVERIFY(!visible(button));
    QVERIFY(shows("liveWindow"));
    QCOMPARE(takeFrames(), QStringList({QStringLiteral("2003 1 0"), QStringLiteral("2001 0 0"),
                                        QStringLiteral("2020 34 0")}));
}

void DoorTest::mealsArePaid() {
    set("setup.operation", 2);
    set("operation.saveSimpleAccess", 0);
    set("paymentDoneSeconds", 1);
    openLive();
    word("face 01098765432");
    QVERIFY(shows("recognizeWindow"));
    const auto* count = find<TextLine>("countLine");
    QCOMPARE(count->text(), QStringLiteral("1"));
    takeFrames();
    tap("minusButton");
    QCOMPARE(count->text(), QStringLiteral("1"));
    for (int i = 0; i < 99; ++i)
        tap("plusButton");
    QCOMPARE(count->text(), QStringLiteral("99"));
    QCOMPARE(takeFrames().count(QStringLiteral("2020 35 0")), 100);
    tap("minusButton");
    tap("paymentButton");
    QCOMPARE(takeFrames(),
             QStringList({QStringLiteral("2020 35 0"), QStringLiteral("2020 33 98")}));
    QVERIFY(reads(QStringLiteral("Payment completed")));
    QVERIFY(find("paymentOkForm")
                ->findChild<TextLine*>()
                ->text()
                .startsWith(QStringLiteral("Breakfast × 98")));
    MEAL_COUNT counts{};
    QTRY_VERIFY((window_->GetMealCount(&counts), counts.breakfast == 98));
    QVERIFY(shows("liveWindow"));
    // What is paid for is not given up.
    QVERIFY(!takeFrames().contains(QStringLiteral("2020 34 0")));

    // The same person again, and another one who pays for one meal.
    word("face 01098765432");
    QVERIFY(shows("recognizeWindow"));
    QVERIFY(reads(text("Info_MealTaken")));
    QVERIFY(!visible("paymentButton"));
    takeFrames();
    word("face 01023456789");
    QTRY_VERIFY(visible("paymentButton"));
    tap("paymentButton");
    QVERIFY(takeFrames().contains(QStringLiteral("2020 32 1")));

    tap("menuButton");
    openLive();
    word("face 01055501234");
    QVERIFY(shows("recognizeWindow"));
    tap("cancelButton");
    QCOMPARE(active(), QStringLiteral("stayWindow"));
    QVERIFY(takeFrames().contains(QStringLiteral("2020 34 0")));
}

void DoorTest::refusalsAreTold_data() {
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("time") << 1 << QByteArray("Info_NoAccessTime");
    QTest::newRow("rights") << 2 << QByteArray("Info_NotPermitted");
    QTest::newRow("registered") << 3 << QByteArray("Info_Registered");
    QTest::newRow("meal") << 4 << QByteArray("Info_MealTaken");
    QTest::newRow("beyond the list") << 200 << QByteArray("Info_NotPermitted");
    QTest::newRow("demonstration") << 0 << QByteArray("Info_Authenticated_TnA_DEMO");
}

void DoorTest::refusalsAreTold() {
    QFETCH(int, result);
    QFETCH(QByteArray, key);
    // Neither meals nor attendance are offered to somebody who is refused.
    set("setup.operation", result == 0 ? 0 : 2);
    word("status 2");
    openLive();
    RecognitionResult record = resultOf(QStringLiteral("01023456789"), QStringLiteral("A"));
    record.result = static_cast<quint8>(result);
    record.askAttendance = result != 0;
    record.demo = 1;
    frame(command::Recognised, record);
    QVERIFY(shows("recognizeWindow"));
    QCOMPARE(find<TextLine>("resultLine")->text(), text(key));
    QVERIFY(!visible("paymentButton") && !visible("inOutButtons"));
    const bool positive = result == 0 || result == 3;
    QVERIFY(takeFrames().contains(positive ? QStringLiteral("1908 0 0 202")
                                           : QStringLiteral("1908 0 0 203")));
}

void DoorTest::anAlarmIsConfirmed() {
    openLive();
    word("alarm arm");
    word("face 01023456789");
    QVERIFY(shows("recognizeWindow"));
    QVERIFY(visible("armModeOkForm"));
    QVERIFY(reads(text("Info_Armed")));
    word("alarm disarm");
    word("face 01098765432");
    QTRY_VERIFY(reads(text("Info_Disarmed")));
    // Who may not change the alarm has not changed it, nor has anybody without an alarm mode.
    word("face 01055501234");
    QTRY_VERIFY(reads(text("Info_NotPermitted")));
    QVERIFY(!visible("armModeOkForm"));
    word("alarm none");
    word("face 01023456789");
    QTRY_VERIFY(reads(text("Info_Hello")));
    QVERIFY(!visible("armModeOkForm"));
}

void DoorTest::aNewResultReplacesTheOld() {
    set("setup.operation", 1);
    set("resultSeconds", 1);
    openLive();
    word("face 01023456789");
    QVERIFY(shows("recognizeWindow"));
    QElapsedTimer since;
    since.start();
    // A finger comes down for the first person and is lifted for the second.
    const QPoint place = middle(find("inButton"));
    QTest::mousePress(window_->windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(QTest::qWaitFor([&since] { return since.elapsed() > 600; }));
    word("face 01098765432");
    QTRY_VERIFY(reads(QStringLiteral("박지훈")));
    since.start();
    QVERIFY(!reads(QStringLiteral("김서연")));
    QTest::mouseRelease(window_->windowHandle(), Qt::LeftButton, {}, place);
    QVERIFY(!takeFrames().contains(QStringLiteral("2020 16 0")));
    // An unknown face behind does not take the result away, and the second has its whole time.
    word("face unknown");
    QVERIFY(shows("liveWindow"));
    QVERIFY2(since.elapsed() > 900, qPrintable(QString::number(since.elapsed())));
    // Nothing of them is left on the screen that is behind now.
    QCOMPARE(window_->getWindow(QStringLiteral("recognizeWindow"))
                 ->findChild<TextLine*>(QStringLiteral("nameLine"))
                 ->text(),
             QString());
}

void DoorTest::aCardWorksAtTheStandbyScreen() {
    word("card 10000002");
    QVERIFY(shows("recognizeWindow"));
    const QStringList frames = takeFrames();
    for (const char* expected : {"2011 1 0", "2010 1 0", "2030 0 0", "2035 1 0", "2003 0 0"})
        QVERIFY2(frames.contains(QLatin1String(expected)), expected);
    window_->changeWindow(QStringLiteral("stayWindow"));
    word("card 99999999");
    QVERIFY(shows("liveWindow"));
    QVERIFY(reads(text("Info_CardNotRegistered")));
    // A result where screens must not change is not shown later.
    window_->setChangeWindowFlag(false);
    word("card 10000002");
    QVERIFY(sent());
    QCOMPARE(active(), QStringLiteral("liveWindow"));
    window_->setChangeWindowFlag(true);
}

void DoorTest::onlyTheRightPicturesAreShown() {
    const QByteArray picture = redPicture();
    root_.write("/mnt/data/secret.jpg", picture);
    root_.write("/mnt/data/user/good.jpg", picture);
    root_.write("/mnt/data/thumb/small.jpg", picture);
    root_.write("/mnt/data/user/broken.jpg", picture.left(200));
    root_.write("/mnt/data/user/empty.jpg", {});
    root_.write("/mnt/data/user/drawing.jpg",
                "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    QFile::link(root_.path("/mnt/data/secret.jpg"), root_.path("/mnt/data/user/linked.jpg"));
    QDir().mkpath(root_.path("/mnt/data/user/folder.jpg"));
    openLive();
    const std::pair<const char*, bool> cases[] = {
        {"good", true},    {"small", true},   {"../secret", false},   {"..", false},
        {"", false},       {"broken", false}, {"empty", false},       {"drawing", false},
        {"linked", false}, {"folder", false}, {"<b>good</b>", false}, {"/mnt/data/secr", false},
    };
    // Markup in a name is a part of it; a picture that it names is not looked for.
    const QString name = QStringLiteral("<b>A</b><img src='x'>");
    for (const auto& [id, photo] : cases) {
        frame(command::Recognised, resultOf(QLatin1String(id), name));
        QVERIFY(sent());
        QVERIFY(shows("recognizeWindow"));
        QVERIFY2(find<ThumbnailView>("thumbnail")->hasPhoto() == photo, id);
        QCOMPARE(find<TextLine>("nameLine")->text(), name);
        QVERIFY2(*id == '\0' || reads(QLatin1String(id)), id);
    }
    // A picture that has been changed is read anew; without the setting there is none.
    QVERIFY(QFile::remove(root_.path("/mnt/data/user/good.jpg")));
    frame(command::Recognised, resultOf(QStringLiteral("good"), name));
    QTRY_VERIFY(!find<ThumbnailView>("thumbnail")->hasPhoto());
    set("screen.showThumbnail", 0);
    QVERIFY(settled());
    word("face 01023456789");
    QVERIFY(sent());
    QTRY_VERIFY(reads(QStringLiteral("김서연")));
    QVERIFY(!find<ThumbnailView>("thumbnail")->hasPhoto());

    // A name without a user, a user without a name, and frames that are cut short.
    frame(command::Recognised, RecognitionResult{});
    QVERIFY(sent());
    word(QStringLiteral("frame 3010 0 0 3031"));
    word(QStringLiteral("frame 3000 0 0 3031"));
    QVERIFY(sent());
    QVERIFY(reads(text("Info_Authenticated")));
}

void DoorTest::aStormOfResultsIsCheap() {
    openLive();
    word("face 01023456789");
    QVERIFY(shows("recognizeWindow"));
    QVERIFY(sent());
    PaintCounter paints(window_->getActivateWindowForm());
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 1000; ++i)
        word(i % 2 == 0 ? "face 01098765432 registered" : "face 01044447777 denied");
    word("face 01023456789 registered");
    QTRY_VERIFY(reads(QStringLiteral("김서연")));
    QVERIFY(sent());
    QCOMPARE(active(), QStringLiteral("recognizeWindow"));
    QVERIFY2(time.elapsed() < 5000, qPrintable(QString::number(time.elapsed())));
    qInfo("1000 results in %lld ms, %d paint events", time.elapsed(), paints.count);
}

QTEST_MAIN(DoorTest)
#include "door_test.moc"
