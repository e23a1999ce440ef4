#pragma once

#include "core/CommonExport.h"

class QString;
template <class T>
class TString;
class TTimeMetrics;

enum EFrequencyFormat : int
{
    eFrequencyPeriodMask = 0xF, // one period in samples, as TimeToString shows it with this format
    eFrequencyHz = 0x10,        // "440 Hz"
    eFrequencyNote = 0x20,      // "A 3 / +12 cents"
};

enum EFrequencyOption : int
{
    eNoteTight = 0x400,       // "A3+12cents"
    eNoteAlwaysCents = 0x1000 // cents also when 0
};

// Notes count from 0 for C to 11 for B; A of octave 3, MIDI note 69, sounds
// at the caller's reference frequency.
COMMON_EXPORT double FrequencyFromNote(int midiNote, int cents, double reference);
COMMON_EXPORT double FrequencyFromNote(int note, int octave, int cents, double reference);
// The nearest note and the cents from it, in -49 to +50 (a frequency halfway
// between two notes belongs to the lower one). A frequency of 0 or less, or
// one that makes no finite ratio to the reference (NaN, infinite, a reference
// of 0 or less), gives the reference's note with 0 cents. Pointers may be null.
COMMON_EXPORT void FrequencyToNote(double frequency, int* midiNote, int* cents, double reference);
COMMON_EXPORT void FrequencyToNote(double frequency, int* note, int* octave, int* cents, double reference);

// A frequency as hertz, as a note, or as the period in samples; nothing for
// another format. A null metrics counts as the default TTimeMetrics, and a
// frequency below 1e-06 as 1e-06. 64 characters hold any result.
template <class T>
COMMON_EXPORT void FrequencyToString(double frequency, T* buffer, int format, TTimeMetrics const* metrics,
                                     int options, double reference);
COMMON_EXPORT TString<char> AStringFromFrequency(double frequency, int format, TTimeMetrics const* metrics,
                                                 int options, double reference);
COMMON_EXPORT QString QStringFromFrequency(double frequency, int format, TTimeMetrics const* metrics, int options,
                                           double reference);
