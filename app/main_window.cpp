#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHoverEvent>
#include <QLoggingCategory>
#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "app/management_link.h"
#include "app/menu_timer.h"
#include "app/message_dispatch.h"
#include "app/network_setup.h"
#include "app/report_popups.h"
#include "app/screen_factory.h"
#include "app/status_popup.h"
#include "app/window_form.h"
#include "base/clock.h"
#include "base/device_folders.h"
#include "base/device_paths.h"
#include "cloud/event_reports.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/input_field.h"
#include "ui/key_click.h"
#include "ui/theme.h"
#include "ui/touch_key_form.h"
#include "ui_main_window.h"

Q_LOGGING_CATEGORY(appLog, "zel.app", QtInfoMsg)

namespace {

MainWindow* theMainWindow = nullptr;

/// How long the end of the process waits for the last frames to leave, in milliseconds.
constexpr int kFlushTime = 500;
constexpr int kMaxSpokenText = 128;
/// By the settings' sleep choice, in seconds.
constexpr int kSleepTimes[] = {0, 30, 60, 180, 300, 600};

}  // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent),
      callNumberPath_(DevicePaths::at(QStringLiteral("/mnt/data/callNumber.txt"))),
      locationPath_(DevicePaths::at(QStringLiteral("/mnt/data/location.txt"))),
      imageDirectory_(DevicePaths::at(QLatin1String(DeviceFolders::kImages))),
      ui_(std::make_unique<Ui::MainWindow>()),
      session_(
          [this] { return settingsArrived() ? std::optional(records_.menu()) : std::nullopt; }) {
    installPictures();
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<MainWindow*>(widget))
            theMainWindow = window;
    }
    ui_->setupUi(this);
    // The panel's plug-in makes the window as large as the screen; elsewhere it has a frame.
    if (onPanel())
        setAttribute(Qt::WA_TranslucentBackground);
    else
        setFixedSize(Theme::kScreenWidth, Theme::kScreenHeight);

    settings_ = new SettingsEntrance(records_, this);
    connect(settings_, &SettingsEntrance::changed, this, &MainWindow::settingsChanged);
    languages_ = new Languages(this);
    status_ = new SystemStatus([this] { return records_.menu(); },
                               [this] { return management_->connected(); }, this);
    menuTimer_ = new MenuTimer([this] { return records_.menu(); }, this);
    dispatch_ = new MessageDispatch(windows_, this);
    link_ = new DeviceLink([this](quint16 command, quint8, quint8, quint16 length,
                                  const char* payload) { DataParsing(command, length, payload); },
                           this);
    KeyClick::setHandler([this] { SendCommand(command::KeyClick, 0, 0); });
    InputField::setKeypad([this](InputField* field) { showTouchKey(field); });

    WindowForm::setShell(this);
    connect(&windows_, &WindowRegistry::changing, this,
            [this](const QString& title) { session_.screenChanging(title); });
    initWindowList();
    link_->clearReceiveState();
    changeWindow(QStringLiteral("stayWindow"));
    statusPopup_ = new StatusPopup([this](const QString& key) { return getScript(key); }, this);
    connect(menuTimer_, &MenuTimer::timedOut, this, &MainWindow::MenuTimeout);
    connect(dispatch_, &MessageDispatch::shellMessage, this, &MainWindow::shellMessage);

    setAttribute(Qt::WA_Hover);
    installEventFilter(this);
    touchWatcher_ = new TouchWatcher(this);
    connect(touchWatcher_, &TouchWatcher::touched, this, [this] { ResetMenuTimer(); });

    touchKey_ = new TouchKeyForm(this);
    touchKey_->hide();
    applyScriptToKeypad();
    connect(languages_, &Languages::changed, this, &MainWindow::applyScriptToKeypad);

    connect(link_, &DeviceLink::connectedChanged, this, &MainWindow::peersChanged);
    link_->open(DevicePaths::linkPort());

    connect(&windows_, &WindowRegistry::changing, this, &MainWindow::signal_changeWindow);
    connect(this, &MainWindow::signal_changeWindow, this, &MainWindow::changeWindowShowEvent);
    createDialogs();
    management_ = new ManagementLink(*this, *this, this);
    management_->start();
    connectManagement();
}

MainWindow::~MainWindow() {
    ui_.reset();
    // Its worker winds up while the link is being flushed.
    management_->stop();
    link_->close(kFlushTime);
    // Joins the thread that serves HTTP, which may call back until then.
    delete std::exchange(management_, nullptr);
    KeyClick::setHandler(nullptr);
    InputField::setKeypad(nullptr);
    // The screens go while everything that they use is still there.
    windows_.deleteAll();
    WindowForm::setShell(nullptr);
    theMainWindow = nullptr;
}

MainWindow* MainWindow::getMainWindow() {
    return theMainWindow;
}

void MainWindow::installPictures() {
    const QString folder = DevicePaths::at(QStringLiteral("/usr/img"));
    if (!QFileInfo(folder).isDir() || !QFileInfo(folder).isWritable())
        qCWarning(appLog, "%s cannot be written, there will be no pictures", qPrintable(folder));
    DevicePaths::runShell(QStringLiteral("rm /usr/img/* "));
    DevicePaths::runShell(QStringLiteral("ln -s /zel1/image/img/* /usr/img/ "));
}

void MainWindow::initWindowList() {
    createScreens(this, windows_);
}

void MainWindow::createDialogs() {
    popups_ = new ReportPopups([this](const QString& key) { return getScript(key); }, this);
    connect(this, &MainWindow::signal_changeWindow, popups_, &ReportPopups::windowChanged);
    connect(&windows_, &WindowRegistry::changed, popups_, &ReportPopups::windowRaised);
    connect(status_, &SystemStatus::faultsChanged, popups_, &ReportPopups::showFaults);
    connect(popups_, &ReportPopups::screenWanted, this,
            [this](const QString& title) { changeWindow(title); });
    connect(popups_, &ReportPopups::errorShown, this, [this] { PlaySound(command::sound::Error); });
    connect(popups_, &ReportPopups::deleteLogsWanted, this, &MainWindow::deleteWarnMaxLog);
    connect(popups_, &ReportPopups::keepLogsWanted, this, &MainWindow::cancelWarnMaxLog);
}

void MainWindow::connectManagement() {
    connect(this, &MainWindow::signal_restReceive_FR33_3, this,
            &MainWindow::sendCommand_ReceiveNetUserDelete);
    connect(this, &MainWindow::signal_restReceive_FR33_2, this,
            &MainWindow::sendCommand_ReceiveNetUserGet);
    connect(this, &MainWindow::signal_receiveNetUserEnroll, this,
            &MainWindow::sendCommand_ReceiveNetUserEnroll);
    connect(&management_->downloads(), &DownloadManager::emitFilePath, this,
            &MainWindow::fwFileDownloadStart);
    connect(&management_->downloads(), QOverload<>::of(&DownloadManager::finished), this,
            &MainWindow::fileDownloadComplete);
    connect(this, &MainWindow::signal_receiveDoorOpen, this, &MainWindow::sendCommand_DoorOpen);
    connect(this, &MainWindow::signal_restCall_FR37, this,
            &MainWindow::sendCommand_RunKioskEnrollMode);
    connect(this, &MainWindow::signal_restSetTime, this, &MainWindow::sendCommand_SetTime);
    connect(this, &MainWindow::signal_restCall_FR59, this,
            &MainWindow::sendCommand_ReceiveNetDeviceSetting);
    connect(this, &MainWindow::signal_restCall_FR61, this,
            &MainWindow::sendCommand_ReceiveNetSystemSetting);
    connect(this, &MainWindow::signal_restCall_FR51, management_, &ManagementLink::reportVisitor);
    connect(management_, &ManagementLink::connectedChanged, this, &MainWindow::peersChanged);
    connect(status_, &SystemStatus::connectWanted, management_, &ManagementLink::connectNow);
    connect(status_, &SystemStatus::connectionCheckWanted, this, [this] {
        management_->checkNow();
        checkingForUnsentData();
    });
}

// --- Device link ---------------------------------------------------------------------------

bool MainWindow::SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) {
    return link_->send(cmd, p1, p2);
}

bool MainWindow::SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2,
                             unsigned short len, const char* payload) {
    return link_->send(cmd, p1, p2, len, payload);
}

void MainWindow::SendCloseMessage(int value) {
    SendCommand(command::ScreenClosed, static_cast<unsigned char>(value), 0);
}

void MainWindow::PlaySound(int id) {
    const char payload[] = {static_cast<char>(id & 0xFF), static_cast<char>((id >> 8) & 0xFF)};
    SendCommand(command::PlaySound, 0, 0, sizeof payload, payload);
}

void MainWindow::EnrollPlaySoundTts(int n, const char* text) {
    const auto number = static_cast<unsigned char>(n & 0xFF);
    if (text == nullptr) {
        SendCommand(command::SpeakText, 0, number, 0, nullptr);
        return;
    }
    char payload[kMaxSpokenText] = {};
    std::memcpy(payload, text, strnlen(text, sizeof payload));
    SendCommand(command::SpeakText, 0, number, sizeof payload, payload);
}

void MainWindow::checkingForUnsentData() {
    if (!link_->connected())
        return;
    SendCommand(command::AskUnsentUsers, 0, 0);
    if (link_->connected())
        SendCommand(command::AskUnsentLogs, 0, 0);
}

void MainWindow::checkSentMessageList() {}

void MainWindow::sendTestPacket(unsigned short cmd, unsigned short len, const char* payload) {
    DataParsing(cmd, len, payload);
}

void MainWindow::DataParsing(unsigned short command, unsigned short length, const char* payload) {
    dispatch_->dispatch(
        {command, link_->firstParameter(), link_->secondParameter(), length, payload});
}

void MainWindow::shellMessage(const DeviceMessage& message) {
    switch (message.command) {
        case command::Quit:
            quitByController();
            break;
        case command::SystemStatus:
            setSystemStatus(
                message.p1, message.p2,
                message.length > 0 ? static_cast<unsigned char>(message.payload[0]) : 0);
            if (const auto report = message.record<StatusReport>())
                records_.setMealCount(report->meals);
            else if (message.length > 0)
                qCWarning(appLog, "status report without counts: %d bytes where %zu are needed",
                          message.length, sizeof(StatusReport));
            break;
        case command::Settings:
        case command::SettingsChanged:
            settings_->receive(*message.record<_gui_menu_>());
            break;
        case command::ControllerEvent:
            lastControllerEvent_ = {message.command, message.p1, message.p2, 0, nullptr};
            break;
        case command::SelfCheck:
            status_->setSelfCheck(*message.record<std::uint32_t>());
            break;
        case command::UnsentDataWaiting:
        case command::UnsentDataReady:
            checkingForUnsentData();
            break;
        case command::FullLogsDeleted:
            // What is left in the store has new numbers; the service is to see it once more.
            SendCommand(command::AskUnsentLogs, 0, 0);
            break;
        case command::TextSpoken:
            EnrollPlaySoundTts(0, nullptr);
            break;
        case command::AccessEvent:
            if (const auto event = message.record<GUI_LOGDATA>())
                sendUserInoutData(&*event);
            ShowCommandPopup(message.command, message.p1, message.p2, message.payload);
            break;
        case command::UserEnrolled:
            if (const auto info = message.record<info_s>())
                sendUserEnrollData(&*info);
            break;
        case command::VisitorCall:
            if (const auto call = message.record<VisitorCallReport>())
                emit signal_restCall_FR51(
                    QVariant::fromValue(event_reports::visitor(fieldText(call->visiblePicture))));
            break;
        case command::ControllerNote:
            qCDebug(appLog, "controller note %d %d", message.p1, message.p2);
            break;
        default:
            ShowCommandPopup(message.command, message.p1, message.p2, message.payload);
            break;
    }
}

void MainWindow::settingsChanged(const SettingsChange& change) {
    const SetupBlock& setup = change.now.setup;
    // The settings choose the numbering of the status that is in force.
    if (change.in(&_gui_menu_::setup, &SetupBlock::operation))
        status_->setStatus(status_->status());
    if (change.in(&_gui_menu_::setup, &SetupBlock::readerMode))
        setReaderMode(static_cast<ReaderMode>(setup.readerMode));
    if (change.in(&_gui_menu_::setup, &SetupBlock::serviceMode))
        setServiceMode(static_cast<ServiceMode>(setup.serviceMode));
    if (change.in(&_gui_menu_::setup, &SetupBlock::alarmMode))
        setAlarmMode(static_cast<AlarmMode>(setup.alarmMode));
    if (change.in(&_gui_menu_::setup, &SetupBlock::language))
        languages_->apply(setup.language);
    if (change.in(&_gui_menu_::screen, &ScreenBlock::menuTimeout) && menuTimer_->isRunning())
        StartMenuTimer(MenuTimer::timeout(change.now.screen.menuTimeout),
                       menuTimer_->returnTitle());
    if (change.in(&_gui_menu_::network))
        initRestCall();
    if (change.in(&_gui_menu_::network, &NetworkBlock::useManager))
        peersChanged();
    if (WindowForm* active = windows_.active())
        active->settingsChanged(change);
}

void MainWindow::quitByController() {
    SendCommand(command::QuitAcknowledged, 0, 0);
    link_->close(kFlushTime);
    close();
    QCoreApplication::exit(0);
}

// --- Records -------------------------------------------------------------------------------

int MainWindow::getSleepMode() const {
    const std::size_t choice = records_.menu().screen.sleepMode;
    return choice < std::size(kSleepTimes) ? kSleepTimes[choice] : 0;
}

void MainWindow::setWorkMode(WorkMode mode) {
    status_->setWorkMode(mode);
}

WorkMode MainWindow::getWorkMode() const {
    return status_->workMode();
}

// --- Screens -------------------------------------------------------------------------------

int MainWindow::changeWindow(const QString& title) {
    return change(title, nullptr);
}

int MainWindow::changeWindow(const QString& title, const QVariant& param) {
    return change(title, &param);
}

int MainWindow::change(const QString& title, const QVariant* param) {
    // A title that there is not and a change that would be refused anyway ask for nothing.
    if (windows_.isChangeAllowed() && windows_.find(title) != nullptr && !session_.admits(title)) {
        askPassword({title, param != nullptr ? *param : QVariant()});
        return WindowRegistry::kRefused;
    }
    return windows_.change(title, param);
}

void MainWindow::askPassword(const PasswordPurpose& purpose) {
    const QString title = QStringLiteral("InputAdminPassword");
    const QVariant param = QVariant::fromValue(purpose);
    // Whoever is typing it already is asked once.
    if (windows_.active() != nullptr && windows_.active()->getTitle() == title)
        windows_.active()->setParam(param);
    else
        windows_.change(title, &param);
}

void MainWindow::asAdministrator(const std::function<void()>& request) {
    if (session_.isOpen())
        request();
    else
        askPassword({{}, {}, request});
}

void MainWindow::passwordEntered(const PasswordPurpose& purpose) {
    session_.open();
    const WindowForm* asked = windows_.active();
    if (purpose.request) {
        purpose.request();
        // It may have a screen of its own.
        if (windows_.active() == asked)
            changeWindow(QStringLiteral("stayWindow"));
        return;
    }
    change(purpose.title.isEmpty() ? QStringLiteral("zelMenuWindow") : purpose.title,
           purpose.param.isValid() ? &purpose.param : nullptr);
}

int MainWindow::enrolAtDoor(int enrolMode) {
    if (!windows_.isChangeAllowed())
        return WindowRegistry::kRefused;
    session_.beginEnrolment();
    const QString title = QStringLiteral("userEnroll_qualWindow");
    if (windows_.active() == nullptr || windows_.active()->getTitle() != title)
        return changeWindow(title, enrolMode);
    // An order of the service takes the place of the enrolment that was there.
    windows_.active()->setParam(enrolMode);
    return WindowRegistry::kDone;
}

QString MainWindow::enrolmentReturnTitle() const {
    return session_.enrolsAtDoor() ? QStringLiteral("stayWindow")
                                   : QStringLiteral("userMenuWindow");
}

void MainWindow::changeWindowShowEvent(const QString& title) {
    StartMenuTimer();
    if (title.startsWith(QLatin1String("factory")) || title.startsWith(QLatin1String("f_")))
        factoryActive_ = true;
    const WindowForm* next = getWindow(title);
    if (factoryActive_ || (next != nullptr && !next->timesOut()))
        StopMenuTimer();
}

void MainWindow::StartMenuTimer() {
    menuTimer_->start();
}

void MainWindow::StartMenuTimer(int seconds, const QString& returnTitle) {
    menuTimer_->start(seconds, returnTitle);
}

void MainWindow::ResetMenuTimer() {
    menuTimer_->reset();
}

void MainWindow::ResetMenuTimer(int seconds) {
    menuTimer_->reset(seconds);
}

void MainWindow::UpdateResetTimer(int selector) {
    menuTimer_->updateReset(selector);
}

void MainWindow::StopMenuTimer() {
    menuTimer_->stop();
}

void MainWindow::MenuTimeout(const QString& returnTitle) {
    // An operation that must not be left is waited for.
    if (!windows_.isChangeAllowed()) {
        ResetMenuTimer();
        return;
    }
    SendCloseMessage(command::closed::ByMenuTimeout);
    changeWindow(returnTitle);
}

void MainWindow::showTouchKey() {
    touchKey_->showInit();
    touchKey_->raise();
    touchKey_->show();
}

void MainWindow::showTouchKey(InputField* field) {
    showTouchKey();
    touchKey_->edit(field);
}

void MainWindow::removeTouchKey() {
    // The first screen comes up before there is a keypad.
    if (touchKey_ != nullptr)
        touchKey_->hide();
}

void MainWindow::setTouchKeyOpt(const QString& text) {
    touchKey_->setOption(text);
}

void MainWindow::ShowPopup(int key, int seconds) {
    statusPopup_->show(key, seconds);
}

void MainWindow::ClosePopup() {
    statusPopup_->close();
}

void MainWindow::ShowCommandPopup(int command, int p1, int, const char*) {
    popups_->show(command, p1);
}

DialogForm* MainWindow::getPopupForm() const {
    return popups_->popupForm();
}

void MainWindow::deleteWarnMaxLog() {
    SendCommand(command::DeleteFullLogs, 0, 0);
}

void MainWindow::cancelWarnMaxLog() {
    qCInfo(appLog, "the log store stays nearly full: nobody agreed to delete logs");
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::HoverMove)
        ResetMenuTimer();
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!shownOnce_) {
        shownOnce_ = true;
        checkBootchecker();
    }
}

void MainWindow::checkBootchecker() {
    const bool rebooted = QFile::exists(DevicePaths::at(QStringLiteral("/mnt/data/rebootchkr")));
    changeWindow(rebooted ? QStringLiteral("stayWindow") : QStringLiteral("bootWindow"));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    QCoreApplication::quit();
}

// --- Languages -----------------------------------------------------------------------------

void MainWindow::changeLanguage(int languageNumber) {
    languages_->change(languageNumber);
}

void MainWindow::applyScriptToKeypad() {
    touchKey_->applyScripts([this](const QString& key) { return getScript(key); });
    touchKey_->setHangulFirst(languages_->number() == 0);
}

// --- Status --------------------------------------------------------------------------------

void MainWindow::setSystemStatus(int status, int, int) {
    status_->setStatus(status);
    WindowForm* active = getActivateWindowForm();
    if (active != nullptr && active->getTitle() == QLatin1String("liveWindow"))
        active->workModeChanged();
}

int MainWindow::getSystemStatus() const {
    return status_->status();
}

void MainWindow::dev_selfChkrResult() {
    status_->evaluateSelfCheck();
}

std::uint32_t MainWindow::selfCheckWord() const {
    return status_->selfCheck();
}

// --- Management service --------------------------------------------------------------------

void MainWindow::peersChanged() {
    // What was not reported meanwhile is wanted now, whichever of the two has come last.
    const bool both = linkUp() && serviceReached();
    if (both && !peersReached_)
        checkingForUnsentData();
    peersReached_ = both;
    if (WindowForm* active = windows_.active())
        active->peersChanged();
}

bool MainWindow::serviceInUse() const {
    return management_ != nullptr && management_->inUse();
}

bool MainWindow::serviceReached() const {
    return serviceInUse() && management_->connected();
}

DownloadManager& MainWindow::downloads() {
    return management_->downloads();
}

void MainWindow::parsingRestCommand(int command, QVariant parameter) {
    switch (command) {
        case 4:
            emit signal_receiveNetUserEnroll(parameter);
            break;
        case 5:
            emit signal_restReceive_FR33_2(parameter);
            break;
        case 6:
            emit signal_restReceive_FR33_3(parameter);
            break;
        case 10:
            emit signal_restCall_FR37(parameter);
            break;
        case 12:
            // The downloader lives in the GUI thread.
            QMetaObject::invokeMethod(this, [this, parameter] { downloadFileURL(parameter); });
            break;
        case 14:
            emit signal_restCall_FR59(parameter);
            break;
        case 15:
            emit signal_restCall_FR61(parameter);
            break;
        case 16:
            emit signal_receiveDoorOpen(0);
            break;
        case 18:
            emit signal_restSetTime(parameter);
            break;
        default:
            break;
    }
}

void MainWindow::updateRestConnectStatus(bool up) {
    management_->setConnected(up);
}

void MainWindow::completedRestCommand(QVariant procIdx) {
    management_->commands().completed(procIdx);
}

void MainWindow::initRestCall() {
    management_->restart();
}

void MainWindow::setIp(const AddressBlock& own) {
    NetworkSetup::apply(own, records_.menu().network.own);
}

void MainWindow::startEnrolment() {
    if (WindowForm* live = getWindow(QStringLiteral("liveWindow")))
        live->enrolRequested();
}

void MainWindow::showPopupText(const QString& key) {
    popups_->showNotice(key);
}

RestClass* MainWindow::restClient() const {
    return management_->client();
}

void MainWindow::downloadFileURL(const QVariant& parameter) {
    if (parameter.canConvert<FR44_Parameter>())
        management_->downloads().append(QUrl(parameter.value<FR44_Parameter>().address));
}

void MainWindow::sendUserInoutData(const GUI_LOGDATA* event) {
    management_->reportAccess(*event);
}

void MainWindow::sendUserEnrollData(const info_s* info) {
    management_->reportEnrolment(*info);
}

void MainWindow::receiveOpenDoor() {
    emit signal_receiveDoorOpen(0);
}

void MainWindow::sendCommand_ReceiveNetUserGet(const QVariant& parameter) {
    management_->commands().getUser(parameter);
}

void MainWindow::sendCommand_ReceiveNetUserDelete(const QVariant& parameter) {
    management_->commands().deleteUser(parameter);
}

void MainWindow::sendCommand_ReceiveNetUserEnroll(const QVariant& parameter) {
    management_->commands().enrolUser(parameter);
}

void MainWindow::sendCommand_DoorOpen(const QVariant&) {
    management_->commands().openDoor();
}

void MainWindow::sendCommand_RunKioskEnrollMode(const QVariant& parameter) {
    management_->commands().runKioskEnrolMode(parameter);
}

void MainWindow::sendCommand_SetTime(const QVariant& parameter) {
    management_->commands().setTime(parameter);
}

void MainWindow::sendCommand_ReceiveNetDeviceSetting(const QVariant& parameter) {
    management_->commands().setDevice(parameter);
}

void MainWindow::sendCommand_ReceiveNetSystemSetting(const QVariant& parameter) {
    management_->commands().setSystem(parameter);
}

void MainWindow::userRestChkrResult() {
    management_->takeCommandFolder();
}

void MainWindow::fwFileDownloadStart(const QString& path) {
    qCInfo(appLog, "Start Download : %s", qPrintable(path));
    changeWindow(QStringLiteral("upgradingWindow"), path);
}

void MainWindow::fileDownloadComplete() {
    management_->commands().finishDownload(management_->downloads());
}
