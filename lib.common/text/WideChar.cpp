#include "text/WideChar.h"

#include <QChar>

int WideLength(char16_t const* text)
{
    char16_t const* end = text;
    while (*end)
        ++end;
    return static_cast<int>(end - text);
}

char16_t const* WideFindChar(char16_t const* text, char16_t c)
{
    for (;; ++text) {
        if (*text == c)
            return text;
        if (!*text)
            return nullptr;
    }
}

char16_t const* WideFindString(char16_t const* text, char16_t const* needle)
{
    if (!*needle)
        return text;
    for (; *text; ++text) {
        if (*text != *needle)
            continue;
        int i = 1;
        while (needle[i] && text[i] == needle[i])
            ++i;
        if (!needle[i])
            return text;
    }
    return nullptr;
}

int WideCompare(char16_t const* a, char16_t const* b)
{
    for (; *a && *a == *b; ++a, ++b) {
    }
    return *a == *b ? 0 : *a < *b ? -1 : 1;
}

int WideCompareNoCase(char16_t const* a, char16_t const* b)
{
    return WideCompareNoCase(a, b, 0x7fffffff);
}

int WideCompareNoCase(char16_t const* a, char16_t const* b, int count)
{
    for (int i = 0; i < count; ++i) {
        // Lower case, as the C library's case-blind comparisons do.
        char16_t const x = WideToLower(a[i]);
        char16_t const y = WideToLower(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
        if (!x)
            return 0;
    }
    return 0;
}

// A BMP character whose case partner lies outside the BMP keeps its form.
char16_t WideToUpperSlow(char16_t c)
{
    uint const upper = QChar::toUpper(static_cast<uint>(c));
    return upper <= 0xFFFF ? static_cast<char16_t>(upper) : c;
}

char16_t WideToLowerSlow(char16_t c)
{
    uint const lower = QChar::toLower(static_cast<uint>(c));
    return lower <= 0xFFFF ? static_cast<char16_t>(lower) : c;
}

bool WideIsAlphaSlow(char16_t c)
{
    return QChar::isLetter(static_cast<uint>(c));
}

bool WideIsDigitSlow(char16_t c)
{
    return QChar::isDigit(static_cast<uint>(c));
}

bool WideIsSpaceSlow(char16_t c)
{
    return QChar::isSpace(static_cast<uint>(c));
}
