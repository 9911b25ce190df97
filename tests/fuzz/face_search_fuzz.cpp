#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "fuzz_root.h"
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
        demand(::strnlen(text, sizeof text) < sizeof text);
    }
    if (record != nullptr && kind == face_message::FaceImage) {
        const auto* image = static_cast<FaceImageAnswer*>(record);
        demand(image->image.size() == image->head.imageSize &&
               image->image.size() <= payload.size());
    }
    face_answer::release(kind, record);
}

}  // namespace

// The first byte says whether the rest is a stream of messages or the payload of one.
void take(std::uint8_t first, const QByteArray& rest) {
    // What is printed for an operator would bury what the fuzzer says.
    static const FILE* quiet = std::freopen("/dev/null", "w", stdout);
    static const bool silent = (keepSilent(), quiet != nullptr);
    if (!silent)
        return;
    if (first % 8 != 0) {
        std::vector<unsigned char> payload(rest.begin(), rest.end());
        payload.resize(std::max(payload.size(), sizeof(FaceInfoAndImageHead) - first % 8));
        handle(first % 8, payload);
        return;
    }
    QByteArray left = rest;
    const auto source = [&](unsigned char* to, std::size_t count, bool) {
        if (count > static_cast<std::size_t>(left.size()))
            return false;
        std::memcpy(to, left.constData(), count);
        left.remove(0, static_cast<int>(count));
        return true;
    };
    int kind = 0;
    std::vector<unsigned char> payload;
    for (int index = 0;
         face_answer::take(source, index, &kind, &payload) == face_answer::Taken::Message; ++index)
        handle(kind, payload);
}
