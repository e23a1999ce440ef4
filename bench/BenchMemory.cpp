// FastCopyEx and FastMoveEx beside memcpy and memmove. The size is hidden
// from the compiler on every round, so neither side is specialised for it.

#include "math/FastMemory.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace {

constexpr int kLarge = 1 << 20;

struct TBuffers
{
    std::vector<unsigned char> source = std::vector<unsigned char>(kLarge + 64, 1);
    std::vector<unsigned char> target = std::vector<unsigned char>(kLarge + 64, 2);
};

TBuffers& Buffers()
{
    static TBuffers buffers;
    return buffers;
}

void CopyCommon(benchmark::State& state)
{
    InitFastMemoryDispatch();
    size_t size = size_t(state.range(0));
    TBuffers& b = Buffers();
    for (auto _ : state) {
        benchmark::DoNotOptimize(size);
        benchmark::DoNotOptimize(FastCopyEx(b.source.data(), b.target.data(), size));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

void CopyLibc(benchmark::State& state)
{
    size_t size = size_t(state.range(0));
    TBuffers& b = Buffers();
    for (auto _ : state) {
        benchmark::DoNotOptimize(size);
        benchmark::DoNotOptimize(std::memcpy(b.target.data(), b.source.data(), size));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

// Within one buffer, eight bytes on, so the ranges overlap.
void MoveCommon(benchmark::State& state)
{
    InitFastMemoryDispatch();
    int size = int(state.range(0));
    unsigned char* data = Buffers().target.data();
    for (auto _ : state) {
        benchmark::DoNotOptimize(size);
        benchmark::DoNotOptimize(FastMoveEx(data, data + 8, size));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

void MoveLibc(benchmark::State& state)
{
    size_t size = size_t(state.range(0));
    unsigned char* data = Buffers().target.data();
    for (auto _ : state) {
        benchmark::DoNotOptimize(size);
        benchmark::DoNotOptimize(std::memmove(data + 8, data, size));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* b)
{
    for (int size : { 1, 7, 16, 31, 48, 63, 64, 200, 1000, 4000, kLarge })
        b->Arg(size);
}

} // namespace

BENCHMARK(CopyCommon)->Name("ByteCopy/common")->Apply(Sizes);
BENCHMARK(CopyLibc)->Name("ByteCopy/memcpy")->Apply(Sizes);
BENCHMARK(MoveCommon)->Name("ByteMove/common")->Apply(Sizes);
BENCHMARK(MoveLibc)->Name("ByteMove/memmove")->Apply(Sizes);
