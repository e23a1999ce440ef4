// The string core beside QString and std::string.

#include "text/TString.h"

#include <QHash>
#include <QString>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <string>

namespace {

std::string const& Words()
{
    static std::string const words = "take mix track bus send return level pan mute solo ";
    return words;
}

std::string MiB()
{
    std::string text;
    text.reserve(1 << 20);
    while (text.size() < (1 << 20) - 64)
        text += Words();
    text += "needle in the haystack";
    return text;
}

std::string const kLine = "C:/Audio/Project 12/Takes/Lead Vocal Take 07 (comp).wav";

// ---- copy of a shared string -------------------------------------------------

void CopyCommon(benchmark::State& state)
{
    AString const source(kLine.c_str());
    for (auto _ : state) {
        AString copy(source);
        benchmark::DoNotOptimize(copy.c_str());
    }
}

void CopyQString(benchmark::State& state)
{
    QString const source = QString::fromStdString(kLine);
    for (auto _ : state) {
        QString copy(source);
        benchmark::DoNotOptimize(copy.constData());
    }
}

void CopyStd(benchmark::State& state)
{
    std::string const source = kLine;
    for (auto _ : state) {
        std::string copy(source);
        benchmark::DoNotOptimize(copy.data());
    }
}

// ---- one character at a time ---------------------------------------------------

void AppendCharCommon(benchmark::State& state)
{
    for (auto _ : state) {
        AString text;
        for (int64_t i = 0; i < state.range(0); ++i)
            text.Append(static_cast<char>('a' + (i & 15)));
        benchmark::DoNotOptimize(text.c_str());
    }
}

void AppendCharQString(benchmark::State& state)
{
    for (auto _ : state) {
        QString text;
        for (int64_t i = 0; i < state.range(0); ++i)
            text.append(QChar(static_cast<char16_t>('a' + (i & 15))));
        benchmark::DoNotOptimize(text.constData());
    }
}

void AppendCharStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (int64_t i = 0; i < state.range(0); ++i)
            text.push_back(static_cast<char>('a' + (i & 15)));
        benchmark::DoNotOptimize(text.data());
    }
}

// ---- words ------------------------------------------------------------------

char const* const kWords[] = {"take", "mix", "track", "bus", "send", "return", "level", "pan"};

// Each side appends its own string objects, as a program holding words would.
void AppendWordsCommon(benchmark::State& state)
{
    AString words[8];
    for (int i = 0; i < 8; ++i)
        words[i] = kWords[i];
    for (auto _ : state) {
        AString text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += words[i & 7];
            text += ' ';
        }
        benchmark::DoNotOptimize(text.c_str());
    }
}

void AppendWordsQString(benchmark::State& state)
{
    QString words[8];
    for (int i = 0; i < 8; ++i)
        words[i] = QString::fromLatin1(kWords[i]);
    for (auto _ : state) {
        QString text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += words[i & 7];
            text += QLatin1Char(' ');
        }
        benchmark::DoNotOptimize(text.constData());
    }
}

void AppendWordsStd(benchmark::State& state)
{
    std::string words[8];
    for (int i = 0; i < 8; ++i)
        words[i] = kWords[i];
    for (auto _ : state) {
        std::string text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += words[i & 7];
            text += ' ';
        }
        benchmark::DoNotOptimize(text.data());
    }
}

// Words as C texts, whose length each side has to find.
void AppendLiteralsCommon(benchmark::State& state)
{
    for (auto _ : state) {
        AString text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += kWords[i & 7];
            text += ' ';
        }
        benchmark::DoNotOptimize(text.c_str());
    }
}

void AppendLiteralsQString(benchmark::State& state)
{
    for (auto _ : state) {
        QString text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += QLatin1String(kWords[i & 7]);
            text += QLatin1Char(' ');
        }
        benchmark::DoNotOptimize(text.constData());
    }
}

void AppendLiteralsStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (int64_t i = 0; i < state.range(0); ++i) {
            text += kWords[i & 7];
            text += ' ';
        }
        benchmark::DoNotOptimize(text.data());
    }
}

// ---- find in 1 MiB --------------------------------------------------------------

void FindCommon(benchmark::State& state)
{
    AString const text(MiB().c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(text.Find("needle"));
}

void FindQString(benchmark::State& state)
{
    QString const text = QString::fromStdString(MiB());
    QString const needle = QStringLiteral("needle");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.indexOf(needle));
}

void FindStd(benchmark::State& state)
{
    std::string const text = MiB();
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find("needle"));
}

void FindWideCommon(benchmark::State& state)
{
    WString const text(MiB().c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(text.Find(u"needle"));
}

void FindWideQString(benchmark::State& state)
{
    FindQString(state);
}

void FindWideStd(benchmark::State& state)
{
    std::u16string const text = QString::fromStdString(MiB()).toStdU16String();
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(u"needle"));
}

// ---- case-insensitive comparison -------------------------------------------------

std::string KiB(bool upper)
{
    std::string text;
    while (text.size() < 1024)
        text += Words();
    if (upper)
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

void CompareNoCaseCommon(benchmark::State& state)
{
    AString const a(KiB(false).c_str());
    AString const b(KiB(true).c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(a.CompareWith(b.c_str(), false));
}

void CompareNoCaseQString(benchmark::State& state)
{
    QString const a = QString::fromStdString(KiB(false));
    QString const b = QString::fromStdString(KiB(true));
    for (auto _ : state)
        benchmark::DoNotOptimize(a.compare(b, Qt::CaseInsensitive));
}

void CompareNoCaseStd(benchmark::State& state)
{
    std::string const a = KiB(false);
    std::string const b = KiB(true);
    auto const same = [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    };
    for (auto _ : state)
        benchmark::DoNotOptimize(a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), same));
}

// ---- hash --------------------------------------------------------------------

void HashCommon(benchmark::State& state)
{
    AString const text(kLine.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(text.GetHashValue());
}

void HashQString(benchmark::State& state)
{
    QString const text = QString::fromStdString(kLine);
    for (auto _ : state)
        benchmark::DoNotOptimize(qHash(text));
}

void HashStd(benchmark::State& state)
{
    std::string const text = kLine;
    for (auto _ : state)
        benchmark::DoNotOptimize(std::hash<std::string>()(text));
}

} // namespace

BENCHMARK(CopyCommon)->Name("StringCopy/common");
BENCHMARK(CopyQString)->Name("StringCopy/QString");
BENCHMARK(CopyStd)->Name("StringCopy/std_string");
BENCHMARK(AppendCharCommon)->Name("StringAppendChar/common")->Arg(1000000);
BENCHMARK(AppendCharQString)->Name("StringAppendChar/QString")->Arg(1000000);
BENCHMARK(AppendCharStd)->Name("StringAppendChar/std_string")->Arg(1000000);
BENCHMARK(AppendWordsCommon)->Name("StringAppendWords/common")->Arg(100000);
BENCHMARK(AppendWordsQString)->Name("StringAppendWords/QString")->Arg(100000);
BENCHMARK(AppendWordsStd)->Name("StringAppendWords/std_string")->Arg(100000);
BENCHMARK(AppendLiteralsCommon)->Name("StringAppendLiterals/common")->Arg(100000);
BENCHMARK(AppendLiteralsQString)->Name("StringAppendLiterals/QString")->Arg(100000);
BENCHMARK(AppendLiteralsStd)->Name("StringAppendLiterals/std_string")->Arg(100000);
BENCHMARK(FindCommon)->Name("StringFind/common");
BENCHMARK(FindQString)->Name("StringFind/QString");
BENCHMARK(FindStd)->Name("StringFind/std_string");
BENCHMARK(FindWideCommon)->Name("StringFindWide/common");
BENCHMARK(FindWideQString)->Name("StringFindWide/QString");
BENCHMARK(FindWideStd)->Name("StringFindWide/std_u16string");
BENCHMARK(CompareNoCaseCommon)->Name("StringCompareNoCase/common");
BENCHMARK(CompareNoCaseQString)->Name("StringCompareNoCase/QString");
BENCHMARK(CompareNoCaseStd)->Name("StringCompareNoCase/std_string");
BENCHMARK(HashCommon)->Name("StringHash/common");
BENCHMARK(HashQString)->Name("StringHash/QString");
BENCHMARK(HashStd)->Name("StringHash/std_string");
