#include "ui/top_bar.h"

#include <QEvent>
#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kMargin = 24;
constexpr int kRight = 12;
constexpr int kGap = 8;
constexpr int kTitleGap = 12;
constexpr int kLeastAction = 84;
constexpr int kHomeWidth = 60;
constexpr int kActionMargin = 8;  // drawn 56 high, sensitive over the whole bar

}  // namespace

TopBar::TopBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("TopBar"));
}

void TopBar::setTitle(const QString& title) {
    title_.setText(title);
    update();
}

void TopBar::applyScripts(const Lookup& lookup) {
    title_.apply(lookup);
    for (LabelButton* button : buttons_)
        if (button)
            button->applyScripts(lookup);
    arrange();
}

QSize TopBar::sizeHint() const {
    return {Theme::kScreenWidth, Theme::kBarHeight};
}

bool TopBar::isActionVisible(Action action) const {
    return buttons_[action] && !buttons_[action]->isHidden();
}

void TopBar::setActionVisible(Action action, bool visible) {
    if (isActionVisible(action) == visible)
        return;
    made(action)->setVisible(visible);
    arrange();
}

QString TopBar::actionKey(Action action) const {
    return buttons_[action] ? buttons_[action]->textKey() : QString();
}

void TopBar::setActionKey(Action action, const QString& key) {
    if (!key.isEmpty())
        made(action)->setTextKey(key);
    setActionVisible(action, !key.isEmpty());
}

LabelButton* TopBar::made(Action action) {
    LabelButton*& button = buttons_[action];
    if (button)
        return button;
    button = new LabelButton(this);
    button->setMargin(kActionMargin);
    switch (action) {
        case Back:
            button->setObjectName(QStringLiteral("backButton"));
            button->setRole(LabelButton::Flat);
            button->setIconName(QStringLiteral("back.png"));
            connect(button, &WidgetButton::touched, this, &TopBar::backTouched);
            break;
        case Delete:
            button->setObjectName(QStringLiteral("deleteButton"));
            button->setRole(LabelButton::Delete);
            connect(button, &WidgetButton::touched, this, &TopBar::deleteTouched);
            break;
        case Neutral:
            button->setObjectName(QStringLiteral("neutralButton"));
            connect(button, &WidgetButton::touched, this, &TopBar::neutralTouched);
            break;
        case Home:
            button->setObjectName(QStringLiteral("homeButton"));
            button->setIconName(QStringLiteral("home.png"));
            connect(button, &WidgetButton::touched, this, &TopBar::homeTouched);
            break;
        case Forward:
            button->setObjectName(QStringLiteral("forwardButton"));
            button->setRole(LabelButton::Primary);
            connect(button, &WidgetButton::touched, this, &TopBar::forwardTouched);
            break;
    }
    return button;
}

void TopBar::arrange() {
    int right = width() - kRight;
    for (const Action action : {Forward, Home, Neutral, Delete}) {
        if (!isActionVisible(action))
            continue;
        const int wide =
            action == Home ? kHomeWidth : qMax(kLeastAction, buttons_[action]->sizeHint().width());
        buttons_[action]->setGeometry(right - wide, 0, wide, height());
        right -= wide + kGap;
    }
    if (isActionVisible(Back))
        buttons_[Back]->setGeometry(0, 0, height(), height());
    titleRight_ = right + kGap - kTitleGap;
    update();
}

bool TopBar::event(QEvent* event) {
    // An action's text has changed.
    if (event->type() == QEvent::LayoutRequest)
        arrange();
    return QWidget::event(event);
}

void TopBar::resizeEvent(QResizeEvent*) {
    arrange();
}

void TopBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::color(Theme::kBar));
    painter.fillRect(0, height() - 1, width(), 1, Theme::color(Theme::kLine));
    const int left = isActionVisible(Back) ? Theme::kBarHeight : kMargin;
    // Some screens are titled with the text of the row that leads to them.
    const bool own = title_.entry().type == QLatin1String("Title");
    TextFit::draw(&painter, {left, 0, titleRight_ - left, height()}, Qt::AlignLeft,
                  own ? title_.entry() : TextFit::roleSized(title_.entry()), TextFit::kTitle,
                  QFont::Medium, Theme::kStrong);
}
