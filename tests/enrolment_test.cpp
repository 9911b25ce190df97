#include <QPixmapCache>

#include "app/menu_timer.h"
#include "base/device_paths.h"
#include "link/device_link.h"
#include "link/device_message.h"
#include "screens/users/enrol_ring.h"
#include "sim/controller/user_store.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_terminal.h"

namespace {

// What is done and seen: ">name" touches, "#digits" types, "!words" are the controller's (with "_"
// for a blank), "@title" waits for a screen, "?key" for what is said, "^code" for a frame, "%n" for
// so many percent, "=number" for what is entered, "|name" for what is not to be seen; "<name"
// touches at the right end, "-" takes the controller away, "~" says that no menu times out. "*ms"
// lets the time of what is waited for run out, "&s" that of a popup, which no menu may forestall.
const char kQualified[] = "MENU >userEnrollTile >WAY >forwardButton >forwardButton ";
const char kNumbered[] = "@userEnroll_IDWindow >key_clear #01055556666 >forwardButton ";
const char kTag[] = "@userEnroll_cardTagWindow ~ !card_30000001 ";
const char kLook[] = "@userEnroll_FaceWindow ~ !enrol-face_good ";
const char kAdd[] = "?Dialog_AddFaceToCard >dialogOkButton ";
const char kDone[] = "?Dialog_RegFaceComplete >dialogOkButton ";

const char kBegin[] = "1933 1921 1923 ";
const char kDoor[] = "2003:1 2011:2 2010 2028 1933 1921 ";
const char kCard[] = "1921 1940 1920 ";
const char kFace[] =
    "2010:1:1 2047:1 2030 1908:6 1922 2046:1 2046:2 2046:3 2046:4 1908:5 1920 2029 ";
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
class EnrolmentTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        t.root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t.tell("settings setup.language 1") && t.tell("enrol-pace 0"));
        QVERIFY(t.start());
    }
    void init() {
        if (!t.window->linkUp())  // rather than wait for the next attempt
            t.window->findChild<DeviceLink*>()->open(DevicePaths::linkPort());
        QTRY_VERIFY(t.window->linkUp());
        DialogOverlay::closeAll(t.window.get());
        t.window->changeWindow(QStringLiteral("stayWindow"));
        QVERIFY(t.tell("normal") && t.tell("users 7"));
        QVERIFY(t.tell("settings setup.authMethod 2") && t.tell("settings screen.menuTimeout 2"));
        QVERIFY(t.tell("settings network.useManager 0"));
        register_({1, 2, 1, 1, 0, 0, 1});
        sent();
    }
    void cleanupTestCase() { t.window.reset(); }

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
            steps(
                {kQualified, kNumbered, kTag, "?Dialog_AddFaceToCard >dialogCancelButton ", kDone},
                either),
            steps({kBegin, kCard, kCardEnd}), 2, 1);
        row("face and card",
            steps({kQualified, kNumbered, kTag, "?Info_FaceNeededToPass ", kAdd, kLook, kDone},
                  both),
            steps({kBegin, kCard, kFace, kFaceEnd}), 3, 3);
        row("face and number", steps({kQualified, kNumbered, kLook, kDone}, "authFaceAndIDRow"),
            steps({kBegin, kFace, kFaceEnd}), 4, 2);
        row("number changed while it is checked",
            steps({kQualified, "!silent_1923 ", kNumbered, ">key_backspace !frame_2923_0_0 ", kTag,
                   kDone},
                  "authCardOnlyRow"),
            steps({kBegin, kCard, kCardEnd}), 0, 1);
        row("administrator, back and forth",
            steps({"MENU >userEnrollTile >WAY >forwardButton <levelToggle >forwardButton "
                   "@userEnroll_IDWindow >backButton >forwardButton ",
                   kNumbered, kTag, kDone},
                  "authCardOnlyRow"),
            steps({"1933 1921 1933 1923 ", kCard, kCardEnd}), 0, 1);
        row("live view", steps({"LIVE >forwardButton ", kTag, kAdd, kLook, kDone}),
            steps({kDoor, "2037:2:2 ", kCard, kFace, kFaceEnd}), 2, 3);
        row("live view, face",
            steps({"!settings_registration.authMethod_1 LIVE >forwardButton ", kLook, kDone}),
            steps({kDoor, "2037:1:1 ", kFace, kFaceEnd}), 1, 2);
        row("live view, number offered late",
            steps({"!settings_registration.authMethod_1 !settings_registration.autoId_0 LIVE "
                   ">forwardButton @userEnroll_FaceWindow "
                   "!frame_3030_0_0_3031303930303030303031 ",
                   kLook, kDone}),
            steps({kDoor, "2037:1:1 ", kFace, kFaceEnd}), 1, 2);
        row("live view, visitor",
            steps({"!settings_registration.userLevel_2 LIVE >forwardButton @InputDestinationForm "
                   ">key_a >backButton @userEnroll_qualWindow >forwardButton >key_a "
                   ">forwardButton ",
                   kTag, kAdd, kLook, kDone}),
            steps({kDoor, "1933 2037:2:2 2011 2010 ", kCard, kFace, kFaceEnd}), 2, 3);
    }

    void everyWayLeadsToAStoredUser() {
        QFETCH(QByteArray, played);
        QFETCH(QByteArray, frames);
        QFETCH(int, method);
        QFETCH(int, has);
        const bool door = played.contains("LIVE");
        QVERIFY(play(played));
        QCOMPARE(t.title(), QLatin1String(door ? "stayWindow" : "userMenuWindow"));
        QByteArray all = sent();
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
                                      : played.contains("<levelToggle") ? UserLevel::Administrator
                                                                        : UserLevel::General));
        QCOMPARE(fieldText(user.cardNumber), QLatin1String((has & 1) != 0 ? "30000001" : ""));
        // Whoever has a face is known by it from now on, until they are deleted.
        QVERIFY(play("DOOR"));
        t.settle();
        const QString look = QStringLiteral("face ") + fieldText(user.userId);
        QCOMPARE(t.tell(look), (has & 2) != 0);
        QVERIFY((has & 2) == 0 || t.shows("recognizeWindow"));
        QVERIFY(t.tell("users 7") && !t.tell(look));
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
        const QByteArray ok = " >dialogOkButton";
        const auto says = [&ok](const char* key) { return QByteArray(" ?") + key + ok; };
        const auto ends = [](const char* key) { return QByteArray(" ?") + key + " &5"; };

        row("ten digits",
            number + ">key_clear #0105555666 >forwardButton" + says("Error_EnterEleven") +
                " #6 >forwardButton",
            "1923 1921", "userEnroll_cardTagWindow");
        row("number in use",
            number + ">key_clear #01023456789 >forwardButton" +
                says("Dialog_CustomerNumberIsAlreadyRegistered") + " #1",
            "1923 1908:203", "userEnroll_IDWindow");
        row("number offered",
            number +
                ">forwardButton @userEnroll_cardTagWindow >backButton"
                " @userEnroll_IDWindow >neutralButton",
            "1926 2011 2010");
        row("number without answer",
            "!silent_1923 " + number + ">forwardButton *5000" + says("Error_NoResponse") +
                " >forwardButton",
            "1923 1921", "userEnroll_cardTagWindow");
        row("number of other signs",
            "!settings_registration.autoId_0 " + number +
                "= !frame_3030_0_0_d9a030313233343536373839 = "
                "!frame_3030_0_0_3031303535353536363637f1 "
                "= !frame_3030_0_0_3031303535353536363638 =01055556668 "
                "!frame_3030_0_0_3031303535353536363637 =01055556668 >backButton "
                "@userEnroll_qualWindow >backButton @userEnrollMenuWindow >neutralButton",
            "1933 2011");
        row("number answered twice",
            number +
                "!frame_2923_0_0 >forwardButton "
                "@userEnroll_cardTagWindow !frame_2923_0_0",
            "1923 1921", "userEnroll_cardTagWindow");

        row("number, nobody there",
            "MENU - >userEnrollTile >authCardOnlyRow >forwardButton >forwardButton "
            "@userEnroll_IDWindow >key_clear #01055556666 >forwardButton" +
                ends("Dialog_EnrollNoController"),
            "");

        row("card of another",
            card + "!settings_screen.menuTimeout_0 !card_10000002 ?Info_CardAlreadyRegistered &10",
            "1940 1926 1908:203");
        row("card not read",
            card + "!frame_2947_1_0_31" + says("Error_CardNotRead") +
                " !card_30000001 ?Dialog_RegFaceComplete" + ok,
            "1921 1940 1920 1933 2010");
        row("card of no number",
            card + "!frame_2947_0_1_3c623e313c2f623e0000000000000000" + says("Error_CardNotRead"),
            "1908:203 1921", "userEnroll_cardTagWindow");
        row("own card",
            card + "!silent_1940 !card_30000001 ^1940 |backButton !frame_2940_0_0 !frame_2921_2_0" +
                says("Dialog_IsAlreadyRegisteredCard") + " >backButton",
            "1940 1908:203 1921 1926", "userEnroll_IDWindow");
        row("no card", card + "*20000" + ends("Error_InputTimeout"), "1926 1908:203");
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
                (code + " 1926 1908:203").constData());
        }
        row("card not stored",
            "!silent_1920 " + card + "!card_30000001 ^1920 *5000" + ends("Error_NoResponse"),
            "1920 1926 1908:203");
        row("card cancelled", card + "@userEnroll_cardTagWindow >neutralButton",
            "1921 1926 2011 2010");
        row("card cancelled, live view",
            "LIVE >forwardButton @userEnroll_cardTagWindow >neutralButton", "1921 1926 2011 2010",
            "stayWindow");

        row("face in use", face + "!enrol-face_used" + says("Dialog_FaceIsAlreadyRegisteredForId"),
            "2046:1 1908:8");
        for (const auto& [result, key] :
             {std::pair("12", "Dialog_RegFaceFailed_12"),
              std::pair("13", "Dialog_RegFaceFailed_UpToAdmin5"),
              std::pair("14", "Dialog_RegFaceFailed_14"),
              std::pair("15", "Dialog_CustomerNumberIsAlreadyRegistered"),
              std::pair("99", "Dialog_RegFaceFailed")})
            row(result, face + QByteArray("!enrol-face_") + result + says(key), "2046:2 1908:203");
        row("stall",
            face +
                "!enrol-face_stall ?Info_PleaseRegisterToNoWearingGlasses "
                "%40 *20000" +
                ends("Dialog_RegFaceFailed"),
            "2046:1 2031:1 1908:203 2011 2010 2047 2028");
        row("stall, live view",
            "!settings_registration.authMethod_1 LIVE >forwardButton @userEnroll_FaceWindow "
            "!enrol-face_stall %40 *20000" +
                ends("Dialog_RegFaceFailed"),
            "2046:1 2031:1 1908:203 2011 2010 2047 2028", "stayWindow");
        row("slow", face + "!enrol-face_slow ?Info_PleaseTryAgain ?Dialog_RegFaceComplete" + ok,
            "1920 2029 1933 2010");
        for (const auto& [refusal, key] : {std::pair("1920_3", "Dialog_EnrollUpTo5Admin"),
                                           std::pair("1920_4", "Error_MaxUsersExcceeded")})
            row((QByteArray("face, ") + refusal).constData(),
                QByteArray("!refuse_") + refusal + ' ' + face + "!enrol-face_good" + ends(key),
                "1920 2029 1908:203");
        row("face not stored",
            "!silent_1920 " + face + "!enrol-face_good %100 *5000" + ends("Error_NoResponse"),
            "1920 2029 1908:203");
        row("face cancelled", face + "!enrol-face_stall %40 >neutralButton",
            "2046:1 2031:1 2011 2010 2047 2028");
        row("face done twice",
            face +
                "!silent_1920 !enrol-face_good %100 !frame_3001_3_0 "
                "!frame_2920_0_0 !frame_2920_0_0 ?Dialog_RegFaceComplete" +
                ok,
            "2046:4 1908:5 1920 2029 1933 2010");

        row("the last user",
            "!users_9999 " + steps({kQualified, kNumbered, kTag, kDone}, "authCardOnlyRow") +
                " >userEnrollTile >forwardButton >forwardButton" + says("Error_MaxUsersExcceeded"),
            "1908:203", "userEnroll_qualWindow");
        row("registration off",
            QByteArray("LIVE >forwardButton @userEnroll_cardTagWindow "
                       "!settings_registration.on_0") +
                says("Dialog_RegistrationOff"),
            "1921 1926", "stayWindow");
        const QByteArray tag = " @userEnroll_cardTagWindow !card_30000001";
        for (const auto& [lost, further] :
             {std::pair("1923", QByteArray()), std::pair("1921", QByteArray()),
              std::pair("1940", tag), std::pair("1920", tag)})
            row(lost,
                number + "!lose-link-at_" + lost + " >forwardButton" + further +
                    ends("Dialog_EnrollNoController"),
                "");
        for (const auto& [at, way] :
             {std::pair("link, way", QByteArray("MENU >userEnrollTile")),
              std::pair("link, qualification",
                        QByteArray("MENU >userEnrollTile >forwardButton @userEnroll_qualWindow")),
              std::pair("link, question",
                        steps({kQualified, kNumbered, kTag, "?Dialog_AddFaceToCard"},
                              "authFaceOrCardRow")),
              std::pair("link, card again",
                        QByteArray("MENU >userSearchTile >searchIDRow #01066665555 >forwardButton "
                                   "@userSearch_InfoWindow >cardRow >forwardButton "
                                   "@userEnroll_reCardTagWindow")),
              std::pair("link, face", face + "!enrol-face_stall %40")})
            row(at, way + " !drop" + ends("Dialog_EnrollNoController"), "");
        row("link, destination",
            "!settings_registration.userLevel_2 LIVE >forwardButton @InputDestinationForm !drop" +
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
        QVERIFY(play("MENU !settings_users.all_10000"));
        const _gui_user_ before = *UserStore(t.root.path("/mnt/data")).find(id);
        t.window->SetGuiUser(&before);
        t.window->changeWindow(QStringLiteral("userEnroll_qualWindow"), mode);
        QVERIFY(play(">forwardButton " + played + ' ' + kDone + "@userMenuWindow"));
        const _gui_user_ after = *UserStore(t.root.path("/mnt/data")).find(id);
        QCOMPARE(int(after.authMethod), mode);
        QVERIFY(after.facePresent == 1 || mode == 0);
        QVERIFY(after.cardPresent == 1);
        QCOMPARE(fieldText(after.registrationTime), fieldText(before.registrationTime));
        UserStore(t.root.path("/mnt/data")).store(before, true);
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
        QVERIFY(t.set({{"network.own.managerAddress", QStringLiteral("127.0.0.1")},
                       {"network.own.managerPort", QString::number(service.port())},
                       {"network.connectPeriod", QStringLiteral("1")},
                       {"network.useManager", QStringLiteral("1")}}));
        QTRY_VERIFY(t.window->serviceReached());
        // An order takes the place of what goes on, whatever that is.
        QVERIFY(play(steps({kQualified, kNumbered}, "authFaceOnlyRow") +
                     " @userEnroll_FaceWindow !enrol-face_stall %40"));
        sent();
        QCOMPARE(service.execute(QStringLiteral("enrol 12345678 <b>Kim")),
                 QStringLiteral("ok 1000 succeed"));
        QVERIFY(t.shows("userEnroll_qualWindow"));
        QCOMPARE(sent(), steps({"2003:1 2011:2 2010 2028 2031:1 2047 2028 1933 1921"}));
        // Registration mode has nothing to do with it.
        QVERIFY(play("!settings_registration.on_0 >forwardButton @userEnroll_cardTagWindow"));
        // Those who wait to be reported are all the while.
        QVERIFY(sent().replace(" 2042", "").contains("2037:2:2 1921"));
        QVERIFY(play(steps({kTag, kAdd, kLook}) + ' ' + kDone + "@stayWindow"));
        QTRY_COMPARE(reported, 2);
        QVERIFY(t.sends("2042 0 0 31 32 33 34 35 36 37 38 00"));
        QCOMPARE(int(stored().origin), int(UserOrigin::Kiosk));
    }

    void manyInARowLeaveNothingBehind() {
        const QByteArray one = steps({kQualified, kNumbered, kTag, kDone}, "authCardOnlyRow");
        int objects = 0;
        for (int i = 0; i < 20; ++i) {
            QVERIFY(
                play(QByteArray(one)
                         .replace("30000001", QByteArray::number(40000000 + i))
                         .replace("01055556666", QByteArray::number(qlonglong{10000000000} + i))));
            const int now = t.window->findChildren<QObject*>().size();
            QVERIFY(i < 2 || now == objects);
            objects = now;
        }
        QCOMPARE(UserStore(t.root.path("/mnt/data")).users().size(), 27);
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
        QVERIFY(play(played));
        QVERIFY2(t.shows(end.constData()), qPrintable(t.title()));
        const QByteArray all = t.window->linkUp() ? sent() : frames;
        QVERIFY2(all.contains(frames), all.constData());
        const bool stores = (played.endsWith("?Dialog_RegFaceComplete >dialogOkButton") &&
                             !played.contains("silent")) ||
                            played.contains("?Dialog_AddFaceToCard");
        QCOMPARE(UserStore(t.root.path("/mnt/data")).users().size(),
                 played.contains("!users_9999") ? 10000 : 7 + int(stores));
    }

 private:
    void register_(const RegistrationBlock& block) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&block);
        const char* const fields[] = {"on",           "authMethod",     "autoId",   "wearGlasses",
                                      "syncAutoZone", "retainUserData", "userLevel"};
        for (const char* field : fields)
            QVERIFY(t.tell(QStringLiteral("settings registration.%1 %2")
                               .arg(QLatin1String(field))
                               .arg(*bytes++)));
        QTRY_VERIFY(t.agrees());
    }
    _gui_user_ stored() { return UserStore(t.root.path("/mnt/data")).users().last(); }
    /// What the terminal has sent since this was last asked: codes with the parameters and sounds
    /// that are not 0, without key clicks.
    QByteArray sent() {
        QByteArray all;
        if (!t.settle())
            return "lost";
        for (const QString& frame : std::exchange(t.frames, {})) {
            const QStringList parts = frame.split(QLatin1Char(' '));
            QByteArray one = parts[0].toLatin1();
            if (one == "5000")
                continue;
            if (one == "1908")
                one += ':' + QByteArray::number(parts[3].toInt(nullptr, 16));
            else if (parts[2] != QLatin1String("0"))
                one += ':' + parts[1].toLatin1() + ':' + parts[2].toLatin1();
            else if (parts[1] != QLatin1String("0"))
                one += ':' + parts[1].toLatin1();
            all += one + ' ';
        }
        return all.trimmed();
    }
    bool play(const QByteArray& script) {
        const QList<QByteArray> steps = script.simplified().split(' ');
        const auto failing = std::find_if(steps.begin(), steps.end(),
                                          [this](const QByteArray& one) { return !step(one); });
        if (failing != steps.end())
            qWarning("'%s' fails on %s, which says '%s'", failing->constData(),
                     qPrintable(t.title()), qPrintable(t.dialogText()));
        return failing == steps.end();
    }
    bool step(const QByteArray& step) {
        const QByteArray name = step.mid(1);
        if (step == "LIVE") {
            t.open("liveWindow");
            t.tap("enrollButton");
            return t.settle();
        }
        if (step == "MENU" || step == "DOOR") {
            t.window->changeWindow(QLatin1String(step == "MENU" ? "userMenuWindow" : "liveWindow"));
            return t.settle();
        }
        switch (step[0]) {
            case '>':
            case '<':
                if (!QTest::qWaitFor([&] { return t.find(name.constData()) != nullptr; }))
                    return false;
                t.tap(name.constData(), step[0] == '<' ? 0.8 : 0.5);
                return true;
            case '|':
                return t.find(name.constData()) == nullptr;
            case '-':
                t.window->findChild<DeviceLink*>()->open(freePort());
                return QTest::qWaitFor([&] { return !t.window->linkUp(); });
            case '#':
                for (const char digit : name)
                    t.tap(QByteArray("key_").append(digit).constData());
                return true;
            case '!':
                return t.settle() &&
                       t.tell(QString::fromUtf8(name).replace(QLatin1Char('_'), QLatin1Char(' ')));
            case '@':
                return t.shows(name.constData());
            case '%':
                return QTest::qWaitFor(
                    [&] { return t.find<EnrolRing>("ring")->percent() == name.toInt(); });
            case '?':
                return QTest::qWaitFor([&] { return says(name.constData()); });
            case '=':
                return t.settle() && QTest::qWaitFor([&] {
                           return t.find<InputField>("numberEntry")->text().toUtf8() == name;
                       });
            case '~':
                return !menus()->isRunning();
            case '^':
                return t.sends(name.constData());
            case '&':
                // All of it before the menus' time, should that run.
                return menus()->seconds() > name.toInt() &&
                       expire(DialogOverlay::current(t.window.get()), "autoCloseTimer",
                              name.toInt() * 1000);
            default:
                return t.settle() &&
                       expire(t.window->getActivateWindowForm(), "answerTimer", name.toInt());
        }
    }
    MenuTimer* menus() { return t.window->findChild<MenuTimer*>(); }
    /// In front, or as what the person is to do.
    bool says(const char* key) const {
        const auto* second = t.find<QLabel>("dialogSecondText");
        const auto* guide = t.find("guide");
        return t.says(key) || (second != nullptr && second->text().contains(t.text(key))) ||
               (guide != nullptr && guide->property("textKey") == QLatin1String(key));
    }
    /// Lets the time of the timer @p name run out, which are so many milliseconds.
    static bool expire(const QObject* parent, const char* name, int time) {
        const auto timers = parent->findChildren<QTimer*>(QLatin1String(name));
        for (QTimer* timer : timers) {
            if (!timer->isActive() || timer->interval() != time)
                continue;
            timer->setInterval(0);
            QCoreApplication::processEvents();
            return true;
        }
        return false;
    }

    DrivenTerminal t;
};

QTEST_MAIN(EnrolmentTest)
#include "enrolment_test.moc"
