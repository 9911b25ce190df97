#include "ui/pick_list.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/scroll_list.h"
#include "ui/text_fit.h"
#include "ui/theme.h"
#include "ui/widget_button.h"

namespace {

constexpr int kHeadHeight = 80;
constexpr int kItemWidth = 400;
constexpr int kItemHeight = 72;
constexpr int kItemsAtOnce = 8;
constexpr int kPadding = 8;
constexpr int kListBottom = 16;
constexpr int kTextLeft = 24;  // of the card
constexpr int kRadio = 36;

/// One choice.
class PickItem : public WidgetButton {
 public:
    PickItem(const ScriptHandler::Script& text, QWidget* parent)
        : WidgetButton(parent), text_(text) {}

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (isSelected() || isDown())
            Paint::box(&painter, rect(), Theme::kRadiusControl,
                       isDown() ? Theme::kPressed : Theme::kAccentTint);
        const int side = kTextLeft - kPadding;
        const QRect radio(width() - side - kRadio, 0, kRadio, height());
        Paint::icon(
            &painter, radio,
            isSelected() ? QStringLiteral("radio_on.png") : QStringLiteral("radio_off.png"));
        TextFit::draw(&painter, {side, 0, radio.x() - 2 * side, height()}, Qt::AlignLeft, text_,
                      TextFit::kChoice, isSelected() ? QFont::Bold : QFont::Medium,
                      isSelected() ? Theme::kAccent : Theme::kCaption);
    }

 private:
    const ScriptHandler::Script text_;
};

/// The title of the list, and the line below it.
class PickHead : public QWidget {
 public:
    PickHead(const ScriptHandler::Script& title, QWidget* parent)
        : QWidget(parent), title_(title) {}

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(0, kHeadHeight, width(), 1, Theme::color(Theme::kPressed));
        const int left = kTextLeft - 1;
        TextFit::draw(&painter, {left, 0, width() - 2 * left, kHeadHeight}, Qt::AlignLeft, title_,
                      TextFit::kTitle, QFont::Medium, Theme::kStrong);
    }

 private:
    const ScriptHandler::Script title_;
};

}  // namespace

PickList::PickList(QWidget* owner, const ScriptHandler::Script& title,
                   const QVector<ScriptHandler::Script>& items, int current)
    : DismissibleOverlay(owner), list_(new ScrollList(card())) {
    setObjectName(QStringLiteral("PickList"));
    const int content = items.size() * kItemHeight;
    // A list that scrolls shows half an item more, so that one sees that it goes on.
    const int visible =
        items.size() > kItemsAtOnce ? kItemsAtOnce * kItemHeight + kItemHeight / 2 : content;
    cardHeight_ = kHeadHeight + kPadding + visible + kListBottom;

    auto* head = new PickHead(TextFit::roleSized(title), card());
    head->setGeometry(1, 0, kCardWidth - 2, kHeadHeight + 1);
    list_->setGround(Theme::kDialog);
    list_->setIndicatorMargin(0);
    list_->setGeometry(kPadding, kHeadHeight + kPadding, kCardWidth - kPadding - 1, visible);
    auto* rows = new QWidget;
    rows->resize(kItemWidth, content);
    list_->setWidget(rows);
    for (int i = 0; i < items.size(); ++i) {
        auto* item = new PickItem(TextFit::roleSized(items.at(i)), rows);
        item->setObjectName(QStringLiteral("item%1").arg(i));
        item->setGeometry(0, i * kItemHeight, kItemWidth, kItemHeight);
        item->setSelected(i == current);
        connect(item, &WidgetButton::touched, this, [this, i] {
            hide();
            emit picked(i);
        });
        if (i == current)
            chosen_ = item;
    }
}

void PickList::showEvent(QShowEvent* event) {
    DismissibleOverlay::showEvent(event);
    // Until it is shown the list does not know how much of it can be seen.
    if (chosen_ != nullptr)
        list_->ensureVisible(0, chosen_->geometry().center().y(), 0, list_->height() / 2);
}
