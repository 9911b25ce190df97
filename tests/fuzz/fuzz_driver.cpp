// Runs a fuzz target without a fuzzer: over the files given, or over a fixed number of made-up
// inputs, the same ones at every run. With clang the target is linked to libFuzzer instead.
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

constexpr int kInputs = 20000;
constexpr std::size_t kMaxSize = 6000;

/// Numbers that parsers of this project trip over more easily than over others.
constexpr std::uint8_t kTelling[] = {0xC5, 0x02, 0x00, 0xFF, '{', '"', '[', '\\', '/', '.',
                                     ':',  '~',  4,    6,    7,   12,  13,  14,   15,  19};

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    if (argc > 1)
        return 0;

    std::mt19937 random(480800);
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < kInputs; ++i) {
        bytes.resize(random() % (i % 16 == 0 ? kMaxSize : 200));
        for (std::uint8_t& byte : bytes)
            byte = random() % 3 == 0 ? kTelling[random() % std::size(kTelling)]
                                     : static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%d inputs survived\n", kInputs);
    return 0;
}
