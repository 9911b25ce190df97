#include <algorithm>
#include <string>

#include "cloud/http_guard.h"
#include "fuzz_root.h"

namespace {

/// What requests are made of; random bytes alone would hardly ever be one.
const char kWords[] =
    "POST |/cloud-service/rest-api/|?a=b| HTTP/1.1\r\n|POST /x HTTP/1.1\r\n|"
    "GET * HTTP/1.0\r\n|\r\n|\r\n\r\n|\r|\n|Content-Length: |2097152|"
    "content-length:5\r\n\r\nhello|Transfer-Encoding: chunked\r\n|\r\n5\r\nhello\r\n|0\r\n\r\n|"
    "1f\r\n|a|FFFFFFFF|Connection: keep-alive\r\n|connection:close, x\r\n|: | |\t|//..//|x: y\r\n|"
    "{\"a\":1}|\x7f|\x80\xff|1|0|OPTIONS ";
constexpr std::size_t kMostHeld =
    RequestReader::kMaxHead + RequestReader::kMaxPath + RequestReader::kMaxBody;

/// What the guard makes of @p bytes, which come in pieces of @p piece bytes.
std::string transcript(const std::string& bytes, std::size_t piece) {
    static Pistache::Http::RequestParser parser(HttpGuard::kMaxRequest);
    std::string text;
    RequestReader reader;
    for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
        const std::size_t end = std::min(begin + piece, bytes.size());
        for (std::size_t at = begin; at < end;) {
            const std::size_t taken = reader.take(&bytes[at], end - at);
            demand(taken > 0 && taken <= end - at && reader.held() <= kMostHeld);
            at += taken;
            if (reader.state() == RequestReader::State::Refused)
                return text + std::to_string(reader.refusal());
            if (reader.state() != RequestReader::State::Whole)
                continue;
            try {
                const bool again = reader.keepAlive();
                const auto request = HttpGuard::take(reader, parser);
                text += request.resource() + '<' + request.body() + '>' + (again ? '+' : '-');
            } catch (const Pistache::Http::HttpError& error) {
                text += error.reason();
            }
            reader = RequestReader();
        }
    }
    return text + std::to_string(static_cast<int>(reader.state()));
}

}  // namespace

// The first byte chooses the pieces that the rest arrives in; bytes below 32 stand for words.
void take(std::uint8_t first, const QByteArray& rest) {
    static const QList<QByteArray> words = QByteArray(kWords).split('|');
    std::string text;
    for (const char byte : rest) {
        if (static_cast<unsigned char>(byte) < 32)
            text += words[byte].constData();
        else
            text += byte;
    }
    const std::string whole = transcript(text, text.size() + 1);
    demand(transcript(text, 1) == whole && transcript(text, 1U + first) == whole);
}
