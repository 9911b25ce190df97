#pragma once

#include <functional>
#include <vector>

#include "screens/facesearch/face_search_records.h"

/// A face's picture as it was answered.
struct FaceImageAnswer {
    FaceImageHead head;
    std::vector<unsigned char> image;  // head.imageSize bytes
};

/// The same with what is known of the person.
struct FaceInfoAndImageAnswer {
    FaceInfoAndImageHead head;
    std::vector<unsigned char> image;  // head.imageSize bytes
};

/// The receive side of the face-search protocol, without a connection. Nothing that a server sends
/// is believed before it has been looked at. Any thread.
namespace face_answer {

/// Reads exactly @p count bytes; false when they do not come. @p begun: within a message, which a
/// server does not leave unfinished for long.
using Source = std::function<bool(unsigned char* to, std::size_t count, bool begun)>;

enum class Taken {
    Message,
    SourceEnded,
    TooLong,  ///< above face_message::kMaxPayload; nothing behind it makes sense any more
};

/// Takes the next message from @p source and prints what it is announced as. @p index is its
/// number on the connection. No more memory is used than bytes have come.
Taken take(const Source& source, int index, int* kind, std::vector<unsigned char>* payload);

/// The record of a message, by its kind: FaceInfoRecord, FaceImageAnswer or
/// FaceInfoAndImageAnswer, to be given to release(). Null for a kind that has none, and for a
/// message that is shorter than it has to be, which is logged.
void* makeRecord(int kind, const std::vector<unsigned char>& payload);

/// Whether makeRecord() knows @p kind.
bool hasRecord(int kind);

/// Frees what makeRecord() has made for @p kind; null is nothing.
void release(int kind, void* record);

}  // namespace face_answer
