#pragma once

#include "core/CommonExport.h"
#include "time/TMusicMetrics.h"

// What a position in samples needs to become time: the sample rate, the
// video frame rate with its drop-frame mode, and the music metrics.
// State values: "sr", "fs", "opt" and the section "tm". On restore a missing
// "fs" gives 30 (not the constructor's 25), a missing "opt" keeps the
// present value.
class COMMON_EXPORT TTimeMetrics
{
public:
    enum EOption : int
    {
        eDropFrame = 0x1, // 29.97 time code counts in drop-frame numbers
    };

    double sampleRate = 44100.0;
    double frameRate = 25.0;
    int options = 0;
    TMusicMetrics music;

    TTimeMetrics() = default;
    explicit TTimeMetrics(int rate) : sampleRate(rate) {}

    bool IsDropMode() const { return (options & eDropFrame) != 0; }
    void SetDropMode(bool drop);
    void SetSampleRate(int rate) { sampleRate = rate; }
    double SampleRate() const { return sampleRate; }
    // The rate truncated to an int; a rate that gives no positive int
    // (0, negative, NaN, beyond the int range) gives 44100 and logs
    // "TTimeMetrics" 910 on LogNoGoZone.
    int SampleRate32() const;

    // Sample frames to time and back, on SampleRate32(). Truncations
    // saturate at the range of long long.
    long long HoursFromFrames(long long frames) const;
    long long MinutesFromFrames(long long frames) const;
    long long SecondsFromFrames(long long frames) const;
    long long MillisecondsFromFrames(long long frames) const;
    double SecondsFromFramesF(long long frames) const;
    double SecondsFromFramesF(double frames) const;
    long long FramesFromMilliseconds(int milliseconds) const;
    long long FramesFromSeconds(int seconds) const;

    bool operator==(TTimeMetrics const& other) const;
    bool operator!=(TTimeMetrics const& other) const { return !(*this == other); }

    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);
};
