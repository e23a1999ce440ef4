// Positions and audio values as a user of an audio program reads them.
#include "Demos.h"

#include <Common>

#include <QString>

#include <cstdio>

namespace {

void Line(char const* what, QString const& text)
{
    std::printf("  %-34s %s\n", what, text.toUtf8().constData());
}

void ShowPositions()
{
    TTimeMetrics metrics(48000);
    double const take = 48000.0 * 3723.48; // 1 h 2 min 3.48 s
    std::printf("A position of %.0f samples at 48 kHz:\n", take);
    Line("clock", QStringFromTime(take, eTimeClock | eClockHMS | eClockMilliseconds, metrics));
    Line("clock, compact", QStringFromTime(take, eTimeClock | eClockHMS | eClockCompact, metrics));
    Line("clock, fixed layout", QStringFromTime(take, eTimeClock | eClockHMS | eClockMilliseconds, metrics,
                                                eTimeFixedLayout));
    Line("clock, short marks", QStringFromTime(take, eTimeClock | eClockMinutes | eClockSeconds | eClockShortMarks,
                                               metrics));
    Line("clock, digital", QStringFromTime(take, eTimeClock | eClockMinutes | eClockSeconds | eClockDigital,
                                           metrics));
    Line("time code, 25 fps", QStringFromTime(take, eTimeCode | eCodeRate25, metrics));
    Line("time code, 24 fps, quarter frames", QStringFromTime(take, eTimeCode | eCodeRate24 | eCodeQuarterFrames,
                                                              metrics));
    Line("time code, unit names", QStringFromTime(take, eTimeCode | eCodeRate25 | eCodeUnitNames, metrics));
    Line("time code, CD frames", QStringFromTime(take, eTimeCode | eCodeRate75 | eCodeNoHours, metrics));
    TTimeMetrics drop = metrics;
    drop.SetDropMode(true);
    Line("time code, 29.97 drop frame", QStringFromTime(take, eTimeCode | eCodeRate2997, drop));
    Line("samples", QStringFromTime(take, eTimeSamples | eSamplesUnit, metrics, eNumGroupDigits));
    Line("bars at 120 bpm in 4/4", QStringFromTime(take, eTimeBars | eBarsFromOne, metrics));
    Line("a little before the start", QStringFromTime(-4800LL, eTimeClock | eClockSeconds | eClockMilliseconds,
                                                      metrics));
    Line("a selection's length", StringFromMilliseconds(62500));
    Line("time signature", StringFromTimeSignature(metrics.music));
}

void ShowAudioValues()
{
    std::printf("Levels, pitches and files:\n");
    Line("peak of a gain of 0.5", QStringFromAudioLevel(0.5, eLevelGainAsDb, 2));
    Line("silence", QStringFromAudioLevel(0.0, eLevelGainAsDb, 2));
    Line("loudness", QStringFromAudioLevel(-23.04, eLevelDb, 1 | eLevelUnitLUFS));
    Line("mix level", QStringFromAudioLevel(0.755, eLevelPercent, 1));
    Line("sample value at half scale, 16 bit", QStringFromAudioLevel(0.5, eLevelSample16, 0));
    Line("a filter's cut-off", QStringFromFrequency(1234.5, eFrequencyHz, nullptr, eNumGroupDigits | 1, 440));
    Line("a tuner reading 445 Hz", QStringFromFrequency(445, eFrequencyNote, nullptr, 0, 440));
    Line("the period of 100 Hz in samples", QStringFromFrequency(100, eTimeSamples | eSamplesUnit, nullptr, 0, 440));
    Line("MIDI note 61", TMidiNoteDisplay().ToString(61));
    Line("file of 3 500 000 bytes", QStringFromFileSize(3500000, eFileSizeAutoUnit | 1));
    Line("same, in bytes", QStringFromFileSize(3500000, 0));
    Line("sample rate", QStringFromSampleRate(96000));
    Line("bit rate", QStringFromBitRate(320000));
}

} // namespace

void ShowTimeAndAudioValues()
{
    ShowPositions();
    ShowAudioValues();
}
