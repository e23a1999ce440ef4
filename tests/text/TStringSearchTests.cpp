#include "StringPrinting.h"
#include "text/TString.h"
#include "text/WordTools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

TEST(TStringSearch, FindBoundariesAndOptions)
{
    AString const s("one two one Two");
    EXPECT_EQ(s.Find("one"), 0);
    EXPECT_EQ(s.Find("one", 1), 8);
    EXPECT_EQ(s.Find("one", -5), 0);
    EXPECT_EQ(s.Find("two", 5), -1);
    EXPECT_EQ(s.Find("two", 5, false), 12);
    EXPECT_EQ(s.Find("Two", s.GetLength()), -1);
    EXPECT_EQ(s.Find("Two", s.GetLength() + 1), -1);
    EXPECT_EQ(s.Find(""), -1);
    EXPECT_EQ(s.Find(nullptr), -1);
    EXPECT_EQ(AString("ones one").Find("one", 0, true, true), 5);
    EXPECT_EQ(AString("one_x one").Find("one", 0, true, true), 6);
    EXPECT_EQ(AString("xone").Find("one", 0, true, true), -1);
    EXPECT_EQ(WString(u"ÉTÉ été").Find(u"été", 0, false), 0);
    EXPECT_EQ(WString(u"ab ab").Find(u"ab", 0, true, true), 0);

    EXPECT_EQ(s.FindFirst('t'), 4);
    EXPECT_EQ(s.FindFirst('t', 5), -1);
    EXPECT_EQ(s.FindLast('o'), 14);
    EXPECT_EQ(s.FindLast('#'), -1);
    EXPECT_EQ(s.FindFirstOf("wx"), 5);
    EXPECT_EQ(s.FindLastOf("ne"), 10);
    EXPECT_EQ(s.FindFirstNotOf("eno"), 3);
    EXPECT_EQ(s.FindLastNotOf("owT"), 11);
    EXPECT_EQ(AString("aaa").FindFirstNotOf("a"), -1);
    EXPECT_TRUE(s.Contains("TWO", false));
    EXPECT_FALSE(s.Contains("three"));
    EXPECT_TRUE(s.ContainsAnyOf("xyzT"));

    // Occurrences overlap.
    EXPECT_EQ(AString("aaaa").FindOccurence("aa", 0), 0);
    EXPECT_EQ(AString("aaaa").FindOccurence("aa", 2), 2);
    EXPECT_EQ(AString("aaaa").FindOccurence("aa", 3), -1);
    EXPECT_EQ(AString("xAx ax").FindOccurence("a", 1, false), 4);
}

// Case-sensitive wide search filters starts eight at a time; against a plain
// scan over a small alphabet, with terminators inside the text (the search
// ends at the first one from its start) and texts long enough for the blocks.
TEST(TStringSearch, WideFindAgreesWithAPlainScan)
{
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        std::u16string text(random() % 60, u'a');
        for (char16_t& c : text)
            c = random() % 25 == 0 ? u'\0' : static_cast<char16_t>(u'a' + random() % 3);
        std::u16string needle(1 + random() % 5, u'a');
        for (char16_t& c : needle)
            c = static_cast<char16_t>(u'a' + random() % 3);
        WString const subject(text.c_str(), length_t(static_cast<unsigned>(text.size())));
        for (size_t from = 0; from <= text.size(); from += 1 + random() % 7) {
            size_t const stop = std::min(text.find(u'\0', from), text.size());
            size_t const hit = text.substr(from, stop - from).find(needle);
            int const expected = hit == std::u16string::npos ? -1 : static_cast<int>(from + hit);
            ASSERT_EQ(subject.Find(needle.c_str(), static_cast<int>(from)), expected)
                << "round " << round << " from " << from;
        }
    }
}

TEST(TStringSearch, StartsAndEnds)
{
    AString const s("  Name_1 = 5");
    EXPECT_TRUE(AString("Hello").StartsWith("He"));
    EXPECT_FALSE(AString("Hello").StartsWith("he"));
    EXPECT_TRUE(AString("Hello").StartsWith("he", false));
    EXPECT_FALSE(AString("He").StartsWith("Hello"));
    EXPECT_TRUE(s.StartsWithToken("Name_1"));
    EXPECT_FALSE(s.StartsWithToken("Name"));   // followed by "_"
    EXPECT_TRUE(AString("\tif(x)").StartsWithToken("IF", false));
    EXPECT_FALSE(AString("iffy").StartsWithToken("if"));
    EXPECT_TRUE(AString("if").StartsWithToken("if"));

    EXPECT_TRUE(AString("file.WAV").EndsWith(".wav", false));
    EXPECT_FALSE(AString("file.WAV").EndsWith(".wav"));
    EXPECT_TRUE(AString("dir/name").EndsWith("name", true, "/\\"));
    EXPECT_FALSE(AString("dirname").EndsWith("name", true, "/\\"));
    EXPECT_TRUE(AString("name").EndsWith("name", true, "/\\"));
    EXPECT_FALSE(AString("ab").EndsWith("cab"));
}

namespace {

struct THits
{
    std::vector<std::vector<int>> calls;
    bool skipSecond = false;
};

bool Record(int position, int length, int line, int offset, void* data)
{
    auto* hits = static_cast<THits*>(data);
    hits->calls.push_back({position, length, line, offset});
    return !(hits->skipSecond && hits->calls.size() == 2);
}

} // namespace

TEST(TStringSearch, ReplaceOptions)
{
    AString s("cat Cat CAT concat");
    EXPECT_EQ(s.Replace("cat", "dog"), 2);
    EXPECT_EQ(s, AString("dog Cat CAT condog"));

    AString t("cat Cat CAT concat");
    EXPECT_EQ(t.Replace("cat", "dog", false, true), 3);
    EXPECT_EQ(t, AString("dog dog dog concat"));

    AString u("cat Cat CAT cAt");
    EXPECT_EQ(u.Replace("cat", "dog", false, false, true), 4);
    EXPECT_EQ(u, AString("dog Dog DOG dog")); // mixed case leaves the replacement as given

    AString grow("aa");
    EXPECT_EQ(grow.Replace("a", "aa"), 2); // the replacement isn't searched again
    EXPECT_EQ(grow, AString("aaaa"));
    AString none("abc");
    EXPECT_EQ(none.Replace("", "x"), 0);
    EXPECT_EQ(none.Replace(nullptr, "x"), 0);
    EXPECT_EQ(none.Replace("b", nullptr), 1);
    EXPECT_EQ(none, AString("ac"));

    AString shared("x.x");
    AString copy(shared);
    copy.Replace(".", "-");
    EXPECT_EQ(shared, AString("x.x"));
    EXPECT_EQ(copy, AString("x-x"));
}

TEST(TStringSearch, ReplaceCallbackSeesLinesAndCanSkip)
{
    AString s("ab\nxab\n\nab");
    THits hits;
    hits.skipSecond = true;
    EXPECT_EQ(s.Replace("ab", "Z", true, false, false, Record, &hits), 2);
    EXPECT_EQ(s, AString("Z\nxab\n\nZ"));
    ASSERT_EQ(hits.calls.size(), 3u);
    EXPECT_EQ(hits.calls[0], (std::vector<int>{0, 2, 0, 0}));
    EXPECT_EQ(hits.calls[1], (std::vector<int>{4, 2, 1, 1}));
    EXPECT_EQ(hits.calls[2], (std::vector<int>{8, 2, 3, 0}));
}

TEST(TStringSearch, WordHelpers)
{
    EXPECT_EQ(FindTextCase("Ab", -1), eWordCaseCapital);
    EXPECT_EQ(FindTextCase("ab", -1), eWordCaseLower);
    EXPECT_EQ(FindTextCase("AB", -1), eWordCaseUpper);
    EXPECT_EQ(FindTextCase("aB", -1), eWordCaseMixed);
    EXPECT_EQ(FindTextCase("1", -1), eWordCaseNone);
    EXPECT_EQ(FindTextCase("", -1), eWordCaseNone);
    EXPECT_EQ(FindTextCase("Ab CD", 2), eWordCaseCapital);
    EXPECT_EQ(FindTextCase(u"Été", -1), eWordCaseCapital);
    EXPECT_TRUE(IsWholeWord("a word.", 2, 6));
    EXPECT_FALSE(IsWholeWord("a words", 2, 6));
    EXPECT_FALSE(IsWholeWord("_word", 1, 5));
    EXPECT_TRUE(IsWholeWord("word", 0, 4));
    EXPECT_FALSE(IsWholeWord(u"éword", 1, 5));
}

TEST(TStringSearch, Extensions)
{
    EXPECT_EQ(AString("a.b/c").GetExtension(), AString(""));
    EXPECT_EQ(AString("dir.x\\take.WAV").GetExtension(), AString("WAV"));
    EXPECT_EQ(AString("take.WAV").GetExtension("aif|wav"), AString("WAV"));
    EXPECT_EQ(AString("take.mp3").GetExtension("aif|wav"), AString(""));
    EXPECT_EQ(AString("take.wav").GetExtension("*.aif|.wav"), AString("wav"));
    EXPECT_EQ(AString("noext").GetExtension(), AString(""));

    EXPECT_EQ(AString("take.wav").SetExtension("aif"), AString("take.aif"));
    EXPECT_EQ(AString("take..").SetExtension("aif"), AString("take.aif"));
    EXPECT_EQ(AString("take").SetExtension(".aif"), AString("take.aif"));
    EXPECT_EQ(AString("take.txt").SetExtension("aif", "wav|mp3"), AString("take.txt.aif"));
    EXPECT_EQ(AString("take.mp3").SetExtension("aif", "wav|mp3"), AString("take.aif"));
    EXPECT_EQ(AString("take.AIF").SetExtension("aif", "wav|mp3"), AString("take.aif"));
    EXPECT_EQ(AString("take.wav").SetExtension(nullptr), AString("take"));
    EXPECT_EQ(AString().SetExtension("aif"), AString(""));
    EXPECT_EQ(AString("take.wav").RemoveExtension("aif"), AString("take.wav"));
    EXPECT_EQ(AString("take.wav").RemoveExtension(), AString("take"));
    EXPECT_EQ(AString("take.WAV").AddExtension("wav"), AString("take.WAV"));
    EXPECT_EQ(AString("take.txt").AddExtension("wav"), AString("take.txt.wav"));
    EXPECT_EQ(AString("take.wav").AppendExtension("wav"), AString("take.wav.wav"));
    AString const original("song.mp3");
    EXPECT_EQ(original.UpdatedWithExtension("ogg"), AString("song.ogg"));
    EXPECT_EQ(original, AString("song.mp3"));

    WString wide(u"C:\\Takes\\take.wav");
    EXPECT_EQ(wide.GetExtensionA("WAV|aif"), WString(u"wav"));
    EXPECT_EQ(wide.SetExtensionA("flac", "wav"), WString(u"C:\\Takes\\take.flac"));
    EXPECT_EQ(wide.AddExtensionA("flac"), WString(u"C:\\Takes\\take.flac"));
    EXPECT_EQ(wide.AppendExtensionA("bak"), WString(u"C:\\Takes\\take.flac.bak"));
}

TEST(TStringSearch, SmallXml)
{
    AString const xml("<doc><name lang=\"en\">Take 1</name><empty/><open>never closed</doc>");
    EXPECT_TRUE(xml.ExistXmlSection("name"));
    EXPECT_EQ(xml.GetXmlSection("name"), AString("Take 1"));
    EXPECT_TRUE(xml.ExistXmlSection("empty"));
    EXPECT_EQ(xml.GetXmlSection("empty"), AString(""));
    EXPECT_FALSE(xml.ExistXmlSection("open"));
    EXPECT_FALSE(xml.ExistXmlSection("nam"));
    EXPECT_EQ(xml.GetXmlSection("doc").Find("<name"), 0);
    EXPECT_EQ(WString(u"<a><b>x</b></a>").GetXmlSection(u"b"), WString(u"x"));
}
