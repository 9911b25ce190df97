#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "ui/dialog_form.h"
#include "ui/script_handler.h"

class NoticeStrip;
class QWidget;

/// The shell's dialogs and its strip, and what they say of the controller's own reports. GUI thread
/// only.
class ReportPopups : public QObject {
    Q_OBJECT

 public:
    ReportPopups(std::function<ScriptHandler::Script(const QString&)> scripts, QWidget* window);

    /// The popup dialog that screens share. It goes away with its screen.
    DialogForm* popupForm() const { return popup_; }

    /// Shows what there is to say of @p command with the first parameter @p p1, on the screen that
    /// it belongs to.
    void show(int command, int p1);
    /// Shows the text of @p key for some seconds, whatever screen comes up meanwhile.
    void showNotice(const QString& key);
    /// Shows the faults of @p keys until the user has closed them, whatever screen comes up
    /// meanwhile; takes them back when there are none.
    void showFaults(const QStringList& keys);
    /// Tells whoever stands at the door that an access has been recorded, or the refusal of one,
    /// and leaves the screen to them.
    void showAccess(bool accepted);

 public slots:
    void windowChanged();
    /// What belongs to no screen lies above the one that has come up, too; the strip where that
    /// one leaves a place, at the pixel line @p noticeTop.
    void windowRaised(int noticeTop);

 signals:
    /// A popup is about to come up that belongs to the screen @p title.
    void screenWanted(const QString& title);
    /// A popup that tells of an error has come up.
    void errorShown();
    /// The user agrees that old logs are deleted.
    void deleteLogsWanted();
    /// The user does not agree, or has not answered in time.
    void keepLogsWanted();

 private:
    void present(DialogForm* dialog, const QString& key, DialogForm::Icon icon);

    const std::function<ScriptHandler::Script(const QString&)> scripts_;
    DialogForm* popup_;
    DialogForm* logFull_;
    DialogForm* notice_;
    DialogForm* faults_;
    NoticeStrip* strip_;
};
