#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>
#include <cstdint>
#include <optional>

#include "link/device_records.h"

/// What screens have to know of a user's record.
namespace UserRecord {

/// @p number without whatever stands between its three groups of digits.
QString ParsingPhoneNum(const QString& number);

/// Whether a way of authentication, one of AuthMethod, needs the one or the other.
bool usesFace(std::uint8_t method);
bool usesCard(std::uint8_t method);

/// Takes the face and the card off @p user as far as the way of authentication needs none. Whether
/// there was anything to be taken.
bool dropUnused(_gui_user_& user);

/// The script key of a level's name.
const char* levelKey(std::uint8_t level);
/// A text that somebody has entered elsewhere, fit to be shown on one line.
QString shown(const QString& text);
/// The picture of @p user, cut down to cover @p size; null without one.
QPixmap picture(const _gui_user_& user, const QSize& size);

}  // namespace UserRecord

/// The user whom a change has taken out of the controller's store, as long as it has not said that
/// it holds the user again. Kept on the disk, so that neither a lost link nor a power cut loses
/// anybody. GUI thread only.
namespace UnstoredUser {

/// On the disk when this returns; false, with nothing kept, when that is not possible.
bool keep(const _gui_user_& user);
std::optional<_gui_user_> kept();
/// Whether somebody else than @p user is kept, who would be lost if @p user were.
bool keepsAnother(const _gui_user_& user);
/// @p user is in the store again, or is not to be; whoever else is kept stays so.
void forget(const _gui_user_& user);

}  // namespace UnstoredUser
