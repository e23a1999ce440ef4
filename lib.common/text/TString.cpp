#include "text/TString.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "math/TRandomizer.h"
#include "platform/PlatformLocale.h"
#include "text/CharOps.h"
#include "text/TextConversion.h"
#include "text/WideFormat.h"
#include "text/WordTools.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

template <class T>
TString<T>* TString<T>::s_null = nullptr;

static char16_t const s_wideTerminator = 0;
char16_t const* const g_nullWchar = &s_wideTerminator;

namespace {

// Narrow printf of one value; the text has at most 2047 characters.
template <class V>
TString<char> PrintNumber(char const* format, V value)
{
    char buffer[2048];
    TCNumericScope const numbers;
    int const written = std::snprintf(buffer, sizeof buffer, format, value);
    if (written <= 0)
        return TString<char>();
    return TString<char>(buffer, length_t(std::min(written, int(sizeof buffer) - 1)));
}

} // namespace

// ---- buffers ---------------------------------------------------------------

template <class T>
void TString<T>::InitStringLibReal()
{
    // Made once, never freed: every empty string shares its buffer.
    static TString* const instance = new TString(TSubString<T>{AllocBuffer(RoundBufferSize(0))});
    s_null = instance;
}

template <class T>
T* TString<T>::AllocBuffer(unsigned capacity)
{
    void* block = malloc_ex(static_cast<int>(sizeof(TStringRef) + capacity));
    auto* ref = new (block) TStringRef{0, capacity, {1}};
    T* text = reinterpret_cast<T*>(ref + 1);
    text[0] = 0;
    return text;
}

template <class T>
void TString<T>::FreeBuffer(TStringRef* ref) noexcept
{
    ref->~TStringRef();
    free_ex(ref);
}

template <class T>
T* TString<T>::NewText(T const* text, unsigned length)
{
    T* copy = AllocBuffer(RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (length + 1)));
    FastCopyEx(text, copy, length * sizeof(T));
    copy[length] = 0;
    RefOf(copy)->m_length = length;
    return copy;
}

template <class T>
void TString<T>::DuplicateBuffer(unsigned capacity)
{
    TStringRef const* ref = GetStringRef();
    unsigned const length = ref->m_length;
    T* copy = AllocBuffer(std::max(ref->m_capacity, capacity));
    FastCopyEx(m_text, copy, (length + 1) * sizeof(T));
    RefOf(copy)->m_length = length;
    Adopt(copy);
}

template <class T>
void TString<T>::ReallocBuffer(unsigned capacity)
{
    void* block = realloc_ex(GetStringRef(), static_cast<int>(sizeof(TStringRef) + capacity));
    auto* ref = static_cast<TStringRef*>(block);
    ref->m_capacity = capacity;
    m_text = reinterpret_cast<T*>(ref + 1);
}

template <class T>
void TString<T>::GrowBy(unsigned count)
{
    TStringRef const* ref = GetStringRef();
    unsigned const length = ref->m_length;
    if ((length + count + 1) * sizeof(T) <= ref->m_capacity) {
        CopyBeforeWrite();
        return;
    }
    // Ten per cent of slack, no doubling: long strings stay close to their size.
    unsigned const capacity = RoundBufferSize(length + length / 10 + count + 1) * static_cast<unsigned>(sizeof(T));
    if (ref->m_references.load(std::memory_order_acquire) > 1)
        DuplicateBuffer(capacity);
    else
        ReallocBuffer(capacity);
}

template <class T>
T* TString<T>::OpenGap(int position, int count)
{
    unsigned const length = GetStringRef()->m_length;
    unsigned const at = std::min(static_cast<unsigned>(position), length);
    GrowBy(static_cast<unsigned>(count));
    FastMoveEx(m_text + at, m_text + at + count, static_cast<int>((length - at + 1) * sizeof(T)));
    GetStringRef()->m_length = length + static_cast<unsigned>(count);
    return m_text + at;
}

template <class T>
void TString<T>::Adopt(T* text) noexcept
{
    T* previous = m_text;
    m_text = text;
    Release(previous);
}

template <class T>
TString<T>& TString<T>::Truncate(int length)
{
    if (length <= 0 && GetStringRef()->m_references.load(std::memory_order_acquire) > 1)
        return Clear();
    CopyBeforeWrite();
    m_text[length] = 0;
    GetStringRef()->m_length = static_cast<unsigned>(length);
    return *this;
}

template <class T>
TString<T>& TString<T>::Erase(int position, int count)
{
    int const length = GetLength();
    if (count <= 0)
        return *this;
    if (position == 0 && count >= length)
        return Truncate(0);
    CopyBeforeWrite();
    FastMoveEx(m_text + position + count, m_text + position,
               static_cast<int>((length - position - count + 1) * sizeof(T)));
    GetStringRef()->m_length = static_cast<unsigned>(length - count);
    return *this;
}

template <class T>
bool TString<T>::IsInside(T const* text) const
{
    auto const address = reinterpret_cast<uintptr_t>(text);
    auto const start = reinterpret_cast<uintptr_t>(m_text);
    return address >= start && address < start + GetStringRef()->m_capacity;
}

// ---- construction ----------------------------------------------------------

template <class T>
TString<T>::TString(T const* text)
    : m_text(text && *text ? NewText(text, static_cast<unsigned>(TextLength(text))) : AcquireNull())
{
}

template <class T>
TString<T>::TString(T const* text, length_t length)
    : m_text(text && length ? NewText(text, length) : AcquireNull())
{
}

template <class T>
TString<T>::TString(T const* text, offset_t offset, length_t length)
    : m_text(text && length ? NewText(text + offset, length) : AcquireNull())
{
}

template <class T>
TString<T>::TString(TString const& text, offset_t offset, length_t length)
    : m_text(nullptr)
{
    unsigned const size = text.GetStringRef()->m_length;
    unsigned const from = std::min<unsigned>(offset, size);
    unsigned const count = std::min<unsigned>(length, size - from);
    if (count == size)
        AddReference(m_text = text.m_text);
    else
        m_text = count ? NewText(text.m_text + from, count) : AcquireNull();
}

template <class T>
TString<T>::TString(T const* a, T const* b)
    : m_text(Concatenate(a, -1, b, -1).m_text)
{
}

template <class T>
TString<T>::TString(T c, count_t count)
    : m_text(nullptr)
{
    if (count == 0) {
        m_text = AcquireNull();
        return;
    }
    m_text = AllocBuffer(RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (count + 1)));
    for (unsigned i = 0; i < count; ++i)
        m_text[i] = c;
    m_text[count] = 0;
    GetStringRef()->m_length = count;
}

template <class T>
TString<T>::TString(length_t room)
    : m_text(AllocBuffer(RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (room + 1u))))
{
}

template <class T>
TString<T>::TString(bool duplicate, TString const& other)
    : m_text(other.m_text)
{
    if (duplicate)
        m_text = NewText(other.m_text, other.GetStringRef()->m_length);
    else
        AddReference(m_text);
}

template <class T>
TString<T>::TString(T const* text, TCharFilter<T> const& filter)
    : TString(text)
{
    ReplaceAnyOf(filter);
}

template <class T>
TString<T>::TString(OtherChar const* text)
    : TString(text, length_t(text ? TextLength(text) : 0))
{
}

template <class T>
TString<T>::TString(OtherChar const* text, length_t length)
    : m_text(AcquireNull())
{
    if (!text || !length)
        return;
    if constexpr (std::is_same_v<T, char16_t>) {
        TString converted = ConvertBytes(text, static_cast<int>(length));
        std::swap(m_text, converted.m_text);
    } else {
        TString converted = ConvertWideChars(text, static_cast<int>(length));
        std::swap(m_text, converted.m_text);
    }
}

template <class T>
TString<T>::TString(TString<OtherChar> const& other)
    : TString(other.c_str(), length_t(static_cast<unsigned>(other.GetLength())))
{
}

template <class T>
static TString<T> FromNarrowDigits(TString<char> const& digits)
{
    if constexpr (std::is_same_v<T, char>)
        return digits;
    else
        return TString<T>(digits);
}

template <class T>
TString<T>::TString(int value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%d", value)))
{
}

template <class T>
TString<T>::TString(long value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%ld", value)))
{
}

template <class T>
TString<T>::TString(short value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%d", static_cast<int>(value))))
{
}

template <class T>
TString<T>::TString(unsigned value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%u", value)))
{
}

template <class T>
TString<T>::TString(unsigned long value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%lu", value)))
{
}

template <class T>
TString<T>::TString(unsigned short value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%u", static_cast<unsigned>(value))))
{
}

template <class T>
TString<T>::TString(long long value)
    : TString(FromNarrowDigits<T>(PrintNumber("%lld", value)))
{
}

template <class T>
TString<T>::TString(unsigned long long value)
    : TString(FromNarrowDigits<T>(PrintNumber("%llu", value)))
{
}

template <class T>
TString<T>::TString(double value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%.2lf", value)))
{
}

template <class T>
TString<T>::TString(float value, char const* format)
    : TString(FromNarrowDigits<T>(PrintNumber(format ? format : "%.2f", static_cast<double>(value))))
{
}

template <class T>
TString<T>::TString(QByteArray const& bytes)
    : m_text(AcquireNull())
{
    if (bytes.isEmpty())
        return;
    if constexpr (std::is_same_v<T, char>) {
        Adopt(NewText(bytes.constData(), static_cast<unsigned>(bytes.size())));
    } else {
        TString converted = ConvertBytes(bytes.constData(), bytes.size());
        std::swap(m_text, converted.m_text);
    }
}

template <class T>
TString<T>::TString(QString const& text)
    : m_text(AcquireNull())
{
    if (text.isEmpty())
        return;
    auto const* utf16 = reinterpret_cast<char16_t const*>(text.utf16());
    if constexpr (std::is_same_v<T, char16_t>) {
        Adopt(NewText(utf16, static_cast<unsigned>(text.size())));
    } else {
        TString converted = ConvertWideChars(utf16, text.size());
        std::swap(m_text, converted.m_text);
    }
}

template <class T>
TString<T>* TString<T>::New(T const* text)
{
    return new TString(text);
}

template <class T>
TSubString<T> TString<T>::Concatenate(T const* a, int lengthA, T const* b, int lengthB)
{
    if (lengthA < 0)
        lengthA = a ? TextLength(a) : 0;
    if (lengthB < 0)
        lengthB = b ? TextLength(b) : 0;
    unsigned const length = static_cast<unsigned>(lengthA + lengthB);
    if (length == 0)
        return {AcquireNull()};
    T* text = AllocBuffer(RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (length + 1)));
    FastCopyEx(a, text, lengthA * sizeof(T));
    FastCopyEx(b, text + lengthA, lengthB * sizeof(T));
    text[length] = 0;
    RefOf(text)->m_length = length;
    return {text};
}

// ---- assignment ------------------------------------------------------------

template <class T>
TString<T>& TString<T>::operator=(TString const& other) noexcept
{
    if (m_text != other.m_text) {
        AddReference(other.m_text);
        Adopt(other.m_text);
    }
    return *this;
}

template <class T>
TString<T>& TString<T>::operator=(TString&& other) noexcept
{
    std::swap(m_text, other.m_text);
    return *this;
}

template <class T>
TString<T>& TString<T>::operator=(T const* text)
{
    if (!text || !*text)
        return Clear();
    if (IsInside(text)) {
        TString copy(text);
        std::swap(m_text, copy.m_text);
        return *this;
    }
    Release(m_text);
    m_text = NewText(text, static_cast<unsigned>(TextLength(text)));
    return *this;
}

template <class T>
TString<T>& TString<T>::operator=(OtherChar const* text)
{
    TString converted(text);
    std::swap(m_text, converted.m_text);
    return *this;
}

template <class T>
TString<T>& TString<T>::Clear()
{
    InitStringLib();
    if (m_text != s_null->m_text)
        Adopt(AcquireNull());
    return *this;
}

template <class T>
TString<T>& TString<T>::Set(T const* text, int count)
{
    if (text && IsInside(text)) {
        TString copy(text, length_t(static_cast<unsigned>(count == s_end ? TextLength(text) : count)));
        std::swap(m_text, copy.m_text);
        return *this;
    }
    Clear();
    return Insert(0, text, count);
}

template <class T>
TString<T>& TString<T>::FreeUnusedMemory()
{
    TStringRef const* ref = GetStringRef();
    unsigned const needed = RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (ref->m_length + 1));
    if (ref->m_capacity > needed && ref->m_references.load(std::memory_order_acquire) == 1)
        ReallocBuffer(needed);
    return *this;
}

template <class T>
TString<T>& TString<T>::EnsureBufferSize(int characters)
{
    unsigned const needed = RoundBufferSize(static_cast<unsigned>(sizeof(T)) * (static_cast<unsigned>(characters) + 1));
    if (GetStringRef()->m_references.load(std::memory_order_acquire) > 1)
        DuplicateBuffer(needed);
    else if (GetStringRef()->m_capacity < needed)
        ReallocBuffer(needed);
    return *this;
}

template <class T>
TString<T>& TString<T>::SetEnd(int length)
{
    CopyBeforeWrite();
    // The capacity counts bytes; a wide string holds half as many characters.
    int const room = static_cast<int>(GetStringRef()->m_capacity / sizeof(T));
    if (length == -1) {
        length = FindCharIn(m_text, room, T(0));
        if (length < 0)
            length = room - 1;
    }
    if (length < 0 || length >= room)
        return *this;
    m_text[length] = 0;
    GetStringRef()->m_length = static_cast<unsigned>(length);
    return *this;
}

// ---- append and insert -----------------------------------------------------

template <class T>
TString<T>& TString<T>::Insert(int position, T c, int count)
{
    if (count <= 0)
        return *this;
    T* gap = OpenGap(position, count);
    for (int i = 0; i < count; ++i)
        gap[i] = c;
    return *this;
}

template <class T>
TString<T>& TString<T>::Insert(int position, T const* text, int count)
{
    if (!text)
        return *this;
    if (count == s_end)
        count = TextLength(text);
    if (count <= 0)
        return *this;
    if (IsInside(text)) {
        TString const copy(text, length_t(static_cast<unsigned>(count)));
        return Insert(position, copy.m_text, count);
    }
    FastCopyEx(text, OpenGap(position, count), count * sizeof(T));
    return *this;
}

template <class T>
TString<T>& TString<T>::Insert(int position, TString const& text, int count)
{
    count = std::min(count, text.GetLength());
    if (count <= 0)
        return *this;
    if (IsEmpty() && count == text.GetLength())
        return *this = text;
    TString const keep(text); // our own text may move while the gap opens
    FastCopyEx(keep.m_text, OpenGap(position, count), count * sizeof(T));
    return *this;
}

template <class T>
TString<T>& TString<T>::Append(T const* text)
{
    if (!text)
        return *this;
    TStringRef* ref = GetStringRef();
    if (ref->m_references.load(std::memory_order_acquire) == 1 && !IsInside(text)) {
        // Words are short: copying while measuring beats strlen and memcpy.
        unsigned const length = ref->m_length;
        unsigned const room = ref->m_capacity / sizeof(T) - 1 - length;
        unsigned const limit = room < 16 ? room : 16;
        T* end = m_text + length;
        unsigned n = 0;
        for (; n < limit && text[n]; ++n)
            end[n] = text[n];
        if (!text[n]) {
            end[n] = 0;
            ref->m_length = length + n;
            return *this;
        }
        end[0] = 0; // the longer text goes the general way
    }
    return Append(text, static_cast<unsigned>(TextLength(text)));
}

template <class T>
TString<T>& TString<T>::Append(T const* text, unsigned count)
{
    if (!text || count == 0)
        return *this;
    TStringRef* ref = GetStringRef();
    unsigned const length = ref->m_length;
    if ((length + count + 1) * sizeof(T) <= ref->m_capacity && ref->m_references.load(std::memory_order_acquire) == 1
        && !IsInside(text)) {
        // Fits and owned: no gap to open, nothing to move.
        T* end = m_text + length;
        FastCopyEx(text, end, count * sizeof(T));
        end[count] = 0;
        ref->m_length = length + count;
        return *this;
    }
    if (IsInside(text)) {
        TString const copy(text, length_t(count));
        return Append(copy.m_text, count);
    }
    FastCopyEx(text, OpenGap(s_end, static_cast<int>(count)), count * sizeof(T));
    return *this;
}

template <class T>
TString<T>& TString<T>::AppendString(TString const& text)
{
    unsigned const count = text.GetStringRef()->m_length;
    if (IsEmpty())
        return *this = text;
    if (count == 0)
        return *this;
    if (text.m_text == m_text) {
        TString const keep(text);
        return Append(keep.m_text, count);
    }
    return Append(text.m_text, count);
}

// ---- read ------------------------------------------------------------------

template <class T>
int TString<T>::GetNumberOf(T c) const
{
    int count = 0;
    for (T const *p = m_text, *end = c_end(); p < end; ++p)
        count += *p == c;
    return count;
}

template <class T>
int TString<T>::CompareWith(T const* other, bool caseSensitive) const
{
    static T const empty[1] = {};
    if (!other)
        other = empty;
    T const* text = m_text;
    if constexpr (std::is_same_v<T, char>) {
        if (caseSensitive)
            return std::strcmp(text, other);
    }
    for (;; ++text, ++other) {
        T a = *text;
        T b = *other;
        if (a != b && !caseSensitive) {
            a = UpperOf(a);
            b = UpperOf(b);
        }
        if (a != b) {
            using U = std::make_unsigned_t<T>;
            return static_cast<U>(a) < static_cast<U>(b) ? -1 : 1;
        }
        if (!a)
            return 0;
    }
}

// ---- other forms -----------------------------------------------------------

template <class T>
TString<char> TString<T>::to_astr() const
{
    if constexpr (std::is_same_v<T, char>)
        return *this;
    else
        return ConvertWideChars(m_text, GetLength());
}

template <class T>
TString<char16_t> TString<T>::to_wstr() const
{
    if constexpr (std::is_same_v<T, char16_t>)
        return *this;
    else
        return ConvertBytes(m_text, GetLength());
}

template <class T>
QString TString<T>::qString() const
{
    if constexpr (std::is_same_v<T, char>)
        return QString::fromUtf8(m_text);
    else
        return QString(reinterpret_cast<QChar const*>(m_text), GetLength());
}

template <class T>
QByteArray TString<T>::qByteArray() const
{
    if constexpr (std::is_same_v<T, char>)
        return QByteArray(m_text);
    else
        return QByteArray(to_astr().c_str());
}

template <class T>
TString<char> TString<T>::ToDbcs() const
{
    return TString<char>(qString().toLocal8Bit());
}

template <class T>
TString<T>& TString<T>::SetFromDbcs(char const* local)
{
    TString<char16_t> wide = ConvertBytes(local, -1);
    if constexpr (std::is_same_v<T, char16_t>)
        return *this = std::move(wide);
    else
        return *this = ConvertToUtf8(wide);
}

// ---- hash ------------------------------------------------------------------

namespace {

constexpr uint32_t PowerOf31(int exponent)
{
    uint32_t power = 1;
    for (int i = 0; i < exponent; ++i)
        power *= 31u;
    return power;
}

// Horner's rule for hash * 31 + value over the sequence, eight values a turn:
// the eight products don't wait for each other, so the chain is one multiply
// and one add per eight values instead of per value.
template <class Value>
uint32_t Horner31(uint32_t hash, size_t count, Value value)
{
    size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        hash = hash * PowerOf31(8) + value(i) * PowerOf31(7) + value(i + 1) * PowerOf31(6)
               + value(i + 2) * PowerOf31(5) + value(i + 3) * PowerOf31(4) + value(i + 4) * PowerOf31(3)
               + value(i + 5) * PowerOf31(2) + value(i + 6) * 31u + value(i + 7);
    }
    for (; i < count; ++i)
        hash = hash * 31u + value(i);
    return hash;
}

// qHashBits of Qt 5 with seed 0 is that polynomial over the bytes; with a
// seed it may be CRC-32C, so seeded hashes are left to it.
uint32_t HashBytes(void const* data, size_t size, unsigned seed)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    if (seed == 0) {
        auto const* bytes = static_cast<unsigned char const*>(data);
        return Horner31(0, size, [bytes](size_t i) { return uint32_t(bytes[i]); });
    }
#endif
    return qHashBits(data, size, seed);
}

} // namespace

template <class T>
unsigned TString<T>::GetHashValue(bool caseSensitive, unsigned seed) const
{
    size_t const length = GetStringRef()->m_length;
    if (length == 0)
        return seed;
    if (caseSensitive)
        return HashBytes(m_text, length * sizeof(T), seed);
    T const* text = m_text;
    return Horner31(seed, length, [text](size_t i) { return static_cast<uint32_t>(HashValueOf(UpperOf(text[i]))); });
}

template <class T>
unsigned GetHashValue(T const* text, int length, unsigned tableSize, bool caseSensitive)
{
    if (!text)
        return 0;
    if (length < 0)
        length = TextLength(text);
    unsigned hash = 0;
    for (int i = 0; i < length; ++i) {
        T const c = caseSensitive ? text[i] : UpperOf(text[i]);
        hash = (hash << 4) + static_cast<unsigned>(HashValueOf(c));
        unsigned const top = hash & 0xF0000000u;
        if (top) {
            hash ^= top >> 24;
            hash &= ~top;
        }
    }
    // No table has all-ones slots, and a size of 0 would divide by zero.
    if (tableSize == 0xFFFFFFFFu || tableSize == 0)
        return hash;
    return hash % tableSize;
}

template unsigned GetHashValue<char>(char const*, int, unsigned, bool);
template unsigned GetHashValue<char16_t>(char16_t const*, int, unsigned, bool);

// The member families, one file each.
#include "text/TStringCut.inc"
#include "text/TStringEdit.inc"
#include "text/TStringSearch.inc"
#include "text/TStringExtension.inc"
#include "text/TStringNumber.inc"

template class TString<char>;
template class TString<char16_t>;
