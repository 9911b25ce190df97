#include "ui/combo.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/pick_list.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPadding = 19;
constexpr int kChevron = 26;
constexpr int kChevronRight = 15;
constexpr int kWidth = 208;
constexpr int kWideWidth = 236;  // for longer languages

}  // namespace

Combo::Combo(QWidget* parent) : Choice(parent) {
    setObjectName(QStringLiteral("Combo"));
    connect(this, &WidgetButton::touched, this, &Combo::openList);
}

QStringList Combo::itemKeys() const {
    QStringList keys;
    for (const ScriptText& item : items())
        keys.append(item.key());
    return keys;
}

void Combo::setItemKeys(const QStringList& keys) {
    QVector<ScriptText> items(keys.size());
    for (int i = 0; i < keys.size(); ++i)
        items[i].setKey(keys.at(i));
    setTexts(items);
}

void Combo::setItems(const QStringList& texts) {
    const QString family = title_.entry().fontFamily;
    QVector<ScriptText> items(texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        items[i].setText(texts.at(i));
        items[i].setFamily(family);
    }
    setTexts(items);
}

QString Combo::currentText() const {
    return currentIndex() < 0 ? QString() : items().at(currentIndex()).text();
}

void Combo::applyScripts(const Lookup& lookup) {
    title_.apply(lookup);
    Choice::applyScripts(lookup);
}

QSize Combo::sizeHint() const {
    const int text = widestText(TextFit::kValue, QFont::Normal);
    const bool fits = kPadding + text + kChevron + kChevronRight <= kWidth;
    return {fits ? kWidth : kWideWidth, 56};
}

void Combo::openList() {
    if (items().isEmpty())
        return;
    QVector<ScriptHandler::Script> texts;
    for (const ScriptText& item : items())
        texts.append(item.entry());
    list_ = new PickList(this, title_.entry(), texts, currentIndex());
    connect(list_, &PickList::picked, this, &Combo::setCurrentIndex);
    connect(list_, &QObject::destroyed, this, qOverload<>(&QWidget::update));
    list_->show();
    update();
}

void Combo::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawField(&painter, rect(), isDown() || list_);
    const QRect chevron(width() - kChevronRight - kChevron, 0, kChevron, height());
    Paint::glyph(&painter, chevron, QStringLiteral("chevron_down.png"),
                 isEnabled() ? Theme::kCaption : Theme::kOff, kChevron);
    if (currentIndex() >= 0)
        TextFit::draw(&painter, {kPadding, 0, chevron.x() - kPadding, height()}, Qt::AlignLeft,
                      items().at(currentIndex()).entry(), TextFit::kValue, QFont::Normal,
                      isEnabled() ? Theme::kStrong : Theme::kOff);
}
