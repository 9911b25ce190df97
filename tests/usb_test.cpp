#include <QDir>
#include <QLabel>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTimer>
#include <QWindow>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "app/main_window.h"
#include "app/menu_timer.h"
#include "app/window_form.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/device_link.h"
#include "screens/usb/file_row.h"
#include "sim/controller/controller_sim.h"
#include "sim/device_root.h"
#include "tests/support/text_recorder.h"
#include "ui/input_field.h"
#include "ui/scroll_list.h"

/// The USB screens, as a finger on the panel and the controller see them.
class UsbTest : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { window_.reset(); }
    void whatCanBeDoneIsShownWithAStick();
    void aMountWithoutAnAnswerAsksForAStick();
    void nothingComesAfterTheScreenIsLeft();
    void exportsAreWritten_data();
    void exportsAreWritten();
    void daysAreExported_data();
    void daysAreExported();
    void importsNameTheirFile_data();
    void importsNameTheirFile();
    void usersComeBackFromTheStick();
    void reportsAreShown_data();
    void reportsAreShown();
    void waitingEndsWithoutAResult();
    void namesOfFilesAreHarmless();
    void foldersAreNotLeft();

 private:
    QString word(const QString& line) { return sim_->execute(line); }
    /// Opens the USB menu with the stick in it.
    void openWithStick() {
        window_->changeWindow(QStringLiteral("usbMenuWindow"));
        QTRY_VERIFY(find("actions")->isVisible());
        QCOMPARE(dialog(), QString());
        frames_.clear();
    }
    QString title() const { return window_->getActivateWindowForm()->getTitle(); }
    template <class Widget = QWidget>
    Widget* find(const char* name) {
        const auto all =
            window_->getActivateWindowForm()->findChildren<Widget*>(QLatin1String(name));
        for (Widget* one : all) {
            if (one->isVisible())
                return one;
        }
        return all.value(0);
    }
    QTimer* timer(const char* name) {
        return window_->getWindow(QStringLiteral("usbMenuWindow"))
            ->findChild<QTimer*>(QLatin1String(name));
    }
    /// Lets a timer that runs run out now.
    static void expire(QTimer* timer) {
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 5000);
        timer->setInterval(0);
        QCoreApplication::processEvents();
        timer->setInterval(5000);
    }
    void tap(QWidget* widget, qreal across = 0.5) {
        QVERIFY(widget);
        for (QWidget* up = widget; up != nullptr; up = up->parentWidget()) {
            if (auto* list = qobject_cast<ScrollList*>(up))
                list->reveal(widget);
        }
        const QPoint place(static_cast<int>(widget->width() * across), widget->height() / 2);
        QTest::mouseClick(window_->windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(window_.get(), place));
        QCoreApplication::processEvents();
    }
    void tap(const char* name, qreal across = 0.5) { tap(find(name), across); }
    void type(const char* field, const QByteArray& digits) {
        tap(field);
        for (const char digit : digits)
            tap(window_->findChild<QWidget*>(QStringLiteral("key_") + QLatin1Char(digit)));
        tap(window_->findChild<QWidget*>(QStringLiteral("key_done")));
    }
    FileRow* row(const QString& name) {
        const auto rows = window_->getActivateWindowForm()->findChildren<FileRow*>();
        for (FileRow* row : rows) {
            if (row->name() == name && row->isVisible())
                return row;
        }
        return nullptr;
    }
    /// What the dialog says that is there, if any.
    QString dialog() const { return shown("dialogText"); }
    QString shown(const char* label) const {
        const auto labels = window_->findChildren<QLabel*>(QLatin1String(label));
        for (const QLabel* one : labels) {
            if (one->isVisible())
                return one->text();
        }
        return {};
    }
    QString text(const char* key) const { return window_->getScript(QLatin1String(key)).script; }
    bool says(const char* key) const {
        return !text(key).isEmpty() && dialog().contains(text(key));
    }
    /// The frames of these codes that the terminal has sent, once all it sent are there.
    QStringList sent(const QString& codes) {
        window_->PlaySound(0x7fff);
        if (!QTest::qWaitFor([this] { return frames_.contains(QStringLiteral("1908 0 0 ff7f")); }))
            return {QStringLiteral("no frames")};
        frames_.removeAll(QStringLiteral("1908 0 0 ff7f"));
        return frames_.filter(QRegularExpression(QStringLiteral("^(%1) ").arg(codes)));
    }
    bool heardError() {
        return sent(QStringLiteral("1908")).contains(QStringLiteral("1908 0 0 cb00"));
    }
    void put(const QString& name) {
        QFile file(root_.path("/mnt/usb/ZEL01/") + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("content"), qint64(7));
    }
    QStringList onStick(const QString& pattern) const {
        return QDir(root_.path("/mnt/usb/ZEL01")).entryList({pattern});
    }
    /// Goes through the folders of @p path and chooses the file.
    void choose(const QString& path) {
        const QStringList steps = path.split(QLatin1Char('/'));
        for (const QString& step : steps)
            tap(row(step));
    }

    DeviceRoot root_;
    std::unique_ptr<ControllerSim> sim_;
    std::unique_ptr<MainWindow> window_;
    QStringList frames_;  // from the terminal: code, parameters, payload in hexadecimal
};

void UsbTest::initTestCase() {
    root_.write("/mnt/data/rebootchkr", {});
    sim_ = std::make_unique<ControllerSim>(0, 0, root_.path("/mnt/data"));
    QVERIFY(sim_->listening());
    connect(sim_.get(), &ControllerSim::frameReceived, this,
            [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
                frames_.append(QStringLiteral("%1 %2 %3 %4")
                                   .arg(code)
                                   .arg(p1)
                                   .arg(p2)
                                   .arg(QString::fromLatin1(payload.toHex()))
                                   .trimmed());
            });
    qputenv("ZEL_LINK_PORT", QByteArray::number(sim_->port()));
    QTcpServer free;
    QVERIFY(free.listen(QHostAddress::LocalHost));
    qputenv("ZEL_REST_PORT", QByteArray::number(free.serverPort()));
    free.close();
    word(QStringLiteral("settings setup.language 1"));
    word(QStringLiteral("usb pace 1"));
    window_ = std::make_unique<MainWindow>();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    QTRY_VERIFY(window_->settingsArrived());
}

void UsbTest::init() {
    Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
    window_->changeWindow(QStringLiteral("stayWindow"));
    QCOMPARE(word(QStringLiteral("usb in")), QStringLiteral("ok"));
    // The terminal knows of that before a test begins.
    const int volume = window_->menuRecord().sound.volume == 1 ? 2 : 1;
    word(QStringLiteral("settings sound.volume %1").arg(volume));
    QTRY_COMPARE(int(window_->menuRecord().sound.volume), volume);
}

void UsbTest::whatCanBeDoneIsShownWithAStick() {
    word(QStringLiteral("usb out"));
    window_->changeWindow(QStringLiteral("usbMenuWindow"));
    QTRY_VERIFY(says("ListItem_ReadingUSB"));
    QVERIFY(!find("actions")->isVisible());
    word(QStringLiteral("usb in"));
    QTRY_VERIFY(find("actions")->isVisible());
    QTRY_COMPARE(dialog(), QString());
    QVERIFY(!timer("mountCheckTimer")->isActive());
    QCOMPARE(sent(QStringLiteral("1960")), QStringList(QStringLiteral("1960 0 0")));

    // As long as it is there it is looked for.
    frames_.clear();
    expire(timer("presenceTimer"));
    QCOMPARE(sent(QStringLiteral("1960")).value(0), QStringLiteral("1960 1 0"));
    QVERIFY(timer("presenceTimer")->isActive());
    word(QStringLiteral("frame 2960 7 0"));
    QTRY_VERIFY(!find("actions")->isVisible());
    QVERIFY(!timer("presenceTimer")->isActive());

    tap("refreshButton");
    QTRY_VERIFY(find("actions")->isVisible());
    word(QStringLiteral("usb nofolder"));
    QTRY_VERIFY(!find("actions")->isVisible());
    tap("refreshButton");
    QTRY_VERIFY(says("ListItem_UsbNotHaveZEL01Folder"));
    QVERIFY(heardError());
    QVERIFY(!find("actions")->isVisible());
}

void UsbTest::aMountWithoutAnAnswerAsksForAStick() {
    word(QStringLiteral("usb out"));
    window_->changeWindow(QStringLiteral("usbMenuWindow"));
    QTRY_VERIFY(says("ListItem_ReadingUSB"));
    expire(timer("mountCheckTimer"));
    QVERIFY(says("ListItem_InsertUSB"));
    QVERIFY(heardError());
}

void UsbTest::nothingComesAfterTheScreenIsLeft() {
    openWithStick();
    word(QStringLiteral("usb out"));
    QTRY_VERIFY(!find("actions")->isVisible());
    tap("refreshButton");
    QTRY_VERIFY(says("ListItem_ReadingUSB"));
    word(QStringLiteral("frame 2960 2 1"));
    QTRY_VERIFY(timer("presenceTimer")->isActive());
    window_->changeWindow(QStringLiteral("zelMenuWindow"));
    QVERIFY(!timer("presenceTimer")->isActive());
    expire(timer("mountCheckTimer"));
    QVERIFY(!heardError());
    window_->changeWindow(QStringLiteral("usbMenuWindow"));
    QCOMPARE(dialog(), QString());
    QVERIFY(!find("actions")->isVisible());
}

void UsbTest::exportsAreWritten_data() {
    QTest::addColumn<QString>("tile");
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("keepsMenuTimer");
    const auto row = [](const char* tile, const char* frame, const char* file, bool keeps) {
        QTest::newRow(tile) << QString::fromLatin1(tile) << QString::fromLatin1(frame)
                            << QString::fromLatin1(file) << keeps;
    };
    row("exportUserTile", "1963 2 0", "user_*_*", false);
    row("exportSettingTile", "1963 3 0", "settings_*_*", true);
    row("exportAllTile", "1963 4 1", "all_*_*", false);
}

void UsbTest::exportsAreWritten() {
    QFETCH(QString, tile);
    QFETCH(QString, frame);
    QFETCH(QString, file);
    QFETCH(bool, keepsMenuTimer);
    openWithStick();
    const auto* menuTimer = window_->findChild<MenuTimer*>();
    QVERIFY(menuTimer->isRunning());
    tap(qPrintable(tile));
    QCOMPARE(menuTimer->isRunning(), keepsMenuTimer);
    QTRY_VERIFY(says("ListItem_TransmissionComplete"));
    QCOMPARE(sent(QStringLiteral("196[234]")), QStringList(frame));
    QCOMPARE(onStick(file).size(), 1);
}

void UsbTest::daysAreExported_data() {
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("payload");
    QTest::addColumn<QByteArray>("refusal");
    const QString none;
    QTest::newRow("as it comes up")
        << QByteArray() << QByteArray() << QStringLiteral("1a03011a0309") << QByteArray();
    QTest::newRow("one day") << QByteArray("20240229") << QByteArray("20240229")
                             << QStringLiteral("18021d18021d") << QByteArray();
    QTest::newRow("no such day") << QByteArray("20260229") << QByteArray() << none
                                 << QByteArray("ListItem_CheckInputDate");
    QTest::newRow("not whole") << QByteArray() << QByteArray("2026031") << none
                               << QByteArray("ListItem_CheckInputDate");
    QTest::newRow("too early") << QByteArray("19991231") << QByteArray() << none
                               << QByteArray("ListItem_CheckInputDate");
    QTest::newRow("too late") << QByteArray() << QByteArray("22560101") << none
                              << QByteArray("ListItem_CheckInputDate");
    QTest::newRow("wrong way round") << QByteArray("20260310") << QByteArray() << none
                                     << QByteArray("ListItem_StartDateAfterEndDate");
}

void UsbTest::daysAreExported() {
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QString, payload);
    QFETCH(QByteArray, refusal);
    openWithStick();
    tap("exportLogTile");
    if (!from.isEmpty())
        type("fromField", from);
    if (!to.isEmpty())
        type("toField", to);
    tap("forwardButton");
    if (!refusal.isEmpty()) {
        QVERIFY(says(refusal.constData()));
        QVERIFY(heardError());
        QCOMPARE(sent(QStringLiteral("1963")), QStringList());
        tap("dialogOkButton");
        // What was typed does not matter when all are wanted.
        tap("rangeToggle", 0.2);
        QVERIFY(!find("fromField")->isEnabled());
        tap("forwardButton");
    }
    QCOMPARE(title(), QStringLiteral("usbMenuWindow"));
    QVERIFY(!window_->findChild<MenuTimer*>()->isRunning());
    QTRY_VERIFY(says("ListItem_TransmissionComplete"));
    QCOMPARE(sent(QStringLiteral("1963|1960")),
             QStringList({refusal.isEmpty() ? QStringLiteral("1963 9 0 ") + payload
                                            : QStringLiteral("1963 9 1 000000000000"),
                          QStringLiteral("1960 1 0")}));
}

void UsbTest::importsNameTheirFile_data() {
    QTest::addColumn<QString>("tile");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QByteArray>("result");
    const auto row = [](const char* tile, const char* file, const char* frame,
                        const char* result = "ListItem_TransmissionComplete") {
        QTest::newRow(file) << QString::fromLatin1(tile) << QString::fromUtf8(file)
                            << QString::fromLatin1(frame) << QByteArray(result);
    };
    row("importLogTile", "settings_20260301.dat", "1962 1 0", "ListItem_ImportFailInvalidData");
    row("importUserTile", "user_20260301.dat", "1962 2 0");
    row("importSettingTile", "settings_20260301.dat", "1962 3 0");
    row("importAllTile", "backup/all_20260228.dat", "1962 4 0");
    row("importBackgroundTile", "images/background.png", "1962 5 0");
    row("importCardKeyTile", "card_key.dat", "1962 7 0");
    row("importCardKeyTile", "clé.dat", "1962 7 0");
    row("importLogoTile", "images/logo.png", "1962 8 0");
    row("firmwareTile", "firmware_1.1.0.bin", "1964 0 0", "ListItem_FwRestart");
}

void UsbTest::importsNameTheirFile() {
    QFETCH(QString, tile);
    QFETCH(QString, file);
    QFETCH(QString, frame);
    QFETCH(QByteArray, result);
    put(QStringLiteral("clé.dat"));
    openWithStick();
    tap(qPrintable(tile));
    if (tile == QLatin1String("importLogTile")) {
        QVERIFY(says("ListItem_RunDeleteOldLogs"));
        tap("dialogCancelButton");
        QCOMPARE(title(), QStringLiteral("usbMenuWindow"));
        tap(qPrintable(tile));
        tap("dialogOkButton");
    }
    QCOMPARE(title(), QStringLiteral("usbUploadFileSelector"));
    QVERIFY(!find("forwardButton")->isEnabled());
    choose(file);
    tap("forwardButton");
    QCOMPARE(title(), QStringLiteral("usbMenuWindow"));
    QTRY_VERIFY(says(result.constData()));
    const QByteArray path = (QStringLiteral("/mnt/usb/ZEL01/") + file).toLatin1().toHex();
    QCOMPARE(sent(QStringLiteral("196[234]")),
             QStringList(frame + QLatin1Char(' ') + QString::fromLatin1(path)));
}

void UsbTest::usersComeBackFromTheStick() {
    const QString users = word(QStringLiteral("users"));
    const QStringList before = onStick(QStringLiteral("user_*"));
    openWithStick();
    tap("exportUserTile");
    QTRY_VERIFY(says("ListItem_TransmissionComplete"));
    constexpr unsigned char kEverything = 2;
    window_->SendCommand(command::Initialise, kEverything, 0);
    sent({});
    QVERIFY(word(QStringLiteral("users")) != users);
    tap("dialogOkButton");
    tap("importUserTile");
    const QStringList after = onStick(QStringLiteral("user_*"));
    for (const QString& file : after) {
        if (!before.contains(file))
            choose(file);
    }
    tap("forwardButton");
    QTRY_VERIFY(says("ListItem_TransmissionComplete"));
    QCOMPARE(word(QStringLiteral("users")), users);
}

void UsbTest::reportsAreShown_data() {
    QTest::addColumn<QString>("report");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<bool>("waiting");
    QTest::addColumn<QString>("percent");
    const auto wait = [](const char* report, const char* key, const char* percent = "") {
        QTest::newRow(report) << QString::fromLatin1(report) << QByteArray(key) << true
                              << QString::fromLatin1(percent);
    };
    const auto popup = [](const char* report, const char* key) {
        QTest::newRow(report) << QString::fromLatin1(report) << QByteArray(key) << false
                              << QString();
    };
    wait("2963 1 10", "ListItem_LogExportedUSB");
    wait("2963 2 10", "ListItem_UserDataExportedUSB");
    wait("2963 3 10", "ListItem_SettingDataExportedUSB");
    wait("2963 4 10", "ListItem_AllDataExportedUSB");
    popup("2963 1 0", "ListItem_TransmissionComplete");
    popup("2963 1 2", "ListItem_CannotExportFiles");
    popup("2963 1 1", "ListItem_InsertUSB");
    wait("2962 1 10", "ListItem_LogImportedUSB");
    wait("2962 2 10", "ListItem_UserDataImportedUSB");
    wait("2962 3 10", "ListItem_SettingDataImportedUSB");
    wait("2962 4 10", "ListItem_AllDataImportedUSB");
    wait("2962 5 10", "ListItem_ImageImportedUSB");
    wait("2962 8 10", "ListItem_LogoImageImportedUSB");
    wait("2962 7 10", "");
    popup("2962 2 0", "ListItem_TransmissionComplete");
    popup("2962 2 1", "ListItem_InsertUSB");
    popup("2962 2 2", "ListItem_ExceededMaximumUsers");
    popup("2962 2 3", "ListItem_InsertUSB");
    popup("2962 2 4", "ListItem_ExceededMaximumAdmin");
    popup("2962 2 5", "ListItem_ImportFailInvalidData");
    popup("2962 2 6", "ListItem_NoValidFileFound");
    popup("2962 2 255", "ListItem_InsertUSB");
    wait("2966 0 5", "ListItem_Preparing");
    wait("2966 1 42", "ListItem_Copying", "42%");
    wait("2966 1 42;2966 2 0", "ListItem_Completing", "42%");
    wait("2966 3 50", "");
    wait("2999 2 0", "ListItem_Preparing");
    wait("2999 1 37", "ListItem_Sending", "37");
    wait("2999 3 37", "");
    wait("2964 10 255", "ListItem_upgradingUSB", "100");
    popup("2964 0 0", "ListItem_FwRestart");
    popup("2964 1 0", "ListItem_FwUpgradeFailed");
}

void UsbTest::reportsAreShown() {
    QFETCH(QString, report);
    QFETCH(QByteArray, key);
    QFETCH(bool, waiting);
    QFETCH(QString, percent);
    openWithStick();
    const QStringList reports = report.split(QLatin1Char(';'));
    for (const QString& one : reports)
        word(QStringLiteral("frame ") + one);
    // Behind all that comes a stick without the folder.
    word(QStringLiteral("frame 2960 2 0"));
    QTRY_VERIFY(!find("actions")->isVisible());
    if (key.isEmpty()) {
        QCOMPARE(dialog(), QString());
        return;
    }
    const QString expected = text(key.constData()).replace(QLatin1String("%1"), percent);
    QVERIFY2(dialog().contains(expected), qPrintable(dialog()));
    const QWidget* popup = find("screenPopup");
    QCOMPARE(popup != nullptr && popup->isVisible(), !waiting);
    if (percent.endsWith(QLatin1Char('%')))
        QCOMPARE(shown("waitPercent"), percent);
}

void UsbTest::waitingEndsWithoutAResult() {
    openWithStick();
    word(QStringLiteral("usb pace 60000"));
    tap("exportUserTile");
    QTRY_VERIFY(says("ListItem_UserDataExportedUSB"));
    word(QStringLiteral("frame 2960 1 0"));
    QTRY_COMPARE(dialog(), QString());

    word(QStringLiteral("frame 2960 0 1"));
    word(QStringLiteral("frame 2966 1 10"));
    QTRY_VERIFY(says("ListItem_Copying"));
    word(QStringLiteral("drop"));
    QTRY_VERIFY(!window_->linkUp());
    expire(timer("presenceTimer"));
    QCOMPARE(dialog(), QString());
    window_->findChild<DeviceLink*>()->open(sim_->port());
    QTRY_VERIFY(window_->linkUp());
    word(QStringLiteral("usb pace 1"));
    QTRY_VERIFY(says("ListItem_TransmissionComplete"));
}

void UsbTest::namesOfFilesAreHarmless() {
    const QString longName(200, QLatin1Char('w'));
    const QStringList names{QStringLiteral("<b>bold<br>.dat"), QStringLiteral("a\nb.dat"),
                            QString::fromUtf8("back\u202Etad.exe"), longName,
                            QString::fromUtf8("사용자.dat")};
    QDir(root_.path("/mnt/usb/ZEL01")).mkpath(QStringLiteral("odd"));
    for (const QString& name : names)
        put(QStringLiteral("odd/") + name);
    openWithStick();
    tap("importUserTile");
    tap(row(QStringLiteral("odd")));
    TextRecorder recorder(window_->size());
    window_->render(&recorder);
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

    tap(row(longName));
    QVERIFY(find("forwardButton")->isEnabled());
    tap(row(names.at(4)));
    QVERIFY(says("ListItem_UsbFileName"));
    QVERIFY(!heardError());
    tap("dialogOkButton");
    QVERIFY(row(longName)->isSelected());
    QVERIFY(!row(names.at(4))->isSelected());
}

void UsbTest::foldersAreNotLeft() {
    const QDir stick(root_.path("/mnt/usb/ZEL01"));
    stick.mkpath(QStringLiteral("many/below"));
    for (int i = 0; i < 600; ++i)
        put(QStringLiteral("many/%1").arg(i));
    QFile::link(root_.path("/mnt/data"), stick.filePath(QStringLiteral("link")));
    put(QStringLiteral(".hidden"));
    openWithStick();
    tap("importUserTile");
    QVERIFY(row(QStringLiteral("many")));
    QVERIFY(!row(QStringLiteral("link")));
    QVERIFY(!row(QStringLiteral(".hidden")));
    QVERIFY(!row(QStringLiteral("..")));
    tap(row(QStringLiteral("many")));
    const auto visible = window_->getActivateWindowForm()->findChildren<FileRow*>();
    QCOMPARE(std::count_if(visible.begin(), visible.end(),
                           [](const FileRow* row) { return row->isVisible(); }),
             500);
    tap("backButton");
    QVERIFY(row(QStringLiteral("many")));
    // Back on the menu the stick is still mounted.
    frames_.clear();
    tap("backButton");
    QCOMPARE(sent(QStringLiteral("1960")), QStringList(QStringLiteral("1960 1 0")));
    QVERIFY(find("actions")->isVisible());

    QVERIFY(QDir().rename(stick.path(), stick.path() + QStringLiteral(".away")));
    QFile::link(root_.path("/mnt/data"), stick.path());
    tap("importUserTile");
    QVERIFY(!row(QStringLiteral("input")));
    QVERIFY(find("emptyLabel")->isVisible());
    QFile::remove(stick.path());
    QVERIFY(QDir().rename(stick.path() + QStringLiteral(".away"), stick.path()));
}

QTEST_MAIN(UsbTest)
#include "usb_test.moc"
