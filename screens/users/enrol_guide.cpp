#include "screens/users/enrol_guide.h"

#include <QPainter>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "base/device_paths.h"
#include "ui/pictures.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

const QRect kPicture(16, 16, 112, 112);
constexpr int kTextLeft = 144;
constexpr int kTextEnd = 12;  // from the right edge
constexpr TextFit::Rule kText{{{26, 2}, {22, 3}}};

}  // namespace

EnrolGuide::EnrolGuide(QWidget* parent) : Panel(parent) {
    connect(&movie_, &QMovie::frameChanged, this, [this] { update(kPicture); });
}

void EnrolGuide::tell(const QString& key, const QString& movie) {
    text_.setKey(key);
    text_.setEntry(WindowForm::shell()->getScript(key));
    const QString file = movie.isEmpty() ? QString() : QLatin1String("/zel1/image/") + movie;
    if (file != file_) {
        stop();
        file_ = file;
    }
    update();
}

void EnrolGuide::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void EnrolGuide::play() {
    // Nobody sees it move while it is hidden.
    if (begun_ || file_.isEmpty() || !isVisible())
        return;
    begun_ = true;
    movie_.setFileName(DevicePaths::at(file_));
    movie_.start();
}

void EnrolGuide::stop() {
    movie_.stop();
    begun_ = false;
}

QPixmap EnrolGuide::picture() {
    if (file_.isEmpty())
        return Pictures::icon(QStringLiteral("warning.png"));
    if (begun_)
        return movie_.currentPixmap();
    // Taking a movie up is as much work as painting the guide: the screen is there first, with
    // the picture that it begins with.
    QMetaObject::invokeMethod(this, &EnrolGuide::play, Qt::QueuedConnection);
    return Pictures::kept(file_);
}

void EnrolGuide::hideEvent(QHideEvent* event) {
    Panel::hideEvent(event);
    stop();
}

void EnrolGuide::paintEvent(QPaintEvent* event) {
    Panel::paintEvent(event);
    QPainter painter(this);
    const QPixmap sign = picture();
    painter.drawPixmap(kPicture.center() - sign.rect().center(), sign);
    const QRect room(kTextLeft, 0, width() - kTextLeft - kTextEnd, height());
    TextFit::draw(&painter, room, Qt::AlignLeft, text_.entry(), kText, QFont::Medium,
                  Theme::kStrong);
}
