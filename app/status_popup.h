#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class DialogForm;
class QWidget;

/// The small popups that tell what the terminal is doing, chosen by number. GUI thread only.
class StatusPopup : public QObject {
    Q_OBJECT

 public:
    static constexpr int kDownloadingSettings = 1;
    static constexpr int kNetworkFailed = 2;

    explicit StatusPopup(QWidget* window);

    /// Shows the popup @p key in a dialog of its own, which takes the place of the one before. It
    /// counts as shown for @p seconds (0: until close()). A number without a text shows nothing.
    void show(int key, int seconds);
    void close();

    bool isShown() const { return shown_; }
    int key() const { return key_; }
    int seconds() const { return seconds_; }

 private:
    void PopupTimeout();

    QWidget* const window_;
    QPointer<DialogForm> dialog_;
    QTimer timer_;
    bool shown_ = false;
    int key_ = 0;
    int seconds_ = 0;
};
