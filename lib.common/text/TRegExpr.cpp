#include "text/TRegExpr.h"

#include "diag/FailureReporting.h"
#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "text/CharOps.h"
#include "text/RegExprAccelerator.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

// ---- the untyped base ------------------------------------------------------

TRegExprBase::TRegExprBase(ERegex2Mode mode)
    : m_lastParseError(eParseErrorNone), m_program(sizeof(TInstruction), 20, 20), m_captureCount(0),
      m_memoryCount(0), m_mode(mode), m_caseSensitive(true), m_enteredMidItem(false), m_nesting(0),
      m_programLimit(INT_MAX), m_accelerator(nullptr)
{
}

TRegExprBase::TRegExprBase(TRegExprBase const& other)
    : m_lastParseError(other.m_lastParseError), m_program(other.m_program, true),
      m_captureCount(other.m_captureCount), m_memoryCount(other.m_memoryCount), m_mode(other.m_mode),
      m_caseSensitive(other.m_caseSensitive), m_enteredMidItem(other.m_enteredMidItem), m_nesting(0),
      m_programLimit(other.m_programLimit),
      m_accelerator(CloneRegExprAccelerator(other.m_accelerator, other.GetProgramSize()))
{
}

TRegExprBase& TRegExprBase::operator=(TRegExprBase const& other)
{
    if (&other == this)
        return *this;
    TRegExprAccelerator* accelerator = CloneRegExprAccelerator(other.m_accelerator, other.GetProgramSize());
    FreeAccelerator();
    m_accelerator = accelerator;
    m_lastParseError = other.m_lastParseError;
    m_program.Assign(other.m_program, true);
    m_program.SetNumBusySlots(other.m_program.GetNumBusySlots());
    m_captureCount = other.m_captureCount;
    m_memoryCount = other.m_memoryCount;
    m_mode = other.m_mode;
    m_caseSensitive = other.m_caseSensitive;
    m_enteredMidItem = other.m_enteredMidItem;
    m_programLimit = other.m_programLimit;
    return *this;
}

TRegExprBase::~TRegExprBase()
{
    FreeAccelerator();
}

void TRegExprBase::Reset(bool caseSensitive)
{
    FreeAccelerator();
    m_program.SetNumBusySlots(0);
    m_captureCount = 0;
    m_memoryCount = 0;
    m_lastParseError = eParseErrorNone;
    m_caseSensitive = caseSensitive;
    m_enteredMidItem = false;
    m_nesting = 0;
}

void TRegExprBase::FreeAccelerator()
{
    DeleteRegExprAccelerator(m_accelerator);
    m_accelerator = nullptr;
}

namespace {

// Blocks are sized in int bytes, and Match needs two words per memory cell.
constexpr int kMaxProgramSize = INT_MAX / 32;

} // namespace

int TRegExprBase::AddInstructions(int count)
{
    int const index = m_program.GetNumBusySlots();
    if (count > kMaxProgramSize - index)
        ThrowIfNoMemory(nullptr);
    int const needed = index + count;
    // The sequence grows linearly by itself; programs of nested loops double.
    if (needed > m_program.GetNumSlots())
        m_program.EnsureNumSlots(std::max(needed, 2 * m_program.GetNumSlots()));
    m_program.SetNumBusySlots(needed);
    FastZeroEx(m_program.SlotPtr(index), count * static_cast<int>(sizeof(TInstruction)));
    return index;
}

int TRegExprBase::AddInstruction(EInstructionType type, int operand)
{
    int const index = AddInstructions(1);
    Instruction(index) = TInstruction{type, operand};
    return index;
}

int TRegExprBase::AddMemInstruction(EInstructionType type)
{
    return AddInstruction(type, m_memoryCount++);
}

namespace {

bool UsesMemoryCell(EInstructionType type)
{
    switch (type) {
    case EInstructionType::SetMemPos:
    case EInstructionType::GetMemPos:
    case EInstructionType::SetMemStack:
    case EInstructionType::GetMemStack:
    case EInstructionType::PushMem:
    case EInstructionType::PopMem:
    case EInstructionType::FailIfMemPos:
        return true;
    default:
        return false;
    }
}

} // namespace

int TRegExprBase::AppendRelocatedCopy(TInstruction const* block, int from, int count, int firstCell, int cellCount)
{
    int const at = AddInstructions(count);
    FastCopyEx(block, m_program.SlotPtr(at), static_cast<size_t>(count) * sizeof(TInstruction));
    int const shift = at - from;
    int const cellShift = m_memoryCount - firstCell;
    m_memoryCount += cellCount;
    TInstruction* const copy = &Instruction(at);
    for (int i = 0; i < count;) {
        TInstruction& in = copy[i];
        switch (in.m_type) {
        case EInstructionType::Goto:
        case EInstructionType::Branch:
            // A jump that is still open (-1) stays open.
            if (in.m_operand >= from && in.m_operand <= from + count)
                in.m_operand += shift;
            ++i;
            break;
        case EInstructionType::CharSet:
        case EInstructionType::NotCharSet:
            i += 1 + InstructionsPerRangeBitField();
            break;
        case EInstructionType::CharRanges:
        case EInstructionType::NotCharRanges: {
            int const behind = in.m_operand - from;
            in.m_operand += shift;
            i = std::max(i + 1, std::min(count, behind));
            break;
        }
        default:
            if (UsesMemoryCell(in.m_type))
                in.m_operand += cellShift;
            ++i;
            break;
        }
    }
    return at;
}

// ---- the accelerator's storage ----------------------------------------------

TRegExprAccelerator* NewRegExprAccelerator(int programSize, bool checked, int loopCount)
{
    auto* accelerator = static_cast<TRegExprAccelerator*>(malloc_ex(sizeof(TRegExprAccelerator)));
    FastZeroEx(accelerator, sizeof(TRegExprAccelerator));
    accelerator->m_checked = checked;
    accelerator->m_scanChar = -1;
    if (checked) {
        accelerator->m_isData = static_cast<unsigned char*>(malloc_ex(programSize + 1));
        FastZeroEx(accelerator->m_isData, programSize + 1);
    }
    if (loopCount > 0) {
        int const bytes = loopCount * static_cast<int>(sizeof(TRegExprLoop));
        accelerator->m_loops = static_cast<TRegExprLoop*>(malloc_ex(bytes));
        FastZeroEx(accelerator->m_loops, bytes);
    }
    return accelerator;
}

TRegExprAccelerator* CloneRegExprAccelerator(TRegExprAccelerator const* source, int programSize)
{
    if (!source)
        return nullptr;
    TRegExprAccelerator* clone = NewRegExprAccelerator(programSize, source->m_checked, source->m_loopCount);
    unsigned char* isData = clone->m_isData;
    TRegExprLoop* loops = clone->m_loops;
    *clone = *source;
    clone->m_isData = isData;
    clone->m_loops = loops;
    if (isData)
        FastCopyEx(source->m_isData, isData, programSize + 1);
    if (loops)
        FastCopyEx(source->m_loops, loops, source->m_loopCount * sizeof(TRegExprLoop));
    return clone;
}

void DeleteRegExprAccelerator(TRegExprAccelerator* accelerator)
{
    if (!accelerator)
        return;
    free_ex(accelerator->m_isData);
    free_ex(accelerator->m_loops);
    free_ex(accelerator);
}

// ---- the typed parts, written once ------------------------------------------

#include "text/TRegExprChars.inc"
#include "text/TRegExprParse.inc"
#include "text/TRegExprAnalysis.inc"
#include "text/TRegExprMatch.inc"

template class TRegExpr<char>;
template class TRegExpr<char16_t>;
