#include "app/controller_orders.h"

#include <cstring>

#include "link/command_code.h"
#include "link/device_link.h"

namespace {

constexpr int kMaxSpokenText = 128;

}  // namespace

void ControllerOrders::tellClosed(int value) {
    link_.send(command::ScreenClosed, static_cast<quint8>(value), 0);
}

void ControllerOrders::playSound(int id) {
    const char payload[] = {static_cast<char>(id & 0xFF), static_cast<char>((id >> 8) & 0xFF)};
    link_.send(command::PlaySound, 0, 0, sizeof payload, payload);
}

void ControllerOrders::speak(int n, const char* text) {
    const auto number = static_cast<quint8>(n & 0xFF);
    if (text == nullptr) {
        link_.send(command::SpeakText, 0, number, 0, nullptr);
        return;
    }
    char payload[kMaxSpokenText] = {};
    std::memcpy(payload, text, strnlen(text, sizeof payload));
    link_.send(command::SpeakText, 0, number, sizeof payload, payload);
}

void ControllerOrders::askForUnsentData() {
    if (!link_.connected())
        return;
    link_.send(command::AskUnsentUsers, 0, 0);
    if (link_.connected())
        link_.send(command::AskUnsentLogs, 0, 0);
}
