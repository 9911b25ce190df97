#include "cloud/command_carrier.h"

#include <utility>

#include "cloud/management_commands.h"
#include "cloud/management_host.h"

CommandCarrier::CommandCarrier(ManagementCommands& commands, ManagementHost& host)
    : commands_(commands), host_(host), inThread_(std::make_unique<QObject>()) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &CommandCarrier::look);
    inThread_->moveToThread(&thread_);
    thread_.setObjectName(QStringLiteral("CommandCarrier"));
}

CommandCarrier::~CommandCarrier() {
    thread_.quit();
    thread_.wait();
}

void CommandCarrier::start() {
    thread_.start();
    timer_.start(CommandQueue::kIdleInterval);
}

void CommandCarrier::look() {
    if (stepping_)
        return;
    stepping_ = true;
    const LinkProgress link = host_.linkProgress();
    const std::optional<LinkProgress> sent = std::exchange(sent_, std::nullopt);
    const int answers = std::exchange(answers_, 0);
    QMetaObject::invokeMethod(inThread_.get(), [this, link, sent, answers] {
        if (sent)
            queue_.sent(*sent);
        const std::optional<CommandQueue::Taken> taken = queue_.step(link, answers);
        const int untilDue = queue_.untilDue(link);
        QMetaObject::invokeMethod(this, [this, taken, untilDue] { stepped(taken, untilDue); });
    });
}

void CommandCarrier::stepped(const std::optional<CommandQueue::Taken>& taken, int untilDue) {
    stepping_ = false;
    busy_ = taken.has_value();
    if (taken && host_.linkProgress().connection != 0 && commands_.addUserRestCommandDir(*taken))
        sent_ = host_.linkProgress();
    // Until then its frame is on its way, or there is no link.
    timer_.start(busy_ ? CommandQueue::kIdleInterval : untilDue);
}

void CommandCarrier::linkDrained() {
    if (busy_)
        look();
}
