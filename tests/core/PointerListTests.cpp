#include "core/TListOfPointers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

struct Record
{
    int key;
    int tag;
};

int CompareRecords(void const* a, void const* b)
{
    return static_cast<Record const*>(a)->key - static_cast<Record const*>(b)->key;
}

int g_deleted = 0;

void DeleteRecord(void* record)
{
    ++g_deleted;
    delete static_cast<Record*>(record);
}

void* CloneRecord(void const* record, void const* context)
{
    auto* clone = new Record(*static_cast<Record const*>(record));
    if (context)
        clone->tag = *static_cast<int const*>(context);
    return clone;
}

using RecordList = TListOfPointers<Record>;

void Prepare(RecordList& list)
{
    list.SetComparer(&CompareRecords);
    list.SetDeleter(&DeleteRecord);
    list.SetCloner(&CloneRecord);
}

void Fill(RecordList& list, std::vector<int> const& keys)
{
    int tag = 0;
    for (int key : keys)
        list.Append(new Record{key, tag++});
}

std::vector<int> ListKeys(RecordList const& list)
{
    std::vector<int> keys;
    for (TListOfPointersIteratorImp at(list); at.IsValid(); at.Next())
        keys.push_back(RecordList::Get(at)->key);
    return keys;
}

std::vector<int> ListTags(RecordList const& list)
{
    std::vector<int> tags;
    list.ForEach([](Record* r, void* data) { static_cast<std::vector<int>*>(data)->push_back(r->tag); }, &tags);
    return tags;
}

} // namespace

TEST(PointerList, NodesBelongToTheListAndTheDeleterToOwnership)
{
    g_deleted = 0;
    {
        RecordList owning(autoDeleteOn);
        Prepare(owning);
        Fill(owning, {1, 2, 3, 4});
        Record* second = owning[1];
        EXPECT_EQ(owning.Detach(second), second); // the node goes, the record stays
        EXPECT_EQ(owning.Count(), 3);
        EXPECT_EQ(owning.Detach(second), nullptr);
        EXPECT_EQ(owning.Detach(nullptr), nullptr);
        delete second;
        owning.Delete(owning.GetFirst());
        EXPECT_EQ(g_deleted, 1);
    }
    EXPECT_EQ(g_deleted, 3);

    RecordList borrowing;
    Prepare(borrowing);
    Record shared{5, 0};
    borrowing.Append(&shared);
    borrowing.Append(&shared);
    borrowing.Clear();
    EXPECT_EQ(g_deleted, 3);
    EXPECT_TRUE(borrowing.IsEmpty());
}

TEST(PointerList, OperationsByElementTakeTheFirstMatch)
{
    RecordList list;
    Record a{1, 0}, b{2, 1};
    list.Append(&a);
    list.Append(&b);
    list.Append(&a);
    EXPECT_EQ(list.FindIndexOfElement(&a), 0);
    EXPECT_EQ(list.GetNext(&a), &b);
    EXPECT_EQ(list.GetPrev(&a), nullptr);
    list.Detach(&a);
    EXPECT_EQ(list.GetFirst(), &b);
    EXPECT_EQ(list.GetLast(), &a);
    list.InsertAfter(&a, &b);
    list.InsertBefore(&a, nullptr);
    EXPECT_EQ(list.Count(), 4);
    EXPECT_EQ(list.FindNode(3)->data, &a);
    EXPECT_EQ(list.FindNode(4), nullptr);
    EXPECT_EQ(list[-2], &b);
}

TEST(PointerList, SortIsStableByTheComparer)
{
    RecordList list(autoDeleteOn);
    Prepare(list);
    Fill(list, {3, 1, 3, 2, 1});
    list.Sort();
    EXPECT_EQ(ListKeys(list), (std::vector<int>{1, 1, 2, 3, 3}));
    EXPECT_EQ(ListTags(list), (std::vector<int>{1, 4, 3, 0, 2}));
    EXPECT_TRUE(list.IsSorted());

    RecordList more(autoDeleteOn);
    Prepare(more);
    Fill(more, {2, 0});
    more.Sort();
    list.AbsorbAndSort(more);
    EXPECT_EQ(ListKeys(list), (std::vector<int>{0, 1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(ListTags(list), (std::vector<int>{1, 1, 4, 3, 0, 0, 2}));
    EXPECT_TRUE(more.IsEmpty());

    Record probe{2, 0};
    EXPECT_EQ(list.FindEqual(&probe)->tag, 3);
    EXPECT_EQ(list.FindClosestSmaller(&probe)->key, 1);
    EXPECT_EQ(list.FindClosestGreater(&probe)->key, 3);
    EXPECT_EQ(list.FindSmallest()->key, 0);
    EXPECT_EQ(list.FindIndexOfEqual(&probe), 3);
}

TEST(PointerList, WithoutAComparerPointersOrderByAddress)
{
    Record records[3] = {{9, 0}, {8, 1}, {7, 2}};
    RecordList list;
    list.Append(&records[2]);
    list.Append(&records[0]);
    list.Append(&records[1]);
    list.Sort();
    EXPECT_EQ(ListTags(list), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(list.FindEqual(&records[1]), &records[1]);
    Record copy = records[1];
    EXPECT_EQ(list.FindEqual(&copy), nullptr);
}

TEST(PointerList, CopiesCloneOrShare)
{
    g_deleted = 0;
    RecordList source(autoDeleteOn);
    Prepare(source);
    Fill(source, {1, 2});
    int context = 7;
    {
        RecordList copy(source, &context);
        EXPECT_EQ(ListTags(copy), (std::vector<int>{7, 7}));
        EXPECT_NE(copy.GetFirst(), source.GetFirst());
    }
    EXPECT_EQ(g_deleted, 2);

    RecordList shared;
    shared.SetCloner(&CB_PointerCloner);
    shared.Add(source);
    EXPECT_EQ(shared.GetFirst(), source.GetFirst());
    shared.DetachAll();
    EXPECT_EQ(g_deleted, 2);
}

TEST(PointerList, ReorderingAndWholeListMoves)
{
    RecordList a(autoDeleteOn), b(autoDeleteOn);
    Prepare(a);
    Prepare(b);
    Fill(a, {0, 1, 2, 3, 4});
    a.Swap(a[0], a[4]);
    EXPECT_EQ(ListKeys(a), (std::vector<int>{4, 1, 2, 3, 0}));
    a.MoveAt(a[1], a[3]);
    EXPECT_EQ(ListKeys(a), (std::vector<int>{4, 2, 3, 1, 0}));
    a.Reverse();
    EXPECT_EQ(ListKeys(a), (std::vector<int>{0, 1, 3, 2, 4}));
    a.Split(b, a[3]);
    EXPECT_EQ(ListKeys(a), (std::vector<int>{0, 1, 3}));
    EXPECT_EQ(ListKeys(b), (std::vector<int>{2, 4}));
    EXPECT_EQ(b.Count(), 2);
    a.Absorb(b, a[1]);
    EXPECT_EQ(ListKeys(a), (std::vector<int>{0, 2, 4, 1, 3}));
    g_deleted = 0;
    a.Replace(a[0], new Record{9, 9}, true);
    EXPECT_EQ(g_deleted, 1);
    a.DeleteDuplicates();
    EXPECT_EQ(a.Count(), 5);
    a.Shuffle(5);
    EXPECT_EQ(a.Count(), 5);
    std::vector<int> keys = ListKeys(a);
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(keys, (std::vector<int>{1, 2, 3, 4, 9}));
}
