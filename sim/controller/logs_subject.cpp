#include <QDir>
#include <QFile>
#include <QImage>
#include <cstring>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/frame.h"
#include "sim/common/portrait.h"
#include "sim/controller/device.h"
#include "sim/controller/made_up.h"
#include "sim/controller/subjects.h"

namespace {

/// The logs: what the terminal searches, asks for and has deleted.
class LogsSubject : public Subject {
 public:
    explicit LogsSubject(Device& device) : Subject(device) {
        onRequest(command::SearchLogs, [this](const Request& request) {
            if (const auto query = request.record<GUI_USERLOG>())
                device_.sendRecord(command::LogCount, 0, query->tag,
                                   device_.logs().count(*query, device_.now().date()));
        });
        onRequest(command::AskLogPage, [this](const Request& request) {
            if (const auto query = request.record<GUI_USERLOG>())
                sendPage(*query);
        });
        onRequest(command::DeleteFullLogs, [this](const Request&) {
            device_.removeLogs();
            device_.send(command::FullLogsDeleted);
            device_.send(command::LogStoreReport, command::log_store::Emptied);
        });

        onWord("logs", "[N]: list the newest events, or have N of them over the last year instead",
               [this](const QString& text) { return text.isEmpty() ? list() : fill(text); });
    }

 private:
    static constexpr int kInFrame = static_cast<int>(Frame::kMaxPayloadSize / sizeof(GUI_LOGDATA));

    void sendPage(GUI_USERLOG query) {
        constexpr quint32 kMost = 1000;
        query.count = qMin(query.count, kMost);
        const QVector<GUI_LOGDATA> logs = device_.logs().find(query, device_.now().date());
        for (int sent = 0; sent < logs.size(); sent += kInFrame)
            send(query, logs.mid(sent, kInFrame));
        // Nothing that is there was left out: the terminal need not wait for it.
        if (static_cast<quint32>(logs.size()) < query.count || logs.isEmpty())
            send(query, {});
    }

    void send(const GUI_USERLOG& query, const QVector<GUI_LOGDATA>& logs) {
        const auto size = static_cast<int>(sizeof(GUI_LOGDATA));
        device_.send(
            command::LogPage, query.kind, query.tag,
            QByteArray(reinterpret_cast<const char*>(logs.constData()), logs.size() * size));
    }

    QString fill(const QString& text) {
        constexpr int kMost = 100000;
        bool ok = false;
        const int count = text.toInt(&ok);
        if (!ok || count < 0 || count > kMost)
            return failed(QStringLiteral("expected a number up to %1").arg(kMost));
        device_.logs().removeAll();
        device_.logs().add(
            made_up::events(count, device_.users().users(), device_.settings(), device_.now()));
        if (count > 0)
            savePictures();
        emit device_.statusChanged();
        return done(QString::number(count));
    }

    /// What the two cameras have seen.
    void savePictures() const {
        const auto path = [this](const QString& name) {
            return device_.dataPath(QStringLiteral("Images/") + name);
        };
        QDir().mkpath(path({}));
        for (int face = 0; face < made_up::kFaces; ++face) {
            if (QFile::exists(path(made_up::infraredPicture(face))))
                continue;
            const QByteArray jpeg = portrait::jpeg(face);
            QFile visible(path(made_up::facePicture(face)));
            if (visible.open(QIODevice::WriteOnly))
                visible.write(jpeg);
            QImage::fromData(jpeg)
                .convertToFormat(QImage::Format_Grayscale8)
                .save(path(made_up::infraredPicture(face)), "JPG");
        }
    }

    QString list() {
        constexpr int kNewest = 20;
        QString list;
        for (const GUI_LOGDATA& log : device_.logs().newest(kNewest))
            list += QStringLiteral("%1 %2 %3 mode %4 %5 meals %6\n")
                        .arg(log.number)
                        .arg(logTime(log).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")),
                             fieldText(log.userId))
                        .arg(log.inOut)
                        .arg(log.eventStatus == 1 ? QStringLiteral("accepted")
                                                  : QStringLiteral("refused"))
                        .arg(log.payCount);
        return list + done();
    }
};

}  // namespace

std::unique_ptr<Subject> makeLogsSubject(Device& device) {
    return std::make_unique<LogsSubject>(device);
}
