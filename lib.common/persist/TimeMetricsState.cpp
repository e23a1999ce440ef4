// The tagged state of the time and music metrics and of the note display:
// a group under the caller's tag. Missing values take the class defaults,
// except where the stored form defines its own ("fs" 30, "opt" and a missing
// "tm" section as they are).

#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "time/TMidiNoteDisplay.h"
#include "time/TMusicMetrics.h"
#include "time/TTimeMetrics.h"

void TMusicMetrics::WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(tempo, "tp");
    stream.SetValue(ticksPerQuarter, "ti");
    stream.SetValue(beatsPerMeasure, "bm");
    stream.SetValue(beatWidth, "bw");
}

bool TMusicMetrics::RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    TMusicMetrics const defaults;
    tempo = stream.GetValue(defaults.tempo, "tp");
    ticksPerQuarter = stream.GetValue(defaults.ticksPerQuarter, "ti");
    beatsPerMeasure = stream.GetValue(defaults.beatsPerMeasure, "bm");
    beatWidth = stream.GetValue(defaults.beatWidth, "bw");
    return true;
}

void TTimeMetrics::WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(sampleRate, "sr");
    stream.SetValue(frameRate, "fs");
    stream.SetValue(options, "opt");
    music.WriteState(stream, context, "tm", 0);
}

bool TTimeMetrics::RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    sampleRate = stream.GetValue(44100.0, "sr");
    frameRate = stream.GetValue(30.0, "fs");
    options = stream.GetValue(options, "opt");
    music.RestoreState(stream, context, "tm", 0);
    return true;
}

void TMidiNoteDisplay::WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(numberFormat, "num");
    stream.SetValue(nameFormat, "key");
    stream.SetValue(sequence, "seq");
}

bool TMidiNoteDisplay::RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    TMidiNoteDisplay const defaults;
    numberFormat = stream.GetValue(defaults.numberFormat, "num");
    nameFormat = stream.GetValue(defaults.nameFormat, "key");
    sequence = stream.GetValue(defaults.sequence, "seq");
    return true;
}
