#pragma once

#include "core/CommonExport.h"
#include "core/TSlotSequence.h"
#include "core/TVector.h"
#include "text/TMatchContext.h"

#include <cstdint>

class TRegExpParseHelper;
struct TRegExprAccelerator;

// The library's own pattern language, compiled to a small instruction set and
// run by a backtracking interpreter over a zero-terminated text.
//
//   ^ (first)   anchors at the start      $ (last)   the end of the text
//   .           any character             [..] [^..] class, negated class
//   { }         capture, numbered from 0  ( )        group without capture
//   !x          x does not match here     a|b        alternatives, in order
//   * + ?       greedy                    *? +? ??   lazy
//   /d /l /w    digit, letter, letter or digit; upper case negates
//   /v /y /s    letter or _, letter digit or _, blank (not in mode 1)
//   /x /f /b    1..127, file-name character, boundary (not in mode 1)
//   /1../9      back reference to capture 0..8 (mode 0 only)
//   /z /u /i    word, unsigned number, signed number
//   /q /e       string in double quotes; identifier (/e in mode 0 only)
//   /c          any other character c taken literally; // is a slash
// Inside a class / escapes the next character; in mode 0 /n /r /t are line
// feed, carriage return and tab.
//
// Case-insensitive patterns are lowered, except a character directly behind a
// slash, and run over a lowered copy of the text: /A never matches.
//
// Bytes of 128 and above in a narrow class are looked up by their unsigned
// value in both [..] and [^..], so a class written in UTF-8 holds the bytes of
// its characters: [éè]+ matches "éè", [^é] refuses both bytes of an é. A
// class still tests single bytes, never whole characters, and a range can't
// cross from 127 to 128, as characters compare signed.
//
// Backtracking restores the instruction only, not the position: a lazy loop
// resumes where the rest of the pattern gave up (.*?bc finds "bc" in "abbc",
// not "abbc"). A loop's turn that takes nothing fails, lazy ones included, and
// ?? on an item of several instructions enters it at its second one.
//
// Parse refuses groups nested deeper than 256 as unclosed (2 or 3), and loops
// whose copies would grow the program past some millions of instructions (+
// nested twenty deep) as error 9. Any text either compiles or gives an error.
//
// One compiled object may serve several threads at once: matching keeps all
// its state in locals and in the caller's TMatchContext. The interpreter has
// no step limit, so a pattern can take exponential time.

// 0 the full dialect, 1 the reduced one. Other values count as 0 where the
// dialect asks for "not 1", and as 1 where it asks for "0".
enum ERegex2Mode : int32_t
{
    eRegex2ModeFull = 0,
    eRegex2ModeReduced = 1,
};

enum EParseError : int32_t
{
    eParseErrorNone = 0,
    eParseErrorUnclosedCapture = 2,  // { without }
    eParseErrorUnclosedGroup = 3,    // ( without )
    eParseErrorUnclosedClass = 4,    // [ without ], or a range without its end
    eParseErrorAbbreviation = 5,     // an abbreviation's text did not compile
    eParseErrorEmptyClass = 6,       // [] or [^]
    eParseErrorBackReference = 7,    // to a capture not yet opened
    eParseErrorRangeOrder = 8,       // a range that ends below its start
    eParseErrorEmptyLoop = 9,        // * + *? +? on what can match nothing
    eParseErrorNullPattern = 10,
};

enum class EInstructionType : int32_t
{
    Nop = 0,
    CaptureStart,
    CaptureEnd,
    CaptureSave,
    CaptureRestore,
    AnyChar,
    Char,
    Digit,
    NotDigit,
    Letter,
    NotLetter,
    Alnum,
    NotAlnum,
    IdStart,
    NotIdStart,
    IdChar,
    NotIdChar,
    Blank,
    NotBlank,
    Boundary,
    Ascii,
    NotAscii,
    FileNameChar,
    NotFileNameChar,
    CharSet,
    NotCharSet,
    CharRanges,
    NotCharRanges,
    QuantPlus,
    QuantPlusLazy,
    QuantOptional,
    QuantOptionalLazy,
    QuantStar,
    QuantStarLazy,
    PushPos,
    PopPos,
    SetMemPos,
    GetMemPos,
    SetMemStack,
    GetMemStack,
    PushMem,
    PopMem,
    Goto,
    Branch,
    Fail,
    FailIfMemPos,
    BackReference,
    NextStart,
    StopScan,
    Success,
};

struct TInstruction
{
    EInstructionType m_type;
    int32_t m_operand;
};
static_assert(sizeof(TInstruction) == 8, "two 32-bit fields");

// The program and its counts; what does not depend on the character type.
class COMMON_EXPORT TRegExprBase
{
public:
    EParseError GetLastParseError() const { return m_lastParseError; }
    ERegex2Mode GetMode() const { return m_mode; }
    bool IsCaseSensitive() const { return m_caseSensitive; }
    int GetCaptureCount() const { return m_captureCount; }
    int GetMemoryCount() const { return m_memoryCount; }
    int GetProgramSize() const { return m_program.GetNumBusySlots(); }
    // A narrow class keeps its 256-bit set in the slots behind it.
    static int InstructionsPerRangeBitField() { return 4; }

protected:
    explicit TRegExprBase(ERegex2Mode mode);
    TRegExprBase(TRegExprBase const& other);
    TRegExprBase& operator=(TRegExprBase const& other);
    ~TRegExprBase();

    void SetLastParseError(EParseError error) { m_lastParseError = error; }
    void Reset(bool caseSensitive);
    TInstruction& Instruction(int index) { return static_cast<TInstruction*>(m_program.FirstSlot())[index]; }
    TInstruction const& Instruction(int index) const
    {
        return static_cast<TInstruction const*>(m_program.GetFirstSlot())[index];
    }
    TInstruction const* Code() const { return static_cast<TInstruction const*>(m_program.GetFirstSlot()); }
    int AddInstruction(EInstructionType type, int operand = 0);
    // count zeroed slots; the index of the first.
    int AddInstructions(int count);
    // The instruction gets a new memory cell.
    int AddMemInstruction(EInstructionType type);
    void TruncateProgram(int size) { m_program.SetNumBusySlots(size); }
    // Appends a copy of instructions [from, from + count) as if they had been
    // compiled again at the end: jumps into the block follow it, memory cells
    // are renumbered from the current count. Returns the copy's index.
    int AppendRelocatedCopy(TInstruction const* block, int from, int count, int firstCell, int cellCount);
    void FreeAccelerator();

    EParseError m_lastParseError;
    TSlotSequence m_program;
    int m_captureCount;
    int m_memoryCount;
    ERegex2Mode m_mode;
    bool m_caseSensitive;
    // Set while parsing only.
    bool m_enteredMidItem;
    int m_nesting;
    int m_programLimit;
    // Built after a successful parse; read-only while matching.
    TRegExprAccelerator* m_accelerator;
};

template <class T>
class COMMON_EXPORT TRegExpr : public TRegExprBase
{
public:
    explicit TRegExpr(ERegex2Mode mode = eRegex2ModeFull) : TRegExprBase(mode) {}
    TRegExpr(TRegExpr const& other) = default;
    TRegExpr& operator=(TRegExpr const& other) = default;

    // Compiles; 0 or the first error. A failed parse leaves a program that
    // matches nothing.
    EParseError Parse(T const* pattern, bool caseSensitive = true);
    // Scans the context's text for the first match. end, if given, receives
    // where the run stopped (null when there was nothing to run).
    bool Match(TMatchContext<T>& context, T const** end = nullptr) const;

    // The whole match, empty if none or empty; *pos its offset or -1.
    TString<T> FindFirst(T const* text, int* pos = nullptr) const;
    // Capture 0, or the whole match when there are no captures; *pos its
    // offset or -1. whole is cleared and receives the whole match.
    TString<T> FindFirstCapture(T const* text, int* pos = nullptr, TString<T>* whole = nullptr) const;
    // Capture index; empty, and *pos -1, if there is no match, no such capture
    // or an empty one.
    TString<T> FindCapture(T const* text, int index, int* pos = nullptr) const;
    // Matches again and again on the text behind the previous match and
    // collects capture 0, or the whole match. Stops at the first match that
    // doesn't move on. Returns the number of tokens.
    int Tokenize(T const* text, TVector<TString<T>>& tokens) const;

private:
    int ParseRegularExpression(T const** pos, bool& canBeEmpty, TRegExpParseHelper& helper);
    int ParseOrExpression(T const** pos, bool& canBeEmpty, TRegExpParseHelper& helper);
    int ParseExpression(T const** pos, bool& canBeEmpty);
    int ParseSimpleExpression(T const** pos, bool& canBeEmpty);
    int ParseMatchGroup(T const** pos, bool& canBeEmpty);
    int ParsePatternGroup(T const** pos, bool& canBeEmpty);
    int ParseCharClass(T const** pos, bool& canBeEmpty);
    int ParseAbbreviation(T const** pos, bool& canBeEmpty);
    int ParseNot(T const** pos, bool& canBeEmpty);
    int ParseCharSet(T const** pos, bool negated);
    bool ParseCharItem(T const** pos, T* first, T* last);
    int ParseGroupBody(T const** pos, bool& canBeEmpty, T close, EParseError unclosed, int branch);
    int ParseEscape(T const** pos, bool& canBeEmpty);
    static T PeekToken(T const* const* pos) { return **pos; }
    static bool MatchToken(T const** pos, T c);
    T GetEscapedChar(T const** pos) const;
    void BuildAccelerator();

    // Runs over text, which is the context's text or its lowered copy.
    bool Run(T const* text, TMatchContext<T>& context, T const** end) const;
    void FixupMatchContext(TMatchContext<T>& context, T const* original, T const* copy) const;
};

extern template class COMMON_EXPORT TRegExpr<char>;
extern template class COMMON_EXPORT TRegExpr<char16_t>;
