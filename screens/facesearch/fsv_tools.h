#pragma once

#include <cstddef>
#include <string>

/// Small helpers of the face search. Any thread.

/// The size of the buffer that EucKR2Utf8() fills.
constexpr std::size_t kUtf8TextSize = 100;

/// Converts @p length bytes of EUC-KR, or what comes before a zero among them, to UTF-8 with a
/// zero at the end. What is too long for the buffer is cut at a whole character. Bytes that are no
/// EUC-KR, and control characters, become '?', so the text can go to any console.
void EucKR2Utf8(const char* in, std::size_t length, char out[kUtf8TextSize]);

/// What comes before a zero among @p length bytes, with '?' for all but the printable ASCII ones.
std::string printableAscii(const char* in, std::size_t length);

/// The local time now, as a FaceTimeStamp.
void GetCurTime(unsigned char out[8]);

/// The size of a plain file in bytes; -1 when there is none that can be read, or it is too large
/// to be sent.
int GetFileSize(const char* path);

/// Reads the first @p size bytes of a plain file. How many there were, -1 when it cannot be read.
int GetImageFromFile(const char* path, unsigned char* out, int size);
