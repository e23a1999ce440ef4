#include "text/CStringHelpers.h"

#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "text/CharOps.h"

namespace {

template <class T>
T const* OrEmpty(T const* text)
{
    static T const empty = 0;
    return text ? text : &empty;
}

template <class T>
bool IsBlankOrInSet(T c, T const* set)
{
    return set ? IsInSet(c, set) : (c == T(' ') || c == T('\t'));
}

template <class T>
int CodeOf(T c)
{
    return static_cast<std::make_unsigned_t<T>>(c);
}

// text + position, or the terminator when that comes first.
template <class T>
T const* ClampToText(T const* text, int position)
{
    T const* p = text;
    T const* const limit = text + (position > 0 ? position : 0);
    while (p < limit && *p)
        ++p;
    return p;
}

} // namespace

template <class T>
T* Strcpy(T* target, T const* source, unsigned size, bool zeroRest)
{
    if (size == 0)
        return target;
    source = OrEmpty(source);
    unsigned copied = 0;
    while (copied + 1 < size && source[copied]) {
        target[copied] = source[copied];
        ++copied;
    }
    target[copied] = 0;
    if (zeroRest && copied + 1 < size)
        FastZeroEx(target + copied + 1, static_cast<int>((size - copied - 1) * sizeof(T)));
    return target;
}

template <class T>
int MakeString(T* target, int size, T const* source, int length)
{
    if (size < 1)
        return 0;
    source = OrEmpty(source);
    if (length < 0)
        length = TextLength(source);
    int const count = length < size - 1 ? length : size - 1;
    FastCopyEx(source, target, static_cast<size_t>(count) * sizeof(T));
    target[count] = 0;
    return count;
}

template <class T>
T* StrcpyEx(T* target, T const* source)
{
    source = OrEmpty(source);
    while ((*target = *source) != 0) {
        ++target;
        ++source;
    }
    return target;
}

template <class T>
T* StrcatEx(T* target, T const* source)
{
    return StrcpyEx(target + TextLength(target), source);
}

template <class T>
T* Strnewdup(T const* source, int length)
{
    if (!source)
        return nullptr;
    if (length < 0)
        length = TextLength(source);
    T* copy = static_cast<T*>(malloc_ex(static_cast<int>((length + 1) * sizeof(T))));
    FastCopyEx(source, copy, static_cast<size_t>(length) * sizeof(T));
    copy[length] = 0;
    return copy;
}

template <class T>
int CountChar(T const* text, TCharArg<T> c)
{
    int count = 0;
    if (text && c)
        for (; *text; ++text)
            count += *text == c;
    return count;
}

template <class T>
int CountSubStrings(T const* text, T const* needle, bool caseSensitive)
{
    if (!text || !needle || !*needle)
        return 0;
    int const needleLength = TextLength(needle);
    int count = 0;
    while (*text) {
        int matched = 0;
        while (matched < needleLength && text[matched] && SameChar(text[matched], needle[matched], caseSensitive))
            ++matched;
        if (matched == needleLength) {
            ++count;
            text += needleLength;
        } else {
            ++text;
        }
    }
    return count;
}

template <class T>
T const* FindLastOf(T const* text, T const* set)
{
    if (!text || !set || !*set)
        return nullptr;
    T const* last = nullptr;
    for (; *text; ++text)
        if (IsInSet(*text, set))
            last = text;
    return last;
}

template <class T>
int ReplaceChar(T* text, TCharArg<T> from, TCharArg<T> to)
{
    int count = 0;
    if (text && from)
        for (; *text; ++text)
            if (*text == from) {
                *text = to;
                ++count;
            }
    return count;
}

template <class T>
int ReplaceChars(T* text, T const* from, T const* to)
{
    if (!text || !from || !*from)
        return 0;
    int const fromLength = TextLength(from);
    int const toLength = TextLength(OrEmpty(to));
    if (toLength != 1 && toLength != fromLength) {
        qCWarning(LogNoGoZone) << "ReplaceChars" << toLength;
        return 0;
    }
    int count = 0;
    for (; *text; ++text) {
        int const at = FindCharIn(from, fromLength, *text);
        if (at >= 0) {
            *text = to[toLength == 1 ? 0 : at];
            ++count;
        }
    }
    return count;
}

template <class T>
T* Inverse(T* text, int length)
{
    if (!text)
        return text;
    if (length < 0)
        length = TextLength(text);
    for (T *left = text, *right = text + length - 1; left < right; ++left, --right) {
        T const c = *left;
        *left = *right;
        *right = c;
    }
    return text;
}

template <class T>
int Compare(T const* a, T const* b, bool caseSensitive)
{
    a = OrEmpty(a);
    b = OrEmpty(b);
    for (;; ++a, ++b) {
        // Unsigned, as strcmp does, so that UTF-8 sorts by code point.
        int const ca = CodeOf(caseSensitive ? *a : UpperOf(*a));
        int const cb = CodeOf(caseSensitive ? *b : UpperOf(*b));
        if (ca != cb || ca == 0)
            return ca - cb;
    }
}

template <class T>
bool AreEqual(T const* a, T const* b, bool caseSensitive)
{
    return a == b || Compare(a, b, caseSensitive) == 0;
}

template <class T>
T const* FindTrimmedSubString(T const* text, int textLength, int* length, TCharArg<T> const* set, int sides)
{
    text = OrEmpty(text);
    T const* start = text;
    T const* end = text + (textLength > 0 ? textLength : 0);
    if (sides & 1)
        while (start < end && IsBlankOrInSet(*start, set))
            ++start;
    if (sides & 4)
        while (end > start && IsBlankOrInSet(end[-1], set))
            --end;
    if (length)
        *length = static_cast<int>(end - start);
    return start;
}

template <class T>
T const* FindTrimmedSubString(T const* text, int* length, TCharArg<T> const* set, int sides)
{
    text = OrEmpty(text);
    return FindTrimmedSubString(text, TextLength(text), length, set, sides);
}

template <class T>
int FindLineIndex(T const* text, int position)
{
    text = OrEmpty(text);
    T const* const end = ClampToText(text, position);
    int line = 0;
    for (T const* p = text; p < end; ++p)
        line += *p == T('\n');
    return line;
}

template <class T>
int FindOffsetFromStartOfLine(T const* text, int position)
{
    text = OrEmpty(text);
    T const* const end = ClampToText(text, position);
    T const* lineStart = end;
    while (lineStart > text && lineStart[-1] != T('\n'))
        --lineStart;
    return static_cast<int>(end - lineStart);
}

#define COMMON_CSTRING_HELPERS(T)                                                          \
    template T* Strcpy<T>(T*, T const*, unsigned, bool);                                   \
    template int MakeString<T>(T*, int, T const*, int);                                    \
    template T* StrcpyEx<T>(T*, T const*);                                                 \
    template T* StrcatEx<T>(T*, T const*);                                                 \
    template T* Strnewdup<T>(T const*, int);                                               \
    template int CountChar<T>(T const*, T);                                                \
    template int CountSubStrings<T>(T const*, T const*, bool);                             \
    template T const* FindLastOf<T>(T const*, T const*);                                   \
    template int ReplaceChar<T>(T*, T, T);                                                 \
    template int ReplaceChars<T>(T*, T const*, T const*);                                  \
    template T* Inverse<T>(T*, int);                                                       \
    template bool AreEqual<T>(T const*, T const*, bool);                                   \
    template int Compare<T>(T const*, T const*, bool);                                     \
    template T const* FindTrimmedSubString<T>(T const*, int*, T const*, int);              \
    template T const* FindTrimmedSubString<T>(T const*, int, int*, T const*, int);         \
    template int FindLineIndex<T>(T const*, int);                                          \
    template int FindOffsetFromStartOfLine<T>(T const*, int);
COMMON_CSTRING_HELPERS(char)
COMMON_CSTRING_HELPERS(char16_t)
#undef COMMON_CSTRING_HELPERS
