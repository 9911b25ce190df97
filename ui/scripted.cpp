#include "ui/scripted.h"

#include <QLabel>
#include <QVariant>
#include <QWidget>

#include "ui/styler.h"

void Scripted::applyBelow(QWidget* root, const Lookup& lookup) {
    const QList<QWidget*> widgets = root->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (auto* scripted = dynamic_cast<Scripted*>(widget)) {
            scripted->applyScripts(lookup);
        } else if (auto* label = qobject_cast<QLabel*>(widget)) {
            const QString key = label->property("scriptKey").toString();
            if (!key.isEmpty())
                Styler::setText(label, lookup(key));
        }
    }
}
