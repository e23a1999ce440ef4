#include "time/TimeToString.h"

#include "diag/LogCategories.h"
#include "text/NumberText.h"
#include "text/NumberTextDigits.h"
#include "text/TString.h"

#include <QString>

#include <cmath>

namespace {

double const s_maxPosition = 9007199254740992.0; // 2^53: every sample count still exact

// Fields are whole numbers held in doubles; they saturate on the way to an
// integer so that an absurd frame rate can't overflow the conversion.
long long ToField(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= 9.2e18)
        return 9200000000000000000LL;
    if (value <= -9.2e18)
        return -9200000000000000000LL;
    return static_cast<long long>(value);
}

// floor and round (halves away from zero) by one truncation: no libm call
// on the hot path, the same results.
inline long long FloorField(double value)
{
    if (!(value > -9.2e18 && value < 9.2e18))
        return ToField(value);
    long long whole = static_cast<long long>(value);
    return whole - (static_cast<double>(whole) > value);
}

inline long long RoundField(double value)
{
    if (!(value > -9.2e18 && value < 9.2e18))
        return ToField(value);
    long long whole = static_cast<long long>(value);
    double rest = value - static_cast<double>(whole); // exact: |value| < 2^63
    return whole + (rest >= 0.5) - (rest <= -0.5);
}

// Whole seconds of x in one division, when that can't differ from
// taking hours, minutes and seconds off one division at a time. Below 2^48
// every step of that chain is exact, so the two could part only where x / r
// lies within rounding distance of a whole or half second; such an x takes
// the long road. A whole x is at least 1 / r away from those points unless
// it is exactly on them, which a multiplication back checks.
inline bool SplitSeconds(double x, double r, long long* seconds, double* fraction)
{
    if (!(x < 281474976710656.0)) // 2^48
        return false;
    double q = x / r;
    long long whole = static_cast<long long>(q);
    double rest = q - static_cast<double>(whole);
    if (x == static_cast<double>(static_cast<long long>(x))) {
        long long nearest = whole + (rest >= 0.5);
        if (static_cast<double>(nearest) * r == x) {
            *seconds = nearest;
            *fraction = 0;
            return true;
        }
    }
    double margin = q * 8.881784197001252e-16; // 2^-50
    if (rest <= margin || rest >= 1 - margin || std::fabs(rest - 0.5) <= margin)
        return false;
    *seconds = whole;
    *fraction = rest;
    return true;
}

// floor(a / b), or a / b rounded, as the division gives it, through a
// product with an approximate reciprocal (within four units in the last
// place of 1 / b) wherever that product lies clear of the point where the
// two could round apart. Elsewhere, and for negative or huge values, the
// division itself decides.
inline long long FloorQuotient(double a, double b, double reciprocal)
{
    double y = a * reciprocal;
    if (y >= 0 && y < 281474976710656.0) {
        long long whole = static_cast<long long>(y);
        double rest = y - static_cast<double>(whole);
        double margin = y * 1.7763568394002505e-15; // 2^-49
        if (a == 0 || (rest > margin && rest < 1 - margin))
            return whole;
    }
    return FloorField(a / b);
}

inline long long RoundQuotient(double a, double b, double reciprocal)
{
    double y = a * reciprocal;
    if (y >= 0 && y < 281474976710656.0) {
        long long whole = static_cast<long long>(y);
        double rest = y - static_cast<double>(whole);
        if (std::fabs(rest - 0.5) > y * 1.7763568394002505e-15)
            return whole + (rest > 0.5);
    }
    return RoundField(a / b);
}

template <class T>
class TTextCursor
{
public:
    explicit TTextCursor(T* buffer) : m_p(buffer) {}

    void Put(char c) { *m_p++ = static_cast<T>(c); }
    void Put(char const* text)
    {
        while (*text)
            *m_p++ = static_cast<T>(*text++);
    }
    void PutMicro();
    void PutNumber(long long value, int width, int options)
    {
        // Most fields have up to three digits, padded or not; they skip the
        // general path.
        if (static_cast<unsigned long long>(value) < 1000 && width <= 3 && !(options & eTimeLeadingSpaces)) {
            unsigned v = static_cast<unsigned>(value);
            if (v >= 100 || width == 3) {
                *m_p++ = static_cast<T>('0' + v / 100);
                m_p = PutTwoDigits(m_p, v % 100);
            } else if (v >= 10 || width == 2) {
                m_p = PutTwoDigits(m_p, v);
            } else {
                *m_p++ = static_cast<T>('0' + v);
            }
            return;
        }
        m_p += Int64ToString(value, m_p, width, options);
    }
    void PutSign(double position, int options)
    {
        if (position < 0)
            Put('-');
        else if (position > 0 && (options & eTimePlusSign))
            Put('+');
    }
    T* Position() const { return m_p; }
    void Skip(int count) { m_p += count; }
    void End() { *m_p = 0; }

private:
    T* m_p;
};

template <>
void TTextCursor<char>::PutMicro()
{
    Put(static_cast<char>(0xC2)); // U+00B5 in UTF-8
    Put(static_cast<char>(0xB5));
}

template <>
void TTextCursor<char16_t>::PutMicro()
{
    *m_p++ = u'\u00B5';
}

void LogTimeToString(int number)
{
    qCWarning(LogNoGoZone) << "TimeToString" << number;
}

int UsableSampleRate(double rate)
{
    if (rate >= 1.0 && rate < 2147483648.0)
        return static_cast<int>(rate);
    LogTimeToString(910);
    return 44100;
}

double UsablePosition(double position)
{
    if (std::isnan(position)) {
        LogTimeToString(911);
        return 0;
    }
    if (std::fabs(position) > s_maxPosition) {
        LogTimeToString(912);
        return position < 0 ? -s_maxPosition : s_maxPosition;
    }
    return position;
}

// --- clock -----------------------------------------------------------------

struct TClockFields
{
    long long hours = 0, minutes = 0, seconds = 0, milliseconds = 0, microseconds = 0, samples = 0;
    bool showHours = false, showMinutes = false, showSeconds = false;
    bool showMilliseconds = false, showMicroseconds = false, showSamples = false;
};

TClockFields SplitClock(double x, double r, int format, bool fixed)
{
    TClockFields f;
    double perSample = 1 / r;
    bool finer = format & (eClockSampleUnit | eClockMilliseconds | eClockMicroseconds);
    long long total = 0;
    double fraction = 0;
    if (SplitSeconds(x, r, &total, &fraction)) {
        if (format & eClockHours) {
            f.hours = total / 3600;
            total -= f.hours * 3600;
        }
        f.minutes = total / 60;
        f.seconds = total - f.minutes * 60 + (!finer && fraction >= 0.5);
        // One exact subtraction, as the chain of exact ones would give.
        x -= static_cast<double>((f.hours * 60 + f.minutes) * 60 + f.seconds) * r;
    } else {
        if (format & eClockHours) {
            double unit = r * 3600;
            f.hours = FloorField(x / unit);
            x -= f.hours * unit;
        }
        // Always taken away: without the minutes bit they are lost to the
        // text, not carried into the seconds.
        double minute = r * 60;
        f.minutes = FloorField(x / minute);
        x -= f.minutes * minute;
        f.seconds = finer ? FloorField(x / r) : RoundField(x / r);
        x -= f.seconds * r;
    }
    f.showHours = (format & eClockHours) && (f.hours != 0 || fixed);
    f.showMinutes = (format & eClockMinutes) && (f.minutes != 0 || fixed);
    f.showSeconds = (format & eClockSeconds) && (f.seconds != 0 || fixed);

    if (format & eClockMilliseconds) {
        double unit = r * 0.001;
        double perUnit = 1000 * perSample;
        f.milliseconds = (format & (eClockSampleUnit | eClockMicroseconds)) ? FloorQuotient(x, unit, perUnit)
                                                                           : RoundQuotient(x, unit, perUnit);
        x -= f.milliseconds * unit;
        if (x < 0)
            x = 0;
        if (f.milliseconds == 1000 && (format & eClockSeconds)) {
            f.milliseconds = 0;
            ++f.seconds;
            f.showSeconds = true;
        }
        f.showMilliseconds = f.milliseconds != 0 || fixed;
    }
    if (format & eClockMicroseconds) {
        double unit = r * 0.000001;
        double perUnit = 1000000 * perSample;
        f.microseconds = (format & eClockSampleUnit) ? FloorQuotient(x, unit, perUnit) : RoundQuotient(x, unit, perUnit);
        x -= f.microseconds * unit;
        if (x < 0)
            x = 0;
        f.showMicroseconds = f.microseconds != 0 || fixed;
    }
    f.samples = RoundField(x);
    f.showSamples = (format & eClockSampleUnit) && (f.samples != 0 || fixed);

    if (!(f.showHours || f.showMinutes || f.showSeconds || f.showMilliseconds || f.showMicroseconds || f.showSamples))
        f.showSeconds = true;
    return f;
}

template <class T>
void WriteClock(TTextCursor<T>& out, double x, double r, int format, int options)
{
    bool fixed = options & eTimeFixedLayout;
    TClockFields f = SplitClock(x, r, format, fixed);
    int shown = f.showHours + f.showMinutes + f.showSeconds + f.showMilliseconds + f.showMicroseconds + f.showSamples;
    bool compact = (format & eClockCompact) && shown > 1;
    bool digital = format & eClockDigital;
    bool marks = !digital && (format & eClockShortMarks);
    bool spaceBeforeMark = options & eTimeSpaceBeforeMarks;
    int numberOptions = options & eTimeLeadingSpaces;
    int bigWidth = fixed ? 2 : 0;
    int secondsWidth = fixed || (format & (eClockShortMarks | eClockDigital)) ? 2 : 0;
    int smallWidth = fixed ? 3 : 0;
    char const* space = compact ? "" : " ";
    bool any = false;

    if (f.showHours) {
        out.PutNumber(f.hours, bigWidth, numberOptions);
        out.Put(space);
        out.Put('h');
        any = true;
    }
    if (f.showMinutes) {
        if (any && !digital && (!marks || spaceBeforeMark))
            out.Put(' ');
        out.PutNumber(f.minutes, bigWidth, numberOptions);
        if (marks) {
            out.Put('\'');
        } else if (!digital) {
            out.Put(space);
            out.Put("mn");
        }
        any = true;
    }
    if (f.showSeconds) {
        if (any) {
            if (digital)
                out.Put(':');
            else if (!marks || spaceBeforeMark)
                out.Put(' ');
        }
        out.PutNumber(f.seconds, secondsWidth, numberOptions);
        if (marks) {
            if (!(format & eClockNoSecondMark))
                out.Put('"');
        } else if (!digital) {
            out.Put(space);
            out.Put('s');
        }
        any = true;
    }
    if (f.showMilliseconds) {
        if (any)
            out.Put(' ');
        out.PutNumber(f.milliseconds, smallWidth, numberOptions);
        out.Put(space);
        out.Put("ms");
        any = true;
    }
    if (f.showMicroseconds) {
        if (any)
            out.Put(' ');
        out.PutNumber(f.microseconds, smallWidth, numberOptions);
        out.Put(space);
        out.PutMicro();
        out.Put('s');
        any = true;
    }
    if (f.showSamples) {
        if (any)
            out.Put(' ');
        out.PutNumber(f.samples, 0, numberOptions);
        out.Put(space);
        out.Put("smp");
    }
}

// --- time code -------------------------------------------------------------

double TimeCodeFrameRate(int format, int rate, double metricsRate)
{
    double f;
    switch (format & eCodeRateMask) {
    case eCodeRate24: return 24;
    case eCodeRate25: return 25;
    case eCodeRate2997: return 29.97;
    case eCodeRate30: return 30;
    case eCodeRate75: return 75;
    case eCodeRate1000: return 1000;
    case eCodeRate1: return 1;
    case eCodeRateBlock:
        if (rate == 88200 || rate == 96000)
            f = rate * 0.0125;
        else if (rate == 176400 || rate == 192000)
            f = rate * 0.00625;
        else
            f = rate * 0.025;
        break;
    default:
        f = metricsRate;
        break;
    }
    if (!(f > 0 && f <= 1e9)) {
        LogTimeToString(966);
        f = 25;
    }
    return f;
}

int FrameFieldWidth(double f)
{
    if (f > 10000)
        return 5;
    if (f > 1000)
        return 4;
    if (f > 100)
        return 3;
    if (f > 10)
        return 2;
    return 0;
}

template <class T>
void WriteTimeCode(TTextCursor<T>& out, double x, double r, int format, TTimeMetrics const& metrics, int options)
{
    double f = TimeCodeFrameRate(format, static_cast<int>(r), metrics.frameRate);
    double d = (format & eCodeQuarterFrames) ? 8 : (format & eCodeHundredths) ? 200 : 2;
    // Just under half of the smallest unit shown: the truncations below then
    // round to nearest, and a position on a boundary never rounds past it.
    x += r / (d * f) * 0.9999;
    // A frame rate near zero makes that half unit astronomic; keep the
    // fields within reach of the position limit.
    if (!(x <= 2 * s_maxPosition))
        x = 2 * s_maxPosition;
    if (f == 29.97) {
        if (metrics.IsDropMode()) {
            double p = f * x / r;
            double realFrame = std::floor(p);
            int frame = realFrame >= 2147483647.0 ? 2147483647 : static_cast<int>(realFrame);
            x = (GetExtraFrames2997(frame) + p) * r / 30;
        } else {
            x *= 0.999;
        }
        f = 30;
    }

    long long hours = 0, minutes = 0, seconds = 0, frames = 0, sub = 0;
    long long total = 0;
    double fraction = 0;
    double perSample = 1 / r;
    if (SplitSeconds(x, r, &total, &fraction)) {
        if (!(format & eCodeNoHours))
            hours = total / 3600;
        minutes = total / 60 - hours * 60;
        seconds = total % 60;
        x -= static_cast<double>(total) * r;
    } else {
        if (!(format & eCodeNoHours)) {
            hours = FloorField(x / (r * 3600));
            x -= hours * (r * 3600);
        }
        minutes = FloorField(x / (r * 60));
        x -= minutes * (r * 60);
        seconds = FloorField(x / r);
        x -= seconds * r;
    }
    if (!(format & eCodeNoFrames)) {
        frames = FloorQuotient(x, r / f, f * perSample);
        x -= frames * (r / f);
    }
    if (x < 0)
        x = 0;
    bool withSub = format & (eCodeQuarterFrames | eCodeHundredths);
    long long units = (format & eCodeHundredths) ? 100 : 4;
    if (withSub) {
        sub = RoundQuotient(units * f * x, r, perSample);
        if (sub == units)
            sub = units - 1;
    }

    bool z = format & eCodeHideZeros;
    bool n = format & eCodeUnitNames;
    bool showHours = ((format & eCodeHours) || !(format & eCodeNoHours)) && !(z && hours == 0);
    bool showMinutes = !(z && minutes == 0 && (hours == 0 || n));
    bool showSeconds = !(z && seconds == 0 && ((hours == 0 && minutes == 0) || n));
    bool showFrames = !(format & eCodeNoFrames)
                   && !(z && frames == 0 && ((hours == 0 && minutes == 0 && seconds == 0) || n));
    bool showSub = withSub && !(z && sub == 0 && ((hours == 0 && minutes == 0 && frames == 0) || n));
    if (!(showHours || showMinutes || showSeconds || showFrames || showSub))
        showSeconds = true;

    int numberOptions = options & eTimeLeadingSpaces;
    int w = (format & eCodeNoPadding) ? 0 : 2;
    if (!(format & eCodeFrameCount)) {
        bool any = false;
        if (showHours) {
            out.PutNumber(hours, w, numberOptions);
            if (n)
                out.Put("h ");
            any = true;
        }
        if (showMinutes) {
            if (any && !n)
                out.Put(':');
            out.PutNumber(minutes, w, numberOptions);
            if (n)
                out.Put("mn ");
            any = true;
        }
        if (showSeconds) {
            if (any && !n)
                out.Put(':');
            out.PutNumber(seconds, w, numberOptions);
            if (n)
                out.Put("s ");
        }
    }
    if (showFrames) {
        long long value = frames;
        int width = 0;
        if (format & eCodeFrameCount)
            value = ToField(frames + std::trunc(((hours * 60.0 + minutes) * 60.0 + seconds) * f));
        else if (!(format & eCodeNoPadding))
            width = FrameFieldWidth(f);
        if (!n)
            out.Put((format & eCodeColonFrames) ? ':' : '.');
        out.PutNumber(value, width, numberOptions);
        if (n)
            out.Put("fr ");
    }
    if (showSub) {
        if (!n)
            out.Put('.');
        int width = (format & (eCodeNoPadding | eCodeHundredths)) == eCodeHundredths ? 2 : 0;
        out.PutNumber(sub, width, numberOptions);
        if (n)
            out.Put(units == 4 ? "qf" : "hf");
    }
}

// --- bars ------------------------------------------------------------------

int TicksWidth(TMusicMetrics const& music)
{
    double v = std::trunc(music.ticksPerQuarter * 4.0 / music.beatWidth);
    if (!(v >= 10) || v >= 100000)
        return 0;
    return v < 100 ? 2 : v < 1000 ? 3 : v < 10000 ? 4 : 5;
}

template <class T>
void WriteBars(TTextCursor<T>& out, double position, double r, int format, TTimeMetrics const& metrics, int options)
{
    double x = std::round(std::fabs(position));
    out.PutSign(position, options);
    int bars = 0, beats = 0, ticks = 0;
    metrics.music.TimeToBars(x / r, &bars, &beats, &ticks);
    long long first = (format & eBarsFromOne) && !(position < 0) ? 1 : 0;
    int numberOptions = options & (eTimeFixedLayout | eTimeLeadingSpaces);
    out.PutNumber(bars + first, 0, numberOptions);
    out.Put(':');
    out.PutNumber(beats + first, 0, numberOptions);
    out.Put('.');
    out.PutNumber(ticks, TicksWidth(metrics.music), numberOptions);
}

template <class T>
void WriteTime(double position, T* buffer, int format, TTimeMetrics const& metrics, int options)
{
    buffer[0] = 0;
    double r = UsableSampleRate(metrics.sampleRate);
    if (!(format & (eTimeClock | eTimeCode | eTimeSamples | eTimeBars))) {
        LogTimeToString(1407);
        return;
    }
    position = UsablePosition(position);
    TTextCursor<T> out(buffer);
    if (format & eTimeCode) {
        out.PutSign(position, options);
        WriteTimeCode(out, std::fabs(position), r, format, metrics, options);
    } else if (format & eTimeClock) {
        out.PutSign(position, options);
        WriteClock(out, std::fabs(position), r, format, options);
    } else if (format & eTimeSamples) {
        out.Skip(FloatToString(position, out.Position(), options & eTimeSampleNumberMask));
        if (format & eSamplesUnit)
            out.Put(" smp");
    } else {
        WriteBars(out, position, r, format, metrics, options);
    }
    out.End();
}

// --- drop frame ------------------------------------------------------------

struct TDropFrameTable
{
    static int const s_count = 1297;
    int start[s_count];
    int skipped[s_count];
};

constexpr TDropFrameTable BuildDropFrameTable()
{
    TDropFrameTable table{};
    int n = 0;
    int dropped = 0;
    for (int minute = 1; minute < 1440; ++minute) {
        if (minute % 10 == 0)
            continue;
        table.start[n] = 1800 * minute - dropped;
        dropped += 2;
        table.skipped[n] = dropped;
        ++n;
    }
    // From 24 hours on there is no correction.
    table.start[n] = 1800 * 1440 - dropped;
    table.skipped[n] = 0;
    return table;
}

constexpr TDropFrameTable s_dropFrames = BuildDropFrameTable();
static_assert(s_dropFrames.start[0] == 1800 && s_dropFrames.skipped[1295] == 2592, "drop frame table");

template <class T>
void WriteMilliseconds(T* buffer, int milliseconds)
{
    TTextCursor<T> out(buffer);
    long long ms = milliseconds;
    if (ms < 0) {
        out.Put('-');
        ms = -ms;
    }
    if (ms == 0) {
        out.Put("0 ms");
        out.End();
        return;
    }
    long long original = ms;
    if (ms >= 10000)
        ms += 500;
    bool any = false;
    if (ms >= 3600000) {
        out.PutNumber(ms / 3600000, 0, 0);
        out.Put(" h");
        ms %= 3600000;
        any = true;
    }
    if (ms >= 60000) {
        if (any)
            out.Put(' ');
        out.PutNumber(ms / 60000, 0, 0);
        out.Put(" mn");
        ms %= 60000;
        any = true;
    }
    if (any)
        out.Put(' ');
    out.PutNumber(ms / 1000, 0, 0);
    if (original < 10000) {
        out.Put('.');
        out.PutNumber(ms % 1000 / 100, 0, 0);
    }
    out.Put(" s");
    out.End();
}

} // namespace

template <class T>
void TimeToString(double position, T* buffer, int format, TTimeMetrics const& metrics, int options)
{
    WriteTime(position, buffer, format, metrics, options);
}

template <class T>
void TimeToString(long long position, T* buffer, int format, TTimeMetrics const& metrics, int options)
{
    WriteTime(static_cast<double>(position), buffer, format, metrics, options);
}

TString<char> AStringFromTime(double position, int format, TTimeMetrics const& metrics, int options)
{
    char text[64];
    WriteTime(position, text, format, metrics, options);
    return TString<char>(text);
}

TString<char> AStringFromTime(long long position, int format, TTimeMetrics const& metrics, int options)
{
    return AStringFromTime(static_cast<double>(position), format, metrics, options);
}

TString<char16_t> WStringFromTime(double position, int format, TTimeMetrics const& metrics, int options)
{
    char16_t text[64];
    WriteTime(position, text, format, metrics, options);
    return TString<char16_t>(text);
}

TString<char16_t> WStringFromTime(long long position, int format, TTimeMetrics const& metrics, int options)
{
    return WStringFromTime(static_cast<double>(position), format, metrics, options);
}

QString QStringFromTime(double position, int format, TTimeMetrics const& metrics, int options)
{
    char16_t text[64];
    WriteTime(position, text, format, metrics, options);
    return QString::fromUtf16(text);
}

QString QStringFromTime(long long position, int format, TTimeMetrics const& metrics, int options)
{
    return QStringFromTime(static_cast<double>(position), format, metrics, options);
}

int GetExtraFrames2997(int frames)
{
    int const* first = s_dropFrames.start;
    // Counts the starts at or below frames: the last of them rules.
    int low = 0, high = TDropFrameTable::s_count;
    while (low < high) {
        int middle = (low + high) / 2;
        if (first[middle] <= frames)
            low = middle + 1;
        else
            high = middle;
    }
    return low == 0 ? 0 : s_dropFrames.skipped[low - 1];
}

template <class T>
void StringFromMilliseconds(T* buffer, int milliseconds)
{
    WriteMilliseconds(buffer, milliseconds);
}

QString StringFromMilliseconds(int milliseconds)
{
    char16_t text[40];
    WriteMilliseconds(text, milliseconds);
    return QString::fromUtf16(text);
}

template COMMON_EXPORT void TimeToString<char>(double, char*, int, TTimeMetrics const&, int);
template COMMON_EXPORT void TimeToString<char16_t>(double, char16_t*, int, TTimeMetrics const&, int);
template COMMON_EXPORT void TimeToString<char>(long long, char*, int, TTimeMetrics const&, int);
template COMMON_EXPORT void TimeToString<char16_t>(long long, char16_t*, int, TTimeMetrics const&, int);
template COMMON_EXPORT void StringFromMilliseconds<char>(char*, int);
template COMMON_EXPORT void StringFromMilliseconds<char16_t>(char16_t*, int);
