#pragma once

// Link surgery shared by the intrusive list and the list of pointers. Node is
// any record with `next` and `prev` of type Node*. Library-internal: the
// public classes wrap it, so the algorithms exist once.
template <class Node>
struct TLinkChain
{
    Node*& first;
    Node*& last;

    void Append(Node* e)
    {
        e->next = nullptr;
        e->prev = last;
        if (last)
            last->next = e;
        else
            first = e;
        last = e;
    }

    void Prepend(Node* e)
    {
        e->prev = nullptr;
        e->next = first;
        if (first)
            first->prev = e;
        else
            last = e;
        first = e;
    }

    void InsertAfter(Node* e, Node* where)
    {
        if (!where)
            return Prepend(e);
        e->prev = where;
        e->next = where->next;
        if (where->next)
            where->next->prev = e;
        else
            last = e;
        where->next = e;
    }

    void InsertBefore(Node* e, Node* where)
    {
        if (!where)
            return Append(e);
        e->next = where;
        e->prev = where->prev;
        if (where->prev)
            where->prev->next = e;
        else
            first = e;
        where->prev = e;
    }

    void Unlink(Node* e)
    {
        if (e->prev)
            e->prev->next = e->next;
        else
            first = e->next;
        if (e->next)
            e->next->prev = e->prev;
        else
            last = e->prev;
    }

    // Moves the whole chain [head, tail] in front of where (null: the end).
    void Splice(Node* head, Node* tail, Node* where)
    {
        Node* before = where ? where->prev : last;
        head->prev = before;
        tail->next = where;
        if (before)
            before->next = head;
        else
            first = head;
        if (where)
            where->prev = tail;
        else
            last = tail;
    }

    // Hands e and the nodes behind it to rest, which must be empty.
    void MoveTailTo(Node* e, TLinkChain rest)
    {
        rest.first = e;
        rest.last = last;
        last = e->prev;
        if (last)
            last->next = nullptr;
        else
            first = nullptr;
        e->prev = nullptr;
    }

    // Walks forward; null past the end.
    Node* Nth(int index) const
    {
        Node* e = first;
        while (index-- > 0 && e)
            e = e->next;
        return e;
    }

    int IndexOf(Node const* e) const
    {
        int index = 0;
        for (Node* x = first; x; x = x->next, ++index)
            if (x == e)
                return index;
        return -1;
    }

    void Swap(Node* a, Node* b)
    {
        if (a == b)
            return;
        if (a->next == b) {
            Unlink(b);
            InsertBefore(b, a);
        } else if (b->next == a) {
            Unlink(a);
            InsertBefore(a, b);
        } else {
            Node* afterA = a->next;
            Unlink(a);
            InsertBefore(a, b);
            Unlink(b);
            InsertBefore(b, afterA);
        }
    }

    // The element takes where's position; where shifts by one towards the
    // side e came from.
    void MoveAt(Node* e, Node* where)
    {
        if (e == where)
            return;
        for (Node* x = first; x; x = x->next) {
            if (x == e) {
                Unlink(e);
                InsertAfter(e, where);
                return;
            }
            if (x == where) {
                Unlink(e);
                InsertBefore(e, where);
                return;
            }
        }
    }

    void Reverse()
    {
        for (Node* x = first; x;) {
            Node* next = x->next;
            x->next = x->prev;
            x->prev = next;
            x = next;
        }
        Node* oldFirst = first;
        first = last;
        last = oldFirst;
    }

    // A run of nodes linked both ways, null at both ends.
    struct TRun
    {
        Node* head;
        Node* tail;
    };

    // Stable merge of two runs; at equal keys `a` goes first. keepLeft(x, y)
    // is true when x may stay in front of y. The prev links are set on the
    // way, while the nodes are in the cache anyway.
    template <class KeepLeft>
    static TRun Merge(TRun a, TRun b, KeepLeft& keepLeft)
    {
        Node* x = a.head;
        Node* y = b.head;
        Node* head = nullptr;
        Node* prev = nullptr;
        Node** link = &head;
        while (x && y) {
            Node* taken;
            if (keepLeft(x, y)) {
                taken = x;
                x = x->next;
            } else {
                taken = y;
                y = y->next;
            }
            *link = taken;
            taken->prev = prev;
            prev = taken;
            link = &taken->next;
        }
        Node* rest = x ? x : y;
        *link = rest;
        if (rest)
            rest->prev = prev;
        return {head, x ? a.tail : (y ? b.tail : prev)};
    }

    // Sorts the n nodes from cursor on and advances cursor past them. The
    // first half has n / 2 nodes, as a split at the middle gives.
    template <class KeepLeft>
    static TRun SortRun(Node*& cursor, int n, KeepLeft& keepLeft)
    {
        if (n == 1) {
            Node* e = cursor;
            cursor = e->next;
            e->next = nullptr;
            e->prev = nullptr;
            return {e, e};
        }
        int const half = n / 2;
        TRun left = SortRun(cursor, half, keepLeft);
        TRun right = SortRun(cursor, n - half, keepLeft);
        return Merge(left, right, keepLeft);
    }

    // Stable merge sort of the whole chain of count nodes.
    template <class KeepLeft>
    void Sort(int count, KeepLeft keepLeft)
    {
        Node* cursor = first;
        TRun sorted = SortRun(cursor, count, keepLeft);
        first = sorted.head;
        last = sorted.tail;
    }

    // Merges the sorted chain [otherFirst, otherLast] into this sorted chain.
    template <class KeepLeft>
    void MergeFrom(Node* otherFirst, Node* otherLast, KeepLeft keepLeft)
    {
        TRun merged = Merge(TRun{first, last}, TRun{otherFirst, otherLast}, keepLeft);
        first = merged.head;
        last = merged.tail;
    }
};
