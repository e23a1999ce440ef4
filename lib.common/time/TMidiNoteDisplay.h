#pragma once

#include "core/CommonExport.h"

class QString;
template <class T>
class TString;
class TTaggedOutputStream;
class TTaggedInputStream;

// How a MIDI note number shows. Any other value counts as eMidiNumber.
enum EMidiNoteFormat : int
{
    eMidiNumber = 0,         // "60"
    eMidiNumberPadded = 1,   // "060"
    eMidiNameFromCm2 = 2,    // note 0 is "C-2": 60 is "C3"
    eMidiNameFromCm1 = 3,    // note 0 is "C-1": 60 is "C4"
    eMidiNameFromC0 = 4,     // note 0 is "C0": 60 is "C5"
};

// Writes the note, first clamped to 0 to 127; 8 characters are ample.
template <class T>
COMMON_EXPORT void MidiNoteToString(int note, T* buffer, EMidiNoteFormat format);
COMMON_EXPORT TString<char> AStringFromMidiNote(int note, EMidiNoteFormat format);
COMMON_EXPORT QString QStringFromMidiNote(int note, EMidiNoteFormat format);

// A host's choice of how to show a note. State values: "num", "key", "seq".
class COMMON_EXPORT TMidiNoteDisplay
{
public:
    enum ESequence : int
    {
        eNameOnly = 0,
        eNumberOnly = 1,
        eNameThenNumber = 2, // "C3 (60)"
        eNumberThenName = 3, // "60 (C3)"
    };

    int numberFormat = eMidiNumber;
    int nameFormat = eMidiNameFromCm2;
    int sequence = eNumberThenName;

    // Empty for a sequence out of range.
    QString ToString(int note) const;

    bool operator==(TMidiNoteDisplay const& other) const;
    bool operator!=(TMidiNoteDisplay const& other) const { return !(*this == other); }

    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);
};
