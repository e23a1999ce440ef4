#include "core/TListOfPointers.h"

#include <gtest/gtest.h>

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

// A list with the record callbacks set, holding the given keys tagged in order.
struct Records : RecordList
{
    explicit Records(std::vector<int> const& keys = {}, EAutoDelete autoDelete = autoDeleteOn) : RecordList(autoDelete)
    {
        SetComparer(&CompareRecords);
        SetDeleter(&DeleteRecord);
        SetCloner(&CloneRecord);
        int tag = 0;
        for (int key : keys)
            Append(new Record{key, tag++});
    }
};

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
        Records owning({1, 2, 3, 4});
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

    Records borrowing({}, autoDeleteOff);
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
    for (Record* r : {&a, &b, &a})
        list.Append(r);
    EXPECT_EQ(list.GetNext(&a), &b);
    list.Detach(&a);
    EXPECT_EQ(list.GetFirst(), &b);
    EXPECT_EQ(list.GetLast(), &a);
    list.InsertAfter(&a, &b);
    EXPECT_EQ(list.FindNode(1)->data, &a);
    EXPECT_EQ(list.FindNode(3), nullptr);
}

TEST(PointerList, SortIsStableByTheComparer)
{
    Records list({3, 1, 3, 2, 1});
    list.Sort();
    EXPECT_EQ(ListKeys(list), (std::vector<int>{1, 1, 2, 3, 3}));
    EXPECT_EQ(ListTags(list), (std::vector<int>{1, 4, 3, 0, 2}));
    EXPECT_TRUE(list.IsSorted());

    Records more({2, 0});
    more.Sort();
    list.AbsorbAndSort(more);
    EXPECT_EQ(ListKeys(list), (std::vector<int>{0, 1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(ListTags(list), (std::vector<int>{1, 1, 4, 3, 0, 0, 2}));
    EXPECT_TRUE(more.IsEmpty());

    Record probe{2, 0};
    EXPECT_EQ(list.FindEqual(&probe)->tag, 3);
}

TEST(PointerList, CopiesCloneOrShare)
{
    g_deleted = 0;
    Records source({1, 2});
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

TEST(PointerList, WithoutAComparerPointersOrderByAddress)
{
    Record records[3] = {{9, 0}, {8, 1}, {7, 2}};
    RecordList list;
    for (int i : {2, 0, 1})
        list.Append(&records[i]);
    list.Sort();
    EXPECT_EQ(ListTags(list), (std::vector<int>{0, 1, 2}));
    Record copy = records[1];
    EXPECT_EQ(list.FindEqual(&copy), nullptr);

    RecordList rest;
    list.Split(rest, &records[1]);
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(rest.Count(), 2);
    list.Absorb(rest, &records[0]);
    EXPECT_EQ(ListTags(list), (std::vector<int>{1, 2, 0}));
}
