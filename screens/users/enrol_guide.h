#pragma once

#include <QMovie>
#include <QPixmap>

#include "ui/panel.h"
#include "ui/script_text.h"

/// What somebody whose face is captured is to do: a picture that moves, and a text. 432x144.
class EnrolGuide : public Panel, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey)

 public:
    explicit EnrolGuide(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    /// Shows the text of @p key and the moving picture @p movie of the folder /zel1/image, or
    /// without one a sign that something has to be done again.
    void tell(const QString& key, const QString& movie);

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    void play();
    void stop();
    QPixmap picture();

    ScriptText text_;
    QString file_;  // of the movie, below the device's root
    QMovie movie_;
    bool begun_ = false;
};
