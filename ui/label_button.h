#pragma once

#include "ui/script_text.h"
#include "ui/text_fit.h"
#include "ui/widget_button.h"

/// A button with a text, an icon or both.
class LabelButton : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QString iconName READ iconName WRITE setIconName)
    Q_PROPERTY(Role role READ role WRITE setRole)
    Q_PROPERTY(int margin READ margin WRITE setMargin)
    Q_PROPERTY(bool limited READ isLimited WRITE setLimited)
    Q_PROPERTY(bool stacked READ isStacked WRITE setStacked)

 public:
    enum Role {
        Neutral,
        Primary,  ///< the way forward; at most one in a layer
        Danger,   ///< destroys something
        Delete,   ///< neutral, with a red word
        Flat,     ///< without ground until pressed
    };
    Q_ENUM(Role)

    explicit LabelButton(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    const QString& text() const { return text_.text(); }
    /// Replaces the key's text until the key is applied again.
    void setText(const QString& text);
    /// The same with a typography of its own.
    void setScript(const ScriptHandler::Script& script);
    /// A picture of Pictures::icon(), drawn in the color of the text.
    const QString& iconName() const { return icon_; }
    void setIconName(const QString& name);
    Role role() const { return role_; }
    void setRole(Role role);
    /// How much higher the sensitive area is than the drawn one, above and below, in pixels.
    int margin() const { return margin_; }
    void setMargin(int margin);
    /// Looks disabled, but is not: the value it changes is at its end.
    bool isLimited() const { return limited_; }
    void setLimited(bool limited);
    /// The icon stands over the text instead of before it, for buttons 96 pixels high.
    bool isStacked() const { return stacked_; }
    void setStacked(bool stacked);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QRect drawn() const { return rect().adjusted(0, margin_, 0, -margin_); }
    bool looksOff() const { return limited_ || !isEnabled(); }
    const TextFit::Rule& rule() const;
    bool isBold() const;
    QFont::Weight weight() const;
    QRgb inkColor() const;

    ScriptText text_;
    QString icon_;
    Role role_ = Neutral;
    int margin_ = 0;
    bool limited_ = false;
    bool stacked_ = false;
};
