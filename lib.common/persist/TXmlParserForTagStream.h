#pragma once

#include "core/CommonExport.h"
#include "persist/TXmlParser.h"

class TTaggedOutputStream;

// Turns an XML document of the tagged writer into a raw-tag document: the
// outermost tag names the file type, a tag holding tags is a group, and a
// tag holding text is a value with that text.
//
// Long-standing behaviour, kept: an element without text vanishes, and so
// does the end of its group, so that what follows lands inside that group.
// An empty string written last in a group thus moves the group's later
// siblings one level down.
class COMMON_EXPORT TXmlParserForTagStream : public TXmlParser
{
public:
    explicit TXmlParserForTagStream(char const* text);
    TXmlParserForTagStream(char const* text, int length);
    ~TXmlParserForTagStream() override;

    // Ends the document; its size, 0 when the text held no tag.
    unsigned int CloseWriting();
    // Ends the document and hands its block over, to be freed with free_ex;
    // null and 0 when the text held no tag.
    unsigned char* TakeDocument(unsigned int* size);

protected:
    void OnStartTag(TString<char> const& name, int index) override;
    bool OnEndTag(TString<char> const& name, int index, TString<char> const& text, bool nothingSince) override;

private:
    TTaggedOutputStream* m_stream;
    // A start tag waits until a tag inside it proves it a group, or its end
    // proves it a value.
    TString<char> m_pendingTag;
    int m_pendingIndex;
    bool m_hasPending;
    int m_depth;
};
