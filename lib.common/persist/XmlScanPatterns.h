#pragma once

// Library-internal: the two searches of the XML reader, a tag "<...>" and a
// CDATA section closed by an end tag, as TRegex with "." across lines.

class TXmlScanPatterns
{
public:
    TXmlScanPatterns();

    // The first match at or behind from: [*start, *end). One object scans
    // one text.
    bool FindTag(char const* text, int length, int from, int* start, int* end);
    bool FindCData(char const* text, int length, int from, int* start, int* end);

private:
    // The last CDATA search: where it began and what it found.
    int m_cdataFrom;
    int m_cdataStart;
    int m_cdataEnd;
    bool m_cdataFound;
};
