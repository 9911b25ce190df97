#include "screens/usb/usb_upload_file_selecter.h"

#include <QDirIterator>
#include <QLoggingCategory>

#include "app/window_shell.h"
#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/frame.h"
#include "ui/theme.h"

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
    : FormScreen(parent, title), files_(new FileModel(this)), popup_(this, kTexts) {}

void UsbUploadFileSelecter::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &UsbUploadFileSelecter::selectedOK);
    ui_->list->setRowPainter(new FilePainter(this));
    ui_->list->setModel(files_);
    connect(ui_->list, &RowList::rowTouched, this, &UsbUploadFileSelecter::rowTouched);
    QPalette hint = ui_->pathLabel->palette();
    hint.setColor(QPalette::WindowText, Theme::color(Theme::kHint));
    ui_->pathLabel->setPalette(hint);
    ui_->pathLabel->setFont(Theme::font(QStringLiteral("Noto Sans CJK KR"), 20));
}

void UsbUploadFileSelecter::windowInEvent() {
    FormScreen::windowInEvent();
    updatePath(QLatin1String(kStickFolder));
}

void UsbUploadFileSelecter::prevButtonTouch() {
    if (folderPath_ == QLatin1String(kStickFolder))
        shell()->changeWindow(backTarget(), true);
    else
        updatePath(folderPath_.section(QLatin1Char('/'), 0, -2));
}

void UsbUploadFileSelecter::updatePath(const QString& devicePath) {
    folderPath_ = devicePath;
    const QFontMetrics metrics(ui_->pathLabel->font());
    ui_->pathLabel->setText(metrics.elidedText(FilePainter::visible(devicePath), Qt::ElideMiddle,
                                               ui_->pathLabel->width()));
    listEntries();
}

void UsbUploadFileSelecter::listEntries() {
    choose({});
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
    files_->setEntries(folders, files);
    ui_->list->rewind();
}

QString UsbUploadFileSelecter::pathOf(const QModelIndex& row) const {
    return folderPath_ + QLatin1Char('/') + row.data().toString();
}

void UsbUploadFileSelecter::rowTouched(const QModelIndex& row) {
    const QString path = pathOf(row);
    if (payloadOf(path).isEmpty())
        popup_.show(kPopupName, kPopupSeconds);
    else if (row.data(FileModel::IsFolder).toBool())
        updatePath(path);
    else
        choose(row);
}

void UsbUploadFileSelecter::choose(const QModelIndex& row) {
    ui_->list->select(row);
    ui_->topBar->button(TopBar::Forward)->setEnabled(row.isValid());
}

void UsbUploadFileSelecter::selectedOK() {
    const QModelIndex chosen = ui_->list->selected();
    if (!chosen.isValid())
        return;
    const QByteArray path = payloadOf(pathOf(chosen));
    for (const Import& one : kImports) {
        if (caller_ == QLatin1String(one.action) &&
            !shell()->SendCommand(one.command, one.kind, 0,
                                  static_cast<unsigned short>(path.size()), path.constData())) {
            popup_.show(kPopupNoController, kPopupSeconds);
            return;
        }
    }
    shell()->changeWindow(backTarget(), true);
    // What takes long is not to be cut off.
    shell()->StopMenuTimer();
}

QByteArray UsbUploadFileSelecter::payloadOf(const QString& devicePath) {
    const QByteArray bytes = devicePath.toLatin1();
    const bool told = QString::fromLatin1(bytes) == devicePath &&
                      static_cast<std::size_t>(bytes.size()) <= Frame::kMaxPayloadSize;
    return told ? bytes : QByteArray();
}
