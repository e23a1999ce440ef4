#pragma once

// A minimal intrusive stack. The link is a field of T itself, reached by
// T::NextItem() and T::SetNextItem(T*).
template <class T>
class TSingleList
{
public:
    using TFn = void (*)(T& element, void* data);

    bool IsEmpty() const { return head == nullptr; }
    T* GetHead() const { return head; }

    void Add(T* e)
    {
        e->SetNextItem(head);
        head = e;
    }

    // The link is read before the call, so the callback may delete.
    void ForEach(TFn fn, void* data) const
    {
        for (T* e = head; e;) {
            T* next = e->NextItem();
            fn(*e, data);
            e = next;
        }
    }

    T* head = nullptr;
};
