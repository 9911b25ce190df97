#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QQueue>
#include <QString>
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
    /// Milliseconds without a byte after which a download is given up.
    static constexpr int kSilenceLimit = 30000;
    /// Addresses that wait for their turn; further ones are passed over.
    static constexpr int kMaxWaiting = 16;

    explicit DownloadManager(QObject* parent = nullptr);
    ~DownloadManager() override;

    /// Queues @p url, if there is room; it is fetched when those before it are done.
    void append(const QUrl& url);

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

    void setSilenceLimit(int milliseconds) { silenceLimit_ = milliseconds; }

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
    void startNextDownload();
    void downloadProgress(qint64 received, qint64 total);
    void downloadFinished();
    void downloadReadyRead();
    QString saveFileName(const QUrl& url) const;
    void clearOldFiles(const QUrl& url);

    // Made for the first download: with it come threads and plug-ins that most days never need.
    std::unique_ptr<QNetworkAccessManager> network_;
    const QString basePath_;
    QQueue<QUrl> queue_;
    QNetworkReply* reply_ = nullptr;
    QFile output_;
    QString writeError_;
    QElapsedTimer time_;
    int silenceLimit_ = kSilenceLimit;
};
