#include "TaggedDocuments.h"

#include "core/TFlexHashMap.h"
#include "core/TFlexList.h"
#include "core/TVector.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

// Shapes tell their class by number (circles), by name (squares) or not at
// all (plain); drafts leave themselves out of saves.
enum EKind
{
    ePlain,
    eCircle,
    eSquare,
    eDraft,
};

class TShape final : public TListElement
{
public:
    explicit TShape(EKind kind = ePlain, int size = 0) : m_kind(kind), m_size(size) {}
    std::string Describe() const
    {
        static char const* const names[] = {"plain ", "circle ", "square ", "draft "};
        return names[m_kind] + std::to_string(m_size);
    }
    bool GetClassId(int* id, char* idString) const override
    {
        if (m_kind == eCircle)
            *id = 7;
        if (m_kind == eSquare)
            std::strcpy(idString, "square");
        return m_kind == eCircle || m_kind == eSquare;
    }
    bool CanWrite(long long) const override { return m_kind != eDraft; }
    void WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const override
    {
        TScopedOutputGroup group(stream, tag, index);
        stream.SetValue(m_size, "size");
    }
    bool RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index) override
    {
        TScopedInputGroup group(stream, tag, index);
        m_size = stream.GetValue(m_size, "size");
        return group.Found() && m_size >= 0;
    }

private:
    EKind m_kind;
    int m_size;
};

struct TFactoryLog
{
    std::vector<std::string> calls;
    int stopAt = -1;
} g_factoryLog;

TObject* MakeShape(long long context, int id, char const* idString)
{
    g_factoryLog.calls.push_back(std::to_string(context) + ":" + std::to_string(id) + ":" + idString);
    if (static_cast<int>(g_factoryLog.calls.size()) - 1 == g_factoryLog.stopAt)
        return nullptr;
    return new TShape(id == 7 ? eCircle : std::string(idString) == "square" ? eSquare : ePlain);
}

template <class Container>
std::vector<std::string> Describe(Container const& shapes)
{
    std::vector<std::string> result;
    for (TShape const* shape : shapes)
        result.push_back(shape->Describe());
    return result;
}

// A keyed element for the hash map.
class TEntry final : public THashableElement
{
public:
    explicit TEntry(char const* key = "", int value = 0) : m_key(key), m_value(value) {}
    unsigned int GetHashedValue() const override { return m_key.GetHashValue(); }
    bool IsEqual(TObject const& other, long long) const override
    {
        return m_key == static_cast<TEntry const&>(other).m_key;
    }
    void WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const override
    {
        TScopedOutputGroup group(stream, tag, index);
        stream.SetValue(m_key.c_str(), "k");
        stream.SetValue(m_value, "v");
    }
    bool RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index) override
    {
        TScopedInputGroup group(stream, tag, index);
        m_key = stream.GetValueA(m_key.c_str(), "k");
        m_value = stream.GetValue(m_value, "v");
        return group.Found();
    }
    int Value() const { return m_value; }

private:
    TString<char> m_key;
    int m_value;
};

TObject* MakeEntry(long long, int, char const*)
{
    return new TEntry;
}

// The calls of write, then 99 as "end", to show where the restore left off.
template <class Write> QByteArray Ended(EStreamMode mode, Write write)
{
    return Document(mode, [&](TTaggedOutputStream& out) {
        write(out);
        out.SetValue(99, "end");
    });
}

class ContainerStateModes : public ::testing::TestWithParam<EStreamMode>
{
protected:
    void SetUp() override { g_factoryLog = TFactoryLog(); }
    template <class Write> QByteArray Document(Write write) { return Ended(GetParam(), write); }
};

} // namespace

TEST_P(ContainerStateModes, ListsKeepClassesAndLeaveOutDrafts)
{
    TFlexList<TShape> shapes(autoDeleteOn, MakeShape);
    shapes.Add(new TShape(eCircle, 3));
    shapes.Add(new TShape(eDraft, 1));
    shapes.Add(new TShape(eSquare, 4));
    shapes.Add(new TShape(ePlain, 5));
    QByteArray const document = Document([&](TTaggedOutputStream& out) { shapes.WriteState(out, 12, "shapes", 2); });
    TTaggedInputStream in(GetParam(), document, checksumOn);

    TFlexList<TShape> restored(autoDeleteOn, MakeShape);
    restored.Add(new TShape);
    int const group = in.GetCurrentGroup();
    ASSERT_TRUE(restored.RestoreState(in, 12, "shapes", 2));
    // Appended behind what was there; numbered without the draft's gap.
    EXPECT_EQ(Describe(restored), (Strings { "plain 0", "circle 3", "square 4", "plain 5" }));
    EXPECT_EQ(g_factoryLog.calls, (Strings { "12:7:", "12:-1:square", "12:-1:" }));
    EXPECT_EQ(in.GetCurrentGroup(), group);
    EXPECT_EQ(in.GetValue(0, "end"), 99);
    EXPECT_FALSE(restored.RestoreState(in, 12, "shapes", 3));
}

TEST_P(ContainerStateModes, FactoryOrElementEndsTheRestore)
{
    TFlexList<TShape> shapes(autoDeleteOn, MakeShape);
    for (int size : {1, 2, -3, 4})
        shapes.Add(new TShape(ePlain, size));
    QByteArray const document = Document([&](TTaggedOutputStream& out) { shapes.WriteState(out, 0, "s", 0); });
    TTaggedInputStream in(GetParam(), document, checksumOn);

    g_factoryLog.stopAt = 1;
    TFlexList<TShape> cut(autoDeleteOn, MakeShape);
    EXPECT_TRUE(cut.RestoreState(in, 0, "s", 0));
    EXPECT_EQ(Describe(cut), Strings { "plain 1" });

    // The third element refuses its state: it is not added, and not deleted
    // by the list either.
    g_factoryLog = TFactoryLog();
    static std::vector<TObject*> made;
    made.clear();
    TFlexList<TShape> refused(autoDeleteOn, [](long long, int, char const*) -> TObject* {
        made.push_back(new TShape);
        return made.back();
    });
    EXPECT_TRUE(refused.RestoreState(in, 0, "s", 0));
    EXPECT_EQ(Describe(refused), (Strings { "plain 1", "plain 2" }));
    ASSERT_EQ(made.size(), 3u);
    EXPECT_FALSE(refused.HasElement(static_cast<TShape*>(made[2])));
    made[2]->DeleteSelf();
    EXPECT_EQ(in.GetValue(0, "end"), 99);
}

TEST_P(ContainerStateModes, VectorsCountWhatMayBeWrittenButWriteAll)
{
    TVector<TShape> shapes(4, 4, autoDeleteOn, MakeShape);
    shapes.Add(new TShape(eSquare, 1));
    shapes.Add(new TShape(eDraft, 2));
    shapes.Add(new TShape(eCircle, 3));
    QByteArray const document = Document([&](TTaggedOutputStream& out) { shapes.WriteState(out, 0, "v", 0); });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    ASSERT_TRUE(in.MoveDown("v"));
    EXPECT_EQ(in.GetValue(0, "Siz"), 2);
    EXPECT_TRUE(in.ExistKey("E", 2, 0));
    in.MoveUp();
    TVector<TShape> restored(4, 4, autoDeleteOn, MakeShape);
    ASSERT_TRUE(restored.RestoreState(in, 0, "v", 0));
    EXPECT_EQ(Describe(restored), (Strings { "square 1", "plain 2" }));
    EXPECT_EQ(in.GetValue(0, "end"), 99);
}

INSTANTIATE_TEST_SUITE_P(TagModes, ContainerStateModes, ::testing::Values(streamModeRawTags, streamModeXml), ModeName);

TEST(ContainerState, HashMapsRebuildTheirTableInEveryMode)
{
    for (EStreamMode mode : {streamModePlain, streamModeRawTags, streamModeXml}) {
        TFlexHashMap<TEntry> map(0, autoDeleteOn, MakeEntry);
        for (int i = 0; i < 40; ++i)
            map.Add(new TEntry(("key" + std::to_string(i)).c_str(), i * i));
        QByteArray const document = Ended(mode, [&](TTaggedOutputStream& out) { map.WriteState(out, 0, "map", 0); });
        TTaggedInputStream in(mode, document, checksumOn);

        TFlexHashMap<TEntry> restored(0, autoDeleteOn, MakeEntry);
        restored.Add(new TEntry("stale", -1));
        ASSERT_TRUE(restored.RestoreState(in, 0, "map", 0)) << mode;
        // Cleared first, then every entry findable through the new table.
        EXPECT_EQ(restored.Count(), 40) << mode;
        EXPECT_EQ(restored.FindEqual(TEntry("stale")), nullptr) << mode;
        for (int i = 0; i < 40; ++i) {
            TEntry const* found = restored.FindEqual(TEntry(("key" + std::to_string(i)).c_str()));
            ASSERT_NE(found, nullptr) << mode << " " << i;
            EXPECT_EQ(found->Value(), i * i);
        }
        EXPECT_EQ(in.GetValue(0, "end"), 99) << mode;
    }
}
