// Matching and the searches built on it stay inside the text and end, for
// any pattern that compiles. Input: one byte of flags (bits 0-1 the mode,
// bit 2 case-blind, bit 3 wide), the pattern up to a zero unit, the text.

#include "FuzzRegExprSupport.h"

#include "core/TVector.h"

namespace {

constexpr size_t kMaxText = 16;

template <class T>
void Check(TRegExpr<T> const& expression, T const* text, bool caseSensitive)
{
    TMatchContext<T> context(text);
    T const* end = nullptr;
    bool const matched = expression.Match(context, &end);
    FuzzRegExpr::CheckOutcome(context, matched, text, caseSensitive);
    size_t const length = FuzzRegExpr::Length(text);
    FuzzRegExpr::Require(!end || (end >= text && end <= text + length));

    int pos = 0;
    TString<T> const first = expression.FindFirst(text, &pos);
    // A checked run may end before it began, which reads as no match.
    FuzzRegExpr::Require(matched ? pos == -1 || (pos >= 0 && size_t(pos + first.GetLength()) <= length) : pos == -1);
    TString<T> whole;
    expression.FindFirstCapture(text, &pos, &whole);
    FuzzRegExpr::Require(size_t(whole.GetLength()) <= length);
    for (int i = -1; i <= expression.GetCaptureCount(); ++i) {
        TString<T> const capture = expression.FindCapture(text, i, &pos);
        FuzzRegExpr::Require(capture.IsEmpty() ? pos == -1 : pos >= 0 && size_t(pos + capture.GetLength()) <= length);
    }
    TVector<TString<T>> tokens;
    int const count = expression.Tokenize(text, tokens);
    FuzzRegExpr::Require(count == tokens.Count() && size_t(count) <= length);
}

template <class T>
void Run(uint8_t flags, uint8_t const* data, size_t size)
{
    size_t used = 0;
    std::unique_ptr<T[]> const pattern = FuzzRegExpr::ExactText<T>(data, size, 120, &used);
    std::unique_ptr<T[]> const text = FuzzRegExpr::ExactText<T>(data + used, size - used, kMaxText, &used);
    bool const caseSensitive = (flags & 4) == 0;
    TRegExpr<T> expression(static_cast<ERegex2Mode>(flags & 3));
    if (expression.Parse(pattern.get(), caseSensitive) != eParseErrorNone)
        return;

    FuzzRegExpr::OverGrowingTexts(text.get(), [&](T const* sample) { Check(expression, sample, caseSensitive); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    return FuzzRegExpr::RunByWidth(data, size, [](auto character, uint8_t flags, uint8_t const* rest, size_t length) {
        Run<decltype(character)>(flags, rest, length);
    });
}
