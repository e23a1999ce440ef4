#pragma once

#include "core/CommonExport.h"
#include "text/TString.h"

// The small XML reader of tagged documents: start and end tags, the text
// between them and CDATA sections, with no attributes, entities or
// empty-element tags. What looks like an attribute or a "/>" is part of the
// tag's name. A tag "name-12" has the index 12 (the text behind its last
// "-", as a decimal; "a-x" is "a" with index 0).
//
// Every CR, LF and tab is removed from the text first, inside CDATA too, so
// values lose their line breaks and tabs on the way through XML.
class COMMON_EXPORT TXmlParser
{
public:
    explicit TXmlParser(char const* text);
    // The text up to length bytes or its first zero.
    TXmlParser(char const* text, int length);
    TXmlParser(TXmlParser const&) = delete;
    TXmlParser& operator=(TXmlParser const&) = delete;
    virtual ~TXmlParser();

    // Runs over the text once, calling the two events.
    void Execute();
    TString<char> const& GetText() const { return m_text; }

protected:
    virtual void OnStartTag(TString<char> const& name, int index) = 0;
    // text: the CDATA section or the text since the start tag, empty when
    // another end tag came between. nothingSince is false only when the
    // event before this one was an end tag that answered true.
    virtual bool OnEndTag(TString<char> const& name, int index, TString<char> const& text, bool nothingSince) = 0;

    TString<char> m_text;
};
