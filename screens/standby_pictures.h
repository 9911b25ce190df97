#pragma once

#include <QPixmap>

/// The pictures that a customer puts on the standby screen. Only these folders are read. GUI
/// thread only.
namespace StandbyPictures {

/// The background number @p choice, counted from 0 through the folders of backgrounds in the order
/// of their names: first those that came with the terminal, then the management service's and those
/// from a USB stick. Null when there are not so many.
QPixmap background(int choice);

/// The customer's logo; null when there is none.
QPixmap logo();

}  // namespace StandbyPictures
