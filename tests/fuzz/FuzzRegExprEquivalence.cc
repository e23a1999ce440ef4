// The shortcuts of a compiled program change no outcome. The input drives a
// generator of well-formed patterns and texts; each pattern is matched as it
// is, in a form that hides its first characters and its fast loops (a leading
// "!\x01", loop items in groups), and in a form that runs checked (a leading
// "()??"). All three must agree on the match, where a failed run ended, and
// every capture.

#include "FuzzRegExprSupport.h"

#include <string>

namespace {

class Choices
{
public:
    Choices(uint8_t const* data, size_t size) : m_data(data), m_size(size) {}
    int Next(int n) { return m_at < m_size ? m_data[m_at++] % n : 0; }
    bool Done() const { return m_at >= m_size; }

private:
    uint8_t const* m_data;
    size_t m_size;
    size_t m_at = 0;
};

class Maker
{
public:
    explicit Maker(Choices& choices) : m_choices(choices) {}

    void Alternatives(int depth, std::string& plain, std::string& grouped)
    {
        int const count = m_choices.Next(4) == 0 ? 2 + m_choices.Next(2) : 1;
        for (int i = 0; i < count; ++i) {
            if (i) {
                plain += '|';
                grouped += '|';
            }
            int const items = 1 + m_choices.Next(3);
            for (int j = 0; j < items; ++j)
                Item(depth, plain, grouped);
        }
    }

private:
    void Item(int depth, std::string& plain, std::string& grouped)
    {
        static char const* const simple[] = {"a", "b", "c", ".", "[ab]", "[^a]", "[a-c]", "/d", "/D", "/l", "/w",
                                             "/s", "/S", " ", "-", "/b", "/z", "/u", "/X", "/Y"};
        static char const* const quantifiers[] = {"", "", "", "*", "+", "?", "*?", "+?", "??"};
        std::string atom;
        std::string atomGrouped;
        int const kind = depth < 2 ? m_choices.Next(11) : m_choices.Next(7);
        bool const isSimple = kind <= 6;
        if (isSimple) {
            atom = atomGrouped = simple[m_choices.Next(sizeof(simple) / sizeof(simple[0]))];
        } else if (kind <= 9) {
            char const open = kind == 7 ? '(' : kind == 8 ? '{' : '(';
            char const close = open == '(' ? ')' : '}';
            atom = atomGrouped = std::string(1, open);
            Alternatives(depth + 1, atom, atomGrouped);
            atom += close;
            atomGrouped += close;
        } else {
            atom = atomGrouped = std::string("!") + simple[m_choices.Next(4)];
        }
        std::string quantifier = quantifiers[m_choices.Next(sizeof(quantifiers) / sizeof(quantifiers[0]))];
        if (quantifier == "??" && (kind == 8 || kind == 10))
            quantifier = "?"; // past the first instruction of these the stack holds words of the wrong kind
        plain += atom + quantifier;
        grouped += (isSimple && (quantifier == "*" || quantifier == "+") ? "(" + atomGrouped + ")" : atomGrouped) + quantifier;
    }

    Choices& m_choices;
};

template <class T>
std::basic_string<T> Widen(std::string const& text)
{
    std::basic_string<T> out;
    for (char c : text)
        out += static_cast<T>(static_cast<unsigned char>(c));
    return out;
}

// Positions as offsets; outside the text (a case-blind run's shifted null) as -2.
template <class T>
std::basic_string<long> Outcome(TRegExpr<T> const& expression, T const* text, size_t length)
{
    TMatchContext<T> context(text);
    bool const matched = expression.Match(context);
    auto const offset = [&](T const* p) -> long { return p >= text && p <= text + length ? long(p - text) : -2; };
    std::basic_string<long> out{matched ? 1L : 0L, offset(context.GetMatchStart()), offset(context.GetMatchEnd())};
    for (int i = 0; i < context.GetCaptureCount(); ++i) {
        out += offset(context.GetCaptureStart(i));
        out += offset(context.GetCaptureEnd(i));
    }
    return out;
}

template <class T>
void Compare(std::string const& plain, std::string const& grouped, bool caseSensitive, std::string const& text)
{
    TRegExpr<T> fast;
    TRegExpr<T> slow;
    TRegExpr<T> checked;
    if (fast.Parse(Widen<T>(plain).c_str(), caseSensitive) != eParseErrorNone)
        return;
    FuzzRegExpr::Require(slow.Parse(Widen<T>("!\x01" + grouped).c_str(), caseSensitive) == eParseErrorNone);
    FuzzRegExpr::Require(checked.Parse(Widen<T>("()??" + plain).c_str(), caseSensitive) == eParseErrorNone);
    std::basic_string<T> const whole = Widen<T>(text);
    FuzzRegExpr::OverGrowingTexts(whole.c_str(), [&](T const* sample) {
        size_t const length = FuzzRegExpr::Length(sample);
        auto const expected = Outcome(slow, sample, length);
        FuzzRegExpr::Require(Outcome(fast, sample, length) == expected);
        FuzzRegExpr::Require(Outcome(checked, sample, length) == expected);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    FuzzRegExpr::InstallQuietHandler();
    Choices choices(data, size);
    std::string plain;
    std::string grouped;
    Maker(choices).Alternatives(0, plain, grouped);
    if (choices.Next(6) == 0) {
        plain += '$';
        grouped += '$';
    }
    bool const caseSensitive = choices.Next(4) != 0;
    bool const wide = choices.Next(2) != 0;
    // Short texts: a failing run of a pattern with many ambiguous loops
    // explores every way to split the text, which grows exponentially.
    static char const letters[] = "abcA1 -_\t";
    std::string text;
    for (int i = 0; i < 8 && !choices.Done(); ++i)
        text += letters[choices.Next(sizeof(letters) - 1)];
    if (wide)
        Compare<char16_t>(plain, grouped, caseSensitive, text);
    else
        Compare<char>(plain, grouped, caseSensitive, text);
    return 0;
}
