#include <QDir>

#include "base/clock.h"
#include "tests/support/driven_test.h"

/// The USB screens, as a finger on the panel and the controller see them.
class UsbTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        word("usb pace 1");
        t->phrases["STICK"] = ":usbMenuWindow +actions -? []";
        t->phrases["ERROR"] = "^1908_0_0_cb_00";
        t->phrases["DONE"] = "?ListItem_TransmissionComplete";
    }
    void init() {
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
        QVERIFY(begin());
        PLAYS("!usb_in []");
    }

    void whatCanBeDoneIsShownWithAStick() {
        word("usb out");
        window()->changeWindow(QStringLiteral("usbMenuWindow"));
        // As long as it is there it is looked for.
        PLAYS(R"(?ListItem_ReadingUSB -actions !usb_in +actions -? -*mountCheckTimer [1960_0_0]
            *presenceTimer5000 [1960_1_0] *presenceTimer5000 [1960_1_0]
            !frame_2960_7_0 -actions -*presenceTimer refreshButton +actions
            !usb_nofolder -actions refreshButton ?ListItem_UsbNotHaveZEL01Folder ERROR -actions
            -*mountCheckTimer)");
        // Nothing can be done with such a stick, also where another one was before.
        PLAYS(R"(!frame_2960_2_1 +actions !frame_2960_0_0 -actions =ListItem_UsbNoFolder !usb_out OK
            refreshButton ?ListItem_ReadingUSB *mountCheckTimer5000 ?ListItem_InsertUSB)");
    }

    void nothingComesAfterTheScreenIsLeft() {
        PLAYS(R"(STICK !usb_out -actions refreshButton ?ListItem_ReadingUSB !frame_2960_2_1 +actions
            :zelMenuWindow -*presenceTimer *mountCheckTimer5000 -^1908_0_0_cb_00)");
        window()->changeWindow(QStringLiteral("usbMenuWindow"));
        QVERIFY(t->dialogText().isEmpty() && !t->find("actions"));
    }

    void exportsAreWritten_data() {
        table(R"(user | exportUserTile ~ DONE [1963_2_0]
            settings | exportSettingTile -~ DONE [1963_3_0]
            all | exportAllTile ~ DONE [1963_4_1])");
    }
    void exportsAreWritten() {
        const auto [steps] = values<1>();
        PLAYS("STICK -~ " + steps);
        const QDir stick(t->root.path("/mnt/usb/ZEL01"));
        const QString files = QLatin1String(QTest::currentDataTag()) + QLatin1String("_*_*");
        QCOMPARE(stick.entryList({files}).size(), 1);
    }

    void daysAreExported_data() {
        // What was typed does not matter when all are wanted.
        table(R"(as they are | NEXT SENT [1963_9_0_1a_03_01_1a_03_09,1960_1_0]
            one | fromField #20240229D toField #20240229D NEXT SENT
                [1963_9_0_18_02_1d_18_02_1d,1960_1_0]
            no day | fromField #20260229D NEXT ?ListItem_CheckInputDate ALL
            half a day | toField #2026031D NEXT ?ListItem_CheckInputDate ALL
            too early | fromField #19991231D NEXT ?ListItem_CheckInputDate ALL
            too late | toField #22560101D NEXT ?ListItem_CheckInputDate ALL
            in no order | fromField #20260310D NEXT ?ListItem_StartDateAfterEndDate ALL)");
    }
    void daysAreExported() {
        t->phrases["SENT"] = "@usbMenuWindow ~ DONE";
        t->phrases["ALL"] = R"(ERROR -^1963 OK <rangeToggle -+fromField NEXT SENT
            [1963_9_1_00_00_00_00_00_00,1960_1_0])";
        const auto [steps] = values<1>();
        PLAYS("STICK exportLogTile " + steps);
    }

    void importsNameTheirFile_data() {
        table(R"(log | importLogTile ?ListItem_RunDeleteOldLogs NO @usbMenuWindow importLogTile OK
                | settings_20260301.dat | 1962_1_0 | ListItem_ImportFailInvalidData
            user | importUserTile | user_20260301.dat | 1962_2_0
            settings | importSettingTile | settings_20260301.dat | 1962_3_0
            all | importAllTile | backup/all_20260228.dat | 1962_4_0
            picture | importBackgroundTile | images/background.png | 1962_5_0
            key | importCardKeyTile | card_key.dat | 1962_7_0
            name | importCardKeyTile | clé.dat | 1962_7_0
            logo | importLogoTile | images/logo.png | 1962_8_0
            firmware | firmwareTile | firmware_1.1.0.bin | 1964_0_0 | ListItem_FwRestart)");
    }
    void importsNameTheirFile() {
        const auto [tile, file, frame, result] = values<4>();
        put(QStringLiteral("clé.dat"));
        t->phrases["SAID"] = '?' + (result.isEmpty() ? "ListItem_TransmissionComplete" : result);
        const QByteArray path = "/mnt/usb/ZEL01/" + QString::fromUtf8(file).toLatin1();
        PLAYS("STICK " + tile + " @usbUploadFileSelector -+forwardButton /" +
              QByteArray(file).replace("/", " /") + " NEXT @usbMenuWindow ~ SAID [" + frame + '_' +
              path.toHex('_') + ']');
        if (result.endsWith("Restart"))
            PLAYS(":stayWindow SAID");
    }

    void reportsAreShown() {
        const struct {
            const char* report;
            const char* percent;
            const char* said;  // for each value of %1, - for nothing, ! where it is a popup
        } cases[] = {
            {"2963 %1 10", "",
             "1 LogExportedUSB 2 UserDataExportedUSB 3 SettingDataExportedUSB 4 "
             "AllDataExportedUSB"},
            {"2963 1 %1", "", "0 !TransmissionComplete 1 !InsertUSB 2 !CannotExportFiles"},
            {"2962 %1 10", "",
             "1 LogImportedUSB 2 UserDataImportedUSB 3 SettingDataImportedUSB "
             "4 AllDataImportedUSB 5 ImageImportedUSB 7 - 8 LogoImageImportedUSB"},
            {"2962 2 %1", "",
             "0 !TransmissionComplete 1 !InsertUSB 2 !ExceededMaximumUsers 3 !InsertUSB "
             "4 !ExceededMaximumAdmin 5 !ImportFailInvalidData 6 !NoValidFileFound "
             "255 !InsertUSB"},
            {"2966 %1 5", "", "0 Preparing 3 -"},
            {"2966 %1 42", "42%", "1 Copying"},
            {"2966 1 42;2966 %1 0", "42%", "2 Completing"},
            {"2999 %1 37", "37", "1 Sending 2 Preparing 3 -"},
            {"2964 %1 255", "100", "10 upgradingUSB 0 !FwRestart 1 !FwUpgradeFailed"},
        };
        for (const auto& one : cases) {
            const QStringList said = QString::fromLatin1(one.said).split(QLatin1Char(' '));
            for (int i = 0; i < said.size(); i += 2) {
                const QString reports = QString::fromLatin1(one.report).arg(said[i]);
                const bool isPopup = said[i + 1].startsWith(QLatin1Char('!'));
                const QString key = QStringLiteral("ListItem_") + said[i + 1].mid(isPopup ? 1 : 0);
                PLAYS("STICK");
                for (const QString& report : reports.split(QLatin1Char(';')))
                    QVERIFY(t->tell(QStringLiteral("frame ") + report));
                QVERIFY(t->settle());
                const QString percent = QLatin1String(one.percent);
                QString expected = window()->getScript(key).script;
                expected.replace(QLatin1String("%1"), percent);
                QVERIFY2(t->dialogText().contains(expected), qPrintable(reports));
                QCOMPARE(t->dialogText().isEmpty(), said[i + 1] == QLatin1String("-"));
                QVERIFY2(t->find("screenPopup") == nullptr || isPopup, qPrintable(reports));
                if (percent.endsWith(QLatin1Char('%')))
                    QCOMPARE(t->find<QLabel>("waitPercent")->text(), percent);
                init();
            }
        }
    }

    void interruptionsAreTold_data() {
        // Nothing else is begun without the controller.
        table(R"(no stick | !frame_2960_1_0 | REMOVED
            no folder | !frame_2960_2_0 | REMOVED
            not written | !frame_2963_2_1 | REMOVED
            no controller | !drop | ?ListItem_TransferInterrupted ?ListItem_LinkLost OK
                exportUserTile ?ListItem_NoController OK refreshButton -?)");
    }
    void interruptionsAreTold() {
        t->phrases["REMOVED"] = "?ListItem_TransferInterrupted ?ListItem_UsbRemoved ERROR";
        const auto [trouble, told] = values<2>();
        PLAYS("STICK !frame_2966_1_10 ?ListItem_Copying " + trouble + ' ' + told);
    }

    void whatEndsACopyIsToldOnce() {
        // The stick is pulled, and the controller says so twice. A copy may go on all the same.
        PLAYS(R"(STICK !usb_pace_50 exportUserTile ?ListItem_Copying !usb_out
            ?ListItem_TransferInterrupted ERROR [] !usb_pace_1 !frame_2963_2_1 -^1908_0_0_cb_00
            ?ListItem_TransferInterrupted !frame_2964_1_0 [] ?ListItem_TransferInterrupted
            !frame_2966_1_90 ?ListItem_Copying !frame_2963_2_0 DONE OK -?)");
    }

    void aFaultDoesNotEndACopy() {
        // What comes below it waits; a new language reaches both.
        PLAYS(R"(STICK !frame_2966_1_42 ?ListItem_Copying !fault_tamper ?Popup_ErrTamper
            !frame_2966_1_60 !settings_setup.language_2 [] ?Popup_ErrTamper =TopMenu_OK OK
            ?ListItem_Copying waitPercent=60% !fault_tamper ?Popup_ErrTamper !frame_2963_1_0
            !fault_none DONE OK -?)");
        QCOMPARE(window()->menuRecord().setup.language, quint8(2));
        word("settings setup.language 1");
    }

    void namesOfFilesAreHarmless() {
        const QString longName(200, QLatin1Char('w'));
        const QStringList names{QStringLiteral("<b>bold<br>.dat"), QStringLiteral("a\nb.dat"),
                                QString::fromUtf8("back\u202Etad.exe"), longName,
                                QString::fromUtf8("사용자.dat")};
        QDir(t->root.path("/mnt/usb/ZEL01")).mkpath(QStringLiteral("odd"));
        for (const QString& name : names)
            put(QStringLiteral("odd/") + name);
        PLAYS("STICK importUserTile /odd");
        PaintRecorder recorder(t->window->size());
        t->window->render(&recorder);
        // A line is painted in as many pieces as it needs fonts.
        QString painted;
        for (const PaintRecorder::Text& text : recorder.texts())
            painted += text.text;
        const QChar sign = QChar::ReplacementCharacter;
        QVERIFY(painted.contains(names.at(0)));
        QVERIFY(painted.contains(QStringLiteral("a%1b.dat").arg(sign)));
        QVERIFY(painted.contains(QStringLiteral("back%1tad.exe").arg(sign)));
        const auto& texts = recorder.texts();
        QVERIFY(std::any_of(texts.begin(), texts.end(), [](const PaintRecorder::Text& one) {
            return one.text.startsWith(QStringLiteral("www")) && one.text.endsWith(QChar(0x2026)) &&
                   one.ink.right() < 413;
        }));

        PLAYS('/' + longName.toUtf8() + " +forwardButton /" + names.at(4).toUtf8() +
              " ?ListItem_UsbFileName -^1908_0_0_cb_00 OK");
        QCOMPARE(t->find<RowList>("list")->selected(), t->row(longName));
    }

    void foldersAreNotLeft() {
        const QDir stick(t->root.path("/mnt/usb/ZEL01"));
        stick.mkpath(QStringLiteral("many/below"));
        for (int i = 0; i < 600; ++i)
            put(QStringLiteral("many/%1").arg(i));
        QFile::link(t->root.path("/mnt/data"), stick.filePath(QStringLiteral("link")));
        put(QStringLiteral(".hidden"));
        PLAYS("STICK importUserTile");
        for (const char* name : {"link", ".hidden", ".."})
            QVERIFY2(!t->row(QLatin1String(name)).isValid(), name);
        PLAYS("/many");
        QCOMPARE(t->find<RowList>("list")->model()->rowCount(), 500);
        // Back on the menu the stick is still mounted.
        PLAYS("BACK");
        QVERIFY(t->row(QStringLiteral("many")).isValid());
        PLAYS("[] BACK [1960_1_0] +actions");
        QVERIFY(QDir().rename(stick.path(), stick.path() + QStringLiteral(".away")));
        QFile::link(t->root.path("/mnt/data"), stick.path());
        PLAYS("importUserTile =Info_NoFiles");
        QVERIFY(!t->row(QStringLiteral("input")).isValid());
        QFile::remove(stick.path());
        QVERIFY(QDir().rename(stick.path() + QStringLiteral(".away"), stick.path()));
    }

 private:
    void put(const QString& name) {
        QFile file(t->root.path("/mnt/usb/ZEL01/") + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("content"), qint64(7));
    }
};

QTEST_MAIN(UsbTest)
#include "usb_test.moc"
