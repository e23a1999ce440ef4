#pragma once

#include "text/TRegExpr.h"
#include "text/TString.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>

// Both character forms run the same cases; texts are written once in UTF-8.
using RegExprCharTypes = ::testing::Types<char, char16_t>;

class RegExprCharNames
{
public:
    template <class T>
    static std::string GetName(int)
    {
        return std::is_same_v<T, char> ? "Narrow" : "Wide";
    }
};

template <class T>
TString<T> Text(char const* utf8)
{
    return TString<T>(utf8);
}

// One match as "start-end", then each capture as " start-end" or " -";
// "none" when there is no match.
template <class T>
std::string Describe(TMatchContext<T> const& context, bool matched)
{
    if (!matched)
        return "none";
    int start = 0;
    int const length = context.GetMatch(-1, &start);
    std::string out = std::to_string(start) + "-" + std::to_string(start + length);
    for (int i = 0; i < context.GetCaptureCount(); ++i) {
        int pos = 0;
        int const n = context.GetMatch(i, &pos);
        out += n < 0 ? std::string(" -") : " " + std::to_string(pos) + "-" + std::to_string(pos + n);
    }
    return out;
}

template <class T>
std::string MatchOf(TRegExpr<T> const& expression, T const* text)
{
    TMatchContext<T> context(text);
    bool const matched = expression.Match(context);
    return Describe(context, matched);
}

// The match, or where a failed one ended, and every capture. After a
// case-blind run an unset capture holds a shifted null, which differs from
// run to run: anything outside the text prints as "x".
template <class T>
std::string Outcome(TRegExpr<T> const& expression, T const* text)
{
    TMatchContext<T> context(text);
    bool const matched = expression.Match(context);
    int const length = TString<T>(text).GetLength();
    auto const offset = [text, length](T const* p) {
        auto const at = reinterpret_cast<intptr_t>(p) - reinterpret_cast<intptr_t>(text);
        return at >= 0 && at <= length * static_cast<intptr_t>(sizeof(T)) ? std::to_string(at / static_cast<intptr_t>(sizeof(T)))
                                                                         : std::string("x");
    };
    std::string out = (matched ? "match " : "fail ") + offset(context.GetMatchStart()) + "-" + offset(context.GetMatchEnd());
    for (int i = 0; i < context.GetCaptureCount(); ++i)
        out += " " + offset(context.GetCaptureStart(i)) + "-" + offset(context.GetCaptureEnd(i));
    return out;
}

// Compiles pattern (which must compile) and matches it against text.
template <class T>
std::string MatchOf(char const* pattern, char const* text, bool caseSensitive = true,
                    ERegex2Mode mode = eRegex2ModeFull)
{
    TRegExpr<T> expression(mode);
    EParseError const error = expression.Parse(Text<T>(pattern).c_str(), caseSensitive);
    if (error != eParseErrorNone)
        return "parse error " + std::to_string(error);
    return MatchOf(expression, Text<T>(text).c_str());
}

template <class T>
EParseError ParseOf(char const* pattern, ERegex2Mode mode = eRegex2ModeFull)
{
    TRegExpr<T> expression(mode);
    return expression.Parse(Text<T>(pattern).c_str());
}

// One row of a match table: the outcome as Describe gives it.
struct MatchCase
{
    char const* pattern;
    char const* text;
    char const* expected;
    ERegex2Mode mode = eRegex2ModeFull;
    bool caseSensitive = true;
};

inline constexpr ERegex2Mode modeReduced = eRegex2ModeReduced;
inline constexpr ERegex2Mode modeOther = static_cast<ERegex2Mode>(2); // neither 0 nor 1

template <class T>
void ExpectMatches(std::initializer_list<MatchCase> cases)
{
    for (MatchCase const& c : cases)
        EXPECT_EQ(MatchOf<T>(c.pattern, c.text, c.caseSensitive, c.mode), c.expected)
            << "pattern \"" << c.pattern << "\" text \"" << c.text << "\" mode " << c.mode
            << (c.caseSensitive ? "" : " without case");
}
