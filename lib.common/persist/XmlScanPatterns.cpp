#include "persist/XmlScanPatterns.h"

#include "text/TRegex.h"

namespace {

// Compiled once and shared: TRegex may be matched from several threads.
TRegex const& TagPattern()
{
    static TRegex const pattern("<[^<]+>", eRegexDotAll);
    return pattern;
}

TRegex const& CDataPattern()
{
    static TRegex const pattern("<\\!\\[CDATA\\[.*?\\]\\]><\\/", eRegexDotAll);
    return pattern;
}

bool Find(TRegex const& pattern, char const* text, int length, int from, int* start, int* end)
{
    TRegexMatch match;
    if (from > length || !pattern.Match(text, &match, from, length))
        return false;
    *start = match.Start();
    *end = match.End();
    return true;
}

} // namespace

TXmlScanPatterns::TXmlScanPatterns() : m_cdataFrom(-1), m_cdataStart(0), m_cdataEnd(0), m_cdataFound(false)
{
}

bool TXmlScanPatterns::FindTag(char const* text, int length, int from, int* start, int* end)
{
    return Find(TagPattern(), text, length, from, start, end);
}

// The leftmost match from a position is the leftmost from any earlier
// position that has not passed its start, and no match from there means
// none from any later position: one search serves a run of comments.
bool TXmlScanPatterns::FindCData(char const* text, int length, int from, int* start, int* end)
{
    if (m_cdataFrom < 0 || from < m_cdataFrom || (m_cdataFound && from > m_cdataStart)) {
        m_cdataFrom = from;
        m_cdataFound = Find(CDataPattern(), text, length, from, &m_cdataStart, &m_cdataEnd);
    }
    *start = m_cdataStart;
    *end = m_cdataEnd;
    return m_cdataFound;
}
