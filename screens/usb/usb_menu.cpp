#include "screens/usb/usb_menu.h"

#include <QTimer>
#include <algorithm>
#include <iterator>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "screens/usb/usb_upload_file_selecter.h"
#include "ui/theme.h"

namespace {

constexpr int kCheckInterval = 5000;  // milliseconds
constexpr int kPopupSeconds = 3;

namespace stick = command::stick;
namespace transfer = command::transfer;

constexpr int kWaitReading = 17;
constexpr int kWaitPreparing = 21;
constexpr int kWaitCopying = 22;
constexpr int kWaitCompleting = 23;
constexpr int kWaitSending = 101;  // these two tell the percentage themselves
constexpr int kWaitUpgrading = 102;

constexpr int kPopupImported = 1;
constexpr int kPopupExported = 2;
constexpr int kPopupInsert = 4;
constexpr int kPopupRestart = 5;
constexpr int kPopupUpgradeFailed = 6;
constexpr int kPopupNotExported = 8;
constexpr int kPopupNoFolder = 20;
constexpr int kPopupNoController = 101;

constexpr int kAskDeleteLogs = 1;

constexpr auto Error = ScreenText::Error;
constexpr auto Pass = ScreenText::Pass;
constexpr auto Wait = ScreenText::Wait;

constexpr char kKeepStick[] = "ListItem_DoNotRemoveUSB";

constexpr ScreenText kTexts[] = {
    {1, "ListItem_LogExportedUSB", Wait, kKeepStick},
    {2, "ListItem_LogImportedUSB", Wait, kKeepStick},
    {3, "ListItem_UserDataExportedUSB", Wait, kKeepStick},
    {4, "ListItem_UserDataImportedUSB", Wait, kKeepStick},
    {5, "ListItem_SettingDataExportedUSB", Wait, kKeepStick},
    {6, "ListItem_SettingDataImportedUSB", Wait, kKeepStick},
    {7, "ListItem_AllDataExportedUSB", Wait, kKeepStick},
    {8, "ListItem_AllDataImportedUSB", Wait, kKeepStick},
    {9, "ListItem_ImageExportedUSB", Wait, kKeepStick},
    {10, "ListItem_ImageImportedUSB", Wait, kKeepStick},
    {kWaitReading, "ListItem_ReadingUSB", Wait, kKeepStick},
    {19, "ListItem_ReadingFile", Wait, kKeepStick},
    {kWaitPreparing, "ListItem_Preparing", Wait, kKeepStick},
    {kWaitCopying, "ListItem_Copying", Wait, kKeepStick},
    {kWaitCompleting, "ListItem_Completing", Wait, kKeepStick},
    {24, "ListItem_LogoImageImportedUSB", Wait, kKeepStick},
    {kWaitSending, "ListItem_Sending", Wait, kKeepStick},
    {kWaitUpgrading, "ListItem_upgradingUSB", Wait, kKeepStick},

    {kPopupImported, "ListItem_TransmissionComplete", Pass},
    {kPopupExported, "ListItem_TransmissionComplete", Pass},
    {3, "ListItem_CannotAborTransmission", ScreenText::Warning},
    {kPopupInsert, "ListItem_InsertUSB", Error},
    {kPopupRestart, "ListItem_FwRestart", Pass},
    {kPopupUpgradeFailed, "ListItem_FwUpgradeFailed", Error},
    {kPopupNotExported, "ListItem_CannotExportFiles", Error},
    {10, "ListItem_ExceededMaximumUsers", Error},
    {12, "ListItem_ExceededMaximumAdmin", Error},
    {16, "ListItem_ImportFailInvalidData", Error},
    {kPopupNoFolder, "ListItem_UsbNotHaveZEL01Folder", Error},
    {22, "ListItem_NoValidFileFound", Error},
    {kPopupNoController, "ListItem_NoController", Error},

    {kAskDeleteLogs, "ListItem_RunDeleteOldLogs", ScreenText::Danger},
};

/// Why a transfer has been interrupted.
enum Interruption { kStickRemoved, kLinkLost };
constexpr ScreenText kInterruptions[] = {
    {kStickRemoved, "ListItem_TransferInterrupted", Error, "ListItem_UsbRemoved"},
    {kLinkLost, "ListItem_TransferInterrupted", Error, "ListItem_LinkLost"},
};

/// One number for another.
struct Pair {
    int from;
    int to;
};

/// Wait texts by the kind of what has begun.
constexpr Pair kExportWaits[] = {{transfer::Logs, 1},
                                 {transfer::Users, 3},
                                 {transfer::Settings, 5},
                                 {transfer::Everything, 7},
                                 {transfer::LogsOfDays, 1}};
constexpr Pair kImportWaits[] = {{transfer::Logs, 2},        {transfer::Users, 4},
                                 {transfer::Settings, 6},    {transfer::Everything, 8},
                                 {transfer::Background, 10}, {transfer::Logo, 24}};

/// Popups by result; any other result asks for a stick.
constexpr Pair kExportPopups[] = {{transfer::Done, kPopupExported},
                                  {transfer::NotExported, kPopupNotExported}};
constexpr Pair kImportPopups[] = {{transfer::Done, kPopupImported},
                                  {transfer::TooManyUsers, 10},
                                  {transfer::TooManyAdministrators, 12},
                                  {transfer::InvalidData, 16},
                                  {transfer::NoValidFile, 22}};

template <std::size_t count>
int lookUp(const Pair (&pairs)[count], int from, int otherwise) {
    const auto* pair = std::find_if(std::begin(pairs), std::end(pairs),
                                    [from](const Pair& one) { return one.from == from; });
    return pair != std::end(pairs) ? pair->to : otherwise;
}

struct Export {
    const char* action;
    unsigned char kind;
    unsigned char option;
    bool takesLong;  // longer than a menu stays without a touch
};

constexpr Export kExports[] = {
    {"log_download", transfer::Logs, 1, true},
    {"userInfo_download", transfer::Users, 0, true},
    {"envi_download", transfer::Settings, 0, false},
    {"all_download", transfer::Everything, 1, true},
};

/// Texts of the status row.
constexpr char kConnected[] = "ListItem_UsbConnected";
constexpr char kNotConnected[] = "ListItem_UsbNotConnected";
constexpr char kNoFolder[] = "ListItem_UsbNoFolder";

}  // namespace

UsbMenu::UsbMenu(QWidget* parent, const QString& title)
    : FormScreen(parent, title),
      mountCheckTimer_(new QTimer(this)),
      presenceTimer_(new QTimer(this)),
      popup_(this, kTexts),
      restartPopup_(parent, kTexts),
      interruption_(this, kInterruptions),
      statusKey_(kNotConnected) {
    mountCheckTimer_->setObjectName(QStringLiteral("mountCheckTimer"));
    presenceTimer_->setObjectName(QStringLiteral("presenceTimer"));
    for (QTimer* timer : {mountCheckTimer_, presenceTimer_}) {
        timer->setSingleShot(true);
        timer->setInterval(kCheckInterval);
    }
    connect(mountCheckTimer_, &QTimer::timeout, this, &UsbMenu::UsbCheckTimeout);
    connect(presenceTimer_, &QTimer::timeout, this, &UsbMenu::UsbCheckMountTimeout);
}

void UsbMenu::built() {
    QPalette hint = ui_->insertLabel->palette();
    hint.setColor(QPalette::WindowText, Theme::color(Theme::kHint));
    ui_->insertLabel->setPalette(hint);
    ui_->actions->hide();

    connect(ui_->refreshButton, &LabelButton::touched, this, &UsbMenu::mount_usb);
    connect(ui_->exportLogTile, &Tile::touched, this, &UsbMenu::outLogData);
    const QList<Tile*> tiles = ui_->actions->findChildren<Tile*>();
    for (const Tile* tile : tiles) {
        const QString out = tile->property("exportAction").toString();
        const QString in = tile->property("importAction").toString();
        if (!out.isEmpty())
            connect(tile, &Tile::touched, this, [this, out] { showDirSelecter(out); });
        else if (!in.isEmpty())
            connect(tile, &Tile::touched, this, [this, in] { showFileSelecter(in); });
    }
}

void UsbMenu::scriptsApplied() {
    showStatus(statusKey_);
}

void UsbMenu::windowInEvent() {
    FormScreen::windowInEvent();
    if (param().toBool()) {
        UsbCheckMountTimeout();
        return;
    }
    stickPresent_ = false;
    hideActionButtons();
    mount_usb();
}

void UsbMenu::hideEvent(QHideEvent* event) {
    FormScreen::hideEvent(event);
    popup_.endWait();
    transferRuns_ = false;
    presenceTimer_->stop();
    // The other timer may run out; nobody waits for it any more.
    mountCheckRunning_ = false;
}

// --- The stick -----------------------------------------------------------------------------

void UsbMenu::mount_usb() {
    shell()->SendCommand(command::UsbMount, stick::Mount, 0, 0, nullptr);
}

void UsbMenu::UpdateUsbInfo(int state, int sub) {
    switch (state) {
        case stick::Mounted:
            // An answer, be it a good one or not: nobody is to ask for a stick that is there.
            mountCheckRunning_ = false;
            mountCheckTimer_->stop();
            if (sub != 1 && sub != 2) {
                hideActionButtons();
                // The popup goes by itself; the reason why there is nothing to do stays.
                showStatus(kNoFolder);
                ShowPopup(kPopupNoFolder, kPopupSeconds);
                break;
            }
            popup_.endWait();
            stickPresent_ = true;
            showActionButtons();
            break;
        case stick::Mounting:
            ShowWait(kWaitReading);
            mountCheckTimer_->start();
            mountCheckRunning_ = true;
            break;
        case stick::Present:
            if (sub != 0) {
                showActionButtons();
                break;
            }
            hideActionButtons();
            if (transferRuns_)
                interrupt(kStickRemoved);
            break;
        default:
            stickPresent_ = false;
            hideActionButtons();
            // Without a stick nothing goes on but the search for one.
            if (transferRuns_)
                interrupt(kStickRemoved);
            else if (!mountCheckRunning_)
                popup_.endWait();
            break;
    }
}

void UsbMenu::UsbCheckTimeout() {
    if (!mountCheckRunning_)
        return;
    mountCheckRunning_ = false;
    if (stickPresent_)
        popup_.endWait();
    else
        ShowPopup(kPopupInsert, kPopupSeconds);
}

void UsbMenu::UsbCheckMountTimeout() {
    shell()->SendCommand(command::UsbMount, stick::Check, 0, 0, nullptr);
    presenceTimer_->start();
}

void UsbMenu::peersChanged() {
    FormScreen::peersChanged();
    if (shell()->linkUp())
        return;
    // What was going on will not be reported any more, and the user must get out.
    if (transferRuns_) {
        interrupt(kLinkLost);
    } else if (mountCheckRunning_) {
        mountCheckRunning_ = false;
        mountCheckTimer_->stop();
        ShowPopup(kPopupNoController, kPopupSeconds);
    }
}

void UsbMenu::showActionButtons() {
    showStatus(kConnected);
    ui_->insertLabel->hide();
    ui_->actions->show();
    presenceTimer_->start();
}

void UsbMenu::hideActionButtons() {
    showStatus(kNotConnected);
    ui_->actions->hide();
    ui_->insertLabel->show();
    presenceTimer_->stop();
}

void UsbMenu::showStatus(const char* key) {
    statusKey_ = key;
    ui_->statusRow->setPositive(key == kConnected);
    ui_->statusRow->setText(shell()->getScript(QLatin1String(key)).script);
}

// --- Exports and imports -------------------------------------------------------------------

void UsbMenu::outLogData() {
    shell()->changeWindow(screen_title::kUsbLogDates);
}

void UsbMenu::showDirSelecter(const QString& action) {
    for (const Export& one : kExports) {
        if (action != QLatin1String(one.action))
            continue;
        if (!shell()->SendCommand(command::UsbExport, one.kind, one.option, 0, nullptr))
            ShowPopup(kPopupNoController, kPopupSeconds);
        else if (one.takesLong)
            shell()->StopMenuTimer();
    }
}

void UsbMenu::showFileSelecter(const QString& action) {
    if (action == QLatin1String("log_upload"))
        popup_.ask(kAskDeleteLogs, [this, action] { openFileSelecter(action); });
    else
        openFileSelecter(action);
}

void UsbMenu::openFileSelecter(const QString& action) {
    WindowForm* picker = shell()->getWindow(screen_title::kUsbFilePicker);
    if (auto* selecter = qobject_cast<UsbUploadFileSelecter*>(picker))
        selecter->setCaller(action);
    shell()->changeWindow(screen_title::kUsbFilePicker);
}

// --- Reports -------------------------------------------------------------------------------

void UsbMenu::deviceAnswer(const DeviceMessage& message) {
    switch (message.command) {
        case command::UsbState:
            UpdateUsbInfo(message.p1, message.p2);
            break;
        case command::UsbImported:
            ShowUsbGetResult(message.p1, message.p2);
            break;
        case command::UsbExported:
            ShowUsbSetResult(message.p1, message.p2);
            break;
        case command::FirmwareProgress:
            ShowFwUpgrade(message.p1, message.p2);
            break;
        case command::UsbProgress:
            ShowUsbProgress(message.p1, message.p2);
            break;
        case command::UsbSending:
            showPercent(message.p1, message.p2);
            break;
        default:
            break;
    }
}

void UsbMenu::ShowUsbSetResult(int kind, int result) {
    if (result == transfer::Running)
        ShowWait(lookUp(kExportWaits, kind, 0));
    else
        transferEnds(lookUp(kExportPopups, result, kPopupInsert), result == transfer::NoStick);
}

void UsbMenu::ShowUsbGetResult(int kind, int result) {
    if (result == transfer::Running)
        ShowWait(lookUp(kImportWaits, kind, 0));
    else
        transferEnds(lookUp(kImportPopups, result, kPopupInsert), result == transfer::NoStick);
}

void UsbMenu::ShowUsbProgress(int phase, int percent) {
    switch (phase) {
        case transfer::Preparing:
            ShowWait(kWaitPreparing);
            break;
        case transfer::Copying:
            lastPercent_ = percent;
            ShowWait(kWaitCopying, lastPercent_);
            break;
        case transfer::Completing:
            ShowWait(kWaitCompleting, lastPercent_);
            break;
        default:
            break;
    }
}

void UsbMenu::showPercent(int phase, int percent) {
    if (phase == transfer::PreparingToSend) {
        ShowWait(kWaitPreparing);
    } else if (phase == transfer::Sending) {
        ShowWait(kWaitSending, percent);
    }
}

void UsbMenu::ShowFwUpgrade(int state, int percent) {
    if (state == transfer::Running) {
        ShowWait(kWaitUpgrading, percent);
    } else if (state == transfer::Done) {
        transferEnds(kPopupRestart, false);
    } else {
        // It does not say why; perhaps that is known.
        transferEnds(kPopupUpgradeFailed, interruption_.isOpen());
    }
}

void UsbMenu::transferEnds(int popup, bool stickGone) {
    if (stickGone && transferRuns_) {
        interrupt(kStickRemoved);
    } else if (!stickGone || !interruption_.isOpen()) {
        interruption_.close();
        ShowPopup(popup, popup == kPopupRestart ? 0 : kPopupSeconds);
    }
}

void UsbMenu::interrupt(int reason) {
    transferRuns_ = false;
    popup_.endWait();
    interruption_.show(reason, 0);
}

void UsbMenu::ShowWait(int number, int percent) {
    if (!popup_.wait(number, percent))
        return;
    transferRuns_ = number != kWaitReading;
    // Perhaps it has gone on without the link.
    if (transferRuns_)
        interruption_.close();
}

void UsbMenu::ShowPopup(int number, int seconds) {
    // What the user waited for has come to its end, however it did.
    transferRuns_ = false;
    popup_.endWait();
    (number == kPopupRestart ? restartPopup_ : popup_).show(number, seconds);
}
