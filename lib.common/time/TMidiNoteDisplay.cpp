#include "time/TMidiNoteDisplay.h"

#include "text/NumberText.h"
#include "text/TString.h"

#include <QString>

namespace {

char const* const s_noteNames[12] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

// Row r of the name table, 152 rows from "C-2" to "G10", sharps only.
template <class T>
T* PutNoteName(T* out, int row)
{
    for (char const* c = s_noteNames[row % 12]; *c; ++c)
        *out++ = static_cast<T>(*c);
    return out + IntToString(row / 12 - 2, out, 0, 0);
}

QString MidiNoteText(int note, int format)
{
    char16_t text[16];
    MidiNoteToString(note, text, static_cast<EMidiNoteFormat>(format));
    return QString::fromUtf16(text);
}

} // namespace

template <class T>
void MidiNoteToString(int note, T* buffer, EMidiNoteFormat format)
{
    if (note < 0)
        note = 0;
    else if (note > 127)
        note = 127;
    switch (format) {
    case eMidiNameFromCm2:
    case eMidiNameFromCm1:
    case eMidiNameFromC0:
        *PutNoteName(buffer, note + 12 * (format - eMidiNameFromCm2)) = 0;
        break;
    case eMidiNumberPadded:
        IntToString(note, buffer, 3, 0);
        break;
    default:
        IntToString(note, buffer, 0, 0);
        break;
    }
}

TString<char> AStringFromMidiNote(int note, EMidiNoteFormat format)
{
    char text[16];
    MidiNoteToString(note, text, format);
    return TString<char>(text);
}

QString QStringFromMidiNote(int note, EMidiNoteFormat format)
{
    return MidiNoteText(note, format);
}

QString TMidiNoteDisplay::ToString(int note) const
{
    switch (sequence) {
    case eNameOnly:
        return MidiNoteText(note, nameFormat);
    case eNumberOnly:
        return MidiNoteText(note, numberFormat);
    case eNameThenNumber:
        return MidiNoteText(note, nameFormat) + QStringLiteral(" (") + MidiNoteText(note, numberFormat)
             + QLatin1Char(')');
    case eNumberThenName:
        return MidiNoteText(note, numberFormat) + QStringLiteral(" (") + MidiNoteText(note, nameFormat)
             + QLatin1Char(')');
    default:
        return QString();
    }
}

bool TMidiNoteDisplay::operator==(TMidiNoteDisplay const& other) const
{
    return numberFormat == other.numberFormat && nameFormat == other.nameFormat && sequence == other.sequence;
}

template COMMON_EXPORT void MidiNoteToString<char>(int, char*, EMidiNoteFormat);
template COMMON_EXPORT void MidiNoteToString<char16_t>(int, char16_t*, EMidiNoteFormat);
