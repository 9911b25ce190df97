#include "sim/common/line_buffer.h"

#include <algorithm>

void LineBuffer::feed(const QByteArray& bytes, const Handler& handler) {
    int from = 0;
    while (from < bytes.size()) {
        const int newline = bytes.indexOf('\n', from);
        const int end = newline < 0 ? bytes.size() : newline;
        begun_.append(bytes.constData() + from, std::min(end - from, kMaxLine + 1 - begun_.size()));
        from = end + 1;
        if (newline < 0)
            return;
        const QByteArray line = begun_.endsWith('\r') ? begun_.chopped(1) : begun_;
        begun_.clear();
        handler(line);
    }
}
