#include "persist/TXmlParserForTagStream.h"

#include "math/MemoryAlloc.h"
#include "persist/TTaggedOutputStream.h"

TXmlParserForTagStream::TXmlParserForTagStream(char const* text)
    : TXmlParser(text), m_stream(nullptr), m_pendingIndex(0), m_hasPending(false), m_depth(0)
{
}

TXmlParserForTagStream::TXmlParserForTagStream(char const* text, int length)
    : TXmlParser(text, length), m_stream(nullptr), m_pendingIndex(0), m_hasPending(false), m_depth(0)
{
}

TXmlParserForTagStream::~TXmlParserForTagStream()
{
    if (m_stream) {
        // Built without ownership of its block, so that the block can be
        // handed over; nobody took it.
        free_ex(m_stream->Start());
        delete m_stream;
    }
}

unsigned int TXmlParserForTagStream::CloseWriting()
{
    return m_stream ? m_stream->CloseWriting() : 0;
}

unsigned char* TXmlParserForTagStream::TakeDocument(unsigned int* size)
{
    *size = CloseWriting();
    if (!m_stream)
        return nullptr;
    unsigned char* document = m_stream->Start();
    delete m_stream;
    m_stream = nullptr;
    return document;
}

void TXmlParserForTagStream::OnStartTag(TString<char> const& name, int index)
{
    ++m_depth;
    if (!m_stream) {
        m_stream = new TTaggedOutputStream(streamModeRawTags, name.c_str(), autoDeleteOff);
        return;
    }
    if (m_hasPending)
        m_stream->MoveDown(m_pendingTag.c_str(), m_pendingIndex);
    m_pendingTag = name;
    m_pendingIndex = index;
    m_hasPending = true;
}

bool TXmlParserForTagStream::OnEndTag(TString<char> const& name, int index, TString<char> const& text,
                                      bool nothingSince)
{
    bool result = true;
    if (text.IsEmpty() && nothingSince) {
        m_hasPending = false;
        result = false;
    } else if (m_hasPending && index == m_pendingIndex && name == m_pendingTag) {
        m_stream->SetValue(text.c_str(), name.c_str(), index);
        m_hasPending = false;
    } else if (m_depth > 1 && m_stream) {
        m_stream->MoveUp();
    }
    --m_depth;
    return result;
}
