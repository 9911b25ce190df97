#include <QImage>
#include <QtTest>

#include "screens/recognize/live_view.h"
#include "screens/recognize/work_banner.h"
#include "tests/support/door_day.h"
#include "tests/support/finger.h"
#include "ui/text_line.h"
#include "ui/thumbnail_view.h"

namespace {

int area(const QRegion& region) {
    int pixels = 0;
    for (const QRect& rect : region)
        pixels += rect.width() * rect.height();
    return pixels;
}

QByteArray picture(Qt::GlobalColor colour) {
    QImage image(320, 384, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "JPG");
    return bytes;
}

RecognitionResult resultOf(const QString& userId, const QString& name) {
    RecognitionResult result{};
    setFieldText(result.userId, userId);
    setFieldText(result.name, name);
    return result;
}

}  // namespace

/// What the screens at the door show and do.
class DoorTest : public DoorDay {
    Q_OBJECT

 private slots:
    void aTouchWakesTheStandbyScreen() {
        QVERIFY(t->open("liveWindow"));
        window()->changeWindow(QStringLiteral("stayWindow"));
        QCOMPARE(sentLine(), QStringLiteral("2003 0 0|2011 0 0|2010 0 0|1905 1 0"));
        t->tap("standbyView");
        QCOMPARE(t->title(), QStringLiteral("liveWindow"));
        QCOMPARE(sentLine(),
                 QStringLiteral("1908 0 0 c9 00|2011 1 0|2010 1 0|2030 0 0|2035 1 0|2003 1 0"));
    }

    void theStandbyScreenSleeps() {
        word("sleep");
        QVERIFY(t->sends("2035 0 0"));
        const QImage dark = window()->grab().toImage();
        QImage black(dark.size(), dark.format());
        black.fill(Qt::black);
        QCOMPARE(dark, black);
        // Settings that arrive meanwhile do not light it up.
        set("screen.standbyMode", 1);
        QTRY_VERIFY(t->agrees());
        QVERIFY(!t->readsKey("Info_TouchToStart"));
        word("wake");
        QVERIFY(t->sends("2035 1 0"));
        QVERIFY(t->readsKey("Info_TouchToStart"));

        word("sleep");
        QTRY_VERIFY(!t->readsKey("Info_TouchToStart"));
        t->tap("standbyView");
        QCOMPARE(t->title(), QStringLiteral("liveWindow"));
        // Nobody is woken by a report for the standby screen while another one is up.
        sent();
        words({"sleep", "track on"});
        QCOMPARE(sent(), QStringList());
    }

    void theBannerTellsTheMode() {
        set("setup.language", 0);
        const QDate monday(2026, 3, 9);
        const QDate saturday(2026, 3, 14);
        const struct {
            int operation;
            int status;
            QDate day;
            const char* mode;
            const char* range;
            const char* picture;
        } rows[] = {
            {1, 1, monday, "출근 모드입니다.", "출근 시간 08:00 ~ 09:30", "qlineargradient"},
            {1, 2, QDate(2026, 3, 13), "퇴근 모드입니다.", "퇴근 시간 17:30 ~ 22:00",
             "qlineargradient"},
            {1, 1, saturday, "출근 모드입니다.", "출근 시간 08:00 ~ 10:00", "qlineargradient"},
            {1, 2, QDate(2026, 3, 15), "퇴근 모드입니다.", "퇴근 시간 13:00 ~ 18:00",
             "qlineargradient"},
            {1, 3, monday, "외출 모드입니다.", "외출 시간 17:30 ~ 22:00", "qlineargradient"},
            {2, 1, monday, "조식", "조식 시간 08:00 ~ 09:30", "/food_noti_breakfast.png);};"},
            {2, 2, saturday, "중식", "중식 시간 17:30 ~ 22:00", "/food_noti_lunch.png);};"},
            {2, 3, monday, "석식", "석식 시간 08:00 ~ 10:00", "/food_noti_dinner.png);};"},
            {2, 4, monday, "야식", "야식 시간 13:00 ~ 18:00", "/food_noti_dinner.png);};"},
            {2, 0, monday, "식사 시간이 아닙니다", "", "/zel1/image/food_noti_closed.png);};"},
        };
        for (const auto& row : rows) {
            Clock::fix(QDateTime(row.day, QTime(12, 0)));
            set("setup.operation", row.operation);
            QVERIFY(t->tell(QStringLiteral("status %1").arg(row.status)));
            QVERIFY(t->open("stayWindow") && t->open("liveWindow"));
            const auto* banner = t->find<WorkBanner>("noti_layer");
            QVERIFY2(banner != nullptr, row.mode);
            QCOMPARE(banner->modeText(), QString::fromUtf8(row.mode));
            QCOMPARE(banner->rangeText(), QString::fromUtf8(row.range));
            QVERIFY2(banner->ground().contains(QLatin1String(row.picture)),
                     qPrintable(banner->ground()));
        }
    }

    void theBannerOfAnUnknownModeStays() {
        set("setup.operation", 1);
        word("status 2");
        QVERIFY(t->open("liveWindow"));
        const auto* banner = t->find<WorkBanner>("noti_layer");
        QTRY_COMPARE(banner->modeText(), QStringLiteral("Check-out mode"));
        for (const int mode : {4, 10, -1, 255}) {
            static_cast<LiveView*>(window()->getActivateWindowForm())->updateWorkState(mode);
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

    void theStripOffersWhatIsSet() {
        QVERIFY(t->open("liveWindow"));
        const int three = t->find("menuButton")->width();
        QVERIFY(!t->find("keypadButton"));
        set("setup.authMethod", 4);
        QTRY_VERIFY(t->find("keypadButton"));
        QTRY_VERIFY(t->find("menuButton")->width() < three);
        QCOMPARE(t->find("callButton")->width(), t->find("menuButton")->width());
        set("setup.visitorCall", 0);
        set("registration.on", 0);
        set("setup.authMethod", 2);
        QTRY_VERIFY(!t->find("callButton") && !t->find("enrollButton") && !t->find("keypadButton"));
        QTRY_COMPARE(t->find("menuButton")->width(), t->find("strip")->width() - 2 * 16);

        set("registration.on", 1);
        set("setup.authMethod", 4);
        const struct {
            const char* button;
            const char* screen;
            const char* frames;
        } ways[] = {
            {"keypadButton", "inputSubWindow", "2011 0 0|2010 0 0|"},
            {"enrollButton", "userEnroll_qualWindow", "2003 1 0|2011 2 0|2010 0 0|2028 0 0|"},
            {"menuButton", "zelMenuWindow", "2011 0 0|2010 0 0|"},
        };
        for (const auto& way : ways) {
            QVERIFY(t->open("liveWindow"));
            t->tap(way.button);
            QCOMPARE(t->title(), QLatin1String(way.screen));
            const QString frames = sentLine() + QLatin1Char('|');
            QVERIFY2(frames.startsWith(QLatin1String(way.frames)), qPrintable(frames));
        }
    }

    void theLiveViewEnds() {
        set("liveSeconds", 1);
        QVERIFY(t->open("liveWindow"));
        // A face keeps it, and a report of no face does not.
        const std::pair<TrackedFace, int> faces[] = {{{100, 200, 200, 260, 1, 0}, 1000},
                                                     {{}, 60000}};
        for (const auto& [face, interval] : faces) {
            timer()->start(60000);
            frame(command::TrackingBox, face);
            QVERIFY(t->settle());
            QCOMPARE(timer()->interval(), interval);
        }
        timer()->start(1);
        QVERIFY(t->shows("stayWindow"));
        QCOMPARE(sent().last(), QStringLiteral("2010 0 0"));
    }

    void aVisitorRings() {
        QVERIFY(t->open("liveWindow"));
        t->tap("callButton");
        QCOMPARE(sent(), QStringList(QStringLiteral("2020 36 0")));
        QVERIFY(t->says("Dialog_VisitorDoorCalling"));
        // What lies behind is out of reach until the dialog is gone, and so is it with the screen.
        t->tap("menuButton");
        QCOMPARE(t->title(), QStringLiteral("liveWindow"));
        word("face 01023456789");
        QVERIFY(t->shows("recognizeWindow"));
        QCOMPARE(DialogOverlay::current(window()), nullptr);
        QVERIFY(t->open("liveWindow"));
        QVERIFY(!t->find("doorDialog"));
    }

    void theBoxPaintsLittle() {
        QVERIFY(t->open("liveWindow"));
        frame(command::TrackingBox, TrackedFace{124, 232, 232, 296, 1, 0});
        QVERIFY(t->settle());
        window()->grab();
        PaintCounter moved(window());
        frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
        QTRY_VERIFY(moved.count > 0);
        QVERIFY2(area(moved.region) < 480 * 800 / 10,
                 qPrintable(QString::number(area(moved.region))));
        QVERIFY(!moved.region.contains(QPoint(240, 380)));
        // The same again is nothing new.
        PaintCounter same(window());
        frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
        QVERIFY(t->settle());
        QCoreApplication::processEvents();
        QCOMPARE(same.count, 0);

        // Failure says why, wherever the face is and however little of it can be seen.
        const std::pair<TrackedFace, bool> faces[] = {
            {{124, 232, 232, 296, 3, 1}, true},  {{-200, 700, 240, 300, 3, 1}, true},
            {{-3, 1, 4, 4, 3, 1}, true},         {{470, 790, 32767, 32767, 3, 1}, true},
            {{10, 10, -5, 5, 3, 1}, false},      {{-32768, -32768, 20, 20, 3, 1}, false},
            {{100, 100, 100, 100, 9, 1}, false},
        };
        for (const auto& [face, seen] : faces) {
            frame(command::TrackingBox, TrackedFace{});
            QTRY_VERIFY(!t->readsKey("Info_FaceNotRegistered"));
            frame(command::TrackingBox, face);
            QVERIFY(t->settle());
            QTRY_COMPARE(t->readsKey("Info_FaceNotRegistered"), seen);
        }
        // A card's failure outlasts the boxes of a face that is only tracked.
        word("card 99999999");
        QTRY_VERIFY(t->readsKey("Info_CardNotRegistered"));
        frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
        QVERIFY(t->settle());
        QVERIFY(t->readsKey("Info_CardNotRegistered"));
        QTRY_VERIFY(!t->readsKey("Info_CardNotRegistered"));
    }

    void attendanceIsChosenOnce() {
        set("setup.operation", 1);
        const struct {
            const char* button;
            const char* frame;
            const char* confirmation;
        } events[] = {{"inButton", "2020 16 0", "Info_Authenticated_Complet_In"},
                      {"outButton", "2020 17 0", "Info_Authenticated_Complet_Out"},
                      {"outDutyButton", "2020 18 0", "Info_Authenticated_Complet_Break"},
                      {"inDutyButton", "2020 19 0", "Info_Authenticated_Complet_Return"}};
        for (const auto& event : events) {
            QVERIFY(t->open("liveWindow"));
            word("face 01023456789");
            QVERIFY(t->shows("recognizeWindow"));
            QVERIFY(t->reads(QStringLiteral("김서연")));
            QVERIFY(t->reads(QStringLiteral("Check-in mode")));
            QVERIFY(t->find<ThumbnailView>("thumbnail")->hasPhoto());
            // The last one is to be over soon.
            if (event.button == events[3].button)
                set("attendanceDoneSeconds", 1);
            QTRY_VERIFY(t->agrees());
            sent();
            // Two presses in one go, before the event loop runs again.
            const QPoint place = t->place(event.button);
            QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, place);
            QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, place);
            QCOMPARE(sent(), QStringList(QLatin1String(event.frame)));
            QVERIFY(t->readsKey(event.confirmation));
            QVERIFY(t->reads(QStringLiteral("03/09")) && t->reads(QStringLiteral("08:52")) &&
                    t->reads(QStringLiteral("AM")));
            QVERIFY(!t->find(event.button));
        }
        QVERIFY(t->shows("liveWindow"));
        QCOMPARE(sentLine(), QStringLiteral("2003 1 0|2001 0 0|2020 34 0"));
    }

    void mealsArePaid() {
        set("setup.operation", 2);
        set("operation.saveSimpleAccess", 0);
        set("paymentDoneSeconds", 1);
        QVERIFY(t->open("liveWindow"));
        word("face 01098765432");
        QVERIFY(t->shows("recognizeWindow"));
        const auto* count = t->find<TextLine>("countLine");
        QCOMPARE(count->text(), QStringLiteral("1"));
        sent();
        t->tap("minusButton");
        QCOMPARE(count->text(), QStringLiteral("1"));
        for (int i = 0; i < 99; ++i)
            t->tap("plusButton");
        QCOMPARE(count->text(), QStringLiteral("99"));
        QCOMPARE(sent().count(QStringLiteral("2020 35 0")), 100);
        t->tap("minusButton");
        t->tap("paymentButton");
        QCOMPARE(sentLine(), QStringLiteral("2020 35 0|2020 33 98"));
        QVERIFY(t->reads(QStringLiteral("Payment completed")));
        QVERIFY(t->reads(QStringLiteral("Breakfast × 98")));
        MEAL_COUNT counts{};
        QTRY_VERIFY((window()->GetMealCount(&counts), counts.breakfast == 98));
        QVERIFY(t->shows("liveWindow"));
        // What is paid for is not given up.
        QVERIFY(!sent().contains(QStringLiteral("2020 34 0")));

        // The same person again, and another one who pays for one meal.
        word("face 01098765432");
        QVERIFY(t->shows("recognizeWindow"));
        QVERIFY(t->readsKey("Info_MealTaken"));
        QVERIFY(!t->find("paymentButton"));
        word("face 01023456789");
        QTRY_VERIFY(t->find("paymentButton"));
        t->tap("paymentButton");
        QVERIFY(sent().contains(QStringLiteral("2020 32 1")));
        t->tap("menuButton");
        QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));

        QVERIFY(t->open("liveWindow"));
        word("face 01055501234");
        QVERIFY(t->shows("recognizeWindow"));
        t->tap("cancelButton");
        QCOMPARE(t->title(), QStringLiteral("stayWindow"));
        QVERIFY(sent().contains(QStringLiteral("2020 34 0")));
    }

    void refusalsAreTold() {
        word("status 2");
        const struct {
            quint8 result;
            const char* key;
            bool positive;
            int operation = 2;
        } rows[] = {
            {1, "Info_NoMealTime", false},      {2, "Info_NotPermitted", false},
            {3, "Info_Registered", true},       {4, "Info_MealTaken", false},
            {200, "Info_NotPermitted", false},  {0, "Info_Authenticated_TnA_DEMO", true, 0},
            {1, "Info_NoAccessTime", false, 0},
        };
        for (const auto& row : rows) {
            // Neither meals nor attendance are offered to somebody who is refused.
            set("setup.operation", row.operation);
            QVERIFY(t->open("liveWindow"));
            RecognitionResult record = resultOf(QStringLiteral("01023456789"), QStringLiteral("A"));
            record.result = row.result;
            record.askAttendance = row.result != 0;
            record.demo = 1;
            frame(command::Recognised, record);
            QVERIFY(t->shows("recognizeWindow"));
            QCOMPARE(t->find<TextLine>("resultLine")->text(), t->text(row.key));
            QVERIFY2(!t->find("paymentButton") && !t->find("inOutButtons"), row.key);
            QVERIFY2(t->sends(row.positive ? "1908 0 0 ca 00" : "1908 0 0 cb 00"), row.key);
        }
    }

    void anAlarmIsConfirmed() {
        QVERIFY(t->open("liveWindow"));
        words({"alarm arm", "face 01023456789"});
        QVERIFY(t->shows("recognizeWindow"));
        QVERIFY(t->readsKey("Info_Armed"));
        words({"alarm disarm", "face 01098765432"});
        QTRY_VERIFY(t->readsKey("Info_Disarmed"));
        // Who may not change the alarm has not changed it, nor has anybody without an alarm mode.
        word("face 01055501234");
        QTRY_VERIFY(t->readsKey("Info_NotPermitted"));
        QVERIFY(!t->find("armModeOkForm"));
        words({"alarm none", "face 01023456789"});
        QTRY_VERIFY(t->readsKey("Info_Hello"));
        QVERIFY(!t->find("armModeOkForm"));
    }

    void aNewResultReplacesTheOld() {
        set("setup.operation", 1);
        QVERIFY(t->open("liveWindow"));
        word("face 01023456789");
        QVERIFY(t->shows("recognizeWindow"));
        // A finger comes down for the first person and is lifted for the second.
        Finger finger(window());
        finger.down(t->find("cancelButton"));
        timer()->start(1000000);
        TouchShield::setTime(3600 * 1000);
        word("face 01098765432");
        QTRY_VERIFY(t->reads(QStringLiteral("박지훈")));
        QVERIFY(!t->reads(QStringLiteral("김서연")));
        finger.up();
        // Nor does one count that comes down before the second can have seen what there is.
        finger.tap(t->find("outButton"));
        TouchShield::setTime(0);
        QCOMPARE(sentLine("2020 1"), QString());
        QCOMPARE(t->title(), QStringLiteral("recognizeWindow"));
        // The second has a whole time, and an unknown face behind does not take the result away.
        QCOMPARE(timer()->interval(), 60000);
        word("face unknown");
        QVERIFY(t->settle());
        QCOMPARE(t->title(), QStringLiteral("recognizeWindow"));
        timer()->start(1);
        QVERIFY(t->shows("liveWindow"));
        // Nothing of them is left on the screen that is behind now.
        const WindowForm* behind = window()->getWindow(QStringLiteral("recognizeWindow"));
        QVERIFY(behind->findChild<QWidget*>(QStringLiteral("userCard"))->isHidden());
    }

    void onlyTheRightPicturesAreShown() {
        const QByteArray red = picture(Qt::red);
        const std::pair<const char*, QByteArray> files[] = {
            {"/mnt/data/secret.jpg", red},
            {"/mnt/data/user/good.jpg", red},
            {"/mnt/data/thumb/small.jpg", red},
            {"/mnt/data/thumb/good.jpg", picture(Qt::blue)},
            {"/mnt/data/user/broken.jpg", red.left(200)},
            {"/mnt/data/user/empty.jpg", {}},
            {"/mnt/data/user/drawing.jpg",
             "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
        };
        for (const auto& [name, content] : files)
            t->root.write(name, content);
        QFile::link(t->root.path("/mnt/data/secret.jpg"),
                    t->root.path("/mnt/data/user/linked.jpg"));
        QDir().mkpath(t->root.path("/mnt/data/user/folder.jpg"));
        QVERIFY(t->open("liveWindow"));
        const std::pair<const char*, bool> cases[] = {
            {"good", true},    {"small", true},   {"../secret", false},   {"..", false},
            {"", false},       {"broken", false}, {"empty", false},       {"drawing", false},
            {"linked", false}, {"folder", false}, {"<b>good</b>", false}, {"/mnt/data/secr", false},
        };
        // Markup in a name is a part of it; a picture that it names is not looked for.
        const QString name = QStringLiteral("<b>A</b><img src='x'>");
        const auto isRed = [this] {
            const QImage shown = t->find("thumbnail")->grab().toImage();
            return qRed(shown.pixel(shown.rect().center())) > 200;
        };
        for (const auto& [id, photo] : cases) {
            frame(command::Recognised, resultOf(QLatin1String(id), name));
            QVERIFY(t->settle());
            QVERIFY(t->shows("recognizeWindow"));
            QVERIFY2(t->find<ThumbnailView>("thumbnail")->hasPhoto() == photo, id);
            QVERIFY2(isRed() == photo, id);
            QCOMPARE(t->find<TextLine>("nameLine")->text(), name);
            QVERIFY2(*id == '\0' || t->reads(QLatin1String(id)), id);
        }
        // A picture that has gone is not shown again, but the smaller one; without the setting
        // there is none.
        QVERIFY(QFile::remove(t->root.path("/mnt/data/user/good.jpg")));
        frame(command::Recognised, resultOf(QStringLiteral("good"), name));
        QTRY_VERIFY(t->find<ThumbnailView>("thumbnail")->hasPhoto());
        QVERIFY(!isRed());
        set("screen.showThumbnail", 0);
        QTRY_VERIFY(t->agrees());
        word("face 01023456789");
        QTRY_VERIFY(t->reads(QStringLiteral("김서연")));
        QVERIFY(!t->find<ThumbnailView>("thumbnail")->hasPhoto());

        // Nobody at all, and frames that are cut short.
        frame(command::Recognised, RecognitionResult{});
        words({"frame 3010 0 0 3031", "frame 3000 0 0 3031"});
        QVERIFY(t->settle());
        QTRY_VERIFY(t->readsKey("Info_Authenticated"));
    }
};

QTEST_MAIN(DoorTest)
#include "door_test.moc"
