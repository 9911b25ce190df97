#include "fuzz_application.h"
#include "ui/pictures.h"

namespace {

constexpr QSize kScreen(480, 800);
constexpr QSize kThumbnail(104, 104);

void readContent(const FuzzRoot& root, const QByteArray& content, const QSize& size) {
    root.write(root.path("/pictures/fuzz"), content);
    const QImage image =
        Pictures::foreignImage(QStringLiteral("/pictures"), QStringLiteral("fuzz"), size);
    // The shape of a picture says how much larger than the place it covers it may be.
    demand(image.isNull() || (image.width() <= 4096 && image.height() <= 4096 &&
                              (image.width() <= size.width() || image.height() <= size.height() ||
                               image.width() < 2 || image.height() < 2)));
}

/// There is one picture in the folder, and others that are not for everybody.
void readName(const QByteArray& bytes) {
    const QString name = QString::fromUtf8(bytes);
    const QImage image = Pictures::foreignImage(QStringLiteral("/pictures"), name, kThumbnail);
    demand(image.isNull() == (name != QLatin1String("one.png")));
}

const FuzzRoot& preparedRoot() {
    static const FuzzRoot root;
    QDir().mkpath(root.path("/pictures/below"));
    for (const char* path : {"/pictures/one.png", "/secret.png", "/pictures/below/secret.png"})
        QImage(8, 8, QImage::Format_RGB32).save(root.path(path));
    QFile::link(root.path("/secret.png"), root.path("/pictures/link.png"));
    return root;
}

}  // namespace

// The first byte: a picture's content for a screen (0) or for a thumbnail, or a name (above 127).
void take(std::uint8_t first, const QByteArray& rest) {
    static const OffscreenApplication application;
    static const FuzzRoot& root = preparedRoot();
    if (first > 127)
        readName(rest);
    else
        readContent(root, rest, first == 0 ? kScreen : kThumbnail);
}
