// Any pattern text either compiles or gives one of the parse errors, without
// reading outside it; a compiled one runs over a few short texts.
// Input: one byte of flags (bits 0-1 the mode, bit 2 case-blind, bit 3 wide),
// then the pattern.

#include "FuzzRegExprSupport.h"

#include <string>

namespace {

template <class T>
void Run(uint8_t flags, uint8_t const* data, size_t size)
{
    size_t used = 0;
    std::unique_ptr<T[]> const pattern = FuzzRegExpr::ExactText<T>(data, size, 200, &used);
    bool const caseSensitive = (flags & 4) == 0;
    TRegExpr<T> expression(static_cast<ERegex2Mode>(flags & 3));
    EParseError const error = expression.Parse(pattern.get(), caseSensitive);
    FuzzRegExpr::Require(FuzzRegExpr::IsKnownError(error));
    FuzzRegExpr::Require(expression.GetLastParseError() == error);
    if (error != eParseErrorNone)
        return;
    static char const* const texts[] = {"", "a", "ab1 _-", "AbC dEf 12", "x\"y'z\t/\\*:", "aaaaaaaa", "\xc3\xa9" "1\xff"};
    for (char const* source : texts) {
        std::basic_string<T> text;
        for (char const* p = source; *p; ++p)
            text += static_cast<T>(static_cast<unsigned char>(*p));
        FuzzRegExpr::OverGrowingTexts(text.c_str(), [&](T const* sample) {
            TMatchContext<T> context(sample);
            bool const matched = expression.Match(context);
            FuzzRegExpr::CheckOutcome(context, matched, sample, caseSensitive);
        });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    return FuzzRegExpr::RunByWidth(data, size, [](auto character, uint8_t flags, uint8_t const* rest, size_t length) {
        Run<decltype(character)>(flags, rest, length);
    });
}
