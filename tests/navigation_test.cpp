#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include "app/menu_timer.h"
#include "app/message_dispatch.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "tests/support/driven_test.h"

/// The ways from screen to screen: which there are, for whom, and when an unattended screen is
/// left.
class NavigationTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        words({"settings commissioned 1", "settings setup.operation 1",
               "settings screen.menuTimeout 3", "settings setup.adminPassword \"\"",
               "settings registration.on 1"});
        QVERIFY(t->start());
        sent();
    }

    void screensChangeOrNot() {
        QSignalSpy changes(window(), &MainWindow::signal_changeWindow);
        QCOMPARE(window()->changeWindow(QStringLiteral("stayWindow")), -1);
        QCOMPARE(window()->changeWindow(QStringLiteral("StayWindow")), 1);
        QCOMPARE(changes.count(), 0);
        QVERIFY(window()->getActivateWindowForm()->isVisible());
        window()->setChangeWindowFlag(false);
        QCOMPARE(window()->changeWindow(QStringLiteral("enviWindow")), -1);
        QCOMPARE(window()->changeWindow(QStringLiteral("StayWindow")), -1);
        QCOMPARE(t->title(), QStringLiteral("stayWindow"));
        window()->setChangeWindowFlag(true);
        QCOMPARE(window()->changeWindow(QStringLiteral("enviWindow"), 7), 0);
        QCOMPARE(t->title(), QStringLiteral("enviWindow"));
        QCOMPARE(changes.count(), 1);
        for (const WindowForm* screen : window()->windowList())
            QCOMPARE(screen->isVisible(), screen == window()->getActivateWindowForm());
    }

    void aFrozenScreenStays() {
        auto* dispatch = window()->findChild<MessageDispatch*>();
        const QByteArray result(sizeof(RecognitionResult), '\0');
        const DeviceMessage messages[] = {
            {command::RecognitionFailed, 1, command::failure::ByCard, 0, nullptr},
            {command::RecognitionFailed, 1, command::failure::ByFace, 0, nullptr},
            {command::ShowLiveView, 0, 0, 0, nullptr},
            {command::Recognised, 0, 0, sizeof(RecognitionResult), result.constData()},
            {command::FirmwareUpdateAnswer, 0, 0, 0, nullptr},
            {command::FirmwareUpdateAnswer, 1, 0, 0, nullptr},
        };
        for (const WindowForm* screen : window()->windowList()) {
            const QString title = screen->getTitle();
            runFor(title);
            window()->changeWindow(title);
            QCOMPARE(t->title(), title);
            window()->setChangeWindowFlag(false);
            for (const DeviceMessage& message : messages)
                dispatch->dispatch(message);
            window()->startEnrolment();
            window()->asAdministrator([] {});
            emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("liveWindow"));
            QVERIFY(screen->isVisible());
            QCOMPARE(t->title(), title);
            window()->setChangeWindowFlag(true);
        }
        // The time-out was only put off.
        window()->changeWindow(QStringLiteral("enviWindow"));
        window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
        window()->setChangeWindowFlag(false);
        emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
        window()->setChangeWindowFlag(true);
        QVERIFY(t->shows("stayWindow"));
    }

    void theMenuIsTheAdministrators() {
        const QStringList everybodys{
            QStringLiteral("bootWindow"),         QStringLiteral("stayWindow"),
            QStringLiteral("liveWindow"),         QStringLiteral("recognizeWindow"),
            QStringLiteral("inputSubWindow"),     QStringLiteral("InputDestinationForm"),
            QStringLiteral("InputAdminPassword"), QStringLiteral("upgradingWindow")};
        const QString password = QStringLiteral("InputAdminPassword");
        QVERIFY(t->lock());
        for (const WindowForm* screen : window()->windowList()) {
            const QString title = screen->getTitle();
            runFor(title);
            window()->changeWindow(QStringLiteral("inputSubWindow"));
            window()->changeWindow(QStringLiteral("stayWindow"));
            if (everybodys.contains(title)) {
                window()->changeWindow(title);
                QCOMPARE(t->title(), title);
                continue;
            }
            QVERIFY2(window()->changeWindow(title, 7) == -1, qPrintable(title));
            QCOMPARE(t->title(), password);
            // Once it has been entered the way is free, until somebody else may stand there.
            t->enterPassword();
            QCOMPARE(t->title(), title);
            window()->changeWindow(QStringLiteral("upgradingWindow"));
            for (const char* end : {"stayWindow", "liveWindow", "recognizeWindow"}) {
                QCOMPARE(window()->changeWindow(title), 0);
                window()->changeWindow(QLatin1String(end));
                window()->changeWindow(title);
                QCOMPARE(t->title(), password);
                t->enterPassword();
                QCOMPARE(t->title(), title);
                window()->changeWindow(QStringLiteral("inputSubWindow"));
            }
        }
        // A password that is set while somebody is at work does not throw them out; one that nobody
        // knows yet lets nobody in, and one that is taken back needs not be entered.
        PLAYS("!settings_setup.adminPassword_\"\" :zelMenuWindow");
        QVERIFY(t->lock());
        PLAYS("menuUserTile @userMenuWindow");
        t->window.reset();
        t->window = std::make_unique<MainWindow>();
        window()->show();
        window()->changeWindow(QStringLiteral("zelMenuWindow"));
        QCOMPARE(t->title(), password);
        QVERIFY(!t->find("passwordField")->isEnabled());
        QCOMPARE(t->find("messageLabel")->property("textKey").toString(),
                 QStringLiteral("ListItem_NoController"));
        QTRY_VERIFY(t->find("passwordField")->isEnabled());
        word("settings setup.adminPassword \"\"");
        QVERIFY(t->shows("zelMenuWindow"));
    }

    void nothingIsBegunWithoutTheController_data() {
        t->phrases["STICK"] = "!usb_in :usbMenuWindow +actions -?";
        t->phrases["KNOWN"] = ":userSearch_idWindow #01098765432 NEXT @userSearch_InfoWindow";
        table(R"(clock | :setupMenuWindow >timeFromServiceToggle clockRow dateField #20310228D !drop
                setTimeButton
            reset | :setupDefaultWindow logsRow !drop OK
            restart | :setupDefaultWindow restartRow !drop OK
            link test | :networkMenuWindow !silent_1989 testServerRow !drop
            search by card | :user_searchWindow !drop searchCardRow
            search by number | :userSearch_idWindow #01098765432 !drop NEXT
            user saved | KNOWN !drop NEXT
            user changed | KNOWN methodCombo item1 NEXT !drop OK
            user deleted | KNOWN deleteButton !drop OK
            group deleted | :userGroupInfoWindow delete_Button_AllUsers +dialogOkButton !drop OK
            users sent | :userInfo_uploadWindow !drop allUserButton
            file | STICK importUserTile /user_20260301.dat !drop NEXT
            days | STICK exportLogTile !drop NEXT
            next logs | !logs_65 :info_logSearchWindow NEXT @info_logListWindow +lastButton !drop
                lastButton)");
    }
    void nothingIsBegunWithoutTheController() {
        const auto [steps] = values<1>();
        PLAYS(steps + " ?ListItem_NoController OK");
    }

    void enrolmentAtTheDoor_data() { table("the live view's button |\nthe service's order | x"); }

    void enrolmentAtTheDoor() {
        const bool byService = !values<1>()[0].isEmpty();
        QVERIFY(t->lock());
        const auto begin = [&] {
            window()->changeWindow(QStringLiteral("liveWindow"));
            if (byService)
                window()->startEnrolment();
            else
                t->tap("enrollButton");
            QCOMPARE(t->title(), QStringLiteral("userEnroll_qualWindow"));
        };
        // Wherever it is broken off, it ends where it began.
        for (const QByteArray& step :
             QByteArrayList{"userEnroll_IDWindow", "userEnroll_cardTagWindow",
                            "userEnroll_reCardTagWindow", "userEnroll_FaceWindow"}) {
            begin();
            PLAYS(':' + step + " @" + step + " neutralButton @stayWindow");
        }
        begin();
        PLAYS("-backButton neutralButton @stayWindow");
        begin();
        // Out of the steps the way leads to nothing of the administrator's.
        PLAYS(R"(:userEnrollMenuWindow @InputAdminPassword
            :userEnroll_IDWindow @InputAdminPassword)");
        // An administrator's own leads back to the menu; nobody else's does after it.
        t->enterPassword();
        PLAYS(R"(@userEnroll_IDWindow [] neutralButton @userMenuWindow [2011_0_0,2010_0_0]
            :userEnroll_qualWindow BACK @userEnrollMenuWindow)");
        window()->startEnrolment();
        PLAYS("@userEnroll_qualWindow :zelMenuWindow @InputAdminPassword");
    }

    void requestsAskForThePassword() {
        int done = 0;
        const auto request = [&done] { ++done; };
        window()->asAdministrator(request);
        QCOMPARE(done, 1);
        QVERIFY(t->lock());
        PLAYS(":liveWindow :zelMenuWindow");
        // It takes the place of what the password was wanted for before.
        window()->asAdministrator(request);
        PLAYS("@InputAdminPassword");
        QCOMPARE(done, 1);
        t->enterPassword();
        QCOMPARE(done, 2);
        PLAYS("@stayWindow");
        // Who goes away has not agreed.
        window()->asAdministrator(request);
        PLAYS("BACK :zelMenuWindow");
        t->enterPassword();
        PLAYS("@zelMenuWindow");
        QCOMPARE(done, 2);
        window()->asAdministrator(request);
        QCOMPARE(done, 3);
        PLAYS("@zelMenuWindow");
    }

    void menuTimesOut() {
        const auto* timer = window()->findChild<MenuTimer*>();
        for (const auto& [commissioned, choice, seconds] :
             {std::tuple(1, 0, 10), std::tuple(1, 2, 30), std::tuple(1, 3, 0), std::tuple(1, 9, 0),
              std::tuple(0, 0, 0)}) {
            set("commissioned", commissioned);
            set("screen.menuTimeout", choice);
            QVERIFY(t->settle());
            window()->changeWindow(QStringLiteral("enviWindow"));
            QCOMPARE(timer->isRunning(), seconds > 0);
            if (seconds > 0)
                QCOMPARE(timer->seconds(), seconds);
            window()->changeWindow(QStringLiteral("stayWindow"));
            QVERIFY(!timer->isRunning());
        }

        PLAYS("!settings_commissioned_1 :enviSoundWindow");
        window()->StartMenuTimer(1, QStringLiteral("liveWindow"));
        PLAYS("@liveWindow ^1905_1_0");
        QCOMPARE(t->frames.value(0), QStringLiteral("1905 1 0"));
    }

    void everyTouchKeepsTheScreen() {
        window()->changeWindow(QStringLiteral("zelMenuWindow"));
        auto* tile = t->find("menuUserTile");
        tile->setEnabled(false);  // a touch that leads nowhere is a touch all the same
        const QPoint place = tile->mapTo(window(), tile->rect().center());
        t->tap(place);  // the finger is there from now on, and does not move
        window()->StartMenuTimer(1, QStringLiteral("stayWindow"));
        auto* timer = window()->findChild<MenuTimer*>()->findChild<QTimer*>();
        // Its end counts as well.
        for (const auto touch : {QTest::MousePress, QTest::MouseRelease}) {
            timer->start(60000);
            QTest::mouseEvent(touch, window()->windowHandle(), Qt::LeftButton, {}, place);
            QCOMPARE(timer->interval(), 1000);
        }
        QVERIFY(t->shows("stayWindow"));
    }

    void factoryTests() {
        const QPoint titleText(90, 36);
        PLAYS("!settings_screen.menuTimeout_0 :zelMenuWindow -~");
        for (int i = 0; i < 4; ++i)
            t->tap(titleText);
        QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {}, QPoint(20, 790));
        QCOMPARE(t->title(), QStringLiteral("zelMenuWindow"));
        // Taps that follow quickly come as double clicks.
        QTest::mouseDClick(window()->windowHandle(), Qt::LeftButton, {}, titleText);
        // From then on no screen times out. The board tells each step of the I/O test done, and
        // the test goes on to its end.
        PLAYS(R"(@factoryMenuWindow ~ factoryLedRow @f_ledTestWindow homeButton :zelMenuWindow ~ []
            !frame_4015_0_0 ^4014_1_0 [4014_0_1,4014_0_2,4014_1_0])");
    }

 private:
    /// Has the terminal be run so that the screen @p title can be had.
    void runFor(const QString& title) {
        const bool meals = title == QLatin1String("foodMenuWindow");
        if (!meals && window()->menuRecord().setup.operation != Operation::Meals)
            return;
        QVERIFY(t->tell(meals ? "settings setup.operation 2" : "settings setup.operation 1"));
        QTRY_VERIFY(t->agrees());
    }
};

QTEST_MAIN(NavigationTest)
#include "navigation_test.moc"
