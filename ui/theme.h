#pragma once

#include <QColor>
#include <QFont>

/// The terminal's colours and measures, in one place; the widgets of this folder are drawn with
/// them alone.
///
/// Two rules carry the look: what is pressed is raised (lighter fill, no border), what holds a
/// value is recessed (darkest fill, thin outline).
namespace Theme {

constexpr int kScreenWidth = 480;
constexpr int kScreenHeight = 800;
constexpr int kBarHeight = 72;

constexpr QRgb kBackground = 0xff0f1722;
constexpr QRgb kBar = 0xff162130;
constexpr QRgb kRow = 0xff1b2838;
constexpr QRgb kRowPressed = 0xff26364a;
constexpr QRgb kDialog = 0xff202e41;
constexpr QRgb kRaised = 0xff2a3b50;
constexpr QRgb kPressed = 0xff3a4f69;
constexpr QRgb kLine = 0xff2c3d52;
constexpr QRgb kOutline = 0xff7488a0;
constexpr QRgb kMark = 0xff8296ad;
constexpr QRgb kStrong = 0xfff3f7fc;
constexpr QRgb kCaption = 0xffd9dfe9;
constexpr QRgb kList = 0xffb4c3d6;
constexpr QRgb kHint = 0xff93a6bd;
constexpr QRgb kOff = 0xff66798f;
constexpr QRgb kOffLine = 0xff3a4f69;
constexpr QRgb kOffFill = 0xff4a5d74;
constexpr QRgb kAccent = 0xff5effd7;
constexpr QRgb kAccentPressed = 0xff39cfaa;
constexpr QRgb kAccentTint = 0xff16383c;
constexpr QRgb kOnAccent = 0xff06231c;
constexpr QRgb kDanger = 0xffff8a8a;
constexpr QRgb kDangerPressed = 0xffe06464;
constexpr QRgb kOnDanger = 0xff2b0508;
constexpr QRgb kWarn = 0xffffcf5c;
constexpr QRgb kPick = 0xffff0000;
constexpr QRgb kDim = 0x82000000;
constexpr QRgb kVeil = 0xdc0f1722;

constexpr int kRadiusCheck = 8;
constexpr int kRadiusThumb = 9;
constexpr int kRadiusPhoto = 10;
constexpr int kRadiusControl = 12;  // row, button, field, key
constexpr int kRadiusCard = 16;     // tile, card, dialog

/// @p rgba with its alpha, which QColor(QRgb) would drop.
inline QColor color(QRgb rgba) {
    return QColor::fromRgba(rgba);
}

/// A font of the language's family; weight as QFont::Weight, size in pixels. A text that no script
/// gives a size gets one that can be read.
inline QFont font(const QString& family, int pixelSize, QFont::Weight weight = QFont::Normal) {
    QFont made(family);
    made.setPixelSize(pixelSize > 0 ? pixelSize : 24);
    made.setWeight(weight);
    // The languages' scripts need none, and the shaper's tables take half a megabyte a face.
    made.setStyleStrategy(QFont::PreferNoShaping);
    return made;
}

}  // namespace Theme
