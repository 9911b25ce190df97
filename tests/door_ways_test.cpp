#include <QImage>
#include <QtTest>
#include <functional>

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

/// Somebody whom the management service speaks of.
QVariant someUser() {
    return QVariant::fromValue(FR33_3_Parameter{QStringLiteral("01000000000")});
}

}  // namespace

/// How the screens at the door come and go, and what lies above them.
class DoorWaysTest : public DoorDay {
    Q_OBJECT

 private slots:
    void aDarkScreenLightsUpHoweverItIsLeft() {
        const struct {
            const char* screen;
            std::function<void()> leave;
        } ways[] = {
            {"liveWindow", [this] { t->tap("standbyView"); }},
            {"recognizeWindow", [this] { word("card 10000002"); }},
            {"liveWindow", [this] { word("card 99999999"); }},
            {"liveWindow", [this] { word("live"); }},
            {"liveWindow", [this] { window()->sendCommand_ReceiveNetUserDelete(someUser()); }},
            {"userEnroll_qualWindow", [this] { window()->startEnrolment(); }},
            {"upgradingWindow", [this] { word("frame 2990 0 0"); }},
        };
        for (const auto& way : ways) {
            QVERIFY(t->open("stayWindow"));
            word("sleep");
            QVERIFY(t->sends("2035 0 0"));
            way.leave();
            QVERIFY2(t->shows(way.screen), way.screen);
            QCOMPARE(sent().count(QStringLiteral("2035 1 0")), 1);
        }
    }

    void aFingerOnAHiddenScreenDoesNothing() {
        set("setup.operation", 1);
        const struct {
            const char* before;
            const char* place;
            const char* happens;
            const char* after;
        } touches[] = {
            {"stayWindow", "standbyView", "card 10000002", "recognizeWindow"},
            {"liveWindow", "menuButton", "card 10000002", "recognizeWindow"},
            {"stayWindow", "standbyView", "fault touch", "stayWindow"},
            {"recognizeWindow", "cancelButton", "live", "liveWindow"},
        };
        for (const auto& touch : touches) {
            QVERIFY(t->open(touch.before));
            if (touch.place == touches[3].place)
                word("card 10000002");
            QTRY_VERIFY2(t->find(touch.place), touch.place);
            Finger finger(window());
            finger.down(t->find(touch.place));
            word(touch.happens);
            QVERIFY2(t->shows(touch.after), touch.place);
            if (touch.before == touch.after)
                QTRY_VERIFY(t->says("Popup_ErrCtouch"));
            sent();
            finger.up();
            QCOMPARE(sent(), QStringList());
            QCOMPARE(t->title(), QLatin1String(touch.after));
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
        const struct {
            const char* before;
            std::function<void()> come;
            bool startsAnew;
        } ways[] = {
            {"stayWindow", [this] { t->tap("standbyView"); }, true},
            {"stayWindow", [this] { word("card 10000002"); }, true},
            {"zelMenuWindow", [this] { word("card 10000002"); }, true},
            {"liveWindow",
             [this] {
                 t->tap("keypadButton");
                 t->tap("backButton");
             },
             true},
            {"liveWindow", [this] { window()->sendCommand_ReceiveNetUserDelete(someUser()); },
             true},
            {"liveWindow", [this] { word("face 01023456789"); }, false},
        };
        for (const auto& way : ways) {
            QVERIFY(t->open("stayWindow") && t->open(way.before));
            way.come();
            QVERIFY(t->settle());
            QVERIFY(t->shows("liveWindow"));
            const QStringList frames = sent();
            for (const char* frame : {"2011 1 0", "2010 1 0", "2030 0 0"}) {
                QCOMPARE(frames.count(QLatin1String(frame)), way.startsAnew ? 1 : 0);
                QVERIFY(frames.lastIndexOf(QStringLiteral("2010 0 0")) <=
                        frames.indexOf(QLatin1String(frame)));
            }
            // Whoever comes now is seen.
            word("face 01098765432");
            QVERIFY(t->shows("recognizeWindow"));
        }
    }

    void nothingMovesWhereScreensMustNotChange() {
        const auto allow = qScopeGuard([this] { window()->setChangeWindowFlag(true); });
        word("sleep");
        QVERIFY(t->sends("2035 0 0"));
        sent();
        window()->setChangeWindowFlag(false);
        t->tap("standbyView");
        // It is light where the finger is, but nobody is looked for.
        QCOMPARE(sentLine(), QStringLiteral("1908 0 0 c9 00|2035 1 0"));
        words({"card 99999999", "card 10000002", "live"});
        QCOMPARE(sentLine("2011"), QString());
        window()->setChangeWindowFlag(true);
        QVERIFY(t->open("liveWindow"));
        window()->setChangeWindowFlag(false);
        t->tap("enrollButton");
        t->tap("menuButton");
        QCOMPARE(sent(), QStringList());
    }

    void aResultDuringTheStart() {
        set("resultSeconds", 1);
        for (const int commissioned : {1, 0}) {
            set("commissioned", commissioned);
            QVERIFY(t->open("bootWindow"));
            word("card 10000002");
            QVERIFY(t->shows("recognizeWindow"));
            const QString frames = sentLine();
            QVERIFY2(frames.contains(QLatin1String("2011 0 0|2003 1 0|2010 0 0|")),
                     qPrintable(frames));
            QVERIFY(t->shows(commissioned == 1 ? "liveWindow" : "setupMenuWindow"));
        }
        set("commissioned", 1);
    }

    void dialogsKeepTheLiveView() {
        set("setup.operation", 2);
        set("operation.mealCountView", 0);
        word("status 1");
        set("liveSeconds", 1);
        const std::pair<const char*, const char*> dialogs[] = {{"callButton", "dialogOkButton"},
                                                               {"noti_layer", "mealCountOkButton"}};
        for (const auto& [opens, closes] : dialogs) {
            QVERIFY(t->open("liveWindow"));
            t->tap(opens);
            // A face in front of it does not start the time either.
            frame(command::TrackingBox, TrackedFace{100, 200, 200, 260, 1, 0});
            QVERIFY(t->settle());
            QVERIFY2(t->find(closes) && !timer()->isActive(), opens);
            t->tap(closes);
            QCOMPARE(t->title(), QStringLiteral("liveWindow"));
            QVERIFY(t->shows("stayWindow"));
        }
    }

    void theSignTellsWhoIsNotReached() {
        for (const char* screen : {"stayWindow", "liveWindow"}) {
            QVERIFY(t->open(screen));
            QVERIFY(!t->find("peerSign"));
            set("network.useManager", 1);
            QTRY_VERIFY(t->readsKey("Info_ServiceNotReached"));
            QVERIFY(t->settle());  // with the sign painted
            PaintCounter paints(window());
            window()->getActivateWindowForm()->peersChanged();
            QVERIFY(t->settle());
            QCOMPARE(paints.count, 0);
            window()->updateRestConnectStatus(true);
            QTRY_VERIFY(!t->find("peerSign"));
            window()->updateRestConnectStatus(false);
            QTRY_VERIFY(t->readsKey("Info_ServiceNotReached"));
            if (t->title() == QLatin1String("stayWindow")) {
                word("sleep");
                QTRY_VERIFY(!t->readsKey("Info_ServiceNotReached"));
            }
            set("network.useManager", 0);
            QTRY_VERIFY(!t->find("peerSign"));
        }
        word("drop");
        QTRY_VERIFY(t->readsKey("Info_ControllerNotReached"));
        QTRY_VERIFY_WITH_TIMEOUT(window()->linkUp(), 30000);
        QVERIFY(!t->find("peerSign"));
        // The controller may be another one.
        QVERIFY(t->sends("2030 0 0"));
        word("face 01098765432");
        QVERIFY(t->shows("recognizeWindow"));
    }

    void theStripCoversNothing() {
        auto* strip = window()->findChild<NoticeStrip*>();
        const struct {
            const char* screen;
            const char* happens;
            int operation;
        } rows[] = {
            {"stayWindow", "live", 1},          {"liveWindow", "card 99999999", 1},
            {"liveWindow", "card 10000002", 1}, {"liveWindow", "card 10000002", 2},
            {"liveWindow", "card 10000006", 0}, {"zelMenuWindow", "track off", 1},
            {"workMenuWindow", "track off", 1}, {"usbMenuWindow", "track off", 1},
        };
        for (const int language : {0, 1, 2}) {
            set("setup.language", language);
            for (const auto& row : rows) {
                set("setup.operation", row.operation);
                QVERIFY(t->open("stayWindow") && t->open(row.screen));
                word(row.happens);
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
                    QVERIFY2(!strip->visibleRegion().isEmpty(), row.screen);
                    for (const TextRecorder::Text& text : recorder.texts())
                        QVERIFY2(!strip->geometry().intersects(text.ink), qPrintable(text.text));
                    QCOMPARE(hasGreen(strip), accepted);
                }
                if (auto* button = t->find("inButton")) {
                    QVERIFY(!strip->geometry().intersects(
                        QRect(button->mapTo(window(), QPoint()), button->size())));
                    t->tap("inButton");
                    QVERIFY(t->sends("2020 16 0"));
                }
                strip->hide();
            }
        }
    }
};

QTEST_MAIN(DoorWaysTest)
#include "door_ways_test.moc"
