#pragma once

#include "core/TCollection.h"

// A collection of untyped pointers whose compare, clone and delete actions
// are function pointers. None is set at first.
class COMMON_EXPORT TCollectionOfPointers : public TCollection
{
public:
    using TComparer = int (*)(void const* a, void const* b);
    using TCloner = void* (*)(void const* element, void const* context);
    using TDeleter = void (*)(void* element);

    explicit TCollectionOfPointers(EAutoDelete autoDelete = autoDeleteOff);
    TCollectionOfPointers(TCollectionOfPointers const& other) = default;
    TCollectionOfPointers& operator=(TCollectionOfPointers const& other);

    void SetComparer(TComparer comparer) { m_comparer = comparer; }
    void SetCloner(TCloner cloner) { m_cloner = cloner; }
    void SetDeleter(TDeleter deleter) { m_deleter = deleter; }
    TComparer GetComparer() const { return m_comparer; }
    TCloner GetCloner() const { return m_cloner; }
    TDeleter GetDeleter() const { return m_deleter; }

protected:
    void SwapWith(TCollectionOfPointers& other);
    // Without a comparer pointers order by address; without a cloner a copy
    // shares the pointer; without a deleter deleting only forgets.
    int ComparePointers(void const* a, void const* b) const;
    void* ClonePointer(void const* element, void const* context) const
    {
        return m_cloner ? m_cloner(element, context) : const_cast<void*>(element);
    }
    void DeletePointer(void* element) const
    {
        if (m_deleter)
            m_deleter(element);
    }

    TComparer m_comparer;
    TCloner m_cloner;
    TDeleter m_deleter;
};
