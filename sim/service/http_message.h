#pragma once

#include <QByteArray>
#include <QPair>
#include <QVector>

/// One HTTP message: a request, or an answer to one.
struct HttpMessage {
    QByteArray startLine;
    QVector<QPair<QByteArray, QByteArray>> headers;
    QByteArray body;

    /// The start line's word number @p index: method, target and version of a request; version,
    /// status and reason of an answer. Empty if there is none.
    QByteArray word(int index) const;
    /// The value of the first header of that name, whatever its case; empty if there is none.
    QByteArray header(const char* name) const;
};

/// Puts HTTP messages together out of a byte stream that nobody vouches for. Bodies have an
/// announced length; a message without one has no body.
class HttpMessageReader {
 public:
    static constexpr int kMaxHead = 16 * 1024;
    static constexpr int kMaxBody = 8 * 1024 * 1024;

    enum class State {
        Incomplete,
        Whole,   // message() is valid until the next call
        Broken,  // not HTTP, or too much of it; nothing else will come of this stream
    };

    /// Takes @p bytes. What is left behind a whole message belongs to the next one, which the next
    /// call looks for, also without further bytes.
    State feed(const QByteArray& bytes);
    const HttpMessage& message() const { return message_; }

 private:
    bool readHead(const QByteArray& head);

    QByteArray bytes_;
    HttpMessage message_;
    int bodySize_ = 0;
    bool inBody_ = false;
    bool broken_ = false;
};
