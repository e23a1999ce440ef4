#include "persist/TInputMemoryStream.h"

#include "persist/ComposeBuffer.h"
#include "text/StringSplit.h"
#include "text/TString.h"

#include <cstdint>
#include <cstring>

namespace {

char16_t WideAt(unsigned char const* bytes)
{
    char16_t c;
    std::memcpy(&c, bytes, 2);
    return c;
}

TString<char16_t> WideFromBytes(unsigned char const* bytes, int length)
{
    if (length <= 0)
        return TString<char16_t>();
    size_t const size = static_cast<size_t>(length) * 2;
    if (reinterpret_cast<uintptr_t>(bytes) % alignof(char16_t) == 0)
        return TString<char16_t>(reinterpret_cast<char16_t const*>(bytes), length_t(static_cast<unsigned>(length)));
    TComposeBuffer aligned(static_cast<unsigned>(size));
    std::memcpy(aligned.Data(), bytes, size);
    return TString<char16_t>(reinterpret_cast<char16_t const*>(aligned.Data()), length_t(static_cast<unsigned>(length)));
}

unsigned int RoundUpTo4(unsigned int size)
{
    return (size + 3) & ~3u;
}

} // namespace

unsigned int TInputMemoryStream::ReadDataPastEnd(void* data, unsigned int size)
{
    unsigned int const inside = GetSizeLeft();
    FastCopyEx(m_current, data, inside);
    FastZeroEx(static_cast<unsigned char*>(data) + inside, static_cast<int>(size - inside));
    m_current += size;
    return GetPosition();
}

int TInputMemoryStream::MeasureNarrow() const
{
    unsigned int const left = GetSizeLeft();
    void const* zero = left ? std::memchr(m_current, 0, left) : nullptr;
    return static_cast<int>(zero ? static_cast<unsigned char const*>(zero) - m_current : left);
}

int TInputMemoryStream::MeasureWide() const
{
    unsigned int const units = GetSizeLeft() / 2;
    unsigned int length = 0;
    while (length < units && WideAt(m_current + length * 2) != 0)
        ++length;
    return static_cast<int>(length);
}

int TInputMemoryStream::FindStringLenA() const
{
    return MeasureNarrow();
}

int TInputMemoryStream::FindStringLenW() const
{
    return MeasureWide();
}

unsigned int TInputMemoryStream::SkipAligned(unsigned int consumed)
{
    m_current += consumed;
    return GetPosition();
}

unsigned int TInputMemoryStream::ReadString(char* text)
{
    int const length = MeasureNarrow();
    std::memcpy(text, m_current, static_cast<size_t>(length));
    text[length] = 0;
    return SkipAligned(static_cast<unsigned>(length) + (static_cast<unsigned>(length) < GetSizeLeft() ? 1 : 0));
}

unsigned int TInputMemoryStream::ReadString(TString<char>& text)
{
    int const length = MeasureNarrow();
    text = TString<char>(reinterpret_cast<char const*>(m_current), length_t(static_cast<unsigned>(length)));
    return SkipAligned(static_cast<unsigned>(length) + (static_cast<unsigned>(length) < GetSizeLeft() ? 1 : 0));
}

unsigned int TInputMemoryStream::ReadString(char16_t* text)
{
    int const length = MeasureWide();
    std::memcpy(text, m_current, static_cast<size_t>(length) * 2);
    text[length] = 0;
    unsigned int const terminator = GetSizeLeft() >= static_cast<unsigned>(length) * 2 + 2 ? 2 : 0;
    return SkipAligned(static_cast<unsigned>(length) * 2 + terminator);
}

unsigned int TInputMemoryStream::ReadString(TString<char16_t>& text)
{
    int const length = MeasureWide();
    text = WideFromBytes(m_current, length);
    unsigned int const terminator = GetSizeLeft() >= static_cast<unsigned>(length) * 2 + 2 ? 2 : 0;
    return SkipAligned(static_cast<unsigned>(length) * 2 + terminator);
}

unsigned int TInputMemoryStream::ReadStringThenAlign(char* text)
{
    int const length = MeasureNarrow();
    std::memcpy(text, m_current, static_cast<size_t>(length));
    text[length] = 0;
    return SkipAligned(RoundUpTo4(static_cast<unsigned>(length) + 1));
}

unsigned int TInputMemoryStream::ReadStringThenAlign(char16_t* text)
{
    int const length = MeasureWide();
    std::memcpy(text, m_current, static_cast<size_t>(length) * 2);
    text[length] = 0;
    return SkipAligned(RoundUpTo4(static_cast<unsigned>(length) * 2 + 2));
}

void TInputMemoryStream::ReadStringThenAlign(TString<char>& text)
{
    int const length = MeasureNarrow();
    text = TString<char>(reinterpret_cast<char const*>(m_current), length_t(static_cast<unsigned>(length)));
    SkipAligned(RoundUpTo4(static_cast<unsigned>(length) + 1));
}

void TInputMemoryStream::ReadStringThenAlign(TString<char16_t>& text)
{
    int const length = MeasureWide();
    text = WideFromBytes(m_current, length);
    SkipAligned(RoundUpTo4(static_cast<unsigned>(length) * 2 + 2));
}

void TInputMemoryStream::ReadLine(TString<char>& line, int maxChars, bool* atEnd)
{
    line.Clear();
    if (maxChars < 1)
        return;
    unsigned char const* text = m_current;
    unsigned int const left = GetSizeLeft();
    unsigned int const limit = static_cast<unsigned int>(maxChars);
    unsigned int n = 0;
    unsigned int consumed = 0;
    bool ended = false;
    for (;; ++n) {
        if (n == limit) {
            consumed = n;
            break;
        }
        if (n == left) { // the end of the block reads as a zero that stays
            consumed = n;
            ended = true;
            break;
        }
        unsigned char const c = text[n];
        if (c == 0) {
            consumed = n + 1;
            ended = true;
            break;
        }
        if (c == '\n') {
            consumed = n + 1;
            break;
        }
        if (c == '\r') {
            consumed = n + 1 < left && text[n + 1] == '\n' ? n + 2 : n + 1;
            break;
        }
    }
    if (n > 0)
        line = TString<char>(reinterpret_cast<char const*>(text), length_t(n));
    m_current += consumed;
    if (ended && atEnd)
        *atEnd = true;
}

void TInputMemoryStream::ReadLine(TString<char16_t>& line, int maxChars, bool* atEnd)
{
    line.Clear();
    unsigned int position = GetPosition();
    int count = 0;
    bool byLimit = true;
    for (int i = 1; i < maxChars; i += 2) {
        char16_t const c = position + 2 <= m_size ? WideAt(m_start + position) : 0;
        if (c == 0) {
            // Long-standing behaviour: the flag is only ever confirmed, never
            // raised. A null flag is read as false.
            if (atEnd && *atEnd)
                *atEnd = true;
            byLimit = false;
            break;
        }
        if (c == '\r' || c == '\n') {
            byLimit = false;
            break;
        }
        ++count;
        position += 2;
    }
    line = WideFromBytes(m_current, count);
    if (byLimit)
        SetPosition(position);
}

void TInputMemoryStream::UngetChar(char c)
{
    if (m_current > m_start)
        *--m_current = static_cast<unsigned char>(c);
}

unsigned int TInputMemoryStream::Align(int alignment)
{
    if (alignment >= 2) {
        unsigned int const rest = GetPosition() % static_cast<unsigned int>(alignment);
        if (rest)
            m_current += static_cast<unsigned int>(alignment) - rest;
    }
    return GetPosition();
}

void TInputMemoryStream::ReadTokens(TVector<TString<char>, false>& result, char const* delimiters)
{
    TString<char> text;
    ReadString(text);
    ExplodeString<char>(result, text.c_str(), delimiters, false, true);
}
