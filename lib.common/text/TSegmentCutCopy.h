#pragma once

#include "core/TFlexList.h"
#include "core/TListElement.h"
#include "text/TString.h"

// One edit of a text: lengthCut characters from start give way to text.
// A TFlexList of them, sorted by Compare, is a plan for CopyAndMerge; the
// order number keeps edits at one start in the sequence they were made.
template <class T>
class COMMON_EXPORT TSegmentCutCopy : public TListElement
{
public:
    TSegmentCutCopy(int start, int lengthCut, TString<T> const& text, int order = 0)
        : m_start(start), m_lengthCut(lengthCut), m_text(text), m_order(order)
    {
    }

    int GetStart() const { return m_start; }
    int GetLengthCut() const { return m_lengthCut; }
    TString<T> const& GetText() const { return m_text; }
    int GetOrder() const { return m_order; }

    // By start, then by order number.
    int Compare(TObject const& other, long long mode) const override;
    TObject* CreateClone(void* context) const override;

private:
    int m_start;
    int m_lengthCut;
    TString<T> m_text;
    int m_order;
};

extern template class COMMON_EXPORT TSegmentCutCopy<char>;
extern template class COMMON_EXPORT TSegmentCutCopy<char16_t>;

// Applies a plan in one pass into one allocation. The plan is sorted by the
// caller. For each edit: the source up to its start is copied if the read
// position is behind it, the read position moves on by the length cut, and
// the edit's text goes in; then the rest of the source follows. Positions
// past the source's end take nothing from it. An empty plan gives a copy.
template <class T>
COMMON_EXPORT TString<T> CopyAndMerge(TString<T> const& source, TFlexList<TSegmentCutCopy<T>> const& plan);

extern template COMMON_EXPORT TString<char> CopyAndMerge<char>(TString<char> const&, TFlexList<TSegmentCutCopy<char>> const&);
extern template COMMON_EXPORT TString<char16_t> CopyAndMerge<char16_t>(TString<char16_t> const&,
                                                                      TFlexList<TSegmentCutCopy<char16_t>> const&);
