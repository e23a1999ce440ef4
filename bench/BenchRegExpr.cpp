// The pattern engine beside PCRE2's interpreter (no JIT) and std::regex, on
// patterns that all three can express, over the same 1 MiB text. Each run
// finds every match, one after the other.

#include "math/TRandomizer.h"
#include "text/TRegExpr.h"

#include <benchmark/benchmark.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <regex>
#include <string>

namespace {

constexpr int kTextSize = 1 << 20;

// Words, numbers, a few mail addresses and decimals: prose of a log file.
std::string const& Text()
{
    static std::string const text = [] {
        static char const* const words[] = {"the", "of", "and", "track", "level", "audio", "mix", "gain", "apple",
                                            "banana", "cherry", "session", "marker", "region", "tempo", "fade",
                                            "plugin", "buffer", "sample", "quantum", "export", "channel", "bus"};
        TRandomizer random(2024);
        std::string out;
        out.reserve(kTextSize + 64);
        while (int(out.size()) < kTextSize) {
            int const kind = random.Get(40);
            if (kind == 0)
                out += "user" + std::to_string(random.Get(1000)) + "@host" + std::to_string(random.Get(50)) + ".com";
            else if (kind < 4)
                out += std::to_string(random.Get(10000)) + "." + std::to_string(random.Get(100));
            else if (kind < 7)
                out += std::to_string(random.Get(100000));
            else
                out += words[random.Get(sizeof(words) / sizeof(words[0]))];
            out += random.Get(12) == 0 ? ",\n" : " ";
        }
        out.resize(kTextSize);
        return out;
    }();
    return text;
}

struct TCase
{
    char const* m_family;
    char const* m_common;
    char const* m_perl; // PCRE2 and std::regex
};

TCase const ks_cases[] = {
    {"RegexLiteral", "quantum", "quantum"},
    {"RegexClassLoop", "[0-9]+/.[0-9]+", "[0-9]+\\.[0-9]+"},
    {"RegexAlternatives", "apple|banana|cherry", "apple|banana|cherry"},
    {"RegexCaptures", "{[a-z]+[0-9]*}@{[a-z]+[0-9]*}/.com", "([a-z]+[0-9]*)@([a-z]+[0-9]*)\\.com"},
};

void Report(benchmark::State& state, long long matches)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * kTextSize);
    state.counters["matches"] = double(matches);
}

void Common(benchmark::State& state, TCase const& c)
{
    TRegExpr<char> expression;
    if (expression.Parse(c.m_common) != eParseErrorNone) {
        state.SkipWithError("pattern");
        return;
    }
    char const* const text = Text().c_str();
    long long matches = 0;
    for (auto _ : state) {
        matches = 0;
        char const* rest = text;
        while (*rest) {
            TMatchContext<char> context(rest);
            if (!expression.Match(context))
                break;
            ++matches;
            rest = context.GetMatchEnd() > context.GetMatchStart() ? context.GetMatchEnd() : context.GetMatchStart() + 1;
        }
    }
    Report(state, matches);
}

void Pcre2(benchmark::State& state, TCase const& c)
{
    int error = 0;
    PCRE2_SIZE offset = 0;
    pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(c.m_perl), PCRE2_ZERO_TERMINATED, 0, &error, &offset, nullptr);
    if (!code) {
        state.SkipWithError("pattern");
        return;
    }
    pcre2_match_data* data = pcre2_match_data_create_from_pattern(code, nullptr);
    auto const* text = reinterpret_cast<PCRE2_SPTR>(Text().c_str());
    PCRE2_SIZE const length = Text().size();
    long long matches = 0;
    for (auto _ : state) {
        matches = 0;
        PCRE2_SIZE start = 0;
        while (start < length && pcre2_match(code, text, length, start, 0, data, nullptr) > 0) {
            PCRE2_SIZE const* vector = pcre2_get_ovector_pointer(data);
            ++matches;
            start = vector[1] > vector[0] ? vector[1] : vector[0] + 1;
        }
    }
    Report(state, matches);
    pcre2_match_data_free(data);
    pcre2_code_free(code);
}

void StdRegex(benchmark::State& state, TCase const& c)
{
    std::regex const expression(c.m_perl);
    char const* const begin = Text().c_str();
    char const* const end = begin + Text().size();
    long long matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (std::cregex_iterator i(begin, end, expression), last; i != last; ++i)
            ++matches;
    }
    Report(state, matches);
}

int const ks_registered = [] {
    for (TCase const& c : ks_cases) {
        std::string const family = c.m_family;
        benchmark::RegisterBenchmark((family + "/common").c_str(), [&c](benchmark::State& s) { Common(s, c); })
            ->Arg(kTextSize)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((family + "/pcre2").c_str(), [&c](benchmark::State& s) { Pcre2(s, c); })
            ->Arg(kTextSize)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((family + "/stdregex").c_str(), [&c](benchmark::State& s) { StdRegex(s, c); })
            ->Arg(kTextSize)
            ->Unit(benchmark::kMillisecond);
    }
    return 0;
}();

} // namespace
