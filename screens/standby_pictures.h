#pragma once

#include <QPixmap>
#include <QString>
#include <QVector>

/// The pictures that a customer puts on the standby screen. Only these folders are read. GUI
/// thread only.
namespace StandbyPictures {

struct Picture {
    QString folder;  ///< on the device
    QString name;    ///< of the file
};

/// All backgrounds, in the order in which choices count them: through the folders by name, first
/// those that came with the terminal, then the management service's and those from a USB stick.
QVector<Picture> backgrounds();

/// The background number @p choice, from 0. Null when there are not so many.
QPixmap background(int choice);

/// The customer's logo, else the maker's; null when there is none.
QPixmap logo();

}  // namespace StandbyPictures
