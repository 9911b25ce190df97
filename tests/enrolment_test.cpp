#include <QPixmapCache>

#include "base/device_paths.h"
#include "link/device_message.h"
#include "sim/controller/user_store.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_test.h"

/// Enrolments, as a finger on the panel and the controller see them.
class EnrolmentTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        word("enrol-pace 0");
        const std::pair<const char*, const char*> phrases[] = {
            {"MENU", ":userMenuWindow userEnrollTile"},
            {"DOOR", ":liveWindow enrollButton NEXT"},
            {"NUMBER", "NEXT NEXT @userEnroll_IDWindow"},
            {"TYPED", "NUMBER #C01055556666 NEXT"},
            {"CARD", "MENU authCardOnlyRow TYPED"},
            {"FACE", "MENU authFaceOnlyRow TYPED @userEnroll_FaceWindow"},
            {"EITHER", "MENU authFaceOrCardRow TYPED"},
            {"TAG", "@userEnroll_cardTagWindow ~ !card_30000001"},
            {"LOOK", "@userEnroll_FaceWindow ~ !enrol-face_good"},
            {"ADD", "?Dialog_AddFaceToCard OK"},
            {"DONE", "?Dialog_RegFaceComplete OK"},
            {"NOBODY", "?Dialog_EnrollNoController CLOSED"},
            {"UNNUMBERED", "!settings_registration.autoId_0"},
            {"CLOSED", "*autoCloseTimer5000"},
            // What is sent.
            {"STARTED", "1933 1921 1923"},
            {"ATDOOR", "2003:1 2011:2 2010 2028 1933 1921"},
            {"CARDED", "1921 1940 1920"},
            {"FACED",
             "2010:1:1 2047:1 2030 1908:06 1922 2046:1 2046:2 2046:3 2046:4 1908:05 1920 2029"},
            {"LEFT", "1933 2010 2011 2010"},
            {"FACELEFT", "LEFT 2047 2028"}};
        for (const auto& [name, steps] : phrases)
            t->phrases[name] = steps;
    }
    void init() {
        QVERIFY(begin());
        words({"users 7", "settings setup.authMethod 2", "settings screen.menuTimeout 2",
               "settings network.useManager 0", "settings registration.on 1",
               "settings registration.authMethod 2", "settings registration.autoId 1",
               "settings registration.wearGlasses 1", "settings registration.syncAutoZone 0",
               "settings registration.retainUserData 0", "settings registration.userLevel 1"});
        QTRY_VERIFY(t->agrees());
        sent();
    }

    void everyWayLeadsToAStoredUser_data() {
        // Steps, frames, method, what the user has: 1 a card, 2 a face.
        table(R"(card | CARD TAG DONE | STARTED CARDED LEFT | 0 | 1
            face | FACE LOOK DONE | STARTED FACED FACELEFT | 1 | 2
            face or card | EITHER TAG ADD LOOK DONE | STARTED CARDED FACED FACELEFT | 2 | 3
            face or card, without a face | EITHER TAG ?Dialog_AddFaceToCard NO DONE
                | STARTED CARDED LEFT | 2 | 1
            face and card | MENU authFaceAndCardRow TYPED TAG ?Info_FaceNeededToPass ADD LOOK DONE
                | STARTED CARDED FACED FACELEFT | 3 | 3
            face and number | MENU authFaceAndIDRow TYPED LOOK DONE | STARTED FACED FACELEFT | 4 | 2
            number changed while it is checked |
                MENU authCardOnlyRow !silent_1923 TYPED #B !frame_2923_0_0 TAG DONE
                | STARTED CARDED LEFT | 0 | 1
            administrator, back and forth | MENU authCardOnlyRow NEXT >levelToggle NEXT
                @userEnroll_IDWindow BACK NEXT @userEnroll_IDWindow #C01055556666 NEXT TAG DONE
                | 1933 1921 1933 1923 CARDED LEFT | 0 | 1
            live view | DOOR TAG ADD LOOK DONE | ATDOOR 2037:2:2 CARDED FACED FACELEFT | 2 | 3
            live view, face | !settings_registration.authMethod_1 DOOR LOOK DONE
                | ATDOOR 2037:1:1 FACED FACELEFT | 1 | 2
            live view, number offered late |
                !settings_registration.authMethod_1 !settings_registration.autoId_0 DOOR
                @userEnroll_FaceWindow !frame_3030_0_0_3031303930303030303031 LOOK DONE
                | ATDOOR 2037:1:1 FACED FACELEFT | 1 | 2
            live view, visitor |
                !settings_registration.userLevel_2 DOOR @InputDestinationForm #a BACK
                @userEnroll_qualWindow NEXT #a NEXT TAG ADD LOOK DONE
                | ATDOOR 1933 2037:2:2 2011 2010 CARDED FACED FACELEFT | 2 | 3)");
    }

    void everyWayLeadsToAStoredUser() {
        const auto [played, frames, method, holds] = values<4>();
        const int has = holds.toInt();
        const bool door = played.contains("DOOR");
        PLAYS(played);
        QCOMPARE(t->title(), QLatin1String(door ? "stayWindow" : "userMenuWindow"));
        QByteArray all = codes();
        if (door)  // the standby screen goes on
            all = all.left(all.indexOf(" 2003 "));
        QCOMPARE(all, t->spelt(frames));
        const _gui_user_ user = stored();
        QCOMPARE(fieldText(user.customerId),
                 QString::fromLatin1(door ? "01090000001" : "01055556666"));
        QCOMPARE(int(user.authMethod), method.toInt());
        QCOMPARE(int(user.cardPresent + 2 * user.facePresent), has);
        const bool visits = frames.contains("2037:2:2 2011");
        QCOMPARE(fieldText(user.destination), QLatin1String(visits ? "a" : ""));
        QCOMPARE(int(user.level), int(visits                            ? UserLevel::Visitor
                                      : played.contains(">levelToggle") ? UserLevel::Administrator
                                                                        : UserLevel::General));
        QCOMPARE(fieldText(user.cardNumber), QLatin1String((has & 1) != 0 ? "30000001" : ""));
        // Whoever has a face is known by it from now on, until they are deleted.
        PLAYS(":liveWindow");
        t->settle();
        const QString look = QStringLiteral("face ") + fieldText(user.userId);
        QCOMPARE(t->tell(look), (has & 2) != 0);
        QVERIFY((has & 2) == 0 || t->shows("recognizeWindow"));
        QVERIFY(t->tell("users 7") && !t->tell(look));
    }

    void outcomes_data() {
        // Steps, the last frames but for the way back, and where it ends if not at the menu.
        table(R"(ten digits |
                MENU authCardOnlyRow NUMBER #C0105555666 NEXT ?Error_EnterEleven OK #6 NEXT
                | 1923 1921 | userEnroll_cardTagWindow
            number in use | MENU authCardOnlyRow NUMBER #C01023456789 NEXT
                ?Dialog_CustomerNumberIsAlreadyRegistered OK #1 | 1923 1908:cb | userEnroll_IDWindow
            number offered | MENU authCardOnlyRow NUMBER NEXT @userEnroll_cardTagWindow BACK
                @userEnroll_IDWindow neutralButton | 1926 2011 2010
            number without answer | !silent_1923 MENU authCardOnlyRow NUMBER NEXT *5000
                ?Error_NoResponse OK NEXT | 1923 1921 | userEnroll_cardTagWindow
            answer for the number before | !silent_1923 MENU authCardOnlyRow NUMBER NEXT *5000
                ?Error_NoResponse OK #B #2 !silent_1923 NEXT !frame_2923_0_0 !frame_2923_1_0
                ?Dialog_CustomerNumberIsAlreadyRegistered OK #1 | 1923 1908:cb | userEnroll_IDWindow
            number of other signs | !settings_registration.autoId_0 MENU authCardOnlyRow NUMBER
                numberEntry= !frame_3030_0_0_d9a030313233343536373839 numberEntry=
                !frame_3030_0_0_3031303535353536363637f1 numberEntry=
                !frame_3030_0_0_3031303535353536363638 numberEntry=01055556668
                !frame_3030_0_0_3031303535353536363637 numberEntry=01055556668
                BACK @userEnroll_qualWindow BACK @userEnrollMenuWindow neutralButton | 1933 2011
            number answered twice | MENU authCardOnlyRow NUMBER !frame_2923_0_0 NEXT
                @userEnroll_cardTagWindow !frame_2923_0_0 | 1923 1921 | userEnroll_cardTagWindow
            number, nobody there | :userMenuWindow !drop userEnrollTile authCardOnlyRow TYPED
                NOBODY |
            card of another | CARD !settings_screen.menuTimeout_0 !card_10000002
                ?Info_CardAlreadyRegistered *autoCloseTimer10000 | 1940 1926 1908:cb
            card not read | CARD !frame_2947_1_0_31 ?Error_CardNotRead OK !card_30000001 DONE
                | 1921 1940 1920 1933 2010
            card of no number | CARD !frame_2947_0_1_3c623e313c2f623e0000000000000000
                ?Error_CardNotRead OK | 1908:cb 1921 | userEnroll_cardTagWindow
            own card | CARD !silent_1940 !card_30000001 ^1940 -backButton !frame_2940_0_0
                !frame_2921_2_0 ?Dialog_IsAlreadyRegisteredCard OK BACK
                | 1940 1908:cb 1921 1926 | userEnroll_IDWindow
            no card | CARD *20000 ?Error_InputTimeout CLOSED | 1926 1908:cb
            too many | UNNUMBERED !refuse_1921_1 CARD ?Error_MaxUsersExcceeded CLOSED
                | 1921 1926 1908:cb
            others enrol | UNNUMBERED !refuse_1921_2 CARD ?Error_EnrollingUsers CLOSED
                | 1921 1926 1908:cb
            card, administrators | UNNUMBERED !refuse_1940_3 CARD !card_30000001
                ?Dialog_RegFaceFailed_UpToAdmin5 CLOSED | 1940 1926 1908:cb
            card, too many | UNNUMBERED !refuse_1940_4 CARD !card_30000001
                ?Error_MaxUsersExcceeded CLOSED | 1940 1926 1908:cb
            card, others enrol | UNNUMBERED !refuse_1920_2 CARD !card_30000001
                ?Error_EnrollingUsers CLOSED | 1920 1926 1908:cb
            card, too many stored | UNNUMBERED !refuse_1920_4 CARD !card_30000001
                ?Error_MaxUsersExcceeded CLOSED | 1920 1926 1908:cb
            card not stored | !silent_1920 CARD !card_30000001 ^1920 *5000 ?Error_NoResponse CLOSED
                | 1920 1926 1908:cb
            card cancelled | CARD @userEnroll_cardTagWindow neutralButton | 1921 1926 2011 2010
            card cancelled, live view | DOOR @userEnroll_cardTagWindow neutralButton
                | 1921 1926 2011 2010 | stayWindow
            face in use | FACE !enrol-face_used ?Dialog_FaceIsAlreadyRegisteredForId OK
                | 2046:1 1908:08
            12 | FACE !enrol-face_12 ?Dialog_RegFaceFailed_12 OK | 2046:2 1908:cb
            13 | FACE !enrol-face_13 ?Dialog_RegFaceFailed_UpToAdmin5 OK | 2046:2 1908:cb
            14 | FACE !enrol-face_14 ?Dialog_RegFaceFailed_14 OK | 2046:2 1908:cb
            15 | FACE !enrol-face_15 ?Dialog_CustomerNumberIsAlreadyRegistered OK | 2046:2 1908:cb
            99 | FACE !enrol-face_99 ?Dialog_RegFaceFailed OK | 2046:2 1908:cb
            stall | FACE !enrol-face_stall ?Info_PleaseRegisterToNoWearingGlasses ring=40 *20000
                ?Dialog_RegFaceFailed CLOSED | 2046:1 2031:1 1908:cb 2011 2010 2047 2028
            stall, live view | !settings_registration.authMethod_1 DOOR @userEnroll_FaceWindow
                !enrol-face_stall ring=40 *20000 ?Dialog_RegFaceFailed CLOSED
                | 2046:1 2031:1 1908:cb 2011 2010 2047 2028 | stayWindow
            slow | FACE !enrol-face_slow ?Info_PleaseTryAgain DONE | 1920 2029 1933 2010
            face, administrators | !refuse_1920_3 FACE !enrol-face_good
                ?Dialog_EnrollUpTo5Admin CLOSED | 1920 2029 1908:cb
            face, too many | !refuse_1920_4 FACE !enrol-face_good
                ?Error_MaxUsersExcceeded CLOSED | 1920 2029 1908:cb
            face not stored | !silent_1920 FACE !enrol-face_good ring=100 *5000
                ?Error_NoResponse CLOSED | 1920 2029 1908:cb
            face cancelled | FACE !enrol-face_stall ring=40 neutralButton
                | 2046:1 2031:1 2011 2010 2047 2028
            face done twice | !silent_1920 FACE !enrol-face_good ring=100 !frame_3001_3_0
                !frame_2920_0_0 !frame_2920_0_0 DONE | 2046:4 1908:05 1920 2029 1933 2010
            the last user | !users_9999 CARD TAG DONE userEnrollTile NEXT NEXT
                ?Error_MaxUsersExcceeded OK | 1908:cb | userEnroll_qualWindow
            registration off | DOOR @userEnroll_cardTagWindow !settings_registration.on_0
                ?Dialog_RegistrationOff OK | 1921 1926 | stayWindow
            1923 | MENU authCardOnlyRow NUMBER !lose-link-at_1923 NEXT NOBODY |
            1921 | MENU authCardOnlyRow NUMBER !lose-link-at_1921 NEXT NOBODY |
            1940 | MENU authCardOnlyRow NUMBER !lose-link-at_1940 NEXT TAG NOBODY |
            1920 | MENU authCardOnlyRow NUMBER !lose-link-at_1920 NEXT TAG NOBODY |
            link, way | MENU !drop NOBODY |
            link, qualification | MENU NEXT @userEnroll_qualWindow !drop NOBODY |
            link, question | EITHER TAG ?Dialog_AddFaceToCard !drop NOBODY |
            link, card again | :userMenuWindow userSearchTile searchIDRow #01066665555 NEXT
                @userSearch_InfoWindow cardRow NEXT @userEnroll_reCardTagWindow !drop NOBODY |
            link, face | FACE !enrol-face_stall ring=40 !drop NOBODY |
            link, destination | !settings_registration.userLevel_2 DOOR @InputDestinationForm
                !drop NOBODY | | stayWindow)");
    }

    void aDestinationIsCountedInBytes() {
        PLAYS("!settings_registration.userLevel_2 DOOR @InputDestinationForm");
        auto* field = t->find<InputField>("destinationField");
        field->setText(QString(11, QChar(0xAC00)));
        PLAYS("NEXT ?Error_DestinationTooLong OK @InputDestinationForm");
        field->setText(QString(10, QChar(0xAC00)) + QStringLiteral("ab"));
        PLAYS("NEXT @userEnroll_cardTagWindow");
    }

    void outcomes() {
        const auto [steps, frames, end] = values<3>();
        const QByteArray played = t->spelt(steps);
        PLAYS(played);
        QVERIFY2(t->shows(end.isEmpty() ? "userMenuWindow" : end.constData()),
                 qPrintable(t->title()));
        const QByteArray all = t->window->linkUp() ? codes() : frames;
        QVERIFY2(all.contains(frames), all.constData());
        const bool stores = (played.endsWith("?Dialog_RegFaceComplete dialogOkButton") &&
                             !played.contains("silent")) ||
                            played.contains("?Dialog_AddFaceToCard");
        QCOMPARE(UserStore(t->root.path("/mnt/data")).users().size(),
                 played.contains("!users_9999") ? 10000 : 7 + int(stores));
    }

    void whoIsThereGetsWhatTheyLack_data() {
        table(R"(face | 01077778888 | 2 | LOOK
            card | 01044447777 | 3 | @userEnroll_reCardTagWindow ~ !card_30000001
            card anew | 01098765432 | 0 | @userEnroll_reCardTagWindow ~ !card_30000001)");
    }

    void whoIsThereGetsWhatTheyLack() {
        const auto [number, choice, played] = values<3>();
        const QString id = QString::fromLatin1(number);
        const int mode = choice.toInt();
        PLAYS(":userMenuWindow !settings_users.all_10000");
        const _gui_user_ before = *UserStore(t->root.path("/mnt/data")).find(id);
        t->window->SetGuiUser(&before);
        t->window->changeWindow(QStringLiteral("userEnroll_qualWindow"), mode);
        PLAYS("NEXT " + played + " DONE @userMenuWindow");
        const _gui_user_ after = *UserStore(t->root.path("/mnt/data")).find(id);
        QCOMPARE(int(after.authMethod), mode);
        QVERIFY(after.facePresent == 1 || mode == 0);
        QVERIFY(after.cardPresent == 1);
        QCOMPARE(fieldText(after.registrationTime), fieldText(before.registrationTime));
        UserStore(t->root.path("/mnt/data")).store(before, true);
    }

    void whomTheServiceSendsItHearsOf() {
        ServiceSim service(0, 0, {QStringLiteral("127.0.0.1"), DevicePaths::restPort()});
        int reported = 0;
        connect(&service, &ServiceSim::called, this,
                [&reported](const QString& name, const QJsonObject& body) {
                    const QJsonObject user =
                        body[QLatin1String("userInfo")][QLatin1String("user")].toObject();
                    reported += name == QLatin1String("user-enroll") &&
                                user[QLatin1String("name")] == QLatin1String("<b>Kim");
                });
        QVERIFY(t->set({{"network.own.managerAddress", QStringLiteral("127.0.0.1")},
                        {"network.own.managerPort", QString::number(service.port())},
                        {"network.connectPeriod", QStringLiteral("1")},
                        {"network.useManager", QStringLiteral("1")}}));
        QTRY_VERIFY(t->window->serviceReached());
        // An order takes the place of what goes on, whatever that is.
        PLAYS("FACE !enrol-face_stall ring=40");
        sent();
        QCOMPARE(service.execute(QStringLiteral("enrol 12345678 <b>Kim")),
                 QStringLiteral("ok 1000 succeed"));
        QVERIFY(t->shows("userEnroll_qualWindow"));
        // Those who wait to be reported are all the while.
        QCOMPARE(codes().replace(" 2042", ""),
                 QByteArray("2003:1 2011:2 2010 2028 2031:1 2047 2028 1933 1921"));
        // Registration mode has nothing to do with it.
        PLAYS("!settings_registration.on_0 NEXT @userEnroll_cardTagWindow");
        QVERIFY(codes().replace(" 2042", "").contains("2037:2:2 1921"));
        PLAYS("TAG ADD LOOK DONE @stayWindow");
        QTRY_COMPARE(reported, 2);
        QVERIFY(t->sends("2042 0 0 31 32 33 34 35 36 37 38 00"));
        QCOMPARE(int(stored().origin), int(UserOrigin::Kiosk));
    }

    void manyInARowLeaveNothingBehind() {
        const QByteArray one = t->spelt("CARD TAG DONE");
        int objects = 0;
        for (int i = 0; i < 20; ++i) {
            PLAYS(QByteArray(one)
                      .replace("30000001", QByteArray::number(40000000 + i))
                      .replace("01055556666", QByteArray::number(qlonglong{10000000000} + i)));
            const int now = t->window->findChildren<QObject*>().size();
            QVERIFY(i < 2 || now == objects);
            objects = now;
        }
        QCOMPARE(UserStore(t->root.path("/mnt/data")).users().size(), 27);
        // Nor does a screen that is not up hold pictures.
        QPixmap picture;
        QVERIFY(QPixmapCache::find(QStringLiteral("/usr/img/card_hold_1.png"), &picture));
        QPixmapCache::clear();
        QVERIFY(picture.isDetached());
    }

 private:
    _gui_user_ stored() { return UserStore(t->root.path("/mnt/data")).users().last(); }
    /// What the terminal has sent since this was last asked: codes with the parameters and sounds
    /// that are not 0.
    QByteArray codes() {
        QStringList all;
        for (const QString& frame : sent()) {
            QStringList parts = frame.split(QLatin1Char(' '));
            parts = parts[0] == QLatin1String("1908") ? QStringList{parts[0], parts[3]}
                                                      : parts.mid(0, 3);
            while (parts.last() == QLatin1String("0"))
                parts.removeLast();
            all.append(parts.join(QLatin1Char(':')));
        }
        return all.join(QLatin1Char(' ')).toLatin1();
    }
};

QTEST_MAIN(EnrolmentTest)
#include "enrolment_test.moc"
