#pragma once

/// The result codes of the REST server's answers.
namespace result {

constexpr int kSucceed = 1000;
constexpr int kNotAllowed = 2000;
constexpr int kCardNumberLength = 3001;
constexpr int kUnknownError = 9999;

}  // namespace result

/// What became of a request's body: the command that it holds, or the result code that refuses it.
template <typename Value>
struct Decoded {
    int code = result::kSucceed;
    Value value{};

    bool ok() const { return code == result::kSucceed; }
};
