#include "text/PatternReplace.h"

#include "text/CharOps.h"
#include "text/TMatchContext.h"

#include <climits>

namespace {

// Line and offset of positions that only move forwards, counted once.
template <class T>
class TLineTracker
{
public:
    explicit TLineTracker(T const* text) : m_text(text) {}

    void MoveTo(int position)
    {
        for (; m_scanned < position; ++m_scanned)
            if (m_text[m_scanned] == T('\n')) {
                ++m_line;
                m_lineStart = m_scanned + 1;
            }
    }
    int Line() const { return m_line; }
    int Offset() const { return m_scanned - m_lineStart; }

private:
    T const* m_text;
    int m_scanned = 0;
    int m_line = 0;
    int m_lineStart = 0;
};

template <class T>
void AppendExpanded(TString<T>& out, T const* replacement, TMatchContext<T> const& match)
{
    for (T const* p = replacement; *p; ++p) {
        if (*p != T('/') || !p[1]) {
            out.Append(*p);
            continue;
        }
        T const c = *++p;
        if (c < T('0') || c > T('9')) {
            out.Append(c);
            continue;
        }
        int position = 0;
        int const length = match.GetMatch(int(c - T('0')) - 1, &position);
        if (length > 0)
            out.Append(match.GetText() + position, unsigned(length));
    }
}

} // namespace

template <class T>
int ReplaceAllPatterns(TString<T>& text, TRegExpr<T> const& pattern, T const* replacement, CB_Replace callback,
                       void* data)
{
    static T const nothing = 0;
    if (!replacement)
        replacement = &nothing;
    TString<T> const source(text); // keeps the buffer while text is rebuilt
    T const* const start = source.c_str();
    T const* const end = source.c_end();
    TLineTracker<T> lines(start);
    TString<T> result;
    int count = 0;
    T const* copied = start; // what stands before is in result
    for (T const* rest = start; rest < end;) {
        TMatchContext<T> match(rest);
        if (!pattern.Match(match) || !match.GetMatchStart())
            break;
        T const* const hitStart = match.GetMatchStart();
        T const* const hitEnd = match.GetMatchEnd();
        if (hitEnd <= hitStart) {
            rest = hitStart + 1;
            continue;
        }
        rest = hitEnd;
        if (callback) {
            lines.MoveTo(int(hitStart - start));
            if (!callback(int(hitStart - start), int(hitEnd - hitStart), lines.Line(), lines.Offset(), data))
                continue;
        }
        result.Append(copied, unsigned(hitStart - copied));
        // Captures are read relative to the context's text, which is rest.
        AppendExpanded(result, replacement, match);
        copied = hitEnd;
        ++count;
    }
    if (count > 0) {
        result.Append(copied, unsigned(end - copied));
        text = result;
    }
    return count;
}

template <class T>
int ReplaceAllPatterns(TString<T>& text, T const* pattern, T const* replacement, bool caseSensitive,
                       CB_Replace callback, void* data)
{
    TRegExpr<T> compiled;
    if (compiled.Parse(pattern, caseSensitive) != eParseErrorNone)
        return 0;
    return ReplaceAllPatterns(text, compiled, replacement, callback, data);
}

template <class T>
int StringToIntVector(T const* text, TVector<int>& out)
{
    static TRegExpr<T> const number = [] {
        static T const source[] = {T('-'), T('?'), T('['), T('0'), T('-'), T('9'), T(']'), T('+'), 0};
        TRegExpr<T> compiled;
        compiled.Parse(source);
        return compiled;
    }();
    out.Clear();
    TVector<TString<T>> tokens;
    number.Tokenize(text, tokens);
    for (TString<T> const& token : tokens) {
        T const* p = token.c_str();
        bool const negative = *p == T('-');
        long long value = 0;
        for (p += negative; *p && value <= INT_MAX; ++p)
            value = value * 10 + (*p - T('0'));
        value = negative ? -value : value;
        out.Add(value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : int(value));
    }
    return out.Count();
}

#define COMMON_PATTERN_REPLACE(T)                                                                             \
    template int ReplaceAllPatterns<T>(TString<T>&, TRegExpr<T> const&, T const*, CB_Replace, void*);         \
    template int ReplaceAllPatterns<T>(TString<T>&, T const*, T const*, bool, CB_Replace, void*);             \
    template int StringToIntVector<T>(T const*, TVector<int>&);
COMMON_PATTERN_REPLACE(char)
COMMON_PATTERN_REPLACE(char16_t)
#undef COMMON_PATTERN_REPLACE
