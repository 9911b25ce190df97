#pragma once

#include <QPixmap>

#include "ui/script_text.h"
#include "ui/widget_button.h"

class CheckBox;

/// A row of a list: a label at the left and, at the right, a control, a value, a chevron or a
/// radio mark. The control is the child widget that the form lays on the row; the row itself puts
/// it at its place, below the label (and grows) when it is too wide to stand beside it; one that is
/// hidden takes no place. A CheckBox on the row takes the label's place.
///
/// Only a row with a mark can be touched as a whole. A verdict takes the chevron's place, and says
/// that there is none yet with its sign alone.
class ListRow : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QString valueKey READ valueKey WRITE setValueKey)
    Q_PROPERTY(QString note READ note WRITE setNote)
    Q_PROPERTY(bool positive READ isPositive WRITE setPositive)
    Q_PROPERTY(Mark mark READ mark WRITE setMark)
    Q_PROPERTY(QString iconName READ iconName WRITE setIconName)
    Q_PROPERTY(int iconColumn READ iconColumn WRITE setIconColumn)
    Q_PROPERTY(bool faulty READ isFaulty WRITE setFaulty)
    Q_PROPERTY(bool danger READ isDanger WRITE setDanger)
    Q_PROPERTY(Verdict verdict READ verdict WRITE setVerdict)

 public:
    enum Mark {
        NoMark,
        Chevron,    ///< leads somewhere
        Radio,      ///< one choice of several; on when selected
        Touchable,  ///< does something at a touch; has no sign
    };
    Q_ENUM(Mark)

    /// How a test has gone: a word and a sign at the right end.
    enum class Verdict { None, NotRun, Running, Pass, Fail };
    Q_ENUM(Verdict)

    explicit ListRow(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    const QString& text() const { return text_.text(); }
    void setText(const QString& text);
    const QString& valueKey() const { return value_.key(); }
    void setValueKey(const QString& key) { value_.setKey(key); }
    const QString& value() const { return value_.text(); }
    void setValue(const QString& value);
    /// The same for what somebody has entered, which is shown to the letter.
    void setEnteredValue(const QString& value);
    /// A smaller line below the label, of a row of the normal height.
    const QString& note() const { return note_.text(); }
    void setNote(const QString& note);
    /// Shows the value as good: in the accent color behind a tick. The icon has that color too.
    bool isPositive() const { return positive_; }
    void setPositive(bool positive);
    Mark mark() const { return mark_; }
    void setMark(Mark mark);
    /// A picture of Pictures::icon() before the label, drawn in the color of the label.
    const QString& iconName() const { return icon_; }
    void setIconName(const QString& name);
    /// The width of the icon's column in pixels; 132 for the choices with pairs of icons.
    int iconColumn() const { return iconColumn_; }
    void setIconColumn(int width);

    /// A picture in the icon's place, as it is; a null one for none.
    void setPreview(const QPixmap& preview);

    /// A touch leads to a loss, as the color of the label says.
    bool isDanger() const { return danger_; }
    void setDanger(bool danger);

    /// What is entered on the row is wrong, as its border says.
    bool isFaulty() const { return faulty_; }
    void setFaulty(bool faulty);

    Verdict verdict() const { return verdict_; }
    void setVerdict(Verdict verdict);

    /// What the row is called: its text, or that of its check box.
    QString label() const;
    /// The control on the row that is not hidden, or null.
    QWidget* control() const;

    void applyScripts(const Lookup& lookup) override;
    bool isTouchable() const override { return mark_ != NoMark; }
    QSize sizeHint() const override;

 protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    CheckBox* box() const;
    /// Draws the verdict at the end of @p line and takes its place off it.
    void drawVerdict(QPainter* painter, QRect* line) const;
    bool isStacked() const;
    void arrange();

    ScriptText text_;
    ScriptText value_;
    bool valueEntered_ = false;
    ScriptText note_;
    QString icon_;
    Mark mark_ = NoMark;
    int iconColumn_ = 48;
    bool positive_ = false;
    bool faulty_ = false;
    bool danger_ = false;
    QPixmap preview_;
    Verdict verdict_ = Verdict::None;
    ScriptText words_[5];  // of the verdicts
};
