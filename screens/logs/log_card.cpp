#include "screens/logs/log_card.h"

#include "base/device_folders.h"
#include "link/device_message.h"
#include "screens/logs/log_list.h"
#include "ui/fact_list.h"
#include "ui/picture_shelf.h"
#include "ui/theme.h"
#include "ui/thumbnail_view.h"

namespace {

constexpr QSize kPhoto(176, 212);
constexpr int kPhotoGap = 14;
constexpr int kTallest = Theme::kScreenHeight - 16;  // card
constexpr int kLeastPhoto = 96;
constexpr int kBudget = 1024 * 1024;  // bytes; two pictures take less

/// In the order of the captions.
enum Fact { Number, Time, UserId, Name, Card, Event, Result, Method, Score, Meals };

const QStringList kCaptions{QStringLiteral("Info_LogNumber"),  QStringLiteral("Info_LogTime"),
                            QStringLiteral("Info_CustomerID"), QStringLiteral("Info_LogName"),
                            QStringLiteral("Info_LogCard"),    QStringLiteral("Info_LogEvent"),
                            QStringLiteral("Info_LogResult"),  QStringLiteral("Info_LogMethod"),
                            QStringLiteral("Info_LogScore"),   QStringLiteral("Info_LogMeals")};

}  // namespace

LogCard::LogCard(QWidget* owner, const GUI_LOGDATA& log, bool picturesShown, const Text& text)
    : DismissibleOverlay(owner),
      shelf_(new PictureShelf(kPhoto, kBudget, this)),
      infrared_(new ThumbnailView(card())),
      visible_(new ThumbnailView(card())),
      facts_(new FactList(card())) {
    setObjectName(QStringLiteral("LogCard"));
    for (ThumbnailView* view : {infrared_, visible_}) {
        view->setAttribute(Qt::WA_TransparentForMouseEvents);
        view->setEnlargeable(false);
        view->resize(kPhoto);
    }
    if (picturesShown) {
        showPicture(infrared_, fieldText(log.infraredPicture));
        showPicture(visible_, fieldText(log.visiblePicture));
    }

    facts_->setAttribute(Qt::WA_TransparentForMouseEvents);
    facts_->setGround(Theme::kBackground);
    facts_->setCaptionKeys(kCaptions);
    facts_->applyScripts(text);
    const auto word = [&text](const char* key) { return text(QLatin1String(key)).script; };
    const LogItem item = logItem(log);
    QString time = item.time.trimmed();
    time.replace(QLatin1String("<br>"), QLatin1String(" "));
    facts_->setValue(Number, QString::number(log.number));
    facts_->setValue(Time, time);
    facts_->setValue(UserId, item.userId.trimmed());
    facts_->setValue(Name, item.name);
    facts_->setValue(Card, fieldText(log.cardNumber));
    facts_->setValue(Event, word(logEventKey(log)));
    facts_->setValue(Result, word(item.accepted ? "ListItem_AuthSuccess" : "ListItem_AuthFailure"));
    facts_->setValue(Method, word(item.methodKey));
    if (log.score != 0)
        facts_->setValue(Score, QStringLiteral("%1 %").arg(log.score));
    if (log.payCount != 0)
        facts_->setValue(Meals, QString::number(log.payCount));
}

void LogCard::showPicture(ThumbnailView* view, const QString& name) {
    if (name.isEmpty())
        return;
    const auto show = [this, view, name] {
        const QImage picture = shelf_->picture(QLatin1String(DeviceFolders::kImages), name);
        if (!picture.isNull())
            view->setPhoto(QPixmap::fromImage(picture));
    };
    connect(shelf_, &PictureShelf::arrived, view, show);
    show();
}

int LogCard::arrange() {
    // What is said is said whole; the pictures take what room is left.
    const int height = facts_->heightFor(kInnerWidth);
    const int room = kTallest - 2 * kSide - kPhotoGap - height;
    const QSize photo = kPhoto.scaled(kPhoto.width(), qBound(kLeastPhoto, room, kPhoto.height()),
                                      Qt::KeepAspectRatio);
    const int left = (kCardWidth - 2 * photo.width() - kPhotoGap) / 2;
    infrared_->setGeometry({QPoint(left, kSide), photo});
    visible_->setGeometry({QPoint(left + photo.width() + kPhotoGap, kSide), photo});
    const int top = kSide + photo.height() + kPhotoGap;
    facts_->setGeometry(kSide, top, kInnerWidth, height);
    return top + height + kBottom;
}
