#include <QJsonObject>
#include <QTimer>
#include <QtTest>
#include <array>
#include <memory>

#include "app/management_link.h"
#include "app/menu_timer.h"
#include "link/command_code.h"
#include "link/device_link.h"
#include "link/device_message.h"
#include "sim/service/service_sim.h"
#include "tests/support/driven_terminal.h"
#include "ui/combo.h"
#include "ui/list_row.h"
#include "ui/text_line.h"

/// Finding, changing and deleting people, as a finger on the panel, the controller and the
/// management service see it.
class PeopleTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { t.reset(); }
    void searchFinds_data();
    void searchFinds();
    void searchFindsNobody_data();
    void searchFindsNobody();
    void aSearchThatIsLeftIsOver();
    void changesAreStored();
    void nobodyIsLostByAChange_data();
    void nobodyIsLostByAChange();
    void aUserIsDeleted();
    void whatIsMissingIsEnrolled();
    void hostileRecordsAreShownAsText();
    void registrationModeIsSaved();
    void usersAreSent_data();
    void usersAreSent();
    void aNumberIsChecked_data();
    void aNumberIsChecked();
    void groupsAreDeletedAndReported_data();
    void groupsAreDeletedAndReported();

 private:
    void type(const char* digits) {
        for (const char* digit = digits; *digit != '\0'; ++digit)
            t->tap(QByteArray("key_").append(*digit).constData());
    }
    void word(const char* line) { QVERIFY2(t->tell(line), line); }
    /// Shows the person of that number as an administrator finds them.
    bool findNumber(const char* number) {
        t->window->changeWindow(QStringLiteral("userMenuWindow"));
        t->window->changeWindow(QStringLiteral("userSearch_idWindow"));
        type(number);
        t->tap("forwardButton");
        const bool found = t->shows("userSearch_InfoWindow") && t->settle();
        t->frames.clear();
        return found;
    }
    /// What the controller's list of users says of @p number; empty when there is nobody.
    QString stored(const char* number) {
        const QStringList lines = t->sim.execute(QStringLiteral("users")).split(QLatin1Char('\n'));
        return lines.filter(QLatin1String(number)).value(0);
    }
    /// The table of a test, a line for each row: its name and its values, with bars between them.
    static void table(const char* text) {
        QTest::addColumn<QByteArrayList>("cells");
        for (const QByteArray& line : QByteArray(text).split('\n')) {
            QByteArrayList cells;
            for (const QByteArray& cell : line.split('|'))
                cells.append(cell.trimmed());
            const QByteArray name = cells.takeFirst();
            QTest::newRow(name.constData()) << cells;
        }
    }
    /// The values of the present row.
    template <std::size_t count>
    static std::array<QByteArray, count> values() {
        QFETCH(QByteArrayList, cells);
        std::array<QByteArray, count> values;
        std::copy(cells.begin(), cells.end(), values.begin());
        return values;
    }
    void taps(std::initializer_list<const char*> names) {
        for (const char* name : names)
            t->tap(name);
    }
    /// Takes the time of what is waited for as over, and before it that of the menus, which does
    /// not end a wait.
    void expire() {
        QVERIFY(t->settle());
        for (QTimer* timer : t->window->findChildren<QTimer*>(QStringLiteral("answerTimer"))) {
            if (!timer->isActive())
                continue;
            emit t->window->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
            QVERIFY(timer->isActive());
            timer->start(0);
        }
        QCoreApplication::processEvents();
    }
    void reconnect() {
        if (!t->window->linkUp())
            t->window->findChild<DeviceLink*>()->open(t->sim.port());
        QTRY_VERIFY(t->sim.terminalConnected() && t->window->linkUp());
    }
    /// Searches a number that the controller says nothing of.
    void searchInVain() {
        t->window->changeWindow(QStringLiteral("userSearch_idWindow"));
        type("01012341234");
        word("silent 1973");
        t->tap("forwardButton");
        QVERIFY(t->settle());
    }
    void giveUser(const _gui_user_& user) {
        const QByteArray bytes(reinterpret_cast<const char*>(&user), sizeof user);
        word(qPrintable(QStringLiteral("frame 2973 0 3 ") + QLatin1String(bytes.toHex())));
    }

    std::unique_ptr<DrivenTerminal> t;
    std::unique_ptr<ServiceSim> service_;
    QList<QJsonObject> deleted_;  // reports of deleted users
};

void PeopleTest::initTestCase() {
    t = std::make_unique<DrivenTerminal>();
    t->root.write("/mnt/data/rebootchkr", {});
    service_ = std::make_unique<ServiceSim>(
        0, 0, TerminalAddress{QStringLiteral("127.0.0.1"), qgetenv("ZEL_REST_PORT").toUShort()});
    connect(service_.get(), &ServiceSim::called, this,
            [this](const QString& name, const QJsonObject& body) {
                if (name == QLatin1String("user-deleted"))
                    deleted_.append(body.value(QStringLiteral("userInfo")).toObject());
            });
    word("settings setup.language 1");
    QVERIFY(t->start());
}

void PeopleTest::init() {
    DialogOverlay::closeAll(t->window.get());
    t->window->changeWindow(QStringLiteral("stayWindow"));
    word("normal");
    reconnect();
    // The terminal gets the numbers of users as well.
    word("settings setup.language 1");
    QVERIFY(t->open("userMenuWindow"));
}

void PeopleTest::searchFinds_data() {
    table(R"(card | searchCardRow | 1973 1 0 | card 10000002
        face | searchFaceRow | 1973 5 0 | face 01098765432
        number | searchIDRow | 1973 3 0 30 31 30 39 38 37 36 35 34 33 32 | )");
}

void PeopleTest::searchFinds() {
    const auto [row, frame, words] = values<3>();
    t->tap("userSearchTile");
    t->tap(row.constData());
    if (words.isEmpty()) {
        type("01098765432");
        t->tap("forwardButton");
    }
    QVERIFY(t->sends(frame.constData()));
    if (!words.isEmpty())
        word(words.constData());
    QVERIFY(t->shows("userSearch_InfoWindow"));
    QVERIFY(t->reads(QStringLiteral("박지훈")));
    QVERIFY(t->readsKey("Toggle_GeneralUsers") && t->readsKey("Registered"));
    QCOMPARE(t->find<InputField>("numberField")->text(), QStringLiteral("01098765432"));
    QCOMPARE(t->find<Combo>("methodCombo")->currentIndex(), 2);
    // The camera does not go on behind the screen.
    QVERIFY(t->settle());
    QCOMPARE(t->sent("2010 0 0") > t->sent("2010 1 0"), row == "searchFaceRow");
    t->tap("backButton");
    QCOMPARE(t->title(), QStringLiteral("user_searchWindow"));
}

void PeopleTest::searchFindsNobody_data() {
    table(R"(card | searchCardRow | card 99999999 | ListItem_UnregisteredCard
        face | searchFaceRow | face unknown | ListItem_UnregisteredFace
        number | searchIDRow |  | ListItem_UnregisteredID
        nothing tagged | searchCardRow | search-time 1 | Error_InputTimeout
        nobody tells | searchCardRow | expire | Error_InputTimeout
        nobody looks | searchFaceRow | expire | Dialog_UnregisteredUser
        no answer | searchIDRow | silent 1973 | Error_NoResponse
        link lost | searchIDRow | lose-link-at 1973 | ListItem_NoController)");
}

void PeopleTest::searchFindsNobody() {
    const auto [row, words, said] = values<3>();
    const bool byNumber = row == "searchIDRow";
    const bool before = byNumber || words.startsWith("search-time");
    if (!words.isEmpty() && before)
        word(words.constData());
    t->tap("userSearchTile");
    t->tap(row.constData());
    if (byNumber) {
        type("0999");  // as short as the service may send it
        t->tap("forwardButton");
    }
    if (!before && words != "expire")
        word(words.constData());
    if (words == "expire" || words.startsWith("silent")) {
        // First nobody is found, then nobody says why.
        expire();
        expire();
    }
    QTRY_VERIFY(t->says(said.constData()));
    word("search-time 20000");
    t->tap("dialogOkButton");
    // What was typed can be put right.
    const bool stays = byNumber && !words.isEmpty();
    QTRY_COMPARE(t->title(), stays ? QStringLiteral("userSearch_idWindow")
                                   : QStringLiteral("user_searchWindow"));
    QCOMPARE(t->find("key_0") != nullptr, stays);
}

void PeopleTest::aSearchThatIsLeftIsOver() {
    taps({"userSearchTile", "searchCardRow"});
    QVERIFY(t->shows("userSearch_cardWindow"));
    t->tap("backButton");
    QVERIFY(t->sends("1926 0 0"));
    // The card belongs to the door again, and a late answer to nobody.
    _gui_user_ late{};
    giveUser(late);
    QVERIFY(t->settle());
    QCOMPARE(t->title(), QStringLiteral("user_searchWindow"));
}

void PeopleTest::changesAreStored() {
    QVERIFY(findNumber("01098765432"));
    taps({"numberField", "key_clear"});
    type("0109876543");
    t->tap("forwardButton");
    QVERIFY(t->says("Error_EnterEleven"));
    QVERIFY(t->settle() && t->sent("1940") < 0);
    taps({"dialogOkButton", "numberField"});
    type("9");
    t->tap("rightsToggle", 0.8);
    t->tap("forwardButton");
    QTRY_VERIFY(t->says("ListItem_SuccessfullyChanged"));
    QVERIFY(t->sent("1931") < 0);
    t->tap("dialogOkButton");
    // Found by the new number, and nobody else may have it.
    QVERIFY(findNumber("01098765439"));
    taps({"numberField", "key_clear"});
    type("01023456789");
    t->tap("forwardButton");
    QTRY_VERIFY(t->says("ListItem_FailedChange"));
    taps({"dialogOkButton", "numberField", "key_clear"});
    type("01098765432");
    // What the new way does not need goes, after a question.
    taps({"methodCombo", "item1", "forwardButton"});
    QVERIFY(t->says("ListItem_InformationWillBePermanentlyDeleted"));
    t->frames.clear();
    t->tap("dialogCancelButton");
    QVERIFY(t->settle() && t->sent("1931") < 0 && t->sent("1940") < 0);
    taps({"forwardButton", "dialogOkButton"});
    QTRY_VERIFY(t->says("ListItem_SuccessfullyChanged"));
    QVERIFY(t->sent("1931 0 0 30 31") >= 0 && t->sent("1931") < t->sent("1940"));
    QVERIFY(stored("01098765432").contains(QStringLiteral("card  박지훈")));
    QCOMPARE(t->find<ListRow>("cardRow")->valueKey(), QStringLiteral("NoRegistered"));
}

void PeopleTest::nobodyIsLostByAChange_data() {
    table(R"(delete refused | refuse 1931
        delete unanswered | silent 1931
        link lost at the delete | lose-link-at 1931
        store refused | refuse 1940
        store unanswered | silent 1940
        link lost at the store | lose-link-at 1940
        terminal lost at the store | silent 1940)");
}

void PeopleTest::nobodyIsLostByAChange() {
    const auto [trouble] = values<1>();
    const bool restarts = qstrcmp(QTest::currentDataTag(), "terminal lost at the store") == 0;
    const char* const number = "01031313131";
    const QString name = QStringLiteral("Maximiliana");
    _gui_user_ user{};
    memcpy(user.userId, number, 11);
    memcpy(user.customerId, number, 11);
    setFieldText(user.name, name);
    user.authMethod = 3;
    user.facePresent = user.cardPresent = 1;
    QVERIFY(t->window->SendRecord(command::EnrolNetworkUser, 0, 0, user));
    QVERIFY(findNumber(number));
    taps({"methodCombo", "item1"});
    word(trouble.constData());
    taps({"forwardButton", "dialogOkButton"});
    if (trouble == "refuse 1931") {
        QTRY_VERIFY(t->says("ListItem_FailedChange"));
        QVERIFY(stored(number).contains(name));
        QVERIFY(!QFile::exists(t->root.path("/mnt/data/unstored_user")));
        return;
    }
    if (restarts) {
        QVERIFY(t->sends("1940"));
        QVERIFY(stored(number).isEmpty());
        QVERIFY(t->start());
        t->window->changeWindow(QStringLiteral("userMenuWindow"));
    } else if (trouble.startsWith("silent")) {
        QVERIFY(t->sends(trouble.right(4).constData()));
        expire();
    }
    QTRY_VERIFY(t->says("Error_UserNotStored"));
    const auto* card = t->find<ListRow>("cardRow");
    QVERIFY(restarts || (card && card->valueKey() == QLatin1String("NoRegistered")));
    // Declined, it is offered again wherever users are managed.
    t->tap("dialogCancelButton");
    reconnect();
    t->window->changeWindow(QStringLiteral("stayWindow"));
    t->window->changeWindow(QStringLiteral("user_searchWindow"));
    QTRY_VERIFY(t->says("Error_UserNotStored"));
    t->tap("dialogOkButton");
    QTRY_VERIFY(t->says("ListItem_SuccessfullyChanged"));
    QVERIFY(stored(number).contains(name));
    QVERIFY(!QFile::exists(t->root.path("/mnt/data/unstored_user")));
}

void PeopleTest::aUserIsDeleted() {
    QVERIFY(findNumber("01044447777"));
    t->tap("deleteButton");
    QVERIFY(t->says("ListItem_DeleteUser"));
    t->tap("dialogCancelButton");
    word("refuse 1931");
    taps({"deleteButton", "dialogOkButton"});
    QTRY_VERIFY(t->says("ListItem_FailedDeleted"));
    t->tap("dialogOkButton");
    QVERIFY(!stored("01044447777").isEmpty());
    // The controller may ask as well.
    word("frame 2930 1 1");
    QTRY_VERIFY(t->says("ListItem_DeleteUser"));
    t->tap("dialogOkButton");
    QTRY_VERIFY(t->says("ListItem_UserDeleted"));
    QVERIFY(stored("01044447777").isEmpty());
    t->tap("dialogOkButton");
    QTRY_COMPARE(t->title(), QStringLiteral("user_searchWindow"));
}

void PeopleTest::whatIsMissingIsEnrolled() {
    QVERIFY(findNumber("01066665555"));  // a visitor with nothing but a face
    QVERIFY(t->find("destinationRow") != nullptr);
    t->tap("faceRow");
    QCOMPARE(t->title(), QStringLiteral("userSearch_InfoWindow"));
    t->tap("cardRow");
    QCOMPARE(t->title(), QStringLiteral("userEnroll_qualWindow"));
    _gui_user_ user;
    t->window->GetGuiUser(&user);
    QCOMPARE(fieldText(user.userId), QStringLiteral("01066665555"));
    QCOMPARE(int(user.authMethod), 2);
    // The way goes on with the card alone.
    t->tap("forwardButton");
    QTRY_COMPARE(t->title(), QStringLiteral("userEnroll_reCardTagWindow"));
}

void PeopleTest::hostileRecordsAreShownAsText() {
    searchInVain();
    _gui_user_ user{};
    memset(user.name, 'x', sizeof user.name);  // without a zero
    memcpy(user.name, "<b>Eve</b>\a\xff", 12);
    setFieldText(user.customerId, QString::fromUtf8("١٢٣0101234"));
    memcpy(user.userId, "../../shadow", 12);
    memcpy(user.picture, "/etc/passwd", 11);
    user.authMethod = user.level = user.origin = 0xee;
    giveUser(user);
    QVERIFY(t->shows("userSearch_InfoWindow"));
    QVERIFY(t->find<TextLine>("nameLine")->text().startsWith(QStringLiteral("<b>Eve</b>")));
    QCOMPARE(t->find<InputField>("numberField")->text(), QStringLiteral("0101234"));
    t->tap("forwardButton");
    QVERIFY(t->says("Error_EnterEleven"));
    // A piece of a record is nobody.
    searchInVain();
    word("frame 2973 0 3 3031");
    QTRY_COMPARE(t->title(), QStringLiteral("userSearch_InfoWindow"));
    expire();
    QTRY_VERIFY(t->says("ListItem_UnregisteredID"));
}

void PeopleTest::registrationModeIsSaved() {
    word("settings registration.on 0");
    word("settings registration.autoId 0");
    QVERIFY(t->open("setupRegistModeWindow"));
    QVERIFY(t->find("methodRow") == nullptr);
    const QPoint place = t->place("modeToggle");
    t->tap("modeToggle", 0.2);
    QCOMPARE(t->place("modeToggle"), place);
    t->tap("methodToggle", 0.8);
    t->tap("glassesToggle", 0.8);
    t->tap("retainToggle", 0.2);
    t->tap("levelToggle", 0.8);
    t->tap("forwardButton");
    QTRY_VERIFY(t->says("Dialog_SaveComplate"));
    // The number and the glasses are asked for whatever was chosen.
    QVERIFY(t->sent("1982 1 0 01 02 01 01 00 01 02") >= 0);
    QVERIFY(t->agrees());
}

void PeopleTest::usersAreSent_data() {
    table(R"(nobody is new | settings users.unsent 0 | newUserButton |  | Popup_UploadNoNewUser
        new | settings users.unsent 3 | newUserButton | 1934 0 0 | Popup_UploadComplete
        all | settings users.unsent 0 | allUserButton | 1934 1 0 | Popup_UploadComplete
        no connection | access-controller away | allUserButton | 1934 1 0 | Popup_UploadRestoreConnection
        too many | access-controller full | allUserButton | 1934 1 0 | Popup_UploadExceeded
        wireless | access-controller wireless | allUserButton | 1934 1 0 | Popup_UploadExceededWireless
        another runs | refuse 1934 1 | allUserButton | 1934 1 0 | Popup_UploadCancelFirst
        silence | silent 1934 | allUserButton | 1934 1 0 | Popup_UploadFail
        link lost | lose-link-at 1934 | allUserButton | 1934 1 0 | ListItem_NoController)");
}

void PeopleTest::usersAreSent() {
    const auto [words, button, frame, said] = values<4>();
    word("access-controller ok");
    word("upload-pace 1");
    word(words.constData());
    t->tap("userUploadTile");
    QVERIFY(t->settle());
    t->tap(button.constData());
    if (words.startsWith("silent"))
        expire();
    QTRY_VERIFY(t->says(said.constData()));
    QCOMPARE(t->sent("1934") >= 0, !frame.isEmpty());
    QVERIFY(frame.isEmpty() || t->sent(frame.constData()) >= 0);
    if (said == "Popup_UploadCancelFirst") {
        taps({"dialogOkButton", "cancelButton"});
        QVERIFY(t->sends("1934 0 1"));
        word("frame 2934 4 0");
        QTRY_VERIFY(t->says("Popup_UploadCancel"));
    }
    if (said == "Popup_UploadComplete") {
        // While the next one runs, and while it is being cancelled, there is no other.
        word("upload-pace 60000");
        taps({"dialogOkButton", "allUserButton"});
        QVERIFY(t->sends("1934 1 0"));
        word("silent 1934");
        for (const char* busy : {"allUserButton", "newUserButton"}) {
            t->tap(busy);
            QVERIFY(t->says("Popup_UploadFail"));
            taps({"dialogOkButton", "cancelButton"});
        }
        QVERIFY(t->sends("1934 0 1"));
        word("frame 2934 4 0");
        QTRY_VERIFY(t->says("Popup_UploadCancel"));
    }
    // The controller comes to its end.
    word("upload-pace 0");
    QTRY_VERIFY(said != "Popup_UploadComplete" || t->says(said.constData()));
}

void PeopleTest::aNumberIsChecked_data() {
    table(R"(registered |  | 01023456789 | 
        unknown |  | 09999999999 | ListItem_UnregisteredID
        ten digits |  | 0102345678 | Error_EnterEleven
        refused length | refuse 2027 2 | 01023456789 | Error_EnterEleven
        silence | silent 2027 | 01023456789 | Error_NoResponse
        link lost | lose-link-at 2027 | 01023456789 | ListItem_NoController)");
}

void PeopleTest::aNumberIsChecked() {
    const auto [words, digits, said] = values<3>();
    word("settings setup.authMethod 4");
    QVERIFY(t->open("liveWindow"));
    if (!words.isEmpty())
        word(words.constData());
    t->tap("keypadButton");
    QVERIFY(t->sends("2003 0 0"));
    type(digits.constData());
    t->frames.clear();
    t->tap("forwardButton");
    if (words.startsWith("silent"))
        expire();
    if (said.isEmpty()) {
        QVERIFY(t->shows("liveWindow") && t->settle());
        QVERIFY(t->sent("2011 1 0") >= 0 && t->sent("2010 1 0") > t->sent("2011 1 0") &&
                t->sent("2030 0 0") > t->sent("2010 1 0"));
        word("face 01023456789");
        QVERIFY(t->shows("recognizeWindow"));
        // A second answer finds nobody who asked.
        word("frame 3023 1 0");
        QVERIFY(t->settle());
        QCOMPARE(t->title(), QStringLiteral("recognizeWindow"));
        return;
    }
    QTRY_VERIFY(t->says(said.constData()));
    QCOMPARE(t->sent("2027") >= 0, digits.size() == 11);
    t->tap("dialogOkButton");
    QTRY_VERIFY(t->find("key_0") != nullptr);
    QCOMPARE(t->title(), QStringLiteral("inputSubWindow"));
}

void PeopleTest::groupsAreDeletedAndReported_data() {
    table(R"(general | 0 | delete_Button_GeneralUsers | ListItem_AllRegularUsersDeleted
        administrators | 1 | delete_Button_AdminUsers | ListItem_AllAdminUsersDeleted
        in and out only | 2 | delete_Button_InOutUsers | ListItem_AllAccessUsersDeleted
        all | 3 | delete_Button_AllUsers | ListItem_AllUsersDeleted
        all, slowly | 3 | delete_Button_AllUsers | ListItem_AllUsersDeleted
        all, too late | 3 | delete_Button_AllUsers | Error_NoResponse
        face only | 4 | delete_Button_FaceOnlyUsers | ListItem_AllFaceUsersDeleted)");
}

void PeopleTest::groupsAreDeletedAndReported() {
    const auto [group, button, done] = values<3>();
    t->window->changeWindow(QStringLiteral("stayWindow"));
    word("users 0");
    word("users 60");
    if (group == "1") {
        _gui_user_ user{};
        memcpy(user.userId, "01011112222", 11);
        t->window->SendRecord(command::EnrolNetworkUser, 0, 0, user);
    }
    QVERIFY(t->set({{"network.own.managerAddress", QStringLiteral("127.0.0.1")},
                    {"network.own.managerPort", QString::number(service_->port())},
                    {"network.useManager", QStringLiteral("1")}}));
    QTRY_VERIFY(t->agrees());
    t->window->managementLink()->connectNow();
    QTRY_VERIFY(t->window->managementLink()->connected());
    deleted_.clear();
    t->window->changeWindow(QStringLiteral("userMenuWindow"));
    t->tap("userGroupTile");
    QVERIFY(t->sends("1933 0 0") && t->settle());
    if (done == "Error_NoResponse") {
        word("silent 1932");
        t->tap(button.constData());
        t->tap("dialogOkButton");
        QVERIFY(t->sends("1932 3 0"));
        t->window->getActivateWindowForm()
            ->findChild<QTimer*>(QStringLiteral("answerTimer"))
            ->start(0);
        QTRY_VERIFY(t->says(done.constData()));
        word("frame 2932 0 3");
        word("frame 2932 0 3");
        QTRY_COMPARE(deleted_.size(), 1);
        QVERIFY(t->settle());
        QCOMPARE(deleted_.size(), 1);
        return;
    }
    const bool slowly = qstrcmp(QTest::currentDataTag(), "all, slowly") == 0;
    word(slowly ? "lose-link-at 1932" : "refuse 1932");
    for (const char* said :
         {slowly ? "ListItem_NoController" : "ListItem_FailedDeleted", done.constData()}) {
        t->tap(button.constData());
        QVERIFY(t->find("dialogOkButton") != nullptr);
        t->tap("dialogOkButton");
        if (slowly && said == done) {
            QVERIFY(t->settle());
            emit t->window->findChild<MenuTimer*>()->timedOut(QStringLiteral("stayWindow"));
            word("frame 2932 0 3");
        }
        QTRY_VERIFY(t->says(said));
        reconnect();
        if (slowly)
            word("silent 1932");
        // An order of the service is none of this screen's.
        word("frame 2932 0 0");
        t->tap("dialogOkButton");
    }
    QCOMPARE(t->frames.filter(QStringLiteral("1932 %1 0").arg(QLatin1String(group))).size(), 2);
    QTRY_COMPARE(t->title(), QStringLiteral("userEnrollMenuWindow"));
    // Those who may only go in and out are never told of.
    const bool silent = group == "2";
    if (silent)
        t->window->reportGroupDeleted(9);
    QTRY_COMPARE(deleted_.size(), 1);
    QCOMPARE(deleted_.first().value(QStringLiteral("deleteType")).toString(),
             silent ? QStringLiteral("9") : QString::fromLatin1(group));
    QCOMPARE(QJsonValue(deleted_.first())[QStringLiteral("cardInfo")][QStringLiteral("cardNo")]
                 .toString(),
             QString());
}

QTEST_MAIN(PeopleTest)
#include "people_test.moc"
