#include "text/TFindRepHelper.h"

#include "text/PatternReplace.h"

static_assert(sizeof(TFindRepSearch<char>) == 16, "search slots are 16 bytes");

template <class T>
TFindRepHelper<T>::TFindRepHelper(CB_Replace callback, void* callbackData)
    : m_callback(callback), m_callbackData(callbackData)
{
}

template <class T>
int TFindRepHelper<T>::Add(T const* search, T const* replacement, int flags)
{
    m_searches.Add(TFindRepSearch<T>{TString<T>(search), flags});
    m_replacements.Add(TString<T>(replacement));
    return m_searches.LastIndex();
}

template <class T>
void TFindRepHelper<T>::Clear()
{
    m_searches.Clear();
    m_replacements.Clear();
}

template <class T>
int FindReplace(T const* text, int length, TString<T>& result, TFindRepHelper<T> const& batch)
{
    if (!text)
        result.Clear();
    else if (length < 0)
        result = TString<T>(text);
    else
        result = TString<T>(text, length_t(unsigned(length)));
    int replaced = 0;
    for (int i = 0; i < batch.Count(); ++i) {
        int const flags = batch.GetFlags(i);
        if (flags & eFindRepPattern) {
            replaced += ReplaceAllPatterns(result, batch.GetSearch(i).c_str(), batch.GetReplacement(i).c_str(),
                                           (flags & eFindRepCaseSensitive) != 0, batch.GetCallback(),
                                           batch.GetCallbackData());
            continue;
        }
        replaced += result.Replace(batch.GetSearch(i).c_str(), batch.GetReplacement(i).c_str(),
                                   (flags & eFindRepCaseSensitive) != 0, (flags & eFindRepWholeWord) != 0, false,
                                   batch.GetCallback(), batch.GetCallbackData());
    }
    return replaced;
}

template class TFindRepHelper<char>;
template class TFindRepHelper<char16_t>;
template int FindReplace<char>(char const*, int, TString<char>&, TFindRepHelper<char> const&);
template int FindReplace<char16_t>(char16_t const*, int, TString<char16_t>&, TFindRepHelper<char16_t> const&);
