#include <benchmark/benchmark.h>

#include <QByteArray>
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "link/command_code.h"
#include "link/device_records.h"
#include "link/frame.h"
#include "link/frame_parser.h"

namespace {

long allocations = 0;

}  // namespace

// In place of the C library's own, which operator new and Qt's containers call as well.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    ++allocations;
    return __libc_realloc(memory, size);
}
}

namespace {

constexpr int kFrames = 1000;

/// What a controller might send without a pause: whole frames with @p length bytes each.
QByteArray stream(int length) {
    QByteArray payload(length, '\0');
    for (int i = 0; i < length; ++i)
        payload[i] = static_cast<char>(i * 7);
    const QByteArray frame = Frame::build(command::UserFound, 1, 2,
                                          static_cast<std::uint16_t>(length), payload.constData());
    return frame.repeated(kFrames);
}

void report(benchmark::State& state, int length, long allocated) {
    const auto frames = static_cast<double>(state.iterations()) * kFrames;
    state.counters["frames/s"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
    state.counters["payload"] = benchmark::Counter(frames * length, benchmark::Counter::kIsRate);
    state.counters["allocations"] = static_cast<double>(allocated);
}

/// The same bytes in pieces of the same size, copied and no more.
void copyOnly(benchmark::State& state) {
    const int length = static_cast<int>(state.range(0));
    const QByteArray bytes = stream(length);
    char buffer[Frame::kMaxFrameSize];
    const long before = allocations;
    for (auto _ : state) {
        for (const char *at = bytes.cbegin(), *end = bytes.cend(); at < end;) {
            const auto piece =
                std::min<std::size_t>(sizeof buffer, static_cast<std::size_t>(end - at));
            std::memcpy(buffer, at, piece);
            benchmark::DoNotOptimize(buffer);
            benchmark::ClobberMemory();
            at += piece;
        }
    }
    report(state, length, allocations - before);
}

/// Copied into the parser's buffer, as reading from a socket does, and taken apart.
void parse(benchmark::State& state) {
    const int length = static_cast<int>(state.range(0));
    const QByteArray bytes = stream(length);
    long delivered = 0;
    FrameParser parser([&delivered](std::uint16_t command, std::uint8_t, std::uint8_t,
                                    std::uint16_t, const char* payload) {
        benchmark::DoNotOptimize(command);
        benchmark::DoNotOptimize(payload);
        ++delivered;
    });
    const long before = allocations;
    for (auto _ : state) {
        for (const char *at = bytes.cbegin(), *end = bytes.cend(); at < end;) {
            const auto piece = std::min(parser.writeSpace(), static_cast<std::size_t>(end - at));
            std::memcpy(parser.writePosition(), at, piece);
            parser.consume(piece);
            at += piece;
        }
    }
    const long after = allocations;
    if (delivered != static_cast<long>(state.iterations()) * kFrames)
        state.SkipWithError("frames were lost");
    report(state, length, after - before);
}

}  // namespace

BENCHMARK(copyOnly)->Arg(0)->Arg(sizeof(_gui_user_));
BENCHMARK(parse)->Arg(0)->Arg(sizeof(_gui_user_));
BENCHMARK_MAIN();
