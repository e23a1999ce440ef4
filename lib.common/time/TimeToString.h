#pragma once

#include "core/CommonExport.h"
#include "time/TTimeMetrics.h"

class QString;
template <class T>
class TString;

// The format word of TimeToString: the family, then what the family shows.
// The same bit may mean different things in different families.
enum ETimeFormat : int
{
    // Families, tested in this order: time code, clock, samples, bars.
    eTimeClock = 0x1,
    eTimeCode = 0x2,
    eTimeSamples = 0x4,
    eTimeBars = 0x8,

    // Clock: "1 h 02 mn 03 s 450 ms".
    eClockSampleUnit = 0x4,
    eClockHours = 0x40,
    eClockMinutes = -0x7FFFFFFF - 1, // 0x80000000
    eClockSeconds = 0x100,
    eClockMilliseconds = 0x200,
    eClockMicroseconds = 0x400,
    eClockCompact = 0x20000,      // no space before unit names when several fields show
    eClockShortMarks = 0x2000000, // ' after minutes, " after seconds
    eClockNoSecondMark = 0x40000000,
    eClockDigital = 0x4000000, // no names for minutes and seconds; ":" before the seconds
    eClockHMS = eClockHours | eClockMinutes | eClockSeconds,

    // Samples: "88200 smp".
    eSamplesUnit = 0x8000,

    // Time code: "01:02:03.12".
    eCodeHours = 0x40, // with eCodeNoHours: show them all the same
    eCodeUnitNames = 0x8000,
    eCodeHideZeros = 0x20000,
    eCodeRateMask = 0x3C0000, // none of these: TTimeMetrics::frameRate
    eCodeRate24 = 0x40000,
    eCodeRate25 = 0x80000,
    eCodeRate2997 = 0xC0000,
    eCodeRate30 = 0x100000,
    eCodeRate75 = 0x140000,
    eCodeRate1000 = 0x180000,
    eCodeRateBlock = 0x1C0000, // one frame per block of the sample rate
    eCodeRate1 = 0x200000,
    eCodeQuarterFrames = 0x800,
    eCodeHundredths = 0x1000,
    eCodeNoPadding = 0x4000,
    eCodeFrameCount = 0x1000000, // the whole position as one count of frames
    eCodeColonFrames = 0x8000000,
    eCodeNoHours = 0x10000000,
    eCodeNoFrames = 0x20000000,

    // Bars: "5:3.240".
    eBarsFromOne = 0x400000,
};

// The options word of TimeToString.
enum ETimeOption : int
{
    eTimePlusSign = 0x200,
    eTimeLeadingSpaces = 0x4000, // handed to IntToString
    eTimeSpaceBeforeMarks = 0x40000,
    eTimeFixedLayout = 0x100000, // zero fields show, with fixed widths
    eTimeSampleNumberMask = 0x300,
};

// Writes position, a count of samples, as text of the family that format
// chooses. The buffer is the caller's; 64 characters hold any result.
// Nothing throws. Bad inputs are logged on LogNoGoZone as "TimeToString"
// and a number, and replaced:
//   no family bit                            1407, the text stays empty;
//   a sample rate that truncates to no
//   positive int (0, negative, NaN, huge)    910, 44100 is used;
//   a time code frame rate of 0, or one
//   that is negative, NaN or above 1e9       966, 25 is used;
//   a NaN position                           911, 0 is used;
//   beyond +-2^53 samples, or infinite       912, +-2^53 is used.
// A frame rate near 0 gives absurd but bounded fields.
template <class T>
COMMON_EXPORT void TimeToString(double position, T* buffer, int format, TTimeMetrics const& metrics, int options);
template <class T>
COMMON_EXPORT void TimeToString(long long position, T* buffer, int format, TTimeMetrics const& metrics, int options);
template <class T>
inline void TimeToString(int position, T* buffer, int format, TTimeMetrics const& metrics, int options)
{
    TimeToString<T>(static_cast<long long>(position), buffer, format, metrics, options);
}

COMMON_EXPORT TString<char> AStringFromTime(double position, int format, TTimeMetrics const& metrics, int options = 0);
COMMON_EXPORT TString<char> AStringFromTime(long long position, int format, TTimeMetrics const& metrics,
                                            int options = 0);
COMMON_EXPORT TString<char16_t> WStringFromTime(double position, int format, TTimeMetrics const& metrics,
                                                int options = 0);
COMMON_EXPORT TString<char16_t> WStringFromTime(long long position, int format, TTimeMetrics const& metrics,
                                                int options = 0);
// A position of integer type other than long long needs a cast to one of
// the two.
COMMON_EXPORT QString QStringFromTime(double position, int format, TTimeMetrics const& metrics, int options = 0);
COMMON_EXPORT QString QStringFromTime(long long position, int format, TTimeMetrics const& metrics, int options = 0);

// How many frame numbers 29.97 drop-frame time code has skipped up to the
// real frame frames: 0 before the first minute and from 24 hours on.
COMMON_EXPORT int GetExtraFrames2997(int frames);

// A duration for people: "0 ms", "9.9 s" (tenths cut below 10 s),
// "1 mn 2 s", "1 h 0 s" (seconds rounded from 10 s on). A negative value
// gets "-" in front of the text of its size. 32 characters are ample.
template <class T>
COMMON_EXPORT void StringFromMilliseconds(T* buffer, int milliseconds);
COMMON_EXPORT QString StringFromMilliseconds(int milliseconds);
