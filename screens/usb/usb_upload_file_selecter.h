#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "screens/usb/file_list.h"
#include "ui_usb_upload_file_selecter.h"

/// Picker for a file on the USB stick. It shows the stick's folder "ZEL01" and what lies below it,
/// and never leads out of it.
class UsbUploadFileSelecter : public FormScreen<Ui::UsbUploadFileSelecter> {
    Q_OBJECT

 public:
    UsbUploadFileSelecter(QWidget* parent, const QString& title);

    /// What the chosen file is for: the name of an import.
    void setCaller(const QString& action) { caller_ = action; }
    void windowInEvent() override;

 public slots:
    /// Asks for the import of the chosen file.
    void selectedOK();

 protected:
    void built() override;
    /// One folder up, and from the first one back to the menu.
    void prevButtonTouch() override;

 private:
    /// Shows the folder @p devicePath.
    void updatePath(const QString& devicePath);
    void listEntries();
    void rowTouched(const QModelIndex& row);
    /// Makes @p row the chosen one, invalid for none.
    void choose(const QModelIndex& row);
    QString pathOf(const QModelIndex& row) const;
    /// What the controller gets for @p devicePath; empty when it cannot be told that path.
    static QByteArray payloadOf(const QString& devicePath);

    QString caller_;
    QString folderPath_;
    FileModel* const files_;
    ScreenPopup popup_;
};
