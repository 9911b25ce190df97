#pragma once

/// Folders of pictures on the device, to be taken through DevicePaths::at(). Whoever writes into
/// one and whoever shows what is there mean the same folder.
namespace DeviceFolders {

/// Backgrounds of the standby screen: those that came with the terminal, and the management
/// service's.
constexpr char kBackgrounds[] = "/usr/img/zel/resources/backgrounds";
constexpr char kDefaultBackgrounds[] = "/usr/img/zel/resources/defaultBackgrounds";
constexpr char kManagementBackgrounds[] = "/usr/img/zel/resources/mngBackgrounds";
/// Notices of the management service.
constexpr char kNotices[] = "/usr/img/zel/resources/notice";

/// Pictures of people and events, and the management service's command folders.
constexpr char kImages[] = "/mnt/data/Images/";
/// The customer's logo and backgrounds, from a USB stick.
constexpr char kLogo[] = "/mnt/data/Images/logo";
constexpr char kUsbImages[] = "/mnt/data/Images/usb/";

}  // namespace DeviceFolders
