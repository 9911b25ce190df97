// Stands between what makes inputs and a target, and counts inputs and their bytes in the file that
// FUZZ_COUNT names: two numbers of 64 bits, added to what is there. A finding ends the process at
// once, so they are kept outside of it.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "fuzz_root.h"

namespace {

std::uint64_t* counters() {
    static std::uint64_t unkept[2];
    const char* const path = std::getenv("FUZZ_COUNT");
    const int file = path != nullptr ? ::open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0644) : -1;
    if (file < 0 || ::ftruncate(file, sizeof unkept) != 0)
        return unkept;
    void* const kept = ::mmap(nullptr, sizeof unkept, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    return kept != MAP_FAILED ? static_cast<std::uint64_t*>(kept) : unkept;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static std::uint64_t* const count = counters();
    ++count[0];
    count[1] += size;
    if (size > 0)
        take(bytes[0], bytesOf(bytes + 1, size - 1));
    return 0;
}
