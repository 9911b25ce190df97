#include "screens/usb/usb_menu.h"

#include <QTimer>
#include <algorithm>
#include <iterator>

#include "app/main_window.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "screens/usb/usb_upload_file_selecter.h"
#include "ui/theme.h"
#include "ui/wait_form.h"
#include "ui_usb_menu.h"

namespace {

constexpr int kCheckInterval = 5000;  // milliseconds
constexpr int kPopupSeconds = 3;

namespace stick = command::stick;
namespace transfer = command::transfer;

constexpr int kWaitReading = 17;
constexpr int kWaitPreparing = 21;
constexpr int kWaitCopying = 22;
constexpr int kWaitCompleting = 23;

constexpr int kPopupImported = 1;
constexpr int kPopupExported = 2;
constexpr int kPopupInsert = 4;
constexpr int kPopupRestart = 5;
constexpr int kPopupUpgradeFailed = 6;
constexpr int kPopupNotExported = 8;
constexpr int kPopupNoFolder = 20;

constexpr auto Error = DialogForm::Icon::Error;
constexpr auto Pass = DialogForm::Icon::Pass;
constexpr auto Warning = DialogForm::Icon::Warning;

struct NumberedText {
    int number;
    const char* key;
};

constexpr NumberedText kWaits[] = {
    {1, "ListItem_LogExportedUSB"},           {2, "ListItem_LogImportedUSB"},
    {3, "ListItem_UserDataExportedUSB"},      {4, "ListItem_UserDataImportedUSB"},
    {5, "ListItem_SettingDataExportedUSB"},   {6, "ListItem_SettingDataImportedUSB"},
    {7, "ListItem_AllDataExportedUSB"},       {8, "ListItem_AllDataImportedUSB"},
    {9, "ListItem_ImageExportedUSB"},         {10, "ListItem_ImageImportedUSB"},
    {kWaitReading, "ListItem_ReadingUSB"},    {19, "ListItem_ReadingFile"},
    {kWaitPreparing, "ListItem_Preparing"},   {kWaitCopying, "ListItem_Copying"},
    {kWaitCompleting, "ListItem_Completing"}, {24, "ListItem_LogoImageImportedUSB"},
};

struct NumberedPopup {
    int number;
    PopupText text;
};

constexpr NumberedPopup kPopups[] = {
    {kPopupImported, {"ListItem_TransmissionComplete", Pass}},
    {kPopupExported, {"ListItem_TransmissionComplete", Pass}},
    {3, {"ListItem_CannotAborTransmission", Warning}},
    {kPopupInsert, {"ListItem_InsertUSB", Error}},
    {kPopupRestart, {"ListItem_FwRestart", Pass}},
    {kPopupUpgradeFailed, {"ListItem_FwUpgradeFailed", Error}},
    {kPopupNotExported, {"ListItem_CannotExportFiles", Error}},
    {10, {"ListItem_ExceededMaximumUsers", Error}},
    {12, {"ListItem_ExceededMaximumAdmin", Error}},
    {16, {"ListItem_ImportFailInvalidData", Error}},
    {kPopupNoFolder, {"ListItem_UsbNotHaveZEL01Folder", Error}},
    {22, {"ListItem_NoValidFileFound", Error}},
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

/// Why a transfer has been interrupted.
constexpr char kStickRemoved[] = "ListItem_UsbRemoved";
constexpr char kLinkLost[] = "ListItem_LinkLost";

constexpr PopupText kNoController{"ListItem_NoController", Error};

}  // namespace

UsbMenu::UsbMenu(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")),
      mountCheckTimer_(new QTimer(this)),
      presenceTimer_(new QTimer(this)),
      popup_(this),
      restartPopup_(parent),
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

UsbMenu::~UsbMenu() = default;

void UsbMenu::createForm() {
    ui_ = std::make_unique<Ui::UsbMenu>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
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

    waitForm_ = new WaitForm(this);
    waitForm_->setObjectName(QStringLiteral("usbWaitForm"));
    waitForm_->setSecondTextKey(QStringLiteral("ListItem_DoNotRemoveUSB"));
    interruption_ = new DialogForm(this);
    interruption_->setObjectName(QStringLiteral("usbInterruption"));
    interruption_->setIcon(Error);
    interruption_->setTextKey(QStringLiteral("ListItem_TransferInterrupted"));
}

void UsbMenu::scriptsApplied() {
    showStatus(statusKey_);
}

void UsbMenu::windowInEvent() {
    TitledForm::windowInEvent();
    if (param().toBool()) {
        UsbCheckMountTimeout();
        return;
    }
    stickPresent_ = false;
    hideActionButtons();
    mount_usb();
}

void UsbMenu::hideEvent(QHideEvent* event) {
    TitledForm::hideEvent(event);
    waitForm_->hide();
    transferRuns_ = false;
    presenceTimer_->stop();
    // The other timer may run out; nobody waits for it any more.
    mountCheckRunning_ = false;
}

// --- The stick -----------------------------------------------------------------------------

void UsbMenu::mount_usb() {
    MainWindow::getMainWindow()->SendCommand(command::UsbMount, stick::Mount, 0, 0, nullptr);
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
            waitForm_->hide();
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
                waitForm_->hide();
            break;
    }
}

void UsbMenu::UsbCheckTimeout() {
    if (!mountCheckRunning_)
        return;
    mountCheckRunning_ = false;
    if (stickPresent_)
        waitForm_->hide();
    else
        ShowPopup(kPopupInsert, kPopupSeconds);
}

void UsbMenu::UsbCheckMountTimeout() {
    MainWindow::getMainWindow()->SendCommand(command::UsbMount, stick::Check, 0, 0, nullptr);
    presenceTimer_->start();
}

void UsbMenu::peersChanged() {
    if (shell()->linkUp())
        return;
    // What was going on will not be reported any more, and the user must get out.
    if (transferRuns_) {
        interrupt(kLinkLost);
    } else if (mountCheckRunning_) {
        mountCheckRunning_ = false;
        mountCheckTimer_->stop();
        waitForm_->hide();
        popup_.show(kNoController, kPopupSeconds);
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
    ui_->statusRow->setText(MainWindow::getMainWindow()->getScript(QLatin1String(key)).script);
}

// --- Exports and imports -------------------------------------------------------------------

void UsbMenu::outLogData() {
    MainWindow::getMainWindow()->changeWindow(QStringLiteral("UsbOutLogWindow"));
}

void UsbMenu::showDirSelecter(const QString& action) {
    MainWindow* shell = MainWindow::getMainWindow();
    for (const Export& one : kExports) {
        if (action != QLatin1String(one.action))
            continue;
        if (!shell->SendCommand(command::UsbExport, one.kind, one.option, 0, nullptr))
            popup_.show(kNoController, kPopupSeconds);
        else if (one.takesLong)
            shell->StopMenuTimer();
    }
}

void UsbMenu::showFileSelecter(const QString& action) {
    if (action == QLatin1String("log_upload"))
        askBeforeLogImport();
    else
        openFileSelecter(action);
}

void UsbMenu::askBeforeLogImport() {
    if (logWarning_ == nullptr) {
        logWarning_ = new DialogForm(this);
        logWarning_->setObjectName(QStringLiteral("logWarning"));
        logWarning_->setButtonType(DialogForm::OkCancelButtons);
        logWarning_->setIcon(Warning);
        logWarning_->setDanger(true);
        logWarning_->setTextKey(QStringLiteral("ListItem_RunDeleteOldLogs"));
        connect(logWarning_, &DialogForm::touchOk, this,
                [this] { openFileSelecter(QStringLiteral("log_upload")); });
    }
    logWarning_->show();
}

void UsbMenu::openFileSelecter(const QString& action) {
    MainWindow* shell = MainWindow::getMainWindow();
    const QString title = QStringLiteral("usbUploadFileSelector");
    if (auto* selecter = qobject_cast<UsbUploadFileSelecter*>(shell->getWindow(title)))
        selecter->setCaller(action);
    shell->changeWindow(title);
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
        showWaitPercent("ListItem_Sending", percent);
    }
}

void UsbMenu::ShowFwUpgrade(int state, int percent) {
    if (state == transfer::Running) {
        showWaitPercent("ListItem_upgradingUSB", percent);
    } else if (state == transfer::Done) {
        transferEnds(kPopupRestart, false);
    } else {
        // It does not say why; perhaps that is known.
        transferEnds(kPopupUpgradeFailed, interruption_->isOpen());
    }
}

void UsbMenu::transferEnds(int popup, bool stickGone) {
    if (stickGone && transferRuns_) {
        interrupt(kStickRemoved);
    } else if (!stickGone || !interruption_->isOpen()) {
        interruption_->hide();
        ShowPopup(popup, popup == kPopupRestart ? 0 : kPopupSeconds);
    }
}

void UsbMenu::interrupt(const char* reason) {
    transferRuns_ = false;
    waitForm_->hide();
    interruption_->setSecondTextKey(QLatin1String(reason));
    interruption_->show();
    shell()->PlaySound(command::sound::Error);
}

void UsbMenu::ShowWait(int number, int percent) {
    for (const NumberedText& wait : kWaits) {
        if (wait.number != number)
            continue;
        transferRuns_ = number != kWaitReading;
        waitForm_->setProgress(percent);
        showWaitText(wait.key);
    }
}

void UsbMenu::showWaitPercent(const char* key, int percent) {
    percent = qMin(percent, 100);
    transferRuns_ = true;
    waitForm_->setProgress(percent, false);
    showWaitText(key, QString::number(percent));
}

void UsbMenu::showWaitText(const char* key, const QString& percent) {
    // Perhaps it has gone on without the link.
    if (transferRuns_)
        interruption_->hide();
    waitForm_->setTextKey(QLatin1String(key), percent);
    waitForm_->show();
}

void UsbMenu::ShowPopup(int number, int seconds) {
    // What the user waited for has come to its end, however it did.
    transferRuns_ = false;
    waitForm_->hide();
    for (const NumberedPopup& popup : kPopups) {
        if (popup.number == number)
            (number == kPopupRestart ? restartPopup_ : popup_).show(popup.text, seconds);
    }
}
