#include "ui/choice.h"

void Choice::setCurrentIndex(int index) {
    if (index == current_ || index < 0 || index >= items_.size())
        return;
    current_ = index;
    update();
    emit currentIndexChanged(current_);
}

void Choice::applyScripts(const Lookup& lookup) {
    for (ScriptText& item : items_)
        item.apply(lookup);
    updateGeometry();
    update();
}

void Choice::setTexts(const QVector<ScriptText>& items) {
    items_ = items;
    current_ = items_.isEmpty() ? -1 : 0;
    update();
}

int Choice::widestText(const TextFit::Rule& rule, QFont::Weight weight) const {
    int widest = 0;
    for (const ScriptText& item : items_)
        widest = qMax(widest, TextFit::width(item.entry(), rule, weight));
    return widest;
}
