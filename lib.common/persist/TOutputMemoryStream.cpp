#include "persist/TOutputMemoryStream.h"

#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

namespace {

constexpr unsigned int kMinGrowth = 32;

unsigned int GrowthStep(unsigned int growth)
{
    return growth > kMinGrowth ? growth : kMinGrowth;
}

} // namespace

TOutputMemoryStream::TOutputMemoryStream(unsigned int growth, EAutoDelete autoDelete, EEndianType endianType)
    : TOutputStream(endianType), m_autoDelete(autoDelete), m_growthStep(GrowthStep(growth)), m_owning(true)
{
}

TOutputMemoryStream::TOutputMemoryStream(void* buffer, unsigned int size, EEndianType endianType)
    : TOutputStream(endianType), TMemoryStream(buffer, size), m_autoDelete(autoDeleteOff), m_growthStep(0),
      m_owning(false)
{
}

TOutputMemoryStream::TOutputMemoryStream(unsigned int growth, EAutoDelete autoDelete, void* buffer, unsigned int size,
                                         EEndianType endianType)
    : TOutputStream(endianType), TMemoryStream(buffer, size), m_autoDelete(autoDelete),
      m_growthStep(GrowthStep(growth)), m_owning(true)
{
    m_current = m_start + size;
}

TOutputMemoryStream::~TOutputMemoryStream()
{
    if (m_owning && m_autoDelete != autoDeleteOff)
        free_ex(m_start);
}

void TOutputMemoryStream::Grow(unsigned int size)
{
    unsigned int const position = GetPosition();
    unsigned int const needed = position + size;
    unsigned int capacity = m_size + m_growthStep;
    if (capacity < needed)
        capacity = needed;
    unsigned char* block;
    if (!m_owning) {
        // realloc of a block that is not ours would corrupt the caller's
        // memory: move to a heap copy that this stream owns from now on.
        qCWarning(LogNoGoZone) << "TOutputMemoryStream::WriteData" << 1;
        block = static_cast<unsigned char*>(malloc_ex(static_cast<int>(capacity)));
        FastCopyEx(m_start, block, position < m_size ? position : m_size);
        m_owning = true;
        m_autoDelete = autoDeleteOn;
    } else if (m_start) {
        block = static_cast<unsigned char*>(realloc_ex(m_start, static_cast<int>(capacity)));
    } else {
        block = static_cast<unsigned char*>(malloc_ex(static_cast<int>(capacity)));
    }
    m_start = block;
    m_current = block + position;
    m_size = capacity;
}

unsigned int TOutputMemoryStream::WriteData(void const* data, unsigned int size)
{
    if (size == 0)
        return GetPosition();
    MakeRoom(size);
    if (data)
        FastCopyEx(data, m_current, size);
    m_current += size;
    return GetPosition();
}

void TOutputMemoryStream::Reserve(int size)
{
    m_start = static_cast<unsigned char*>(malloc_ex(size));
    m_current = m_start;
    m_size = size > 0 ? static_cast<unsigned int>(size) : 0;
}

unsigned int TOutputMemoryStream::InitBlock(unsigned char value, int count)
{
    unsigned int const position = GetPosition();
    WriteChars(static_cast<char>(value), count > 0 ? static_cast<unsigned int>(count) : 0);
    SetPosition(position);
    return position;
}

unsigned int TOutputMemoryStream::ExtendInternalBuffer(int size)
{
    unsigned int const oldCapacity = m_size;
    unsigned int const extra = size > 0 ? static_cast<unsigned int>(size) : 0;
    SetPosition(oldCapacity);
    if (extra > 0) {
        Grow(extra);
        // Grow may round up by its step; the capacity is exactly old + size.
        m_size = oldCapacity + extra;
        FastZeroEx(m_start + oldCapacity, static_cast<int>(extra));
    }
    return oldCapacity;
}

unsigned int TOutputMemoryStream::Align(int alignment, unsigned char fill, bool setSize)
{
    if (alignment < 2)
        return GetPosition();
    unsigned int const rest = GetPosition() % static_cast<unsigned int>(alignment);
    if (rest != 0)
        WriteChars(static_cast<char>(fill), static_cast<unsigned int>(alignment) - rest);
    if (setSize)
        m_size = GetPosition();
    return GetPosition();
}

unsigned int TOutputMemoryStream::WriteStringThenAlign(char const* text)
{
    unsigned int const start = GetPosition();
    WriteString(text, true);
    unsigned int const rest = (GetPosition() - start) % 4;
    return rest ? WriteChars('\0', 4 - rest) : GetPosition();
}
