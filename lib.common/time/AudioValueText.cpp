#include "time/AudioValueText.h"

#include "core/StringConstants.h"
#include "text/NumberText.h"
#include "text/TString.h"

#include <QString>

#include <climits>
#include <cmath>
#include <cstring>

namespace {

double const s_silentGain = 1.1920928955078125e-07; // 2^-23
double const s_largestFloat = 3.4028234663852886e+38;
int const s_maxInfiniteText = 40;

template <class T>
T* PutAscii(T* out, char const* text)
{
    while (*text)
        *out++ = static_cast<T>(*text++);
    return out;
}

// infiniteText is the caller's UTF-8; it is cut on a character boundary.
char* PutInfiniteText(char* out, char const* text)
{
    if (!text)
        return out;
    int length = static_cast<int>(std::strlen(text));
    if (length > s_maxInfiniteText) {
        length = s_maxInfiniteText;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
    }
    std::memcpy(out, text, length);
    return out + length;
}

char16_t* PutInfiniteText(char16_t* out, char const* text)
{
    if (!text)
        return out;
    QString wide = QString::fromUtf8(text);
    int length = wide.size() < s_maxInfiniteText ? wide.size() : s_maxInfiniteText;
    std::memcpy(out, wide.utf16(), length * sizeof(char16_t));
    return out + length;
}

char* PutMinusInfinite(char* out)
{
    return PutAscii(out, "-oo");
}

char16_t* PutMinusInfinite(char16_t* out)
{
    int length = ks_minusInfinite.size();
    std::memcpy(out, ks_minusInfinite.utf16(), length * sizeof(char16_t));
    return out + length;
}

template <class T>
T* PutLevelUnit(T* out, int options)
{
    if (options & eLevelNoUnit)
        return out;
    if (options & eLevelUnitLU)
        return PutAscii(out, " LU");
    if (options & eLevelUnitLUFS)
        return PutAscii(out, " LUFS");
    return PutAscii(out, " dB");
}

int RoundToInt(double value)
{
    if (std::isnan(value))
        return 0;
    double rounded = std::round(value);
    if (rounded >= INT_MAX)
        return INT_MAX;
    if (rounded <= INT_MIN)
        return INT_MIN;
    return static_cast<int>(rounded);
}

template <class T>
T* PutSampleRate(int rate, T* out)
{
    out += IntToString(rate, out, 0, eNumGroupDigits);
    *PutAscii(out, " Hz") = 0;
    return out;
}

template <class T>
T* PutBitRate(int rate, T* out)
{
    out += IntToString(rate / 1000, out, 0, eNumGroupDigits);
    *PutAscii(out, "kbps") = 0;
    return out;
}

template <class T>
T* PutLevel(double level, T* p, int format, int options, char const* infiniteText)
{
    if (format & eLevelGainAsDb) {
        if (level < 0)
            return PutInfiniteText(p, infiniteText);
        if (level <= s_silentGain) {
            p = PutMinusInfinite(p);
            return (options & eLevelNoUnit) ? p : PutAscii(p, " dB");
        }
        p += FloatToString(20 * std::log10(level), p, options);
        return PutLevelUnit(p, options);
    }
    if (format & eLevelPercent) {
        p += FloatToString(level * 100, p, options);
        return (options & eLevelNoUnit) ? p : PutAscii(p, " %");
    }
    if (format & eLevelDb) {
        if (level >= s_largestFloat)
            p = PutInfiniteText(p, infiniteText);
        else if (level > -144.0)
            p += FloatToString(level, p, options);
        else
            p = PutMinusInfinite(p);
        return PutLevelUnit(p, options);
    }
    double fullScale = (format & eLevelSample8)    ? 128
                     : (format & eLevelSample16) ? 32768
                     : (format & eLevelSample20) ? 524288
                     : (format & eLevelSample24) ? 8388608
                                                 : 0;
    if (fullScale != 0)
        return p + IntToString(RoundToInt(level * fullScale), p, 0, 0);
    return p + FloatToString(level, p, options);
}

struct TSizeUnit
{
    double size;
    char const* name;
};

TSizeUnit const s_sizeUnits[] = {{1099511627776.0, "TB"}, {1073741824.0, "GB"}, {1048576.0, "MB"}, {1024.0, "kB"}};

template <class T>
void PutFileSize(long long size, T* buffer, int options)
{
    T* p = buffer;
    double bytes = static_cast<double>(size);
    char const* space = (options & eValueNoSpace) ? "" : " ";
    if (options & eFileSizeKilobytes) {
        p += Int64ToString(static_cast<long long>(std::floor(bytes / 1024)), p, 0, 0);
        p = PutAscii(p, space);
        p = PutAscii(p, "kB");
    } else if (options & eFileSizeAutoUnit) {
        TSizeUnit const* unit = nullptr;
        for (TSizeUnit const& candidate : s_sizeUnits) {
            if (bytes >= candidate.size) {
                unit = &candidate;
                break;
            }
        }
        if (!unit) {
            p += Int64ToString(size, p, 0, 0);
            if (size != 0) {
                p = PutAscii(p, space);
                *p++ = static_cast<T>('B');
            }
        } else {
            p += FloatToString(bytes / unit->size, p, options & (eNumKeepTrailingZeros | eNumDecimalsMask));
            p = PutAscii(p, space);
            p = PutAscii(p, unit->name);
        }
    } else {
        p += FloatToString(bytes, p, eNumGroupDigits | NumDecimals(2));
        p = PutAscii(p, " bytes");
    }
    *p = 0;
}

} // namespace

template <class T>
void AudioLevelToString(double level, T* buffer, int format, int options, char const* infiniteText)
{
    T* end = PutLevel(level, buffer, format, options, infiniteText);
    *end = 0;
}

TString<char> AStringFromAudioLevel(double level, int format, int options, char const* infiniteText)
{
    char text[64];
    AudioLevelToString(level, text, format, options, infiniteText);
    return TString<char>(text);
}

QString QStringFromAudioLevel(double level, int format, int options, char const* infiniteText)
{
    char16_t text[64];
    AudioLevelToString(level, text, format, options, infiniteText);
    return QString::fromUtf16(text);
}

void FileSizeToString(long long size, char* buffer, int options)
{
    PutFileSize(size, buffer, options);
}

void QFileSizeToString(long long size, char16_t* buffer, int options)
{
    PutFileSize(size, buffer, options);
}

TString<char> AStringFromFileSize(long long size, int options)
{
    char text[48];
    PutFileSize(size, text, options);
    return TString<char>(text);
}

QString QStringFromFileSize(long long size, int options)
{
    char16_t text[48];
    PutFileSize(size, text, options);
    return QString::fromUtf16(text);
}

TString<char> AStringFromSampleRate(int rate)
{
    char text[24];
    PutSampleRate(rate, text);
    return TString<char>(text);
}

QString QStringFromSampleRate(int rate)
{
    char16_t text[24];
    PutSampleRate(rate, text);
    return QString::fromUtf16(text);
}

TString<char> AStringFromBitRate(int rate)
{
    char text[24];
    PutBitRate(rate, text);
    return TString<char>(text);
}

TString<char16_t> WStringFromBitRate(int rate)
{
    char16_t text[24];
    PutBitRate(rate, text);
    return TString<char16_t>(text);
}

QString QStringFromBitRate(int rate)
{
    char16_t text[24];
    PutBitRate(rate, text);
    return QString::fromUtf16(text);
}

template COMMON_EXPORT void AudioLevelToString<char>(double, char*, int, int, char const*);
template COMMON_EXPORT void AudioLevelToString<char16_t>(double, char16_t*, int, int, char const*);
