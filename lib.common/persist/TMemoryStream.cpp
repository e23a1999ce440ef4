#include "persist/TMemoryStream.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

void TMemoryStream::OptimizeSize()
{
    unsigned int const position = GetPosition();
    // The position and size are refreshed with the start: left stale they
    // would point into the released block.
    m_start = static_cast<unsigned char*>(realloc_ex(m_start, static_cast<int>(position)));
    m_current = m_start + position;
    m_size = position;
}

void TMemoryStream::CutSection(unsigned int position, int length)
{
    if (position > m_size)
        position = m_size;
    unsigned int cut = length > 0 ? static_cast<unsigned int>(length) : 0;
    if (cut > m_size - position)
        cut = m_size - position;
    m_current = m_start + position;
    FastMoveEx(m_start + position + cut, m_start + position, static_cast<int>(m_size - position - cut));
    m_size -= cut;
}
