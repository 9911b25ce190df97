#pragma once

#include <QColor>
#include <QFont>
#include <QString>

/// The colours, AARRGGBB, as they are while no theme file says otherwise. Pictures are made with
/// the same ones. The file calls them by their names here, with a small first letter.
// clang-format off
#define ZEL_THEME_COLORS(X) \
    X(Background, 0xff0f1722) \
    X(Bar, 0xff162130) \
    X(Row, 0xff1b2838) \
    X(RowPressed, 0xff26364a) \
    X(Dialog, 0xff202e41) \
    X(Raised, 0xff2a3b50) \
    X(Pressed, 0xff3a4f69) \
    X(Line, 0xff2c3d52) \
    X(Outline, 0xff7488a0) \
    X(Mark, 0xff8296ad) \
    X(Strong, 0xfff3f7fc) \
    X(Caption, 0xffd9dfe9) \
    X(List, 0xffb4c3d6) \
    X(Hint, 0xff93a6bd) \
    X(Off, 0xff66798f) \
    X(OffLine, 0xff3a4f69) \
    X(OffFill, 0xff4a5d74) \
    X(Accent, 0xff5effd7) \
    X(AccentPressed, 0xff39cfaa) \
    X(AccentTint, 0xff16383c) \
    X(OnAccent, 0xff06231c) \
    X(Danger, 0xffff8a8a) \
    X(DangerPressed, 0xffe06464) \
    X(OnDanger, 0xff2b0508) \
    X(Warn, 0xffffcf5c) \
    X(Pick, 0xffff0000) \
    X(Dim, 0x82000000) \
    X(Veil, 0xdc0f1722) \
    X(Photo, 0xff223145) \
    X(Disc, 0xff0f2529) \
    X(FrameGround, 0x990f1722) \
    X(GroundTop, 0xff0b1119) \
    X(GroundMiddle, 0xff0f1b29) \
    X(GroundBottom, 0xff143042) \
    X(Ring, 0xff1b3b4d)
// clang-format on

/// The terminal's colours and measures, in one place; the widgets of this folder are drawn with
/// them alone.
///
/// Two rules carry the look: what is pressed is raised (lighter fill, no border), what holds a
/// value is recessed (darkest fill, thin outline).
namespace Theme {

constexpr int kScreenWidth = 480;
constexpr int kScreenHeight = 800;
constexpr int kBarHeight = 72;

namespace detail {

struct Colors {
#define ZEL_THEME_COLOR(name, value) QRgb name = value;
    ZEL_THEME_COLORS(ZEL_THEME_COLOR)
#undef ZEL_THEME_COLOR
};

extern Colors colors;

}  // namespace detail

// For everybody else they are constants, with which a program begins before it knows the file: a
// table that is made earlier keeps their addresses.
#define ZEL_THEME_COLOR(name, value) inline const QRgb& k##name = detail::colors.name;
ZEL_THEME_COLORS(ZEL_THEME_COLOR)
#undef ZEL_THEME_COLOR

/// Takes the colours of a brand from the file at @p path, a JSON object such as
/// {"accent": "#ffb300"}; the rest, and without such a file all, are the terminal's own. A wrong
/// entry costs itself and a line in the log. Called before the first widget is made. GUI thread.
void load(const QString& path);

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
