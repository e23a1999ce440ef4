#include "persist/TXmlParser.h"

#include "persist/DecimalText.h"
#include "persist/XmlScanPatterns.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kCDataOpen = 9; // "<![CDATA["
constexpr int kCDataClose = 5; // "]]></"

// The text without CR, LF and tab, up to length bytes or the first zero.
TString<char> WithoutLineBreaks(char const* text, int length)
{
    if (!text || length <= 0)
        return TString<char>();
    void const* zero = std::memchr(text, 0, static_cast<size_t>(length));
    if (zero)
        length = static_cast<int>(static_cast<char const*>(zero) - text);
    TString<char> result{length_t(static_cast<unsigned>(length))};
    char* out = result.Buffer();
    char* end = out;
    for (int i = 0; i < length; ++i) {
        char const c = text[i];
        *end = c;
        end += c != '\r' && c != '\n' && c != '\t';
    }
    result.SetEnd(static_cast<int>(end - out));
    return result;
}

int Find(char const* text, int length, int from, char c)
{
    if (from >= length)
        return -1;
    void const* found = std::memchr(text + from, c, static_cast<size_t>(length - from));
    return found ? static_cast<int>(static_cast<char const*>(found) - text) : -1;
}

} // namespace

TXmlParser::TXmlParser(char const* text) : m_text(WithoutLineBreaks(text, text ? static_cast<int>(std::strlen(text)) : 0))
{
}

TXmlParser::TXmlParser(char const* text, int length) : m_text(WithoutLineBreaks(text, length))
{
}

TXmlParser::~TXmlParser() = default;

void TXmlParser::Execute()
{
    char const* text = m_text.c_str();
    int const length = m_text.GetLength();
    TXmlScanPatterns patterns;
    int position = 0;
    int textStart = -1;
    TString<char> cdata;
    bool hasCData = false;
    bool lastEndAnswered = false;
    TString<char> const empty;
    for (;;) {
        position = Find(text, length, position, '<');
        if (position < 0)
            return;
        char const next = position + 1 < length ? text[position + 1] : 0;
        if (next == '?') {
            int const close = Find(text, length, position + 1, '>');
            if (close < 0)
                return;
            position = close + 1;
            continue;
        }
        int start;
        int end;
        if (next == '!') {
            if (patterns.FindCData(text, length, position, &start, &end)) {
                cdata = TString<char>(text + start + kCDataOpen, length_t(static_cast<unsigned>(end - start - kCDataOpen - kCDataClose)));
                hasCData = true;
                position = end - 2;
                continue;
            }
            int const close = Find(text, length, position + 1, '>');
            if (close < 0)
                return;
            position = close + 1;
            continue;
        }
        if (!patterns.FindTag(text, length, position, &start, &end))
            return;
        char const* tag = text + start + 1;
        int tagLength = end - start - 2;
        int index = 0;
        for (int i = tagLength - 1; i >= 0; --i) {
            if (tag[i] == '-') {
                // The ">" behind the tag ends the number, which saturates
                // as a 32-bit strtol does.
                long long const number = ParseDecimal(tag + i + 1);
                index = number > INT_MAX ? INT_MAX : number < INT_MIN ? INT_MIN : static_cast<int>(number);
                tagLength = i;
                break;
            }
        }
        if (tag[0] != '/') {
            OnStartTag(TString<char>(tag, length_t(static_cast<unsigned>(tagLength))), index);
            lastEndAnswered = false;
            textStart = end;
        } else {
            TString<char> const name(tag + 1, length_t(static_cast<unsigned>(tagLength > 0 ? tagLength - 1 : 0)));
            TString<char> const between =
                hasCData ? cdata
                : textStart >= 0 ? TString<char>(text + textStart, length_t(static_cast<unsigned>(start - textStart)))
                                 : empty;
            lastEndAnswered = OnEndTag(name, index, between, !lastEndAnswered);
            textStart = -1;
        }
        hasCData = false;
        position = end;
    }
}
