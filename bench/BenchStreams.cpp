// Typed writing and reading of a million mixed integers and doubles:
// the library's memory streams beside QDataStream over a QByteArray.

#include "persist/TInputMemoryStream.h"
#include "persist/TOutputMemoryStream.h"

#include <QByteArray>
#include <QDataStream>
#include <benchmark/benchmark.h>

#include <cstdint>

namespace {

constexpr int kValues = 1000000;
// The step the tagged writer grows by.
constexpr unsigned int kGrowth = 32000;

// Every other value an int, the others doubles: 6 MB of data.
int IntAt(int n)
{
    return n * 2654435761u >> 7;
}

double DoubleAt(int n)
{
    return n * 0.37 - 1000.0;
}

void StreamWriteCommon(benchmark::State& state)
{
    int const count = int(state.range(0));
    for (auto _ : state) {
        TOutputMemoryStream out(kGrowth);
        for (int n = 0; n < count; n += 2) {
            out.Write(IntAt(n));
            out.Write(DoubleAt(n));
        }
        benchmark::DoNotOptimize(out.Start());
        benchmark::DoNotOptimize(out.GetPosition());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * count);
}

void StreamWriteQDataStream(benchmark::State& state)
{
    int const count = int(state.range(0));
    for (auto _ : state) {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        for (int n = 0; n < count; n += 2) {
            out << qint32(IntAt(n));
            out << DoubleAt(n);
        }
        benchmark::DoNotOptimize(bytes.constData());
        benchmark::DoNotOptimize(bytes.size());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * count);
}

QByteArray const& Written()
{
    static QByteArray const bytes = [] {
        TOutputMemoryStream out(kGrowth);
        for (int n = 0; n < kValues; n += 2) {
            out.Write(IntAt(n));
            out.Write(DoubleAt(n));
        }
        return QByteArray(reinterpret_cast<char const*>(out.Start()), int(out.GetPosition()));
    }();
    return bytes;
}

void StreamReadCommon(benchmark::State& state)
{
    int const count = int(state.range(0));
    QByteArray const& bytes = Written();
    for (auto _ : state) {
        TInputMemoryStream in(bytes.constData(), unsigned(bytes.size()));
        int64_t intSum = 0;
        double doubleSum = 0;
        for (int n = 0; n < count; n += 2) {
            int i;
            double d;
            in.Read(&i);
            in.Read(&d);
            intSum += i;
            doubleSum += d;
        }
        benchmark::DoNotOptimize(intSum);
        benchmark::DoNotOptimize(doubleSum);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * count);
}

void StreamReadQDataStream(benchmark::State& state)
{
    int const count = int(state.range(0));
    QByteArray const& bytes = Written();
    for (auto _ : state) {
        QDataStream in(bytes);
        in.setByteOrder(QDataStream::LittleEndian);
        int64_t intSum = 0;
        double doubleSum = 0;
        for (int n = 0; n < count; n += 2) {
            qint32 i;
            double d;
            in >> i;
            in >> d;
            intSum += i;
            doubleSum += d;
        }
        benchmark::DoNotOptimize(intSum);
        benchmark::DoNotOptimize(doubleSum);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * count);
}

} // namespace

BENCHMARK(StreamWriteCommon)->Name("StreamWrite/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(StreamWriteQDataStream)->Name("StreamWrite/qdatastream")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(StreamReadCommon)->Name("StreamRead/common")->Arg(kValues)->Unit(benchmark::kMillisecond);
BENCHMARK(StreamReadQDataStream)->Name("StreamRead/qdatastream")->Arg(kValues)->Unit(benchmark::kMillisecond);
