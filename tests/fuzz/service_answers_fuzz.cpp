#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonDocument>
#include <QUrl>

#include "cloud/download_manager.h"
#include "cloud/json_input.h"
#include "cloud/rest_client.h"
#include "fuzz_root.h"
#include "tests/cloud_test_support.h"

namespace {

constexpr char kInput[] = "/mnt/data/input";

/// How long an answer that has no end is waited for, in milliseconds: one that is broken off within
/// its chunks is only given up after its silence.
constexpr int kPatience = 50;

/// A client and a service that answers each call with the same bytes, and then hangs up.
class Calls {
 public:
    Calls() {
        service_.answer = [this](const FakeService::Request&) { return answer_; };
        service_.closeAfterAnswer = true;
        host_.setSettings(service_.settings());
        client_.setTransferTimeout(kPatience);
    }

    void call(int command, const QByteArray& answer) {
        answer_ = answer;
        host_.completed.clear();
        demand(client_.SendCommand(command, {}) == RestClass::kAccepted);
        wait([this] { return !host_.completed.isEmpty(); });
        const int code = host_.completed.first().value<ProcIDX>().resultCode;
        demand(command != RestClass::kConnect || host_.link == (code == 1000 || code == 2003));
        for (const auto& order : host_.takeCommands())
            order.second.value<FR01_Parameter>().moment();
        service_.requests.clear();
    }

    void download(const QByteArray& path, const QByteArray& answer) {
        answer_ = answer;
        root_.clear(kInput);
        DownloadManager downloads;
        DownloadManager::Limits limits;
        limits.silence = kPatience;
        downloads.setLimits(limits);
        bool ended = false;
        QObject::connect(&downloads, QOverload<>::of(&DownloadManager::finished),
                         [&ended] { ended = true; });
        QUrl url = service_.url();
        url.setPath(QLatin1Char('/') + QString::fromUtf8(path));
        downloads.append(url);
        wait([&ended] { return ended; });
        // One file at most, in the folder itself, never under the archive's own name.
        QDirIterator files(root_.path("/mnt"),
                           QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            demand(files.fileInfo().isDir() ||
                   (file == downloads.getFilePath() && file != downloads.getArchivePath()));
        }
        service_.requests.clear();
    }

 private:
    template <typename Condition>
    static void wait(Condition condition) {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    FuzzRoot root_;
    QByteArray answer_;
    FakeHost host_;
    FakeService service_;
    RestClass client_{host_, nullptr};
};

void readAlone(const QByteArray& body) {
    const auto read = readJsonObject(body);
    demand(!read || QJsonDocument::fromJson(body).object() == *read);
}

}  // namespace

// The first byte chooses: one of the calls, a download, or, since those take a thousand times as
// long, the body alone. For a download the second byte is the length of the path. What is left is
// an answer as it comes over the wire, or with the byte's highest bit a body behind a proper head.
void take(std::uint8_t first, const QByteArray& rest) {
    static int argc = 0;
    static const QCoreApplication application(argc, nullptr);
    static Calls calls;
    if (rest.isEmpty())
        return;
    constexpr int kCommands[] = {RestClass::kConnect, RestClass::kConnectionCheck,
                                 RestClass::kUserInOutLog, RestClass::kUserEnroll,
                                 RestClass::kUserDeleted};
    constexpr int kCount = sizeof kCommands / sizeof *kCommands;
    const int kind = first & 0x7F;
    if (kind > kCount) {
        readAlone(rest);
        return;
    }
    const int pathSize = static_cast<unsigned char>(rest[0]);
    const QByteArray bytes = kind == kCount ? rest.mid(1 + pathSize) : rest;
    const QByteArray answer = first & 0x80 ? FakeService::json(bytes) : bytes;
    if (kind == kCount)
        calls.download(rest.mid(1, pathSize), answer);
    else
        calls.call(kCommands[kind], answer);
}
