#include "screens/usb/file_row.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kIconLeft = 18;
constexpr int kIcon = 36;
constexpr int kTextLeft = 70;
constexpr int kMark = 28;
constexpr int kMarkLeft = 397;
constexpr int kChevronShift = 4;  // its ink ends where that of the tick does
constexpr int kTextGap = 12;

}  // namespace

FileRow::FileRow(const QString& name, bool folder, QWidget* parent)
    : WidgetButton(parent), name_(name), folder_(folder) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    shown_.setFamily(QStringLiteral("Noto Sans CJK KR"));
    shown_.setText(visible(name));
}

QString FileRow::visible(const QString& name) {
    // Such a character would hide a part of the name, or turn the rest of it around.
    QString text;
    const QVector<uint> characters = name.toUcs4();
    for (const uint character : characters) {
        const QChar::Category category = QChar::category(character);
        const bool breaks =
            category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        text += QChar::isPrint(character) && !breaks ? QString::fromUcs4(&character, 1)
                                                     : QString(QChar::ReplacementCharacter);
    }
    return text;
}

void FileRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool chosen = isSelected();
    // The red of a chosen name can be read on the darkest ground only.
    if (chosen)
        Paint::box(&painter, rect(), Theme::kRadiusControl, Theme::kBackground, Theme::kAccent, 2);
    else
        drawRow(&painter, rect(), Theme::kRadiusControl);

    Paint::glyph(&painter, {kIconLeft, 0, kIcon, height()},
                 folder_ ? QStringLiteral("folder.png") : QStringLiteral("file.png"),
                 chosen ? Theme::kAccent : Theme::kList);
    const QRect mark(kMarkLeft, 0, kMark, height());
    if (folder_)
        Paint::glyph(&painter, mark.translated(kChevronShift, 0),
                     QStringLiteral("chevron_right.png"), Theme::kList);
    else if (chosen)
        Paint::icon(&painter, mark, QStringLiteral("pass_28.png"));

    const QFont::Weight weight = chosen ? QFont::Bold : QFont::Normal;
    const QRect line(kTextLeft, 0, kMarkLeft - kTextGap - kTextLeft, height());
    const QFontMetrics metrics(TextFit::font(shown_.entry(), TextFit::kFileName, weight));
    ScriptHandler::Script name = shown_.entry();
    name.script = metrics.elidedText(name.script, Qt::ElideRight, line.width());
    TextFit::draw(&painter, line, Qt::AlignLeft, name, TextFit::kFileName, weight,
                  chosen ? Theme::kPick : Theme::kList);
}
