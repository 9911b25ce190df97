#include "tools/gallery/looks.h"

#include <QPainter>
#include <algorithm>
#include <iterator>

#include "tools/gallery/paint_recorder.h"
#include "tools/gallery/stage.h"
#include "ui/theme.h"

namespace {

/// In front of all others when sorted.
const char kLetters[] = "(letters)";
/// These show the addresses of the machine that they are on.
constexpr const char* kUncertain[] = {"tcpIpWindow-dhcp", "info_readerWindow", "info_conWindow"};

QByteArray lettersSum() {
    PaintRecorder recorder({480, 240});
    QPainter painter(&recorder);
    QRect line(0, 0, 480, 60);
    for (const int size : {18, 22, 28, 48}) {
        painter.setFont(Theme::font(QStringLiteral("Noto Sans CJK KR"), size));
        painter.drawText(line, Qt::AlignCenter, QStringLiteral("김서연 Ag 08:52 国字 かな"));
        line.translate(0, line.height());
    }
    return recorder.sum();
}

}  // namespace

Looks::Looks() : sums_{{QLatin1String(kLetters), ' ' + lettersSum()}} {}

void Looks::add(const QString& name, Stage& stage) {
    if (std::any_of(std::begin(kUncertain), std::end(kUncertain),
                    [&name](const char* one) { return name.contains(QLatin1String(one)); }))
        return;
    PaintRecorder recorder(stage.window().size());
    stage.paint(&recorder);
    // Its number among the screens says nothing about it.
    sums_[name.section(QLatin1Char('-'), 1)] += ' ' + recorder.sum();
}

QByteArray Looks::text() const {
    QByteArray text;
    for (auto one = sums_.cbegin(); one != sums_.cend(); ++one)
        text += one.key().toUtf8() + one.value() + '\n';
    return text;
}

QStringList Looks::changedSince(const QByteArray& kept) const {
    QMap<QString, QByteArray> before;
    const QList<QByteArray> lines = kept.split('\n');
    for (const QByteArray& line : lines) {
        const int end = line.indexOf(' ');
        if (end > 0)
            before.insert(QString::fromUtf8(line.left(end)), line.mid(end));
    }
    const QString letters = QLatin1String(kLetters);
    if (before.contains(letters) && before.value(letters) != sums_.value(letters))
        return {};
    QStringList changed;
    for (auto one = sums_.cbegin(); one != sums_.cend(); ++one) {
        if (before.take(one.key()) != one.value())
            changed.append(one.key());
    }
    return changed + before.keys();
}
