// Splitting a 1 MiB text into lines: ExplodeString beside QByteArray::split
// (narrow) and QString::split (wide), empty lines kept on every side.

#include "math/TRandomizer.h"
#include "text/StringSplit.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <benchmark/benchmark.h>

namespace {

constexpr int kTextSize = 1 << 20;

// Lines of 0 to 119 printable characters, so that about one in a hundred
// and twenty is empty.
QByteArray const& NarrowText()
{
    static QByteArray const text = [] {
        TRandomizer random(7);
        QByteArray t;
        t.reserve(kTextSize);
        while (t.size() < kTextSize) {
            int const length = random.Get(120);
            for (int i = 0; i < length; ++i)
                t.append(static_cast<char>(' ' + random.Get(95)));
            t.append('\n');
        }
        t.truncate(kTextSize);
        return t;
    }();
    return text;
}

QString const& WideText()
{
    static QString const text = QString::fromLatin1(NarrowText());
    return text;
}

void SetBytes(benchmark::State& state, int bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes);
}

void ExplodeNarrow(benchmark::State& state)
{
    QByteArray const& text = NarrowText();
    for (auto _ : state) {
        TVector<TString<char>> lines;
        ExplodeString(lines, text.constData(), "\n", false, true);
        benchmark::DoNotOptimize(lines.Count());
    }
    SetBytes(state, text.size());
}

void SplitQByteArray(benchmark::State& state)
{
    QByteArray const& text = NarrowText();
    for (auto _ : state) {
        QList<QByteArray> lines = text.split('\n');
        benchmark::DoNotOptimize(lines.size());
    }
    SetBytes(state, text.size());
}

void ExplodeWide(benchmark::State& state)
{
    QString const& text = WideText();
    auto const* utf16 = reinterpret_cast<char16_t const*>(text.utf16());
    for (auto _ : state) {
        TVector<TString<char16_t>> lines;
        ExplodeString(lines, utf16, u"\n", false, true);
        benchmark::DoNotOptimize(lines.Count());
    }
    SetBytes(state, text.size() * 2);
}

void SplitQString(benchmark::State& state)
{
    QString const& text = WideText();
    for (auto _ : state) {
        QStringList lines = text.split(QLatin1Char('\n'));
        benchmark::DoNotOptimize(lines.size());
    }
    SetBytes(state, text.size() * 2);
}

} // namespace

BENCHMARK(ExplodeNarrow)->Name("ExplodeLines/common")->Arg(kTextSize)->Unit(benchmark::kMicrosecond);
BENCHMARK(SplitQByteArray)->Name("ExplodeLines/qbytearray")->Arg(kTextSize)->Unit(benchmark::kMicrosecond);
BENCHMARK(ExplodeWide)->Name("ExplodeLinesWide/common")->Arg(kTextSize)->Unit(benchmark::kMicrosecond);
BENCHMARK(SplitQString)->Name("ExplodeLinesWide/qstring")->Arg(kTextSize)->Unit(benchmark::kMicrosecond);
