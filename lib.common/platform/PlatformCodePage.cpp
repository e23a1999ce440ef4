#include "platform/PlatformCodePage.h"

#include <QByteArray>
#include <QString>
#include <QTextCodec>

namespace {

// Code page numbers as the codec names that Qt knows: the Windows and ISO
// series by number, the single pages by this table, any other as IBM's.
struct TPageName
{
    int codePage;
    char const* name;
};

TPageName const s_pageNames[] = {
    {65001, "UTF-8"}, {1200, "UTF-16LE"}, {1201, "UTF-16BE"}, {20127, "US-ASCII"},
    {932, "Shift_JIS"}, {936, "GBK"}, {949, "windows-949"}, {950, "Big5"},
    {20866, "KOI8-R"}, {21866, "KOI8-U"}, {10000, "macintosh"},
};

QTextCodec* CodecForPage(int codePage)
{
    if (codePage == 0)
        return QTextCodec::codecForLocale();
    if ((codePage >= 1250 && codePage <= 1258) || codePage == 874)
        return QTextCodec::codecForName("windows-" + QByteArray::number(codePage));
    if (codePage >= 28591 && codePage <= 28606)
        return QTextCodec::codecForName("ISO-8859-" + QByteArray::number(codePage - 28590));
    for (TPageName const& page : s_pageNames)
        if (page.codePage == codePage)
            return QTextCodec::codecForName(page.name);
    return QTextCodec::codecForName("IBM" + QByteArray::number(codePage));
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
