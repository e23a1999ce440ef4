#include "LogCapture.h"

#include "text/TString.h"
#include "time/TimeToString.h"

#include <gtest/gtest.h>

#include <QString>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
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

TEST(TimeToStringClock, SecondsRoundAndSign)
{
    int seconds = kClock | eClockSeconds;
    EXPECT_EQ(Time(0, seconds), "0 s");
    EXPECT_EQ(Time(44100, seconds), "1 s");
    EXPECT_EQ(Time(-44100, seconds), "-1 s");
    EXPECT_EQ(Time(44100, seconds, TTimeMetrics(), eTimePlusSign), "+1 s");
    EXPECT_EQ(Time(0, seconds, TTimeMetrics(), eTimePlusSign), "0 s");
    EXPECT_EQ(Time(Seconds(1.5), seconds), "2 s");
    EXPECT_EQ(Time(Seconds(1.5) - 1, seconds), "1 s");
    EXPECT_EQ(Time(-1, seconds), "-0 s") << "only exactly 0 has no sign";
    EXPECT_EQ(Time(Seconds(125), seconds), "5 s") << "minutes are lost without their bit";
    EXPECT_EQ(Time(Seconds(3723), kClock | eClockMinutes | eClockSeconds), "62 mn 3 s");
}

TEST(TimeToStringClock, MillisecondCarry)
{
    int withMs = kClock | eClockSeconds | eClockMilliseconds;
    EXPECT_EQ(Time(Seconds(1.9996), withMs), "2 s") << "1000 ms carry into the seconds";
    EXPECT_EQ(Time(Seconds(0.9996), withMs), "1 s") << "the carry shows seconds that were 0";
    EXPECT_EQ(Time(Seconds(1.9994), withMs), "1 s 999 ms");
    EXPECT_EQ(Time(Seconds(1.9996), kClock | eClockMilliseconds), "1000 ms") << "no seconds bit, no carry";
    EXPECT_EQ(Time(Seconds(1.9996), withMs, TTimeMetrics(), eTimeFixedLayout), "02 s 000 ms");
    EXPECT_EQ(Time(Seconds(0.0004), withMs), "0 s") << "nothing shows: the seconds do";
}

TEST(TimeToStringClock, LayoutsOfTheFields)
{
    double position = Seconds(3723.45);
    int all = kHMS | eClockMilliseconds;
    EXPECT_EQ(Time(position, all), "1 h 2 mn 3 s 450 ms");
    EXPECT_EQ(Time(position, all, TTimeMetrics(), eTimeFixedLayout), "01 h 02 mn 03 s 450 ms");
    EXPECT_EQ(Time(position, all | eClockCompact), "1h 2mn 3s 450ms");
    EXPECT_EQ(Time(Seconds(3), all | eClockCompact), "3 s") << "compact needs two fields";
    EXPECT_EQ(Time(0, kHMS, TTimeMetrics(), eTimeFixedLayout), "00 h 00 mn 00 s");
    EXPECT_EQ(Time(Seconds(5), kHMS, TTimeMetrics(), eTimeFixedLayout | eTimeLeadingSpaces), " 0 h  0 mn  5 s");

    double twoFive = Seconds(125);
    int marks = kClock | eClockMinutes | eClockSeconds | eClockShortMarks;
    EXPECT_EQ(Time(twoFive, marks), "2'05\"");
    EXPECT_EQ(Time(twoFive, marks | eClockNoSecondMark), "2'05");
    EXPECT_EQ(Time(twoFive, marks, TTimeMetrics(), eTimeSpaceBeforeMarks), "2' 05\"");
    EXPECT_EQ(Time(Seconds(3665), marks | eClockHours), "1 h1'05\"");

    int digital = kClock | eClockMinutes | eClockSeconds | eClockDigital;
    EXPECT_EQ(Time(twoFive, digital), "2:05");
    EXPECT_EQ(Time(Seconds(5), digital), "05");
    EXPECT_EQ(Time(Seconds(3665), digital | eClockHours | eClockMilliseconds), "1 h1:05");
}

TEST(TimeToStringClock, FineUnits)
{
    TTimeMetrics megahertz(1000000);
    EXPECT_EQ(Time(1234, kClock | eClockMilliseconds | eClockMicroseconds, megahertz), "1 ms 234 \u00B5s");
    EXPECT_EQ(Time(1234, kClock | eClockMilliseconds | eClockMicroseconds | eClockCompact, megahertz),
              "1ms 234\u00B5s");
    EXPECT_EQ(Time(1234, kClock | eClockMicroseconds, megahertz), "1234 \u00B5s");
    EXPECT_EQ(Time(44110, kClock | eClockSeconds | eClockSampleUnit), "1 s 10 smp");
    EXPECT_EQ(Time(10, kClock | eClockSeconds | eClockSampleUnit), "10 smp");
    EXPECT_EQ(Time(Seconds(1.9996), kClock | eClockSeconds | eClockMilliseconds | eClockSampleUnit), "1 s 999 ms 26 smp")
        << "with samples the milliseconds are floored";
}

TEST(TimeToStringTimeCode, FieldsAtTwentyFiveFrames)
{
    EXPECT_EQ(Time(0, kTc25), "00:00:00.00");
    EXPECT_EQ(Time(Seconds(3723.48), kTc25), "01:02:03.12");
    EXPECT_EQ(Time(-Seconds(3723.48), kTc25), "-01:02:03.12");
    // Rounds to the nearest frame; exactly half way stays below.
    EXPECT_EQ(Time(Seconds(11.5 / 25), kTc25), "00:00:00.11");
    EXPECT_EQ(Time(Seconds(11.5 / 25) + 1, kTc25), "00:00:00.12");
    EXPECT_EQ(Time(Seconds(12.0 / 25) - 1, kTc25), "00:00:00.12");
    EXPECT_EQ(Time(Seconds(59.99), kTc25), "00:01:00.00");

    double p = Seconds(3723.48);
    EXPECT_EQ(Time(p, kTc25 | eCodeColonFrames), "01:02:03:12");
    EXPECT_EQ(Time(p, kTc25 | eCodeNoFrames), "01:02:03");
    EXPECT_EQ(Time(p, kTc25 | eCodeNoHours), "62:03.12");
    EXPECT_EQ(Time(p, kTc25 | eCodeNoHours | eCodeHours), "00:62:03.12");
    EXPECT_EQ(Time(p, kTc25 | eCodeUnitNames), "01h 02mn 03s 12fr ");
    EXPECT_EQ(Time(Seconds(3.04), kTc25 | eCodeNoPadding), "0:0:3.1");
    EXPECT_EQ(Time(Seconds(10), kTc25 | eCodeFrameCount), ".250");
    EXPECT_EQ(Time(p, kTc25 | eCodeFrameCount), ".93087");
}

TEST(TimeToStringTimeCode, HiddenZeroFields)
{
    int hide = kTc25 | eCodeHideZeros;
    EXPECT_EQ(Time(Seconds(3.48), hide), "03.12");
    EXPECT_EQ(Time(Seconds(0.48), hide), ".12") << "the point comes even with nothing before";
    EXPECT_EQ(Time(0, hide), "00");
    EXPECT_EQ(Time(Seconds(3600.48), hide), "01:00:00.12");
    EXPECT_EQ(Time(Seconds(3600.48), hide | eCodeUnitNames), "01h 12fr ");
}

TEST(TimeToStringTimeCode, SubframesAndRates)
{
    EXPECT_EQ(Time(Seconds(0.49), kTc25 | eCodeQuarterFrames), "00:00:00.12.1");
    EXPECT_EQ(Time(Seconds(0.49), kTc25 | eCodeQuarterFrames | eCodeUnitNames), "00h 00mn 00s 12fr 1qf");
    EXPECT_EQ(Time(Seconds(12.34 / 25), kTc25 | eCodeHundredths), "00:00:00.12.34");
    EXPECT_EQ(Time(Seconds(12.999 / 25), kTc25 | eCodeHundredths), "00:00:00.13.00");
    EXPECT_EQ(Time(Seconds(12.992 / 25), kTc25 | eCodeHundredths), "00:00:00.12.99")
        << "a subframe count that reaches the unit stays below it";
    EXPECT_EQ(Time(Seconds(1.5), eTimeCode | eCodeRate1000), "00:00:01.500");
    EXPECT_EQ(Time(Seconds(1.5), eTimeCode | eCodeRate75), "00:00:01.37") << "37.5 frames: half way stays below";
    EXPECT_EQ(Time(Seconds(1.5), eTimeCode | eCodeRate24), "00:00:01.12");
    EXPECT_EQ(Time(Seconds(1.6), eTimeCode | eCodeRate1), "00:00:02.0");
    EXPECT_EQ(Time(Seconds(1.5, 96000), eTimeCode | eCodeRateBlock, TTimeMetrics(96000)), "00:00:01.0600");
    EXPECT_EQ(Time(Seconds(1.5, 192000), eTimeCode | eCodeRateBlock, TTimeMetrics(192000)), "00:00:01.0600");
    EXPECT_EQ(Time(Seconds(1.5), eTimeCode | eCodeRateBlock), "00:00:01.0551");
    TTimeMetrics fifty;
    fifty.frameRate = 50;
    EXPECT_EQ(Time(Seconds(1.5), eTimeCode, fifty), "00:00:01.25");
}

TEST(TimeToStringTimeCode, DropFrameMinutes)
{
    TTimeMetrics drop(48000);
    drop.SetDropMode(true);
    int tc = eTimeCode | eCodeRate2997;
    auto frame = [](double n) { return n * 48000 / 29.97; };
    EXPECT_EQ(Time(frame(1799), tc, drop), "00:00:59.29");
    EXPECT_EQ(Time(frame(1800), tc, drop), "00:01:00.02");
    EXPECT_EQ(Time(frame(3597), tc, drop), "00:01:59.29");
    EXPECT_EQ(Time(frame(3598), tc, drop), "00:02:00.02");
    EXPECT_EQ(Time(frame(17981), tc, drop), "00:09:59.29");
    EXPECT_EQ(Time(frame(17982), tc, drop), "00:10:00.00") << "every tenth minute keeps its frames";
    EXPECT_EQ(Time(frame(107892), tc, drop), "01:00:00.00");

    TTimeMetrics plain(48000);
    EXPECT_EQ(Time(48000, tc, plain), "00:00:01.00") << "29.97 frames on the count of 30";
    EXPECT_EQ(Time(frame(1800), tc, plain), "00:01:00.00");
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
        switch (i % 5) {
        case 0: position = std::floor(position); break;
        case 1: position = std::floor(position / 44100) * 44100; break;  // on a second
        case 2: position = std::floor(position / 22050) * 22050; break;  // on a half second
        case 3: position = std::nextafter(std::floor(position / 44100) * 44100, 0.0); break;
        default: break;
        }
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

TEST(GetExtraFrames2997, SkippedFrameNumbers)
{
    EXPECT_EQ(GetExtraFrames2997(-5), 0);
    EXPECT_EQ(GetExtraFrames2997(1799), 0);
    EXPECT_EQ(GetExtraFrames2997(1800), 2);
    EXPECT_EQ(GetExtraFrames2997(3597), 2);
    EXPECT_EQ(GetExtraFrames2997(3598), 4);
    EXPECT_EQ(GetExtraFrames2997(17982), 18);
    EXPECT_EQ(GetExtraFrames2997(19781), 18);
    EXPECT_EQ(GetExtraFrames2997(19782), 20);
    EXPECT_EQ(GetExtraFrames2997(2587609), 2590);
    EXPECT_EQ(GetExtraFrames2997(2587610), 2592);
    EXPECT_EQ(GetExtraFrames2997(2589407), 2592);
    EXPECT_EQ(GetExtraFrames2997(2589408), 0) << "from 24 hours on, no correction";
    EXPECT_EQ(GetExtraFrames2997(INT_MAX), 0);
}

TEST(TimeToStringSamplesAndBars, Texts)
{
    EXPECT_EQ(Time(1234.6, eTimeSamples), "1235");
    EXPECT_EQ(Time(1234.6, eTimeSamples | eSamplesUnit, TTimeMetrics(), 0x100), "1 235 smp");
    EXPECT_EQ(Time(-0.4, eTimeSamples), "0");
    EXPECT_EQ(Time(2, eTimeSamples, TTimeMetrics(), eTimePlusSign), "+2");

    int bars = eTimeBars | eBarsFromOne;
    EXPECT_EQ(Time(0, bars), "1:1.000");
    EXPECT_EQ(Time(0, eTimeBars), "0:0.000");
    EXPECT_EQ(Time(Seconds(1), bars), "1:3.000");
    EXPECT_EQ(Time(Seconds(2.25), bars), "2:1.240");
    EXPECT_EQ(Time(-Seconds(2.25), bars), "-1:0.240") << "negative positions count from zero";
    TTimeMetrics sixEight;
    sixEight.music.beatWidth = 8;
    sixEight.music.beatsPerMeasure = 6;
    EXPECT_EQ(Time(Seconds(1), bars, sixEight), "1:5.000");
    TTimeMetrics coarse;
    coarse.music.ticksPerQuarter = 96;
    EXPECT_EQ(Time(Seconds(0.25), bars, coarse), "1:1.48");
    EXPECT_EQ(Time(Seconds(0.25), bars, coarse, eTimeLeadingSpaces), "1:1.48");
}

TEST(TimeToString, BadInputsAreLoggedAndReplaced)
{
    LogCapture log;
    char buffer[64] = "untouched";
    TimeToString(44100.0, buffer, eClockSeconds, TTimeMetrics(), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TimeToString 1407"));

    for (double rate : {0.0, -48000.0, 0.5, double(NAN), 1e12}) {
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
    double const positions[] = {0, -1, 0.5, 1e9, -1e15, 9007199254740992.0, 1e300, -INFINITY, NAN};
    double const rates[] = {1, 44100, 2147483647.0, 0};
    double const frameRates[] = {25, 1e300, 1e-300, -3, NAN};
    int const formats[] = {-1, 0x7FFFFFFF, -1 & ~eTimeCode, (-1 & ~(eTimeCode | eTimeClock)) | eClockCompact,
                           eTimeCode | eCodeFrameCount | eCodeUnitNames | eCodeHundredths,
                           eTimeCode | eCodeUnitNames | eCodeQuarterFrames | eCodeNoHours | eCodeHours,
                           eTimeBars | eBarsFromOne, eTimeSamples | eSamplesUnit};
    for (double position : positions)
        for (double rate : rates)
            for (double frameRate : frameRates)
                for (int format : formats)
                    for (int options : {0, -1}) {
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

TEST(StringFromMilliseconds, Texts)
{
    struct { int ms; char const* text; } const cases[] = {
        {0, "0 ms"}, {1, "0.0 s"}, {999, "0.9 s"}, {1500, "1.5 s"}, {9999, "9.9 s"}, {10000, "10 s"},
        {59499, "59 s"}, {59500, "1 mn 0 s"}, {62000, "1 mn 2 s"}, {3599999, "1 h 0 s"},
        {3661000, "1 h 1 mn 1 s"}, {-1500, "-1.5 s"}, {INT_MAX, "596 h 31 mn 24 s"}, {INT_MIN, "-596 h 31 mn 24 s"}};
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

TEST(TimeToString, LongLongAndQStringForms)
{
    char narrow[64];
    TimeToString(88200LL, narrow, kClock | eClockSeconds, TTimeMetrics(), 0);
    EXPECT_STREQ(narrow, "2 s");
    TimeToString(88200, narrow, kClock | eClockSeconds, TTimeMetrics(), 0);
    EXPECT_STREQ(narrow, "2 s");
    EXPECT_EQ(QStringFromTime(88200LL, kTc25, TTimeMetrics()), QStringLiteral("00:00:02.00"));
    EXPECT_STREQ(AStringFromTime(88200LL, kTc25, TTimeMetrics()).c_str(), "00:00:02.00");
    EXPECT_STREQ(AStringFromTime(441.0, kClock | eClockMicroseconds, TTimeMetrics()).c_str(), "10000 \u00B5s");
    EXPECT_TRUE(WStringFromTime(-44100LL, kClock | eClockSeconds, TTimeMetrics()) == u"-1 s");
    EXPECT_TRUE(WStringFromTime(441.0, kClock | eClockMicroseconds, TTimeMetrics()) == u"10000 \u00B5s");
    EXPECT_EQ(QStringFromTime(-88200.0, kTc25, TTimeMetrics()), QStringLiteral("-00:00:02.00"));
}

} // namespace
