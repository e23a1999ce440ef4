#pragma once

// Library-internal: the two searches of the XML reader, a tag "<...>" and a
// CDATA section closed by an end tag, as compiled patterns.

struct pcre2_real_code_8;
struct pcre2_real_match_data_8;

class TXmlScanPatterns
{
public:
    TXmlScanPatterns();
    ~TXmlScanPatterns();
    TXmlScanPatterns(TXmlScanPatterns const&) = delete;
    TXmlScanPatterns& operator=(TXmlScanPatterns const&) = delete;

    // The first match at or behind from: [*start, *end). One object scans
    // one text.
    bool FindTag(char const* text, int length, int from, int* start, int* end);
    bool FindCData(char const* text, int length, int from, int* start, int* end);

private:
    bool Find(pcre2_real_code_8 const* code, char const* text, int length, int from, int* start, int* end);

    pcre2_real_match_data_8* m_match;
    // The last CDATA search: where it began and what it found.
    int m_cdataFrom;
    int m_cdataStart;
    int m_cdataEnd;
    bool m_cdataFound;
};
