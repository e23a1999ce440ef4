#include "text/TMatchContext.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

#include <cstdint>

namespace {

// Offsets and lengths go by integers: after a case-blind match an unset
// capture holds a shifted null, which is no pointer into the text.
template <class T>
intptr_t Distance(T const* from, T const* to)
{
    return (reinterpret_cast<intptr_t>(to) - reinterpret_cast<intptr_t>(from)) / static_cast<intptr_t>(sizeof(T));
}

} // namespace

template <class T>
TMatchContext<T>::TMatchContext(T const* text)
    : m_text(text), m_matchStart(nullptr), m_matchEnd(nullptr), m_captures(nullptr), m_captureCount(0)
{
}

template <class T>
TMatchContext<T>::TMatchContext(TMatchContext& other)
    : m_text(other.m_text), m_matchStart(other.m_matchStart), m_matchEnd(other.m_matchEnd), m_captures(nullptr),
      m_captureCount(0)
{
    TakeFrom(other);
}

template <class T>
TMatchContext<T>::TMatchContext(TMatchContext const& other)
    : m_text(other.m_text), m_matchStart(other.m_matchStart), m_matchEnd(other.m_matchEnd), m_captures(nullptr),
      m_captureCount(0)
{
    CopyFrom(other);
}

// A move that left the array in both objects would free it twice; a copy
// keeps what both of them show.
template <class T>
TMatchContext<T>::TMatchContext(TMatchContext&& other)
    : m_text(other.m_text), m_matchStart(other.m_matchStart), m_matchEnd(other.m_matchEnd), m_captures(nullptr),
      m_captureCount(0)
{
    CopyFrom(other);
}

template <class T>
TMatchContext<T>& TMatchContext<T>::operator=(TMatchContext& other)
{
    if (&other != this) {
        FreeCaptures();
        m_text = other.m_text;
        m_matchStart = other.m_matchStart;
        m_matchEnd = other.m_matchEnd;
        TakeFrom(other);
    }
    return *this;
}

template <class T>
TMatchContext<T>& TMatchContext<T>::operator=(TMatchContext const& other)
{
    if (&other != this) {
        FreeCaptures();
        m_text = other.m_text;
        m_matchStart = other.m_matchStart;
        m_matchEnd = other.m_matchEnd;
        CopyFrom(other);
    }
    return *this;
}

template <class T>
TMatchContext<T>::~TMatchContext()
{
    FreeCaptures();
}

template <class T>
bool TMatchContext<T>::Initialize(int count)
{
    FreeCaptures();
    if (count > 0) {
        int const bytes = count * 2 * static_cast<int>(sizeof(T const*));
        m_captures = static_cast<T const**>(malloc_ex(bytes));
        FastZeroEx(m_captures, bytes);
        m_captureCount = count;
    }
    return true;
}

template <class T>
int TMatchContext<T>::GetMatch(int index, int* pos) const
{
    T const* const start = Start(index);
    T const* const end = End(index);
    intptr_t const length = start ? Distance(start, end) : -1;
    if (length < 0) {
        if (pos)
            *pos = -1;
        return -1;
    }
    if (pos)
        *pos = static_cast<int>(Distance(m_text, start));
    return static_cast<int>(length);
}

template <class T>
TString<T> TMatchContext<T>::GetMatch(int index) const
{
    int const length = GetMatch(index, nullptr);
    if (length <= 0)
        return TString<T>();
    return TString<T>(Start(index), length_t(length));
}

template <class T>
void TMatchContext<T>::CopyFrom(TMatchContext const& other)
{
    if (!other.m_captures)
        return;
    Initialize(other.m_captureCount);
    FastCopyEx(other.m_captures, m_captures, m_captureCount * 2 * static_cast<int>(sizeof(T const*)));
}

template <class T>
void TMatchContext<T>::TakeFrom(TMatchContext& other)
{
    m_captures = other.m_captures;
    m_captureCount = other.m_captureCount;
    other.m_captures = nullptr;
    other.m_captureCount = 0;
}

template <class T>
void TMatchContext<T>::FreeCaptures()
{
    free_ex(m_captures);
    m_captures = nullptr;
    m_captureCount = 0;
}

template <class T>
T const* TMatchContext<T>::Start(int index) const
{
    if (index < 0)
        return m_matchStart;
    return index < m_captureCount ? m_captures[2 * index] : nullptr;
}

template <class T>
T const* TMatchContext<T>::End(int index) const
{
    if (index < 0)
        return m_matchEnd;
    return index < m_captureCount ? m_captures[2 * index + 1] : nullptr;
}

template class TMatchContext<char>;
template class TMatchContext<char16_t>;
