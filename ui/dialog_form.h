#pragma once

#include <QTimer>

#include "ui/message_overlay.h"

class LabelButton;
class QLabel;

/// A dialog with an icon, a text, a second line and up to two buttons, which say OK and Cancel. It
/// is also the popup that closes by itself.
class DialogForm : public MessageOverlay {
    Q_OBJECT
    Q_PROPERTY(QString okKey READ okKey WRITE setOkKey)
    Q_PROPERTY(QString cancelKey READ cancelKey WRITE setCancelKey)

 public:
    /// The buttons, to be combined.
    enum ButtonType { NoButton = 0, OkButton = 16, CancelButton = 256, OkCancelButtons = 272 };
    enum class Icon { None, Error, Info, Pass, Question, Warning };

    /// @p autoCloseMs as in setAutoClose(). The dialog has an OK button until told otherwise.
    explicit DialogForm(QWidget* parent, int autoCloseMs = 0,
                        DialogRank rank = DialogRank::Message);

    /// Milliseconds until the dialog closes by itself; 0 for never. Only those in which it is to
    /// be seen count, from the beginning whenever it comes up.
    void setAutoClose(int ms);
    /// What it says is true only for its time, which runs on while something covers it. Off at
    /// first.
    void setPassing(bool on) { passing_ = on; }
    /// OK can be touched only when the dialog has been seen for @p ms milliseconds; 0: at once.
    void setOkDelay(int ms);
    /// @p flags is a combination of ButtonType.
    void setButtonType(int flags);
    void setIcon(Icon icon);
    /// Other words on the buttons, by their keys or as they are.
    const QString& okKey() const { return okKey_; }
    void setOkKey(const QString& key);
    const QString& cancelKey() const { return cancelKey_; }
    void setCancelKey(const QString& key);
    /// OK destroys something, and looks like it.
    void setDanger(bool on);

    void applyScripts(const Lookup& lookup) override;

 signals:
    /// OK or cancel was touched; the dialog is hidden already.
    void touchOk();
    void touchCancel();
    /// The user has not agreed: cancel was touched (after touchCancel()) or the time is up. Not
    /// emitted when the program hides the dialog.
    void closePopup();

 protected:
    int arrange() override;
    void closed() override;
    void opened() override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    QLabel* icon_;
    QString iconName_;
    LabelButton* ok_;
    LabelButton* cancel_;
    QString okKey_;
    QString cancelKey_;
    QTimer autoClose_;
    QTimer okDelay_;
    bool passing_ = false;
};
