#include "persist/XmlScanPatterns.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace {

// Compiled once; PCRE2 code may be shared between threads, match data not.
struct TCompiled
{
    explicit TCompiled(char const* pattern)
    {
        int error;
        PCRE2_SIZE offset;
        code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, PCRE2_DOTALL, &error,
                             &offset, nullptr);
        if (code)
            pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    }
    ~TCompiled() { pcre2_code_free(code); }
    pcre2_code* code;
};

pcre2_code const* TagPattern()
{
    static TCompiled const compiled("<[^<]+>");
    return compiled.code;
}

pcre2_code const* CDataPattern()
{
    static TCompiled const compiled("<\\!\\[CDATA\\[.*?\\]\\]><\\/");
    return compiled.code;
}

} // namespace

TXmlScanPatterns::TXmlScanPatterns()
    : m_match(pcre2_match_data_create(1, nullptr)), m_cdataFrom(-1), m_cdataStart(0), m_cdataEnd(0), m_cdataFound(false)
{
}

TXmlScanPatterns::~TXmlScanPatterns()
{
    pcre2_match_data_free(m_match);
}

bool TXmlScanPatterns::Find(pcre2_code const* code, char const* text, int length, int from, int* start, int* end)
{
    if (!code || !m_match || from > length)
        return false;
    int const result = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(text), static_cast<PCRE2_SIZE>(length),
                                   static_cast<PCRE2_SIZE>(from), 0, m_match, nullptr);
    if (result < 0)
        return false;
    PCRE2_SIZE const* vector = pcre2_get_ovector_pointer(m_match);
    *start = static_cast<int>(vector[0]);
    *end = static_cast<int>(vector[1]);
    return true;
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
