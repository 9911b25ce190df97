#include "ui/picture_shelf.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QPainter>
#include <QRunnable>

#include "ui/pictures.h"

namespace {

/// More are never seen at once, also of rows that are half above or below the screen.
constexpr int kMostWanted = 16;
/// What an entry takes besides its pixels, so that broken ones are bounded as well.
constexpr int kEntry = 256;

QString keyOf(const QString& folder, const QString& name) {
    return folder + QLatin1Char('/') + name;
}

/// Lets the calling thread give way to the one that scrolls.
void giveWay() {
    constexpr int kNice = 10;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), kNice);
}

/// The middle of @p picture in the shape of @p size, which it covers or falls short of.
QImage cut(const QImage& picture, const QSize& size) {
    if (picture.isNull())
        return {};
    const QSize shape = size.scaled(picture.size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    const QRect part(
        QPoint((picture.width() - shape.width()) / 2, (picture.height() - shape.height()) / 2),
        shape);
    QImage small = picture.copy(part);
    if (small.width() > size.width() || small.height() > size.height())
        small = small.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return small.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

PictureShelf::PictureShelf(const QSize& size, int budget, QObject* parent)
    : QObject(parent), size_(size), pictures_(budget) {
    reader_.setMaxThreadCount(1);
}

PictureShelf::~PictureShelf() {
    reader_.waitForDone();
}

QImage PictureShelf::picture(const QString& deviceFolder, const QString& name, State* state) {
    State found = State::Broken;
    QImage picture;
    if (const QImage* held = pictures_.object(keyOf(deviceFolder, name))) {
        picture = *held;
        found = held->isNull() ? State::Broken : State::Here;
    } else if (!name.isEmpty()) {
        found = State::Waiting;
        const Request request{deviceFolder, name};
        if (!reading_ || !(current_ == request)) {
            wanted_.removeOne(request);
            wanted_.append(request);
            if (wanted_.size() > kMostWanted)
                wanted_.removeFirst();
            readNext();
        }
    }
    if (state != nullptr)
        *state = found;
    return picture;
}

void PictureShelf::clear() {
    ++round_;
    wanted_.clear();
    current_ = {};  // which does not count any more
    pictures_.clear();
}

void PictureShelf::readNext() {
    if (reading_ || wanted_.isEmpty())
        return;
    reading_ = true;
    current_ = wanted_.takeLast();
    reader_.start(QRunnable::create([this, request = current_, round = round_, size = size_] {
        giveWay();
        const QImage picture =
            cut(Pictures::foreignImage(request.folder, request.name, size), size);
        QMetaObject::invokeMethod(
            this, [this, request, picture, round] { take(request, picture, round); },
            Qt::QueuedConnection);
    }));
}

void PictureShelf::take(const Request& request, const QImage& picture, int round) {
    reading_ = false;
    if (round == round_) {
        const int cost = static_cast<int>(picture.sizeInBytes()) + kEntry;
        pictures_.insert(keyOf(request.folder, request.name), new QImage(picture), cost);
    }
    readNext();
    if (round == round_)
        emit arrived();
}
