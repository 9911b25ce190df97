#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QQueue>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

/// Fetches files over HTTP into the terminal's input folder, one after the other.
///
/// A file that cannot be had whole leaves nothing behind. The upgrade archive's own name is never
/// given to a download: only the finished file is renamed to it. GUI thread; may be destroyed at
/// any moment, a download under way is then given up.
class DownloadManager : public QObject {
    Q_OBJECT

 public:
    /// What a download may take.
    struct Limits {
        qint64 size = qint64{512} * 1024 * 1024;       // bytes
        qint64 spareSpace = qint64{64} * 1024 * 1024;  // bytes that stay free on the disk
        int silence = 30000;                           // milliseconds without a byte
        int window = 60000;                            // milliseconds, in any of which there come
        qint64 bytesPerWindow = qint64{60} * 1024;     // at least so many bytes
    };
    /// Addresses that wait for their turn. Further ones take the place of the oldest: only the
    /// latest one's file is kept anyway.
    static constexpr int kMaxWaiting = 16;

    explicit DownloadManager(QObject* parent = nullptr);
    ~DownloadManager() override;

    /// Removes what downloads that were cut short have left: all that is in the folder, but for a
    /// complete archive. Only while nothing is being fetched.
    void removeLeftovers();

    /// Queues @p url; it is fetched when those before it are done.
    void append(const QUrl& url);
    /// Lets no further download begin as long as @p held, which the removal of the archive would
    /// begin with.
    void hold(bool held);

    /// The file of the present or, between downloads, the latest address; empty at first. It
    /// exists after finished() only when that download succeeded.
    QString getFilePath() const { return output_.fileName(); }
    /// The folder of all downloads, with a slash at its end.
    QString getBasePath() const { return basePath_; }
    /// The name of getFilePath() without its folder.
    QString getFileName() const;
    /// The path under which the device controller looks for an upgrade archive.
    QString getArchivePath() const;

    /// "512.0 bytes/sec", "1.9 MB/s": the speed of @p bytes in @p milliseconds.
    static QString speedText(qint64 bytes, qint64 milliseconds);

    void setLimits(const Limits& limits) { limits_ = limits; }

 signals:
    /// The queue has run empty, whatever became of its addresses.
    void finished();
    /// The file at @p filePath is complete.
    void finished(const QString& filePath);
    /// A download into @p filePath begins.
    void emitFilePath(const QString& filePath);
    /// How far the present download is; @p total is -1 when the server does not say.
    void progress(qint64 received, qint64 total, const QString& speed);

 private:
    QNetworkAccessManager& network();
    void scheduleNextDownload();
    void startNextDownload();
    void downloadAnnounced();
    void measureSpeed();
    bool fits(qint64 bytes);
    void giveUp(const QString& reason);
    void downloadProgress(qint64 received, qint64 total);
    void downloadFinished();
    void downloadReadyRead();
    void writeOut();
    QString saveFileName(const QUrl& url) const;
    void clearOldFiles(const QUrl& url);

    // Made for the first download: with it come threads and plug-ins that most days never need.
    std::unique_ptr<QNetworkAccessManager> network_;
    const QString basePath_;
    QQueue<QUrl> queue_;
    QNetworkReply* reply_ = nullptr;
    QFile output_;
    qint64 writtenOut_ = 0;  // bytes that the disk has been told to write
    QString fault_;          // for which the download has been given up here
    bool held_ = false;
    QElapsedTimer time_;
    Limits limits_;
    QTimer speedTimer_;
    QQueue<qint64> received_;  // bytes there were at its latest runs
};
