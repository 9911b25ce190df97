#pragma once

#include <QDateTime>
#include <QVector>

#include "link/device_records.h"

/// People and events that never were, to fill the stores with.
namespace made_up {

/// The person @p number, enrolled within two years before @p now; without a picture. The same
/// number is always the same person, with an identifier of its own.
_gui_user_ user(int number, const QDateTime& now);

/// Faces that events have: the names of the pictures of the two cameras.
constexpr int kFaces = 16;
QString facePicture(int face);
QString infraredPicture(int face);

/// @p count events of @p users in the year before @p now, oldest first, as the operation of
/// @p settings makes them.
QVector<GUI_LOGDATA> events(int count, const QVector<_gui_user_>& users, const _gui_menu_& settings,
                            const QDateTime& now);

}  // namespace made_up
