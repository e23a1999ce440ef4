// CRC-32 beside zlib, Base64 beside QByteArray, on the same bytes.

#include "math/Base64.h"
#include "math/Checksum.h"
#include "math/FastMemory.h"
#include "math/TRandomizer.h"

#include <QByteArray>
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>

namespace {

constexpr int kLarge = 64 << 20;

QByteArray const& Bytes()
{
    static QByteArray const bytes = [] {
        TRandomizer random(42);
        QByteArray b(kLarge, Qt::Uninitialized);
        for (char& c : b)
            c = static_cast<char>(random.Next32());
        return b;
    }();
    return bytes;
}

QByteArray const& Text(int size)
{
    static QByteArray small, middle, medium, large;
    QByteArray& text = size <= 64 ? small : size <= 1024 ? middle : size <= 65536 ? medium : large;
    if (text.isEmpty())
        text = Bytes().left(size).toBase64();
    return text;
}

void SetBytes(benchmark::State& state, int size)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * size);
}

void Crc32Common(benchmark::State& state)
{
    InitFastMemoryDispatch();
    int const size = int(state.range(0));
    char const* data = Bytes().constData();
    for (auto _ : state)
        benchmark::DoNotOptimize(ComputeCrc32(data, unsigned(size)));
    SetBytes(state, size);
}

void Crc32Zlib(benchmark::State& state)
{
    int const size = int(state.range(0));
    auto const* data = reinterpret_cast<Bytef const*>(Bytes().constData());
    for (auto _ : state)
        benchmark::DoNotOptimize(crc32(0, data, uInt(size)));
    SetBytes(state, size);
}

// Both sides hand back a new QByteArray, as a caller of either would use it.
void Base64EncodeCommon(benchmark::State& state)
{
    int const size = int(state.range(0));
    char const* data = Bytes().constData();
    for (auto _ : state) {
        QByteArray text(Base64EncodedSize(size), Qt::Uninitialized);
        EncodeBase64(data, size, text.data());
        benchmark::DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    }
    SetBytes(state, size);
}

void Base64EncodeQt(benchmark::State& state)
{
    int const size = int(state.range(0));
    QByteArray const bytes = QByteArray::fromRawData(Bytes().constData(), size);
    for (auto _ : state) {
        QByteArray text = bytes.toBase64();
        benchmark::DoNotOptimize(text.data());
        benchmark::ClobberMemory();
    }
    SetBytes(state, size);
}

void Base64DecodeCommon(benchmark::State& state)
{
    int const size = int(state.range(0));
    QByteArray const& text = Text(size);
    for (auto _ : state) {
        QByteArray bytes(Base64DecodedMaxSize(text.size()), Qt::Uninitialized);
        bytes.resize(DecodeBase64(text.constData(), bytes.data()));
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
    }
    SetBytes(state, size);
}

void Base64DecodeQt(benchmark::State& state)
{
    int const size = int(state.range(0));
    QByteArray const& text = Text(size);
    for (auto _ : state) {
        QByteArray bytes = QByteArray::fromBase64(text);
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
    }
    SetBytes(state, size);
}

void Sizes(benchmark::internal::Benchmark* b)
{
    for (int size : { 64, 1024, 65536, kLarge })
        b->Arg(size);
}

} // namespace

BENCHMARK(Crc32Common)->Name("Crc32/common")->Apply(Sizes);
BENCHMARK(Crc32Zlib)->Name("Crc32/zlib")->Apply(Sizes);
BENCHMARK(Base64EncodeCommon)->Name("Base64Encode/common")->Apply(Sizes);
BENCHMARK(Base64EncodeQt)->Name("Base64Encode/QByteArray")->Apply(Sizes);
BENCHMARK(Base64DecodeCommon)->Name("Base64Decode/common")->Apply(Sizes);
BENCHMARK(Base64DecodeQt)->Name("Base64Decode/QByteArray")->Apply(Sizes);
