// Positions as text against the same text made with snprintf from the same
// fields.
#include "time/TimeToString.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

namespace {

int const s_rate = 48000;

std::vector<double> const& Positions()
{
    static std::vector<double> const values = [] {
        std::mt19937 random(13);
        std::uniform_real_distribution<double> hours(0.0, 3.0 * 3600 * s_rate);
        std::vector<double> v(1024);
        for (double& value : v)
            value = std::floor(hours(random));
        return v;
    }();
    return values;
}

int const s_clock = eTimeClock | eClockHMS | eClockMilliseconds;
int const s_timeCode = eTimeCode | eCodeRate25;

void ClockCommon(benchmark::State& state)
{
    TTimeMetrics metrics(s_rate);
    char buffer[64];
    for (auto _ : state)
        for (double position : Positions()) {
            TimeToString(position, buffer, s_clock, metrics, eTimeFixedLayout);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Positions().size());
}

void ClockPrintf(benchmark::State& state)
{
    char buffer[64];
    double r = s_rate;
    for (auto _ : state)
        for (double x : Positions()) {
            int hours = static_cast<int>(x / (r * 3600));
            x -= hours * r * 3600;
            int minutes = static_cast<int>(x / (r * 60));
            x -= minutes * r * 60;
            int seconds = static_cast<int>(x / r);
            x -= seconds * r;
            int ms = static_cast<int>(std::round(x / (r * 0.001)));
            std::snprintf(buffer, sizeof buffer, "%02d h %02d mn %02d s %03d ms", hours, minutes, seconds, ms);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Positions().size());
}

void TimeCodeCommon(benchmark::State& state)
{
    TTimeMetrics metrics(s_rate);
    char buffer[64];
    for (auto _ : state)
        for (double position : Positions()) {
            TimeToString(position, buffer, s_timeCode, metrics, 0);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Positions().size());
}

void TimeCodePrintf(benchmark::State& state)
{
    char buffer[64];
    double r = s_rate;
    for (auto _ : state)
        for (double x : Positions()) {
            x += r / 50 * 0.9999;
            int hours = static_cast<int>(x / (r * 3600));
            x -= hours * r * 3600;
            int minutes = static_cast<int>(x / (r * 60));
            x -= minutes * r * 60;
            int seconds = static_cast<int>(x / r);
            x -= seconds * r;
            int frames = static_cast<int>(x / (r / 25));
            std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d.%02d", hours, minutes, seconds, frames);
            benchmark::DoNotOptimize(buffer);
        }
    state.SetItemsProcessed(state.iterations() * Positions().size());
}

} // namespace

BENCHMARK(ClockCommon)->Name("TimeClock/common");
BENCHMARK(ClockPrintf)->Name("TimeClock/snprintf");
BENCHMARK(TimeCodeCommon)->Name("TimeCode/common");
BENCHMARK(TimeCodePrintf)->Name("TimeCode/snprintf");
