#include <QLoggingCategory>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "screens/facesearch/face_answer.h"
#include "screens/facesearch/fsv_tools.h"
#include "screens/facesearch/receive_func.h"

namespace {

void handle(int kind, const std::vector<unsigned char>& payload) {
    void* record = face_answer::makeRecord(kind, payload);
    if (record != nullptr && kind == face_message::FaceInfo) {
        // Those with a picture would be written to the disk.
        ReceiveFunc(kind, record);
        char text[kUtf8TextSize];
        EucKR2Utf8(static_cast<FaceInfoRecord*>(record)->personId, sizeof(FaceInfoRecord) - 22,
                   text);
        if (::strnlen(text, sizeof text) == sizeof text)
            std::abort();
    }
    if (record != nullptr && kind == face_message::FaceImage) {
        const auto* image = static_cast<FaceImageAnswer*>(record);
        if (image->image.size() != image->head.imageSize || image->image.size() > payload.size())
            std::abort();
    }
    face_answer::release(kind, record);
}

}  // namespace

// The first byte says whether the rest is a stream of messages or the payload of one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // What is printed for an operator would bury what the fuzzer says.
    static const FILE* quiet = std::freopen("/dev/null", "w", stdout);
    static const bool silent =
        (QLoggingCategory::setFilterRules(QStringLiteral("zel.*=false")), true);
    if (size == 0 || quiet == nullptr || !silent)
        return 0;
    if (bytes[0] % 8 != 0) {
        std::vector<unsigned char> payload(bytes + 1, bytes + size);
        payload.resize(std::max(payload.size(), sizeof(FaceInfoAndImageHead) - bytes[0] % 8));
        handle(bytes[0] % 8, payload);
        return 0;
    }
    std::size_t at = 1;
    const auto source = [&](unsigned char* to, std::size_t count, bool) {
        if (count > size - at)
            return false;
        std::memcpy(to, bytes + at, count);
        at += count;
        return true;
    };
    int kind = 0;
    std::vector<unsigned char> payload;
    for (int index = 0;
         face_answer::take(source, index, &kind, &payload) == face_answer::Taken::Message; ++index)
        handle(kind, payload);
    return 0;
}
