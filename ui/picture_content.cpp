#include "ui/picture_content.h"

#include <QtEndian>
#include <algorithm>
#include <iterator>

namespace {

// A PNG is this, and then chunks: a length, four letters, so many bytes and a checksum.
constexpr char kPngSignature[] = "\x89PNG\r\n\x1A\n";
constexpr int kPngSignatureSize = sizeof kPngSignature - 1;
constexpr int kLengthSize = 4;
constexpr int kTypeSize = 4;
constexpr int kFrameOfChunk = kLengthSize + kTypeSize + 4;

constexpr char kJpegSignature[] = "\xFF\xD8";
constexpr char kJpegScan[] = "\xFF\xDA";
/// Those of a progressive picture are about ten. Each costs a pass through the whole picture, and
/// no more than a few bytes.
constexpr int kMostScans = 64;

/// The decoder makes room for a chunk before it looks whether the file is that long, and for a
/// packed text or colour profile as long as it becomes.
QByteArray bare(const QByteArray& png) {
    QByteArray kept = png.left(kPngSignatureSize);
    int position = kPngSignatureSize;
    while (png.size() - position >= kFrameOfChunk) {
        const auto length = qFromBigEndian<quint32>(png.constData() + position);
        if (length > static_cast<quint32>(png.size() - position - kFrameOfChunk))
            return {};
        const int size = static_cast<int>(length) + kFrameOfChunk;
        const QByteArray type = png.mid(position + kLengthSize, kTypeSize);
        constexpr const char* kNeeded[] = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
        if (std::any_of(std::begin(kNeeded), std::end(kNeeded),
                        [&type](const char* needed) { return type == needed; }))
            kept.append(png.constData() + position, size);
        // What some programs put behind it is no picture.
        if (type == "IEND")
            break;
        position += size;
    }
    return kept;
}

}  // namespace

namespace PictureContent {

QByteArray decodable(const QByteArray& content) {
    if (content.startsWith(kPngSignature))
        return bare(content);
    if (content.startsWith(kJpegSignature))
        return content.count(kJpegScan) <= kMostScans ? content : QByteArray();
    return content.startsWith("BM") ? content : QByteArray();
}

}  // namespace PictureContent
