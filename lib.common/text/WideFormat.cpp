#include "text/WideFormat.h"

#include "text/CharOps.h"
#include "text/TextConversion.h"
#include "text/TString.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace {

class TWideSink
{
public:
    TWideSink(char16_t* target, int size) : m_target(target), m_size(size) {}

    void Put(char16_t c)
    {
        if (m_length < m_size - 1)
            m_target[m_length++] = c;
    }
    void Fill(char16_t c, int count)
    {
        for (int i = 0; i < count; ++i)
            Put(c);
    }
    // Right-aligned in width unless leftAlign.
    void PutField(char16_t const* text, int length, int width, bool leftAlign)
    {
        if (!leftAlign)
            Fill(u' ', width - length);
        for (int i = 0; i < length; ++i)
            Put(text[i]);
        if (leftAlign)
            Fill(u' ', width - length);
    }
    int Finish()
    {
        if (m_size > 0)
            m_target[m_length] = 0;
        return m_length;
    }

private:
    char16_t* m_target;
    int m_size;
    int m_length = 0;
};

struct TSpec
{
    char text[32] = {'%'}; // the narrow conversion spec for the C library
    int size = 1;
    int width = 0;
    int precision = -1;
    bool leftAlign = false;
    char length[3] = {};
    char conversion = 0;

    void Add(char c)
    {
        if (size < int(sizeof text) - 1)
            text[size++] = c;
        text[size] = 0;
    }
    void AddNumber(int value)
    {
        char digits[16];
        int const count = std::snprintf(digits, sizeof digits, "%d", value);
        for (int i = 0; i < count; ++i)
            Add(digits[i]);
    }
};

// Reads flags, width, precision and length modifiers behind the "%".
char16_t const* ParseSpec(char16_t const* format, TSpec& spec, va_list& arguments)
{
    for (; *format && IsInSet(*format, u"-+ #0"); ++format) {
        spec.leftAlign = spec.leftAlign || *format == u'-';
        spec.Add(static_cast<char>(*format));
    }
    if (*format == u'*') {
        spec.width = va_arg(arguments, int);
        if (spec.width < 0) {
            spec.leftAlign = true;
            spec.width = -spec.width;
            spec.Add('-');
        }
        spec.AddNumber(spec.width);
        ++format;
    } else {
        for (; *format >= u'0' && *format <= u'9'; ++format) {
            spec.width = spec.width * 10 + (*format - u'0');
            spec.Add(static_cast<char>(*format));
        }
    }
    if (*format == u'.') {
        spec.Add('.');
        ++format;
        spec.precision = 0;
        if (*format == u'*') {
            spec.precision = va_arg(arguments, int);
            spec.AddNumber(spec.precision < 0 ? 0 : spec.precision);
            ++format;
        } else {
            for (; *format >= u'0' && *format <= u'9'; ++format) {
                spec.precision = spec.precision * 10 + (*format - u'0');
                spec.Add(static_cast<char>(*format));
            }
        }
    }
    int lengthSize = 0;
    while (lengthSize < 2 && *format && IsInSet(*format, u"hlLzjtw")) {
        spec.length[lengthSize++] = static_cast<char>(*format);
        ++format;
    }
    spec.conversion = static_cast<char>(*format);
    return *format ? format + 1 : format;
}

bool IsLength(TSpec const& spec, char const* length)
{
    return spec.length[0] == length[0] && spec.length[1] == length[1];
}

void PutString(TWideSink& sink, TSpec const& spec, va_list& arguments)
{
    bool const narrow = spec.length[0] == 'h' || (spec.conversion == 'S' && spec.length[0] != 'l' && spec.length[0] != 'w');
    TString<char16_t> text;
    if (narrow) {
        char const* bytes = va_arg(arguments, char const*);
        text = ConvertBytes(bytes ? bytes : "(null)", -1);
    } else {
        char16_t const* wide = va_arg(arguments, char16_t const*);
        text = TString<char16_t>(wide ? wide : u"(null)");
    }
    int length = text.GetLength();
    if (spec.precision >= 0 && spec.precision < length)
        length = spec.precision;
    sink.PutField(text.c_str(), length, spec.width, spec.leftAlign);
}

void PutChar(TWideSink& sink, TSpec const& spec, va_list& arguments)
{
    int const value = va_arg(arguments, int);
    bool const narrow = spec.length[0] == 'h' || (spec.conversion == 'C' && spec.length[0] != 'l' && spec.length[0] != 'w');
    char16_t const c = narrow ? static_cast<unsigned char>(value) : static_cast<char16_t>(value);
    sink.PutField(&c, 1, spec.width, spec.leftAlign);
}

template <class V>
void PutPrinted(TWideSink& sink, TSpec const& spec, V value)
{
    char buffer[512];
    int const written = std::snprintf(buffer, sizeof buffer, spec.text, value);
    for (int i = 0; i < written && i < int(sizeof buffer) - 1; ++i)
        sink.Put(static_cast<unsigned char>(buffer[i]));
}

void PutInteger(TWideSink& sink, TSpec& spec, va_list& arguments)
{
    bool const isSigned = spec.conversion == 'd' || spec.conversion == 'i';
    for (int i = 0; i < 2 && spec.length[i]; ++i)
        if (spec.length[i] != 'w')
            spec.Add(spec.length[i]);
    spec.Add(spec.conversion);
    if (IsLength(spec, "ll")) {
        if (isSigned)
            PutPrinted(sink, spec, va_arg(arguments, long long));
        else
            PutPrinted(sink, spec, va_arg(arguments, unsigned long long));
    } else if (IsLength(spec, "l\0") || IsLength(spec, "z\0") || IsLength(spec, "t\0") || IsLength(spec, "j\0")) {
        if (isSigned)
            PutPrinted(sink, spec, va_arg(arguments, long));
        else
            PutPrinted(sink, spec, va_arg(arguments, unsigned long));
    } else if (isSigned) {
        PutPrinted(sink, spec, va_arg(arguments, int));
    } else {
        PutPrinted(sink, spec, va_arg(arguments, unsigned));
    }
}

void PutFloat(TWideSink& sink, TSpec& spec, va_list& arguments)
{
    if (spec.length[0] == 'L') {
        spec.Add('L');
        spec.Add(spec.conversion);
        PutPrinted(sink, spec, va_arg(arguments, long double));
    } else {
        spec.Add(spec.conversion);
        PutPrinted(sink, spec, va_arg(arguments, double));
    }
}

} // namespace

int WideVFormat(char16_t* target, int size, char16_t const* format, va_list arguments)
{
    TWideSink sink(target, size);
    va_list walk;
    va_copy(walk, arguments);
    while (format && *format) {
        if (*format != u'%') {
            sink.Put(*format++);
            continue;
        }
        TSpec spec;
        char16_t const* const start = format;
        format = ParseSpec(format + 1, spec, walk);
        switch (spec.conversion) {
        case '%':
            sink.Put(u'%');
            break;
        case 's':
        case 'S':
            PutString(sink, spec, walk);
            break;
        case 'c':
        case 'C':
            PutChar(sink, spec, walk);
            break;
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            PutInteger(sink, spec, walk);
            break;
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            PutFloat(sink, spec, walk);
            break;
        case 'p':
            spec.Add('p');
            PutPrinted(sink, spec, va_arg(walk, void*));
            break;
        case 'n':
            // Writing through a pointer taken from a format is a hole; consumed only.
            (void)va_arg(walk, void*);
            break;
        default:
            // Not a conversion: the text stays as written.
            for (char16_t const* p = start; p < format; ++p)
                sink.Put(*p);
            break;
        }
    }
    va_end(walk);
    return sink.Finish();
}
