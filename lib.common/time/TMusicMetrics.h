#pragma once

#include "core/CommonExport.h"

class QString;
class TTaggedOutputStream;
class TTaggedInputStream;

// Tempo and metre: what turns seconds into bars, beats and ticks.
// State values: "tp" tempo, "ti" ticks per quarter, "bm" beats per measure,
// "bw" beat width.
class COMMON_EXPORT TMusicMetrics
{
public:
    double tempo = 120.0;     // quarter notes per minute
    int ticksPerQuarter = 480;
    int beatsPerMeasure = 4;
    int beatWidth = 4;        // the denominator of the metre

    double TicksPerSecond() const { return ticksPerQuarter * tempo * (1.0 / 60.0); }
    // 0 for a beat width of 0; saturates at the int range.
    int TicksPerBeat() const;
    int TicksPerBar() const;

    double SecondsFromBars(int bars, int beats, int ticks) const;
    // The same position at another tempo.
    double SecondsFromTempo(double tempo, int bars, int beats, int ticks) const;
    // The tempo at which that position falls at seconds.
    double TempoFromSeconds(double seconds, int bars, int beats, int ticks) const;

    // Zero-based counts of the position at seconds, the ticks rounded to
    // nearest; each pointer may be null. Metrics without ticks per bar or
    // beat, or with a tempo that isn't a finite positive number, give zeros
    // and log "TimeToBars" 1 on LogNoGoZone.
    void TimeToBars(double seconds, int* bars, int* beats, int* ticks) const;

    bool operator==(TMusicMetrics const& other) const;
    bool operator!=(TMusicMetrics const& other) const { return !(*this == other); }

    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

private:
    double TicksBeforeBar(int bars, int beats, int ticks) const;
};

// "4/4": beats per measure, "/", beat width.
COMMON_EXPORT QString StringFromTimeSignature(TMusicMetrics const& metrics);
