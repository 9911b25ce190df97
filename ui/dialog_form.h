#pragma once

#include <QTimer>

#include "ui/message_overlay.h"

class LabelButton;
class QLabel;

/// A dialog with an icon, a text, a second line and up to two buttons. It is also the popup that
/// closes by itself.
class DialogForm : public MessageOverlay {
    Q_OBJECT

 public:
    /// The buttons, to be combined.
    enum ButtonType { NoButton = 0, OkButton = 16, CancelButton = 256, OkCancelButtons = 272 };
    enum class Icon { None, Error, Info, Pass, Question, Warning };

    /// @p autoCloseMs as in setAutoClose(). The dialog has an OK button until told otherwise.
    explicit DialogForm(QWidget* parent, int autoCloseMs = 0);

    /// Milliseconds from each show until the dialog closes by itself; 0 for never.
    void setAutoClose(int ms);
    /// @p flags is a combination of ButtonType.
    void setButtonType(int flags);
    void setIcon(Icon icon);
    void setOkText(const ScriptHandler::Script& script);
    void setCancelText(const ScriptHandler::Script& script);
    /// OK destroys something, and looks like it.
    void setDanger(bool on);

 signals:
    /// OK or cancel was touched; the dialog is hidden already.
    void touchOk();
    void touchCancel();
    /// The user has not agreed: cancel was touched (after touchCancel()), the time is up or
    /// another dialog took the place. Not emitted when the program hides the dialog.
    void closePopup();

 protected:
    int arrange() override;
    void hideEvent(QHideEvent* event) override;
    void replaced() override;
    void showEvent(QShowEvent* event) override;

 private:
    QLabel* icon_;
    LabelButton* ok_;
    LabelButton* cancel_;
    QTimer autoClose_;
};
