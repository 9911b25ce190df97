#include "cloud/json_input.h"

#include <QJsonDocument>
#include <algorithm>
#include <string_view>
#include <vector>

namespace {

/// Qt's parser gives up behind this depth, too.
constexpr std::size_t kMaxDepth = 1024;

/// Whether every object in @p text has each of its keys once. A key with an escape in it could be
/// another one in disguise and is taken for a second one; no key of ours needs an escape.
///
/// Qt's parser loses the memory of all but the last value of a key that comes again: with texts of
/// that kind anybody could use the terminal's memory up. Text that is no JSON is the parser's to
/// refuse.
bool keysAreUnique(const QByteArray& text) {
    struct Open {
        bool isObject;
        std::size_t firstKey;
    };
    std::vector<Open> open;
    std::vector<std::string_view> keys;  // of all objects that are open
    bool keyIsNext = false;
    const char* const end = text.constData() + text.size();
    for (const char* at = text.constData(); at < end; ++at) {
        switch (*at) {
            case '"': {
                const char* const begin = ++at;
                bool escaped = false;
                for (; at < end && *at != '"'; ++at) {
                    if (*at != '\\')
                        continue;
                    escaped = true;
                    ++at;
                }
                if (at >= end || (keyIsNext && escaped))
                    return false;
                if (keyIsNext)
                    keys.emplace_back(begin, static_cast<std::size_t>(at - begin));
                keyIsNext = false;
                break;
            }
            case '{':
            case '[':
                keyIsNext = *at == '{';
                open.push_back({keyIsNext, keys.size()});
                if (open.size() > kMaxDepth)
                    return false;
                break;
            case '}':
            case ']': {
                if (open.empty())
                    return false;
                const auto first = keys.begin() + static_cast<std::ptrdiff_t>(open.back().firstKey);
                std::sort(first, keys.end());
                if (std::adjacent_find(first, keys.end()) != keys.end())
                    return false;
                keys.erase(first, keys.end());
                open.pop_back();
                keyIsNext = false;
                break;
            }
            case ',':
                keyIsNext = !open.empty() && open.back().isObject;
                break;
            default:
                break;
        }
    }
    return true;
}

}  // namespace

std::optional<QJsonObject> readJsonObject(const QByteArray& text) {
    if (!keysAreUnique(text))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}
