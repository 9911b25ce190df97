// Runs a fuzz target without a fuzzer: NUMBER [FILE|FOLDER...]. Over the files, those of the
// folders, and NUMBER made-up inputs, the same ones at every run. With clang the target is linked
// to libFuzzer instead.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

constexpr std::size_t kMaxSize = 6000;

/// Numbers that parsers of this project trip over more easily than over others.
constexpr std::uint8_t kTelling[] = {0xC5, 0x02, 0x00, 0xFF, '{', '"', '[', '\\', '/', '.',
                                     ':',  '~',  4,    6,    7,   12,  13,  14,   15,  19};

}  // namespace

int main(int argc, char** argv) {
    const int madeUp = argc > 1 ? std::atoi(argv[1]) : 0;
    std::vector<std::filesystem::path> files;
    for (int i = 2; i < argc; ++i) {
        if (std::filesystem::is_directory(argv[i]))
            files.insert(files.end(), std::filesystem::directory_iterator(argv[i]), {});
        else
            files.emplace_back(argv[i]);
    }
    for (const auto& path : files) {
        std::ifstream file(path, std::ios::binary);
        if (!file.is_open()) {
            std::fprintf(stderr, "%s cannot be read\n", path.c_str());
            return EXIT_FAILURE;
        }
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }

    std::mt19937 random(480800);
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < madeUp; ++i) {
        bytes.resize(random() % (i % 16 == 0 ? kMaxSize : 200));
        for (std::uint8_t& byte : bytes)
            byte = random() % 3 == 0 ? kTelling[random() % std::size(kTelling)]
                                     : static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu files and %d made-up inputs survived\n", files.size(), madeUp);
    return 0;
}
