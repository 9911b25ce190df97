#pragma once

#include <cstdint>
#include <optional>

/// The tag of the query that follows the one tagged @p last: 1 to 255, round and round.
constexpr std::uint8_t nextLogTag(std::uint8_t last) {
    return static_cast<std::uint8_t>(last % 255 + 1);
}

/// Which of the logs that were found are asked for next: 30 at a time, and on the last page those
/// that remain.
class LogPages {
 public:
    static constexpr std::uint32_t kSize = 30;

    struct Request {
        std::uint32_t count;
        std::uint32_t start;  ///< index of the first one
    };

    /// Begins anew with @p total logs; the first page has been asked for.
    void setTotal(std::uint32_t total) {
        total_ = total;
        current_ = 0;
        last_ = total / kSize;
        remainder_ = total % kSize;
    }
    std::uint32_t total() const { return total_; }
    static Request first() { return {kSize, 0}; }
    bool hasNext() const { return current_ != last_; }
    /// Goes one page on; nothing at the last page.
    std::optional<Request> next() {
        if (!hasNext())
            return std::nullopt;
        ++current_;
        // The last page starts at this index on purpose: the controller counts so.
        return current_ == last_ ? Request{remainder_, remainder_ * last_}
                                 : Request{kSize, current_ * kSize};
    }
    /// How many logs come for @p request.
    std::uint32_t expected(const Request& request) const {
        return request.count < total_ ? request.count : total_;
    }

 private:
    std::uint32_t total_ = 0;
    std::uint32_t current_ = 0;
    std::uint32_t last_ = 0;
    std::uint32_t remainder_ = 0;
};
