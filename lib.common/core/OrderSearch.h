#pragma once

// Library-internal: the linear searches by order that the vector and the two
// lists share. They walk positions (an index, a node) from first to end by
// step, and compare through the caller's functions, so each container keeps
// its own Compare call: order(a, b) is a's Compare with b, toTarget(a) a's
// Compare with the target. side is -1 for below (smaller), +1 for above.

inline bool IsOnSide(int order, int side)
{
    return side < 0 ? order < 0 : order > 0;
}

// The smallest (side -1) or the greatest element, the first of equals; end
// for none.
template <class Pos, class Step, class Order>
Pos FindExtreme(Pos first, Pos end, Step step, int side, Order order)
{
    if (first == end)
        return end;
    Pos best = first;
    for (Pos x = step(first); x != end; x = step(x))
        if (IsOnSide(order(x, best), side))
            best = x;
    return best;
}

// The element on that side of the target that lies closest to it, the first
// of equals; end for none. With orEqual the first element equal to the
// target wins at once.
template <class Pos, class Step, class ToTarget, class Order>
Pos FindClosest(Pos first, Pos end, Step step, int side, bool orEqual, ToTarget toTarget, Order order)
{
    Pos best = end;
    for (Pos x = first; x != end; x = step(x)) {
        int const toward = toTarget(x);
        if (orEqual && toward == 0)
            return x;
        if (IsOnSide(toward, side) && (best == end || IsOnSide(order(x, best), -side)))
            best = x;
    }
    return best;
}

// Whether no element stands on the wrong side (+1: above) of the one after it.
template <class Pos, class Step, class Order>
bool IsInOrder(Pos first, Pos end, Step step, int wrongSide, Order order)
{
    if (first == end)
        return true;
    for (Pos x = first, next = step(first); next != end; x = next, next = step(next))
        if (IsOnSide(order(x, next), wrongSide))
            return false;
    return true;
}
