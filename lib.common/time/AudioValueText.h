#pragma once

#include "core/CommonExport.h"

class QString;
template <class T>
class TString;

// The format word of AudioLevelToString: the first bit set, in the order
// gain, percent, decibels, sample values, rules.
enum EAudioLevelFormat : int
{
    eLevelGainAsDb = 0x1, // a linear gain shown in decibels
    eLevelDb = 0x2,       // a value already in decibels
    eLevelPercent = 0x4,
    eLevelSample8 = 0x8, // the level as a sample value of so many bits
    eLevelSample16 = 0x10,
    eLevelSample20 = 0x20,
    eLevelSample24 = 0x40,
};

// Options beside the number options, which reach FloatToString too (where
// 0x100 groups digits and 0x200 adds a plus sign).
enum EAudioValueOption : int
{
    eLevelUnitLU = 0x100,
    eLevelUnitLUFS = 0x200,
    eValueNoSpace = 0x400,   // file sizes, notes: "12kB", "A3"
    eFileSizeAutoUnit = 0x800,
    eLevelNoUnit = 0x2000,
    eFileSizeKilobytes = 0x80000,
};

// Levels: "-6.02 dB", "-oo dB", "50 %", "16384". A negative gain gives
// infiniteText alone (empty if null), a decibel value from the largest float
// on gives infiniteText and the unit. Silence of a gain (2^-23 or less) is
// "-oo" and " dB" whatever the LU bits; the wide form writes "-" and U+221E
// instead of "-oo". infiniteText is UTF-8 and is cut at 40 characters, so 64
// characters hold any result. A NaN decibel value counts as silence, a NaN
// gain gives "nan dB"; NaN and infinite sample values give 0 and the int
// limits.
template <class T>
COMMON_EXPORT void AudioLevelToString(double level, T* buffer, int format, int options, char const* infiniteText);
COMMON_EXPORT TString<char> AStringFromAudioLevel(double level, int format, int options,
                                                  char const* infiniteText = nullptr);
COMMON_EXPORT QString QStringFromAudioLevel(double level, int format, int options, char const* infiniteText = nullptr);

// File sizes: "1 234 bytes" (no unit option: 2 decimals, digit groups),
// "12 kB" (eFileSizeKilobytes: whole kB, rounded down), "1.5 MB"
// (eFileSizeAutoUnit: B, kB, MB, GB, TB by size, the decimals of the options;
// 0 alone has no unit). A negative size keeps its sign ("-5 B"; whole kB
// round down, so -5 bytes are "-1 kB"). 40 characters are ample.
COMMON_EXPORT void FileSizeToString(long long size, char* buffer, int options);
// The same into a UTF-16 buffer.
COMMON_EXPORT void QFileSizeToString(long long size, char16_t* buffer, int options);
COMMON_EXPORT TString<char> AStringFromFileSize(long long size, int options);
COMMON_EXPORT QString QStringFromFileSize(long long size, int options);

// "44 100 Hz"; "320kbps" (the rate in bits per second, cut to whole kbps).
COMMON_EXPORT TString<char> AStringFromSampleRate(int rate);
COMMON_EXPORT QString QStringFromSampleRate(int rate);
COMMON_EXPORT TString<char> AStringFromBitRate(int rate);
COMMON_EXPORT TString<char16_t> WStringFromBitRate(int rate);
COMMON_EXPORT QString QStringFromBitRate(int rate);
