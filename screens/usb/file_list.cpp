#include "screens/usb/file_list.h"

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

void FileModel::setEntries(const QStringList& folders, const QStringList& files) {
    const auto sorted = [](QStringList names) {
        names.sort(Qt::CaseInsensitive);
        return names;
    };
    beginResetModel();
    folders_ = folders.size();
    names_ = sorted(folders) + sorted(files);
    endResetModel();
}

int FileModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : names_.size();
}

QVariant FileModel::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return names_.value(index.row());
        case IsFolder:
            return index.row() < folders_;
        default:
            return {};
    }
}

QString FilePainter::visible(const QString& name) {
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

void FilePainter::paintGround(QPainter* painter, const QRect& box, const RowState& state) const {
    // The red of a chosen name can be read on the darkest ground only.
    if (state.selected)
        Paint::box(painter, box, Theme::kRadiusControl, Theme::kBackground, Theme::kAccent, 2);
    else
        RowPainter::paintGround(painter, box, state);
}

void FilePainter::paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                           const RowState& state) const {
    const bool folder = index.data(FileModel::IsFolder).toBool();
    Paint::glyph(painter, {box.x() + kIconLeft, box.y(), kIcon, box.height()},
                 folder ? QStringLiteral("folder.png") : QStringLiteral("file.png"),
                 state.selected ? Theme::kAccent : Theme::kList);
    const QRect mark(box.x() + kMarkLeft, box.y(), kMark, box.height());
    if (folder)
        Paint::glyph(painter, mark.translated(kChevronShift, 0),
                     QStringLiteral("chevron_right.png"), Theme::kList);
    else if (state.selected)
        Paint::icon(painter, mark, QStringLiteral("pass_28.png"));

    const QFont::Weight weight = state.selected ? QFont::Bold : QFont::Normal;
    const int left = box.x() + kTextLeft;
    const QRect line(left, box.y(), mark.x() - kTextGap - left, box.height());
    ScriptHandler::Script name;
    name.fontFamily = QStringLiteral("Noto Sans CJK KR");
    const QFontMetrics metrics(TextFit::font(name, TextFit::kFileName, weight));
    name.script =
        metrics.elidedText(visible(index.data().toString()), Qt::ElideRight, line.width());
    TextFit::draw(painter, line, Qt::AlignLeft, name, TextFit::kFileName, weight,
                  state.selected ? Theme::kPick : Theme::kList);
}
