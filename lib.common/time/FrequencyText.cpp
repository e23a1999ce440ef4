#include "time/FrequencyText.h"

#include "text/NumberText.h"
#include "text/TString.h"
#include "time/TTimeMetrics.h"
#include "time/TimeToString.h"

#include <QCoreApplication>
#include <QString>

#include <cmath>

namespace {

double const s_semitoneLog = 0.057762265046662105;   // ln 2 / 12
double const s_centsPerLog = 1731.2340490667561;     // 1200 / ln 2
int const s_bufferSize = 64;

char const* const s_noteNames[12] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

template <class T>
T* PutAscii(T* out, char const* text)
{
    while (*text)
        *out++ = static_cast<T>(*text++);
    return out;
}

// The word after the cents, cut to what the buffer has left.
char* PutWord(char* out, QString const& word, int room)
{
    QByteArray bytes = word.toUtf8();
    int length = bytes.size();
    if (length > room) {
        length = room;
        while (length > 0 && (static_cast<unsigned char>(bytes[length]) & 0xC0) == 0x80)
            --length;
    }
    for (int i = 0; i < length; ++i)
        *out++ = bytes[i];
    return out;
}

char16_t* PutWord(char16_t* out, QString const& word, int room)
{
    int length = word.size() < room ? word.size() : room;
    char16_t const* text = reinterpret_cast<char16_t const*>(word.utf16());
    for (int i = 0; i < length; ++i)
        *out++ = text[i];
    return out;
}

int TotalCents(double frequency, double reference)
{
    if (!(frequency > 0))
        return 0;
    double ratio = frequency / reference;
    if (!(ratio > 0) || std::isinf(ratio))
        return 0;
    // A finite positive double's log stays within +-745: no int overflow.
    return static_cast<int>(std::round(std::log(ratio) * s_centsPerLog));
}

int FloorDivide(int value, int divisor)
{
    int quotient = value / divisor;
    return (value % divisor != 0 && value < 0) ? quotient - 1 : quotient;
}

template <class T>
void WriteNote(double frequency, T* buffer, int options, double reference)
{
    int note = 0, octave = 0, cents = 0;
    FrequencyToNote(frequency, &note, &octave, &cents, reference);
    bool tight = options & eNoteTight;
    T* p = PutAscii(buffer, s_noteNames[note]);
    if (!tight)
        *p++ = static_cast<T>(' ');
    p += IntToString(octave, p, 0, 0);
    if (cents != 0 || (options & eNoteAlwaysCents)) {
        if (!tight)
            p = PutAscii(p, " / ");
        p += IntToString(cents, p, 0, eNumPlusSign);
        if (!tight)
            *p++ = static_cast<T>(' ');
        QString word = QCoreApplication::translate("QObject", "cents", "Music tone context");
        p = PutWord(p, word, static_cast<int>(buffer + s_bufferSize - 1 - p));
    }
    *p = 0;
}

} // namespace

double FrequencyFromNote(int note, int octave, int cents, double reference)
{
    return reference * std::exp((note + 12.0 * octave - 45 + 0.01 * cents) * s_semitoneLog);
}

double FrequencyFromNote(int midiNote, int cents, double reference)
{
    return FrequencyFromNote(midiNote % 12, midiNote / 12 - 2, cents, reference);
}

void FrequencyToNote(double frequency, int* note, int* octave, int* cents, double reference)
{
    int total = TotalCents(frequency, reference);
    int semitones = static_cast<int>(std::round(total * 0.01));
    int rest = total - 100 * semitones;
    if (rest == -50) {
        --semitones;
        rest = 50;
    }
    int index = semitones + 9;
    if (note)
        *note = ((index % 12) + 12) % 12;
    if (octave)
        *octave = FloorDivide(index, 12) + 3;
    if (cents)
        *cents = rest;
}

void FrequencyToNote(double frequency, int* midiNote, int* cents, double reference)
{
    int note = 0, octave = 0;
    FrequencyToNote(frequency, &note, &octave, cents, reference);
    if (midiNote)
        *midiNote = note + 12 * (octave + 2);
}

template <class T>
void FrequencyToString(double frequency, T* buffer, int format, TTimeMetrics const* metrics, int options,
                       double reference)
{
    buffer[0] = 0;
    if (format & eFrequencyHz) {
        T* p = buffer + FloatToString(frequency, buffer, options);
        *PutAscii(p, " Hz") = 0;
    } else if (format & eFrequencyNote) {
        WriteNote(frequency, buffer, options, reference);
    } else if (format & eFrequencyPeriodMask) {
        TTimeMetrics const defaults;
        TTimeMetrics const& used = metrics ? *metrics : defaults;
        double period = used.sampleRate / (frequency > 1e-06 ? frequency : 1e-06);
        TimeToString(period, buffer, format, used, options);
    }
}

TString<char> AStringFromFrequency(double frequency, int format, TTimeMetrics const* metrics, int options,
                                   double reference)
{
    char text[s_bufferSize];
    FrequencyToString(frequency, text, format, metrics, options, reference);
    return TString<char>(text);
}

QString QStringFromFrequency(double frequency, int format, TTimeMetrics const* metrics, int options,
                             double reference)
{
    char16_t text[s_bufferSize];
    FrequencyToString(frequency, text, format, metrics, options, reference);
    return QString::fromUtf16(text);
}

template COMMON_EXPORT void FrequencyToString<char>(double, char*, int, TTimeMetrics const*, int, double);
template COMMON_EXPORT void FrequencyToString<char16_t>(double, char16_t*, int, TTimeMetrics const*, int, double);
