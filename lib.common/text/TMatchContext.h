#pragma once

#include "core/CommonExport.h"
#include "text/TString.h"

template <class T> class TRegExpr;

// The result of one TRegExpr::Match over a text: where the match starts and
// ends, and the start and end of each capture.
template <class T>
class COMMON_EXPORT TMatchContext
{
public:
    explicit TMatchContext(T const* text = nullptr);
    // Takes the captures away from other.
    TMatchContext(TMatchContext& other);
    TMatchContext(TMatchContext const& other);
    // Leaves other as it was: both keep the captures.
    TMatchContext(TMatchContext&& other);
    // Frees the captures held here and takes other's away.
    TMatchContext& operator=(TMatchContext& other);
    TMatchContext& operator=(TMatchContext const& other);
    ~TMatchContext();

    // Frees the captures and makes room for count of them, all unset.
    bool Initialize(int count);

    // Length of capture index, or of the whole match for a negative index;
    // -1 (and *pos -1) for an index past the captures or an unset one. *pos
    // is the offset from the text.
    int GetMatch(int index, int* pos) const;
    // Empty in the cases where the length is -1.
    TString<T> GetMatch(int index) const;

    T const* GetText() const { return m_text; }
    T const* GetMatchStart() const { return m_matchStart; }
    T const* GetMatchEnd() const { return m_matchEnd; }
    int GetCaptureCount() const { return m_captureCount; }
    // index below GetCaptureCount(); null when the capture took no part.
    T const* GetCaptureStart(int index) const { return m_captures[2 * index]; }
    T const* GetCaptureEnd(int index) const { return m_captures[2 * index + 1]; }

private:
    void CopyFrom(TMatchContext const& other);
    void TakeFrom(TMatchContext& other);
    void FreeCaptures();
    T const* Start(int index) const;
    T const* End(int index) const;

    T const* m_text;
    T const* m_matchStart;
    T const* m_matchEnd;
    // Start and end of each capture, in pairs.
    T const** m_captures;
    int m_captureCount;

    friend class TRegExpr<T>;
};

extern template class COMMON_EXPORT TMatchContext<char>;
extern template class COMMON_EXPORT TMatchContext<char16_t>;
