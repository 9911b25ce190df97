#pragma once

#include <QByteArray>
#include <functional>

/// Cuts lines out of a byte stream that nobody vouches for.
class LineBuffer {
 public:
    /// Enough for a `frame` word with the largest payload in hexadecimal digits.
    static constexpr int kMaxLine = 8192;

    /// Receives each line without its end. A line above kMaxLine bytes is cut to kMaxLine + 1, so
    /// that the handler sees that it was too long.
    using Handler = std::function<void(const QByteArray& line)>;

    /// Takes @p bytes and hands over every line that they finish. @p handler may end the object
    /// that owns the buffer only by a deferred deletion.
    void feed(const QByteArray& bytes, const Handler& handler);

 private:
    QByteArray begun_;
};
