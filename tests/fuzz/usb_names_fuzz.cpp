#include "app/screen_titles.h"
#include "base/device_paths.h"
#include "fuzz_stage.h"
#include "link/command_code.h"
#include "screens/usb/usb_upload_file_selecter.h"
#include "tests/support/feed.h"
#include "ui/row_list.h"

namespace {

constexpr char kStick[] = "/mnt/usb/ZEL01";

/// Whether @p devicePath is that of a file that lies on the stick.
bool isOnStick(const QString& devicePath) {
    const QFileInfo file(DevicePaths::at(devicePath));
    return file.isFile() && !file.isSymLink() &&
           file.canonicalFilePath().startsWith(
               QFileInfo(DevicePaths::at(QLatin1String(kStick))).canonicalFilePath() +
               QLatin1Char('/'));
}

/// Lays @p names on the stick: files, folders behind a '>', links out of it behind a '@'.
void layStick(const QList<QByteArray>& names) {
    const QByteArray stick = QFile::encodeName(DevicePaths::at(QLatin1String(kStick))) + '/';
    QDir(QFile::decodeName(stick)).removeRecursively();
    QDir().mkpath(QFile::decodeName(stick));
    for (const QByteArray& name : names) {
        const QString path = QFile::decodeName(stick + name.mid(1));
        if (name.startsWith('>'))
            QDir().mkdir(path);
        else if (name.startsWith('@'))
            QFile::link(QStringLiteral("/etc"), path);
        else
            FuzzRoot::write(path, {});
    }
}

}  // namespace

// Two rows to be touched, and the names, each after its kind, with a '/' between two of them.
void take(std::uint8_t first, const QByteArray& rest) {
    if (rest.isEmpty())
        return;
    FuzzStage& terminal = FuzzStage::shared();
    layStick(rest.mid(1).split('/'));
    Stage& stage = terminal.stage();
    static_cast<UsbUploadFileSelecter*>(stage.window().getWindow(screen_title::kUsbFilePicker))
        ->setCaller(QStringLiteral("log_upload"));
    terminal.open(screen_title::kUsbFilePicker);
    for (const int number : {int(first), int(static_cast<unsigned char>(rest[0]))}) {
        const auto lists = stage.window().findChildren<RowList*>();
        for (const RowList* list : lists) {
            if (list->isVisible() && list->model()->rowCount() > 0)
                stage.touchRow(number % list->model()->rowCount());
        }
        terminal.settle();
    }
    if (QWidget* button = stage.window().getActivateWindowForm()->findChild<QWidget*>(
            QStringLiteral("forwardButton")))
        terminal.touch(button->mapTo(&stage.window(), button->rect().center()));
    FrameParser parser([](quint16 code, quint8, quint8, quint16 length, const char* payload) {
        if (code == command::UsbImport)
            demand(isOnStick(QString::fromLatin1(payload, length)));
    });
    feed(parser, terminal.settle());
}
