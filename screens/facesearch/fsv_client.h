#pragma once

#include <QThread>
#include <QTimer>
#include <mutex>
#include <optional>

#include "screens/facesearch/face_search_records.h"
#include "screens/facesearch/face_search_server.h"
#include "screens/facesearch/wake_descriptor.h"

/// Keeps the terminal connected to its face-search server, in a thread of its own; start() begins.
/// Made and destroyed in the GUI thread, where its signal comes.
class FsvClient : public QThread {
    Q_OBJECT

 public:
    explicit FsvClient(FaceSearchServer server, QObject* parent = nullptr);
    /// Ends the connection and joins the thread, within 100 ms.
    ~FsvClient() override;

 signals:
    /// The server says who somebody is. Of answers that come within 200 ms the last one counts.
    void recognised(const FaceInfoRecord& face);

 protected:
    void run() override;

 private:
    void keep(const FaceInfoRecord& face);
    void deliver();

    const FaceSearchServer server_;
    WakeDescriptor stop_;
    std::mutex lock_;
    std::optional<FaceInfoRecord> latest_;  // not told yet
    QTimer pause_;                          // between two of them
};
