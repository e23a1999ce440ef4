#pragma once

// What a compiled TRegExpr learns about its own program after parsing, so
// that matching can skip work whose outcome is known. Internal to the
// library; read-only while matching.

#include "text/TRegExpr.h"

// Replaces the first instruction of a greedy loop over one character test.
// Its operand indexes TRegExprAccelerator::m_loops.
constexpr EInstructionType kFastLoop = static_cast<EInstructionType>(64);

struct TRegExprLoop
{
    int m_cell;        // the loop's memory cell
    int m_item;        // the character test
    int m_exit;        // the instruction after the loop
    bool m_possessive; // what follows can't match a character the loop took
    int m_captureEndCount;
    int m_captureEnds[4]; // CaptureEnd instructions between the loop and that test
};

// Characters below 256 one by one; m_high stands for all above.
struct TRegExprCharSet
{
    bool m_low[256];
    bool m_high;
};

struct TRegExprAccelerator
{
    // The program enters an item past its first instruction (the lazy ?? on
    // a longer item), so its stack may pop values of the wrong kind and its
    // class data may run as code: it runs with every value checked.
    bool m_checked;
    // Checked programs only: 1 for each slot that holds class data.
    unsigned char* m_isData;

    // Every match must begin with a character of this set: the scan passes
    // over the others without trying them.
    bool m_scan;
    int m_scanChar; // when the set is that one character, else -1
    TRegExprCharSet m_first;

    int m_loopCount;
    TRegExprLoop* m_loops;
};

TRegExprAccelerator* NewRegExprAccelerator(int programSize, bool checked, int loopCount);
TRegExprAccelerator* CloneRegExprAccelerator(TRegExprAccelerator const* source, int programSize);
void DeleteRegExprAccelerator(TRegExprAccelerator* accelerator);
