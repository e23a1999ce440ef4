#include "text/StringSplit.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "text/CStringHelpers.h"
#include "text/CharOps.h"
#include "text/NumberText.h"

#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

template <class T>
using TUnsigned = std::make_unsigned_t<T>;

// Position of c in text[0..length), or -1. Bytes go to memchr; UTF-16 units
// are compared sixteen at a time where SSE2 is there, which it always is on
// x86-64.
int FindUnit(char const* text, int length, char c)
{
    return FindCharIn(text, length, c);
}

int FindUnit(char16_t const* text, int length, char16_t c)
{
    int i = 0;
#if defined(__SSE2__)
    __m128i const needle = _mm_set1_epi16(static_cast<short>(c));
    for (; i + 16 <= length; i += 16) {
        __m128i const low = _mm_loadu_si128(reinterpret_cast<__m128i const*>(text + i));
        __m128i const high = _mm_loadu_si128(reinterpret_cast<__m128i const*>(text + i + 8));
        __m128i const hitsLow = _mm_cmpeq_epi16(low, needle);
        __m128i const hitsHigh = _mm_cmpeq_epi16(high, needle);
        if (_mm_movemask_epi8(_mm_or_si128(hitsLow, hitsHigh)) == 0)
            continue;
        int const mask = _mm_movemask_epi8(hitsLow) | (_mm_movemask_epi8(hitsHigh) << 16);
        return i + (__builtin_ctz(static_cast<unsigned>(mask)) >> 1);
    }
#endif
    for (; i < length; ++i)
        if (text[i] == c)
            return i;
    return -1;
}

// Finds the next separator in text[from..length). Up to four separators are
// searched one by one, each by memchr where it can, remembering where each
// was last seen, so that every character is looked at once per separator. A
// larger set goes through a table for the first 256 code units.
template <class T>
class TSeparatorFinder
{
public:
    TSeparatorFinder(T const* text, int length, T const* separators, int count)
        : m_text(text), m_length(length), m_separators(separators), m_count(count)
    {
        if (m_count <= s_maxCached) {
            for (int i = 0; i < m_count; ++i)
                m_next[i] = -1;
        } else {
            std::memset(m_table, 0, sizeof m_table);
            for (int i = 0; i < m_count; ++i)
                if (TUnsigned<T>(separators[i]) < 256)
                    m_table[TUnsigned<T>(separators[i])] = 1;
        }
    }

    // The position of the next separator, or the length.
    int Next(int from)
    {
        if (m_count <= s_maxCached) {
            int nearest = m_length;
            for (int i = 0; i < m_count; ++i) {
                if (m_next[i] < from) {
                    int const hit = FindUnit(m_text + from, m_length - from, m_separators[i]);
                    m_next[i] = hit < 0 ? m_length : from + hit;
                }
                if (m_next[i] < nearest)
                    nearest = m_next[i];
            }
            return nearest;
        }
        for (int i = from; i < m_length; ++i) {
            TUnsigned<T> const c = TUnsigned<T>(m_text[i]);
            if (c < 256 ? m_table[c] != 0 : IsInSet(m_text[i], m_separators))
                return i;
        }
        return m_length;
    }

private:
    static constexpr int s_maxCached = 4;

    T const* m_text;
    int m_length;
    T const* m_separators;
    int m_count;
    int m_next[s_maxCached];
    unsigned char m_table[256];
};

template <class T>
bool IsAsciiDigit(T c)
{
    return c >= T('0') && c <= T('9');
}

int MeasureText(char const* text)
{
    return TextLength(text);
}

// A wide strlen by aligned blocks of eight units. An aligned load never
// crosses a page, so the units it reads before the text or behind its
// terminator are harmless, but they are outside the text: hence no address
// checks here, and no race checks on the neighbours it reads.
#if defined(__SSE2__)
__attribute__((no_sanitize("address", "thread"))) int MeasureText(char16_t const* text)
{
    auto const address = reinterpret_cast<uintptr_t>(text);
    if (address & 1)
        return TextLength(text);
    auto const* block = reinterpret_cast<char16_t const*>(address & ~uintptr_t(15));
    __m128i const zero = _mm_setzero_si128();
    unsigned mask = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(reinterpret_cast<__m128i const*>(block)), zero)));
    mask &= ~0u << (address & 15);
    while (mask == 0) {
        block += 8;
        mask = unsigned(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(reinterpret_cast<__m128i const*>(block)), zero)));
    }
    return int(block + (__builtin_ctz(mask) >> 1) - text);
}
#else
int MeasureText(char16_t const* text)
{
    return TextLength(text);
}
#endif

template <class T>
int MultiStringLength(T const* text)
{
    int length = 0;
    while (text[length] || text[length + 1])
        ++length;
    return length;
}

// Hands one piece to emit, trimmed if asked and unless it ends up empty and
// empty pieces aren't kept.
template <class T, class Emit>
void EmitPiece(T const* piece, int length, bool trim, bool keepEmpty, Emit& emit)
{
    if (trim)
        piece = FindTrimmedSubString(piece, length, &length, nullptr, 5);
    if (length > 0 || keepEmpty)
        emit(piece, length);
}

template <class T, class Emit>
void ExplodeInto(T const* text, T const* separators, bool trim, bool keepEmpty, Emit&& emit)
{
    if (!text || !*text)
        return;
    static T const zero = 0;
    bool const multiString = !separators || !*separators;
    if (multiString)
        separators = &zero;
    int const length = multiString ? MultiStringLength(text) : MeasureText(text);
    TSeparatorFinder<T> finder(text, length, separators, multiString ? 1 : TextLength(separators));
    for (int position = 0;;) {
        int const end = finder.Next(position);
        EmitPiece(text + position, end - position, trim, keepEmpty, emit);
        if (end >= length)
            return;
        position = end + 1;
    }
}

template <class T, class Emit>
void ExplodeExInto(T const* text, T const* separator, bool trim, bool keepEmpty, Emit&& emit)
{
    if (!separator || !*separator) {
        if (text)
            EmitPiece(text, TextLength(text), trim, keepEmpty, emit);
        return;
    }
    if (!text || !*text)
        return;
    int const length = MeasureText(text);
    int const separatorLength = TextLength(separator);
    T const* const end = text + length;
    for (T const* position = text;;) {
        T const* hit = position;
        // Search by the first character, then confirm the rest.
        for (;;) {
            int const at = FindUnit(hit, static_cast<int>(end - hit), separator[0]);
            if (at < 0 || end - (hit + at) < separatorLength) {
                hit = end;
                break;
            }
            hit += at;
            if (std::memcmp(hit, separator, static_cast<size_t>(separatorLength) * sizeof(T)) == 0)
                break;
            ++hit;
        }
        EmitPiece(position, static_cast<int>(hit - position), trim, keepEmpty, emit);
        if (hit == end)
            return;
        position = hit + separatorLength;
    }
}

template <class T>
TString<T> const& Deref(TString<T> const& s)
{
    return s;
}

template <class T>
TString<T> const& Deref(LString<T> const* s)
{
    return *s;
}

template <class T>
struct TVectorSink
{
    TVector<TString<T>>& out;
    void operator()(T const* piece, int length)
    {
        // The vector grows by a fixed step; a long text would move its block
        // once per step, so it doubles here instead.
        int const count = out.Count();
        if (count >= out.GetNumSlots() && count >= 64)
            out.EnsureNumSlots(count * 2);
        // An empty slot and a swap cost half the reference counting of a
        // copy into the slot, which shows in texts of short lines.
        out.EnsureNumElements(count + 1);
        out[count] = TString<T>(piece, length_t(unsigned(length)));
    }
};

template <class T>
struct TListSink
{
    TFlexList<LString<T>>& out;
    void operator()(T const* piece, int length) { out.Append(new LString<T>(piece, length_t(unsigned(length)))); }
};

// The string of out that holds text, shared, so that text outlives the
// clearing of out: a caller may split one of the pieces it holds.
template <class T, class Strings>
TString<T> HoldIfInside(Strings const& out, T const* text)
{
    std::less<T const*> const before;
    for (auto const& piece : out) {
        TString<T> const& s = Deref(piece);
        if (text && !before(text, s.c_str()) && !before(s.c_end(), text))
            return s;
    }
    return TString<T>();
}

} // namespace

template <class T>
void ExplodeString(TVector<TString<T>>& out, T const* text, T const* separators, bool trim, bool keepEmpty)
{
    TString<T> const held = HoldIfInside(out, text);
    out.Clear();
    ExplodeInto(text, separators, trim, keepEmpty, TVectorSink<T>{out});
}

template <class T>
void ExplodeString(TFlexList<LString<T>>& out, T const* text, T const* separators, bool trim, bool keepEmpty)
{
    TString<T> const held = HoldIfInside(out, text);
    out.Clear();
    ExplodeInto(text, separators, trim, keepEmpty, TListSink<T>{out});
}

template <class T>
void ExplodeStringEx(TVector<TString<T>>& out, T const* text, T const* separator, bool trim, bool keepEmpty)
{
    TString<T> const held = HoldIfInside(out, text);
    out.Clear();
    ExplodeExInto(text, separator, trim, keepEmpty, TVectorSink<T>{out});
}

template <class T>
void TextToStringVector(T const* text, TVector<TString<T>>& out, bool trim, bool keepEmpty)
{
    static T const lineEnds[] = {T('\r'), T('\n'), 0};
    ExplodeString(out, text, lineEnds, trim, keepEmpty);
}

template <class T>
TString<T> StringFromStringVector(TVector<TString<T>> const& strings, T const* separator, bool terminate)
{
    static T const newLine[] = {T('\n'), 0};
    if (!separator)
        separator = newLine;
    int const separatorLength = TextLength(separator);
    int const count = strings.Count();
    long long total = 0;
    for (int i = 0; i < count; ++i)
        total += strings[i].GetLength();
    total += static_cast<long long>(separatorLength) * (count > 0 ? count - 1 : 0);
    bool const addTerminator = terminate && total > 0;
    if (addTerminator)
        total += separatorLength;
    if (total == 0)
        return TString<T>();
    TString<T> result{length_t(static_cast<unsigned>(total))};
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            result.Append(separator, unsigned(separatorLength));
        result.Append(strings[i]);
    }
    if (addTerminator)
        result.Append(separator, unsigned(separatorLength));
    return result;
}

template <class T>
int BuildMultiString(TVector<TString<T>> const& strings, T* buffer, int size)
{
    if (buffer && size < 2)
        return 0;
    int used = 0;
    int const count = strings.Count();
    for (int i = 0; i < count; ++i) {
        TString<T> const& item = strings[i];
        int const length = item.GetLength();
        if (length == 0)
            continue;
        if (buffer) {
            // Room for the item, its zero and the final zero.
            if (used + length > size - 2)
                break;
            FastCopyEx(item.c_str(), buffer + used, static_cast<size_t>(length) * sizeof(T));
            buffer[used + length] = 0;
        }
        used += length + 1;
    }
    if (used == 0) {
        if (buffer)
            buffer[0] = buffer[1] = 0;
        return 2;
    }
    if (buffer)
        buffer[used] = 0;
    return used + 1;
}

template <class T>
int* StringToIntVector(T const* text, int* count)
{
    int found = 0;
    if (text)
        for (T const* p = text; *p; ++p)
            found += IsAsciiDigit(*p) && (p == text || !IsAsciiDigit(p[-1]));
    if (count)
        *count = found;
    if (found == 0)
        return nullptr;
    int* values = static_cast<int*>(malloc_ex(found * static_cast<int>(sizeof(int))));
    int n = 0;
    for (T const* p = text; *p;) {
        if (!IsAsciiDigit(*p)) {
            ++p;
            continue;
        }
        long long value = 0;
        for (; IsAsciiDigit(*p); ++p)
            if (value <= INT_MAX)
                value = value * 10 + (*p - T('0'));
        values[n++] = value > INT_MAX ? INT_MAX : static_cast<int>(value);
    }
    return values;
}

template <class T>
TString<T> StringFromIntVector(int const* values, int count, T separator)
{
    TString<T> result;
    T digits[24];
    for (int i = 0; i < count; ++i) {
        if (i > 0 && separator)
            result.Append(separator);
        int const length = IntToString(values[i], digits, 0, 0);
        result.Append(digits, unsigned(length));
    }
    return result;
}

#define COMMON_STRING_SPLIT(T)                                                                        \
    template void ExplodeString<T>(TVector<TString<T>>&, T const*, T const*, bool, bool);             \
    template void ExplodeString<T>(TFlexList<LString<T>>&, T const*, T const*, bool, bool);           \
    template void ExplodeStringEx<T>(TVector<TString<T>>&, T const*, T const*, bool, bool);           \
    template void TextToStringVector<T>(T const*, TVector<TString<T>>&, bool, bool);                  \
    template TString<T> StringFromStringVector<T>(TVector<TString<T>> const&, T const*, bool);        \
    template int BuildMultiString<T>(TVector<TString<T>> const&, T*, int);                            \
    template int* StringToIntVector<T>(T const*, int*);                                               \
    template TString<T> StringFromIntVector<T>(int const*, int, T);
COMMON_STRING_SPLIT(char)
COMMON_STRING_SPLIT(char16_t)
#undef COMMON_STRING_SPLIT
