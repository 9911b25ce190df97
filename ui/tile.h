#pragma once

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// A way to another screen: an icon on a plate with the name below (208x156), or, when wide, an
/// icon with the name beside it (220x94).
class Tile : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QString iconName READ iconName WRITE setIconName)
    Q_PROPERTY(bool wide READ isWide WRITE setWide)

 public:
    explicit Tile(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    /// A picture of Pictures::icon(), drawn in the color of the text.
    const QString& iconName() const { return icon_; }
    void setIconName(const QString& name);
    bool isWide() const { return wide_; }
    void setWide(bool wide);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    QString icon_;
    bool wide_ = false;
};
