#include "app/cable_watch.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QSocketNotifier>

#include "base/clock.h"
#include "cloud/network_helper.h"

namespace {

bool hasCable() {
    return NetworkHelper::hasCable(QLatin1String(NetworkHelper::kInterface));
}

}  // namespace

CableWatch::CableWatch(QObject* parent)
    : QObject(parent), plugged_(hasCable()), since_(Clock::now()) {
    listen();
}

CableWatch::~CableWatch() {
    if (socket_ >= 0)
        ::close(socket_);
}

void CableWatch::listen() {
    socket_ = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK;
    if (socket_ < 0 ||
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return;
    auto* told = new QSocketNotifier(socket_, QSocketNotifier::Read, this);
    connect(told, &QSocketNotifier::activated, this, [this] {
        // Whatever it says of whichever interface, what counts is what is so now.
        char message[8192];
        while (::recv(socket_, message, sizeof message, 0) > 0) {
        }
        look();
    });
}

void CableWatch::look() {
    const bool plugged = hasCable();
    if (plugged == plugged_)
        return;
    plugged_ = plugged;
    since_ = Clock::now();
    emit changed();
}
