#include <sys/resource.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <limits>
#include <memory>

#include "cloud/download_manager.h"
#include "cloud_test_support.h"

class CloudDownloadTest : public QObject {
    Q_OBJECT

 private:
    QTemporaryDir root_;
    std::unique_ptr<FakeService> service_;
    std::unique_ptr<DownloadManager> manager_;
    QByteArray content_ = QByteArray(200000, 'z');

    QUrl url(const QString& path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(service_->serverPort()).arg(path));
    }
    QStringList files() const {
        return QDir(manager_->getBasePath()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void put(const QString& name) const {
        QDir().mkpath(manager_->getBasePath());
        QFile file(manager_->getBasePath() + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("old");
    }
    /// Fetches @p path; tells whether the queue ran empty.
    bool fetch(const QString& path) {
        QSignalSpy finished(manager_.get(), QOverload<>::of(&DownloadManager::finished));
        manager_->append(url(path));
        return finished.wait();
    }

 private slots:
    void initTestCase() { qputenv("ZEL_ROOT", root_.path().toLocal8Bit()); }
    void init() {
        service_ = std::make_unique<FakeService>();
        service_->answer = [this](const FakeService::Request&) {
            return FakeService::json(content_);
        };
        manager_ = std::make_unique<DownloadManager>();
        QDir(manager_->getBasePath()).removeRecursively();
    }
    void cleanup() { manager_.reset(); }

    void filesAreSavedUnderTheirOwnNames() {
        const std::pair<const char*, const char*> cases[] = {
            {"/fw/new.bin?x=1", "new.bin"}, {"/fw/", "download"},
            {"/fw/%2e%2e", "download"},     {"/..%2F..%2Fpasswd", "passwd"},
            {"/taken", "taken.1"},          {"/zel01.tar.bz2", "zel01.tar.bz2.1"}};
        for (const auto& [path, name] : cases) {
            init();
            put(QStringLiteral("taken"));
            QSignalSpy begun(manager_.get(), &DownloadManager::emitFilePath);
            QVERIFY(fetch(QLatin1String(path)));
            QCOMPARE(manager_->getFileName(), QLatin1String(name));
            QCOMPARE(begun.first().first().toString(), manager_->getFilePath());
            QCOMPARE(manager_->getFilePath(),
                     root_.path() + QStringLiteral("/mnt/data/input/") + QLatin1String(name));
            QFile file(manager_->getFilePath());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), content_);
        }
    }

    void addressesWaitTheirTurnAndLeaveOneFile() {
        put(QStringLiteral("zel01.tar.bz2"));
        put(QStringLiteral("b.7"));
        QSignalSpy finished(manager_.get(), QOverload<>::of(&DownloadManager::finished));
        QSignalSpy whole(manager_.get(), QOverload<const QString&>::of(&DownloadManager::finished));
        manager_->append(url(QStringLiteral("/a")));
        manager_->append(url(QStringLiteral("/b")));
        QVERIFY(QSignalSpy(manager_.get(), &DownloadManager::emitFilePath).wait());
        for (int i = 0; i < 2 * DownloadManager::kMaxWaiting; ++i)
            manager_->append(url(QStringLiteral("/b")));
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
            service_->answer = [&answer](const FakeService::Request&) { return answer; };
            put(QStringLiteral("zel01.tar.bz2"));
            QVERIFY(fetch(QStringLiteral("/fw.bin")));
            QCOMPARE(files(), QStringList());
            for (const FakeService::Request& request : service_->requests)
                QCOMPARE(request.line, QByteArray("GET /fw.bin HTTP/1.1"));
        }
    }

    /// The service goes on sending, a little at a time, until it is cut off.
    void limitsEndADownload() {
        const QByteArray open("HTTP/1.1 200 OK\r\n\r\n");
        const DownloadManager::Limits standard;
        DownloadManager::Limits small;
        small.size = 1000;
        DownloadManager::Limits spare;
        spare.spareSpace = std::numeric_limits<qint64>::max() / 2;
        DownloadManager::Limits fast;
        fast.window = 600;
        fast.bytesPerWindow = 1000;
        const std::tuple<DownloadManager::Limits, QByteArray, int> cases[] = {
            {standard, "HTTP/1.1 200 OK\r\nContent-Length: 999999999999\r\n\r\n", 300},
            {small, open, 300},
            {spare, open, 300},
            {fast, open, 2}};
        for (const auto& each : cases) {
            init();
            manager_->setLimits(std::get<0>(each));
            service_->answer = [&each](const FakeService::Request&) { return std::get<1>(each); };
            QTimer trickle;
            connect(&trickle, &QTimer::timeout, this, [&] {
                if (service_->last)
                    service_->last->write(QByteArray(std::get<2>(each), 'x'));
            });
            trickle.start(20);
            QVERIFY(fetch(QStringLiteral("/fw.bin")));
            QCOMPARE(files(), QStringList());
        }
    }

    /// What is packed stays packed: unpacked, a few bytes can be a full disk.
    void filesAreSavedAsTheyCome() {
        const QByteArray packed = qCompress(QByteArray(1000000, 'z')).mid(4);
        service_->answer = [packed](const FakeService::Request&) {
            return "HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\nContent-Length: " +
                   QByteArray::number(packed.size()) + "\r\n\r\n" + packed;
        };
        QVERIFY(fetch(QStringLiteral("/fw.bin")));
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
        const bool done = fetch(QStringLiteral("/fw.bin"));
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        QVERIFY(done);
        QCOMPARE(files(), QStringList());
    }

    void anUnusableFolderOnlyCostsTheDownload() {
        QDir().mkpath(root_.path() + QStringLiteral("/mnt/data"));
        QFile inTheWay(root_.path() + QStringLiteral("/mnt/data/input"));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QVERIFY(fetch(QStringLiteral("/fw.bin")));
        QVERIFY(service_->requests.isEmpty());
        inTheWay.remove();
        QVERIFY(fetch(QStringLiteral("/fw.bin")));
        QCOMPARE(files().size(), 1);
    }

    void theManagerMayGoAtAnyMoment() {
        for (int round = 0; round < 30; ++round) {
            manager_ = std::make_unique<DownloadManager>();
            content_ = QByteArray(2000000, 'z');
            manager_->append(url(QStringLiteral("/big")));
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
