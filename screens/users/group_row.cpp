#include "screens/users/group_row.h"

#include <QLocale>
#include <QPainter>

#include "ui/label_button.h"
#include "ui/paint.h"
#include "ui/progress_bar.h"
#include "ui/text_line.h"
#include "ui/theme.h"

GroupRow::GroupRow(QWidget* parent)
    : QWidget(parent),
      text_(new TextLine(this)),
      count_(new TextLine(this)),
      bar_(new ProgressBar(this)),
      delete_(new LabelButton(this)) {
    text_->setGeometry(20, 14, 190, 50);
    text_->setRole(TextLine::Caption);
    text_->setInk(Theme::kCaption);
    count_->setGeometry(214, 14, 102, 50);
    count_->setRole(TextLine::IdNumber);
    count_->setAlignment(Qt::AlignRight);
    count_->setInk(Theme::kStrong);
    count_->setObjectName(QStringLiteral("countLine"));
    bar_->setGeometry(20, 76, 296, 12);
    delete_->setGeometry(332, 26, 104, 56);
    delete_->setRole(LabelButton::Delete);
    delete_->setTextKey(QStringLiteral("TopMenu_Delete"));
    connect(delete_, &LabelButton::touched, this, &GroupRow::deleteTouched);
}

QString GroupRow::textKey() const {
    return text_->textKey();
}

void GroupRow::setTextKey(const QString& key) {
    text_->setTextKey(key);
    delete_->setObjectName(QStringLiteral("delete_") + key);
}

void GroupRow::setDeletable(bool deletable) {
    deletable_ = deletable;
    delete_->setVisible(deletable);
}

void GroupRow::setCount(std::uint32_t count, std::uint32_t most) {
    count_->setText(QLocale(QLocale::English).toString(count));
    bar_->setValue(most > 0 ? static_cast<int>(quint64(qMin(count, most)) * 100 / most) : 0);
    delete_->setEnabled(count > 0);
}

void GroupRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Theme::kRadiusControl, Theme::kRow);
}
