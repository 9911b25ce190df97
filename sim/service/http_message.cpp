#include "sim/service/http_message.h"

#include <QList>
#include <algorithm>

namespace {

const QByteArray kLineEnd("\r\n");
const QByteArray kHeadEnd("\r\n\r\n");

bool isVersion(const QByteArray& word) {
    return word.startsWith("HTTP/1.");
}

bool isLength(const QByteArray& text) {
    constexpr int kMostDigits = 9;
    return !text.isEmpty() && text.size() <= kMostDigits &&
           std::all_of(text.begin(), text.end(),
                       [](char digit) { return digit >= '0' && digit <= '9'; });
}

}  // namespace

QByteArray HttpMessage::word(int index) const {
    return startLine.split(' ').value(index);
}

QByteArray HttpMessage::header(const char* name) const {
    for (const auto& [key, value] : headers) {
        if (qstricmp(key.constData(), name) == 0)
            return value;
    }
    return {};
}

HttpMessageReader::State HttpMessageReader::feed(const QByteArray& bytes) {
    bytes_ += bytes;
    if (!broken_ && !inBody_) {
        const int end = bytes_.indexOf(kHeadEnd);
        const int headSize = end < 0 ? bytes_.size() : end;
        broken_ = headSize > kMaxHead || (end >= 0 && !readHead(bytes_.left(end)));
        if (!broken_ && end >= 0) {
            bytes_.remove(0, end + kHeadEnd.size());
            inBody_ = true;
        }
    }
    if (broken_) {
        bytes_.clear();
        return State::Broken;
    }
    if (!inBody_ || bytes_.size() < bodySize_)
        return State::Incomplete;
    message_.body = bytes_.left(bodySize_);
    bytes_.remove(0, bodySize_);
    inBody_ = false;
    return State::Whole;
}

bool HttpMessageReader::readHead(const QByteArray& head) {
    message_ = {};
    bodySize_ = 0;
    const int lineEnd = head.indexOf(kLineEnd);
    message_.startLine = head.mid(0, lineEnd);
    if (!isVersion(message_.word(0)) && !isVersion(message_.word(2)))
        return false;
    for (int from = lineEnd; from >= 0;) {
        from += kLineEnd.size();
        const int end = head.indexOf(kLineEnd, from);
        const QByteArray line = head.mid(from, end < 0 ? -1 : end - from);
        const int colon = line.indexOf(':');
        if (colon < 1)
            return false;
        message_.headers.append({line.left(colon), line.mid(colon + 1).trimmed()});
        from = end;
    }
    // A body in chunks would be taken for the next message.
    if (!message_.header("Transfer-Encoding").isEmpty())
        return false;
    const QByteArray length = message_.header("Content-Length");
    if (length.isEmpty())
        return true;
    bodySize_ = isLength(length) ? length.toInt() : -1;
    return bodySize_ >= 0 && bodySize_ <= kMaxBody;
}
