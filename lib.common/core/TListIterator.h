#pragma once

#include "core/TListElement.h"

#include <cstddef>
#include <iterator>

// for (T* e : list) over the intrusive lists. The next element is read
// before the body runs, so the body may detach or delete the current one.
template <class T>
class TListIterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T*;
    using difference_type = std::ptrdiff_t;
    using pointer = T* const*;
    using reference = T*;

    explicit TListIterator(TListElement* e) : m_current(e), m_next(e ? e->next : nullptr) {}
    T* operator*() const { return static_cast<T*>(m_current); }
    TListIterator& operator++()
    {
        m_current = m_next;
        m_next = m_current ? m_current->next : nullptr;
        return *this;
    }
    bool operator==(TListIterator const& other) const { return m_current == other.m_current; }
    bool operator!=(TListIterator const& other) const { return m_current != other.m_current; }

private:
    TListElement* m_current;
    TListElement* m_next;
};
