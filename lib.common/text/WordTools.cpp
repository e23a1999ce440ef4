#include "text/WordTools.h"

#include "text/CharOps.h"

namespace {

template <class T>
bool IsWordChar(T c)
{
    return c == T('_') || IsAlnumChar(c);
}

} // namespace

template <class T>
bool IsWholeWord(T const* text, int start, int end)
{
    if (start > 0 && IsWordChar(text[start - 1]))
        return false;
    return !IsWordChar(text[end]);
}

template <class T>
EWordCase FindTextCase(T const* text, int length)
{
    if (!text)
        return eWordCaseNone;
    if (length < 0)
        length = TextLength(text);
    int upper = 0;
    int lower = 0;
    bool upperOnlyFirst = true;
    for (int i = 0; i < length; ++i) {
        if (IsUpperChar(text[i])) {
            ++upper;
            upperOnlyFirst = upperOnlyFirst && i == 0;
        } else if (IsLowerChar(text[i])) {
            ++lower;
        }
    }
    if (upper == 0 && lower == 0)
        return eWordCaseNone;
    if (upper == 0)
        return eWordCaseLower;
    if (lower == 0)
        return eWordCaseUpper;
    return upperOnlyFirst ? eWordCaseCapital : eWordCaseMixed;
}

template bool IsWholeWord<char>(char const*, int, int);
template bool IsWholeWord<char16_t>(char16_t const*, int, int);
template EWordCase FindTextCase<char>(char const*, int);
template EWordCase FindTextCase<char16_t>(char16_t const*, int);
