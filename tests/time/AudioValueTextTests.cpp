#include "text/NumberText.h"
#include "text/TString.h"
#include "time/AudioValueText.h"
#include "time/FrequencyText.h"
#include "time/TMidiNoteDisplay.h"
#include "time/TTimeMetrics.h"
#include "time/TimeToString.h"

#include <gtest/gtest.h>

#include <QString>

#include <climits>
#include <cmath>
#include <string>

namespace {

// The narrow text; the wide one differs only in its infinity sign.
std::string Level(double level, int format, int options = 0, char const* infinite = nullptr)
{
    char narrow[64];
    char16_t wide[64];
    AudioLevelToString(level, narrow, format, options, infinite);
    AudioLevelToString(level, wide, format, options, infinite);
    EXPECT_EQ(QString::fromUtf16(wide).replace(QChar(0x221E), "oo"), QString::fromUtf8(narrow));
    return narrow;
}

QString WideLevel(double level, int format, char const* infinite = nullptr)
{
    char16_t wide[64];
    AudioLevelToString(level, wide, format, 0, infinite);
    return QString::fromUtf16(wide);
}

std::string Frequency(double hz, int format, int options = 0, TTimeMetrics const* metrics = nullptr)
{
    char narrow[64];
    char16_t wide[64];
    FrequencyToString(hz, narrow, format, metrics, options, 440);
    FrequencyToString(hz, wide, format, metrics, options, 440);
    EXPECT_EQ(QString::fromUtf16(wide), QString::fromUtf8(narrow));
    return narrow;
}

std::string FileSize(long long size, int options)
{
    char narrow[48];
    char16_t wide[48];
    FileSizeToString(size, narrow, options);
    QFileSizeToString(size, wide, options);
    EXPECT_EQ(QString::fromUtf16(wide), QString::fromUtf8(narrow));
    EXPECT_EQ(QStringFromFileSize(size, options), QString::fromUtf8(narrow));
    EXPECT_STREQ(AStringFromFileSize(size, options).c_str(), narrow);
    return narrow;
}

TEST(AudioLevelToString, GainInDecibels)
{
    EXPECT_EQ(Level(0.0, eLevelGainAsDb), "-oo dB");
    EXPECT_EQ(Level(0.0, eLevelGainAsDb, eLevelNoUnit), "-oo");
    EXPECT_EQ(Level(0.0, eLevelGainAsDb, eLevelUnitLUFS), "-oo dB") << "silence always says dB";
    EXPECT_EQ(Level(1.1920928955078125e-07, eLevelGainAsDb), "-oo dB");
    EXPECT_EQ(Level(1.2e-07, eLevelGainAsDb, 1), "-138.4 dB");
    EXPECT_EQ(Level(-1.0, eLevelGainAsDb, 0, "n/a"), "n/a");
    EXPECT_EQ(Level(-1.0, eLevelGainAsDb), "");
    EXPECT_EQ(Level(1.0, eLevelGainAsDb, 1 | eLevelUnitLUFS), "0 LUFS") << "zero has no sign";
    EXPECT_EQ(Level(2.0, eLevelGainAsDb, 2 | eLevelUnitLUFS), "+6.02 LUFS") << "0x200 is also the plus sign";
    EXPECT_EQ(Level(0.5, eLevelGainAsDb, 2 | eLevelUnitLU), "-6.02 LU");
    EXPECT_EQ(WideLevel(0.0, eLevelGainAsDb), QStringLiteral("-\u221E dB"));
    EXPECT_EQ(WideLevel(-1.0, eLevelGainAsDb, "\xE2\x80\x94"), QStringLiteral("\u2014"));
}

TEST(AudioLevelToString, DecibelsPercentAndSamples)
{
    EXPECT_EQ(Level(-6.0, eLevelDb), "-6 dB");
    EXPECT_EQ(Level(-143.9, eLevelDb), "-144 dB");
    EXPECT_EQ(Level(-144.0, eLevelDb), "-oo dB");
    EXPECT_EQ(Level(NAN, eLevelDb), "-oo dB");
    EXPECT_EQ(Level(3.4028234663852886e+38, eLevelDb, 0, "+oo"), "+oo dB");
    EXPECT_EQ(Level(0.255, eLevelPercent, 1), "25.5 %");
    EXPECT_EQ(Level(0.255, eLevelPercent | eLevelDb, 1 | eLevelNoUnit), "25.5") << "percent comes before dB";
    EXPECT_EQ(Level(0.5, eLevelSample16), "16384");
    EXPECT_EQ(Level(-1.0, eLevelSample8, 2 | eLevelUnitLUFS), "-128") << "no options, no unit";
    EXPECT_EQ(Level(0.5, eLevelSample20), "262144");
    EXPECT_EQ(Level(1.0, eLevelSample24), "8388608");
    EXPECT_EQ(Level(1e300, eLevelSample24), "2147483647");
    EXPECT_EQ(Level(0.125, 0, 3 | eLevelUnitLU), "0.125");

    std::string const longText(199, 'w');
    EXPECT_EQ(Level(1e39, eLevelDb, eLevelUnitLUFS, longText.c_str()), std::string(40, 'w') + " LUFS");
}

TEST(FrequencyToNote, NotesOctavesAndCents)
{
    int note = -1, octave = -1, cents = -1, midi = -1;
    FrequencyToNote(440.0, &note, &octave, &cents, 440.0);
    EXPECT_EQ(note, 9);
    EXPECT_EQ(octave, 3);
    EXPECT_EQ(cents, 0);
    EXPECT_DOUBLE_EQ(FrequencyFromNote(69, 0, 432.0), 432.0);
    EXPECT_DOUBLE_EQ(FrequencyFromNote(9, 4, 0, 440.0), 880.0);

    for (int n = 0; n < 128; ++n) {
        for (int c : {-49, -1, 0, 1, 49, 50}) {
            FrequencyToNote(FrequencyFromNote(n, c, 440.0), &midi, &cents, 440.0);
            ASSERT_EQ(midi, n) << c;
            ASSERT_EQ(cents, c) << n;
        }
        FrequencyToNote(FrequencyFromNote(n, -50, 440.0), &midi, &cents, 440.0);
        ASSERT_EQ(midi, n - 1) << "50 cents below is the lower note";
        ASSERT_EQ(cents, 50);
    }
    FrequencyToNote(FrequencyFromNote(0, 2, 440.0), &note, &octave, &cents, 440.0);
    EXPECT_EQ(note, 0);
    EXPECT_EQ(octave, -2);
    for (double bad : {0.0, -3.0, double(NAN), double(INFINITY)}) {
        FrequencyToNote(bad, &midi, &cents, 440.0);
        EXPECT_EQ(midi, 69) << bad;
        EXPECT_EQ(cents, 0);
    }
    FrequencyToNote(440.0, &midi, nullptr, 0.0);
    EXPECT_EQ(midi, 69);
    FrequencyToNote(440.0, nullptr, nullptr, nullptr, 440.0);
}

TEST(FrequencyToString, HertzNotesAndPeriods)
{
    EXPECT_EQ(Frequency(440, eFrequencyNote), "A 3");
    EXPECT_EQ(Frequency(440, eFrequencyNote, eNoteAlwaysCents), "A 3 / 0 cents") << "zero has no sign";
    EXPECT_EQ(Frequency(FrequencyFromNote(61, 12, 440), eFrequencyNote), "C# 3 / +12 cents");
    EXPECT_EQ(Frequency(FrequencyFromNote(0, -12, 440), eFrequencyNote), "C -2 / -12 cents");
    EXPECT_EQ(Frequency(FrequencyFromNote(61, 12, 440), eFrequencyNote, eNoteTight), "C#3+12cents");
    EXPECT_EQ(Frequency(1234.5, eFrequencyHz, eNumGroupDigits | 1), "1 234.5 Hz");
    EXPECT_EQ(Frequency(441, eTimeSamples), "100");
    TTimeMetrics metrics(48000);
    EXPECT_EQ(Frequency(1000, eTimeClock | eClockMilliseconds, 0, &metrics), "1 ms");
    EXPECT_EQ(Frequency(0, eTimeSamples), "44100000000");
    EXPECT_EQ(Frequency(440, 0x40), "");
}

TEST(MidiNotes, NamesNumbersAndClamping)
{
    EXPECT_EQ(QStringFromMidiNote(0, eMidiNameFromCm2), QStringLiteral("C-2"));
    EXPECT_EQ(QStringFromMidiNote(-1, eMidiNameFromCm2), QStringLiteral("C-2"));
    EXPECT_EQ(QStringFromMidiNote(60, eMidiNameFromCm2), QStringLiteral("C3"));
    EXPECT_EQ(QStringFromMidiNote(61, eMidiNameFromCm1), QStringLiteral("C#4"));
    EXPECT_EQ(QStringFromMidiNote(69, eMidiNameFromC0), QStringLiteral("A5"));
    EXPECT_EQ(QStringFromMidiNote(200, eMidiNameFromCm2), QStringLiteral("G8"));
    EXPECT_EQ(QStringFromMidiNote(127, eMidiNameFromC0), QStringLiteral("G10")) << "the last row of the table";
    EXPECT_EQ(QStringFromMidiNote(7, eMidiNumberPadded), QStringLiteral("007"));
    EXPECT_EQ(QStringFromMidiNote(300, static_cast<EMidiNoteFormat>(9)), QStringLiteral("127"));
    EXPECT_STREQ(AStringFromMidiNote(22, eMidiNameFromCm1).c_str(), "A#0");

    TMidiNoteDisplay display;
    EXPECT_EQ(display.ToString(60), QStringLiteral("60 (C3)"));
    display.sequence = TMidiNoteDisplay::eNameThenNumber;
    display.numberFormat = eMidiNumberPadded;
    EXPECT_EQ(display.ToString(60), QStringLiteral("C3 (060)"));
    display.sequence = TMidiNoteDisplay::eNameOnly;
    EXPECT_EQ(display.ToString(60), QStringLiteral("C3"));
    display.sequence = TMidiNoteDisplay::eNumberOnly;
    EXPECT_EQ(display.ToString(60), QStringLiteral("060"));
    display.sequence = 4;
    EXPECT_EQ(display.ToString(60), QString());
    EXPECT_NE(display, TMidiNoteDisplay());
}

TEST(FileSizeAndRates, Texts)
{
    EXPECT_EQ(FileSize(0, eFileSizeAutoUnit), "0");
    EXPECT_EQ(FileSize(1023, eFileSizeAutoUnit), "1023 B");
    EXPECT_EQ(FileSize(1024, eFileSizeAutoUnit | 1), "1 kB");
    EXPECT_EQ(FileSize(1536, eFileSizeAutoUnit | 1 | eValueNoSpace), "1.5kB");
    EXPECT_EQ(FileSize(1536, eFileSizeAutoUnit | 2), "1.5 kB");
    EXPECT_EQ(FileSize(1048575, eFileSizeAutoUnit | 2), "1024 kB");
    EXPECT_EQ(FileSize(1048576, eFileSizeAutoUnit | 2 | 0x1000), "1.00 MB");
    EXPECT_EQ(FileSize(3LL << 30, eFileSizeAutoUnit), "3 GB");
    EXPECT_EQ(FileSize(5LL << 40, eFileSizeAutoUnit | 0x100), "5 TB") << "no digit groups in this form";
    EXPECT_EQ(FileSize(2047, eFileSizeKilobytes), "1 kB");
    EXPECT_EQ(FileSize(2047, eFileSizeKilobytes | eValueNoSpace), "1kB");
    EXPECT_EQ(FileSize(1234567, 0), "1 234 567 bytes");
    EXPECT_EQ(FileSize(-5, eFileSizeAutoUnit), "-5 B");
    EXPECT_EQ(FileSize(LLONG_MAX, 0), "9 223 372 036 854 775 808 bytes");
    EXPECT_EQ(QStringFromSampleRate(44100), QStringLiteral("44 100 Hz"));
    EXPECT_EQ(QStringFromBitRate(320000), QStringLiteral("320kbps"));
    EXPECT_EQ(QStringFromBitRate(999), QStringLiteral("0kbps"));
    EXPECT_STREQ(AStringFromSampleRate(192000).c_str(), "192 000 Hz");
    EXPECT_STREQ(AStringFromBitRate(1411200).c_str(), "1 411kbps");
    EXPECT_TRUE(WStringFromBitRate(128000) == u"128kbps");
    EXPECT_STREQ(AStringFromAudioLevel(0.0, eLevelGainAsDb, 0).c_str(), "-oo dB");
    EXPECT_STREQ(AStringFromFrequency(440.0, eFrequencyNote, nullptr, 0, 440.0).c_str(), "A 3");
}

} // namespace
