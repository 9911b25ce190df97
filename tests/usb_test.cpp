#include <QDir>
#include <QRegularExpression>
#include <QTimer>
#include <algorithm>

#include "app/menu_timer.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "tests/support/driven_test.h"
#include "ui/dialog_overlay.h"
#include "ui/scroll_list.h"

/// The USB screens, as a finger on the panel and the controller see them.
class UsbTest : public DrivenTest {
    Q_OBJECT

 private slots:
    void initTestCase() {
        DrivenTest::initTestCase();
        words({"settings setup.language 1", "usb pace 1"});
    }
    void init() {
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
        t->window->changeWindow(QStringLiteral("stayWindow"));
        DialogOverlay::closeAll(window());
        word("usb in");
        QVERIFY(t->settle());
    }

    void whatCanBeDoneIsShownWithAStick() {
        word("usb out");
        t->window->changeWindow(QStringLiteral("usbMenuWindow"));
        QTRY_VERIFY(t->says("ListItem_ReadingUSB"));
        QVERIFY(!actions());
        word("usb in");
        QTRY_VERIFY(actions());
        QTRY_COMPARE(t->dialogText(), QString());
        QVERIFY(!timer("mountCheckTimer")->isActive());
        QCOMPARE(sent("1960"), QStringList(QStringLiteral("1960 0 0")));

        // As long as it is there it is looked for.
        t->frames.clear();
        expire(timer("presenceTimer"));
        QCOMPARE(sent("1960").value(0), QStringLiteral("1960 1 0"));
        QVERIFY(timer("presenceTimer")->isActive());
        word("frame 2960 7 0");
        QTRY_VERIFY(!actions());
        QVERIFY(!timer("presenceTimer")->isActive());

        t->tap("refreshButton");
        QTRY_VERIFY(actions());
        word("usb nofolder");
        QTRY_VERIFY(!actions());
        t->tap("refreshButton");
        QTRY_VERIFY(t->says("ListItem_UsbNotHaveZEL01Folder"));
        QVERIFY(heardError());
        QVERIFY(!actions());
        QVERIFY(!timer("mountCheckTimer")->isActive());
        // Nothing can be done with such a stick, also where another one was before.
        word("frame 2960 2 1");
        QTRY_VERIFY(actions());
        word("frame 2960 0 0");
        QTRY_VERIFY(!actions());
        QVERIFY(t->readsKey("ListItem_UsbNoFolder"));
        word("usb out");
        t->tap("dialogOkButton");
        t->tap("refreshButton");
        QTRY_VERIFY(t->says("ListItem_ReadingUSB"));
        expire(timer("mountCheckTimer"));
        QVERIFY(t->says("ListItem_InsertUSB"));
    }

    void nothingComesAfterTheScreenIsLeft() {
        openWithStick();
        word("usb out");
        QTRY_VERIFY(!actions());
        t->tap("refreshButton");
        QTRY_VERIFY(t->says("ListItem_ReadingUSB"));
        word("frame 2960 2 1");
        QTRY_VERIFY(timer("presenceTimer")->isActive());
        t->window->changeWindow(QStringLiteral("zelMenuWindow"));
        QVERIFY(!timer("presenceTimer")->isActive());
        expire(timer("mountCheckTimer"));
        QVERIFY(!heardError());
        t->window->changeWindow(QStringLiteral("usbMenuWindow"));
        QCOMPARE(t->dialogText(), QString());
        QVERIFY(!actions());
    }

    void exportsAreWritten() {
        const struct {
            const char* tile;
            const char* frame;
            const char* file;
            bool keepsMenuTimer;
        } cases[] = {{"exportUserTile", "1963 2 0", "user_*_*", false},
                     {"exportSettingTile", "1963 3 0", "settings_*_*", true},
                     {"exportAllTile", "1963 4 1", "all_*_*", false}};
        for (const auto& one : cases) {
            openWithStick();
            const auto* menuTimer = t->window->findChild<MenuTimer*>();
            QVERIFY(menuTimer->isRunning());
            t->tap(one.tile);
            QCOMPARE(menuTimer->isRunning(), one.keepsMenuTimer);
            QTRY_VERIFY(t->says("ListItem_TransmissionComplete"));
            QCOMPARE(sent("196[234]"), QStringList(QLatin1String(one.frame)));
            QCOMPARE(onStick(QLatin1String(one.file)).size(), 1);
            init();
        }
    }

    void daysAreExported() {
        const struct {
            const char* from;
            const char* to;
            const char* payload;  // or the popup that refuses the days
        } cases[] = {{"", "", "1a 03 01 1a 03 09"},
                     {"20240229", "20240229", "18 02 1d 18 02 1d"},
                     {"20260229", "", "ListItem_CheckInputDate"},
                     {"", "2026031", "ListItem_CheckInputDate"},
                     {"19991231", "", "ListItem_CheckInputDate"},
                     {"", "22560101", "ListItem_CheckInputDate"},
                     {"20260310", "", "ListItem_StartDateAfterEndDate"}};
        for (const auto& one : cases) {
            openWithStick();
            t->tap("exportLogTile");
            type("fromField", one.from);
            type("toField", one.to);
            t->tap("forwardButton");
            QString frame = QLatin1String("1963 9 0 ") + QLatin1String(one.payload);
            if (frame.contains(QLatin1String("ListItem"))) {
                QVERIFY2(t->says(one.payload), one.from);
                QVERIFY(heardError());
                QCOMPARE(sent("1963"), QStringList());
                t->tap("dialogOkButton");
                // What was typed does not matter when all are wanted.
                const QWidget* range = t->find("rangeToggle");
                t->tap(range->mapTo(t->window.get(), QPoint(40, 28)));
                QVERIFY(!t->find("fromField")->isEnabled());
                t->tap("forwardButton");
                frame = QStringLiteral("1963 9 1 00 00 00 00 00 00");
            }
            QCOMPARE(t->title(), QStringLiteral("usbMenuWindow"));
            QVERIFY(!t->window->findChild<MenuTimer*>()->isRunning());
            QTRY_VERIFY(t->says("ListItem_TransmissionComplete"));
            QCOMPARE(sent("1963|1960"), QStringList({frame, QStringLiteral("1960 1 0")}));
            init();
        }
    }

    void importsNameTheirFile() {
        const char* const done = "ListItem_TransmissionComplete";
        const struct {
            const char* tile;
            const char* file;
            const char* frame;
            const char* result;
        } cases[] = {
            {"importLogTile", "settings_20260301.dat", "1962 1 0",
             "ListItem_ImportFailInvalidData"},
            {"importUserTile", "user_20260301.dat", "1962 2 0", done},
            {"importSettingTile", "settings_20260301.dat", "1962 3 0", done},
            {"importAllTile", "backup/all_20260228.dat", "1962 4 0", done},
            {"importBackgroundTile", "images/background.png", "1962 5 0", done},
            {"importCardKeyTile", "card_key.dat", "1962 7 0", done},
            {"importCardKeyTile", "clé.dat", "1962 7 0", done},
            {"importLogoTile", "images/logo.png", "1962 8 0", done},
            {"firmwareTile", "firmware_1.1.0.bin", "1964 0 0", "ListItem_FwRestart"},
        };
        put(QStringLiteral("clé.dat"));
        for (const auto& one : cases) {
            openWithStick();
            t->tap(one.tile);
            if (qstrcmp(one.tile, "importLogTile") == 0) {
                QVERIFY(t->says("ListItem_RunDeleteOldLogs"));
                t->tap("dialogCancelButton");
                QCOMPARE(t->title(), QStringLiteral("usbMenuWindow"));
                t->tap(one.tile);
                t->tap("dialogOkButton");
            }
            QCOMPARE(t->title(), QStringLiteral("usbUploadFileSelector"));
            QVERIFY(!t->find("forwardButton")->isEnabled());
            const QString file = QString::fromUtf8(one.file);
            choose(file);
            t->tap("forwardButton");
            QCOMPARE(t->title(), QStringLiteral("usbMenuWindow"));
            QVERIFY(!t->window->findChild<MenuTimer*>()->isRunning());
            QTRY_VERIFY2(t->says(one.result), one.file);
            const QByteArray path = (QStringLiteral("/mnt/usb/ZEL01/") + file).toLatin1();
            QCOMPARE(sent("196[234]"), QStringList(QLatin1String(one.frame) + QLatin1Char(' ') +
                                                   QLatin1String(path.toHex(' '))));
            if (qstrcmp(one.tile, "firmwareTile") == 0) {
                t->window->changeWindow(QStringLiteral("stayWindow"));
                QVERIFY(t->says(one.result));
            }
            init();
        }
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
                openWithStick();
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

    void interruptionsAreTold() {
        const struct {
            const char* words;
            const char* reason;
        } cases[] = {{"frame 2960 1 0", "ListItem_UsbRemoved"},
                     {"frame 2960 2 0", "ListItem_UsbRemoved"},
                     {"frame 2963 2 1", "ListItem_UsbRemoved"},
                     {"drop", "ListItem_LinkLost"}};
        for (const auto& one : cases) {
            openWithStick();
            word("frame 2966 1 10");
            QTRY_VERIFY(t->says("ListItem_Copying"));
            word(one.words);
            QTRY_VERIFY2(t->says("ListItem_TransferInterrupted"), one.words);
            QVERIFY(t->find<QLabel>("dialogSecondText")->text().contains(t->text(one.reason)));
            if (!t->window->linkUp()) {
                // Nothing else is begun without the controller.
                DialogOverlay::closeAll(window());
                t->tap("exportUserTile");
                QVERIFY(t->says("ListItem_NoController"));
                t->tap("dialogOkButton");
                t->tap("refreshButton");
                QCOMPARE(t->dialogText(), QString());
                QVERIFY(t->reconnect());
            } else {
                QVERIFY(heardError());
            }
            init();
        }
        // The stick is pulled, and the controller says so twice; once is enough.
        openWithStick();
        word("usb pace 50");
        t->tap("exportUserTile");
        QTRY_VERIFY(t->says("ListItem_Copying"));
        word("usb out");
        QTRY_VERIFY(t->says("ListItem_TransferInterrupted"));
        QVERIFY(t->settle());  // its sound has been told
        t->frames.clear();
        words({"usb pace 1", "frame 2963 2 1"});
        QVERIFY(!heardError());
        QVERIFY(t->says("ListItem_TransferInterrupted"));
        word("frame 2964 1 0");
        QVERIFY(t->settle());
        QVERIFY(t->says("ListItem_TransferInterrupted"));
        // A copy that has gone on all the same.
        word("frame 2966 1 90");
        QTRY_VERIFY(t->says("ListItem_Copying"));
        word("frame 2963 2 0");
        QTRY_VERIFY(t->says("ListItem_TransmissionComplete"));
        t->tap("dialogOkButton");
        QCOMPARE(t->dialogText(), QString());
    }

    void aFaultDoesNotEndACopy() {
        openWithStick();
        word("frame 2966 1 42");
        QTRY_VERIFY(t->says("ListItem_Copying"));
        word("fault tamper");
        QTRY_VERIFY(t->says("Popup_ErrTamper"));
        // What comes below it waits; a new language reaches both.
        words({"frame 2966 1 60", "settings setup.language 2"});
        QTRY_COMPARE(t->window->menuRecord().setup.language, quint8(2));
        QVERIFY(t->says("Popup_ErrTamper"));
        QVERIFY(t->readsKey("TopMenu_OK"));
        t->tap("dialogOkButton");
        QVERIFY(t->says("ListItem_Copying"));
        QCOMPARE(t->find<QLabel>("waitPercent")->text(), QStringLiteral("60%"));
        word("fault tamper");
        QTRY_VERIFY(t->says("Popup_ErrTamper"));
        word("frame 2963 1 0");
        QVERIFY(t->settle());
        word("fault none");
        QTRY_VERIFY(t->says("ListItem_TransmissionComplete"));
        t->tap("dialogOkButton");
        QCOMPARE(t->dialogText(), QString());
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
        openWithStick();
        t->tap("importUserTile");
        choose(QStringLiteral("odd"));
        TextRecorder recorder(t->window->size());
        t->window->render(&recorder);
        // A line is painted in as many pieces as it needs fonts.
        QString painted;
        for (const TextRecorder::Text& text : recorder.texts())
            painted += text.text;
        const QChar sign = QChar::ReplacementCharacter;
        QVERIFY(painted.contains(names.at(0)));
        QVERIFY(painted.contains(QStringLiteral("a%1b.dat").arg(sign)));
        QVERIFY(painted.contains(QStringLiteral("back%1tad.exe").arg(sign)));
        const auto& texts = recorder.texts();
        QVERIFY(std::any_of(texts.begin(), texts.end(), [](const TextRecorder::Text& one) {
            return one.text.startsWith(QStringLiteral("www")) && one.text.endsWith(QChar(0x2026)) &&
                   one.ink.right() < 413;
        }));

        choose(longName);
        QVERIFY(t->find("forwardButton")->isEnabled());
        choose(names.at(4));
        QVERIFY(t->says("ListItem_UsbFileName"));
        QVERIFY(!heardError());
        t->tap("dialogOkButton");
        QVERIFY(isChosen(longName));
    }

    void foldersAreNotLeft() {
        const QDir stick(t->root.path("/mnt/usb/ZEL01"));
        stick.mkpath(QStringLiteral("many/below"));
        for (int i = 0; i < 600; ++i)
            put(QStringLiteral("many/%1").arg(i));
        QFile::link(t->root.path("/mnt/data"), stick.filePath(QStringLiteral("link")));
        put(QStringLiteral(".hidden"));
        openWithStick();
        t->tap("importUserTile");
        QVERIFY(row(QStringLiteral("many")).isValid());
        QVERIFY(!row(QStringLiteral("link")).isValid());
        QVERIFY(!row(QStringLiteral(".hidden")).isValid());
        QVERIFY(!row(QStringLiteral("..")).isValid());
        choose(QStringLiteral("many"));
        QCOMPARE(t->find<RowList>("list")->model()->rowCount(), 500);
        t->tap("backButton");
        QVERIFY(row(QStringLiteral("many")).isValid());
        // Back on the menu the stick is still mounted.
        t->frames.clear();
        t->tap("backButton");
        QCOMPARE(sent("1960"), QStringList(QStringLiteral("1960 1 0")));
        QVERIFY(actions());

        QVERIFY(QDir().rename(stick.path(), stick.path() + QStringLiteral(".away")));
        QFile::link(t->root.path("/mnt/data"), stick.path());
        t->tap("importUserTile");
        QVERIFY(!row(QStringLiteral("input")).isValid());
        QVERIFY(t->readsKey("Info_NoFiles"));
        QFile::remove(stick.path());
        QVERIFY(QDir().rename(stick.path() + QStringLiteral(".away"), stick.path()));
    }

 private:
    /// Opens the USB menu with the stick in it.
    void openWithStick() {
        t->window->changeWindow(QStringLiteral("usbMenuWindow"));
        QTRY_VERIFY(actions() && t->dialogText().isEmpty());
        t->frames.clear();
    }
    bool actions() const { return t->find("actions") != nullptr; }
    QTimer* timer(const char* name) { return t->window->findChild<QTimer*>(QLatin1String(name)); }
    /// Lets a timer that runs run out now.
    static void expire(QTimer* timer) {
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 5000);
        timer->setInterval(0);
        QCoreApplication::processEvents();
        timer->setInterval(5000);
    }
    void type(const char* field, const QByteArray& digits) {
        if (digits.isEmpty())
            return;
        t->tap(field);
        for (const char digit : digits)
            t->tap(QByteArray("key_").append(digit).constData());
        t->tap("key_done");
    }
    QModelIndex row(const QString& name) const { return t->row(name); }
    bool isChosen(const QString& name) const {
        return t->find<RowList>("list")->selected() == row(name) && row(name).isValid();
    }
    /// Goes through the folders of @p path and chooses the file.
    void choose(const QString& path) {
        const QStringList steps = path.split(QLatin1Char('/'));
        for (const QString& step : steps) {
            QVERIFY2(row(step).isValid(), qPrintable(step));
            t->tapRow(row(step));
        }
    }
    /// The frames of these codes that the terminal has sent, once all it sent are there.
    QStringList sent(const char* codes) {
        if (!t->settle())
            return {QStringLiteral("no frames")};
        return t->frames.filter(
            QRegularExpression(QLatin1String("^(") + QLatin1String(codes) + QLatin1String(") ")));
    }
    bool heardError() { return sent("1908").contains(QStringLiteral("1908 0 0 cb 00")); }
    void put(const QString& name) {
        QFile file(t->root.path("/mnt/usb/ZEL01/") + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("content"), qint64(7));
    }
    QStringList onStick(const QString& pattern) const {
        return QDir(t->root.path("/mnt/usb/ZEL01")).entryList({pattern});
    }
};

QTEST_MAIN(UsbTest)
#include "usb_test.moc"