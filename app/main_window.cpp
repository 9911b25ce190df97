#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTimer>
#include <iterator>
#include <utility>

#include "app/management_link.h"
#include "app/message_dispatch.h"
#include "app/network_setup.h"
#include "app/peer_history.h"
#include "app/report_popups.h"
#include "app/screen_factory.h"
#include "app/screen_titles.h"
#include "app/shell_messages.h"
#include "app/status_popup.h"
#include "app/window_form.h"
#include "base/clock.h"
#include "base/device_folders.h"
#include "base/device_paths.h"
#include "base/folder_links.h"
#include "base/heap.h"
#include "cloud/parameters.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/input_field.h"
#include "ui/key_click.h"
#include "ui/message_overlay.h"
#include "ui/pictures.h"
#include "ui/theme.h"
#include "ui/touch_key_form.h"
#include "ui_main_window.h"

Q_LOGGING_CATEGORY(appLog, "zel.app", QtInfoMsg)

namespace {

MainWindow* theMainWindow = nullptr;

/// How long the end of the process waits for the last frames to leave, in milliseconds.
constexpr int kFlushTime = 500;
/// How long the standby screen has been up when nobody seems to come back, in milliseconds.
constexpr int kRest = 1000;

}  // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent),
      callNumberPath_(DevicePaths::at(QStringLiteral("/mnt/data/callNumber.txt"))),
      locationPath_(DevicePaths::at(QStringLiteral("/mnt/data/location.txt"))),
      imageDirectory_(DevicePaths::at(QLatin1String(DeviceFolders::kImages))),
      ui_(std::make_unique<Ui::MainWindow>()) {
    Theme::load(DevicePaths::at(QStringLiteral("/zel1/theme.json")));
    Pictures::limitCache();
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
    navigation_ = new Navigation(
        [this] { return settingsArrived() ? std::optional(records_.menu()) : std::nullopt; }, this);
    dispatch_ = new MessageDispatch(navigation_->windows(), this);
    history_ = new PeerHistory(this);
    link_ = new DeviceLink([this](quint16 command, quint8, quint8, quint16 length,
                                  const char* payload) { DataParsing(command, length, payload); },
                           this);
    orders_ = std::make_unique<ControllerOrders>(*link_);
    messages_ = new ShellMessages(*link_, records_, *settings_, *status_, this);
    KeyClick::setHandler([this] { SendCommand(command::KeyClick, 0, 0); });
    InputField::setKeypad([this](InputField* field) { showTouchKey(field); });
    MessageOverlay::setScripts([this](const QString& key) { return getScript(key); });

    // Who looks on from outside, a tester or a script, can tell the screens apart by their names.
    connect(&navigation_->windows(), &WindowRegistry::changed, this, [this] {
        const QString title = navigation_->active()->getTitle();
        setWindowTitle(QStringLiteral("zel-terminal: ") + title);
        qCInfo(appLog, "screen %s", qPrintable(title));
        if (title == screen_title::kStandby)
            QTimer::singleShot(kRest, this, &MainWindow::restAtStandby);
    });
    WindowForm::setShell(this);
    initWindowList();
    link_->clearReceiveState();
    changeWindow(screen_title::kStandby);
    statusPopup_ = new StatusPopup(this);
    connect(navigation_, &Navigation::timedOut, this,
            [this] { SendCloseMessage(command::closed::ByMenuTimeout); });
    connectMessages();

    setAttribute(Qt::WA_Hover);
    installEventFilter(this);
    touchWatcher_ = new TouchWatcher(this);
    connect(touchWatcher_, &TouchWatcher::touched, this, [this] { ResetMenuTimer(); });

    touchKey_ = new TouchKeyForm(this);
    touchKey_->hide();
    applyScriptToKeypad();
    connect(languages_, &Languages::changed, this, &MainWindow::applyScriptToKeypad);
    connect(languages_, &Languages::changed, this,
            [this] { MessageOverlay::scriptsChanged(this); });

    connect(link_, &DeviceLink::sent, this,
            [this](quint16 command, quint8 p1) { recognition_.sent(command, p1); });
    connect(link_, &DeviceLink::connectedChanged, history_, &PeerHistory::setLinkUp);
    connect(link_, &DeviceLink::connectedChanged, this, &MainWindow::signal_linkChanged);
    connect(link_, &DeviceLink::connectedChanged, this, &MainWindow::peersChanged);
    link_->open(DevicePaths::linkPort());

    connect(&navigation_->windows(), &WindowRegistry::changing, this,
            &MainWindow::signal_changeWindow);
    connect(this, &MainWindow::signal_changeWindow, this, &MainWindow::changeWindowShowEvent);
    createDialogs();
    management_ = new ManagementLink(*this, *this, this);
    connectManagement();
    management_->start();
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
    MessageOverlay::setScripts(nullptr);
    // The screens go while everything that they use is still there.
    navigation_->windows().deleteAll();
    WindowForm::setShell(nullptr);
    theMainWindow = nullptr;
}

MainWindow* MainWindow::getMainWindow() {
    return theMainWindow;
}

void MainWindow::installPictures() {
    const QString folder = DevicePaths::at(QStringLiteral("/usr/img"));
    const QStringList pictures =
        FolderLinks::entries(DevicePaths::at(QStringLiteral("/zel1/image/img")));
    FolderLinks::replace(folder, pictures);
    // One that cannot be written may have all links already.
    const QFileInfo place(folder);
    if ((!place.isDir() || !place.isWritable()) &&
        FolderLinks::entries(folder).size() < pictures.size())
        qCWarning(appLog, "%s cannot be written, there will be no pictures", qPrintable(folder));
}

void MainWindow::initWindowList() {
    createScreens(this, navigation_->windows());
}

void MainWindow::connectMessages() {
    connect(dispatch_, &MessageDispatch::arrived, history_, &PeerHistory::controllerMessage);
    connect(dispatch_, &MessageDispatch::arrived, messages_, &ShellMessages::overhear);
    connect(dispatch_, &MessageDispatch::shellMessage, messages_, &ShellMessages::take);
    connect(messages_, &ShellMessages::quitOrdered, this, &MainWindow::quitByController);
    connect(messages_, &ShellMessages::statusReported, this,
            [this](int status) { setSystemStatus(status, 0, 0); });
    connect(messages_, &ShellMessages::accessReported, this,
            [this](const GUI_LOGDATA& event) { sendUserInoutData(&event); });
    connect(messages_, &ShellMessages::accessRecorded, this,
            [this](bool accepted) { popups_->showAccess(accepted); });
    connect(messages_, &ShellMessages::userEnrolled, this,
            [this](const info_s& info) { sendUserEnrollData(&info); });
    connect(messages_, &ShellMessages::visitorCalled, this, &MainWindow::signal_restCall_FR51);
    connect(messages_, &ShellMessages::popupWanted, this,
            [this](int command, int p1) { ShowCommandPopup(command, p1, 0, nullptr); });
}

void MainWindow::createDialogs() {
    popups_ = new ReportPopups([this](const QString& key) { return getScript(key); }, this);
    connect(this, &MainWindow::signal_changeWindow, popups_, &ReportPopups::windowChanged);
    connect(&navigation_->windows(), &WindowRegistry::changed, popups_,
            [this] { popups_->windowRaised(navigation_->active()->noticeTop()); });
    connect(status_, &SystemStatus::faultsChanged, popups_, &ReportPopups::showFaults);
    connect(popups_, &ReportPopups::screenWanted, this,
            [this](const QString& title) { showScreen(title, {}); });
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
    connect(link_, &DeviceLink::drained, management_, &ManagementLink::linkDrained);
    connect(dispatch_, &MessageDispatch::arrived, management_, &ManagementLink::controllerMessage);
    connect(management_, &ManagementLink::unreportedWanted, this,
            &MainWindow::checkingForUnsentData);
    connect(status_, &SystemStatus::connectWanted, management_, &ManagementLink::connectNow);
    connect(status_, &SystemStatus::connectionCheckWanted, this, [this] {
        management_->checkNow();
        checkingForUnsentData();
    });
}

// --- Device link ---------------------------------------------------------------------------

void MainWindow::DataParsing(unsigned short command, unsigned short length, const char* payload) {
    dispatch_->dispatch(
        {command, link_->firstParameter(), link_->secondParameter(), length, payload});
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
    MenuTimer& menuTimer = navigation_->menuTimer();
    if (change.in(&_gui_menu_::screen, &ScreenBlock::menuTimeout) && menuTimer.isRunning())
        menuTimer.start(MenuTimer::timeout(change.now.screen.menuTimeout), menuTimer.returnTitle());
    // From its setup on a terminal's screens are left after their time.
    if (!change.first && change.in(&_gui_menu_::commissioned) && navigation_->active() != nullptr)
        navigation_->startTime(navigation_->active()->getTitle());
    if (change.in(&_gui_menu_::network))
        initRestCall();
    if (change.in(&_gui_menu_::network, &NetworkBlock::useManager))
        peersChanged();
    if (WindowForm* active = navigation_->active())
        active->settingsChanged(change);
}

void MainWindow::quitByController() {
    link_->close(kFlushTime);
    close();
    QCoreApplication::exit(0);
}

// --- Records -------------------------------------------------------------------------------

int MainWindow::getSleepMode() const {
    const std::size_t choice = records_.menu().screen.sleepMode;
    return choice < std::size(SleepMode::kSeconds) ? SleepMode::kSeconds[choice] : 0;
}

// --- Screens -------------------------------------------------------------------------------

void MainWindow::showScreen(const QString& title, const QVariant& param) {
    WindowForm* active = getActivateWindowForm();
    if (active != nullptr && active->getTitle() == title)
        active->setParam(param);
    else
        changeWindow(title, param);
}

void MainWindow::showTouchKey() {
    touchKey_->showInit();
    touchKey_->raise();
    touchKey_->show();
}

void MainWindow::showTouchKey(InputField* field) {
    touchKey_->edit(field);
}

void MainWindow::removeTouchKey() {
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
    // Whoever has to enter the password first is not to be recognised meanwhile.
    if (!isAdministrator() && canChangeWindow()) {
        SendCommand(command::RecognitionMode, command::recognition::Off, 0);
        SendCommand(command::CameraRun, command::camera::Off, 0);
    }
    asAdministrator([this] { SendCommand(command::DeleteFullLogs, 0, 0); });
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
    changeWindow(rebooted ? screen_title::kStandby : screen_title::kBoot);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    QCoreApplication::quit();
}

// --- Languages -----------------------------------------------------------------------------

void MainWindow::applyScriptToKeypad() {
    touchKey_->applyScripts([this](const QString& key) { return getScript(key); });
    touchKey_->setHangulFirst(languages_->number() == 0);
}

// --- Status --------------------------------------------------------------------------------

void MainWindow::restAtStandby() {
    // A tour through the screens leaves their pictures in the cache and holes in the heap.
    if (!navigation_->isActive(screen_title::kStandby))
        return;
    Pictures::giveBack();
    Heap::giveBackGaps();
}

void MainWindow::setSystemStatus(int status, int, int) {
    status_->setStatus(status);
    if (navigation_->isActive(screen_title::kLive))
        navigation_->active()->workModeChanged();
}

// --- Management service --------------------------------------------------------------------

void MainWindow::peersChanged() {
    if (!linkUp())
        recognition_.forget();
    // What was not reported meanwhile is wanted now, whichever of the two has come last.
    const bool both = linkUp() && serviceReached();
    if (both && !peersReached_)
        checkingForUnsentData();
    peersReached_ = both;
    if (WindowForm* active = navigation_->active())
        active->peersChanged();
}

bool MainWindow::serviceInUse() const {
    return management_ != nullptr && management_->inUse();
}

bool MainWindow::serviceReached() const {
    return serviceInUse() && management_->connected();
}

const ServiceContact& MainWindow::serviceContact() const {
    return management_->contact();
}

void MainWindow::connectService() {
    management_->connectNow();
}

DownloadManager& MainWindow::downloads() {
    return management_->downloads();
}

void MainWindow::parsingRestCommand(int command, QVariant parameter) {
    switch (command) {
        case host_command::kEnrolUser:
            emit signal_receiveNetUserEnroll(parameter);
            break;
        case host_command::kGetUser:
            emit signal_restReceive_FR33_2(parameter);
            break;
        case host_command::kDeleteUser:
            emit signal_restReceive_FR33_3(parameter);
            break;
        case host_command::kRunEnrolment:
            emit signal_restCall_FR37(parameter);
            break;
        case host_command::kUpdateFirmware:
            // The downloader lives in the GUI thread.
            QMetaObject::invokeMethod(this, [this, parameter] { downloadFileURL(parameter); });
            break;
        case host_command::kSetDevice:
            emit signal_restCall_FR59(parameter);
            break;
        case host_command::kSetSystem:
            emit signal_restCall_FR61(parameter);
            break;
        case host_command::kOpenDoor:
            emit signal_receiveDoorOpen(0);
            break;
        case host_command::kSetTime:
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
    history_->completed(procIdx);
    management_->completed(procIdx);
}

void MainWindow::initRestCall() {
    management_->restart();
}

void MainWindow::setIp(const AddressBlock& own) {
    NetworkSetup::apply(own, records_.menu().network.own);
}

void MainWindow::startEnrolment() {
    if (WindowForm* live = getWindow(screen_title::kLive))
        live->enrolRequested();
}

void MainWindow::showPopupText(const QString& key) {
    popups_->showNotice(key);
}

void MainWindow::reportGroupDeleted(int group) {
    management_->reportGroupDeleted(group);
}

RestClass* MainWindow::restClient() const {
    return management_->client();
}

void MainWindow::downloadFileURL(const QVariant& parameter) {
    if (parameter.canConvert<FR44_Parameter>())
        management_->firmware().order(parameter.value<FR44_Parameter>());
}

void MainWindow::sendUserInoutData(const GUI_LOGDATA* event) {
    management_->reportAccess(*event);
}

void MainWindow::sendUserEnrollData(const info_s* info) {
    management_->reportEnrolment(*info);
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
    showScreen(screen_title::kUpgrading, path);
}

void MainWindow::fileDownloadComplete() {
    management_->firmware().downloaded();
}
