#pragma once

#include <memory>

#include "screens/common/screen_popup.h"
#include "screens/common/titled_form.h"

namespace Ui {
class UsbUploadFileSelecter;
}
class FileRow;

/// Picker for a file on the USB stick. It shows the stick's folder "ZEL01" and what lies below it,
/// and never leads out of it.
class UsbUploadFileSelecter : public TitledForm {
    Q_OBJECT

 public:
    UsbUploadFileSelecter(QWidget* parent, const QString& title);
    ~UsbUploadFileSelecter() override;

    /// What the chosen file is for: the name of an import.
    void setCaller(const QString& action) { caller_ = action; }
    void windowInEvent() override;

 public slots:
    /// Asks for the import of the chosen file.
    void selectedOK();

 protected:
    void createForm() override;
    /// One folder up, and from the first one back to the menu.
    void prevButtonTouch() override;

 private:
    /// Shows the folder @p devicePath.
    void updatePath(const QString& devicePath);
    void listEntries();
    void showRows(const QStringList& names, bool folders);
    void rowTouched(FileRow* row);
    void choose(FileRow* row);
    /// What the controller gets for @p devicePath; empty when it cannot be told that path.
    static QByteArray payloadOf(const QString& devicePath);

    std::unique_ptr<Ui::UsbUploadFileSelecter> ui_;
    QString caller_;
    QString folderPath_;
    FileRow* chosen_ = nullptr;
    ScreenPopup popup_;
};
