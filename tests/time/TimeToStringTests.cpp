#include "LogCapture.h"

#include "text/TString.h"
#include "time/TimeToString.h"

#include <gtest/gtest.h>

#include <QString>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>

namespace {

int const kClock = eTimeClock;
int const kHMS = eTimeClock | eClockHours | eClockMinutes | eClockSeconds;
int const kTc25 = eTimeCode | eCodeRate25;

// The narrow text, after checking that the wide form says the same.
std::string Time(double position, int format, TTimeMetrics const& metrics = TTimeMetrics(), int options = 0)
{
    char narrow[64];
    char16_t wide[64];
    TimeToString(position, narrow, format, metrics, options);
    TimeToString(position, wide, format, metrics, options);
    EXPECT_EQ(QString::fromUtf16(wide), QString::fromUtf8(narrow));
    return narrow;
}

double Seconds(double seconds, int rate = 44100)
{
    return seconds * rate;
}

struct TTimeText
{
    double position;
    int format;
    char const* text;
    int options = 0;
    TTimeMetrics metrics = TTimeMetrics();
};

void CheckTexts(std::initializer_list<TTimeText> cases)
{
    for (TTimeText const& c : cases)
        EXPECT_EQ(Time(c.position, c.format, c.metrics, c.options), c.text)
            << "position " << c.position << " format 0x" << std::hex << c.format << " options 0x" << c.options;
}

TTimeMetrics Metrics(
    int sampleRate, double frameRate = 25, int beatsPerMeasure = 4, int beatWidth = 4, int ticksPerQuarter = 480)
{
    TTimeMetrics metrics(sampleRate);
    metrics.frameRate = frameRate;
    metrics.music.beatsPerMeasure = beatsPerMeasure;
    metrics.music.beatWidth = beatWidth;
    metrics.music.ticksPerQuarter = ticksPerQuarter;
    return metrics;
}

TEST(TimeToString, ClockTexts)
{
    int const seconds = kClock | eClockSeconds;
    int const withMs = seconds | eClockMilliseconds;
    int const all = kHMS | eClockMilliseconds;
    int const marks = kClock | eClockMinutes | eClockSeconds | eClockShortMarks;
    int const digital = kClock | eClockMinutes | eClockSeconds | eClockDigital;
    double const p = Seconds(3723.45);
    TTimeMetrics const megahertz(1000000);
    CheckTexts({ { -44100, seconds, "-1 s" }, { 44100, seconds, "+1 s", eTimePlusSign },
        { 0, seconds, "0 s", eTimePlusSign }, { -1, seconds, "-0 s" }, // only exactly 0 has no sign
        { Seconds(125), seconds, "5 s" }, // minutes are lost without their bit
        { Seconds(3723), kClock | eClockMinutes | eClockSeconds, "62 mn 3 s" },
        // 1000 ms carry into the seconds, even seconds that were 0, but only
        // with the seconds bit; when nothing shows, the seconds do.
        { Seconds(1.9996), withMs, "2 s" }, { Seconds(0.9996), withMs, "1 s" },
        { Seconds(1.9994), withMs, "1 s 999 ms" }, { Seconds(1.9996), kClock | eClockMilliseconds, "1000 ms" },
        { Seconds(0.0004), withMs, "0 s" }, { p, all, "1 h 2 mn 3 s 450 ms" },
        { p, all | eClockCompact, "1h 2mn 3s 450ms" },
        { Seconds(3), all | eClockCompact, "3 s" }, // compact needs two fields
        { 0, kHMS, "00 h 00 mn 00 s", eTimeFixedLayout },
        { Seconds(5), kHMS, " 0 h  0 mn  5 s", eTimeFixedLayout | eTimeLeadingSpaces },
        { Seconds(125), marks, "2'05\"" }, { Seconds(125), marks | eClockNoSecondMark, "2'05" },
        { Seconds(125), marks, "2' 05\"", eTimeSpaceBeforeMarks }, { Seconds(3665), marks | eClockHours, "1 h1'05\"" },
        { Seconds(125), digital, "2:05" }, { Seconds(5), digital, "05" },
        { Seconds(3665), digital | eClockHours | eClockMilliseconds, "1 h1:05" },
        { 1234, kClock | eClockMilliseconds | eClockMicroseconds, "1 ms 234 \u00B5s", 0, megahertz },
        { 1234, kClock | eClockMicroseconds, "1234 \u00B5s", 0, megahertz },
        { 44110, seconds | eClockSampleUnit, "1 s 10 smp" }, { 10, seconds | eClockSampleUnit, "10 smp" },
        // With samples the milliseconds are floored.
        { Seconds(1.9996), withMs | eClockSampleUnit, "1 s 999 ms 26 smp" } });
}

TEST(TimeToString, TimeCodeTexts)
{
    double const p = Seconds(3723.48);
    int const hide = kTc25 | eCodeHideZeros;
    CheckTexts({ { 0, kTc25, "00:00:00.00" },
        // Rounds to the nearest frame; exactly half way stays below.
        { Seconds(11.5 / 25), kTc25, "00:00:00.11" }, { Seconds(11.5 / 25) + 1, kTc25, "00:00:00.12" },
        { Seconds(12.0 / 25) - 1, kTc25, "00:00:00.12" }, { Seconds(59.99), kTc25, "00:01:00.00" },
        { p, kTc25 | eCodeColonFrames, "01:02:03:12" }, { p, kTc25 | eCodeNoFrames, "01:02:03" },
        { p, kTc25 | eCodeNoHours, "62:03.12" }, { p, kTc25 | eCodeNoHours | eCodeHours, "00:62:03.12" },
        { p, kTc25 | eCodeUnitNames, "01h 02mn 03s 12fr " }, { Seconds(3.04), kTc25 | eCodeNoPadding, "0:0:3.1" },
        { Seconds(10), kTc25 | eCodeFrameCount, ".250" }, { p, kTc25 | eCodeFrameCount, ".93087" },
        { Seconds(3.48), hide, "03.12" }, { Seconds(0.48), hide, ".12" }, // the point comes even with nothing before
        { 0, hide, "00" }, { Seconds(3600.48), hide, "01:00:00.12" },
        { Seconds(3600.48), hide | eCodeUnitNames, "01h 12fr " },
        { Seconds(0.49), kTc25 | eCodeQuarterFrames, "00:00:00.12.1" },
        { Seconds(0.49), kTc25 | eCodeQuarterFrames | eCodeUnitNames, "00h 00mn 00s 12fr 1qf" },
        { Seconds(12.34 / 25), kTc25 | eCodeHundredths, "00:00:00.12.34" },
        { Seconds(12.999 / 25), kTc25 | eCodeHundredths, "00:00:00.13.00" },
        // A subframe count that reaches the unit stays below it.
        { Seconds(12.992 / 25), kTc25 | eCodeHundredths, "00:00:00.12.99" },
        { Seconds(1.5), eTimeCode | eCodeRate1000, "00:00:01.500" },
        { Seconds(1.5), eTimeCode | eCodeRate75, "00:00:01.37" }, // 37.5 frames: half way stays below
        { Seconds(1.5), eTimeCode | eCodeRate24, "00:00:01.12" },
        { Seconds(1.6), eTimeCode | eCodeRate1, "00:00:02.0" },
        { Seconds(1.5, 96000), eTimeCode | eCodeRateBlock, "00:00:01.0600", 0, TTimeMetrics(96000) },
        { Seconds(1.5, 192000), eTimeCode | eCodeRateBlock, "00:00:01.0600", 0, TTimeMetrics(192000) },
        { Seconds(1.5), eTimeCode | eCodeRateBlock, "00:00:01.0551" },
        { Seconds(1.5), eTimeCode, "00:00:01.25", 0, Metrics(44100, 50) } });
}

TEST(TimeToString, DropFrameMinutes)
{
    TTimeMetrics drop(48000);
    drop.SetDropMode(true);
    int const tc = eTimeCode | eCodeRate2997;
    auto frame = [](double n) { return n * 48000 / 29.97; };
    CheckTexts({ { frame(1799), tc, "00:00:59.29", 0, drop }, { frame(1800), tc, "00:01:00.02", 0, drop },
        { frame(3597), tc, "00:01:59.29", 0, drop }, { frame(3598), tc, "00:02:00.02", 0, drop },
        { frame(17981), tc, "00:09:59.29", 0, drop },
        { frame(17982), tc, "00:10:00.00", 0, drop }, // every tenth minute keeps its frames
        { frame(107892), tc, "01:00:00.00", 0, drop },
        // Without drop mode, 29.97 frames on the count of 30.
        { 48000, tc, "00:00:01.00", 0, TTimeMetrics(48000) },
        { frame(1800), tc, "00:01:00.00", 0, TTimeMetrics(48000) } });
    struct
    {
        int frames, extra;
    } const skipped[] = {
        { -5, 0 }, { 1799, 0 }, { 1800, 2 }, { 3597, 2 }, { 3598, 4 }, { 17982, 18 }, { 19781, 18 }, { 19782, 20 },
        { 2587609, 2590 }, { 2587610, 2592 }, { 2589407, 2592 }, { 2589408, 0 },
        { INT_MAX, 0 }, // from 24 hours on, no correction
    };
    for (auto const& s : skipped)
        EXPECT_EQ(GetExtraFrames2997(s.frames), s.extra) << s.frames;
}

TEST(TimeToString, SamplesAndBars)
{
    int const bars = eTimeBars | eBarsFromOne;
    CheckTexts({ { 1234.6, eTimeSamples, "1235" }, { 1234.6, eTimeSamples | eSamplesUnit, "1 235 smp", 0x100 },
        { -0.4, eTimeSamples, "0" }, { 2, eTimeSamples, "+2", eTimePlusSign }, { 0, bars, "1:1.000" },
        { 0, eTimeBars, "0:0.000" }, { Seconds(1), bars, "1:3.000" }, { Seconds(2.25), bars, "2:1.240" },
        { -Seconds(2.25), bars, "-1:0.240" }, // negative positions count from zero
        { Seconds(1), bars, "1:5.000", 0, Metrics(44100, 25, 6, 8) },
        { Seconds(0.25), bars, "1:1.48", 0, Metrics(44100, 25, 4, 4, 96) },
        { Seconds(0.25), bars, "1:1.48", eTimeLeadingSpaces, Metrics(44100, 25, 4, 4, 96) } });
}

// Field by field, one division at a time, as the fast whole-second split
// must agree with. Clock texts in fixed layout, with or without milliseconds.
std::string ReferenceText(double position, int family, bool milliseconds)
{
    double r = 44100;
    double x = std::fabs(position);
    if (family == eTimeCode)
        x += r / (2 * 25.0) * 0.9999;
    double hours = std::floor(x / (r * 3600));
    x -= hours * r * 3600;
    double minutes = std::floor(x / (r * 60));
    x -= minutes * r * 60;
    bool floored = family == eTimeCode || milliseconds;
    double seconds = floored ? std::floor(x / r) : std::round(x / r);
    x -= seconds * r;
    char const* sign = position < 0 ? "-" : "";
    char text[80];
    if (family == eTimeCode) {
        std::snprintf(text, sizeof text, "%s%02.0f:%02.0f:%02.0f.%02.0f", sign, hours, minutes, seconds,
            std::floor(x / (r / 25)));
    } else if (milliseconds) {
        double ms = std::round(x / (r * 0.001));
        if (ms == 1000) {
            ms = 0;
            seconds += 1;
        }
        std::snprintf(text, sizeof text, "%s%02.0f h %02.0f mn %02.0f s %03.0f ms", sign, hours, minutes, seconds, ms);
    } else {
        std::snprintf(text, sizeof text, "%s%02.0f h %02.0f mn %02.0f s", sign, hours, minutes, seconds);
    }
    return text;
}

TEST(TimeToString, AgreesWithTheFieldByFieldComputation)
{
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> spread(0, 1e11);
    TTimeMetrics metrics;
    for (int i = 0; i < 100000; ++i) {
        double position = spread(random);
        // Whole, on a second, on a half second, just below a second, anywhere.
        double const step = i % 5 == 0 ? 1 : i % 5 == 2 ? 22050 : 44100;
        if (i % 5 != 4)
            position = std::floor(position / step) * step;
        if (i % 5 == 3)
            position = std::nextafter(position, 0.0);
        if (i % 7 == 0)
            position = -position;
        char text[64];
        TimeToString(position, text, kHMS, metrics, eTimeFixedLayout);
        ASSERT_EQ(text, ReferenceText(position, eTimeClock, false)) << position;
        TimeToString(position, text, kTc25, metrics, 0);
        ASSERT_EQ(text, ReferenceText(position, eTimeCode, false)) << position;
        if (i % 5 != 4) {
            TimeToString(position, text, kHMS | eClockMilliseconds, metrics, eTimeFixedLayout);
            ASSERT_EQ(text, ReferenceText(position, eTimeClock, true)) << position;
        }
    }
}

TEST(TimeToString, BadInputsAreLoggedAndReplaced)
{
    LogCapture log;
    char buffer[64] = "untouched";
    TimeToString(44100.0, buffer, eClockSeconds, TTimeMetrics(), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TimeToString 1407"));

    for (double rate : { 0.0, -48000.0, 0.5, double(NAN), 1e12 }) {
        log.Clear();
        TTimeMetrics metrics;
        metrics.sampleRate = rate;
        EXPECT_EQ(Time(88200, kClock | eClockSeconds, metrics), "2 s") << rate;
        EXPECT_EQ(log.CountOf("Log.NoGoZone", "TimeToString 910"), 2) << rate;
    }

    log.Clear();
    TTimeMetrics noFrames;
    noFrames.frameRate = 0;
    EXPECT_EQ(Time(Seconds(0.48), eTimeCode, noFrames), "00:00:00.12");
    EXPECT_EQ(log.CountOf("Log.NoGoZone", "TimeToString 966"), 2);

    log.Clear();
    EXPECT_EQ(Time(NAN, kClock | eClockSeconds), "0 s");
    EXPECT_EQ(log.CountOf("Log.NoGoZone", "TimeToString 911"), 2);
    log.Clear();
    EXPECT_EQ(Time(-INFINITY, eTimeSamples), "-9007199254740992");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TimeToString 912"));
}

TEST(TimeToString, NoInputOverrunsSixtyFourCharacters)
{
    LogCapture quiet;
    double const positions[] = { 0, -1, 0.5, 1e9, -1e15, 9007199254740992.0, 1e300, -INFINITY, NAN };
    double const rates[] = { 1, 44100, 2147483647.0, 0 };
    double const frameRates[] = { 25, 1e300, 1e-300, -3, NAN };
    int const formats[] = { -1, 0x7FFFFFFF, -1 & ~eTimeCode, (-1 & ~(eTimeCode | eTimeClock)) | eClockCompact,
        eTimeCode | eCodeFrameCount | eCodeUnitNames | eCodeHundredths,
        eTimeCode | eCodeUnitNames | eCodeQuarterFrames | eCodeNoHours | eCodeHours, eTimeBars | eBarsFromOne,
        eTimeSamples | eSamplesUnit };
    for (double position : positions)
        for (double rate : rates)
            for (double frameRate : frameRates)
                for (int format : formats)
                    for (int options : { 0, -1 }) {
                        TTimeMetrics metrics;
                        metrics.sampleRate = rate;
                        metrics.frameRate = frameRate;
                        metrics.music.ticksPerQuarter = rate > 2 ? 480 : INT_MAX;
                        metrics.music.beatWidth = rate > 2 ? 4 : 1;
                        char narrow[128];
                        char16_t wide[128];
                        std::memset(narrow, 'x', sizeof narrow);
                        std::memset(wide, 'x', sizeof wide);
                        TimeToString(position, narrow, format, metrics, options);
                        TimeToString(position, wide, format, metrics, options);
                        ASSERT_LT(std::strlen(narrow), 64u) << narrow;
                        ASSERT_LT(QString::fromUtf16(wide).size(), 64) << narrow;
                    }
}

TEST(TimeToString, StringFromMilliseconds)
{
    struct
    {
        int ms;
        char const* text;
    } const cases[] = { { 0, "0 ms" }, { 1, "0.0 s" }, { 999, "0.9 s" }, { 1500, "1.5 s" }, { 9999, "9.9 s" },
        { 10000, "10 s" }, { 59499, "59 s" }, { 59500, "1 mn 0 s" }, { 62000, "1 mn 2 s" }, { 3599999, "1 h 0 s" },
        { 3661000, "1 h 1 mn 1 s" }, { -1500, "-1.5 s" }, { INT_MAX, "596 h 31 mn 24 s" },
        { INT_MIN, "-596 h 31 mn 24 s" } };
    for (auto const& c : cases) {
        char narrow[40];
        char16_t wide[40];
        StringFromMilliseconds(narrow, c.ms);
        StringFromMilliseconds(wide, c.ms);
        EXPECT_STREQ(narrow, c.text) << c.ms;
        EXPECT_EQ(QString::fromUtf16(wide), QString::fromUtf8(c.text));
        EXPECT_EQ(StringFromMilliseconds(c.ms), QString::fromUtf8(c.text));
    }
}

// Every form but the double ones of TimeToString, which the rest use.
TEST(TimeToString, OtherForms)
{
    TTimeMetrics const metrics;
    char16_t wide[64];
    TimeToString(88200LL, wide, kClock | eClockSeconds, metrics, 0);
    EXPECT_EQ(QString::fromUtf16(wide), QStringLiteral("2 s"));
    char narrow[64];
    TimeToString(88200, narrow, kClock | eClockSeconds, metrics, 0);
    EXPECT_STREQ(narrow, "2 s");
    EXPECT_EQ(QStringFromTime(88200LL, kTc25, metrics), QStringLiteral("00:00:02.00"));
    EXPECT_EQ(QStringFromTime(-88200.0, kTc25, metrics), QStringLiteral("-00:00:02.00"));
    EXPECT_STREQ(AStringFromTime(88200LL, kTc25, metrics).c_str(), "00:00:02.00");
    EXPECT_STREQ(AStringFromTime(441.0, kClock | eClockMicroseconds, metrics).c_str(), "10000 \u00B5s");
    EXPECT_TRUE(WStringFromTime(-44100LL, kClock | eClockSeconds, metrics) == u"-1 s");
    EXPECT_TRUE(WStringFromTime(441.0, kClock | eClockMicroseconds, metrics) == u"10000 \u00B5s");
}

} // namespace
