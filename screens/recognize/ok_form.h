#pragma once

#include <QDateTime>

#include "ui/panel.h"
#include "ui/script_handler.h"

class AnimationPlayWidget;
class TextLine;

/// The lower part of a result that needs no answer: a mark, a sentence, and the time.
class OkForm : public Panel {
    Q_OBJECT

 public:
    explicit OkForm(QWidget* parent = nullptr);

    /// With the mark drawn before the person's eyes.
    void confirm(const ScriptHandler::Script& text);
    /// With the mark @p picture.
    void tell(const QString& picture, const ScriptHandler::Script& text);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void setContent(const QStringList& pictures, const ScriptHandler::Script& text);

    AnimationPlayWidget* mark_;
    TextLine* text_;
    QString family_;
    QDateTime time_;
};
