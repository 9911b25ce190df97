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
// so many percent, "=number" for what is entered; "~" says that no menu times out, "*" lets the
// time of what is waited for run out.
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
        QVERIFY(t.tell("settings screen.menuTimeout 2"));
        QVERIFY(t.start());
    }
    void init() {
        if (!t.window->linkUp())  // rather than wait for the next attempt
            t.window->findChild<DeviceLink*>()->open(DevicePaths::linkPort());
        QTRY_VERIFY(t.window->linkUp());
        DialogOverlay::closeAll(t.window.get());
        t.window->changeWindow(QStringLiteral("stayWindow"));
        QVERIFY(t.tell("normal") && t.tell("users 7"));
        QVERIFY(t.tell("settings setup.authMethod 2"));
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
        row("live view", steps({"LIVE >forwardButton ", kTag, kAdd, kLook, kDone}),
            steps({kDoor, "2037:2:2 ", kCard, kFace, kFaceEnd}), 2, 3);
        row("live view, face",
            steps({"!settings_registration.authMethod_1 LIVE >forwardButton ", kLook, kDone}),
            steps({kDoor, "2037:1:1 ", kFace, kFaceEnd}), 1, 2);
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
            "!silent_1923 " + number + ">forwardButton *" + says("Error_NoResponse") +
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

        row("card of another", card + "!card_10000002" + says("Info_CardAlreadyRegistered"),
            "1940 1926 1908:203");
        row("card not read",
            card + "!frame_2947_1_0_31" + says("Error_CardNotRead") +
                " !card_30000001 ?Dialog_RegFaceComplete" + ok,
            "1921 1940 1920 1933 2010");
        row("card of no number",
            card + "!frame_2947_0_1_3c623e313c2f623e0000000000000000" + says("Error_CardNotRead"),
            "1908:203 1921", "userEnroll_cardTagWindow");
        row("own card",
            card + "!silent_1940 !card_30000001 !frame_2940_0_0 !frame_2921_2_0" +
                says("Dialog_IsAlreadyRegisteredCard"),
            "1940 1908:203 1921", "userEnroll_cardTagWindow");
        row("no card", card + "*" + says("Error_InputTimeout"), "1926 1908:203");
        row("another enrolment",
            "!refuse_1920_2 " + card + "!card_30000001" + says("Error_EnrollingUsers"),
            "1920 1926 1908:203");
        row("administrators, card",
            "!refuse_1940_3 " + card + "!card_30000001" + says("Dialog_RegFaceFailed_UpToAdmin5"),
            "1940 1926 1908:203");
        row("card not stored",
            "!silent_1920 " + card + "!card_30000001 ^1920 *" + says("Error_NoResponse"),
            "1920 1926 1908:203");
        row("card cancelled", card + "@userEnroll_cardTagWindow >neutralButton", "1921 1926");

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
                "%40 *" +
                says("Dialog_RegFaceFailed"),
            "2046:1 2031:1 1908:203");
        row("slow", face + "!enrol-face_slow ?Info_PleaseTryAgain ?Dialog_RegFaceComplete" + ok,
            "1920 2029 1933 2010");
        row("administrators, face",
            "!refuse_1920_3 " + face + "!enrol-face_good" + says("Dialog_EnrollUpTo5Admin"),
            "1920 2029 1908:203");
        row("face not stored",
            "!silent_1920 " + face + "!enrol-face_good %100 *" + says("Error_NoResponse"),
            "1920 2029 1908:203");
        row("face cancelled", face + "!enrol-face_stall %40 >neutralButton", "2046:1 2031:1");
        row("face done twice",
            face +
                "!silent_1920 !enrol-face_good %100 !frame_3001_3_0 "
                "!frame_2920_0_0 !frame_2920_0_0 ?Dialog_RegFaceComplete" +
                ok,
            "2046:4 1908:5 1920 2029 1933 2010");

        row("too many users",
            "!settings_users.all_10000 " + steps({kQualified}, "authCardOnlyRow") +
                says("Error_MaxUsersExcceeded"),
            "1908:203", "userEnroll_qualWindow");
        row("most users", "!settings_users.all_9999 " + number, "1921", "userEnroll_IDWindow");
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
                    says("Dialog_EnrollNoController"),
                "");
        row("link, first step", "MENU >userEnrollTile !drop" + says("Dialog_EnrollNoController"),
            "");
        row("link", face + "!enrol-face_stall %40 !drop" + says("Dialog_EnrollNoController"), "");
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
        QVERIFY(play("!settings_registration.on_0 >forwardButton " + steps({kTag, kAdd, kLook}) +
                     ' ' + kDone + "@stayWindow"));
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
    }

    void outcomes() {
        QFETCH(QByteArray, played);
        QFETCH(QByteArray, frames);
        QFETCH(QByteArray, end);
        QVERIFY(play(played));
        QVERIFY2(t.shows(end.constData()), qPrintable(t.title()));
        const QByteArray all = t.window->linkUp() ? sent() : frames;
        QVERIFY2(all.contains(frames), all.constData());
        const bool stores = played.endsWith("?Dialog_RegFaceComplete >dialogOkButton") &&
                            !played.contains("silent");
        QCOMPARE(UserStore(t.root.path("/mnt/data")).users().size(), stores ? 8 : 7);
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
                if (!QTest::qWaitFor([&] { return t.find(name.constData()) != nullptr; }))
                    return false;
                t.tap(name.constData());
                return true;
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
                return !t.window->findChild<MenuTimer*>()->isRunning();
            case '^':
                return t.sends(name.constData());
            default:
                return t.settle() && expire();
        }
    }
    /// In front, or as what the person is to do.
    bool says(const char* key) const {
        const auto* second = t.find<QLabel>("dialogSecondText");
        const auto* guide = t.find("guide");
        return t.says(key) || (second != nullptr && second->text().contains(t.text(key))) ||
               (guide != nullptr && guide->property("textKey") == QLatin1String(key));
    }
    /// Lets the time of what is waited for run out.
    bool expire() {
        const auto timers =
            t.window->getActivateWindowForm()->findChildren<QTimer*>(QStringLiteral("answerTimer"));
        for (QTimer* timer : timers) {
            if (!timer->isActive())
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
