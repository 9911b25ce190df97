#include "screens/users/user_record.h"

#include <QFile>
#include <algorithm>
#include <cstring>

#include "base/device_paths.h"
#include "cloud/disk.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "ui/pictures.h"

namespace {

bool isDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

QString unstoredPath() {
    return DevicePaths::at(QStringLiteral("/mnt/data/unstored_user"));
}

}  // namespace

namespace UserRecord {

QString ParsingPhoneNum(const QString& number) {
    QString digits;
    std::copy_if(number.begin(), number.end(), std::back_inserter(digits), isDigit);
    return QString::asprintf("%s%s%s", qUtf8Printable(digits.left(3)),
                             qUtf8Printable(digits.mid(3, 4)), qUtf8Printable(digits.mid(7)));
}

bool usesFace(std::uint8_t method) {
    return method != AuthMethod::Card;
}

bool usesCard(std::uint8_t method) {
    return method == AuthMethod::Card || method == AuthMethod::FaceOrCard ||
           method == AuthMethod::FaceAndCard;
}

bool dropUnused(_gui_user_& user) {
    const bool face = user.facePresent != 0 && !usesFace(user.authMethod);
    const bool card = user.cardPresent != 0 && !usesCard(user.authMethod);
    if (face) {
        user.facePresent = 0;
        user.glasses = 0;
        std::memset(user.picture, 0, sizeof user.picture);
    }
    if (card) {
        user.cardPresent = 0;
        user.cardType = 0;
        user.reissueNumber = 0;
        std::memset(user.cardNumber, 0, sizeof user.cardNumber);
        std::memset(user.cardTemplate, 0, sizeof user.cardTemplate);
    }
    return face || card;
}

const char* levelKey(std::uint8_t level) {
    switch (level) {
        case UserLevel::Administrator:
            return "Toggle_AdminUsers";
        case UserLevel::Visitor:
            return "Toggle_Visitor";
        default:
            return "Toggle_GeneralUsers";
    }
}

QString shown(const QString& text) {
    QString line;
    for (const QChar character : text) {
        if (character.isPrint() || character.isSurrogate() || character.isSpace())
            line += character;
    }
    return line.simplified();
}

QPixmap picture(const _gui_user_& user, const QSize& size) {
    const QString own = fieldText(user.userId) + QLatin1String(".jpg");
    const struct {
        const char* folder;
        QString name;
    } places[] = {{"/mnt/data/user/", own},
                  {"/mnt/data/thumb/", own},
                  {"/mnt/data/Images/", fieldText(user.picture)}};
    for (const auto& place : places) {
        const QPixmap found = Pictures::foreign(QLatin1String(place.folder), place.name, size);
        if (!found.isNull())
            return found;
    }
    return {};
}

}  // namespace UserRecord

namespace UnstoredUser {

bool keep(const _gui_user_& user) {
    const QString path = unstoredPath();
    const QString fresh = path + QLatin1String(".new");
    QFile::remove(fresh);
    const QByteArray record(reinterpret_cast<const char*>(&user), sizeof user);
    // Renamed over the one before, which counts until then.
    return Disk::writeNew(fresh, record) &&
           std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData()) ==
               0 &&
           Disk::syncFolder(DevicePaths::at(QStringLiteral("/mnt/data")));
}

std::optional<_gui_user_> kept() {
    QFile file(unstoredPath());
    _gui_user_ user{};
    if (!file.open(QIODevice::ReadOnly) || file.size() != static_cast<qint64>(sizeof user) ||
        file.read(reinterpret_cast<char*>(&user), sizeof user) != static_cast<qint64>(sizeof user))
        return {};
    return user;
}

bool keepsAnother(const _gui_user_& user) {
    const auto other = kept();
    return other && std::memcmp(other->userId, user.userId, sizeof user.userId) != 0;
}

void forget(const _gui_user_& user) {
    if (!keepsAnother(user))
        QFile::remove(unstoredPath());
}

}  // namespace UnstoredUser
