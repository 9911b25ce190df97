#include "cloud/user_routes.h"

#include <algorithm>

#include "cloud/body_reader.h"
#include "link/record_values.h"

namespace {

constexpr int kMinCardNumber = 6;
constexpr int kMaxCardNumber = 11;
constexpr int kMaxUserName = 32;
constexpr quint32 kMaxSensitivity = 5;
constexpr quint32 kMaxByte = 255;

bool hasCardNumberLength(const QString& text) {
    return text.size() >= kMinCardNumber && text.size() <= kMaxCardNumber;
}

QString cardNumberIn(BodyReader& body) {
    BodyReader user = body.group("userInfo");
    return user.group("cardInfo").text("cardNo");
}

QByteArray readPicture(BodyReader& face) {
    QByteArray base64 = face.text("visImg").toLatin1();
    base64.replace('\n', "").replace('\r', "");
    const auto decoded = QByteArray::fromBase64Encoding(
        base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        face.fault();
    return *decoded;
}

}  // namespace

namespace user_routes {

bool isCardNumber(const QString& text) {
    return !text.isEmpty() && text.size() <= 16 &&
           std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
                      (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
                      (c >= QLatin1Char('a') && c <= QLatin1Char('z'));
           });
}

void readUser(BodyReader& info, DoReceiveUserData& user) {
    user.cardTemplate =
        info.group("cardInfo").text("cardTemplate", sizeof(_gui_user_::cardTemplate));
    user.name = info.group("user").text("name", sizeof(_gui_user_::name));
    if (user.name.size() > kMaxUserName)
        info.fault();
    user.authType = info.decimal("authType", AuthMethod::FaceAndId);
    user.userLevel = info.decimal("userLevel", UserLevel::Visitor);
    user.sensivity = info.decimal("sensivity", kMaxSensitivity);
    user.timeSchedule = info.text("timeSchedule", sizeof(_gui_user_::timeSchedule));
    user.restrictTime = info.text("restrictTime", sizeof(_gui_user_::restrictTime));
}

Decoded<SentUser> decodeUserDataSend(const QByteArray& bytes) {
    BodyReader body(bytes);
    BodyReader info = body.group("userInfo");
    BodyReader card = info.group("cardInfo");
    BodyReader face = info.group("faceVisible");

    SentUser sent;
    DoReceiveUserData& user = sent.user;
    user.cardNo = card.text("cardNo");
    if (!hasCardNumberLength(user.cardNo))
        return {result::kCardNumberLength, {}};
    readUser(info, user);
    user.registTime = info.text("registTime", sizeof(_gui_user_::registrationTime));
    user.cardType = card.decimal("cardType", kMaxByte);
    user.nationCd = card.text("nationCd", sizeof(_gui_user_::nationCode));
    user.reissueNo = card.decimal("reissueNo", kMaxByte);
    user.templateFile = info.text("templateFile");
    sent.picture = readPicture(face);
    if (!body.ok() || !isCardNumber(user.cardNo))
        return {result::kUnknownError, {}};
    return {result::kSucceed, sent};
}

Decoded<FR33_3_Parameter> decodeUserDataGet(const QByteArray& bytes) {
    BodyReader body(bytes);
    const QString cardNumber = cardNumberIn(body);
    if (!hasCardNumberLength(cardNumber))
        return {result::kCardNumberLength, {}};
    if (!isCardNumber(cardNumber))
        return {result::kUnknownError, {}};
    return {result::kSucceed, {cardNumber}};
}

Decoded<FR33_3_Parameter> decodeUserDataDelete(const QByteArray& bytes) {
    // Any length: a user with a number that the other routes would not take can still be deleted.
    BodyReader body(bytes);
    const QString cardNumber = cardNumberIn(body);
    if (!isCardNumber(cardNumber))
        return {result::kUnknownError, {}};
    return {result::kSucceed, {cardNumber}};
}

QJsonObject groupInfo(const UserCounts& users) {
    return {
        {QStringLiteral("AllUsers"), QString::number(users.all)},
        {QStringLiteral("GeneralUsers"), QString::number(users.general)},
        {QStringLiteral("FaceOnlyUsers"), QString::number(users.faceOnly)},
        {QStringLiteral("AdminUsers"), QString::number(users.admin)},
        {QStringLiteral("VisitorUsers"), QString::number(users.visitor)},
    };
}

QJsonObject listInfo(const UserTable::Ids& ids) {
    return {
        {QStringLiteral("UserCount"), QString::number(ids.count)},
        {QStringLiteral("UserList"), QString::fromUtf8(ids.joined.constData(), ids.joined.size())}};
}

}  // namespace user_routes
