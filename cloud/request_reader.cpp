#include "cloud/request_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

enum Status {
    kBadRequest = 400,
    kBodyTooLarge = 413,
    kPathTooLong = 414,
    kHeadTooLarge = 431,
    kNotImplemented = 501,
};

/// Clients of old send a line too many after a body.
constexpr int kMaxEmptyLines = 2;
constexpr int kMaxSizeDigits = 16;

bool isTokenByte(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           (c != '\0' && std::strchr("!#$%&'*+-.^_`|~", c) != nullptr);
}

bool isToken(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenByte);
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t') || byte == 0x7F;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

/// Whether @p text is @p word, which is in lower case.
bool is(std::string_view text, std::string_view word) {
    return text.size() == word.size() && std::equal(text.begin(), text.end(), word.begin(),
                                                    [](char a, char b) { return lower(a) == b; });
}

std::string_view trimmed(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace

std::size_t RequestReader::take(const char* data, std::size_t size) {
    std::size_t taken = 0;
    while (taken < size && state_ != State::Whole && state_ != State::Refused) {
        const bool inBody = state_ == State::Body;
        taken += inBody ? takeBodyPart(data + taken, size - taken)
                        : takeLine(data + taken, size - taken);
    }
    return taken;
}

void RequestReader::refuse(int status) {
    state_ = State::Refused;
    refusal_ = status;
    line_ = {};
    body_ = {};
}

// --- Head ----------------------------------------------------------------------------------

std::size_t RequestReader::takeLine(const char* data, std::size_t size) {
    const void* const end = std::memchr(data, '\n', size);
    const std::size_t count =
        end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - data) + 1 : size;
    headSize_ += count;
    if (headSize_ > kMaxHead) {
        refuse(kHeadTooLarge);
    } else if (end == nullptr) {
        line_.append(data, count);
        if (state_ == State::Waiting && line_ != "\r")
            state_ = State::Head;
    } else if (line_.empty()) {
        readLine({data, count - 1});
    } else {
        line_.append(data, count - 1);
        readLine(std::exchange(line_, {}));
    }
    return count;
}

/// Reads a line of the head, which a line feed has ended.
void RequestReader::readLine(std::string_view line) {
    if (line.empty() || line.back() != '\r')
        return refuse(kBadRequest);
    line.remove_suffix(1);
    if (std::any_of(line.begin(), line.end(), isControl))
        return refuse(kBadRequest);
    if (!line.empty())
        return method_.empty() ? readRequestLine(line) : readHeader(line);
    if (!method_.empty())
        endHead();
    else if (++emptyLines_ > kMaxEmptyLines)
        refuse(kBadRequest);
}

void RequestReader::readRequestLine(std::string_view line) {
    state_ = State::Head;
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    if (first == std::string_view::npos || first == last)
        return refuse(kBadRequest);
    const std::string_view method = line.substr(0, first);
    const std::string_view target = line.substr(first + 1, last - first - 1);
    const std::string_view version = line.substr(last + 1);
    const auto isGraphic = [](char c) { return c > ' ' && c < 0x7F; };
    if (!isToken(method) || !std::all_of(target.begin(), target.end(), isGraphic) ||
        (version != "HTTP/1.1" && version != "HTTP/1.0"))
        return refuse(kBadRequest);
    const std::string_view path = target.substr(0, target.find('?'));
    if (path.empty())
        return refuse(kBadRequest);
    if (path.size() > kMaxPath)
        return refuse(kPathTooLong);
    method_ = method;
    path_ = path;
    version10_ = version == "HTTP/1.0";
}

void RequestReader::readHeader(std::string_view line) {
    // A line that goes on with the former one has a blank where its name should be.
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !isToken(line.substr(0, colon)))
        return refuse(kBadRequest);
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (is(name, "content-length")) {
        readLength(value);
    } else if (is(name, "transfer-encoding")) {
        if (chunked_ || version10_)
            return refuse(kBadRequest);
        if (!is(value, "chunked"))
            return refuse(kNotImplemented);
        chunked_ = true;
    } else if (is(name, "connection")) {
        readConnection(value);
    }
}

void RequestReader::readLength(std::string_view value) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (hasLength_ || value.empty() || !std::all_of(value.begin(), value.end(), isDigit))
        return refuse(kBadRequest);
    hasLength_ = true;
    for (const char digit : value) {
        left_ = left_ * 10 + static_cast<std::size_t>(digit - '0');
        if (left_ > kMaxBody)
            return refuse(kBodyTooLarge);
    }
}

void RequestReader::readConnection(std::string_view value) {
    while (!value.empty()) {
        const std::size_t comma = std::min(value.find(','), value.size());
        const std::string_view wish = trimmed(value.substr(0, comma));
        keepAlive_ |= is(wish, "keep-alive");
        close_ |= is(wish, "close");
        value.remove_prefix(std::min(comma + 1, value.size()));
    }
}

void RequestReader::endHead() {
    if (chunked_ && hasLength_)
        return refuse(kBadRequest);
    state_ = chunked_ || left_ > 0 ? State::Body : State::Whole;
}

// --- Body ----------------------------------------------------------------------------------

std::size_t RequestReader::takeBodyPart(const char* data, std::size_t size) {
    if (chunked_)
        return takeChunks(data, size);
    const std::size_t count = std::min(size, left_);
    body_.append(data, count);
    left_ -= count;
    if (left_ == 0)
        state_ = State::Whole;
    return count;
}

std::size_t RequestReader::takeChunks(const char* data, std::size_t size) {
    switch (chunk_) {
        case Chunk::Size:
            takeSizeDigit(*data);
            return 1;
        case Chunk::SizeEnd:
            expect(*data, '\n', left_ == 0 ? Chunk::LastReturn : Chunk::Data);
            return 1;
        case Chunk::Data: {
            const std::size_t count = std::min(size, left_);
            body_.append(data, count);
            left_ -= count;
            if (left_ == 0)
                chunk_ = Chunk::DataReturn;
            return count;
        }
        case Chunk::DataReturn:
            expect(*data, '\r', Chunk::DataEnd);
            return 1;
        case Chunk::DataEnd:
            expect(*data, '\n', Chunk::Size);
            digits_ = 0;
            return 1;
        case Chunk::LastReturn:
            // Headers after the body would be refused here: no client of ours has any.
            expect(*data, '\r', Chunk::LastEnd);
            return 1;
        case Chunk::LastEnd:
            expect(*data, '\n', Chunk::Size);
            if (state_ == State::Body)
                state_ = State::Whole;
            return 1;
    }
    return size;
}

void RequestReader::takeSizeDigit(char digit) {
    if (digit == '\r' && digits_ > 0) {
        chunk_ = Chunk::SizeEnd;
        return;
    }
    const char small = lower(digit);
    const bool isHexadecimal = (digit >= '0' && digit <= '9') || (small >= 'a' && small <= 'f');
    if (!isHexadecimal || ++digits_ > kMaxSizeDigits)
        return refuse(kBadRequest);
    left_ = left_ * 16 + static_cast<std::size_t>(digit <= '9' ? digit - '0' : small - 'a' + 10);
    if (body_.size() + left_ > kMaxBody)
        refuse(kBodyTooLarge);
}

void RequestReader::expect(char byte, char wanted, Chunk next) {
    if (byte != wanted)
        return refuse(kBadRequest);
    chunk_ = next;
}
