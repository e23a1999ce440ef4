#pragma once

// Shared by the pattern engine's fuzz targets.

#include "text/TRegExpr.h"

#include <QString>
#include <QtGlobal>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace FuzzRegExpr {

// The engine's warnings about odd programs are expected here; printed they
// would only slow the run down.
inline void Quiet(QtMsgType, QMessageLogContext const&, QString const&)
{
}

inline void InstallQuietHandler()
{
    static bool const installed = (qInstallMessageHandler(Quiet), true);
    (void)installed;
}

// A text in a block of exactly its size, so that the sanitizer sees any read
// past its terminator. Narrow: one byte per unit; wide: two, little-endian.
template <class T>
std::unique_ptr<T[]> ExactText(uint8_t const* data, size_t size, size_t maxUnits, size_t* used)
{
    size_t const width = sizeof(T);
    size_t units = 0;
    while (units < maxUnits && (units + 1) * width <= size) {
        T c = 0;
        for (size_t b = 0; b < width; ++b)
            c = static_cast<T>(c | (data[units * width + b] << (8 * b)));
        if (!c)
            break;
        ++units;
    }
    std::unique_ptr<T[]> text(new T[units + 1]);
    for (size_t i = 0; i < units; ++i) {
        T c = 0;
        for (size_t b = 0; b < width; ++b)
            c = static_cast<T>(c | (data[i * width + b] << (8 * b)));
        text[i] = c;
    }
    text[units] = 0;
    // The terminating zero in the input, if there was one, is used up too.
    *used = std::min(size, (units + 1) * width);
    return text;
}

template <class T>
size_t Length(T const* text)
{
    size_t n = 0;
    while (text[n])
        ++n;
    return n;
}

inline void Require(bool condition)
{
    if (!condition)
        __builtin_trap();
}

inline bool IsKnownError(EParseError error)
{
    switch (error) {
    case eParseErrorNone:
    case eParseErrorUnclosedCapture:
    case eParseErrorUnclosedGroup:
    case eParseErrorUnclosedClass:
    case eParseErrorAbbreviation:
    case eParseErrorEmptyClass:
    case eParseErrorBackReference:
    case eParseErrorRangeOrder:
    case eParseErrorEmptyLoop:
        return true;
    default:
        return false;
    }
}

// A match lies within the text, and so does every capture that is set. After
// a case-blind run an unset capture is a shifted null, which can't be told
// from a set one, so only the whole match is checked then.
template <class T>
void CheckOutcome(TMatchContext<T> const& context, bool matched, T const* text, bool caseSensitive)
{
    if (!matched)
        return;
    size_t const length = Length(text);
    auto const inside = [&](T const* p) { return p >= text && p <= text + length; };
    Require(inside(context.GetMatchStart()) && inside(context.GetMatchEnd()));
    if (!caseSensitive)
        return;
    for (int i = 0; i < context.GetCaptureCount(); ++i) {
        T const* start = context.GetCaptureStart(i);
        T const* end = context.GetCaptureEnd(i);
        Require(!start || inside(start));
        Require(!end || inside(end));
    }
}

// There is no step limit, and a pattern can take time exponential in the
// length of the text. Runs over ever longer beginnings of the text stop once
// one of them takes long: the next would take longer still, and only a run
// that never ends is a fault. That one still shows as a time-out.
template <class T, class F>
void OverGrowingTexts(T const* text, F check)
{
    size_t const length = Length(text);
    for (size_t n = 0; n <= length; ++n) {
        std::unique_ptr<T[]> prefix(new T[n + 1]);
        std::copy(text, text + n, prefix.get());
        prefix[n] = 0;
        auto const start = std::chrono::steady_clock::now();
        check(prefix.get());
        if (std::chrono::steady_clock::now() - start > std::chrono::milliseconds(10))
            break;
    }
}

// The entry of the targets that read a flag byte first: bit 8 picks the wide
// form, and run(char or char16_t value, flags, rest, size) does the work.
template <class Run>
int RunByWidth(uint8_t const* data, size_t size, Run run)
{
    InstallQuietHandler();
    if (size < 1)
        return 0;
    uint8_t const flags = data[0];
    if (flags & 8)
        run(char16_t(), flags, data + 1, size - 1);
    else
        run(char(), flags, data + 1, size - 1);
    return 0;
}

} // namespace FuzzRegExpr
