#include "text/LString.h"
#include "text/PatternReplace.h"
#include "text/StringSplit.h"
#include "text/TFindRepHelper.h"
#include "text/TSegmentCutCopy.h"
#include "text/TStringEx.h"
#include "text/TStringNode.h"
#include "text/TTagStringSet.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace {

std::string Std(AString const& s)
{
    return std::string(s.c_str(), static_cast<size_t>(s.GetLength()));
}

std::u16string Std(WString const& s)
{
    return std::u16string(s.c_str(), static_cast<size_t>(s.GetLength()));
}

std::string Merge(char const* source, std::initializer_list<TSegmentCutCopy<char>> edits, bool sort = true)
{
    TFlexList<TSegmentCutCopy<char>> plan(autoDeleteOn);
    for (TSegmentCutCopy<char> const& edit : edits)
        plan.Append(new TSegmentCutCopy<char>(edit));
    if (sort)
        plan.Sort();
    return Std(CopyAndMerge(AString(source), plan));
}

} // namespace

TEST(CopyAndMerge, PlansOfCutsInsertionsAndReplacements)
{
    EXPECT_EQ(Merge("hello world", {}), "hello world");
    EXPECT_EQ(Merge("hello world", {{0, 5, "HELLO"}}), "HELLO world");
    EXPECT_EQ(Merge("hello world", {{5, 0, ","}, {11, 0, "!"}}), "hello, world!");
    EXPECT_EQ(Merge("hello world", {{5, 6, ""}}), "hello");
    // The plan is sorted by start and then order number, whatever the
    // sequence of arrival.
    EXPECT_EQ(Merge("ac", {{1, 0, "y", 2}, {1, 0, "x", 1}, {0, 1, "A"}}), "Axyc");
    // An edit that starts inside an earlier cut copies nothing more: the read
    // position moves on from where the last cut left it.
    EXPECT_EQ(Merge("abcdef", {{1, 3, "X"}, {2, 1, "Y"}}), "aXYf");
    EXPECT_EQ(Merge("abc", {{10, 5, "+"}}), "abc+");
    // Unsorted plans are applied as they come.
    EXPECT_EQ(Merge("abcdef", {{4, 1, "E"}, {0, 1, "A"}}, false), "abcdEA");
}

TEST(FindRepHelper, EntriesRunInOrderOnTheResultBefore)
{
    TFindRepHelper<char> batch;
    batch.Add("cat", "dog", eFindRepCaseSensitive);
    batch.Add("dog", "wolf", 0);
    batch.Add("a", "A", eFindRepCaseSensitive | eFindRepWholeWord);
    batch.Add("", "never", 0);
    AString result;
    EXPECT_EQ(FindReplace("a cat, a Cat, a DOG", -1, result, batch), 6);
    EXPECT_EQ(Std(result), "A wolf, A Cat, A wolf");
    // Only the given length is read.
    EXPECT_EQ(FindReplace("cat|cat", 3, result, batch), 2);
    EXPECT_EQ(Std(result), "wolf");

    TFindRepHelper<char> const copy(batch);
    batch.Clear();
    EXPECT_EQ(copy.Count(), 4);
    EXPECT_EQ(Std(copy.GetReplacement(1)), "wolf");
    EXPECT_EQ(copy.GetFlags(2), eFindRepCaseSensitive | eFindRepWholeWord);
}

TEST(FindRepHelper, TheCallbackSeesEachHitAndMaySkipIt)
{
    struct Seen
    {
        int calls = 0;
        int line = -1;
    } seen;
    auto skipFirst = [](int, int, int line, int, void* data) {
        auto* s = static_cast<Seen*>(data);
        s->line = line;
        return ++s->calls > 1;
    };
    TFindRepHelper<char16_t> batch(skipFirst, &seen);
    batch.Add(u"x", u"y", eFindRepCaseSensitive);
    WString result;
    EXPECT_EQ(FindReplace(u"x\nx\nx", -1, result, batch), 2);
    EXPECT_EQ(Std(result), u"x\ny\ny");
    EXPECT_EQ(seen.calls, 3);
    EXPECT_EQ(seen.line, 2);
}

TEST(PatternReplace, MatchesWithCapturesAndEscapes)
{
    AString text("a1b22c333");
    EXPECT_EQ(ReplaceAllPatterns(text, "[0-9]+", "#"), 3);
    EXPECT_EQ(Std(text), "a#b#c#");
    text = "a1b22c333";
    EXPECT_EQ(ReplaceAllPatterns(text, "{[a-z]}{[0-9]+}", "/2/1(/0)//"), 3);
    EXPECT_EQ(Std(text), "1a(a1)/22b(b22)/333c(c333)/");
    // Empty matches replace nothing; a broken pattern leaves the text.
    EXPECT_EQ(ReplaceAllPatterns(text, "x*", "-"), 0);
    EXPECT_EQ(ReplaceAllPatterns(text, "{abc", "-"), 0);
    EXPECT_EQ(Std(text), "1a(a1)/22b(b22)/333c(c333)/");

    WString wide(u"Take TAKE take\nTaken");
    EXPECT_EQ(ReplaceAllPatterns(wide, u"take", u"give", false), 4);
    EXPECT_EQ(Std(wide), u"give give give\ngiven");
    // Without case the captures still bring the text as it was; a capital
    // behind a slash is kept, and so never matches.
    wide = u"Hello WORLD";
    EXPECT_EQ(ReplaceAllPatterns(wide, u"{[a-z]+}", u"/1!", false), 2);
    EXPECT_EQ(Std(wide), u"Hello! WORLD!");
    EXPECT_EQ(ReplaceAllPatterns(wide, u"/Hello", u"-", false), 0);

    auto onlySecondLine = [](int, int, int line, int offset, void* data) {
        *static_cast<int*>(data) = offset;
        return line == 1;
    };
    int offset = -1;
    WString lines(u"ab ab\nxab");
    EXPECT_EQ(ReplaceAllPatterns(lines, u"ab", u"-", true, onlySecondLine, &offset), 1);
    EXPECT_EQ(Std(lines), u"ab ab\nx-");
    EXPECT_EQ(offset, 1);
}

TEST(PatternReplace, SignedNumbersByPattern)
{
    TVector<int> numbers;
    numbers.Add(42);
    EXPECT_EQ(StringToIntVector(u"a-12 b3--4 99999999999 -99999999999 x", numbers), 5);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (std::vector<int>{-12, 3, -4, INT_MAX, INT_MIN}));
    EXPECT_EQ(StringToIntVector("none", numbers), 0);

    TFindRepHelper<char> batch;
    batch.Add("v{[0-9]+}", "version /1", eFindRepPattern);
    batch.Add("VERSION", "release", 0);
    AString result;
    EXPECT_EQ(FindReplace("V2 and v10", -1, result, batch), 4);
    EXPECT_EQ(Std(result), "release 2 and release 10");
}

TEST(TagStringSet, EntriesByTag)
{
    TTagStringSet<char> set(false);
    EXPECT_EQ(set.SetTagString("Name", "a b a"), 0);
    EXPECT_EQ(set.SetTagString("Path", "c:/a"), 1);
    EXPECT_EQ(set.SetTagString("NAME", "a-b-a"), 0);
    EXPECT_EQ(set.Count(), 2);
    EXPECT_EQ(Std(set.GetKind(1)), "s");
    EXPECT_EQ(set.ReplaceString("name", "a", "x"), 2);
    EXPECT_EQ(set.ReplaceInAllStrings('s', "/", "\\"), 1);
    EXPECT_EQ(set.ReplaceInAllStrings('n', "x", "y"), 0);
    int index = -2;
    EXPECT_EQ(Std(set.GetStringFromTag("name", &index)), "x-b-x");
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(set.GetStringFromTag("none", &index).IsEmpty());
    EXPECT_EQ(index, -1);
    set.Remove(0);
    set.Remove(5);
    EXPECT_EQ(Std(set.GetTag(0)), "Path");
    EXPECT_EQ(Std(set.GetString(0)), "c:\\a");
    EXPECT_TRUE(set.GetString(3).IsEmpty());
    EXPECT_EQ(TTagStringSet<char>(true).GetTagIndex("x"), -1);
}

TEST(TagStringSet, ExternalFormRoundTrips)
{
    char16_t const loneSurrogate[] = {u'a', 0xD800, u'b', 0xDC00, 0};
    TTagStringSet<char16_t> wide;
    wide.SetTagString(u"plain", u"value");
    wide.SetTagString(u"tab\tkey", u"line\r\nnext\\n");
    wide.SetTagString(u"odd", loneSurrogate);
    wide.SetTagString(u"music", u"\u266B \U0001D11E");
    wide.SetTagString(u"empty", u"");
    TBuffer<char> buffer;
    wide.SetBuffer(buffer);
    TTagStringSet<char16_t> back(buffer.ConstStart(), buffer.Size());
    ASSERT_EQ(back.Count(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Std(back.GetTag(i)), Std(wide.GetTag(i)));
        EXPECT_EQ(Std(back.GetKind(i)), u"s");
        EXPECT_EQ(Std(back.GetString(i)), Std(wide.GetString(i)));
    }
    EXPECT_EQ(Std(wide.Externalize()).substr(0, 12), "plain\ts\tvalu");

    TTagStringSet<char> narrow;
    narrow.SetTagString("bytes", "\xFF\x01\\\t");
    AString const external = narrow.Externalize();
    EXPECT_EQ(Std(external), "bytes\ts\t\xFF\x01\\\\\\t\n");
    TTagStringSet<char> narrowBack;
    EXPECT_TRUE(narrowBack.InitFromBuffer(external.c_str(), external.GetLength()));
    EXPECT_EQ(Std(narrowBack.GetString(0)), "\xFF\x01\\\t");
}

TEST(TagStringSet, BadBuffersAreRefusedWhole)
{
    TTagStringSet<char16_t> set;
    char const good[] = "a\ts\tone\r\nb\tn\ttwo";
    ASSERT_TRUE(set.InitFromBuffer(good, int(sizeof good - 1)));
    EXPECT_EQ(Std(set.GetString(1)), u"two");
    EXPECT_EQ(Std(set.GetKind(1)), u"n");
    for (char const* bad : {"a\ts\tone\nb\ts", "a\ts\tx\ty", "a\ts\tbad\\q", "a\ts\tend\\", "\n", "a\ts\t\xE9t\xE9",
                            "a\ts\t\\u12G4"}) {
        EXPECT_FALSE(set.InitFromBuffer(bad, int(std::strlen(bad)))) << bad;
        EXPECT_EQ(set.Count(), 2);
    }
    EXPECT_FALSE(TTagStringSet<char>().InitFromBuffer("a\ts\t\\u0041", 10));
    EXPECT_TRUE(set.InitFromBuffer(nullptr, 0));
    EXPECT_TRUE(set.IsEmpty());
}

TEST(StringNode, BranchesShareTheirWordsInOrder)
{
    auto words = [](std::initializer_list<char const*> list) {
        TVector<WString> v;
        for (char const* w : list)
            v.Add(WString(w));
        return v;
    };
    TStringNode root(WString(u""));
    TStringNode* openFile = root.AddBranch(words({"open", "file"}), 0, 1);
    root.AddBranch(words({"Open", "recent"}), 0, 2);
    root.AddBranch(words({"close"}), 0, 3);
    EXPECT_EQ(root.AddBranch(words({"x", "open"}), 1, 4), root.FindNode(u"open", true));
    EXPECT_EQ(root.AddBranch(words({"open"}), 1, 5), &root);

    EXPECT_EQ(openFile->GetDepth(), 2);
    EXPECT_TRUE(openFile->EndsPhrase());
    EXPECT_EQ(root.FindBranch(words({"open", "file"}), 0, true), openFile);
    EXPECT_EQ(root.FindBranch(words({"OPEN", "FILE"}), 0, true), nullptr);
    EXPECT_NE(root.FindBranch(words({"OPEN", "RECENT"}), 0, false), nullptr);
    EXPECT_EQ(root.FindNode(u"open", true)->GetValue(), 4);

    struct Walk
    {
        std::u16string text;
        int stopAfter;
    };
    auto collect = [](TStringNode& node, void* data) {
        auto* walk = static_cast<Walk*>(data);
        walk->text += Std(node.GetWord()) + u" ";
        return --walk->stopAfter != 0;
    };
    Walk all{u"", -1};
    EXPECT_TRUE(root.ForEach(collect, true, &all));
    // Siblings go by word without case first: "Open" before "open".
    EXPECT_EQ(all.text, u"close Open recent open file ");
    Walk top{u"", -1};
    root.ForEach(collect, false, &top);
    EXPECT_EQ(top.text, u"close Open open ");
    Walk stopped{u"", 3};
    EXPECT_FALSE(root.ForEach(collect, true, &stopped));
    EXPECT_EQ(stopped.text, u"close Open recent ");

    auto* copy = static_cast<TStringNode*>(root.CreateClone(nullptr));
    Walk copied{u"", -1};
    copy->ForEach(collect, true, &copied);
    EXPECT_EQ(copied.text, all.text);
    EXPECT_EQ(copy->FindNode(u"open", true)->FindNode(u"file", true)->GetParent(), copy->FindNode(u"open", true));
    copy->DeleteSelf();
}

TEST(SmallStrings, ListStringsAndStringsWithAValue)
{
    TFlexList<LString<char>> list(autoDeleteOn);
    for (char const* s : {"b", "C", "a"})
        list.Append(new LString<char>(s));
    list.Sort();
    EXPECT_EQ(Std(*list.GetFirst()) + Std(*list.GetLast()), "Cb");
    list.SetCompareMode(1);
    list.Sort();
    EXPECT_EQ(Std(*list.GetFirst()) + Std(*list.GetLast()), "aC");
    TFlexList<LString<char>> const copy(list);
    EXPECT_EQ(Std(*copy.GetLast()), "C");
    EXPECT_NE(copy.GetLast(), list.GetLast());

    TStringEx<char16_t> named(u"gain", -3000000000LL);
    TStringEx<char16_t> const other(named);
    named = u"level";
    EXPECT_EQ(Std(named), u"level");
    EXPECT_EQ(named.GetValue(), -3000000000LL);
    EXPECT_EQ(Std(other), u"gain");
}
