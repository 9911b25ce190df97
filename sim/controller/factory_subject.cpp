#include "link/command_code.h"
#include "link/command_parameters.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

namespace {

namespace factory = command::factory;

/// Tests that are answered once, by a board without faults. Numbers in the payloads are 16 bits,
/// little-endian.
const struct Reading {
    quint16 request;
    quint16 report;
    const char* payload;  // hexadecimal
} kReadings[] = {
    {command::FactoryPowerTest, command::FactoryPowerReport, "e02e 8813 e40c"},  // 12, 5, 3.3 V
    {command::FactoryLedTest, command::FactoryLedReport, ""},
    {command::FactoryProximityTest, command::FactoryProximityReport, "c201"},  // 450 mm
    {command::FactoryLightTest, command::FactoryLightReport, "4001"},          // 320 lux
    {command::FactoryRs422Test, command::FactoryRs422Report, ""},
    {command::FactoryCameraTest, command::FactoryCameraReport, ""},
    {command::FactoryCardTest, command::FactoryCardReport, "31303030303030310000000000000000"},
    {command::FactoryCardAntennaTest, command::FactoryCardAntennaReport, ""},
    {command::FactoryClockTest, command::FactoryClockReport, ""},
    {command::FactoryMacTest, command::FactoryMacReport, "024b5a000001"},
    {command::FactoryMemoryTest, command::FactoryMemoryReport, ""},
    {command::FactoryPingTest, command::FactoryPingReport, ""},
    {command::FactoryTouchVersion, command::FactoryTouchVersionReport,
     "322e3100000000000000000000000000"},  // 2.1
};

/// The factory tests. All of them pass.
class FactorySubject : public Subject {
 public:
    explicit FactorySubject(Device& device) : Subject(device) {
        for (const Reading& reading : kReadings) {
            onTest(reading.request, [this, reading](quint8) {
                device_.send(reading.report, command::answer::Done, 0,
                             QByteArray::fromHex(reading.payload));
            });
        }
        onTest(command::FactoryIoTest, [this](quint8 step) {
            if (step > factory::TamperSwitch)
                return;
            device_.send(command::FactoryIoReport, step, 1);
            device_.send(command::FactoryIoStepDone, step);
        });
        onTest(command::FactoryCameraSwitch,
               [this](quint8 camera) { device_.send(command::FactoryCameraSwitched, camera); });
        onTest(command::FactoryVersionTest, [this](quint8) {
            const _gui_menu_& menu = device_.settings();
            QByteArray versions;
            for (const auto& version : {menu.firmwareVersion, menu.kernelVersion,
                                        menu.mainBoardVersion, menu.ioBoardVersion})
                versions.append(version, sizeof menu.firmwareVersion);
            device_.send(command::FactoryVersionReport, 0, 0, versions);
        });
        onRequest(command::FactoryRestart, [this](const Request&) { device_.link().drop(); });
    }

 private:
    /// Calls @p answer with the second parameter when the test is started.
    void onTest(quint16 request, const std::function<void(quint8)>& answer) {
        onRequest(request, [answer](const Request& frame) {
            if (frame.p1 == factory::Start)
                answer(frame.p2);
        });
    }
};

}  // namespace

std::unique_ptr<Subject> makeFactorySubject(Device& device) {
    return std::make_unique<FactorySubject>(device);
}
