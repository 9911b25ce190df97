#include <sys/resource.h>

#include <QtTest>
#include <csignal>
#include <limits>
#include <memory>

#include "cloud/download_manager.h"
#include "cloud_test_support.h"

class CloudDownloadTest : public QObject {
    Q_OBJECT

 private:
    TestRoot root_;
    std::unique_ptr<FakeService> service_;
    std::unique_ptr<DownloadManager> manager_;
    const QByteArray content_ = QByteArray(200000, 'z');

    QStringList files() const { return root_.namesIn(manager_->getBasePath()); }
    void put(const char* name) const {
        root_.write(manager_->getBasePath() + QLatin1String(name), "old");
    }
    void append(const char* path) { manager_->append(service_->url(QLatin1String(path))); }
    /// Fetches @p path; tells whether the queue ran empty.
    bool fetch(const char* path = "fw.bin") {
        QSignalSpy finished(manager_.get(), QOverload<>::of(&DownloadManager::finished));
        append(path);
        return finished.wait();
    }

 private slots:
    void init() {
        service_ = std::make_unique<FakeService>();
        service_->answerWith(content_);
        manager_ = std::make_unique<DownloadManager>();
        QDir(manager_->getBasePath()).removeRecursively();
    }
    void cleanup() { manager_.reset(); }

    void filesAreSavedUnderTheirOwnNames() {
        const std::pair<const char*, const char*> cases[] = {
            {"fw/new.bin?x=1", "new.bin"}, {"fw/", "download"},
            {"fw/%2e%2e", "download"},     {"..%2F..%2Fpasswd", "passwd"},
            {"taken", "taken.1"},          {"zel01.tar.bz2", "zel01.tar.bz2.1"}};
        for (const auto& [path, name] : cases) {
            init();
            put("taken");
            QSignalSpy begun(manager_.get(), &DownloadManager::emitFilePath);
            QVERIFY(fetch(path));
            QCOMPARE(manager_->getFileName(), QLatin1String(name));
            QCOMPARE(begun.first().first().toString(), manager_->getFilePath());
            QCOMPARE(manager_->getFilePath(), root_.path("/mnt/data/input/") + QLatin1String(name));
            QCOMPARE(root_.read(manager_->getFilePath()), content_);
        }
    }

    void addressesWaitTheirTurnAndLeaveOneFile() {
        put("zel01.tar.bz2");
        put("b.7");
        QSignalSpy finished(manager_.get(), QOverload<>::of(&DownloadManager::finished));
        QSignalSpy whole(manager_.get(), QOverload<const QString&>::of(&DownloadManager::finished));
        append("a");
        append("b");
        QVERIFY(QSignalSpy(manager_.get(), &DownloadManager::emitFilePath).wait());
        for (int i = 0; i < 2 * DownloadManager::kMaxWaiting; ++i)
            append("b");
        QVERIFY(finished.wait());
        QCOMPARE(service_->requests.size(), DownloadManager::kMaxWaiting + 1);
        QCOMPARE(whole.size(), service_->requests.size());
        QCOMPARE(finished.size(), 1);
        QCOMPARE(files(), QStringList(QStringLiteral("b")));
    }

    void failuresLeaveNothing() {
        const QByteArray answers[] = {
            "HTTP/1.1 404 No\r\nContent-Length: 4\r\n\r\nnope",
            "HTTP/1.1 302 F\r\nLocation: /other\r\nContent-Length: 0\r\n\r\n",
            "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nhalf",
            QByteArray("\0\0\0\0garbage", 11),
            {},                                                     // says nothing
            "HTTP/1.1 200 OK\r\nContent-Length: 999\r\n\r\nhalf"};  // says no more
        for (const QByteArray& answer : answers) {
            init();
            const bool stops = answer.isEmpty() || answer.contains("999");
            service_->closeAfterAnswer = !stops;
            DownloadManager::Limits limits;
            limits.silence = stops ? 200 : limits.silence;
            manager_->setLimits(limits);
            service_->says(answer);
            put("zel01.tar.bz2");
            QVERIFY(fetch());
            QCOMPARE(files(), QStringList());
            for (const FakeService::Request& request : service_->requests)
                QCOMPARE(request.line, QByteArray("GET /fw.bin HTTP/1.1"));
        }
    }

    /// The service goes on sending, a little at a time, until it is cut off.
    void limitsEndADownload() {
        DownloadManager::Limits limits[4];
        limits[1].size = 1000;
        limits[2].spareSpace = std::numeric_limits<qint64>::max() / 2;
        limits[3].window = 600;
        limits[3].bytesPerWindow = 1000;
        for (int i = 0; i < 4; ++i) {
            init();
            manager_->setLimits(limits[i]);
            service_->says(i > 0 ? "HTTP/1.1 200 OK\r\n\r\n"
                                 : "HTTP/1.1 200 OK\r\nContent-Length: 999999999999\r\n\r\n");
            QTimer trickle;
            connect(&trickle, &QTimer::timeout, this, [&] {
                if (service_->last)
                    service_->last->write(QByteArray(i < 3 ? 300 : 2, 'x'));
            });
            trickle.start(20);
            QVERIFY(fetch());
            QCOMPARE(files(), QStringList());
        }
    }

    /// What is packed stays packed: unpacked, a few bytes can be a full disk.
    void filesAreSavedAsTheyCome() {
        const QByteArray packed = qCompress(QByteArray(1000000, 'z')).mid(4);
        service_->says("HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\nContent-Length: " +
                       QByteArray::number(packed.size()) + "\r\n\r\n" + packed);
        QVERIFY(fetch());
        QCOMPARE(service_->requests[0].header("Accept-Encoding"), QByteArray("identity"));
        QCOMPARE(QFileInfo(manager_->getFilePath()).size(), qint64{packed.size()});
    }

    void aFullDiskIsAFailure() {
        rlimit before{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit tight = before;
        tight.rlim_cur = 100000;
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
        const bool done = fetch();
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(done);
        QCOMPARE(files(), QStringList());
    }

    void anUnusableFolderOnlyCostsTheDownload() {
        root_.write(root_.path("/mnt/data/input"), {});
        QVERIFY(fetch());
        QVERIFY(service_->requests.isEmpty());
        QFile::remove(root_.path("/mnt/data/input"));
        QVERIFY(fetch());
        QCOMPARE(files().size(), 1);
    }

    void theManagerMayGoAtAnyMoment() {
        service_->answerWith(QByteArray(2000000, 'z'));
        for (int round = 0; round < 30; ++round) {
            manager_ = std::make_unique<DownloadManager>();
            append("big");
            const qint64 before = service_->written;
            QTRY_VERIFY(service_->written - before >= round * 60000);
            manager_.reset();
        }
        manager_ = std::make_unique<DownloadManager>();
        // A quick machine finishes some of them: what is left is whole.
        for (const QString& name : files())
            QCOMPARE(QFileInfo(manager_->getBasePath() + name).size(), qint64{2000000});
    }

    void speedsHaveFittingUnits() {
        QCOMPARE(DownloadManager::speedText(500, 1000), QStringLiteral("500.0 bytes/sec"));
        QCOMPARE(DownloadManager::speedText(1024, 1000), QStringLiteral("1.0 kB/s"));
        QCOMPARE(DownloadManager::speedText(2000000, 1000), QStringLiteral("1.9 MB/s"));
        QCOMPARE(DownloadManager::speedText(10, 0), QStringLiteral("9.8 kB/s"));
    }
};

QTEST_GUILESS_MAIN(CloudDownloadTest)
#include "cloud_download_test.moc"
