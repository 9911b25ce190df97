#pragma once

#include <cstddef>
#include <cstdint>

/// What the terminal and an external face-search server send each other, byte for byte. Integers
/// and floating-point numbers are little-endian; texts are EUC-KR in fixed widths, filled up with
/// zeros, and one that fills its field has no zero behind it. docs/face-search.md lists every
/// field.

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "records are copied as they lie in memory");
static_assert(sizeof(double) == 8, "records hold floating-point numbers of 8 bytes");

/// The byte before every message, in both directions.
namespace face_message {
enum Kind : std::uint8_t {
    FaceInfo = 1,
    FaceImage = 2,
    KeyExchange = 3,
    FaceInfoAndImage = 4,  ///< an answer; a request asks for one
};

/// The longest payload that is taken from a server.
constexpr std::uint32_t kMaxPayload = 8 * 1024 * 1024;
}  // namespace face_message

#pragma pack(push, 1)

/// Local time to a ten-thousandth of a second.
struct FaceTimeStamp {
    std::uint8_t year;  // since 2000
    std::uint8_t month;
    std::uint8_t day;
    std::uint8_t hour;
    std::uint8_t minute;
    std::uint8_t second;
    std::uint8_t hundredths;
    std::uint8_t tenThousandths;  // beyond the hundredths
};

/// Request of the kinds FaceInfo and FaceInfoAndImage; `length` bytes of data follow.
struct FaceRequestHeader {
    std::uint8_t type;
    std::uint32_t requestId;
    std::uint64_t personKey;
    FaceTimeStamp time;
    std::uint8_t one;   // always 1
    std::uint8_t zero;  // always 0
    double number;      // always 0.0
    std::uint16_t reserved1[4];
    std::uint8_t four;  // always 4
    std::uint8_t option;
    std::uint8_t reserved2[3];
    std::uint32_t length;
};

/// Request of the kind FaceImage.
struct FaceImageRequest {
    std::uint8_t type;
    std::uint32_t requestId;
    char personId[20];
    FaceTimeStamp time;
};

/// Answer of the kind FaceInfo.
struct FaceInfoRecord {
    std::uint8_t type;
    std::uint32_t requestId;
    std::uint8_t sent[16];  // the request's personKey and time
    std::uint8_t confidence;
    char personId[33];
    char name[20];
    char position[20];
    char department1[20];
    char department2[20];
    char department3[20];
    char department4[20];
};

/// How an answer of the kind FaceImage begins; the picture follows.
struct FaceImageHead {
    std::uint8_t type;
    std::uint32_t requestId;
    char personId[20];
    FaceTimeStamp time;
    std::uint32_t imageSize;
};

/// How an answer of the kind FaceInfoAndImage begins; the picture follows.
struct FaceInfoAndImageHead {
    std::uint8_t information[235];  // not read
    std::uint32_t imageSize;
};

#pragma pack(pop)

static_assert(sizeof(FaceTimeStamp) == 8);
static_assert(sizeof(FaceRequestHeader) == 48);
static_assert(offsetof(FaceRequestHeader, time) == 13);
static_assert(offsetof(FaceRequestHeader, number) == 23);
static_assert(offsetof(FaceRequestHeader, four) == 39);
static_assert(offsetof(FaceRequestHeader, length) == 44);
static_assert(sizeof(FaceImageRequest) == 33);
static_assert(sizeof(FaceInfoRecord) == 175);
static_assert(offsetof(FaceInfoRecord, confidence) == 21);
static_assert(offsetof(FaceInfoRecord, personId) == 22);
static_assert(offsetof(FaceInfoRecord, name) == 55);
static_assert(offsetof(FaceInfoRecord, department4) == 155);
static_assert(sizeof(FaceImageHead) == 37);
static_assert(sizeof(FaceInfoAndImageHead) == 239);
static_assert(offsetof(FaceInfoAndImageHead, imageSize) == 235);
