#pragma once

#include <QByteArray>
#include <QJsonObject>

#include "cloud/decoded.h"
#include "cloud/parameters.h"
#include "cloud/user_table.h"

class BodyReader;

/// What the bodies of the user routes hold, and what their answers add to the envelope. The keys
/// are described in docs/rest-api.yaml. Any thread.
namespace user_routes {

struct SentUser {
    DoReceiveUserData user;  // without the picture's file name
    QByteArray picture;      // JPEG, empty when there is none
};

Decoded<SentUser> decodeUserDataSend(const QByteArray& body);
Decoded<FR33_3_Parameter> decodeUserDataGet(const QByteArray& body);
Decoded<FR33_3_Parameter> decodeUserDataDelete(const QByteArray& body);

/// Reads into @p user what is the same for a user to be stored and one to be enrolled: all that has
/// a field in the user record but for the card. What does not fit its field is a fault.
void readUser(BodyReader& info, DoReceiveUserData& user);

/// Card numbers become folder names and texts of the device link, so they are plain letters and
/// digits and never more than 16.
bool isCardNumber(const QString& text);

QJsonObject groupInfo(const UserCounts& users);
QJsonObject listInfo(const UserTable::Ids& ids);

}  // namespace user_routes
