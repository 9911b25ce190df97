#include <QJsonObject>

#include "app/management_link.h"
#include "app/menu_timer.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_test.h"
#include "ui/text_line.h"

/// Finding, changing and deleting people, as a finger on the panel, the controller and the
/// management service see it.
class PeopleTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        service_ = std::make_unique<ServiceSim>(
            0, 0,
            TerminalAddress{QStringLiteral("127.0.0.1"), qgetenv("ZEL_REST_PORT").toUShort()});
        connect(service_.get(), &ServiceSim::called, this,
                [this](const QString& name, const QJsonObject& body) {
                    if (name == QLatin1String("user-deleted"))
                        deleted_.append(body.value(QStringLiteral("userInfo")).toObject());
                });
        t->phrases["OF"] = ":userMenuWindow :userSearch_idWindow";
        t->phrases["FOUND"] = "NEXT @userSearch_InfoWindow []";
        // Of a number that the controller says nothing of.
        t->phrases["INVAIN"] = ":userSearch_idWindow #01012341234 !silent_1973 NEXT ^1973";
    }
    void init() {
        QVERIFY(begin());
        // The terminal gets the numbers of users as well.
        PLAYS("!settings_setup.language_1 :userMenuWindow");
    }

    void searchFinds_data() {
        table(R"(card | searchCardRow ^1973_1_0 !card_10000002
            face | searchFaceRow ^1973_5_0 !face_01098765432
            number | searchIDRow #01098765432 NEXT ^1973_3_0_30_31_30_39_38_37_36_35_34_33_32)");
    }

    void searchFinds() {
        const auto [steps] = values<1>();
        PLAYS("userSearchTile " + steps + R"( @userSearch_InfoWindow =박지훈 =Toggle_GeneralUsers
            =Registered numberField=01098765432 methodCombo=ListItem_AuthFaceOrCard
            !settings_setup.language_2 levelChip=Toggle_GeneralUsers cardRow=Registered
            originRow=ListItem_OriginTerminal !settings_setup.language_1)");
        // The camera does not go on behind the screen.
        QVERIFY(t->settle());
        QCOMPARE(t->sent("2010 0 0") > t->sent("2010 1 0"), steps.startsWith("searchFace"));
        PLAYS("BACK @user_searchWindow");
    }

    void searchFindsNobody_data() {
        table(R"(card | userSearchTile searchCardRow !card_99999999 ?ListItem_UnregisteredCard
            face | userSearchTile searchFaceRow !face_unknown ?ListItem_UnregisteredFace
            number | userSearchTile searchIDRow #0999 NEXT ?ListItem_UnregisteredID
            nothing tagged | !search-time_1 userSearchTile searchCardRow ?Error_InputTimeout
            nobody tells | userSearchTile searchCardRow * ?Error_InputTimeout
            nobody looks | userSearchTile searchFaceRow * ?Dialog_UnregisteredUser
            no answer | !silent_1973 userSearchTile searchIDRow #0999 NEXT * ?Error_NoResponse
                | @userSearch_idWindow +key_0
            link lost | !lose-link-at_1973 userSearchTile searchIDRow #0999 NEXT
                ?ListItem_NoController | @userSearch_idWindow +key_0)");
    }

    void searchFindsNobody() {
        const auto [steps, after] = values<2>();
        PLAYS(steps + " !search-time_20000 OK");
        // What was typed can be put right.
        PLAYS(after.isEmpty() ? "@user_searchWindow -key_0" : after);
    }

    void aSearchThatIsLeftIsOver() {
        const QByteArray left = t->text("Info_SecondsLeft").arg(19).toUtf8().replace(' ', '_');
        PLAYS("userSearchTile searchCardRow secondsLine=" + left +
              " @userSearch_cardWindow BACK ^1926_0_0");
        // The card belongs to the door again, and a late answer to nobody.
        giveUser({});
        PLAYS("-? @user_searchWindow");
        // Nor is a late answer one to the next search, or about whoever is shown by then.
        _gui_user_ user{};
        setFieldText(user.customerId, QStringLiteral("01098765432"));
        PLAYS(R"(OF #01098765432 !silent_1973 NEXT * ?Error_NoResponse OK
            numberEntry #C01023456789 !silent_1973 NEXT ^1973)");
        giveUser(user);
        PLAYS("@userSearch_idWindow ?Info_Searching");
        setFieldText(user.userId, QStringLiteral("01023456789"));
        giveUser(user);
        PLAYS(R"(@userSearch_InfoWindow !silent_1931 deleteButton OK ^1931 * OK
            OF #01098765432 FOUND !frame_2931_0_0 -? numberField=01098765432)");
    }

    void changesAreStored() {
        PLAYS(R"(OF #01098765432 FOUND numberField #C0109876543 NEXT ?Error_EnterEleven -^1940 OK
            numberField #9 >rightsToggle NEXT ?ListItem_SuccessfullyChanged -^1931 OK)");
        // Found by the new number, and nobody else may have it. What the new way does not need
        // goes, after a question.
        PLAYS(R"(OF #01098765439 FOUND numberField #C01023456789 NEXT ?ListItem_FailedChange OK
            numberField #C01098765432 methodCombo item1 NEXT
            ?ListItem_InformationWillBePermanentlyDeleted [] NO -^1931 -^1940 NEXT OK
            ?ListItem_SuccessfullyChanged ^1931_0_0_30_31 cardRow=NoRegistered)");
        QVERIFY(t->sent("1931") < t->sent("1940"));
        QVERIFY(stored("01098765432").contains(QStringLiteral("card  박지훈")));
    }

    void nobodyIsLostByAChange_data() {
        table(R"(delete refused | !refuse_1931 NEXT OK
            delete unanswered | !silent_1931 NEXT OK ^1931 *
            link lost at the delete | !lose-link-at_1931 NEXT OK
            store refused | !refuse_1940 NEXT OK
            store unanswered | !silent_1940 NEXT OK ^1940 *
            link lost at the store | !lose-link-at_1940 NEXT OK
            terminal lost at the store | !silent_1940 NEXT OK ^1940)");
    }

    void nobodyIsLostByAChange() {
        const auto [steps] = values<1>();
        const char* const number = "01031313131";
        const QString name = QStringLiteral("Maximiliana");
        const auto kept = [&] {
            return stored(number).contains(name) &&
                   !QFile::exists(t->root.path("/mnt/data/unstored_user"));
        };
        _gui_user_ user{};
        memcpy(user.userId, number, 11);
        memcpy(user.customerId, number, 11);
        setFieldText(user.name, name);
        user.authMethod = 3;
        user.facePresent = user.cardPresent = 1;
        QVERIFY(window()->SendRecord(command::EnrolNetworkUser, 0, 0, user));
        PLAYS(QByteArray("OF #") + number + " FOUND methodCombo item1 " + steps);
        if (steps.contains("refuse_1931")) {
            PLAYS("?ListItem_FailedChange");
            QVERIFY(kept());
            return;
        }
        if (steps.endsWith("^1940")) {
            QVERIFY(stored(number).isEmpty() && t->start());
            window()->changeWindow(QStringLiteral("userMenuWindow"));
        } else {
            PLAYS("cardRow=NoRegistered");
        }
        // Declined, it is offered again wherever users are managed.
        PLAYS("?Error_UserNotStored NO");
        QVERIFY(window()->linkUp() || t->reconnect());
        PLAYS(":stayWindow :user_searchWindow ?Error_UserNotStored NO");
        // Neither storing nor deleting somebody else makes the terminal forget this one.
        window()->changeWindow(QStringLiteral("userSearch_idWindow"));
        PLAYS(R"(#01023456789 FOUND NEXT ?ListItem_SuccessfullyChanged OK methodCombo item1 NEXT OK
            ?Error_UserNotStored -^1931_0_0_30_31_30_32 OK ?ListItem_SuccessfullyChanged)");
        QVERIFY(kept());
    }

    void aUserIsDeleted() {
        PLAYS(R"(OF #01044447777 FOUND deleteButton ?ListItem_DeleteUser NO !refuse_1931
            deleteButton OK ?ListItem_FailedDeleted OK)");
        QVERIFY(!stored("01044447777").isEmpty());
        const auto all = window()->menuRecord().users.all;
        // The controller may ask as well, and tell of another card and of one's key.
        PLAYS(R"(!frame_2930_0_2 ?ListItem_UnregisteredCard OK
            !frame_2930_0_3 ?ListItem_UnregisteredID OK
            !frame_2930_0_4 ?ListItem_UnregisteredCard OK
            !frame_2930_1_1 ?ListItem_DeleteUser OK ?ListItem_UserDeleted)");
        QVERIFY(stored("01044447777").isEmpty());
        QTRY_COMPARE(window()->menuRecord().users.all, all - 1);
        PLAYS("OK @user_searchWindow");
    }

    void whatIsMissingIsEnrolled() {
        // A visitor with nothing but a face.
        PLAYS(R"(OF #01066665555 FOUND +destinationRow faceRow @userSearch_InfoWindow cardRow
            @userEnroll_qualWindow)");
        _gui_user_ user;
        window()->GetGuiUser(&user);
        QCOMPARE(fieldText(user.userId), QStringLiteral("01066665555"));
        QCOMPARE(int(user.authMethod), 2);
        // The way goes on with the card alone.
        PLAYS("NEXT @userEnroll_reCardTagWindow");
    }

    void hostileRecordsAreShownAsText() {
        PLAYS(":userSearch_idWindow #0101234 !silent_1973 NEXT ^1973");
        _gui_user_ user{};
        memset(user.name, 'x', sizeof user.name);  // without a zero
        memcpy(user.name, "<b>Eve</b>\a\xff", 12);
        setFieldText(user.customerId, QString::fromUtf8("١٢٣0101234"));
        memcpy(user.userId, "../../shadow", 12);
        memcpy(user.picture, "/etc/passwd", 11);
        user.authMethod = user.level = user.origin = 0xee;
        giveUser(user);
        PLAYS("@userSearch_InfoWindow numberField=0101234");
        QVERIFY(t->find<TextLine>("nameLine")->text().startsWith(QStringLiteral("<b>Eve</b>")));
        // A piece of a record is nobody.
        PLAYS(R"(NEXT ?Error_EnterEleven INVAIN !frame_2973_0_3_3031 @userSearch_InfoWindow *
            ?ListItem_UnregisteredID)");
    }

    void registrationModeIsSaved() {
        PLAYS(R"(!settings_registration.on_0 !settings_registration.autoId_0
            :setupRegistModeWindow -methodRow)");
        const QPoint place = t->place("modeToggle");
        PLAYS("<modeToggle");
        QCOMPARE(t->place("modeToggle"), place);
        // The number and the glasses are asked for whatever was chosen.
        PLAYS(R"(>methodToggle >glassesToggle <retainToggle >levelToggle NEXT ?Dialog_SaveComplate
            ^1982_1_0_01_02_01_01_00_01_02)");
        QVERIFY(t->agrees());
    }

    void usersAreSent_data() {
        // While one runs, and while it is being cancelled, there is no other.
        table(R"(nobody is new
                | !settings_users.unsent_0 SCREEN newUserButton ?Popup_UploadNoNewUser -^1934
            new | !settings_users.unsent_3 SCREEN newUserButton ?Popup_UploadComplete ^1934_0_0 BUSY
            all | !settings_users.unsent_0 SCREEN ALL ?Popup_UploadComplete BUSY
            no connection | !access-controller_away SCREEN ALL ?Popup_UploadRestoreConnection
            too many | !access-controller_full SCREEN ALL ?Popup_UploadExceeded
            wireless | !access-controller_wireless SCREEN ALL ?Popup_UploadExceededWireless
            another runs | !refuse_1934_1 SCREEN ALL ?Popup_UploadCancelFirst OK cancelButton
                ^1934_0_1 !frame_2934_4_0 ?Popup_UploadCancel
            silence | !silent_1934 SCREEN ALL * ?Popup_UploadFail
            covered | SCREEN !fault_network ?Popup_ErrNetwork !frame_2934_2_0 !fault_none
            link lost | !lose-link-at_1934 SCREEN ALL ?ListItem_NoController)");
    }

    void usersAreSent() {
        t->phrases["SCREEN"] = "userUploadTile []";
        t->phrases["ALL"] = "allUserButton ^1934_1_0";
        t->phrases["BUSY"] = R"(!upload-pace_60000 OK [] ALL !silent_1934
            allUserButton ?Popup_UploadFail OK cancelButton
            newUserButton ?Popup_UploadFail OK cancelButton ^1934_0_1
            !frame_2934_4_0 ?Popup_UploadCancel !upload-pace_0 ?Popup_UploadComplete)";
        const auto [steps] = values<1>();
        PLAYS("!access-controller_ok !upload-pace_1 " + steps + " !upload-pace_0");
        // Nobody is kept waiting by what was said, also when a fault covers it.
        QVERIFY(window()->findChild<MenuTimer*>()->isRunning());
    }

    void aNumberIsChecked_data() {
        table(R"(registered | #01023456789 [] NEXT
            unknown | #09999999999 NEXT ?ListItem_UnregisteredID ^2027
            ten digits | #0102345678 NEXT ?Error_EnterEleven -^2027
            refused length | !refuse_2027_2 #01023456789 NEXT ?Error_EnterEleven ^2027
            silence | !silent_2027 #01023456789 NEXT * ?Error_NoResponse ^2027
            link lost | !lose-link-at_2027 #01023456789 NEXT ?ListItem_NoController ^2027)");
    }

    void aNumberIsChecked() {
        const auto [steps] = values<1>();
        PLAYS("!settings_setup.authMethod_4 :liveWindow keypadButton ^2003_0_0 " + steps);
        if (steps.contains('?')) {
            PLAYS("OK +key_0 @inputSubWindow");
            return;
        }
        QVERIFY(t->shows("liveWindow") && t->settle());
        QVERIFY(t->sent("2011 1 0") >= 0 && t->sent("2010 1 0") > t->sent("2011 1 0") &&
                t->sent("2030 0 0") > t->sent("2010 1 0"));
        // A second answer finds nobody who asked.
        PLAYS("!face_01023456789 @recognizeWindow !frame_3023_1_0 -? @recognizeWindow");
    }

    void groupsAreDeletedAndReported_data() {
        table(R"(general | 0 | delete_Button_GeneralUsers | ListItem_AllRegularUsersDeleted
            administrators | 1 | delete_Button_AdminUsers | ListItem_AllAdminUsersDeleted
            in and out only | 2 | delete_Button_InOutUsers | ListItem_AllAccessUsersDeleted
            all | 3 | delete_Button_AllUsers | ListItem_AllUsersDeleted
            all, slowly | 3 | delete_Button_AllUsers | ListItem_AllUsersDeleted
            all, too late | 3 | delete_Button_AllUsers | Error_NoResponse
            face only | 4 | delete_Button_FaceOnlyUsers | ListItem_AllFaceUsersDeleted)");
    }

    void groupsAreDeletedAndReported() {
        const auto [group, button, done] = values<3>();
        words({"users 0", "users 60"});
        if (group == "1") {
            _gui_user_ user{};
            memcpy(user.userId, "01011112222", 11);
            window()->SendRecord(command::EnrolNetworkUser, 0, 0, user);
        }
        set("network.own.managerPort", service_->port());
        words({"settings network.own.managerAddress 127.0.0.1", "settings network.useManager 1"});
        QTRY_VERIFY(t->agrees());
        window()->managementLink()->connectNow();
        QTRY_VERIFY(window()->managementLink()->connected());
        deleted_.clear();
        PLAYS(":userMenuWindow userGroupTile ^1933_0_0");
        t->phrases["DELETE"] = button + " +dialogOkButton OK";
        if (done == "Error_NoResponse") {
            PLAYS("!silent_1932 DELETE ^1932_3_0 * ?" + done + " !frame_2932_0_3 !frame_2932_0_3");
            QTRY_COMPARE(deleted_.size(), 1);
            QVERIFY(t->settle());
            QCOMPARE(deleted_.size(), 1);
            return;
        }
        // An order of the service is none of this screen's.
        if (qstrcmp(QTest::currentDataTag(), "all, slowly") == 0) {
            PLAYS("!lose-link-at_1932 DELETE ?ListItem_NoController");
            QVERIFY(t->reconnect());
            PLAYS("!silent_1932 !frame_2932_0_0 OK DELETE ^1932");
            emit window()->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
            PLAYS("@userGroupInfoWindow !frame_2932_0_3 ?" + done);
        } else {
            PLAYS("!refuse_1932 DELETE ?ListItem_FailedDeleted !frame_2932_0_0 OK DELETE ?" + done);
        }
        PLAYS("!frame_2932_0_0 OK");
        QCOMPARE(t->frames.filter(QStringLiteral("1932 %1 0").arg(QLatin1String(group))).size(), 2);
        PLAYS("@userEnrollMenuWindow");
        // Those who may only go in and out are never told of; all others are, one behind the other.
        for (const int next : {8, 9})
            window()->reportGroupDeleted(next);
        const QByteArray told = group == "2" ? "8 9" : group + " 8 9";
        QTRY_COMPARE(deleted_.size(), told.split(' ').size());
        QByteArrayList types;
        for (const QJsonObject& one : deleted_)
            types.append(one.value(QStringLiteral("deleteType")).toString().toLatin1());
        QCOMPARE(types.join(' '), told);
        QCOMPARE(QJsonValue(deleted_.first())[QStringLiteral("cardInfo")][QStringLiteral("cardNo")]
                     .toString(),
                 QString());
    }

 private:
    /// What the controller's list of users says of @p number; empty when there is nobody.
    QString stored(const char* number) {
        const QStringList lines = t->sim.execute(QStringLiteral("users")).split(QLatin1Char('\n'));
        return lines.filter(QLatin1String(number)).value(0);
    }
    void giveUser(const _gui_user_& user) {
        const QByteArray bytes(reinterpret_cast<const char*>(&user), sizeof user);
        word(qPrintable(QStringLiteral("frame 2973 0 3 ") + QLatin1String(bytes.toHex())));
    }

    std::unique_ptr<ServiceSim> service_;
    QList<QJsonObject> deleted_;  // reports of deleted users
};

QTEST_MAIN(PeopleTest)
#include "people_test.moc"
