#include <QImage>

#include "cloud/parameters.h"
#include "screens/recognize/live_view.h"
#include "screens/recognize/work_banner.h"
#include "tests/support/door_day.h"
#include "tests/support/finger.h"
#include "ui/notice_strip.h"
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

/// Whether something on @p widget is drawn in the colour of what goes well.
bool hasGreen(QWidget* widget) {
    const QImage image = widget->grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGreen(image.pixel(x, y)) - qRed(image.pixel(x, y)) > 60)
                return true;
    return false;
}

}  // namespace

/// What the screens at the door show and do, how they come and go, and what lies above them.
class DoorTest : public DoorDay {
    Q_OBJECT

 private slots:
    void aTouchWakesTheStandbyScreen() {
        PLAYS(":liveWindow");
        window()->changeWindow(QStringLiteral("stayWindow"));
        QCOMPARE(sentLine(), QStringLiteral("2003 0 0|2011 0 0|2010 0 0|1905 1 0"));
        PLAYS("standbyView @liveWindow");
        QCOMPARE(sentLine(),
                 QStringLiteral("1908 0 0 c9 00|2011 1 0|2010 1 0|2030 0 0|2035 1 0|2003 1 0"));
    }

    void theStandbyScreenSleeps() {
        PLAYS("!sleep ^2035_0_0");
        const QImage dark = window()->grab().toImage();
        QImage black(dark.size(), dark.format());
        black.fill(Qt::black);
        QCOMPARE(dark, black);
        // Settings that arrive meanwhile do not light it up.
        PLAYS(
            "!settings_screen.standbyMode_1 -=Info_TouchToStart "
            "!wake ^2035_1_0 =Info_TouchToStart !sleep -=Info_TouchToStart standbyView "
            "@liveWindow");
        // Nobody is woken by a report for the standby screen while another one is up.
        sent();
        words({"sleep", "track on"});
        QCOMPARE(sent(), QStringList());
    }

    void theBannerTellsTheMode() {
        set("setup.language", 0);
        const struct {
            int operation;
            int status;
            int day;  // of March, the 9th is a Monday
            const char* text;
            const char* picture = "qlineargradient";
        } rows[] = {
            {1, 1, 9, "출근 모드입니다.|출근 시간 08:00 ~ 09:30"},
            {1, 2, 13, "퇴근 모드입니다.|퇴근 시간 17:30 ~ 22:00"},
            {1, 1, 14, "출근 모드입니다.|출근 시간 08:00 ~ 10:00"},
            {1, 2, 15, "퇴근 모드입니다.|퇴근 시간 13:00 ~ 18:00"},
            {1, 3, 9, "외출 모드입니다.|외출 시간 17:30 ~ 22:00"},
            {2, 1, 9, "조식|조식 시간 08:00 ~ 09:30", "/food_noti_breakfast.png);};"},
            {2, 2, 14, "중식|중식 시간 17:30 ~ 22:00", "/food_noti_lunch.png);};"},
            {2, 3, 9, "석식|석식 시간 08:00 ~ 10:00", "/food_noti_dinner.png);};"},
            {2, 4, 9, "야식|야식 시간 13:00 ~ 18:00", "/food_noti_dinner.png);};"},
            {2, 0, 9, "식사 시간이 아닙니다|", "/zel1/image/food_noti_closed.png);};"},
        };
        for (const auto& row : rows) {
            Clock::fix(QDateTime(QDate(2026, 3, row.day), QTime(12, 0)));
            set("setup.operation", row.operation);
            word(qPrintable(QStringLiteral("status %1").arg(row.status)));
            QVERIFY(t->open("stayWindow") && t->open("liveWindow"));
            QCOMPARE(window()->getSystemStatus(), row.status);
            QVERIFY2(t->find("noti_layer"), row.text);
            QCOMPARE(banner()->modeText() + QLatin1Char('|') + banner()->rangeText(),
                     QString::fromUtf8(row.text));
            QVERIFY2(banner()->ground().contains(QLatin1String(row.picture)),
                     qPrintable(banner()->ground()));
        }
    }

    void theBannerOfAnUnknownModeStays() {
        PLAYS("!settings_setup.operation_1 !status_2 :liveWindow noti_layer=Check-out_mode");
        for (const int mode : {4, 10, -1, 255}) {
            static_cast<LiveView*>(window()->getActivateWindowForm())->updateWorkState(mode);
            QCOMPARE(banner()->modeText(), QStringLiteral("Check-out mode"));
        }
        // A terminal that records nothing but coming back says so, all the same.
        PLAYS(
            "!settings_operation.attendanceMode_5 !status_auto noti_layer=Return_mode "
            "!settings_operation.attendanceMode_0 !status_4");
        QTRY_COMPARE(int(window()->getWorkMode()), 4);
        PLAYS("!status_5 -noti_layer");
        // With nothing but the door there is nothing to tell, and no place to keep free for it.
        PLAYS("!settings_setup.operation_0 !status_0 -noti_layer");
    }

    void theStripOffersWhatIsSet() {
        const auto width = [this](const char* name) { return t->find(name)->width(); };
        PLAYS(":liveWindow -keypadButton");
        const int three = width("menuButton");
        PLAYS("!settings_setup.authMethod_4 +keypadButton");
        QTRY_VERIFY(width("menuButton") < three);
        QCOMPARE(width("callButton"), width("menuButton"));
        PLAYS(
            "!settings_setup.visitorCall_0 !settings_registration.on_0 "
            "!settings_setup.authMethod_2 "
            "-callButton -enrollButton -keypadButton");
        QTRY_COMPARE(width("menuButton"), width("strip") - 2 * 16);

        PLAYS("!settings_registration.on_1 !settings_setup.authMethod_4");
        for (const auto& [way, frames] :
             {std::pair("keypadButton @inputSubWindow", "2011 0 0|2010 0 0|"),
              {"enrollButton @userEnroll_qualWindow", "2003 1 0|2011 2 0|2010 0 0|2028 0 0|"},
              {"menuButton @zelMenuWindow", "2011 0 0|2010 0 0|"}}) {
            PLAYS(QByteArray(":liveWindow ") + way);
            const QString line = sentLine() + QLatin1Char('|');
            QVERIFY2(line.startsWith(QLatin1String(frames)), qPrintable(line));
        }
    }

    void theLiveViewEnds() {
        PLAYS("!settings_liveSeconds_0 :liveWindow");
        QCOMPARE(timer()->interval(), 20000);
        PLAYS(":stayWindow !settings_liveSeconds_1 :liveWindow");
        // A face keeps it, and a report of no face does not.
        for (const auto& [face, interval] :
             {std::pair(TrackedFace{100, 200, 200, 260, 1, 0}, 1000), {{}, 60000}}) {
            timer()->start(60000);
            frame(command::TrackingBox, face);
            QCOMPARE(timer()->interval(), interval);
        }
        timer()->start(1);
        QVERIFY(t->shows("stayWindow"));
        QCOMPARE(sent().last(), QStringLiteral("2010 0 0"));
    }

    void aVisitorRings() {
        PLAYS(":liveWindow callButton ?Dialog_VisitorDoorCalling");
        QCOMPARE(sentLine(), QStringLiteral("2020 36 0"));
        // What lies behind is out of reach until the dialog is gone, and so is it with the screen.
        t->tap("menuButton");
        PLAYS("@liveWindow !face_01023456789 @recognizeWindow -? :liveWindow -doorDialog");
    }

    void theBoxPaintsLittle() {
        QVERIFY(t->open("liveWindow"));
        frame(command::TrackingBox, TrackedFace{124, 232, 232, 296, 1, 0});
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
            QTRY_COMPARE(t->readsKey("Info_FaceNotRegistered"), seen);
        }
        // A card's failure outlasts the boxes of a face that is only tracked.
        PLAYS("!card_99999999 =Info_CardNotRegistered");
        frame(command::TrackingBox, TrackedFace{126, 233, 232, 296, 1, 0});
        QVERIFY(t->readsKey("Info_CardNotRegistered"));
        QTRY_VERIFY(!t->readsKey("Info_CardNotRegistered"));
    }

    void attendanceIsChosenOnce() {
        set("setup.operation", 1);
        const std::tuple<const char*, const char*, const char*> events[] = {
            {"inButton", "2020 16 0", "Info_Authenticated_Complet_In"},
            {"outButton", "2020 17 0", "Info_Authenticated_Complet_Out"},
            {"outDutyButton", "2020 18 0", "Info_Authenticated_Complet_Break"},
            {"inDutyButton", "2020 19 0", "Info_Authenticated_Complet_Return"}};
        for (const auto& [button, frame, confirmation] : events) {
            PLAYS(":liveWindow !face_01023456789 @recognizeWindow =김서연 =Check-in_mode");
            QVERIFY(t->find<ThumbnailView>("thumbnail")->hasPhoto());
            // The last one is to be over soon.
            set("attendanceDoneSeconds", *button == 'i' && button[2] == 'D' ? 1 : 60);
            QTRY_VERIFY(t->agrees());
            sent();
            // Two presses in one go, before the event loop runs again.
            const QPoint place = t->place(button);
            QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, place);
            QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, place);
            QCOMPARE(sentLine(), QLatin1String(frame));
            PLAYS(QByteArray("=03/09 =08:52 =AM -") + button + " =" + confirmation);
        }
        QVERIFY(t->shows("liveWindow"));
        QCOMPARE(sentLine(), QStringLiteral("2003 1 0|2001 0 0|2020 34 0"));
    }

    void mealsArePaid() {
        PLAYS(
            "!settings_setup.operation_2 !settings_operation.saveSimpleAccess_0 "
            "!settings_paymentDoneSeconds_1 :liveWindow !face_01098765432 @recognizeWindow "
            "countLine=1 minusButton countLine=1");
        for (int i = 0; i < 99; ++i)
            t->tap("plusButton");
        QCOMPARE(sent().count(QStringLiteral("2020 35 0")), 100);
        PLAYS("countLine=99 minusButton paymentButton =Payment_completed =Breakfast_×_98");
        QCOMPARE(sentLine(), QStringLiteral("2020 35 0|2020 33 98"));
        MEAL_COUNT counts{};
        QTRY_VERIFY((window()->GetMealCount(&counts), counts.breakfast == 98));
        QVERIFY(t->shows("liveWindow"));
        // What is paid for is not given up.
        QVERIFY(!sent().contains(QStringLiteral("2020 34 0")));

        // The same person again, another one who pays for one meal, and one who pays for none.
        PLAYS(
            "!face_01098765432 @recognizeWindow =Info_MealTaken -paymentButton "
            "!face_01023456789 paymentButton ^2020_32_1 menuButton @zelMenuWindow "
            ":liveWindow !face_01055501234 @recognizeWindow cancelButton @stayWindow ^2020_34_0");
    }

    void refusalsAreTold() {
        word("status 2");
        const std::tuple<quint8, const char*, bool, int> rows[] = {
            {1, "Info_NoMealTime", false, 2},     {2, "Info_NotPermitted", false, 2},
            {3, "Info_Registered", true, 2},      {4, "Info_MealTaken", false, 2},
            {200, "Info_NotPermitted", false, 2}, {0, "Info_Authenticated_TnA_DEMO", true, 0},
            {1, "Info_NoAccessTime", false, 0},
        };
        for (const auto& [result, key, positive, operation] : rows) {
            // Neither meals nor attendance are offered to somebody who is refused.
            set("setup.operation", operation);
            QVERIFY(t->open("liveWindow"));
            RecognitionResult record = resultOf(QStringLiteral("01023456789"), QStringLiteral("A"));
            record.result = result;
            record.askAttendance = result != 0;
            record.demo = 1;
            frame(command::Recognised, record);
            PLAYS(positive ? "@recognizeWindow ^1908_0_0_ca_00 -paymentButton -inOutButtons"
                           : "@recognizeWindow ^1908_0_0_cb_00 -paymentButton -inOutButtons");
            QCOMPARE(t->find<TextLine>("resultLine")->text(), t->text(key));
        }
    }

    void anAlarmIsConfirmed() {
        PLAYS(
            ":liveWindow !alarm_arm !face_01023456789 @recognizeWindow =Info_Armed "
            "!alarm_disarm !face_01098765432 =Info_Disarmed");
        // Who may not change the alarm has not changed it, nor has anybody without an alarm mode.
        PLAYS(
            "!face_01055501234 =Info_NotPermitted -armModeOkForm "
            "!alarm_none !face_01023456789 =Info_Hello -armModeOkForm");
    }

    void aNewResultReplacesTheOld() {
        PLAYS("!settings_setup.operation_1 :liveWindow !face_01023456789 @recognizeWindow");
        // A finger comes down for the first person and is lifted for the second.
        Finger finger(window());
        finger.down(t->find("cancelButton"));
        timer()->start(1000000);
        TouchShield::setTime(3600 * 1000);
        PLAYS("!face_01098765432 =박지훈 -=김서연");
        finger.up();
        // Nor does one count that comes down before the second can have seen what there is.
        finger.tap(t->find("outButton"));
        TouchShield::setTime(0);
        for (auto* shield : window()->findChildren<TouchShield*>())
            shield->hide();
        QCOMPARE(sentLine("2020 1"), QString());
        PLAYS("@recognizeWindow");
        // The second has a whole time, and an unknown face behind does not take the result away.
        QCOMPARE(timer()->interval(), 60000);
        word("face unknown");
        QVERIFY(t->settle());
        PLAYS("@recognizeWindow");
        timer()->start(1);
        QVERIFY(t->shows("liveWindow"));
        // Nothing of them is left on the screen that is behind now.
        const WindowForm* behind = window()->getWindow(QStringLiteral("recognizeWindow"));
        QVERIFY(behind->findChild<QWidget*>(QStringLiteral("userCard"))->isHidden());
        set("resultSeconds", 0);
        PLAYS("!settings_setup.operation_0 !face_01023456789 @recognizeWindow");
        QCOMPARE(timer()->interval(), 3000);
    }

    void onlyTheRightPicturesAreShown() {
        const QByteArray red = picture(Qt::red);
        for (const auto& [name, content] :
             {std::pair("/mnt/data/secret.jpg", red),
              {"/mnt/data/user/good.jpg", red},
              {"/mnt/data/thumb/small.jpg", red},
              {"/mnt/data/thumb/good.jpg", picture(Qt::blue)},
              {"/mnt/data/user/broken.jpg", red.left(200)},
              {"/mnt/data/user/empty.jpg", {}},
              {"/mnt/data/user/drawing.jpg",
               "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"}})
            t->root.write(name, content);
        QFile::link(t->root.path("/mnt/data/secret.jpg"),
                    t->root.path("/mnt/data/user/linked.jpg"));
        QDir().mkpath(t->root.path("/mnt/data/user/folder.jpg"));
        PLAYS(":liveWindow");
        const std::pair<const char*, bool> cases[] = {
            {"good", true},    {"small", true},   {"../secret", false},   {"..", false},
            {"", false},       {"broken", false}, {"empty", false},       {"drawing", false},
            {"linked", false}, {"folder", false}, {"<b>good</b>", false}, {"/mnt/data/secr", false},
        };
        // Markup in a name is a part of it; a picture that it names is not looked for.
        const QString name = QStringLiteral("<b>A</b><img src='x'>");
        const auto hasPhoto = [this] { return t->find<ThumbnailView>("thumbnail")->hasPhoto(); };
        const auto isRed = [this] {
            const QImage shown = t->find("thumbnail")->grab().toImage();
            return qRed(shown.pixel(shown.rect().center())) > 200;
        };
        for (const auto& [id, photo] : cases) {
            frame(command::Recognised, resultOf(QLatin1String(id), name));
            QVERIFY(t->shows("recognizeWindow"));
            QVERIFY2(hasPhoto() == photo && isRed() == photo, id);
            QCOMPARE(t->find<TextLine>("nameLine")->text(), name);
            QVERIFY2(*id == '\0' || t->reads(QLatin1String(id)), id);
        }
        // A picture that has gone is not shown again, but the smaller one; without the setting
        // there is none.
        QVERIFY(QFile::remove(t->root.path("/mnt/data/user/good.jpg")));
        frame(command::Recognised, resultOf(QStringLiteral("good"), name));
        QTRY_VERIFY(hasPhoto() && !isRed());
        PLAYS("!settings_screen.showThumbnail_0 !face_01023456789 =김서연");
        QVERIFY(!hasPhoto());

        // Nobody at all, and frames that are cut short.
        frame(command::Recognised, RecognitionResult{});
        PLAYS("!frame_3010_0_0_3031 !frame_3000_0_0_3031 =Info_Authenticated");
    }

    void aDarkScreenLightsUpHoweverItIsLeft() {
        for (const char* way :
             {"standbyView @liveWindow", "!card_10000002 @recognizeWindow",
              "!card_99999999 @liveWindow", "!live @liveWindow", "DELETE @liveWindow",
              "ENROL @userEnroll_qualWindow", "!frame_2990_0_0 @upgradingWindow"}) {
            PLAYS(":stayWindow !sleep ^2035_0_0");
            goesBy(way);
            QCOMPARE(sent().count(QStringLiteral("2035 1 0")), 1);
        }
    }

    void aFingerOnAHiddenScreenDoesNothing() {
        set("setup.operation", 1);
        const std::tuple<const char*, const char*, const char*> touches[] = {
            {":stayWindow", "standbyView", "!card_10000002 @recognizeWindow"},
            {":liveWindow", "menuButton", "!card_10000002 @recognizeWindow"},
            {":stayWindow", "standbyView", "!fault_touch @stayWindow ?Popup_ErrCtouch"},
            {":recognizeWindow !card_10000002", "cancelButton", "!live @liveWindow"},
        };
        for (const auto& [before, place, happens] : touches) {
            PLAYS(before + QByteArray(" +") + place);
            Finger finger(window());
            finger.down(t->find(place));
            PLAYS(happens);
            const QString title = t->title();
            sent();
            finger.up();
            QCOMPARE(sent(), QStringList());
            QCOMPARE(t->title(), title);
            word("fault none");
        }

        QWidget screen;
        VisibleTimer timer(&screen);
        timer.start(60000);
        QVERIFY(!timer.isActive());
        screen.show();
        timer.start();
        QVERIFY(timer.isActive());
        screen.hide();
        QVERIFY(!timer.isActive());
    }

    void theLiveViewLooksForFaces() {
        set("setup.authMethod", 4);
        set("resultSeconds", 1);
        for (const char* way :
             {":stayWindow standbyView", ":stayWindow !card_10000002",
              ":zelMenuWindow !card_10000002", ":liveWindow keypadButton backButton",
              ":liveWindow DELETE", ":liveWindow !face_01023456789"}) {
            PLAYS(":stayWindow");
            goesBy(way);
            QVERIFY(t->settle());
            PLAYS("@liveWindow");
            const QStringList frames = sent();
            const int anew = strstr(way, "!face") == nullptr;
            for (const char* frame : {"2011 1 0", "2010 1 0", "2030 0 0"}) {
                QCOMPARE(frames.count(QLatin1String(frame)), anew);
                QVERIFY(frames.lastIndexOf(QStringLiteral("2010 0 0")) <=
                        frames.indexOf(QLatin1String(frame)));
            }
            // Whoever comes now is seen.
            PLAYS("!face_01098765432 @recognizeWindow");
        }
    }

    void nothingMovesWhereScreensMustNotChange() {
        const auto allow = qScopeGuard([this] { window()->setChangeWindowFlag(true); });
        PLAYS("!sleep ^2035_0_0");
        sent();
        window()->setChangeWindowFlag(false);
        PLAYS("standbyView");
        // It is light where the finger is, but nobody is looked for.
        QCOMPARE(sentLine(), QStringLiteral("1908 0 0 c9 00|2035 1 0"));
        words({"card 99999999", "card 10000002", "live"});
        QCOMPARE(sentLine("2011"), QString());
        window()->setChangeWindowFlag(true);
        PLAYS(":liveWindow");
        window()->setChangeWindowFlag(false);
        PLAYS("enrollButton menuButton");
        QCOMPARE(sent(), QStringList());
    }

    void aResultDuringTheStart() {
        set("resultSeconds", 1);
        for (const int commissioned : {1, 0}) {
            set("commissioned", commissioned);
            QVERIFY(t->open("bootWindow"));
            PLAYS("!card_10000002 @recognizeWindow");
            const QString frames = sentLine();
            QVERIFY2(frames.contains(QLatin1String("2011 0 0|2003 1 0|2010 0 0|")),
                     qPrintable(frames));
            QVERIFY(t->shows(commissioned == 1 ? "liveWindow" : "setupMenuWindow"));
        }
        set("commissioned", 1);
    }

    void dialogsKeepTheLiveView() {
        PLAYS(
            "!settings_setup.operation_2 !settings_operation.mealCountView_0 !status_1 "
            "!settings_liveSeconds_1");
        for (const auto& [opens, closes] :
             {std::pair("callButton", "dialogOkButton"), {"noti_layer", "mealCountOkButton"}}) {
            PLAYS(QByteArray(":liveWindow ") + opens + " +" + closes);
            // A face in front of it does not start the time either.
            frame(command::TrackingBox, TrackedFace{100, 200, 200, 260, 1, 0});
            QVERIFY2(!timer()->isActive(), opens);
            t->tap(closes);
            QCOMPARE(t->title(), QStringLiteral("liveWindow"));
            QVERIFY(t->shows("stayWindow"));
        }
    }

    void theSignTellsWhoIsNotReached() {
        for (const char* screen : {"stayWindow", "liveWindow"}) {
            PLAYS(QByteArray(":") + screen +
                  " -peerSign !settings_network.useManager_1 =Info_ServiceNotReached");
            QVERIFY(t->settle());  // with the sign painted
            PaintCounter paints(window());
            window()->getActivateWindowForm()->peersChanged();
            QVERIFY(t->settle());
            QCOMPARE(paints.count, 0);
            window()->updateRestConnectStatus(true);
            QTRY_VERIFY(!t->find("peerSign"));
            window()->updateRestConnectStatus(false);
            PLAYS("=Info_ServiceNotReached");
            if (t->title() == QLatin1String("stayWindow"))
                PLAYS("!sleep !settings_liveSeconds_61 -=Info_ServiceNotReached");
            PLAYS("!settings_network.useManager_0 -peerSign");
        }
        word("drop");
        PLAYS("=Info_ControllerNotReached");
        QTRY_VERIFY_WITH_TIMEOUT(window()->linkUp(), 30000);
        // The controller may be another one.
        PLAYS("-peerSign ^2030_0_0 !face_01098765432 @recognizeWindow");
    }

    void theStripCoversNothing() {
        auto* strip = window()->findChild<NoticeStrip*>();
        const std::pair<const char*, int> rows[] = {
            {":stayWindow !live", 1},
            {":liveWindow !card_99999999", 1},
            {":liveWindow !card_10000002", 1},
            {":liveWindow !card_10000002", 2},
            {":liveWindow !card_10000006", 0},
            {":zelMenuWindow", 1},
            {":workMenuWindow", 1},
            {":usbMenuWindow", 1},
        };
        for (const int language : {0, 1, 2}) {
            set("setup.language", language);
            for (const auto& [way, operation] : rows) {
                set("setup.operation", operation);
                QVERIFY(t->open("stayWindow"));
                PLAYS(way);
                QVERIFY(t->settle());
                QTRY_VERIFY(strip->isHidden());
                PaintRecorder recorder(window()->size());
                window()->render(&recorder);
                for (const bool accepted : {false, true}) {
                    GUI_LOGDATA event{};
                    event.eventStatus = accepted;
                    frame(command::AccessEvent, event);
                    const char* const key =
                        accepted ? "Info_AccessEvent" : "Info_AccessRefusedEvent";
                    QTRY_COMPARE(strip->textKey(), QLatin1String(key));
                    QVERIFY(strip->text().startsWith(t->text(key)));
                    QVERIFY2(!strip->visibleRegion().isEmpty(), way);
                    for (const PaintRecorder::Text& text : recorder.texts())
                        QVERIFY2(!strip->geometry().intersects(text.ink), qPrintable(text.text));
                    QCOMPARE(hasGreen(strip), accepted);
                }
                if (auto* button = t->find("inButton")) {
                    QVERIFY(!strip->geometry().intersects(
                        QRect(button->mapTo(window(), QPoint()), button->size())));
                    PLAYS("inButton ^2020_16_0");
                }
                strip->hide();
            }
        }
    }

 private:
    WorkBanner* banner() const { return t->find<WorkBanner>("noti_layer"); }
    /// Plays @p way, in which the management service may DELETE somebody or have them ENROL.
    void goesBy(const char* way) {
        for (const QByteArray& step : QByteArray(way).split(' ')) {
            if (step == "DELETE")
                window()->sendCommand_ReceiveNetUserDelete(
                    QVariant::fromValue(FR33_3_Parameter{QStringLiteral("01000000000")}));
            else if (step == "ENROL")
                window()->startEnrolment();
            else
                PLAYS(step);
        }
    }
};

QTEST_MAIN(DoorTest)
#include "door_test.moc"
