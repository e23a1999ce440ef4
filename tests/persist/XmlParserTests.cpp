#include "TaggedDocuments.h"

#include "math/MemoryAlloc.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "persist/TXmlParserForTagStream.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Writes each event as "+name#index" or "-name#index[text]", with "!" for
// nothingSince. End events answer from a script, true when it runs out.
class TRecorder : public TXmlParser
{
public:
    explicit TRecorder(char const* text, std::vector<bool> answers = {})
        : TXmlParser(text), m_answers(std::move(answers))
    {
    }
    TRecorder(char const* text, int length) : TXmlParser(text, length) {}
    std::vector<std::string> Run()
    {
        Execute();
        return m_events;
    }

protected:
    void OnStartTag(TString<char> const& name, int index) override
    {
        m_events.push_back("+" + std::string(name.c_str()) + "#" + std::to_string(index));
    }
    bool OnEndTag(TString<char> const& name, int index, TString<char> const& text, bool nothingSince) override
    {
        m_events.push_back("-" + std::string(name.c_str()) + "#" + std::to_string(index) + "["
                           + std::string(text.c_str()) + "]" + (nothingSince ? "!" : ""));
        if (m_next < m_answers.size())
            return m_answers[m_next++];
        return true;
    }

private:
    std::vector<std::string> m_events;
    std::vector<bool> m_answers;
    size_t m_next = 0;
};

using TEvents = std::vector<std::string>;

} // namespace

TEST(XmlParser, EventsTextsAndTheNothingSinceFlag)
{
    char const text[] = "<?xml version=\"1.0\" ?>\r\n<D>\r\n\t<a>1</a>\r\n\t<g-2>\r\n\t\t<b><![CDATA[x<y]]></b>\r\n"
                        "\t</g-2>\r\n</D>\r\n";
    EXPECT_EQ(TRecorder(text).Run(),
              (TEvents{"+D#0", "+a#0", "-a#0[1]!", "+g#2", "+b#0", "-b#0[x<y]!", "-g#2[]", "-D#0[]"}));
    // An end event that answers false leaves the next one with the flag.
    EXPECT_EQ(TRecorder(text, {true, false}).Run(),
              (TEvents{"+D#0", "+a#0", "-a#0[1]!", "+g#2", "+b#0", "-b#0[x<y]!", "-g#2[]!", "-D#0[]"}));
}

TEST(XmlParser, LineBreaksAndTabsGoEvenInsideCData)
{
    TRecorder parser("<a>one\r\ntwo</a><b><![CDATA[l1\r\nl2\tx]]></b>");
    EXPECT_STREQ(parser.GetText().c_str(), "<a>onetwo</a><b><![CDATA[l1l2x]]></b>");
    EXPECT_EQ(parser.Run(), (TEvents{"+a#0", "-a#0[onetwo]!", "+b#0", "-b#0[l1l2x]!"}));
    // A zero ends the text, and so does the length.
    char const withZero[] = "<a>1</a>\0<b>2</b>";
    EXPECT_EQ(TRecorder(withZero, static_cast<int>(sizeof(withZero) - 1)).Run(), (TEvents{"+a#0", "-a#0[1]!"}));
    EXPECT_EQ(TRecorder("<a>1</a><b>2</b>", 8).Run(), (TEvents{"+a#0", "-a#0[1]!"}));
}

TEST(XmlParser, NamesHaveNoAttributesAndIndexesComeFromTheLastDash)
{
    EXPECT_EQ(TRecorder("<a/><a b=\"1\">t</a b=\"1\">").Run(),
              (TEvents{"+a/#0", "+a b=\"1\"#0", "-a b=\"1\"#0[t]!"}));
    EXPECT_EQ(TRecorder("<a-x>1</a-x><a-b-3>2</a-b-3><-7></-7>").Run(),
              (TEvents{"+a#0", "-a#0[1]!", "+a-b#3", "-a-b#3[2]!", "+#7", "-#7[]!"}));
    // A tag runs to the last ">" before the next "<".
    EXPECT_EQ(TRecorder("<a>1>2</a>").Run(), (TEvents{"+a>1#0", "-a#0[2]!"}));
    EXPECT_EQ(TRecorder("<<b>x</b>").Run(), (TEvents{"+b#0", "-b#0[x]!"}));
}

TEST(XmlParser, DeclarationsCommentsAndTheEndOfTheScan)
{
    EXPECT_EQ(TRecorder("<D><!-- c --><a>1</a></D>").Run(), (TEvents{"+D#0", "+a#0", "-a#0[1]!", "-D#0[]"}));
    // The search for a CDATA section runs on behind a comment: everything up
    // to the section is passed over.
    EXPECT_EQ(TRecorder("<D><!-- c --><a>1</a><b><![CDATA[z]]></b></D>").Run(),
              (TEvents{"+D#0", "-b#0[z]!", "-D#0[]"}));
    EXPECT_EQ(TRecorder("<D><a>1</a><?x").Run(), (TEvents{"+D#0", "+a#0", "-a#0[1]!"}));
    EXPECT_EQ(TRecorder("<D><a>1</a><b").Run(), (TEvents{"+D#0", "+a#0", "-a#0[1]!"}));
    EXPECT_EQ(TRecorder("<D><!x").Run(), (TEvents{"+D#0"}));
    EXPECT_EQ(TRecorder("no tags at all").Run(), TEvents{});
}

TEST(XmlParserForTagStream, EmptyElementsVanishAndShiftWhatFollows)
{
    QByteArray const xml = Document(
        streamModeXml,
        [](TTaggedOutputStream& out) {
            out.MoveDown("g");
            out.SetValue(1, "a");
            out.SetValue("", "middle");
            out.SetValue(2, "b");
            out.SetValue("", "last");
            out.MoveUp();
            out.SetValue(5, "after");
        },
        "Doc");
    TTaggedInputStream in(streamModeXml, xml, checksumOn);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_FALSE(in.ExistKey("after", 0, 0));
    ASSERT_TRUE(in.MoveDown("g"));
    EXPECT_EQ(in.GetValue(0, "a"), 1);
    EXPECT_EQ(in.GetValue(0, "b"), 2);
    EXPECT_FALSE(in.ExistKey("middle", 0, 0));
    EXPECT_FALSE(in.ExistKey("last", 0, 0));
    EXPECT_EQ(in.GetValue(0, "after"), 5);
}

TEST(XmlParserForTagStream, RepeatedGroupsMergeAndTheBlockIsAValidDocument)
{
    QByteArray const xml = Document(
        streamModeXml,
        [](TTaggedOutputStream& out) {
            out.MoveDown("g");
            out.SetValue(1, "a");
            out.MoveUp();
            out.MoveDown("g");
            out.SetValue(2, "b");
            out.MoveUp();
        },
        "Doc");
    TXmlParserForTagStream parser(xml.constData(), xml.size());
    parser.Execute();
    unsigned int size = 0;
    unsigned char* block = parser.TakeDocument(&size);
    ASSERT_NE(block, nullptr);
    TTaggedInputStream in(streamModeRawTags, block, static_cast<int>(size), checksumOn, autoDeleteOn);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_STREQ(in.GetFileType().c_str(), "Doc");
    ASSERT_TRUE(in.MoveDown("g"));
    EXPECT_STREQ(in.GetValueA("", "a").c_str(), "1");
    EXPECT_STREQ(in.GetValueA("", "b").c_str(), "2");
}

TEST(XmlParserForTagStream, TextWithoutTagsIsNoDocument)
{
    TXmlParserForTagStream parser("just text");
    parser.Execute();
    unsigned int size = 1;
    EXPECT_EQ(parser.TakeDocument(&size), nullptr);
    EXPECT_EQ(size, 0u);
    TTaggedInputStream in(streamModeXml, "just text", 9, checksumOff);
    EXPECT_FALSE(in.IsInitialized());
    // A parser whose document nobody takes frees it.
    TXmlParserForTagStream untaken("<D><a>1</a></D>");
    untaken.Execute();
    EXPECT_GT(untaken.CloseWriting(), 13u);
}
