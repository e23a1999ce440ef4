#include "platform/PlatformCodePage.h"

#include <QByteArray>
#include <QString>
#include <QTextCodec>

namespace {

// Code page numbers as the codec names that Qt knows.
QTextCodec* CodecForPage(int codePage)
{
    if (codePage == 0)
        return QTextCodec::codecForLocale();
    QByteArray name;
    if ((codePage >= 1250 && codePage <= 1258) || codePage == 874)
        name = "windows-" + QByteArray::number(codePage);
    else if (codePage >= 28591 && codePage <= 28606)
        name = "ISO-8859-" + QByteArray::number(codePage - 28590);
    else if (codePage == 65001)
        name = "UTF-8";
    else if (codePage == 1200)
        name = "UTF-16LE";
    else if (codePage == 1201)
        name = "UTF-16BE";
    else if (codePage == 20127)
        name = "US-ASCII";
    else if (codePage == 932)
        name = "Shift_JIS";
    else if (codePage == 936)
        name = "GBK";
    else if (codePage == 949)
        name = "windows-949";
    else if (codePage == 950)
        name = "Big5";
    else if (codePage == 20866)
        name = "KOI8-R";
    else if (codePage == 21866)
        name = "KOI8-U";
    else if (codePage == 10000)
        name = "macintosh";
    else
        name = "IBM" + QByteArray::number(codePage);
    return QTextCodec::codecForName(name);
}

} // namespace

bool PlatformNowUsingDbcsCodePage()
{
    return false;
}

bool PlatformMultiByteToWideChar(int codePage, char const* bytes, int length, QString& result)
{
    QTextCodec* codec = CodecForPage(codePage);
    if (!codec)
        return false;
    result = codec->toUnicode(bytes, length).normalized(QString::NormalizationForm_C);
    return true;
}

bool PlatformWideCharToMultiByte(int codePage, char16_t const* text, int length, QByteArray& result)
{
    QTextCodec* codec = CodecForPage(codePage);
    if (!codec)
        return false;
    result = codec->fromUnicode(reinterpret_cast<QChar const*>(text), length);
    return true;
}
