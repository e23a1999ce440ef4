#include "core/TCollection.h"

#include <utility>

namespace {

// What a copy takes over: ownership, both sort marks and the user field.
constexpr unsigned copiedFlags = 0x1FFFFu;
constexpr unsigned swappedFlags = TCollection::flagDeleteElements | TCollection::flagMarkedAsSorted | TCollection::flagSorted;

} // namespace

TCollection::TCollection(EAutoDelete autoDelete, TObjectFactory factory)
    : m_flags(autoDelete == autoDeleteOn ? flagDeleteElements : 0u)
    , m_count(0)
    , m_factory(factory)
{
}

TCollection::TCollection(TCollection const& other)
    : m_flags(other.m_flags & copiedFlags)
    , m_count(0)
    , m_factory(other.m_factory)
{
}

TCollection& TCollection::operator=(TCollection const& other)
{
    m_flags = (m_flags & ~copiedFlags) | (other.m_flags & copiedFlags);
    m_factory = other.m_factory;
    m_count = 0;
    return *this;
}

TCollection::~TCollection() = default;

bool TCollection::ValidateIndex(int& index) const
{
    if (IsValidIndex(index))
        return true;
    index = m_count > 0 ? 0 : -1;
    return IsValidIndex(index);
}

void TCollection::SwapWith(TCollection& other)
{
    std::swap(m_factory, other.m_factory);
    std::swap(m_count, other.m_count);
    unsigned const mine = m_flags & swappedFlags;
    m_flags = (m_flags & ~swappedFlags) | (other.m_flags & swappedFlags);
    other.m_flags = (other.m_flags & ~swappedFlags) | mine;
}

bool TCollection::ElementClassId(TObject const& element, int* id, char* idString) const
{
    idString[0] = 0;
    idString[59] = 0;
    return !HasPlainElements() && element.GetClassId(id, idString);
}
