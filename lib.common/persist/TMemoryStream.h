#pragma once

#include "core/CommonExport.h"

// A block and a position in it. The size is the block's size for input and
// the capacity for output.
class COMMON_EXPORT TMemoryStream
{
public:
    TMemoryStream() = default;
    TMemoryStream(void const* start, unsigned int size)
        : m_start(static_cast<unsigned char*>(const_cast<void*>(start))), m_current(m_start), m_size(size)
    {
    }

    unsigned char* Start() const { return m_start; }
    unsigned char* GetHeadPointer() const { return m_current; }
    unsigned int GetPosition() const { return static_cast<unsigned int>(m_current - m_start); }
    void SetPosition(unsigned int position) { m_current = m_start + position; }
    bool IsEnd() const { return GetPosition() >= m_size; }
    // 0 when the position is at or past the end.
    unsigned int GetSizeLeft() const { return IsEnd() ? 0 : m_size - GetPosition(); }
    unsigned char* GetPointer(unsigned int offset) const { return m_start + offset; }
    void Reset() { m_current = m_start; }
    void ResetSize(unsigned int size) { m_size = size; }
    void ReduceSize(unsigned int size) { m_size -= size; }
    unsigned int GetAllocatedSize() const { return m_size; }
    bool IsValid() const { return m_start != nullptr && m_size != 0; }

    // Shrinks the block (realloc_ex) to the position: the last thing done
    // before the block is handed over. The position stays; the size becomes
    // the new block's size.
    void OptimizeSize();
    // Removes length bytes at position: the tail of the block moves down and
    // the size falls by length. The position becomes position. A section
    // reaching past the end is cut at the end.
    void CutSection(unsigned int position, int length);

protected:
    void Seek(unsigned int position) { m_current = m_start + position; }

    unsigned char* m_start = nullptr;
    unsigned char* m_current = nullptr;
    unsigned int m_size = 0;
};
