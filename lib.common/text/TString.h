#pragma once

#include "core/CommonExport.h"
#include "text/EWordCase.h"

#include <atomic>
#include <cstddef>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <type_traits>

class QByteArray;
class QString;
class TRandomizer;
class TInputStream;
class TOutputStream;
class TTaggedInputStream;
class TTaggedOutputStream;
enum EDataFormat : int;

// Tags that pick a constructor: TString(text, length_t(5)).
enum length_t : unsigned {};
enum offset_t : unsigned {};
enum count_t : unsigned {};

// The header in front of a string's characters. One block holds it, the
// characters and the terminator.
struct TStringRef
{
    uint32_t m_length;   // characters, terminator excluded
    uint32_t m_capacity; // bytes for characters and terminator
    std::atomic<int32_t> m_references;
};
static_assert(sizeof(TStringRef) == 12, "three 32-bit fields");

// A set of characters and the one that replaces each of them.
template <class T>
struct TCharFilter
{
    T const* m_set;
    T m_replacement;
};

// A freshly made buffer (one reference) handed to a string without a copy.
template <class T>
struct TSubString
{
    T* m_text;
};

// Called before each replacement of TString::Replace; false skips the hit.
using CB_Replace = bool (*)(int position, int length, int line, int offsetInLine, void* data);

// Reference-counted, copy-on-write string, one pointer wide. The narrow form
// holds UTF-8, the wide form UTF-16. Positions and counts are in characters.
template <class T>
class COMMON_EXPORT TString
{
    static_assert(std::is_same_v<T, char> || std::is_same_v<T, char16_t>, "char or char16_t");

public:
    using OtherChar = std::conditional_t<std::is_same_v<T, char>, char16_t, char>;
    static constexpr int s_end = 0x7fffffff; // "at the end" and "to the terminator"

    static TString* s_null;
    static TString const& null()
    {
        InitStringLib();
        return *s_null;
    }
    static void InitStringLib()
    {
        if (!s_null)
            InitStringLibReal();
    }
    static void InitStringLibReal();
    static unsigned RoundBufferSize(unsigned bytes) { return bytes == 0 ? 8u : (bytes + 7u) & ~7u; }

    // Construction
    TString() : m_text(AcquireNull()) {}
    TString(TString const& other) noexcept : m_text(other.m_text) { AddReference(m_text); }
    TString(TString&& other) noexcept : m_text(other.m_text) { other.m_text = AcquireNull(); }
    TString(std::nullptr_t) : m_text(AcquireNull()) {}
    TString(T const* text);
    TString(T const* text, length_t length);
    TString(T const* text, offset_t offset, length_t length);
    TString(TString const& text, offset_t offset, length_t length);
    TString(T const* a, T const* b);
    TString(T c, count_t count);
    explicit TString(length_t room);
    TString(bool duplicate, TString const& other);
    TString(T const* text, TCharFilter<T> const& filter);
    TString(OtherChar const* text);
    TString(OtherChar const* text, length_t length);
    explicit TString(TString<OtherChar> const& other);
    explicit TString(int value, char const* format = nullptr);
    explicit TString(long value, char const* format = nullptr);
    explicit TString(short value, char const* format = nullptr);
    explicit TString(unsigned value, char const* format = nullptr);
    explicit TString(unsigned long value, char const* format = nullptr);
    explicit TString(unsigned short value, char const* format = nullptr);
    explicit TString(long long value);
    explicit TString(unsigned long long value);
    explicit TString(double value, char const* format = "%.2lf");
    explicit TString(float value, char const* format = "%.2f");
    explicit TString(QByteArray const& bytes);
    explicit TString(QString const& text);
    TString(TSubString<T> const& adopted) noexcept : m_text(adopted.m_text) {}
    ~TString() { Release(m_text); }

    static TString* New(T const* text);
    static TString LongToString(long long value) { return TString(value); }
    static TSubString<T> Concatenate(T const* a, int lengthA, T const* b, int lengthB);

    // Assignment and release
    TString& operator=(TString const& other) noexcept;
    TString& operator=(TString&& other) noexcept;
    TString& operator=(std::nullptr_t) { return Clear(); }
    TString& operator=(T const* text);
    TString& operator=(OtherChar const* text);
    TString& Clear();
    TString& Set(T const* text, int count = s_end);
    TString& FreeUnusedMemory();
    TString& EnsureBufferSize(int characters);
    void CopyBeforeWrite()
    {
        if (GetStringRef()->m_references.load(std::memory_order_acquire) > 1)
            DuplicateBuffer(0);
    }
    // Writable characters up to the capacity; finish with SetEnd.
    T* Buffer()
    {
        CopyBeforeWrite();
        return m_text;
    }
    T* C_STR() { return Buffer(); }
    // -1 takes the length from the first terminator.
    TString& SetEnd(int length);
    TStringRef* GetStringRef() const { return RefOf(m_text); }

    // Read
    T const* c_str() const { return m_text; }
    operator T const*() const { return m_text; }
    T const* c_end() const { return m_text + GetStringRef()->m_length; }
    T operator[](int position) const { return m_text[position]; }
    T operator[](unsigned position) const { return m_text[position]; }
    T operator[](unsigned long position) const { return m_text[position]; }
    T At(int position) const { return m_text[position]; }
    // 0 for a position outside the text.
    T GetChar(int position) const
    {
        return static_cast<unsigned>(position) < GetStringRef()->m_length ? m_text[position] : T(0);
    }
    T GetFirstChar() const { return m_text[0]; }
    T GetLastChar() const
    {
        uint32_t const length = GetStringRef()->m_length;
        return length ? m_text[length - 1] : T(0);
    }
    int GetLength() const { return static_cast<int>(GetStringRef()->m_length); }
    int InternalBufferSize() const { return static_cast<int>(GetStringRef()->m_capacity); }
    bool IsEmpty() const { return GetStringRef()->m_length == 0; }
    bool HasStuff() const { return GetStringRef()->m_length != 0; }
    bool operator!() const { return IsEmpty(); }
    int GetNumberOf(T c) const;
    int CompareWith(T const* other, bool caseSensitive = true) const;

    // Numbers out: 0 for a text that is no number
    int to_int(int base = 10) const;
    int16_t to_int16(int base = 10) const;
    int32_t to_int32(int base = 10) const;
    long to_long(int base = 10) const;
    short to_short(int base = 10) const;
    char to_char(int base = 10) const;
    signed char to_schar(int base = 10) const;
    unsigned to_uint(int base = 10) const;
    uint16_t to_uint16(int base = 10) const;
    uint32_t to_uint32(int base = 10) const;
    unsigned long to_ulong(int base = 10) const;
    unsigned short to_ushort(int base = 10) const;
    unsigned char to_uchar(int base = 10) const;
    long long to_int64() const;
    double to_double() const;
    float to_float() const;
    bool to_bool() const;

    // Other forms
    TString<char> to_astr() const;
    TString<char16_t> to_wstr() const;
    QString qString() const;
    QByteArray qByteArray() const;
    TString<char> ToDbcs() const;
    TString& SetFromDbcs(char const* local);

    // Append and insert. A position past the end appends.
    TString& Append(T c)
    {
        TStringRef* ref = GetStringRef();
        uint32_t const length = ref->m_length;
        if (ref->m_references.load(std::memory_order_acquire) == 1 && (length + 2) * sizeof(T) <= ref->m_capacity) {
            m_text[length] = c;
            m_text[length + 1] = 0;
            ref->m_length = length + 1;
            return *this;
        }
        return Insert(s_end, c, 1);
    }
    TString& Append(T const* text);
    // Exactly count characters, terminators included.
    TString& Append(T const* text, unsigned count);
    TString& Append(TString const& text)
    {
        // Words are the common case: one move in place, no call.
        if (GetStringRef()->m_length != 0 && AppendShort(text))
            return *this;
        return AppendString(text);
    }
    TString& Prepend(T c) { return Insert(0, c, 1); }
    TString& Prepend(T const* text) { return Insert(0, text, s_end); }
    TString& Prepend(TString const& text) { return Insert(0, text, s_end); }
    TString& operator+=(T c) { return Append(c); }
    TString& operator+=(T const* text) { return Append(text); }
    TString& operator+=(TString const& text) { return Append(text); }
    TString& Insert(int position, T c, int count = 1);
    // count s_end: up to the terminator; otherwise exactly count characters.
    TString& Insert(int position, T const* text, int count = s_end);
    TString& Insert(int position, TString const& text, int count = s_end);
    TString& AddCount(int number, int maxNumber, T const* format = nullptr, bool atStart = false);
    TString& Pad(T c, int width, int tabSize = 0, bool left = false);
    TString& Space(int count);

    // Keep and cut by position: a position past the end changes nothing
    TString& KeepLeft(int count);
    TString& KeepRight(int count);
    TString& KeepFrom(int position);
    TString& KeepRange(int position, int count);
    TString& CutLeft(int count);
    TString& CutRight(int count);
    TString& CutFrom(int position);
    TString& CutRange(int position, int count);
    TString& CutOneChar(int position);
    TString GetLeft(int count) const;
    TString GetRight(int count) const;
    TString GetFrom(int position) const;
    TString GetRange(int position, int count) const;

    // Keep and cut by content. cutChar: the found character goes with the
    // cut side. Nothing changes when it isn't found.
    TString& CutFromFirstChar(T c, bool cutChar = true);
    TString& CutFromFirstOf(T const* set, bool cutChar = true);
    TString& CutFromLastChar(T c, bool cutChar = true);
    TString& CutFromLastOf(T const* set, bool cutChar = true);
    TString& CutUntilFirstChar(T c, bool cutChar = true);
    TString& CutUntilFirstOf(T const* set, bool cutChar = true);
    TString& CutUntilLastChar(T c, bool cutChar = true);
    TString& CutUntilLastOf(T const* set, bool cutChar = true);
    TString& CutFromString(T const* text, bool caseSensitive = true, bool trim = false);
    TString& CutAfterString(T const* text, bool caseSensitive = true, bool trim = false);
    TString& KeepAfterString(T const* text, bool caseSensitive = true, bool trim = false);
    bool CutAfterXthChar(T c, int count);
    int CutTextBetween(T const* open, T const* close, int occurrence = 0, bool cutDelimiters = false);
    TString SplitAtFirstOf(T const* set);

    // Trim and strip. A null set means space and tab.
    enum : int
    {
        trimLeft = 1,
        trimRight = 4,
        trimBoth = 5,
    };
    TString& TrimInt(T const* set, int sides);
    TString& Trim(T const* set = nullptr) { return TrimInt(set, trimBoth); }
    TString& TrimLeft(T const* set = nullptr) { return TrimInt(set, trimLeft); }
    TString& TrimRight(T const* set = nullptr) { return TrimInt(set, trimRight); }
    TString& StripChar(T c);
    TString& StripAnyOf(T const* set);
    TString& StripDoubloons(T c);
    TString& KeepOnlyDigits(bool allowMinus = false, bool allowPoint = false);
    TString& RemoveCComments();
    TString& RemoveQuotes();

    // Case and order
    TString& MakeUpper();
    TString& MakeLower();
    TString& MakeCapital(bool eachWord = false);
    TString& MakeUpperInitials();
    TString& SetCase(EWordCase wordCase);
    TString& Inverse();

    // Delimiters: each character is added only if it isn't there
    TString& SetDelimiters(T open, T close);
    TString& SetDelimiters(T const* set);
    TString& SetBraces() { return SetDelimiters(T('{'), T('}')); }
    TString& SetBrackets() { return SetDelimiters(T('<'), T('>')); }
    TString& SetQuotes() { return SetDelimiters(T('"'), T('"')); }
    TString& SetXmlBraces(bool opening = true);
    TString Quoted() const;
    TString& EnsureFirstCharIs(T c);
    TString& EnsureFirstCharIs(T const* set);
    TString& EnsureLastCharIs(T c);
    TString& EnsureLastCharIs(T const* set);

    // Replace
    int Replace(T const* from, T const* to, bool caseSensitive = true, bool wholeWord = false,
                bool matchCase = false, CB_Replace callback = nullptr, void* data = nullptr);
    TString& Replace(int position, int count, T const* text);
    TString& ReplaceChar(T from, T to);
    TString& ReplaceLastChar(T c);
    TString& ReplaceAnyOf(TCharFilter<T> const& filter);
    TString& ReplaceAnyOf(T const* set, T replacement) { return ReplaceAnyOf(TCharFilter<T>{set, replacement}); }
    TString& BackSlahesToSlashes() { return ReplaceChar(T('\\'), T('/')); }
    TString& SetChar(int position, T c);

    // Search: -1 when not found
    int Find(T const* needle, int from = 0, bool caseSensitive = true, bool wholeWord = false) const;
    int FindFirst(T c, int from = 0) const;
    int FindLast(T c) const;
    int FindOccurence(T const* needle, int n, bool caseSensitive = true) const;
    int FindFirstOf(T const* set, int from = 0) const;
    int FindLastOf(T const* set) const;
    int FindFirstNotOf(T const* set, int from = 0) const;
    int FindLastNotOf(T const* set) const;
    bool Contains(T const* needle, bool caseSensitive = true) const { return Find(needle, 0, caseSensitive) >= 0; }
    bool Contains(T c) const { return FindFirst(c) >= 0; }
    bool ContainsAnyOf(T const* set) const { return FindFirstOf(set) >= 0; }
    bool StartsWith(T const* text, bool caseSensitive = true) const;
    bool StartsWithToken(T const* text, bool caseSensitive = true) const;
    bool EndsWith(T const* text, bool caseSensitive = true, T const* precedingSet = nullptr) const;

    // Extensions: a filter is a list like "wav|aif", compared without case
    TString& AddExtension(T const* extension);
    TString& AppendExtension(T const* extension);
    TString GetExtension(T const* filter = nullptr) const;
    TString& SetExtension(T const* extension, T const* filter = nullptr);
    TString& RemoveExtension(T const* filter = nullptr);
    TString UpdatedWithExtension(T const* extension, T const* filter = nullptr) const;
    TString& AddExtensionA(char const* extension);
    TString& AppendExtensionA(char const* extension);
    TString GetExtensionA(char const* filter = nullptr) const;
    TString& SetExtensionA(char const* extension, char const* filter = nullptr);

    // Small XML: "<tag ...>content</tag>"
    bool ExistXmlSection(T const* tag) const;
    TString GetXmlSection(T const* tag) const;

    // Numbers in
    TString& SetNiceInteger();
    // At most 2047 characters are kept. The wide form reads %s and %c as
    // wide, %hs and %hc as narrow arguments.
    TString& Format(T const* format, ...);
    TString& Format(T const* format, va_list arguments);
    TString& Randomize(TRandomizer& randomizer, int minLength, int maxLength, T const* alphabet = nullptr);

    // Hash and state
    unsigned GetHashValue(bool caseSensitive = true, unsigned seed = 0) const;
    unsigned Write(TOutputStream& stream, EDataFormat format) const;
    unsigned Read(TInputStream& stream, EDataFormat format);
    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

protected:
    static TStringRef* RefOf(T const* text)
    {
        return reinterpret_cast<TStringRef*>(reinterpret_cast<char*>(const_cast<T*>(text)) - sizeof(TStringRef));
    }
    static void AddReference(T* text) noexcept { RefOf(text)->m_references.fetch_add(1, std::memory_order_relaxed); }
    static T* AcquireNull()
    {
        InitStringLib();
        T* text = s_null->m_text;
        AddReference(text);
        return text;
    }
    static void Release(T* text) noexcept
    {
        TStringRef* ref = RefOf(text);
        if (ref->m_references.load(std::memory_order_acquire) == 1
            || ref->m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            FreeBuffer(ref);
    }
    static void FreeBuffer(TStringRef* ref) noexcept;
    static T* AllocBuffer(unsigned capacity);
    static T* NewText(T const* text, unsigned length);

    void DuplicateBuffer(unsigned capacity);
    void ReallocBuffer(unsigned capacity);
    // Unshares and makes room for count more characters, with slack.
    void GrowBy(unsigned count);
    T* OpenGap(int position, int count);
    // Appends a text of fewer than 16 bytes as one block of 8 or 16 when the
    // room allows. Both buffers hold such a block whole: every buffer has 8
    // bytes, and 16 once its text needs more than 8. A move, not a copy: the
    // text may be our own.
    bool AppendShort(TString const& text)
    {
        TStringRef* ref = GetStringRef();
        TStringRef const* other = text.GetStringRef();
        uint32_t const length = ref->m_length;
        uint32_t const count = other->m_length;
        size_t const bytes = count * sizeof(T);
        size_t const block = bytes < 8 ? 8 : 16;
        if (bytes >= 16 || ref->m_capacity - length * sizeof(T) < block || other->m_capacity < block
            || ref->m_references.load(std::memory_order_acquire) != 1)
            return false;
        if (block == 8)
            std::memmove(m_text + length, text.m_text, 8);
        else
            std::memmove(m_text + length, text.m_text, 16);
        m_text[length + count] = 0;
        ref->m_length = length + count;
        return true;
    }
    TString& AppendString(TString const& text);
    void Adopt(T* text) noexcept;
    TString& Truncate(int length);
    TString& Erase(int position, int count);
    bool IsInside(T const* text) const;

    template <class> friend class TString;

    T* m_text;
};

extern template class COMMON_EXPORT TString<char>;
extern template class COMMON_EXPORT TString<char16_t>;

using AString = TString<char>;
using WString = TString<char16_t>;

template <class T>
TString<T> operator+(TString<T> const& a, TString<T> const& b)
{
    return TString<T>::Concatenate(a.c_str(), a.GetLength(), b.c_str(), b.GetLength());
}

template <class T>
TString<T> operator+(TString<T> const& a, T const* b)
{
    return TString<T>::Concatenate(a.c_str(), a.GetLength(), b, -1);
}

template <class T>
TString<T> operator+(T const* a, TString<T> const& b)
{
    return TString<T>::Concatenate(a, -1, b.c_str(), b.GetLength());
}

template <class T>
TString<T> operator+(TString<T> const& a, T b)
{
    T const pair[2] = {b, 0};
    return TString<T>::Concatenate(a.c_str(), a.GetLength(), pair, 1);
}

template <class T>
bool operator==(TString<T> const& a, TString<T> const& b)
{
    return a.c_str() == b.c_str() || (a.GetLength() == b.GetLength() && a.CompareWith(b.c_str()) == 0);
}

template <class T>
bool operator==(TString<T> const& a, T const* b)
{
    return a.CompareWith(b) == 0;
}

template <class T>
bool operator==(T const* a, TString<T> const& b)
{
    return b.CompareWith(a) == 0;
}

template <class T>
bool operator!=(TString<T> const& a, TString<T> const& b)
{
    return !(a == b);
}

template <class T>
bool operator!=(TString<T> const& a, T const* b)
{
    return !(a == b);
}

template <class T>
bool operator!=(T const* a, TString<T> const& b)
{
    return !(b == a);
}

template <class T>
bool operator<(TString<T> const& a, TString<T> const& b)
{
    return a.CompareWith(b.c_str()) < 0;
}

// A constant empty wide C string.
extern COMMON_EXPORT char16_t const* const g_nullWchar;

// Classic shift-and-fold hash, reduced modulo tableSize unless that is all
// ones. A negative length runs to the terminator.
template <class T>
COMMON_EXPORT unsigned GetHashValue(T const* text, int length, unsigned tableSize, bool caseSensitive);
extern template COMMON_EXPORT unsigned GetHashValue<char>(char const*, int, unsigned, bool);
extern template COMMON_EXPORT unsigned GetHashValue<char16_t>(char16_t const*, int, unsigned, bool);
