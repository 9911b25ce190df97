#include <QPixmapCache>

#include "base/device_paths.h"
#include "link/device_message.h"
#include "sim/controller/user_store.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_test.h"

namespace {

// What is done and seen, in the steps of a driven terminal.
const char kQualified[] = ":userMenuWindow userEnrollTile WAY forwardButton forwardButton ";
const char kNumbered[] = "@userEnroll_IDWindow #C01055556666 forwardButton ";
const char kTag[] = "@userEnroll_cardTagWindow ~ !card_30000001 ";
const char kLook[] = "@userEnroll_FaceWindow ~ !enrol-face_good ";
const char kAdd[] = "?Dialog_AddFaceToCard dialogOkButton ";
const char kDone[] = "?Dialog_RegFaceComplete dialogOkButton ";

const char kBegin[] = "1933 1921 1923 ";
const char kDoor[] = "2003:1 2011:2 2010 2028 1933 1921 ";
const char kCard[] = "1921 1940 1920 ";
const char kFace[] =
    "2010:1:1 2047:1 2030 1908:06 1922 2046:1 2046:2 2046:3 2046:4 1908:05 1920 2029 ";
const char kCardEnd[] = "1933 2010 2011 2010";
const char kFaceEnd[] = "1933 2010 2011 2010 2047 2028";

QByteArray steps(std::initializer_list<const char*> parts, const char* way = "") {
    QByteArray all;
    for (const char* part : parts)
        all += part;
    return all.replace("WAY", way).trimmed();
}

}  // namespace

/// Enrolments, as a finger on the panel and the controller see them.
class EnrolmentTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        words({"settings setup.language 1", "enrol-pace 0"});
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
        QTest::addColumn<QByteArray>("played");
        QTest::addColumn<QByteArray>("frames");
        QTest::addColumn<int>("method");
        QTest::addColumn<int>("has");  // 1 a card, 2 a face
        const auto row = [](const char* name, const QByteArray& played, const QByteArray& frames,
                            int method,
                            int has) { QTest::newRow(name) << played << frames << method << has; };
        const char* const either = "authFaceOrCardRow";
        const char* const both = "authFaceAndCardRow";
        row("card", steps({kQualified, kNumbered, kTag, kDone}, "authCardOnlyRow"),
            steps({kBegin, kCard, kCardEnd}), 0, 1);
        row("face", steps({kQualified, kNumbered, kLook, kDone}, "authFaceOnlyRow"),
            steps({kBegin, kFace, kFaceEnd}), 1, 2);
        row("face or card", steps({kQualified, kNumbered, kTag, kAdd, kLook, kDone}, either),
            steps({kBegin, kCard, kFace, kFaceEnd}), 2, 3);
        row("face or card, without a face",
            steps({kQualified, kNumbered, kTag, "?Dialog_AddFaceToCard dialogCancelButton ", kDone},
                  either),
            steps({kBegin, kCard, kCardEnd}), 2, 1);
        row("face and card",
            steps({kQualified, kNumbered, kTag, "?Info_FaceNeededToPass ", kAdd, kLook, kDone},
                  both),
            steps({kBegin, kCard, kFace, kFaceEnd}), 3, 3);
        row("face and number", steps({kQualified, kNumbered, kLook, kDone}, "authFaceAndIDRow"),
            steps({kBegin, kFace, kFaceEnd}), 4, 2);
        row("number changed while it is checked",
            steps({kQualified, "!silent_1923 ", kNumbered, "#B !frame_2923_0_0 ", kTag, kDone},
                  "authCardOnlyRow"),
            steps({kBegin, kCard, kCardEnd}), 0, 1);
        row("administrator, back and forth",
            steps({":userMenuWindow userEnrollTile WAY forwardButton >levelToggle forwardButton "
                   "@userEnroll_IDWindow backButton forwardButton ",
                   kNumbered, kTag, kDone},
                  "authCardOnlyRow"),
            steps({"1933 1921 1933 1923 ", kCard, kCardEnd}), 0, 1);
        row("live view",
            steps({":liveWindow enrollButton forwardButton ", kTag, kAdd, kLook, kDone}),
            steps({kDoor, "2037:2:2 ", kCard, kFace, kFaceEnd}), 2, 3);
        row("live view, face",
            steps({"!settings_registration.authMethod_1 :liveWindow enrollButton forwardButton ",
                   kLook, kDone}),
            steps({kDoor, "2037:1:1 ", kFace, kFaceEnd}), 1, 2);
        row("live view, number offered late",
            steps({"!settings_registration.authMethod_1 !settings_registration.autoId_0 "
                   ":liveWindow enrollButton "
                   "forwardButton @userEnroll_FaceWindow "
                   "!frame_3030_0_0_3031303930303030303031 ",
                   kLook, kDone}),
            steps({kDoor, "2037:1:1 ", kFace, kFaceEnd}), 1, 2);
        row("live view, visitor",
            steps({"!settings_registration.userLevel_2 :liveWindow enrollButton forwardButton "
                   "@InputDestinationForm "
                   "key_a backButton @userEnroll_qualWindow forwardButton key_a "
                   "forwardButton ",
                   kTag, kAdd, kLook, kDone}),
            steps({kDoor, "1933 2037:2:2 2011 2010 ", kCard, kFace, kFaceEnd}), 2, 3);
    }

    void everyWayLeadsToAStoredUser() {
        QFETCH(QByteArray, played);
        QFETCH(QByteArray, frames);
        QFETCH(int, method);
        QFETCH(int, has);
        const bool door = played.contains(":liveWindow enrollButton");
        PLAYS(played);
        QCOMPARE(t->title(), QLatin1String(door ? "stayWindow" : "userMenuWindow"));
        QByteArray all = codes();
        if (door)  // the standby screen goes on
            all = all.left(all.indexOf(" 2003 "));
        QCOMPARE(all, frames);
        const _gui_user_ user = stored();
        QCOMPARE(fieldText(user.customerId),
                 QString::fromLatin1(door ? "01090000001" : "01055556666"));
        QCOMPARE(int(user.authMethod), method);
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
        QTest::addColumn<QByteArray>("played");
        QTest::addColumn<QByteArray>("frames");  // last ones but for the way back
        QTest::addColumn<QByteArray>("end");
        const auto row = [](const char* name, const QByteArray& played, const char* frames,
                            const char* end = "userMenuWindow") {
            QTest::newRow(name) << played << QByteArray(frames) << QByteArray(end);
        };
        const QByteArray number = steps({kQualified}, "authCardOnlyRow") + " @userEnroll_IDWindow ";
        const QByteArray card = steps({kQualified, kNumbered}, "authCardOnlyRow") + " ";
        const QByteArray face =
            steps({kQualified, kNumbered}, "authFaceOnlyRow") + " @userEnroll_FaceWindow ";
        const QByteArray ok = " dialogOkButton";
        const auto says = [&ok](const char* key) { return QByteArray(" ?") + key + ok; };
        const auto ends = [](const char* key) {
            return QByteArray(" ?") + key + " *autoCloseTimer5000";
        };

        row("ten digits",
            number + "#C0105555666 forwardButton" + says("Error_EnterEleven") + " #6 forwardButton",
            "1923 1921", "userEnroll_cardTagWindow");
        row("number in use",
            number + "#C01023456789 forwardButton" +
                says("Dialog_CustomerNumberIsAlreadyRegistered") + " #1",
            "1923 1908:cb", "userEnroll_IDWindow");
        row("number offered",
            number +
                "forwardButton @userEnroll_cardTagWindow backButton"
                " @userEnroll_IDWindow neutralButton",
            "1926 2011 2010");
        row("number without answer",
            "!silent_1923 " + number + "forwardButton *5000" + says("Error_NoResponse") +
                " forwardButton",
            "1923 1921", "userEnroll_cardTagWindow");
        row("number of other signs",
            "!settings_registration.autoId_0 " + number +
                "numberEntry= !frame_3030_0_0_d9a030313233343536373839 numberEntry= "
                "!frame_3030_0_0_3031303535353536363637f1 "
                "numberEntry= !frame_3030_0_0_3031303535353536363638 numberEntry=01055556668 "
                "!frame_3030_0_0_3031303535353536363637 numberEntry=01055556668 backButton "
                "@userEnroll_qualWindow backButton @userEnrollMenuWindow neutralButton",
            "1933 2011");
        row("number answered twice",
            number +
                "!frame_2923_0_0 forwardButton "
                "@userEnroll_cardTagWindow !frame_2923_0_0",
            "1923 1921", "userEnroll_cardTagWindow");

        row("number, nobody there",
            ":userMenuWindow !drop userEnrollTile authCardOnlyRow forwardButton forwardButton "
            "@userEnroll_IDWindow #C01055556666 forwardButton" +
                ends("Dialog_EnrollNoController"),
            "");

        row("card of another",
            card +
                "!settings_screen.menuTimeout_0 !card_10000002 ?Info_CardAlreadyRegistered "
                "*autoCloseTimer10000",
            "1940 1926 1908:cb");
        row("card not read",
            card + "!frame_2947_1_0_31" + says("Error_CardNotRead") +
                " !card_30000001 ?Dialog_RegFaceComplete" + ok,
            "1921 1940 1920 1933 2010");
        row("card of no number",
            card + "!frame_2947_0_1_3c623e313c2f623e0000000000000000" + says("Error_CardNotRead"),
            "1908:cb 1921", "userEnroll_cardTagWindow");
        row("own card",
            card + "!silent_1940 !card_30000001 ^1940 -backButton !frame_2940_0_0 !frame_2921_2_0" +
                says("Dialog_IsAlreadyRegisteredCard") + " backButton",
            "1940 1908:cb 1921 1926", "userEnroll_IDWindow");
        row("no card", card + "*20000" + ends("Error_InputTimeout"), "1926 1908:cb");
        for (const auto& [refusal, key] : {std::pair("1921_1", "Error_MaxUsersExcceeded"),
                                           std::pair("1921_2", "Error_EnrollingUsers"),
                                           std::pair("1940_3", "Dialog_RegFaceFailed_UpToAdmin5"),
                                           std::pair("1940_4", "Error_MaxUsersExcceeded"),
                                           std::pair("1920_2", "Error_EnrollingUsers"),
                                           std::pair("1920_4", "Error_MaxUsersExcceeded")}) {
            const QByteArray code = QByteArray(refusal).left(4);
            row(refusal,
                QByteArray("!settings_registration.autoId_0 !refuse_") + refusal + ' ' + card +
                    (code == "1921" ? "" : "!card_30000001") + ends(key),
                (code + " 1926 1908:cb").constData());
        }
        row("card not stored",
            "!silent_1920 " + card + "!card_30000001 ^1920 *5000" + ends("Error_NoResponse"),
            "1920 1926 1908:cb");
        row("card cancelled", card + "@userEnroll_cardTagWindow neutralButton",
            "1921 1926 2011 2010");
        row("card cancelled, live view",
            ":liveWindow enrollButton forwardButton @userEnroll_cardTagWindow neutralButton",
            "1921 1926 2011 2010", "stayWindow");

        row("face in use", face + "!enrol-face_used" + says("Dialog_FaceIsAlreadyRegisteredForId"),
            "2046:1 1908:08");
        for (const auto& [result, key] :
             {std::pair("12", "Dialog_RegFaceFailed_12"),
              std::pair("13", "Dialog_RegFaceFailed_UpToAdmin5"),
              std::pair("14", "Dialog_RegFaceFailed_14"),
              std::pair("15", "Dialog_CustomerNumberIsAlreadyRegistered"),
              std::pair("99", "Dialog_RegFaceFailed")})
            row(result, face + QByteArray("!enrol-face_") + result + says(key), "2046:2 1908:cb");
        row("stall",
            face +
                "!enrol-face_stall ?Info_PleaseRegisterToNoWearingGlasses "
                "ring=40 *20000" +
                ends("Dialog_RegFaceFailed"),
            "2046:1 2031:1 1908:cb 2011 2010 2047 2028");
        row("stall, live view",
            "!settings_registration.authMethod_1 :liveWindow enrollButton forwardButton "
            "@userEnroll_FaceWindow "
            "!enrol-face_stall ring=40 *20000" +
                ends("Dialog_RegFaceFailed"),
            "2046:1 2031:1 1908:cb 2011 2010 2047 2028", "stayWindow");
        row("slow", face + "!enrol-face_slow ?Info_PleaseTryAgain ?Dialog_RegFaceComplete" + ok,
            "1920 2029 1933 2010");
        for (const auto& [refusal, key] : {std::pair("1920_3", "Dialog_EnrollUpTo5Admin"),
                                           std::pair("1920_4", "Error_MaxUsersExcceeded")})
            row((QByteArray("face, ") + refusal).constData(),
                QByteArray("!refuse_") + refusal + ' ' + face + "!enrol-face_good" + ends(key),
                "1920 2029 1908:cb");
        row("face not stored",
            "!silent_1920 " + face + "!enrol-face_good ring=100 *5000" + ends("Error_NoResponse"),
            "1920 2029 1908:cb");
        row("face cancelled", face + "!enrol-face_stall ring=40 neutralButton",
            "2046:1 2031:1 2011 2010 2047 2028");
        row("face done twice",
            face +
                "!silent_1920 !enrol-face_good ring=100 !frame_3001_3_0 "
                "!frame_2920_0_0 !frame_2920_0_0 ?Dialog_RegFaceComplete" +
                ok,
            "2046:4 1908:05 1920 2029 1933 2010");

        row("the last user",
            "!users_9999 " + steps({kQualified, kNumbered, kTag, kDone}, "authCardOnlyRow") +
                " userEnrollTile forwardButton forwardButton" + says("Error_MaxUsersExcceeded"),
            "1908:cb", "userEnroll_qualWindow");
        row("registration off",
            QByteArray(":liveWindow enrollButton forwardButton @userEnroll_cardTagWindow "
                       "!settings_registration.on_0") +
                says("Dialog_RegistrationOff"),
            "1921 1926", "stayWindow");
        const QByteArray tag = " @userEnroll_cardTagWindow !card_30000001";
        for (const auto& [lost, further] :
             {std::pair("1923", QByteArray()), std::pair("1921", QByteArray()),
              std::pair("1940", tag), std::pair("1920", tag)})
            row(lost,
                number + "!lose-link-at_" + lost + " forwardButton" + further +
                    ends("Dialog_EnrollNoController"),
                "");
        for (const auto& [at, way] :
             {std::pair("link, way", QByteArray(":userMenuWindow userEnrollTile")),
              std::pair("link, qualification",
                        QByteArray(
                            ":userMenuWindow userEnrollTile forwardButton @userEnroll_qualWindow")),
              std::pair("link, question",
                        steps({kQualified, kNumbered, kTag, "?Dialog_AddFaceToCard"},
                              "authFaceOrCardRow")),
              std::pair("link, card again",
                        QByteArray(
                            ":userMenuWindow userSearchTile searchIDRow #01066665555 forwardButton "
                            "@userSearch_InfoWindow cardRow forwardButton "
                            "@userEnroll_reCardTagWindow")),
              std::pair("link, face", face + "!enrol-face_stall ring=40")})
            row(at, way + " !drop" + ends("Dialog_EnrollNoController"), "");
        row("link, destination",
            "!settings_registration.userLevel_2 :liveWindow enrollButton forwardButton "
            "@InputDestinationForm !drop" +
                ends("Dialog_EnrollNoController"),
            "", "stayWindow");
    }

    void whoIsThereGetsWhatTheyLack_data() {
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("played");
        const QByteArray again = steps({kTag}).replace("cardTag", "reCardTag");
        QTest::newRow("face") << QStringLiteral("01077778888") << 2 << steps({kLook});
        QTest::newRow("card") << QStringLiteral("01044447777") << 3 << again;
        QTest::newRow("card anew") << QStringLiteral("01098765432") << 0 << again;
    }

    void whoIsThereGetsWhatTheyLack() {
        QFETCH(QString, id);
        QFETCH(int, mode);
        QFETCH(QByteArray, played);
        PLAYS(":userMenuWindow !settings_users.all_10000");
        const _gui_user_ before = *UserStore(t->root.path("/mnt/data")).find(id);
        t->window->SetGuiUser(&before);
        t->window->changeWindow(QStringLiteral("userEnroll_qualWindow"), mode);
        PLAYS("forwardButton " + played + ' ' + kDone + "@userMenuWindow");
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
        PLAYS(steps({kQualified, kNumbered}, "authFaceOnlyRow") +
              " @userEnroll_FaceWindow !enrol-face_stall ring=40");
        sent();
        QCOMPARE(service.execute(QStringLiteral("enrol 12345678 <b>Kim")),
                 QStringLiteral("ok 1000 succeed"));
        QVERIFY(t->shows("userEnroll_qualWindow"));
        QCOMPARE(codes(), steps({"2003:1 2011:2 2010 2028 2031:1 2047 2028 1933 1921"}));
        // Registration mode has nothing to do with it.
        PLAYS("!settings_registration.on_0 forwardButton @userEnroll_cardTagWindow");
        // Those who wait to be reported are all the while.
        QVERIFY(codes().replace(" 2042", "").contains("2037:2:2 1921"));
        PLAYS(steps({kTag, kAdd, kLook}) + ' ' + kDone + "@stayWindow");
        QTRY_COMPARE(reported, 2);
        QVERIFY(t->sends("2042 0 0 31 32 33 34 35 36 37 38 00"));
        QCOMPARE(int(stored().origin), int(UserOrigin::Kiosk));
    }

    void manyInARowLeaveNothingBehind() {
        const QByteArray one = steps({kQualified, kNumbered, kTag, kDone}, "authCardOnlyRow");
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

    void outcomes() {
        QFETCH(QByteArray, played);
        QFETCH(QByteArray, frames);
        QFETCH(QByteArray, end);
        PLAYS(played);
        QVERIFY2(t->shows(end.constData()), qPrintable(t->title()));
        const QByteArray all = t->window->linkUp() ? codes() : frames;
        QVERIFY2(all.contains(frames), all.constData());
        const bool stores = (played.endsWith("?Dialog_RegFaceComplete dialogOkButton") &&
                             !played.contains("silent")) ||
                            played.contains("?Dialog_AddFaceToCard");
        QCOMPARE(UserStore(t->root.path("/mnt/data")).users().size(),
                 played.contains("!users_9999") ? 10000 : 7 + int(stores));
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
