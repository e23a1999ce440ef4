#include "text/PatternReplace.h"

#include "text/CharOps.h"
#include "text/TMatchContext.h"
#include "text/TRegExpr.h"

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

// found: the captures of a match in searched, which has the length of text
// and may be its lowered copy; what they hold is taken from text.
template <class T>
void AppendExpanded(TString<T>& out, T const* replacement, TMatchContext<T> const& found, T const* searched,
                    T const* text)
{
    T const* const base = text + (found.GetText() - searched);
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
        int const length = found.GetMatch(int(c - T('0')) - 1, &position);
        if (length > 0)
            out.Append(base + position, unsigned(length));
    }
}

// The matches are searched in searched and replaced in text.
template <class T>
int ReplaceMatches(TString<T>& text, TString<T> const& searched, TRegExpr<T> const& pattern, T const* replacement,
                   CB_Replace callback, void* data)
{
    TString<T> const source(text); // keeps the buffer while text is rebuilt
    T const* const start = source.c_str();
    T const* const end = source.c_end();
    T const* const scan = searched.c_str();
    TLineTracker<T> lines(start);
    TString<T> result;
    int count = 0;
    int copied = 0; // what stands before is in result
    for (int rest = 0; rest < int(end - start);) {
        TMatchContext<T> found(scan + rest);
        if (!pattern.Match(found) || !found.GetMatchStart())
            break;
        int const hitStart = int(found.GetMatchStart() - scan);
        int const hitEnd = int(found.GetMatchEnd() - scan);
        if (hitEnd <= hitStart) {
            rest = hitStart + 1;
            continue;
        }
        rest = hitEnd;
        if (callback) {
            lines.MoveTo(hitStart);
            if (!callback(hitStart, hitEnd - hitStart, lines.Line(), lines.Offset(), data))
                continue;
        }
        result.Append(start + copied, unsigned(hitStart - copied));
        AppendExpanded(result, replacement, found, scan, start);
        copied = hitEnd;
        ++count;
    }
    if (count > 0) {
        result.Append(start + copied, unsigned(end - start - copied));
        text = result;
    }
    return count;
}

} // namespace

template <class T>
int ReplaceAllPatterns(TString<T>& text, T const* pattern, T const* replacement, bool caseSensitive,
                       CB_Replace callback, void* data)
{
    static T const nothing = 0;
    if (!pattern || !*pattern || text.IsEmpty())
        return 0;
    if (!replacement)
        replacement = &nothing;
    TRegExpr<T> compiled;
    if (caseSensitive) {
        if (compiled.Parse(pattern) != eParseErrorNone)
            return 0;
        return ReplaceMatches(text, text, compiled, replacement, callback, data);
    }
    // The engine lowers the rest of the text at every match it is asked
    // for, which makes many hits quadratic. Lowering pattern and text once
    // here, by the engine's own rule (all but a character behind a slash),
    // gives the same matches.
    TString<T> loweredPattern(pattern);
    T* p = loweredPattern.Buffer();
    for (int i = loweredPattern.GetLength() - 1; i >= 0; --i)
        if (i == 0 || pattern[i - 1] != T('/'))
            p[i] = LowerOf(p[i]);
    if (compiled.Parse(loweredPattern.c_str()) != eParseErrorNone)
        return 0;
    TString<T> loweredText(true, text);
    loweredText.MakeLower();
    return ReplaceMatches(text, loweredText, compiled, replacement, callback, data);
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
    template int ReplaceAllPatterns<T>(TString<T>&, T const*, T const*, bool, CB_Replace, void*);             \
    template int StringToIntVector<T>(T const*, TVector<int>&);
COMMON_PATTERN_REPLACE(char)
COMMON_PATTERN_REPLACE(char16_t)
#undef COMMON_PATTERN_REPLACE
