#pragma once

#include <QColor>
#include <QFont>
#include <QRect>

#include "ui/script_handler.h"

class QPainter;

/// Writes texts of any language into boxes of a fixed size. A text that is too long for its box
/// gives way in the steps of its rule: smaller, on more lines, and at last with an ellipsis.
///
/// Markup in a text only breaks its lines here; other tags are dropped. Texts that people have
/// entered are not looked at for markup, and are drawn with the glyphs of their own writing: their
/// rules say so.
namespace TextFit {

/// A pixel size, and how many lines of it the box has room for.
struct Step {
    int size;
    int lines;
};

/// The steps to try, first one first; a size of 0 ends them. The first size is the script's own
/// when it has one, and no later step is larger.
struct Rule {
    Step steps[4];
    bool verbatim = false;  ///< no script's text: shown letter by letter
};

constexpr Rule kTitle{{{26, 1}, {22, 2}}};
constexpr Rule kButton{{{24, 1}, {20, 1}}};
constexpr Rule kSmallButton{{{22, 1}, {20, 1}}};
constexpr Rule kRowLabel{{{22, 2}, {20, 2}}};
constexpr Rule kNarrowLabel{{{22, 2}, {20, 2}, {18, 2}}};
constexpr Rule kChoice{{{24, 2}, {20, 2}}};
constexpr Rule kTile{{{24, 2}, {20, 2}}};
constexpr Rule kWideTile{{{20, 2}, {18, 3}}};
constexpr Rule kToggle{{{20, 1}, {18, 1}}};
constexpr Rule kValue{{{22, 1}}};
constexpr Rule kEntered{{{22, 1}}, true};
constexpr Rule kEnteredNote{{{20, 1}, {18, 1}}, true};
constexpr Rule kChip{{{20, 1}}};
constexpr Rule kNotice{{{18, 1}}};
// The longest name, 32 letters wide as they may be, takes the last step.
constexpr Rule kName{{{40, 1}, {32, 1}, {24, 2}, {18, 3}}, true};
constexpr Rule kIdNumber{{{26, 1}, {22, 1}}, true};
constexpr Rule kBand{{{32, 1}, {28, 2}}};
constexpr Rule kConfirmation{{{32, 1}, {26, 2}}};
constexpr Rule kCaption{{{20, 1}, {18, 1}}};
constexpr Rule kMethod{{{20, 1}, {18, 2}}};
constexpr Rule kFileName{{{24, 1}}, true};

/// Writes @p text into @p box.
void draw(QPainter* painter, const QRect& box, Qt::Alignment alignment,
          const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight, QRgb color);

/// @p text without its own size: that of a rule counts. For a text that was written for another
/// role.
ScriptHandler::Script roleSized(ScriptHandler::Script text);

/// The width of @p text on one line in the rule's first size.
int width(const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight);

/// The font of the rule's first step.
QFont font(const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight);

}  // namespace TextFit
