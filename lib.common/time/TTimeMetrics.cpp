#include "time/TTimeMetrics.h"

#include "diag/LogCategories.h"

#include <climits>
#include <cmath>

namespace {

long long TruncateToLongLong(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= 9223372036854775807.0)
        return LLONG_MAX;
    if (value <= -9223372036854775807.0)
        return LLONG_MIN;
    return static_cast<long long>(value);
}

} // namespace

void TTimeMetrics::SetDropMode(bool drop)
{
    if (drop)
        options |= eDropFrame;
    else
        options &= ~eDropFrame;
}

int TTimeMetrics::SampleRate32() const
{
    if (sampleRate >= 1.0 && sampleRate < 2147483648.0)
        return static_cast<int>(sampleRate);
    qCWarning(LogNoGoZone) << "TTimeMetrics" << 910;
    return 44100;
}

long long TTimeMetrics::HoursFromFrames(long long frames) const
{
    return TruncateToLongLong(frames * (1.0 / 3600) / SampleRate32());
}

long long TTimeMetrics::MinutesFromFrames(long long frames) const
{
    return TruncateToLongLong(frames * (1.0 / 60) / SampleRate32());
}

long long TTimeMetrics::SecondsFromFrames(long long frames) const
{
    return TruncateToLongLong(SecondsFromFramesF(frames));
}

long long TTimeMetrics::MillisecondsFromFrames(long long frames) const
{
    return TruncateToLongLong(SecondsFromFramesF(frames) * 1000);
}

double TTimeMetrics::SecondsFromFramesF(long long frames) const
{
    return static_cast<double>(frames) / SampleRate32();
}

double TTimeMetrics::SecondsFromFramesF(double frames) const
{
    return frames / SampleRate32();
}

long long TTimeMetrics::FramesFromMilliseconds(int milliseconds) const
{
    return static_cast<long long>(milliseconds) * SampleRate32() / 1000;
}

long long TTimeMetrics::FramesFromSeconds(int seconds) const
{
    return static_cast<long long>(seconds) * SampleRate32();
}

bool TTimeMetrics::operator==(TTimeMetrics const& other) const
{
    return sampleRate == other.sampleRate && frameRate == other.frameRate && options == other.options
        && music == other.music;
}
