#pragma once

#include "core/CommonExport.h"
#include "core/EAutoDelete.h"
#include "core/TObject.h"

#include <type_traits>

// Root of the library's containers: the ownership bit, the sort marks, a
// user field and the element factory. Counting is the derived class's job.
class COMMON_EXPORT TCollection
{
public:
    enum : unsigned
    {
        flagDeleteElements = 1u << 0,
        flagMarkedAsSorted = 1u << 1,
        flagSorted = 1u << 2,
        userFieldShift = 3,
        userFieldMask = 0x3FFFu << userFieldShift, // bits 3 to 16
        // Set by the typed skins, never copied: see UsesDefaultStreamIdentity.
        flagPlainElements = 1u << 17,
    };

    explicit TCollection(EAutoDelete autoDelete = autoDeleteOff, TObjectFactory factory = nullptr);
    TCollection(TCollection const& other);
    TCollection& operator=(TCollection const& other);
    virtual ~TCollection();

    bool IsEmpty() const { return m_count == 0; }
    bool HasStuff() const { return m_count > 0; }
    int Count() const { return m_count; }
    int EndIndex() const { return m_count; }
    int LastIndex() const { return m_count - 1; }
    bool IsValidIndex(int index) const { return static_cast<unsigned>(index) < static_cast<unsigned>(m_count); }
    // A bad index becomes 0 when there are elements and -1 when there are none.
    bool ValidateIndex(int& index) const;

    bool ShouldDeleteElements() const { return (m_flags & flagDeleteElements) != 0; }
    void ShouldDeleteElements(bool on) { SetFlag(flagDeleteElements, on); }

    // For an owner that keeps the elements in order itself.
    void MarkAsSorted(bool on) { SetFlag(flagMarkedAsSorted, on); }
    bool IsMarkedAsSorted() const { return (m_flags & flagMarkedAsSorted) != 0; }
    // Set by Sort: the elements were in order when it last ran. Insertions
    // leave it alone.
    bool IsSortedFlagSet() const { return (m_flags & flagSorted) != 0; }
    void SetSortedFlag(bool on) { SetFlag(flagSorted, on); }

    unsigned UserField() const { return (m_flags & userFieldMask) >> userFieldShift; }
    void SetUserField(unsigned value) { m_flags = (m_flags & ~userFieldMask) | ((value << userFieldShift) & userFieldMask); }

    TObjectFactory GetFactory() const { return m_factory; }
    void SetFactory(TObjectFactory factory) { m_factory = factory; }

    // True when every element's class is known to keep the defaults of
    // GetClassId and CanWrite, so that persisting skips both calls.
    bool HasPlainElements() const { return (m_flags & flagPlainElements) != 0; }

protected:
    void SwapWith(TCollection& other);
    void SetFlag(unsigned flag, bool on) { m_flags = on ? (m_flags | flag) : (m_flags & ~flag); }
    void SetPlainElements(bool on) { SetFlag(flagPlainElements, on); }

    bool ElementCanWrite(TObject const& element, long long context) const
    {
        return HasPlainElements() || element.CanWrite(context);
    }
    // idString: a buffer of 60 characters, cleared here at both ends.
    bool ElementClassId(TObject const& element, int* id, char* idString) const;

    unsigned m_flags;
    int m_count;
    TObjectFactory m_factory;
};

// Whether a typed container of T may skip GetClassId and CanWrite.
// Comparing virtual slots with the default's address is not portable C++,
// and no runtime test can tell a default from an override that calls it. The
// typed skins can decide at compile time instead: lookup of &T::CanWrite
// names the class that last declared it, and when T is final that is the one
// overrider every element uses. Non-final element classes pay the two calls.
template <class T, class = void>
struct TKeepsDefaultCanWrite : std::false_type {};
template <class T>
struct TKeepsDefaultCanWrite<T, std::enable_if_t<std::is_same_v<decltype(&T::CanWrite), bool (TObject::*)(long long) const>>>
    : std::true_type {};

template <class T, class = void>
struct TKeepsDefaultClassId : std::false_type {};
template <class T>
struct TKeepsDefaultClassId<T, std::enable_if_t<std::is_same_v<decltype(&T::GetClassId), bool (TObject::*)(int*, char*) const>>>
    : std::true_type {};

template <class T>
constexpr bool UsesDefaultStreamIdentity()
{
    return std::is_final_v<T> && TKeepsDefaultCanWrite<T>::value && TKeepsDefaultClassId<T>::value;
}
