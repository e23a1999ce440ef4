#include "LogCapture.h"

#include "time/TTimeMetrics.h"

#include <gtest/gtest.h>

#include <QString>

#include <climits>
#include <cmath>

namespace {

TEST(TMusicMetrics, DerivedValuesAndBars)
{
    TMusicMetrics music;
    EXPECT_DOUBLE_EQ(music.TicksPerSecond(), 960.0);
    EXPECT_EQ(StringFromTimeSignature(music), QStringLiteral("4/4"));
    music.beatsPerMeasure = 7;
    music.beatWidth = 8;
    EXPECT_EQ(music.TicksPerBeat(), 240);
    EXPECT_EQ(music.TicksPerBar(), 1680);
    EXPECT_EQ(StringFromTimeSignature(music), QStringLiteral("7/8"));

    // Bars, beats and ticks survive the trip through seconds.
    for (int bars : {0, 1, 17, 999})
        for (int beats : {0, 3, 6})
            for (int ticks : {0, 1, 239}) {
                int b = -1, e = -1, t = -1;
                music.TimeToBars(music.SecondsFromBars(bars, beats, ticks), &b, &e, &t);
                ASSERT_TRUE(b == bars && e == beats && t == ticks) << bars << ":" << beats << "." << ticks;
            }
    EXPECT_DOUBLE_EQ(music.SecondsFromTempo(60.0, 1, 0, 0), 2 * music.SecondsFromBars(1, 0, 0));
    EXPECT_DOUBLE_EQ(music.TempoFromSeconds(music.SecondsFromBars(2, 1, 5), 2, 1, 5), 120.0);

    int ticks = -1;
    music.TimeToBars(0.0005, nullptr, nullptr, &ticks);
    EXPECT_EQ(ticks, 0) << "0.48 ticks round to 0";
    music.TimeToBars(0.00053, nullptr, nullptr, &ticks);
    EXPECT_EQ(ticks, 1);
}

TEST(TMusicMetrics, DegenerateMetricsGiveZerosAndALogLine)
{
    LogCapture log;
    TMusicMetrics music;
    music.beatWidth = 0;
    EXPECT_EQ(music.TicksPerBeat(), 0);
    int bars = -1, beats = -1, ticks = -1;
    music.TimeToBars(3.0, &bars, &beats, &ticks);
    EXPECT_EQ(bars + beats + ticks, 0);
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TimeToBars 1"));

    music = TMusicMetrics();
    music.ticksPerQuarter = INT_MAX;
    EXPECT_EQ(music.TicksPerBeat(), INT_MAX) << "saturates";
    music = TMusicMetrics();
    music.TimeToBars(1e300, &bars, &beats, &ticks);
    EXPECT_EQ(bars, INT_MAX);
    EXPECT_EQ(music, TMusicMetrics());
    music.beatsPerMeasure = 3;
    EXPECT_NE(music, TMusicMetrics());
}

TEST(TTimeMetrics, ConversionsAndEquality)
{
    TTimeMetrics metrics(48000);
    EXPECT_EQ(metrics.SampleRate32(), 48000);
    EXPECT_EQ(metrics.HoursFromFrames(48000LL * 7199), 1);
    EXPECT_EQ(metrics.MinutesFromFrames(48000LL * 119), 1);
    EXPECT_EQ(metrics.SecondsFromFrames(95999), 1);
    EXPECT_EQ(metrics.MillisecondsFromFrames(47), 0);
    EXPECT_EQ(metrics.MillisecondsFromFrames(48), 1);
    EXPECT_DOUBLE_EQ(metrics.SecondsFromFramesF(24000LL), 0.5);
    EXPECT_DOUBLE_EQ(metrics.SecondsFromFramesF(12000.0), 0.25);
    EXPECT_EQ(metrics.FramesFromMilliseconds(10), 480);
    EXPECT_EQ(metrics.FramesFromMilliseconds(-1), -48);
    EXPECT_EQ(metrics.FramesFromSeconds(INT_MAX), 48000LL * INT_MAX);

    TTimeMetrics other(48000);
    EXPECT_EQ(metrics, other);
    other.SetDropMode(true);
    EXPECT_NE(metrics, other);
    other.SetDropMode(false);
    EXPECT_EQ(metrics, other);
    other.music.tempo = 90;
    EXPECT_NE(metrics, other);
    EXPECT_EQ(TTimeMetrics().frameRate, 25.0);
}

TEST(TTimeMetrics, UnusableRateCountsAs44100)
{
    LogCapture log;
    TTimeMetrics metrics;
    for (double rate : {0.0, -1.0, double(NAN), 3e9}) {
        metrics.sampleRate = rate;
        EXPECT_EQ(metrics.SampleRate32(), 44100);
        EXPECT_EQ(metrics.SecondsFromFrames(88200), 2);
    }
    EXPECT_EQ(log.CountOf("Log.NoGoZone", "TTimeMetrics 910"), 8);
}

} // namespace
