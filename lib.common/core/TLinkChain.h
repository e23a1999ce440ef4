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

    // Stable merge of two null-terminated chains linked by `next` only; at
    // equal keys `a` goes first. keepLeft(x, y) is true when x may stay in
    // front of y.
    template <class KeepLeft>
    static Node* Merge(Node* a, Node* b, KeepLeft& keepLeft)
    {
        Node* head = nullptr;
        Node** tail = &head;
        while (a && b) {
            if (keepLeft(a, b)) {
                *tail = a;
                tail = &a->next;
                a = a->next;
            } else {
                *tail = b;
                tail = &b->next;
                b = b->next;
            }
        }
        *tail = a ? a : b;
        return head;
    }

    // Sorts the n nodes from cursor on and advances cursor past them. The
    // first half has n / 2 nodes, as a split at the middle gives.
    template <class KeepLeft>
    static Node* SortRun(Node*& cursor, int n, KeepLeft& keepLeft)
    {
        if (n == 1) {
            Node* e = cursor;
            cursor = e->next;
            e->next = nullptr;
            return e;
        }
        int const half = n / 2;
        Node* left = SortRun(cursor, half, keepLeft);
        Node* right = SortRun(cursor, n - half, keepLeft);
        return Merge(left, right, keepLeft);
    }

    // Rebuilds prev and last after a sort through `next`; returns the index
    // of `noted`, or -1.
    int Relink(Node* head, Node const* noted)
    {
        first = head;
        Node* prev = nullptr;
        int index = 0;
        int notedIndex = -1;
        for (Node* x = head; x; x = x->next, ++index) {
            x->prev = prev;
            if (x == noted)
                notedIndex = index;
            prev = x;
        }
        last = prev;
        return notedIndex;
    }

    // Stable merge sort of the whole chain of count nodes.
    template <class KeepLeft>
    int Sort(int count, Node const* noted, KeepLeft keepLeft)
    {
        Node* cursor = first;
        Node* head = SortRun(cursor, count, keepLeft);
        return Relink(head, noted);
    }
};
