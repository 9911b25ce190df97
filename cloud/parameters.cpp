#include "cloud/parameters.h"

#include <cstring>

#include "link/device_message.h"

void Device_Setup_Parameter::applyTo(_gui_menu_& settings) const {
    auto* const record = reinterpret_cast<std::uint8_t*>(&settings);
    for (const Byte& byte : bytes)
        record[byte.offset] = byte.value;
    if (deviceNumber)
        settings.setup.deviceNumber = *deviceNumber;
    if (adminPassword)
        setFieldText(settings.setup.adminPassword, *adminPassword);
    AddressBlock& own = settings.network.own;
    if (managerAddress)
        std::memcpy(own.managerAddress, managerAddress->data(), sizeof own.managerAddress);
    if (managerPort)
        own.managerPort = *managerPort;
}
