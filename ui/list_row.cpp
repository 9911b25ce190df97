#include "ui/list_row.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>
#include <iterator>

#include "ui/check_box.h"
#include "ui/paint.h"
#include "ui/pictures.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kWidth = 448;
constexpr int kHeight = 76;
constexpr int kStackedHeight = 128;
constexpr int kControlHeight = 56;
constexpr int kLabelLeft = 20;
constexpr int kControlMargin = 10;
constexpr int kEnd = 20;       // what is not a control ends this much before the row's end
constexpr int kLabelGap = 12;  // between the label and what follows
constexpr int kWidestInline = 236;
constexpr int kChevron = 28;
constexpr int kChevronInk = 20;  // the glyph's visible end in its box
constexpr int kRadio = 36;
constexpr int kTick = 26;
constexpr int kTickGap = 10;
constexpr int kSign = 28;
constexpr int kSignEnd = 12;
constexpr int kNarrow = 300;  // a row of this width and more has room for the margins above
constexpr int kNarrowLeft = 16;
constexpr int kNarrowGap = 8;
constexpr int kNarrowTickGap = 6;
constexpr int kNoteTop = 42;
constexpr int kNoteBottom = 6;

/// By ListRow::Verdict.
const struct VerdictLook {
    const char* wordKey;
    const char* sign;
    const QRgb* color;
} kVerdicts[] = {
    {"", "", nullptr},
    {"ListItem_TestNotRun", "not_run_28.png", &Theme::kList},
    {"ListItem_TestRunning", "wait_0.png", &Theme::kCaption},
    {"ListItem_TestPass", "pass_28.png", &Theme::kAccent},
    {"ListItem_TestFail", "fail_28.png", &Theme::kDanger},
};

}  // namespace

ListRow::ListRow(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("ListRow"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    for (std::size_t i = 0; i < std::size(kVerdicts); ++i)
        words_[i].setKey(QLatin1String(kVerdicts[i].wordKey));
}

void ListRow::setText(const QString& text) {
    text_.setText(text);
    update();
}

void ListRow::setValue(const QString& value) {
    if (value_.text() == value)
        return;
    value_.setText(value);
    update();
}

void ListRow::setEnteredValue(const QString& value) {
    valueEntered_ = true;
    setValue(value);
}

void ListRow::setNote(const QString& note) {
    if (note_.text() == note)
        return;
    note_.setText(note);
    update();
}

void ListRow::setPositive(bool positive) {
    positive_ = positive;
    update();
}

void ListRow::setMark(Mark mark) {
    mark_ = mark;
    update();
}

void ListRow::setIconName(const QString& name) {
    icon_ = name;
    update();
}

void ListRow::setIconColumn(int width) {
    iconColumn_ = width;
    update();
}

void ListRow::setPreview(const QPixmap& preview) {
    preview_ = preview;
    update();
}

void ListRow::setDanger(bool danger) {
    danger_ = danger;
    update();
}

void ListRow::setFaulty(bool faulty) {
    faulty_ = faulty;
    update();
}

QString ListRow::label() const {
    const CheckBox* check = box();
    return check != nullptr ? check->text() : text();
}

CheckBox* ListRow::box() const {
    return findChild<CheckBox*>(QString(), Qt::FindDirectChildrenOnly);
}

void ListRow::setVerdict(Verdict verdict) {
    verdict_ = verdict;
    update();
}

void ListRow::applyScripts(const Lookup& lookup) {
    for (ScriptText& word : words_)
        word.apply(lookup);
    text_.apply(lookup);
    value_.apply(lookup);
    note_.apply(lookup);
    update();
}

QSize ListRow::sizeHint() const {
    const int more = isStacked() ? qMax(0, control()->sizeHint().height() - kControlHeight) : 0;
    return {kWidth, isStacked() ? kStackedHeight + more : kHeight};
}

QWidget* ListRow::control() const {
    const QList<QWidget*> children = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children)
        if (!qobject_cast<CheckBox*>(child) && !child->isHidden())
            return child;
    return nullptr;
}

bool ListRow::isStacked() const {
    const QWidget* beside = control();
    return beside && beside->sizeHint().width() > kWidestInline;
}

bool ListRow::event(QEvent* event) {
    // The control's size hint changes with its texts; while the row is hidden nothing tells.
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) {
        updateGeometry();
        // Nor does the layout look at a row again that has grown while it was hidden.
        QLayout* layout = parentWidget() != nullptr ? parentWidget()->layout() : nullptr;
        if (event->type() == QEvent::Show && layout != nullptr && height() != sizeHint().height())
            layout->activate();
        arrange();
    }
    return WidgetButton::event(event);
}

void ListRow::resizeEvent(QResizeEvent*) {
    arrange();
}

void ListRow::arrange() {
    QWidget* beside = control();
    const int controlWidth = beside ? beside->sizeHint().width() : 0;
    if (beside && isStacked()) {
        const int tall = qMax(kControlHeight, beside->sizeHint().height());
        beside->setGeometry(kControlMargin, height() - kControlMargin - tall,
                            width() - 2 * kControlMargin, tall);
    } else if (beside) {
        beside->setGeometry(width() - kControlMargin - controlWidth,
                            (height() - kControlHeight) / 2, controlWidth, kControlHeight);
    }
    if (CheckBox* check = box()) {
        constexpr int kLeft = kControlMargin - 2;  // brings the drawn box under the labels
        check->setGeometry(kLeft, (kHeight - kControlHeight) / 2,
                           width() - kLeft - kControlMargin - controlWidth - kLabelGap,
                           kControlHeight);
    }
    update();
}

void ListRow::drawVerdict(QPainter* painter, QRect* line) const {
    const auto number = static_cast<std::size_t>(verdict_);
    const VerdictLook& look = kVerdicts[number];
    const QRect sign(width() - kSignEnd - kSign, 0, kSign, line->height());
    const bool narrow = width() < kNarrow;
    const int gap = narrow ? kNarrowTickGap : kTickGap;
    if (verdict_ == Verdict::Running)
        Paint::glyph(painter, sign, QLatin1String(look.sign), *look.color, kSign);
    else
        Paint::icon(painter, sign, QLatin1String(look.sign));
    line->setRight(sign.x() - gap);
    if (mark_ == Chevron && verdict_ == Verdict::NotRun)
        return;
    const ScriptHandler::Script& word = words_[number].entry();
    const int wordWidth = TextFit::width(word, TextFit::kCaption, QFont::Bold);
    const QRect box(sign.x() - gap - wordWidth, 0, wordWidth, line->height());
    TextFit::draw(painter, box, Qt::AlignRight, word, TextFit::kCaption, QFont::Bold, *look.color);
    line->setRight(box.x() - (narrow ? kNarrowGap : kLabelGap));
}

void ListRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (faulty_ || verdict_ == Verdict::Fail)
        Paint::box(&painter, rect(), Theme::kRadiusControl, Theme::kRow, Theme::kDanger, 2);
    else
        drawRow(&painter, rect(), Theme::kRadiusControl);

    const bool chosen = isSelected() && isEnabled();
    const QRgb ink = !isEnabled() ? Theme::kOff
                     : chosen     ? Theme::kAccent
                     : danger_    ? Theme::kDanger
                                  : Theme::kCaption;
    const bool stacked = isStacked();
    const int left = width() < kNarrow ? kNarrowLeft : kLabelLeft;
    QRect line(left, 0, width() - left - kEnd, stacked ? control()->y() : height());

    if (!preview_.isNull()) {
        painter.drawPixmap(line.x(), (height() - preview_.height()) / 2, preview_);
        line.setLeft(line.x() + iconColumn_);
    }
    if (!icon_.isEmpty()) {
        Paint::glyph(&painter, {line.x(), line.y(), Pictures::icon(icon_).width(), line.height()},
                     icon_, positive_ && isEnabled() ? Theme::kAccent : ink);
        line.setLeft(line.x() + iconColumn_);
    }
    if (mark_ == Chevron && verdict_ == Verdict::None) {
        const QRect box(width() - kEnd - kChevronInk, 0, kChevron, height());
        Paint::glyph(&painter, box, QStringLiteral("chevron_right.png"), ink);
        line.setRight(box.x() - kLabelGap / 2);
    } else if (mark_ == Radio) {
        const QRect box(width() - kEnd - kRadio, 0, kRadio, height());
        Paint::icon(&painter, box,
                    !isEnabled() ? QStringLiteral("radio_off_disabled.png")
                    : chosen     ? QStringLiteral("radio_on.png")
                                 : QStringLiteral("radio_off.png"));
        line.setRight(box.x() - kLabelGap);
    }
    if (verdict_ != Verdict::None)
        drawVerdict(&painter, &line);
    if (!value_.isEmpty()) {
        const QFont::Weight weight = positive_ ? QFont::Medium : QFont::Normal;
        const TextFit::Rule& rule = valueEntered_ ? TextFit::kEntered : TextFit::kValue;
        const QRgb valueInk = !isEnabled() ? Theme::kOff
                              : positive_  ? Theme::kAccent
                                           : Theme::kList;
        const int valueWidth =
            qMin(TextFit::width(value_.entry(), rule, weight), line.width() * 2 / 3);
        const QRect box(line.right() + 1 - valueWidth, 0, valueWidth, line.height());
        TextFit::draw(&painter, box, Qt::AlignRight, value_.entry(), rule, weight, valueInk);
        line.setRight(box.x() - kLabelGap);
        if (positive_) {
            const QRect tick(box.x() - kTickGap - kTick, 0, kTick, line.height());
            Paint::glyph(&painter, tick, QStringLiteral("tick.png"), valueInk, kTick);
            line.setRight(tick.x() - kLabelGap);
        }
    }
    if (!stacked)
        if (const QWidget* beside = control())
            line.setRight(beside->x() - kLabelGap);
    const bool choice = mark_ == Radio;
    if (!note_.isEmpty()) {
        const QRect below(line.x(), kNoteTop, line.width(), line.height() - kNoteTop - kNoteBottom);
        TextFit::draw(&painter, below, Qt::AlignLeft, note_.entry(), TextFit::kEnteredNote,
                      QFont::Normal, isEnabled() ? Theme::kHint : Theme::kOff);
        line.setRect(line.x(), kNoteBottom, line.width(), kNoteTop - kNoteBottom);
    }
    TextFit::draw(&painter, line, Qt::AlignLeft, text_.entry(),
                  choice              ? TextFit::kChoice
                  : width() < kNarrow ? TextFit::kNarrowLabel
                                      : TextFit::kRowLabel,
                  chosen ? QFont::Bold : QFont::Medium, ink);
}
