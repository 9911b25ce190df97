#include "app/message_dispatch.h"

#include <QLoggingCategory>

#include "app/message_routes.h"
#include "app/window_form.h"
#include "app/window_registry.h"
#include "link/command_code.h"

Q_LOGGING_CATEGORY(dispatchLog, "zel.app.dispatch", QtInfoMsg)

MessageDispatch::MessageDispatch(const WindowRegistry& windows, QObject* parent)
    : QObject(parent), windows_(windows) {}

void MessageDispatch::dispatch(const DeviceMessage& message) {
    const MessageRoute* route = findMessageRoute(message.command);
    if (route == nullptr)
        return;
    if (message.length < route->minPayload) {
        qCWarning(dispatchLog, "%s (%d) ignored: %d bytes where %d are needed",
                  command::name(message.command, command::Direction::FromController),
                  message.command, message.length, route->minPayload);
        return;
    }

    emit arrived(message);
    WindowForm* active = windows_.active();
    const bool isMeant = active != nullptr && (active->getTitle() == route->title ||
                                               active->getTitle() == route->secondTitle ||
                                               active->getTitle() == route->thirdTitle);
    switch (route->rule) {
        case RouteRule::Shell:
            emit shellMessage(message);
            break;
        case RouteRule::ActiveScreen:
            if (isMeant)
                active->deviceAnswer(message);
            break;
        case RouteRule::ScreenFirst:
            if (isMeant)
                active->deviceAnswer(message);
            else
                emit shellMessage(message);
            break;
        case RouteRule::AnyActive:
            if (active != nullptr)
                active->deviceAnswer(message);
            break;
        case RouteRule::NamedScreen:
            if (WindowForm* named = windows_.find(route->title))
                named->deviceAnswer(message);
            break;
        case RouteRule::NoAction:
            break;
    }
}
