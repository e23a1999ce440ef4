#include "time/TMusicMetrics.h"

#include "diag/LogCategories.h"

#include <QString>

#include <climits>
#include <cmath>

namespace {

int SaturateToInt(long long value)
{
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

int FloorToInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value <= INT_MIN)
        return INT_MIN;
    if (value >= INT_MAX)
        return INT_MAX;
    return static_cast<int>(std::floor(value));
}

} // namespace

int TMusicMetrics::TicksPerBeat() const
{
    if (beatWidth == 0)
        return 0;
    return SaturateToInt(static_cast<long long>(ticksPerQuarter) * 4 / beatWidth);
}

int TMusicMetrics::TicksPerBar() const
{
    return SaturateToInt(static_cast<long long>(TicksPerBeat()) * beatsPerMeasure);
}

double TMusicMetrics::TicksBeforeBar(int bars, int beats, int ticks) const
{
    double perBeat = TicksPerBeat();
    return static_cast<double>(beatsPerMeasure) * perBeat * bars + beats * perBeat + ticks;
}

double TMusicMetrics::SecondsFromBars(int bars, int beats, int ticks) const
{
    return TicksBeforeBar(bars, beats, ticks) / TicksPerSecond();
}

double TMusicMetrics::SecondsFromTempo(double otherTempo, int bars, int beats, int ticks) const
{
    return TicksBeforeBar(bars, beats, ticks) * 60 / (otherTempo * ticksPerQuarter);
}

double TMusicMetrics::TempoFromSeconds(double seconds, int bars, int beats, int ticks) const
{
    return TicksBeforeBar(bars, beats, ticks) * 60 / (seconds * ticksPerQuarter);
}

void TMusicMetrics::TimeToBars(double seconds, int* bars, int* beats, int* ticks) const
{
    int perBeat = TicksPerBeat();
    int perBar = TicksPerBar();
    double perSecond = TicksPerSecond();
    double bar = 0, beat = 0, rest = 0;
    if (perBeat <= 0 || perBar <= 0 || !(perSecond > 0) || !std::isfinite(perSecond)) {
        qCWarning(LogNoGoZone) << "TimeToBars" << 1;
    } else {
        double t = std::round(seconds * perSecond);
        bar = std::floor(t / perBar);
        t -= bar * perBar;
        beat = std::floor(t / perBeat);
        t -= beat * perBeat;
        rest = std::round(t);
    }
    if (bars)
        *bars = FloorToInt(bar);
    if (beats)
        *beats = FloorToInt(beat);
    if (ticks)
        *ticks = FloorToInt(rest);
}

bool TMusicMetrics::operator==(TMusicMetrics const& other) const
{
    return tempo == other.tempo && ticksPerQuarter == other.ticksPerQuarter
        && beatsPerMeasure == other.beatsPerMeasure && beatWidth == other.beatWidth;
}

QString StringFromTimeSignature(TMusicMetrics const& metrics)
{
    return QString::number(metrics.beatsPerMeasure) + QLatin1Char('/') + QString::number(metrics.beatWidth);
}
