#include "core/TCollectionOfPointers.h"

#include <functional>
#include <utility>

TCollectionOfPointers::TCollectionOfPointers(EAutoDelete autoDelete)
    : TCollection(autoDelete, nullptr)
    , m_comparer(nullptr)
    , m_cloner(nullptr)
    , m_deleter(nullptr)
{
}

TCollectionOfPointers& TCollectionOfPointers::operator=(TCollectionOfPointers const& other)
{
    TCollection::operator=(other);
    m_comparer = other.m_comparer;
    m_cloner = other.m_cloner;
    m_deleter = other.m_deleter;
    return *this;
}

void TCollectionOfPointers::SwapWith(TCollectionOfPointers& other)
{
    TCollection::SwapWith(other);
    std::swap(m_comparer, other.m_comparer);
    std::swap(m_cloner, other.m_cloner);
    std::swap(m_deleter, other.m_deleter);
}

int TCollectionOfPointers::ComparePointers(void const* a, void const* b) const
{
    if (m_comparer)
        return m_comparer(a, b);
    std::less<void const*> less;
    return less(a, b) ? -1 : (less(b, a) ? 1 : 0);
}
