#pragma once

#include "ui/label_button.h"

/// The bar at the top of a screen: a way back, the title, and the actions at the right, from left
/// to right: delete, neutral, home, forward. An action is there when its key is set. 480x72.
class TopBar : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString titleKey READ titleKey WRITE setTitleKey)
    Q_PROPERTY(bool backVisible READ isBackVisible WRITE setBackVisible)
    Q_PROPERTY(bool homeVisible READ isHomeVisible WRITE setHomeVisible)
    Q_PROPERTY(QString forwardKey READ forwardKey WRITE setForwardKey)
    Q_PROPERTY(QString neutralKey READ neutralKey WRITE setNeutralKey)
    Q_PROPERTY(QString deleteKey READ deleteKey WRITE setDeleteKey)

 public:
    /// What can be touched in the bar.
    enum Action { Back, Delete, Neutral, Home, Forward };
    Q_ENUM(Action)

    explicit TopBar(QWidget* parent = nullptr);

    const QString& titleKey() const { return title_.key(); }
    void setTitleKey(const QString& key) { title_.setKey(key); }
    const QString& title() const { return title_.text(); }
    /// Replaces the key's text until the key is applied again.
    void setTitle(const QString& title);
    bool isBackVisible() const { return isActionVisible(Back); }
    void setBackVisible(bool visible) { setActionVisible(Back, visible); }
    bool isHomeVisible() const { return isActionVisible(Home); }
    void setHomeVisible(bool visible) { setActionVisible(Home, visible); }
    /// The way forward (Save, Next, OK), in the accent color.
    QString forwardKey() const { return actionKey(Forward); }
    void setForwardKey(const QString& key) { setActionKey(Forward, key); }
    /// For instance Cancel.
    QString neutralKey() const { return actionKey(Neutral); }
    void setNeutralKey(const QString& key) { setActionKey(Neutral, key); }
    QString deleteKey() const { return actionKey(Delete); }
    void setDeleteKey(const QString& key) { setActionKey(Delete, key); }

    /// The action's button, null when the bar never had it.
    LabelButton* button(Action action) const { return buttons_[action]; }

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void backTouched();
    void deleteTouched();
    void neutralTouched();
    void homeTouched();
    void forwardTouched();

 protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    static constexpr int kActions = 5;

    bool isActionVisible(Action action) const;
    void setActionVisible(Action action, bool visible);
    QString actionKey(Action action) const;
    void setActionKey(Action action, const QString& key);
    LabelButton* made(Action action);
    void arrange();

    ScriptText title_;
    LabelButton* buttons_[kActions] = {};  // made when first asked for
    int titleRight_ = 0;
};
