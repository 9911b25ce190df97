#include "ui/text_fit.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QtMath>
#include <algorithm>
#include <utility>

#include "ui/theme.h"

namespace {

/// Line pitch of several lines in one bar, row or tile, in percent of the font's own.
constexpr float kTightest = 85;
constexpr float kTight = 88;
/// The glyphs of the terminal's fonts sit low in their line: how far to raise them, in ems.
constexpr qreal kLift = 0.045;
const QLatin1String kKoreanFamily("Noto Sans CJK KR");
const QLatin1String kJapaneseFamily("Noto Sans CJK JP");

struct Layout {
    QFont font;
    QStringList lines;
};

/// Whether @p c is drawn as one with the character before it, such as an accent or the vowel of a
/// Hangul syllable in parts.
bool joins(QChar c) {
    return c.isMark() || (c.unicode() >= 0x1161 && c.unicode() <= 0x11ff);
}

QString plain(const QString& text, const TextFit::Rule& rule) {
    if (!rule.verbatim && Qt::mightBeRichText(text))
        return QTextDocumentFragment::fromHtml(text).toPlainText();
    // Other systems write names in parts, and nothing shapes what is drawn here.
    return std::any_of(text.begin(), text.end(), joins)
               ? text.normalized(QString::NormalizationForm_C)
               : text;
}

bool isHangul(uint c) {
    return QChar::script(c) == QChar::Script_Hangul;
}

/// The typefaces for what somebody has entered. One Han character looks different in Japan and in
/// Korea, and a name keeps its own look whatever language the terminal speaks: kana tell a Japanese
/// one, Hangul a Korean one. Han characters alone are taken as Japanese too, since Korean names are
/// entered in Hangul. The language's face follows for a terminal without the Japanese one.
QStringList facesFor(const QString& entered, const QString& family) {
    bool japanese = false;
    const QVector<uint> characters = entered.toUcs4();
    for (const uint c : characters) {
        if (isHangul(c))
            return {kKoreanFamily, family};
        const QChar::Script script = QChar::script(c);
        japanese = japanese || script == QChar::Script_Han || script == QChar::Script_Hiragana ||
                   script == QChar::Script_Katakana;
    }
    return japanese ? QStringList{kJapaneseFamily, family} : QStringList{family};
}

QFont sized(const ScriptHandler::Script& text, const TextFit::Rule& rule, int size,
            QFont::Weight weight) {
    QFont font = Theme::font(text.fontFamily, size, weight);
    if (rule.verbatim)
        font.setFamilies(facesFor(text.script, text.fontFamily));
    font.setLetterSpacing(QFont::AbsoluteSpacing, static_cast<qreal>(text.letter));
    return font;
}

int firstSize(const ScriptHandler::Script& text, const TextFit::Rule& rule) {
    return text.size >= 1 ? static_cast<int>(text.size) : rule.steps[0].size;
}

/// Breaks one paragraph where the language allows it. Korean words are kept whole, as their
/// readers expect, unless @p anywhere is set. Lines of a word that is too wide stay too wide.
QStringList broken(const QString& paragraph, const QFontMetricsF& metrics, qreal width,
                   bool anywhere) {
    if (metrics.horizontalAdvance(paragraph) <= width)
        return {paragraph};

    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, paragraph);
    QStringList lines;
    int start = 0;
    int last = 0;
    for (int next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
        if (!anywhere && next < paragraph.size() && isHangul(paragraph.at(next - 1).unicode()) &&
            isHangul(paragraph.at(next).unicode()))
            continue;
        const QString candidate = paragraph.mid(start, next - start).trimmed();
        if (last > start && metrics.horizontalAdvance(candidate) > width) {
            lines.append(paragraph.mid(start, last - start).trimmed());
            start = last;
        }
        last = next;
    }
    lines.append(paragraph.mid(start).trimmed());
    return lines;
}

bool fitsInto(const QStringList& lines, const QFontMetricsF& metrics, qreal width, int count) {
    return lines.size() <= count &&
           std::all_of(lines.begin(), lines.end(), [&](const QString& line) {
               return metrics.horizontalAdvance(line) <= width;
           });
}

Layout lay(const ScriptHandler::Script& script, const TextFit::Rule& rule, QFont::Weight weight,
           int width) {
    const QString text = plain(script.script, rule);
    const int largest = firstSize(script, rule);
    Layout layout;
    int room = 1;
    for (const bool anywhere : {false, true}) {
        for (const TextFit::Step& step : rule.steps) {
            if (step.size == 0)
                break;
            const bool first = &step == rule.steps;
            layout.font = sized(script, rule, first ? largest : qMin(step.size, largest), weight);
            const QFontMetricsF metrics(layout.font);
            layout.lines.clear();
            const QStringList paragraphs = text.split(QLatin1Char('\n'));
            for (const QString& paragraph : paragraphs)
                layout.lines += broken(paragraph, metrics, width, anywhere);
            room = step.lines;
            if (fitsInto(layout.lines, metrics, width, room))
                return layout;
        }
    }
    // It fits in no way: the last line that has room takes the rest and is cut.
    const QFontMetricsF metrics(layout.font);
    const int kept = qMin(room, layout.lines.size());
    const QString rest = QStringList(layout.lines.mid(kept - 1)).join(QLatin1Char(' '));
    layout.lines = layout.lines.mid(0, kept - 1);
    layout.lines.append(metrics.elidedText(rest, Qt::ElideRight, width));
    return layout;
}

}  // namespace

namespace TextFit {

void draw(QPainter* painter, const QRect& box, Qt::Alignment alignment,
          const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight, QRgb color) {
    if (text.script.isEmpty() || box.width() <= 0)
        return;
    const Layout layout = lay(text, rule, weight, box.width());
    const QFontMetricsF metrics(layout.font);
    const float percent = text.height > 0 ? qBound(kTightest, text.height, kTight) : kTight;
    const qreal pitch = metrics.height() * static_cast<qreal>(percent) / 100;
    const qreal height = metrics.height() + (layout.lines.size() - 1) * pitch;

    painter->setFont(layout.font);
    painter->setPen(Theme::color(color));
    qreal baseline =
        box.y() + (box.height() - height) / 2 + metrics.ascent() - kLift * layout.font.pixelSize();
    for (const QString& line : layout.lines) {
        const qreal spare = box.width() - metrics.horizontalAdvance(line);
        qreal x = box.x();
        if (alignment & Qt::AlignHCenter)
            x += spare / 2;
        else if (alignment & Qt::AlignRight)
            x += spare;
        painter->drawText(QPointF(qRound(x), qRound(baseline)), line);
        baseline += pitch;
    }
}

ScriptHandler::Script roleSized(ScriptHandler::Script text) {
    text.size = 0;
    return text;
}

int width(const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight) {
    const QFontMetricsF metrics(font(text, rule, weight));
    qreal widest = 0;
    const QStringList lines = plain(text.script, rule).split(QLatin1Char('\n'));
    for (const QString& line : lines)
        widest = qMax(widest, metrics.horizontalAdvance(line));
    return qCeil(widest);
}

QFont font(const ScriptHandler::Script& text, const Rule& rule, QFont::Weight weight) {
    return sized(text, rule, firstSize(text, rule), weight);
}

}  // namespace TextFit
