#pragma once

#include "core/TVector.h"
#include "text/TString.h"

// How one entry of a TFindRepHelper searches.
enum EFindRepFlags : int
{
    eFindRepPattern = 1,       // a TRegExpr pattern, see ReplaceAllPatterns
    eFindRepCaseSensitive = 2,
    eFindRepWholeWord = 4,     // plain texts only: a pattern says it with /b
};

// One search text with its flags: the 16-byte slot of TFindRepHelper.
template <class T>
struct TFindRepSearch
{
    TString<T> m_text;
    int m_flags;
};

template <class C>
struct TRelocatable<TFindRepSearch<C>> : std::true_type {};

// A prepared batch of replacements, applied in the order they were added by
// FindReplace. The callback and its data go to every plain replacement, as
// TString::Replace takes them.
template <class T>
class COMMON_EXPORT TFindRepHelper
{
public:
    explicit TFindRepHelper(CB_Replace callback = nullptr, void* callbackData = nullptr);

    // Returns the index of the new entry. An empty search text is kept but
    // replaces nothing.
    int Add(T const* search, T const* replacement, int flags = eFindRepCaseSensitive);
    void Clear();
    int Count() const { return m_searches.Count(); }
    bool IsEmpty() const { return m_searches.IsEmpty(); }

    TString<T> const& GetSearch(int index) const { return m_searches[index].m_text; }
    int GetFlags(int index) const { return m_searches[index].m_flags; }
    TString<T> const& GetReplacement(int index) const { return m_replacements[index]; }

    void SetCallback(CB_Replace callback, void* callbackData)
    {
        m_callback = callback;
        m_callbackData = callbackData;
    }
    CB_Replace GetCallback() const { return m_callback; }
    void* GetCallbackData() const { return m_callbackData; }

private:
    TVector<TFindRepSearch<T>> m_searches;
    TVector<TString<T>> m_replacements;
    CB_Replace m_callback;
    void* m_callbackData;
};

extern template class COMMON_EXPORT TFindRepHelper<char>;
extern template class COMMON_EXPORT TFindRepHelper<char16_t>;

// result takes length characters of text (a negative length runs to the
// terminator); then every entry of the batch replaces in the result of the
// one before. Returns the sum of the replacements.
template <class T>
COMMON_EXPORT int FindReplace(T const* text, int length, TString<T>& result, TFindRepHelper<T> const& batch);

extern template COMMON_EXPORT int FindReplace<char>(char const*, int, TString<char>&, TFindRepHelper<char> const&);
extern template COMMON_EXPORT int FindReplace<char16_t>(char16_t const*, int, TString<char16_t>&,
                                                        TFindRepHelper<char16_t> const&);
