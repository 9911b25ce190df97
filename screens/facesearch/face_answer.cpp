#include "screens/facesearch/face_answer.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "screens/facesearch/fsv_output.h"

namespace {

/// Memory grows with what has come, not with what was announced.
constexpr std::size_t kPiece = 64 * 1024;

template <class Answer>
std::unique_ptr<Answer> withImage(const std::vector<unsigned char>& payload,
                                  const char* headFormat) {
    auto answer = std::make_unique<Answer>();
    constexpr std::size_t kHead = sizeof answer->head;
    fsvPrint(headFormat, static_cast<int>(kHead));
    if (payload.size() < kHead)
        return nullptr;
    std::memcpy(&answer->head, payload.data(), kHead);
    fsvPrint("image size : %d\n", static_cast<int>(answer->head.imageSize));
    if (answer->head.imageSize > payload.size() - kHead)
        return nullptr;
    const unsigned char* image = payload.data() + kHead;
    answer->image.assign(image, image + answer->head.imageSize);
    return answer;
}

void* makeKnown(int kind, const std::vector<unsigned char>& payload) {
    switch (kind) {
        case face_message::FaceInfo: {
            if (payload.size() < sizeof(FaceInfoRecord))
                return nullptr;
            auto* info = new FaceInfoRecord;
            std::memcpy(info, payload.data(), sizeof *info);
            return info;
        }
        case face_message::FaceImage:
            return withImage<FaceImageAnswer>(payload, "head size : %d\n").release();
        case face_message::FaceInfoAndImage:
            return withImage<FaceInfoAndImageAnswer>(payload, "headSize = %d\n").release();
        default:
            return nullptr;
    }
}

}  // namespace

namespace face_answer {

Taken take(const Source& source, int index, int* kind, std::vector<unsigned char>* payload) {
    unsigned char first = 0;
    if (!source(&first, 1, false))
        return Taken::SourceEnded;
    *kind = first;
    fsvPrint("kindOfApi : %d\n", *kind);
    std::uint32_t length = 0;
    if (!source(reinterpret_cast<unsigned char*>(&length), sizeof length, true))
        return Taken::SourceEnded;
    fsvPrint("idx : %d, receive Size : %d\n", index, static_cast<int>(length));
    if (length > face_message::kMaxPayload) {
        qCWarning(faceSearchLog, "a message of %u bytes was announced, the connection ends",
                  length);
        return Taken::TooLong;
    }
    payload->clear();
    while (payload->size() < length) {
        const std::size_t had = payload->size();
        payload->resize(had + std::min<std::size_t>(kPiece, length - had));
        if (!source(payload->data() + had, payload->size() - had, true))
            return Taken::SourceEnded;
    }
    return Taken::Message;
}

void* makeRecord(int kind, const std::vector<unsigned char>& payload) {
    void* record = makeKnown(kind, payload);
    if (record == nullptr && hasRecord(kind))
        qCDebug(faceSearchLog, "an answer of kind %d with %zu bytes is not whole", kind,
                payload.size());
    return record;
}

bool hasRecord(int kind) {
    return kind == face_message::FaceInfo || kind == face_message::FaceImage ||
           kind == face_message::FaceInfoAndImage;
}

void release(int kind, void* record) {
    switch (kind) {
        case face_message::FaceInfo:
            delete static_cast<FaceInfoRecord*>(record);
            break;
        case face_message::FaceImage:
            delete static_cast<FaceImageAnswer*>(record);
            break;
        case face_message::FaceInfoAndImage:
            delete static_cast<FaceInfoAndImageAnswer*>(record);
            break;
        default:
            break;
    }
}

}  // namespace face_answer
