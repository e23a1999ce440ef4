#include "text/TTagStringSet.h"

#include "text/TextConversion.h"

#include <cstring>
#include <type_traits>

namespace {

constexpr bool IsHighSurrogate(char16_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char16_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

template <class T>
T const* OrEmpty(T const* text)
{
    static T const empty = 0;
    return text ? text : &empty;
}

template <class T>
void AppendHexUnit(TString<T>& out, unsigned unit)
{
    static char const digits[] = "0123456789ABCDEF";
    out.Append(T('\\'));
    out.Append(T('u'));
    for (int shift = 12; shift >= 0; shift -= 4)
        out.Append(T(digits[(unit >> shift) & 0xF]));
}

// The field with its escapes, still in its own character type.
template <class T>
TString<T> Escaped(TString<T> const& field)
{
    T const* text = field.c_str();
    int const length = field.GetLength();
    TString<T> out{length_t(unsigned(length + length / 8))};
    for (int i = 0; i < length; ++i) {
        T const c = text[i];
        switch (c) {
        case T('\\'): out.Append(T('\\')); out.Append(T('\\')); continue;
        case T('\t'): out.Append(T('\\')); out.Append(T('t')); continue;
        case T('\n'): out.Append(T('\\')); out.Append(T('n')); continue;
        case T('\r'): out.Append(T('\\')); out.Append(T('r')); continue;
        case T(0): out.Append(T('\\')); out.Append(T('0')); continue;
        default: break;
        }
        if constexpr (std::is_same_v<T, char16_t>) {
            if (IsHighSurrogate(c) && i + 1 < length && IsLowSurrogate(text[i + 1])) {
                out.Append(c);
                out.Append(text[++i]);
                continue;
            }
            if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
                AppendHexUnit(out, c);
                continue;
            }
        }
        out.Append(c);
    }
    return out;
}

void AppendField(TString<char>& out, TString<char> const& field)
{
    out.Append(Escaped(field));
}

void AppendField(TString<char>& out, TString<char16_t> const& field)
{
    out.Append(ConvertToUtf8(Escaped(field)));
}

int HexValue(int c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

template <class T>
bool Unescape(T const* text, int length, TString<T>& out)
{
    out = TString<T>(length_t(unsigned(length)));
    for (int i = 0; i < length; ++i) {
        if (text[i] != T('\\')) {
            out.Append(text[i]);
            continue;
        }
        if (++i >= length)
            return false;
        switch (text[i]) {
        case T('\\'): out.Append(T('\\')); break;
        case T('t'): out.Append(T('\t')); break;
        case T('n'): out.Append(T('\n')); break;
        case T('r'): out.Append(T('\r')); break;
        case T('0'): out.Append(T(0)); break;
        case T('u'): {
            if (!std::is_same_v<T, char16_t> || i + 4 >= length)
                return false;
            unsigned unit = 0;
            for (int k = 1; k <= 4; ++k) {
                int const digit = HexValue(text[i + k]);
                if (digit < 0)
                    return false;
                unit = unit * 16 + unsigned(digit);
            }
            out.Append(T(unit));
            i += 4;
            break;
        }
        default:
            return false;
        }
    }
    return true;
}

bool ParseField(char const* bytes, int length, TString<char>& out)
{
    return Unescape(bytes, length, out);
}

bool ParseField(char const* bytes, int length, TString<char16_t>& out)
{
    if (MeasureUtf8(bytes, length) < 0)
        return false;
    TString<char16_t> const decoded = ConvertBytes(bytes, length);
    return Unescape(decoded.c_str(), decoded.GetLength(), out);
}

} // namespace

template <class T>
void TTagStringSet<T>::Clear()
{
    m_tags.Clear();
    m_kinds.Clear();
    m_values.Clear();
}

template <class T>
TString<T> const& TTagStringSet<T>::GetTag(int index) const
{
    return m_tags.IsValidIndex(index) ? m_tags[index] : TString<T>::null();
}

template <class T>
TString<T> const& TTagStringSet<T>::GetKind(int index) const
{
    return m_kinds.IsValidIndex(index) ? m_kinds[index] : TString<T>::null();
}

template <class T>
TString<T> const& TTagStringSet<T>::GetString(int index) const
{
    return m_values.IsValidIndex(index) ? m_values[index] : TString<T>::null();
}

template <class T>
int TTagStringSet<T>::GetTagIndex(T const* tag) const
{
    tag = OrEmpty(tag);
    for (int i = 0; i < m_tags.Count(); ++i)
        if (m_tags[i].CompareWith(tag, m_caseSensitiveTags) == 0)
            return i;
    return -1;
}

template <class T>
int TTagStringSet<T>::SetTagString(T const* tag, T const* value)
{
    int const index = GetTagIndex(tag);
    if (index >= 0) {
        m_values[index] = TString<T>(value);
        return index;
    }
    static T const stringKind[] = {T('s'), 0};
    m_tags.Add(TString<T>(tag));
    m_kinds.Add(TString<T>(stringKind));
    m_values.Add(TString<T>(value));
    return m_tags.LastIndex();
}

template <class T>
int TTagStringSet<T>::ReplaceString(T const* tag, T const* from, T const* to)
{
    int const index = GetTagIndex(tag);
    return index < 0 ? 0 : m_values[index].Replace(from, to);
}

template <class T>
int TTagStringSet<T>::ReplaceInAllStrings(char kind, T const* from, T const* to)
{
    int replaced = 0;
    for (int i = 0; i < m_values.Count(); ++i) {
        TString<T> const& entryKind = m_kinds[i];
        if (kind == 0 || (entryKind.GetLength() == 1 && entryKind[0] == T(kind)))
            replaced += m_values[i].Replace(from, to);
    }
    return replaced;
}

template <class T>
TString<T> TTagStringSet<T>::GetStringFromTag(T const* tag, int* index) const
{
    int const found = GetTagIndex(tag);
    if (index)
        *index = found;
    return found < 0 ? TString<T>() : m_values[found];
}

template <class T>
void TTagStringSet<T>::Remove(int index)
{
    if (!m_tags.IsValidIndex(index))
        return;
    m_tags.Cut(index);
    m_kinds.Cut(index);
    m_values.Cut(index);
}

template <class T>
bool TTagStringSet<T>::InitFromBuffer(char const* buffer, int size)
{
    if (size < 0 || (!buffer && size > 0))
        return false;
    TTagStringSet parsed(m_caseSensitiveTags);
    for (int start = 0; start < size;) {
        auto const* newLine = static_cast<char const*>(std::memchr(buffer + start, '\n', size_t(size - start)));
        int const end = newLine ? int(newLine - buffer) : size;
        int lineEnd = end;
        if (lineEnd > start && buffer[lineEnd - 1] == '\r')
            --lineEnd;
        char const* line = buffer + start;
        int const lineLength = lineEnd - start;
        auto const* tab1 = static_cast<char const*>(std::memchr(line, '\t', size_t(lineLength)));
        if (!tab1)
            return false;
        auto const* tab2 = static_cast<char const*>(std::memchr(tab1 + 1, '\t', size_t(line + lineLength - tab1 - 1)));
        if (!tab2 || std::memchr(tab2 + 1, '\t', size_t(line + lineLength - tab2 - 1)))
            return false;
        TString<T> tag, kind, value;
        if (!ParseField(line, int(tab1 - line), tag) || !ParseField(tab1 + 1, int(tab2 - tab1 - 1), kind)
            || !ParseField(tab2 + 1, int(line + lineLength - tab2 - 1), value))
            return false;
        // A repeated tag replaces the entry before it, as SetTagString does.
        int const index = parsed.SetTagString(tag.c_str(), nullptr);
        parsed.m_kinds[index] = kind;
        parsed.m_values[index] = value;
        start = end + 1;
    }
    m_tags.SwapWith(parsed.m_tags);
    m_kinds.SwapWith(parsed.m_kinds);
    m_values.SwapWith(parsed.m_values);
    return true;
}

template <class T>
TString<char> TTagStringSet<T>::Externalize() const
{
    TString<char> out;
    for (int i = 0; i < m_tags.Count(); ++i) {
        AppendField(out, m_tags[i]);
        out.Append('\t');
        AppendField(out, m_kinds[i]);
        out.Append('\t');
        AppendField(out, m_values[i]);
        out.Append('\n');
    }
    return out;
}

template <class T>
void TTagStringSet<T>::SetBuffer(TBuffer<char>& buffer) const
{
    TString<char> const external = Externalize();
    buffer.Set(external.c_str(), external.GetLength());
}

template class TTagStringSet<char>;
template class TTagStringSet<char16_t>;
