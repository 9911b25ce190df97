#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>
#include <cmath>

#include "link/command_code.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/work_status.h"

namespace {

/// The operating status: decided from the clock and the stored periods, or set by hand; and the
/// meal counters, which travel with it.
class StatusSubject : public Subject {
 public:
    explicit StatusSubject(Device& device) : Subject(device) {
        onRequest(command::Greeting, [this](const Request&) { report(); });
        onRequest(command::SetClock, [this](const Request& request) { setClock(request); });

        onWord("status", "N|auto: report the status number N, or again the one of the periods",
               [this](const QString& text) { return setStatus(text); });
        onWord("time", "[[YYYY-MM-DD] HH:MM|now]: show or set the clock",
               [this](const QString& text) { return setTime(text); });

        nextChange_.setSingleShot(true);
        nextChange_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&nextChange_, &QTimer::timeout, &nextChange_, [this] { follow(); });
        QObject::connect(&device_, &Device::timeChanged, &nextChange_, [this] {
            keepOffset();
            follow();
        });
        QObject::connect(&device_, &Device::settingsChanged, &nextChange_, [this] { follow(); });
        QObject::connect(&device_, &Device::statusChanged, &nextChange_, [this] { report(); });
        keepOffset();
        follow();
    }

    QString stateKey() const override { return QStringLiteral("status"); }

    QJsonObject state() const override {
        QJsonObject state{{QStringLiteral("armed"), device_.armed()},
                          {QStringLiteral("clockOffset"), device_.clockOffset()}};
        if (const auto forced = device_.forcedStatus())
            state.insert(QStringLiteral("forced"), *forced);
        return state;
    }

    void restore(const QJsonObject& state) override {
        const int forced = state.value(QStringLiteral("forced")).toInt(-1);
        if (forced >= 0 && forced <= 255)
            device_.forceStatus(forced);
        device_.setArmed(state.value(QStringLiteral("armed")).toBool());
        constexpr double kMostAhead = 100.0 * 365 * 24 * 3600 * 1000;
        const double offset = state.value(QStringLiteral("clockOffset")).toDouble();
        device_.setClockOffset(static_cast<qint64>(qBound(-kMostAhead, offset, kMostAhead)));
    }

 private:
    /// Says for sim/clock/device_clock.cpp how many seconds the device's clock is ahead.
    void keepOffset() {
        const QString path = device_.dataPath(QStringLiteral("sim/clock"));
        QDir().mkpath(QFileInfo(path).path());
        const double seconds = std::ceil(static_cast<double>(device_.clockOffset()) / 1000.0);
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(QByteArray(seconds < 0 ? "" : "+") + QByteArray::number(seconds, 'f', 0) +
                       '\n');
            file.commit();
        }
    }

    /// Reports a status that has changed, and waits for the next change.
    void follow() {
        if (device_.status() != reported_)
            report();
        const QDateTime now = device_.now();
        nextChange_.start(static_cast<int>(now.msecsTo(work::nextChange(device_.settings(), now))) +
                          1);
    }

    void report() {
        reported_ = device_.status();
        StatusReport report{};
        report.armed = device_.armed();
        const QDateTime now = device_.now();
        std::uint32_t* const counts[] = {&report.meals.breakfast, &report.meals.lunch,
                                         &report.meals.dinner, &report.meals.supper};
        for (int meal = 0; meal < 4; ++meal) {
            const int mode = work::Breakfast + meal;
            *counts[meal] = device_.logs().mealsSince(
                mode, work::lastBeginning(work::mealPeriod(device_.settings(), mode), now));
        }
        device_.sendRecord(command::SystemStatus, static_cast<quint8>(reported_), 0, report);
    }

    void setClock(const Request& request) {
        const auto clock = request.record<ClockTime>();
        if (!clock)
            return;
        const QDateTime time(QDate(2000 + clock->year, clock->month, clock->day),
                             QTime(clock->hour, clock->minute, clock->second));
        if (!time.isValid())
            return;
        device_.setTime(time);
        device_.send(command::TimeNotice);
    }

    QString setStatus(const QString& text) {
        bool ok = false;
        const int status = text.toInt(&ok);
        if (text != QLatin1String("auto") && (!ok || status < 0 || status > 255))
            return failed(QStringLiteral("status is a number from 0 to 255, or auto"));
        device_.forceStatus(ok ? std::optional<int>(status) : std::nullopt);
        return done();
    }

    QString setTime(const QString& text) {
        if (text == QLatin1String("now")) {
            device_.setClockOffset(0);
        } else if (!text.isEmpty()) {
            const QDateTime now = device_.now();
            const QTime time =
                QTime::fromString(text.section(QLatin1Char(' '), -1), QStringLiteral("HH:mm"));
            const QString day = text.section(QLatin1Char(' '), 0, -2).trimmed();
            const QDate date = day.isEmpty() ? now.date() : QDate::fromString(day, Qt::ISODate);
            if (!time.isValid() || !date.isValid() || date.year() < 2000 || date.year() > 2099)
                return failed(QStringLiteral("expected [YYYY-MM-DD] HH:MM or now"));
            device_.setTime(QDateTime(date, time));
        }
        return done(device_.now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) +
                    QStringLiteral(" status %1").arg(device_.status()));
    }

    QTimer nextChange_;
    int reported_ = 0;
};

}  // namespace

std::unique_ptr<Subject> makeStatusSubject(Device& device) {
    return std::make_unique<StatusSubject>(device);
}
