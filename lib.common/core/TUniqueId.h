#pragma once

// An integer id that cannot be mixed with the ids of another owner.
template <class Owner, class Int>
class TUniqueId
{
public:
    constexpr TUniqueId() : m_value() {}
    constexpr explicit TUniqueId(Int value) : m_value(value) {}

    constexpr Int Value() const { return m_value; }
    constexpr bool operator==(TUniqueId other) const { return m_value == other.m_value; }
    constexpr bool operator!=(TUniqueId other) const { return m_value != other.m_value; }
    constexpr bool operator<(TUniqueId other) const { return m_value < other.m_value; }

private:
    Int m_value;
};
