// Numbers to text against the C library's formatter and std::to_chars.
#include "text/NumberText.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <random>
#include <vector>

namespace {

std::vector<int> const& Integers()
{
    static std::vector<int> const values = [] {
        std::mt19937 random(11);
        std::vector<int> v(1024);
        for (int& value : v)
            value = static_cast<int>(random()) >> (random() % 31); // every digit count
        return v;
    }();
    return values;
}

std::vector<double> const& Doubles()
{
    static std::vector<double> const values = [] {
        std::mt19937 random(12);
        std::uniform_real_distribution<double> spread(-100000.0, 100000.0);
        std::vector<double> v(1024);
        for (double& value : v)
            value = spread(random) / (1 << (random() % 16));
        return v;
    }();
    return values;
}

void IntCommon(benchmark::State& state)
{
    char buffer[32];
    for (auto _ : state)
        for (int value : Integers()) {
            IntToString(value, buffer, 0, 0);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Integers().size());
}

void IntPrintf(benchmark::State& state)
{
    char buffer[32];
    for (auto _ : state)
        for (int value : Integers()) {
            std::snprintf(buffer, sizeof buffer, "%d", value);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Integers().size());
}

void IntToChars(benchmark::State& state)
{
    char buffer[32];
    for (auto _ : state)
        for (int value : Integers()) {
            *std::to_chars(buffer, buffer + sizeof buffer - 1, value).ptr = 0;
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Integers().size());
}

void FloatCommon(benchmark::State& state)
{
    char buffer[64];
    for (auto _ : state)
        for (double value : Doubles()) {
            FloatToString(value, buffer, eNumKeepTrailingZeros | 2);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Doubles().size());
}

void FloatPrintf(benchmark::State& state)
{
    char buffer[64];
    for (auto _ : state)
        for (double value : Doubles()) {
            std::snprintf(buffer, sizeof buffer, "%.2f", value);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Doubles().size());
}

void FloatToChars(benchmark::State& state)
{
    char buffer[64];
    for (auto _ : state)
        for (double value : Doubles()) {
            *std::to_chars(buffer, buffer + sizeof buffer - 1, value, std::chars_format::fixed, 2).ptr = 0;
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Doubles().size());
}

} // namespace

BENCHMARK(IntCommon)->Name("IntToString/common");
BENCHMARK(IntPrintf)->Name("IntToString/snprintf");
BENCHMARK(IntToChars)->Name("IntToString/to_chars");
BENCHMARK(FloatCommon)->Name("FloatToString/common");
BENCHMARK(FloatPrintf)->Name("FloatToString/snprintf");
BENCHMARK(FloatToChars)->Name("FloatToString/to_chars");
