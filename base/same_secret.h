#pragma once

#include <QString>

/// Whether two secrets are the same, in a time that tells nothing of where they differ. A secret is
/// at most 64 characters; a longer one is the same as none.
inline bool sameSecret(const QString& one, const QString& other) {
    constexpr int kLongest = 64;
    unsigned int difference = one.size() == other.size() && one.size() <= kLongest ? 0 : 1;
    for (int i = 0; i < kLongest; ++i) {
        const ushort a = i < one.size() ? one.at(i).unicode() : 0;
        const ushort b = i < other.size() ? other.at(i).unicode() : 0;
        difference |= static_cast<unsigned int>(a ^ b);
    }
    return difference == 0;
}
