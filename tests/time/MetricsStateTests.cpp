#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "time/TMidiNoteDisplay.h"
#include "time/TTimeMetrics.h"

#include <QByteArray>
#include <gtest/gtest.h>

namespace {

class MetricsState : public ::testing::TestWithParam<EStreamMode>
{
};

TTimeMetrics Sample()
{
    TTimeMetrics metrics(96000);
    metrics.frameRate = 29.97;
    metrics.SetDropMode(true);
    metrics.music.tempo = 93.5;
    metrics.music.ticksPerQuarter = 960;
    metrics.music.beatsPerMeasure = 7;
    metrics.music.beatWidth = 8;
    return metrics;
}

} // namespace

TEST_P(MetricsState, WhatIsWrittenReadsBack)
{
    TMidiNoteDisplay display;
    display.numberFormat = 1;
    display.nameFormat = 0;
    display.sequence = TMidiNoteDisplay::eNameThenNumber;

    TTaggedOutputStream out(GetParam(), "M");
    Sample().WriteState(out, 0, "metrics", 2);
    display.WriteState(out, 0, "notes", 0);
    QByteArray const document = out.GetAsByteArray();

    TTaggedInputStream in(GetParam(), document, checksumOn);
    TTimeMetrics metrics;
    TMidiNoteDisplay readDisplay;
    ASSERT_TRUE(metrics.RestoreState(in, 0, "metrics", 2));
    ASSERT_TRUE(readDisplay.RestoreState(in, 0, "notes", 0));
    EXPECT_EQ(metrics, Sample());
    EXPECT_EQ(readDisplay, display);
}

INSTANTIATE_TEST_SUITE_P(AllModes, MetricsState,
                         ::testing::Values(streamModePlain, streamModeRawTags, streamModeXml));

TEST(MetricsStateDefaults, MissingValuesTakeTheStoredFormsDefaults)
{
    TTaggedOutputStream out(streamModeRawTags, "M");
    out.MoveDown("metrics");
    out.SetValue(48000.0, "sr");
    out.MoveUp();
    QByteArray const document = out.GetAsByteArray();

    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    TTimeMetrics metrics = Sample();
    ASSERT_TRUE(metrics.RestoreState(in, 0, "metrics", 0));
    EXPECT_EQ(metrics.sampleRate, 48000.0);
    EXPECT_EQ(metrics.frameRate, 30.0); // not the constructor's 25
    EXPECT_TRUE(metrics.IsDropMode()); // "opt" keeps what was there
    EXPECT_EQ(metrics.music, Sample().music);

    TTimeMetrics untouched = Sample();
    EXPECT_FALSE(untouched.RestoreState(in, 0, "absent", 0));
    EXPECT_EQ(untouched, Sample());
}
