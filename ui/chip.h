#pragma once

#include <QWidget>

#include "ui/script_text.h"

/// A word about something, in a pill. 40 pixels high, as wide as its word needs; in a wider
/// widget it stands at the left.
class Chip : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QString iconName READ iconName WRITE setIconName)

 public:
    explicit Chip(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    const QString& text() const { return text_.text(); }
    void setText(const QString& text);
    /// A picture of Pictures::icon(), drawn in the color of the word.
    const QString& iconName() const { return icon_; }
    void setIconName(const QString& name);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    QString icon_;
};
