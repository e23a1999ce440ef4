#include "time/TimeToString.h"

#include "diag/LogCategories.h"
#include "text/NumberText.h"
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

long long FloorField(double value)
{
    return ToField(std::floor(value));
}

long long RoundField(double value)
{
    return ToField(std::round(value));
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
    void PutNumber(long long value, int width, int options) { m_p += Int64ToString(value, m_p, width, options); }
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
    if (format & eClockHours) {
        double unit = r * 3600;
        f.hours = FloorField(x / unit);
        x -= f.hours * unit;
        f.showHours = f.hours != 0 || fixed;
    }
    // Always taken away: without the minutes bit they are lost to the text,
    // not carried into the seconds.
    double minute = r * 60;
    f.minutes = FloorField(x / minute);
    x -= f.minutes * minute;
    f.showMinutes = (format & eClockMinutes) && (f.minutes != 0 || fixed);

    bool finer = format & (eClockSampleUnit | eClockMilliseconds | eClockMicroseconds);
    f.seconds = finer ? FloorField(x / r) : RoundField(x / r);
    x -= f.seconds * r;
    f.showSeconds = (format & eClockSeconds) && (f.seconds != 0 || fixed);

    if (format & eClockMilliseconds) {
        double unit = r * 0.001;
        f.milliseconds = (format & (eClockSampleUnit | eClockMicroseconds)) ? FloorField(x / unit) : RoundField(x / unit);
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
        f.microseconds = (format & eClockSampleUnit) ? FloorField(x / unit) : RoundField(x / unit);
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

    long long hours = 0, frames = 0, sub = 0;
    if (!(format & eCodeNoHours)) {
        hours = FloorField(x / (r * 3600));
        x -= hours * (r * 3600);
    }
    long long minutes = FloorField(x / (r * 60));
    x -= minutes * (r * 60);
    long long seconds = FloorField(x / r);
    x -= seconds * r;
    if (!(format & eCodeNoFrames)) {
        frames = FloorField(x / (r / f));
        x -= frames * (r / f);
    }
    if (x < 0)
        x = 0;
    bool withSub = format & (eCodeQuarterFrames | eCodeHundredths);
    long long units = (format & eCodeHundredths) ? 100 : 4;
    if (withSub) {
        sub = RoundField(units * f * x / r);
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
