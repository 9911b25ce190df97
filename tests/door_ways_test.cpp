#include <QImage>
#include <QtTest>

#include "cloud/parameters.h"
#include "tests/support/door_day.h"
#include "tests/support/finger.h"
#include "ui/notice_strip.h"

namespace {

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

/// How the screens at the door come and go, and what lies above them.
class DoorWaysTest : public DoorDay {
    Q_OBJECT

 private slots:
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
            QVERIFY(t->settle());
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
                PLAYS("!sleep -=Info_ServiceNotReached");
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
                TextRecorder recorder(window()->size());
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
                    for (const TextRecorder::Text& text : recorder.texts())
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

QTEST_MAIN(DoorWaysTest)
#include "door_ways_test.moc"
