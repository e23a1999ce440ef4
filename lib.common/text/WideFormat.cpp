#include "text/WideFormat.h"

#include "platform/PlatformLocale.h"
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

struct TConversion
{
    char text[32] = {'%'}; // the same conversion for the C library
    int size = 1;
    int width = 0;
    int precision = -1;
    bool leftAlign = false;
    char length[3] = {};
    char kind = 0;

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
char16_t const* ParseConversion(char16_t const* format, TConversion& conversion, va_list& arguments)
{
    for (; *format && IsInSet(*format, u"-+ #0"); ++format) {
        conversion.leftAlign = conversion.leftAlign || *format == u'-';
        conversion.Add(static_cast<char>(*format));
    }
    if (*format == u'*') {
        conversion.width = va_arg(arguments, int);
        if (conversion.width < 0) {
            conversion.leftAlign = true;
            conversion.width = -conversion.width;
            conversion.Add('-');
        }
        conversion.AddNumber(conversion.width);
        ++format;
    } else {
        for (; *format >= u'0' && *format <= u'9'; ++format) {
            conversion.width = conversion.width * 10 + (*format - u'0');
            conversion.Add(static_cast<char>(*format));
        }
    }
    if (*format == u'.') {
        conversion.Add('.');
        ++format;
        conversion.precision = 0;
        if (*format == u'*') {
            conversion.precision = va_arg(arguments, int);
            conversion.AddNumber(conversion.precision < 0 ? 0 : conversion.precision);
            ++format;
        } else {
            for (; *format >= u'0' && *format <= u'9'; ++format) {
                conversion.precision = conversion.precision * 10 + (*format - u'0');
                conversion.Add(static_cast<char>(*format));
            }
        }
    }
    int lengthSize = 0;
    while (lengthSize < 2 && *format && IsInSet(*format, u"hlLzjtw")) {
        conversion.length[lengthSize++] = static_cast<char>(*format);
        ++format;
    }
    conversion.kind = static_cast<char>(*format);
    return *format ? format + 1 : format;
}

bool IsLength(TConversion const& conversion, char const* length)
{
    return conversion.length[0] == length[0] && conversion.length[1] == length[1];
}

void PutString(TWideSink& sink, TConversion const& conversion, va_list& arguments)
{
    bool const narrow = conversion.length[0] == 'h' || (conversion.kind == 'S' && conversion.length[0] != 'l' && conversion.length[0] != 'w');
    TString<char16_t> text;
    if (narrow) {
        char const* bytes = va_arg(arguments, char const*);
        text = ConvertBytes(bytes ? bytes : "(null)", -1);
    } else {
        char16_t const* wide = va_arg(arguments, char16_t const*);
        text = TString<char16_t>(wide ? wide : u"(null)");
    }
    int length = text.GetLength();
    if (conversion.precision >= 0 && conversion.precision < length)
        length = conversion.precision;
    sink.PutField(text.c_str(), length, conversion.width, conversion.leftAlign);
}

void PutChar(TWideSink& sink, TConversion const& conversion, va_list& arguments)
{
    int const value = va_arg(arguments, int);
    bool const narrow = conversion.length[0] == 'h' || (conversion.kind == 'C' && conversion.length[0] != 'l' && conversion.length[0] != 'w');
    char16_t const c = narrow ? static_cast<unsigned char>(value) : static_cast<char16_t>(value);
    sink.PutField(&c, 1, conversion.width, conversion.leftAlign);
}

template <class V>
void PutPrinted(TWideSink& sink, TConversion const& conversion, V value)
{
    char buffer[512];
    TCNumericScope const numbers;
    int const written = std::snprintf(buffer, sizeof buffer, conversion.text, value);
    for (int i = 0; i < written && i < int(sizeof buffer) - 1; ++i)
        sink.Put(static_cast<unsigned char>(buffer[i]));
}

void PutInteger(TWideSink& sink, TConversion& conversion, va_list& arguments)
{
    bool const isSigned = conversion.kind == 'd' || conversion.kind == 'i';
    for (int i = 0; i < 2 && conversion.length[i]; ++i)
        if (conversion.length[i] != 'w')
            conversion.Add(conversion.length[i]);
    conversion.Add(conversion.kind);
    if (IsLength(conversion, "ll")) {
        if (isSigned)
            PutPrinted(sink, conversion, va_arg(arguments, long long));
        else
            PutPrinted(sink, conversion, va_arg(arguments, unsigned long long));
    } else if (IsLength(conversion, "l\0") || IsLength(conversion, "z\0") || IsLength(conversion, "t\0") || IsLength(conversion, "j\0")) {
        if (isSigned)
            PutPrinted(sink, conversion, va_arg(arguments, long));
        else
            PutPrinted(sink, conversion, va_arg(arguments, unsigned long));
    } else if (isSigned) {
        PutPrinted(sink, conversion, va_arg(arguments, int));
    } else {
        PutPrinted(sink, conversion, va_arg(arguments, unsigned));
    }
}

void PutFloat(TWideSink& sink, TConversion& conversion, va_list& arguments)
{
    if (conversion.length[0] == 'L') {
        conversion.Add('L');
        conversion.Add(conversion.kind);
        PutPrinted(sink, conversion, va_arg(arguments, long double));
    } else {
        conversion.Add(conversion.kind);
        PutPrinted(sink, conversion, va_arg(arguments, double));
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
        TConversion conversion;
        char16_t const* const start = format;
        format = ParseConversion(format + 1, conversion, walk);
        switch (conversion.kind) {
        case '%':
            sink.Put(u'%');
            break;
        case 's':
        case 'S':
            PutString(sink, conversion, walk);
            break;
        case 'c':
        case 'C':
            PutChar(sink, conversion, walk);
            break;
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            PutInteger(sink, conversion, walk);
            break;
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            PutFloat(sink, conversion, walk);
            break;
        case 'p':
            conversion.Add('p');
            PutPrinted(sink, conversion, va_arg(walk, void*));
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
