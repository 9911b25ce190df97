#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// Takes one HTTP request out of a stream of bytes and finds its end, with the same result in
/// whatever pieces they come. Strict: a head or a body that could be read in two ways is refused.
///
/// Holds no more than a line, a path and a body of the sizes below. Knows no socket; not for use by
/// two threads at once.
class RequestReader {
 public:
    /// The largest body, in bytes.
    static constexpr std::size_t kMaxBody = std::size_t{2} * 1024 * 1024;
    /// The largest request line and headers together.
    static constexpr std::size_t kMaxHead = std::size_t{16} * 1024;
    /// The longest path, without the query.
    static constexpr std::size_t kMaxPath = 256;

    enum class State {
        Waiting,  // nothing of a request has come
        Head,
        Body,
        Whole,
        Refused,
    };

    /// Takes bytes up to the end of the request or to where it is refused; returns how many.
    std::size_t take(const char* data, std::size_t size);
    State state() const { return state_; }
    /// The status that answers a refused request.
    int refusal() const { return refusal_; }
    /// Bytes that are kept.
    std::size_t held() const { return line_.size() + path_.size() + body_.size(); }

    // Of a whole request.

    const std::string& method() const { return method_; }
    /// Without the query.
    const std::string& path() const { return path_; }
    bool isVersion10() const { return version10_; }
    /// Whether the client wants to ask again over this connection; only when it says so.
    bool keepAlive() const { return keepAlive_ && !close_; }
    /// The body, without the chunks that it may have come in. Gives it away.
    std::string takeBody() { return std::move(body_); }

 private:
    enum class Chunk { Size, SizeEnd, Data, DataReturn, DataEnd, LastReturn, LastEnd };

    std::size_t takeLine(const char* data, std::size_t size);
    void readLine(std::string_view line);
    void readRequestLine(std::string_view line);
    void readHeader(std::string_view line);
    void readLength(std::string_view value);
    void readConnection(std::string_view value);
    void endHead();
    std::size_t takeBodyPart(const char* data, std::size_t size);
    std::size_t takeChunks(const char* data, std::size_t size);
    void takeSizeDigit(char digit);
    void expect(char byte, char wanted, Chunk next);
    void refuse(int status);

    State state_ = State::Waiting;
    int refusal_ = 0;
    std::string line_;  // begun, without its end
    std::size_t headSize_ = 0;
    int emptyLines_ = 0;  // before the request

    std::string method_;
    std::string path_;
    bool version10_ = false;
    bool keepAlive_ = false;
    bool close_ = false;
    bool hasLength_ = false;
    bool chunked_ = false;

    std::string body_;
    std::size_t left_ = 0;  // of the body, or of the present chunk
    Chunk chunk_ = Chunk::Size;
    int digits_ = 0;
};
