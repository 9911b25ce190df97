#pragma once

#include <QStringList>
#include <QWidget>

#include "ui/script_text.h"

/// How the terminal stands with another party: its name, a sign with a word, and what more there is
/// to say of it, a line each.
class PeerCard : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString titleKey READ titleKey WRITE setTitleKey)

 public:
    enum class State {
        Good,
        Bad,
        Off,  ///< not used, or not known
    };

    explicit PeerCard(QWidget* parent = nullptr);

    const QString& titleKey() const { return title_.key(); }
    void setTitleKey(const QString& key) { title_.setKey(key); }
    State state() const { return state_; }
    const QStringList& lines() const { return lines_; }
    /// @p word says the state. Lines are shown letter by letter; empty ones are left out.
    void setPeer(State state, const ScriptHandler::Script& word, const QStringList& lines);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptHandler::Script lineText(const QString& line) const;
    int heightOf(const QString& line) const;

    ScriptText title_;
    State state_ = State::Off;
    ScriptHandler::Script word_;
    QStringList lines_;
};
