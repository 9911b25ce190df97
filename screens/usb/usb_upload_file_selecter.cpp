#include "screens/usb/usb_upload_file_selecter.h"

#include <QDirIterator>
#include <QLoggingCategory>
#include <QScrollBar>

#include "app/main_window.h"
#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/frame.h"
#include "screens/usb/file_row.h"
#include "ui/theme.h"
#include "ui_usb_upload_file_selecter.h"

Q_LOGGING_CATEGORY(usbLog, "zel.screens.usb", QtInfoMsg)

namespace {

namespace transfer = command::transfer;

constexpr char kMountPoint[] = "/mnt/usb";
constexpr char kStickFolder[] = "/mnt/usb/ZEL01";
/// More would be no help to anyone who has to scroll through them with a finger.
constexpr int kMostEntries = 500;
constexpr int kPopupSeconds = 3;

enum Popup { kPopupName, kPopupNoController };
constexpr ScreenText kTexts[] = {
    {kPopupName, "ListItem_UsbFileName", ScreenText::Info},
    {kPopupNoController, "ListItem_NoController", ScreenText::Error},
};

/// What a chosen file is sent with.
struct Import {
    const char* action;
    unsigned short command;
    unsigned char kind;
};

constexpr Import kImports[] = {
    {"log_upload", command::UsbImport, transfer::Logs},
    {"userInfo_upload", command::UsbImport, transfer::Users},
    {"envi_upload", command::UsbImport, transfer::Settings},
    {"all_upload", command::UsbImport, transfer::Everything},
    {"stay_upload", command::UsbImport, transfer::Background},
    {"key_upload", command::UsbImport, transfer::CardKeys},
    {"logo_upload", command::UsbImport, transfer::Logo},
    {"fw_upgrade", command::UsbImportFile, 0},
};

/// Whether @p devicePath is where it seems to be: a link on the stick may lead anywhere.
bool isOnStick(const QString& devicePath) {
    const QString mountPoint = QLatin1String(kMountPoint);
    const QString real = QFileInfo(DevicePaths::at(devicePath)).canonicalFilePath();
    return !real.isEmpty() && real == QFileInfo(DevicePaths::at(mountPoint)).canonicalFilePath() +
                                          devicePath.mid(mountPoint.size());
}

}  // namespace

UsbUploadFileSelecter::UsbUploadFileSelecter(QWidget* parent, const QString& title)
    : TitledForm(parent, title), popup_(this, kTexts) {}

UsbUploadFileSelecter::~UsbUploadFileSelecter() = default;

void UsbUploadFileSelecter::createForm() {
    ui_ = std::make_unique<Ui::UsbUploadFileSelecter>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
    connect(ui_->topBar, &TopBar::forwardTouched, this, &UsbUploadFileSelecter::selectedOK);
    for (QLabel* label : {ui_->pathLabel, ui_->emptyLabel}) {
        QPalette hint = label->palette();
        hint.setColor(QPalette::WindowText, Theme::color(Theme::kHint));
        label->setPalette(hint);
    }
    ui_->pathLabel->setFont(Theme::font(QStringLiteral("Noto Sans CJK KR"), 20));
}

void UsbUploadFileSelecter::windowInEvent() {
    TitledForm::windowInEvent();
    updatePath(QLatin1String(kStickFolder));
}

void UsbUploadFileSelecter::prevButtonTouch() {
    if (folderPath_ == QLatin1String(kStickFolder))
        MainWindow::getMainWindow()->changeWindow(QStringLiteral("usbMenuWindow"), true);
    else
        updatePath(folderPath_.section(QLatin1Char('/'), 0, -2));
}

void UsbUploadFileSelecter::updatePath(const QString& devicePath) {
    folderPath_ = devicePath;
    const QFontMetrics metrics(ui_->pathLabel->font());
    ui_->pathLabel->setText(
        metrics.elidedText(FileRow::visible(devicePath), Qt::ElideMiddle, ui_->pathLabel->width()));
    listEntries();
}

void UsbUploadFileSelecter::listEntries() {
    choose(nullptr);
    const auto old = ui_->rows->findChildren<FileRow*>();
    for (FileRow* row : old) {
        // It may be the one whose touch has led here.
        row->hide();
        ui_->rowsLayout->removeWidget(row);
        row->setObjectName(QString());
        row->deleteLater();
    }

    QStringList folders;
    QStringList files;
    if (isOnStick(folderPath_)) {
        QDirIterator entries(DevicePaths::at(folderPath_),
                             QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks);
        while (entries.hasNext() && folders.size() + files.size() < kMostEntries) {
            entries.next();
            (entries.fileInfo().isDir() ? folders : files).append(entries.fileName());
        }
        if (entries.hasNext())
            qCInfo(usbLog, "only %d entries of %s are shown", kMostEntries,
                   qUtf8Printable(folderPath_));
    }
    showRows(folders, true);
    showRows(files, false);
    ui_->emptyLabel->setVisible(folders.isEmpty() && files.isEmpty());
    ui_->list->verticalScrollBar()->setValue(0);
}

void UsbUploadFileSelecter::showRows(const QStringList& names, bool folders) {
    QStringList sorted = names;
    sorted.sort(Qt::CaseInsensitive);
    for (const QString& name : qAsConst(sorted)) {
        auto* row = new FileRow(name, folders, ui_->rows);
        // Before the stretch at the end.
        const int place = ui_->rowsLayout->count() - 1;
        row->setObjectName(QStringLiteral("fileRow%1").arg(place));
        ui_->rowsLayout->insertWidget(place, row);
        row->show();
        connect(row, &FileRow::touched, this, [this, row] { rowTouched(row); });
    }
}

void UsbUploadFileSelecter::rowTouched(FileRow* row) {
    const QString path = folderPath_ + QLatin1Char('/') + row->name();
    if (payloadOf(path).isEmpty())
        popup_.show(kPopupName, kPopupSeconds);
    else if (row->isFolder())
        updatePath(path);
    else
        choose(row);
}

void UsbUploadFileSelecter::choose(FileRow* row) {
    if (chosen_ != nullptr)
        chosen_->setSelected(false);
    chosen_ = row;
    if (chosen_ != nullptr)
        chosen_->setSelected(true);
    ui_->topBar->button(TopBar::Forward)->setEnabled(chosen_ != nullptr);
}

void UsbUploadFileSelecter::selectedOK() {
    if (chosen_ == nullptr)
        return;
    MainWindow* shell = MainWindow::getMainWindow();
    const QByteArray path = payloadOf(folderPath_ + QLatin1Char('/') + chosen_->name());
    for (const Import& one : kImports) {
        if (caller_ == QLatin1String(one.action) &&
            !shell->SendCommand(one.command, one.kind, 0, static_cast<unsigned short>(path.size()),
                                path.constData())) {
            popup_.show(kPopupNoController, kPopupSeconds);
            return;
        }
    }
    shell->changeWindow(QStringLiteral("usbMenuWindow"), true);
    // What takes long is not to be cut off.
    shell->StopMenuTimer();
}

QByteArray UsbUploadFileSelecter::payloadOf(const QString& devicePath) {
    const QByteArray bytes = devicePath.toLatin1();
    const bool told = QString::fromLatin1(bytes) == devicePath &&
                      static_cast<std::size_t>(bytes.size()) <= Frame::kMaxPayloadSize;
    return told ? bytes : QByteArray();
}
