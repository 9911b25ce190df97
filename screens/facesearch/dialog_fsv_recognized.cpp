#include "screens/facesearch/dialog_fsv_recognized.h"

#include <QPainter>
#include <algorithm>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "screens/facesearch/fsv_tools.h"
#include "ui/label_button.h"
#include "ui/text_line.h"
#include "ui/theme.h"

namespace {

constexpr int kTime = 5000;  // milliseconds
constexpr int kTitleHeight = 32;
constexpr int kNameHeight = 72;
constexpr int kPositionHeight = 48;
constexpr int kFactHeight = 56;
constexpr int kGap = 12;
constexpr int kButtonGap = 28;
constexpr int kButtonHeight = 72;
constexpr TextFit::Rule kValue{{{22, 1}, {18, 2}}, true};

template <std::size_t size>
QString textOf(const char (&field)[size]) {
    char text[kUtf8TextSize];
    EucKR2Utf8(field, size, text);
    return QString::fromUtf8(text).trimmed();
}

}  // namespace

/// Something that is known of a person, as it was sent: alone in the middle, or behind its caption
/// with a line above both. It takes no place when there is nothing.
class FaceFact : public QWidget, public Scripted {
 public:
    FaceFact(QWidget* parent, const char* name, TextFit::Rule rule, QFont::Weight weight)
        : QWidget(parent), rule_(rule), weight_(weight) {
        setObjectName(QLatin1String(name));
    }

    void setCaptionKey(const char* key) {
        caption_.setKey(QLatin1String(key));
        setProperty("textKey", caption_.key());
        hasCaption_ = true;
    }
    void setValue(const QString& value) {
        value_.setText(value);
        setVisible(!value.isEmpty());
        update();
    }
    void applyScripts(const Lookup& lookup) override {
        if (!caption_.key().isEmpty())
            caption_.apply(lookup);
        value_.apply(lookup);
        update();
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (!hasCaption_) {
            TextFit::draw(&painter, rect(), Qt::AlignHCenter, value_.entry(), rule_, weight_,
                          Theme::kStrong);
            return;
        }
        painter.fillRect(0, 0, width(), 1, Theme::color(Theme::kPressed));
        const QRect row = rect().adjusted(0, 1, 0, 0);
        TextFit::draw(&painter, row, Qt::AlignLeft, caption_.entry(), TextFit::kCaption,
                      QFont::Normal, Theme::kHint);
        const int taken = TextFit::width(caption_.entry(), TextFit::kCaption, QFont::Normal) + kGap;
        TextFit::draw(&painter, row.adjusted(taken, 0, 0, 0), Qt::AlignRight, value_.entry(), rule_,
                      weight_, Theme::kStrong);
    }

 private:
    const TextFit::Rule rule_;
    const QFont::Weight weight_;
    ScriptText caption_;
    ScriptText value_;
    bool hasCaption_ = false;
};

DialogFsvRecognized::DialogFsvRecognized(QWidget* screen)
    : DialogOverlay(screen),
      title_(new TextLine(card())),
      name_(new FaceFact(card(), "fsvName", TextFit::kName, QFont::Bold)),
      position_(new FaceFact(card(), "fsvPosition", kValue, QFont::Medium)),
      confidence_(new FaceFact(card(), "fsvConfidence", kValue, QFont::Bold)),
      confirm_(new LabelButton(card())),
      cancel_(new LabelButton(card())) {
    setObjectName(QStringLiteral("dialogFsvRecognized"));
    title_->setTextKey(QStringLiteral("Dialog_FsvTitle"));
    title_->setRole(TextLine::Caption);
    title_->setAlignment(Qt::AlignHCenter);
    for (FaceFact*& department : departments_) {
        department = new FaceFact(card(), "fsvDepartment", kValue, QFont::Medium);
        department->setCaptionKey("Dialog_FsvDepartment");
    }
    confidence_->setCaptionKey("Dialog_FsvConfidence");
    confirm_->setObjectName(QStringLiteral("fsvConfirmButton"));
    confirm_->setTextKey(QStringLiteral("Dialog_ButtonConfirm"));
    confirm_->setRole(LabelButton::Primary);
    cancel_->setObjectName(QStringLiteral("fsvCancelButton"));
    cancel_->setTextKey(QStringLiteral("Dialog_ButtonCancel"));
    time_.setInterval(kTime);
    time_.setSingleShot(true);
    connect(confirm_, &LabelButton::touched, this, &QWidget::hide);
    connect(cancel_, &LabelButton::touched, this, &QWidget::hide);
    connect(&time_, &QTimer::timeout, this, &QWidget::hide);
}

void DialogFsvRecognized::tell(const FaceInfoRecord& face) {
    if (!parentWidget()->isVisible())
        return;
    const QString name = textOf(face.name);
    // Somebody without a name is at least told apart from others.
    const std::string id = printableAscii(face.personId, sizeof face.personId);
    const QString known = name.isEmpty() ? QString::fromStdString(id).trimmed() : name;
    name_->setValue(known.isEmpty() ? QStringLiteral("-") : known);
    position_->setValue(textOf(face.position));
    const QString departments[] = {textOf(face.department1), textOf(face.department2),
                                   textOf(face.department3), textOf(face.department4)};
    for (int i = 0; i < kDepartments; ++i)
        departments_[i]->setValue(departments[i]);
    confidence_->setValue(QString::number(face.confidence));
    show();
    partsChanged();
    time_.start();
}

int DialogFsvRecognized::arrange() {
    int y = kTop;
    const auto place = [&y](QWidget* part, int height) {
        if (part->isHidden())
            return;
        part->setGeometry(kSide, y, kInnerWidth, height);
        y += height;
    };
    place(title_, kTitleHeight);
    place(name_, kNameHeight);
    place(position_, kPositionHeight);
    y += kGap;
    for (FaceFact* department : departments_)
        place(department, kFactHeight);
    place(confidence_, kFactHeight);
    y += kButtonGap;
    constexpr int kButtonWidth = (kInnerWidth - kGap) / 2;
    cancel_->setGeometry(kSide, y, kButtonWidth, kButtonHeight);
    confirm_->setGeometry(kSide + kInnerWidth - kButtonWidth, y, kButtonWidth, kButtonHeight);
    return y + kButtonHeight + kBottom;
}

void DialogFsvRecognized::opened() {
    Scripted::applyBelow(this,
                         [](const QString& key) { return WindowForm::shell()->getScript(key); });
}

void DialogFsvRecognized::showEvent(QShowEvent* event) {
    DialogOverlay::showEvent(event);
    time_.start();
}
