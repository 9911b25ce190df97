#include "screens/facesearch/fsv_tools.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>

#include "screens/facesearch/face_search_records.h"

namespace {

/// A plain file that is open for reading.
class PlainFile {
 public:
    /// A pipe or a device would keep whoever opens it waiting.
    explicit PlainFile(const char* path)
        : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
        struct stat status {};
        if (descriptor_ >= 0 && ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode))
            size_ = status.st_size;
    }
    ~PlainFile() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    int descriptor() const { return descriptor_; }
    /// -1 when there is no such file.
    off_t size() const { return size_; }

 private:
    const int descriptor_;
    off_t size_ = -1;
};

/// The converter passes those behind ASCII on as they are.
bool isControl(char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < ' ' || (code >= 0x7f && code < 0xa0);
}

}  // namespace

void EucKR2Utf8(const char* in, std::size_t length, char out[kUtf8TextSize]) {
    std::string text(in, ::strnlen(in, length));
    std::replace_if(text.begin(), text.end(), isControl, '?');
    char* from = text.data();
    std::size_t left = text.size();
    char* to = out;
    std::size_t room = kUtf8TextSize - 1;
    const iconv_t converter = ::iconv_open("UTF-8", "EUC-KR");
    const bool usable = reinterpret_cast<std::intptr_t>(converter) != -1;
    while (left > 0 && room > 0) {
        if (usable && ::iconv(converter, &from, &left, &to, &room) != std::size_t(-1))
            break;
        // The rest is half a character, or there is no room for more.
        if (usable && (errno != EILSEQ || room == 0))
            break;
        // Without the converter at least what is ASCII can be read.
        *to++ = !usable && static_cast<unsigned char>(*from) < 0x80 ? *from : '?';
        --room;
        ++from;
        --left;
    }
    *to = '\0';
    if (usable)
        ::iconv_close(converter);
}

std::string printableAscii(const char* in, std::size_t length) {
    std::string text(in, ::strnlen(in, length));
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return isControl(c) || static_cast<unsigned char>(c) > 0x7e; }, '?');
    return text;
}

void GetCurTime(unsigned char out[8]) {
    timeval now{};
    ::gettimeofday(&now, nullptr);
    tm local{};
    ::localtime_r(&now.tv_sec, &local);
    const int values[] = {
        local.tm_year - 100,
        local.tm_mon + 1,
        local.tm_mday,
        local.tm_hour,
        local.tm_min,
        local.tm_sec,
        static_cast<int>(now.tv_usec / 10000),
        static_cast<int>(now.tv_usec / 100 % 100),
    };
    std::copy(std::begin(values), std::end(values), out);
}

int GetFileSize(const char* path) {
    const off_t size = PlainFile(path).size();
    constexpr off_t kMost = face_message::kMaxPayload - sizeof(FaceRequestHeader);
    return size <= kMost ? static_cast<int>(size) : -1;
}

int GetImageFromFile(const char* path, unsigned char* out, int size) {
    const PlainFile file(path);
    if (file.size() < 0)
        return -1;
    int had = 0;
    while (had < size) {
        const ssize_t got =
            ::read(file.descriptor(), out + had, static_cast<std::size_t>(size - had));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        had += static_cast<int>(got);
    }
    return had;
}
