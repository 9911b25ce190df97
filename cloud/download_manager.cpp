#include "cloud/download_manager.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QRegularExpression>

#include "base/device_paths.h"
#include "cloud/cloud_log.h"
#include "cloud/disk.h"

namespace {

const QLatin1String kArchiveName("zel01.tar.bz2");
/// What the connection may hold ahead of the disk.
constexpr qint64 kReadAhead = qint64{1024} * 1024;
constexpr qint64 kWriteOut = qint64{1024} * 1024;
/// How often the speed is looked at in each window.
constexpr int kSpeedSteps = 12;

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 305 || status == 307 ||
           status == 308;
}

/// The last component of the path. It is decoded only as far as it cannot leave the folder.
QString nameOf(const QUrl& url) {
    QString name = QFileInfo(url.path(QUrl::FullyDecoded)).fileName();
    name.remove(QLatin1Char('\0'));
    return name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..")
               ? QStringLiteral("download")
               : name;
}

}  // namespace

DownloadManager::DownloadManager(QObject* parent)
    : QObject(parent), basePath_(DevicePaths::at(QStringLiteral("/mnt/data/input/"))) {
    connect(&speedTimer_, &QTimer::timeout, this, &DownloadManager::measureSpeed);
}

DownloadManager::~DownloadManager() {
    if (reply_ == nullptr)
        return;
    reply_->disconnect(this);
    reply_->abort();
    output_.close();
    output_.remove();
}

QString DownloadManager::getFileName() const {
    return QFileInfo(output_.fileName()).fileName();
}

QString DownloadManager::getArchivePath() const {
    return basePath_ + kArchiveName;
}

void DownloadManager::removeLeftovers() {
    // A folder that is a link is somebody else's.
    if (QFileInfo(QDir::cleanPath(basePath_)).isSymLink())
        return;
    const QFileInfoList entries = QDir(basePath_).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const bool archive =
            entry.fileName() == kArchiveName && entry.isFile() && !entry.isSymLink();
        if (!archive && !Disk::remove(entry.filePath()))
            qCWarning(cloudLog, "%s cannot be removed", qUtf8Printable(entry.filePath()));
    }
}

void DownloadManager::append(const QUrl& url) {
    const bool first = queue_.isEmpty();
    if (queue_.size() == kMaxWaiting)
        qCWarning(cloudLog, "too many downloads wait, %s is passed over",
                  queue_.dequeue().toEncoded().constData());
    queue_.enqueue(url);
    if (first)
        scheduleNextDownload();
}

void DownloadManager::hold(bool held) {
    held_ = held;
    if (!held && !queue_.isEmpty())
        scheduleNextDownload();
}

void DownloadManager::scheduleNextDownload() {
    // While a download runs, its end looks after the queue.
    if (reply_ == nullptr && !held_)
        QTimer::singleShot(0, this, &DownloadManager::startNextDownload);
}

QString DownloadManager::saveFileName(const QUrl& url) const {
    QString path = basePath_ + nameOf(url);
    // The archive's name counts as taken even when it is free: it belongs to complete files.
    if (path != getArchivePath() && !QFileInfo::exists(path))
        return path;
    int number = 1;
    while (QFileInfo::exists(path + QLatin1Char('.') + QString::number(number)))
        ++number;
    return path + QLatin1Char('.') + QString::number(number);
}

void DownloadManager::clearOldFiles(const QUrl& url) {
    QFile::remove(getArchivePath());
    if (!output_.fileName().isEmpty())
        output_.remove();
    // What a power cut left of earlier attempts.
    const QRegularExpression numbered(QLatin1Char('^') + QRegularExpression::escape(nameOf(url)) +
                                      QLatin1String("\\.[0-9]+$"));
    const QStringList names = QDir(basePath_).entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : names.filter(numbered))
        QFile::remove(basePath_ + name);
}

QNetworkAccessManager& DownloadManager::network() {
    if (!network_) {
        network_ = std::make_unique<QNetworkAccessManager>();
        network_->setProxy(QNetworkProxy::NoProxy);
    }
    return *network_;
}

void DownloadManager::startNextDownload() {
    if (reply_ != nullptr || held_)
        return;
    while (!queue_.isEmpty()) {
        const QUrl url = queue_.dequeue();
        QDir().mkpath(basePath_);
        clearOldFiles(url);
        output_.setFileName(saveFileName(url));
        emit emitFilePath(QFileInfo(output_).absoluteFilePath());
        if (!output_.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            qCWarning(cloudLog, "Problem opening save file '%s' for download '%s': %s",
                      qUtf8Printable(getFileName()), url.toEncoded().constData(),
                      qUtf8Printable(output_.errorString()));
            continue;
        }
        QNetworkRequest request(url);
        request.setTransferTimeout(limits_.silence);
        // Naming an encoding keeps Qt from unpacking the file, which could make it huge.
        request.setRawHeader("Accept-Encoding", "identity");
        fault_.clear();
        writtenOut_ = 0;
        reply_ = network().get(request);
        reply_->setReadBufferSize(kReadAhead);
        connect(reply_, &QNetworkReply::metaDataChanged, this, &DownloadManager::downloadAnnounced);
        connect(reply_, &QNetworkReply::downloadProgress, this, &DownloadManager::downloadProgress);
        connect(reply_, &QNetworkReply::finished, this, &DownloadManager::downloadFinished);
        connect(reply_, &QNetworkReply::readyRead, this, &DownloadManager::downloadReadyRead);
        qCInfo(cloudLog, "Downloading %s...", url.toEncoded().constData());
        time_.start();
        received_.clear();
        received_.enqueue(0);
        speedTimer_.start(qMax(limits_.window / kSpeedSteps, 1));
        return;
    }
    emit finished();
}

void DownloadManager::giveUp(const QString& reason) {
    // The next download has begun when this returns.
    fault_ = reason;
    reply_->abort();
}

bool DownloadManager::fits(qint64 bytes) {
    struct statvfs disk {};
    const bool known = ::fstatvfs(output_.handle(), &disk) == 0;
    const qint64 space = static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize);
    const char* fault = nullptr;
    if (output_.pos() + bytes > limits_.size)
        fault = "the file is too large";
    else if (!known || space - bytes < limits_.spareSpace)
        fault = "too little space is left on the disk";
    if (fault != nullptr)
        giveUp(QLatin1String(fault));
    return fault == nullptr;
}

void DownloadManager::downloadAnnounced() {
    if (fault_.isEmpty())
        fits(reply_->header(QNetworkRequest::ContentLengthHeader).toLongLong());
}

void DownloadManager::measureSpeed() {
    received_.enqueue(output_.pos());
    if (received_.size() > kSpeedSteps &&
        received_.last() - received_.dequeue() < limits_.bytesPerWindow)
        giveUp(QStringLiteral("the file comes too slowly"));
}

void DownloadManager::downloadReadyRead() {
    const QByteArray piece = reply_->readAll();
    if (!fault_.isEmpty() || !fits(piece.size()))
        return;
    if (output_.write(piece) != piece.size() || !output_.flush())
        giveUp(output_.fileName() + QStringLiteral(" cannot be written"));
    writeOut();
}

/// Has the disk write what is there while more comes in, a piece behind: all at once at the end may
/// take a slow one longer than the screen can stand still.
void DownloadManager::writeOut() {
    const int file = output_.handle();
    while (output_.pos() - writtenOut_ >= kWriteOut) {
        ::sync_file_range(file, writtenOut_, kWriteOut, SYNC_FILE_RANGE_WRITE);
        if (writtenOut_ >= kWriteOut)
            ::sync_file_range(
                file, writtenOut_ - kWriteOut, kWriteOut,
                SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
        writtenOut_ += kWriteOut;
    }
}

void DownloadManager::downloadProgress(qint64 received, qint64 total) {
    emit progress(received, total, speedText(received, time_.elapsed()));
}

QString DownloadManager::speedText(qint64 bytes, qint64 milliseconds) {
    double speed =
        static_cast<double>(bytes) * 1000.0 / static_cast<double>(qMax<qint64>(milliseconds, 1));
    QString unit;
    if (speed < 1024) {
        unit = QStringLiteral("bytes/sec");
    } else if (speed < 1024 * 1024) {
        speed /= 1024;
        unit = QStringLiteral("kB/s");
    } else {
        speed /= 1024 * 1024;
        unit = QStringLiteral("MB/s");
    }
    return QStringLiteral("%1 %2").arg(speed, 0, 'f', 1).arg(unit);
}

void DownloadManager::downloadFinished() {
    speedTimer_.stop();
    if (reply_->error() == QNetworkReply::NoError)
        downloadReadyRead();
    // On the disk before it gets the archive's name, so that a power cut leaves no half archive.
    if (fault_.isEmpty() && ::fdatasync(output_.handle()) != 0)
        fault_ = qt_error_string();
    output_.close();
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!fault_.isEmpty()) {
        qCWarning(cloudLog, "Failed: %s", qUtf8Printable(fault_));
        output_.remove();
    } else if (reply_->error() != QNetworkReply::NoError) {
        qCWarning(cloudLog, "Failed: %s", qUtf8Printable(reply_->errorString()));
        output_.remove();
    } else if (isRedirect(status)) {
        qCWarning(cloudLog, "Request: %s was redirected with code: %d",
                  reply_->url().toEncoded().constData(), status);
        const QUrl target = reply_->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        if (!target.isEmpty())
            qCWarning(cloudLog, "Redirected to: %s",
                      reply_->url().resolved(target).toEncoded().constData());
        output_.remove();
    } else {
        qCInfo(cloudLog, "Succeeded.");
        emit finished(output_.fileName());
    }
    reply_->deleteLater();
    reply_ = nullptr;
    startNextDownload();
}
