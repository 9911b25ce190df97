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

Combo::Combo(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("Combo"));
    connect(this, &WidgetButton::touched, this, &Combo::openList);
}

QStringList Combo::itemKeys() const {
    QStringList keys;
    for (const ScriptText& item : items_)
        keys.append(item.key());
    return keys;
}

void Combo::setItemKeys(const QStringList& keys) {
    items_.clear();
    items_.resize(keys.size());
    for (int i = 0; i < keys.size(); ++i)
        items_[i].setKey(keys.at(i));
    current_ = keys.isEmpty() ? -1 : 0;
    update();
}

void Combo::setItems(const QStringList& texts) {
    const QString family = title_.entry().fontFamily;
    items_.clear();
    items_.resize(texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        items_[i].setText(texts.at(i));
        items_[i].setFamily(family);
    }
    current_ = texts.isEmpty() ? -1 : 0;
    update();
}

void Combo::setCurrentIndex(int index) {
    if (index == current_ || index < 0 || index >= items_.size())
        return;
    current_ = index;
    update();
    emit currentIndexChanged(current_);
}

QString Combo::currentText() const {
    return current_ < 0 ? QString() : items_.at(current_).text();
}

void Combo::applyScripts(const Lookup& lookup) {
    title_.apply(lookup);
    for (ScriptText& item : items_)
        item.apply(lookup);
    updateGeometry();
    update();
}

QSize Combo::sizeHint() const {
    int widest = 0;
    for (const ScriptText& item : items_)
        widest = qMax(widest, TextFit::width(item.entry(), TextFit::kValue, QFont::Normal));
    const bool fits = kPadding + widest + kChevron + kChevronRight <= kWidth;
    return {fits ? kWidth : kWideWidth, 56};
}

void Combo::openList() {
    if (items_.isEmpty())
        return;
    QVector<ScriptHandler::Script> texts;
    for (const ScriptText& item : qAsConst(items_))
        texts.append(item.entry());
    list_ = new PickList(this, title_.entry(), texts, current_);
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
    if (current_ >= 0)
        TextFit::draw(&painter, {kPadding, 0, chevron.x() - kPadding, height()}, Qt::AlignLeft,
                      items_.at(current_).entry(), TextFit::kValue, QFont::Normal,
                      isEnabled() ? Theme::kStrong : Theme::kOff);
}
