#pragma once

#include "core/CommonExport.h"
#include "text/TString.h"

class QString;
class TRegex;

// Options of TRegex, by the values that callers pass around: the XML parser
// hands 4 for "dot matches all".
enum ERegexOption : unsigned
{
    eRegexCaseless = 0x0001,       // letters match either case
    eRegexMultiline = 0x0002,      // ^ and $ also at line breaks
    eRegexDotAll = 0x0004,         // . also matches a line break
    eRegexExtended = 0x0008,       // blanks and # comments in the pattern are ignored
    eRegexAnchored = 0x0010,       // a match must begin at the start offset
    eRegexDollarEndOnly = 0x0020,  // $ only at the very end, not before a final line break
    eRegexUngreedy = 0x0200,       // quantifiers are lazy unless followed by ?
    eRegexNoAutoCapture = 0x1000,  // plain ( ) don't capture; named groups still do
    eRegexUnicodeClasses = 0x4000, // \w \d \s and [:alpha:] go by Unicode properties
};

// Where one TRegex match lies: group 0 is the whole match, 1 and up the
// captures, all as offsets in code units of the text that was searched.
class COMMON_EXPORT TRegexMatch
{
public:
    TRegexMatch();
    TRegexMatch(TRegexMatch const& other);
    TRegexMatch& operator=(TRegexMatch const& other);
    ~TRegexMatch();

    // 1 plus the number of captures after a match; 0 before one or after a miss.
    int GroupCount() const { return m_groupCount; }
    // Whether the group took part in the match.
    bool HasGroup(int group) const { return Start(group) >= 0; }
    // -1 for a group that took no part or doesn't exist.
    int Start(int group = 0) const;
    int End(int group = 0) const;
    int Length(int group = 0) const;

private:
    void Set(int groupCount, int const* offsets);
    void Clear();
    int* Offsets() { return m_capacity > 1 ? m_offsets : m_inline; }
    int const* Offsets() const { return m_capacity > 1 ? m_offsets : m_inline; }

    // Start and end of each group: in place for one group, else allocated.
    union
    {
        int* m_offsets;
        int m_inline[2];
    };
    int m_groupCount;
    int m_capacity; // groups the storage holds

    friend class TRegex;
};

// A Perl-compatible regular expression, compiled by PCRE2, for narrow (UTF-8)
// and wide (UTF-16) text alike: the pattern is compiled for the width it is
// given in, and for the other one when first matched against it. Texts that
// aren't valid UTF are searched all the same; no match spans a bad sequence.
// Compiled code is shared by copies and may be matched from several threads
// at once; each thread keeps the scratch memory of its matches until it
// ends. Nothing throws but exhausted memory.
class COMMON_EXPORT TRegex
{
public:
    TRegex();
    explicit TRegex(char const* pattern, unsigned options = 0);
    explicit TRegex(char16_t const* pattern, unsigned options = 0);
    TRegex(TRegex const& other);
    TRegex& operator=(TRegex const& other);
    TRegex(TRegex&& other) noexcept;
    TRegex& operator=(TRegex&& other) noexcept;
    ~TRegex();

    // options: ERegexOption values or'ed together. False, with the reason in
    // ErrorMessage(), for a bad pattern or a null one.
    bool Compile(char const* pattern, unsigned options = 0);
    bool Compile(char16_t const* pattern, unsigned options = 0);
    bool IsValid() const;
    unsigned GetOptions() const;
    // Empty after a successful compile.
    QString ErrorMessage() const;
    // Code units into the pattern where compiling failed, or -1.
    int ErrorOffset() const;
    int CaptureCount() const;
    // The number of a named group, or -1.
    int GroupNumber(char const* name) const;

    // Searches text, of length code units or up to its terminator for -1,
    // from offset start. match, if given, receives the groups of a match and
    // is cleared on a miss.
    bool Match(char const* text, TRegexMatch* match = nullptr, int start = 0, int length = -1) const;
    bool Match(char16_t const* text, TRegexMatch* match = nullptr, int start = 0, int length = -1) const;
    // The text of group in the first match; empty when there is none.
    TString<char> Find(char const* text, int group = 0) const;
    TString<char16_t> Find(char16_t const* text, int group = 0) const;

    // Whether this PCRE2 compiles patterns to machine code.
    static bool HasJit();

private:
    struct TCode;
    void Release();
    template <class T>
    bool MatchText(T const* text, TRegexMatch* match, int start, int length) const;

    TCode* m_code;
};
