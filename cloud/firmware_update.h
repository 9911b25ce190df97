#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

#include "cloud/parameters.h"

class DownloadManager;
class ManagementHost;

/// Renews the firmware as the management service orders it: has the archive fetched, gives it its
/// name and tells the controller, until that has answered. Orders that an end of the process has
/// interrupted are taken up at the next start. GUI thread.
class FirmwareUpdate : public QObject {
    Q_OBJECT

 public:
    /// Milliseconds that the controller has for its answer, with the link up.
    static constexpr int kAnswerTime = 300000;
    /// How often the controller is told of an archive that it neither takes nor answers for, each
    /// time after a start of its own: an upgrade must not end in restarts for ever.
    static constexpr int kMostHandOvers = 3;
    /// Milliseconds after the start before interrupted orders are gone on with: until then the
    /// boot screen is up.
    static constexpr int kResumeDelay = 15000;

    /// Both outlive the object.
    FirmwareUpdate(DownloadManager& downloads, ManagementHost& host);

    /// Tidies the input folder and takes up what is left of the time before the start. To be called
    /// before any order().
    void resume();
    /// Carries @p order out when those before it are done.
    void order(const FR44_Parameter& order);
    /// The downloads have ended: a complete archive gets its name, and the controller is told in
    /// any case; it does nothing when it finds none.
    void downloaded();
    /// The controller has answered.
    void answered();
    void setAnswerTime(int milliseconds) { answerTime_ = milliseconds; }
    /// How often the link is looked at while the controller is to be told or to answer.
    void setLookInterval(int milliseconds) { timer_.setInterval(milliseconds); }
    void setResumeDelay(int milliseconds) { resumeDelay_ = milliseconds; }

 private:
    void look();
    void update();

    DownloadManager& downloads_;
    ManagementHost& host_;
    int answerTime_ = kAnswerTime;
    int resumeDelay_ = kResumeDelay;
    QVector<int> numbers_;     // of the orders whose archives are being fetched
    int handedOver_ = 0;       // the order that the controller is told of; 0 for none
    bool unanswered_ = false;  // the controller is to be told, or its answer is awaited
    quint32 toldOn_ = 0;       // the connection on which it has been told, 0 for none
    QElapsedTimer told_;
    QTimer timer_;
    bool booting_ = false;
};
