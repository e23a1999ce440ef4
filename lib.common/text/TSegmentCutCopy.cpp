#include "text/TSegmentCutCopy.h"

template <class T>
int TSegmentCutCopy<T>::Compare(TObject const& other, long long) const
{
    auto const& segment = static_cast<TSegmentCutCopy const&>(other);
    if (m_start != segment.m_start)
        return m_start < segment.m_start ? -1 : 1;
    if (m_order != segment.m_order)
        return m_order < segment.m_order ? -1 : 1;
    return 0;
}

template <class T>
TObject* TSegmentCutCopy<T>::CreateClone(void*) const
{
    return new TSegmentCutCopy(*this);
}

namespace {

// Walks the plan once with the merge rules; the visitor sees every piece
// of the result in order, as (pointer, count).
template <class T, class Visit>
void WalkPlan(TString<T> const& source, TFlexList<TSegmentCutCopy<T>> const& plan, Visit&& visit)
{
    long long const sourceLength = source.GetLength();
    long long read = 0;
    auto copySource = [&](long long until) {
        if (until > sourceLength)
            until = sourceLength;
        if (until > read)
            visit(source.c_str() + read, static_cast<int>(until - read));
    };
    for (TSegmentCutCopy<T> const* segment : plan) {
        long long const start = segment->GetStart() > 0 ? segment->GetStart() : 0;
        if (start > read) {
            copySource(start);
            read = start;
        }
        if (segment->GetLengthCut() > 0)
            read += segment->GetLengthCut();
        TString<T> const& text = segment->GetText();
        if (text.HasStuff())
            visit(text.c_str(), text.GetLength());
    }
    copySource(sourceLength);
}

} // namespace

template <class T>
TString<T> CopyAndMerge(TString<T> const& source, TFlexList<TSegmentCutCopy<T>> const& plan)
{
    if (plan.IsEmpty())
        return source;
    long long total = 0;
    WalkPlan(source, plan, [&](T const*, int count) { total += count; });
    if (total == 0)
        return TString<T>();
    TString<T> result{length_t(static_cast<unsigned>(total))};
    WalkPlan(source, plan, [&](T const* piece, int count) { result.Append(piece, static_cast<unsigned>(count)); });
    return result;
}

template class TSegmentCutCopy<char>;
template class TSegmentCutCopy<char16_t>;
template TString<char> CopyAndMerge<char>(TString<char> const&, TFlexList<TSegmentCutCopy<char>> const&);
template TString<char16_t> CopyAndMerge<char16_t>(TString<char16_t> const&, TFlexList<TSegmentCutCopy<char16_t>> const&);
