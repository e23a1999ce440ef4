#include "ContainerTestElements.h"

#include "core/TFlexList.h"
#include "core/TSingleList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using ItemList = TFlexList<Item>;

void Fill(ItemList& list, std::vector<int> const& keys, int* deaths = nullptr)
{
    int tag = 0;
    for (int key : keys)
        list.Append(new Item(key, tag++, deaths));
}

class FinalItem final : public Item
{
public:
    using Item::Item;
};

class Picky final : public Item
{
public:
    using Item::Item;
    bool CanWrite(long long context) const override { return key % 2 == context; }
};

} // namespace

TEST(DoubleList, InsertionsSetBothLinksAndNullWhereMeansAnEnd)
{
    ItemList list(autoDeleteOn);
    Item* b = list.Add(new Item(2));
    list.Prepend(new Item(1));
    list.InsertBefore(new Item(4), nullptr);
    list.InsertAfter(new Item(0), nullptr);
    list.InsertAfter(new Item(3), b);
    list.Push(new Item(-1));
    EXPECT_EQ(Keys(list), (std::vector<int>{-1, 0, 1, 2, 3, 4}));
    EXPECT_TRUE(LinksAreConsistent(list));
    EXPECT_EQ(list.LastIndex(), 5);
}

TEST(DoubleList, OwnershipDecidesOnlyClearAndTheEnd)
{
    int deaths = 0;
    {
        ItemList owning(autoDeleteOn);
        Fill(owning, {1, 2, 3, 4}, &deaths);
        owning.Detach(owning.GetFirst())->DeleteSelf();
        EXPECT_EQ(deaths, 1);
        owning.Delete(5); // invalid index: ignored
        owning.Delete(0);
        EXPECT_EQ(deaths, 2);
    }
    EXPECT_EQ(deaths, 4);

    deaths = 0;
    ItemList borrowing;
    Fill(borrowing, {1, 2, 3}, &deaths);
    Item* first = borrowing.GetFirst();
    borrowing.Delete(borrowing.GetLast()); // Delete deletes whatever the bit says
    EXPECT_EQ(deaths, 1);
    borrowing.Clear();
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(borrowing.IsEmpty());
    // The forgotten elements still link to each other.
    ASSERT_NE(first->GetNext(), nullptr);
    EXPECT_EQ(first->GetNext()->GetPrev(), first);
    DeleteSelf(first->GetNext());
    DeleteSelf(first);
    EXPECT_EQ(deaths, 3);

    ItemList owningClear(autoDeleteOn);
    Fill(owningClear, {1, 2}, &deaths);
    owningClear.Clear();
    EXPECT_EQ(deaths, 5);
}

TEST(DoubleList, AddUniqueKeepsTheFirstAndDeletesTheNewcomerOnlyWhenOwning)
{
    int deaths = 0;
    ItemList owning(autoDeleteOn);
    Item* old = owning.Add(new Item(7, 1, &deaths));
    bool existed = false;
    EXPECT_EQ(owning.AddUnique(new Item(7, 2, &deaths), &existed), old);
    EXPECT_TRUE(existed);
    EXPECT_EQ(deaths, 1);
    Item* fresh = new Item(8, 3, &deaths);
    EXPECT_EQ(owning.AddUnique(fresh, &existed), fresh);
    EXPECT_FALSE(existed);
    EXPECT_EQ(owning.AddUnique(fresh), fresh); // already in: not deleted
    EXPECT_EQ(owning.Count(), 2);

    ItemList borrowing;
    Item* kept = borrowing.Add(new Item(7, 5, &deaths));
    Item* twin = new Item(7, 4, &deaths);
    EXPECT_EQ(borrowing.AddUnique(twin, &existed), kept);
    EXPECT_EQ(deaths, 1);
    borrowing.Add(twin);
    borrowing.DeleteAll();
    EXPECT_EQ(deaths, 3);
}

TEST(DoubleList, SortedInsertionAndMergeSortAreStable)
{
    ItemList list(autoDeleteOn);
    for (int i : {2, 1, 2, 1, 2})
        list.InsertInSortedList(new Item(i, list.Count()));
    EXPECT_EQ(Tags(list), (std::vector<int>{1, 3, 0, 2, 4}));

    ItemList unsorted(autoDeleteOn);
    Fill(unsorted, {2, 1, 2, 1, 2});
    EXPECT_FALSE(unsorted.IsSortedFlagSet());
    unsorted.Sort();
    EXPECT_TRUE(unsorted.IsSortedFlagSet());
    EXPECT_EQ(Tags(unsorted), (std::vector<int>{1, 3, 0, 2, 4}));
    EXPECT_TRUE(LinksAreConsistent(unsorted));

    unsorted.SetCompareMode(1);
    unsorted.Sort();
    EXPECT_EQ(Keys(unsorted), (std::vector<int>{2, 2, 2, 1, 1}));
    EXPECT_EQ(Tags(unsorted), (std::vector<int>{0, 2, 4, 1, 3}));
    EXPECT_TRUE(unsorted.IsSorted());
    unsorted.SetCompareMode(0);
    EXPECT_TRUE(unsorted.IsSortedBackwards());
}

TEST(DoubleList, SortMatchesAStableSortOnManyKeys)
{
    std::vector<std::pair<int, int>> expected;
    ItemList list(autoDeleteOn);
    unsigned seed = 12345;
    for (int i = 0; i < 3001; ++i) {
        seed = seed * 1103515245u + 12345u;
        int const key = static_cast<int>((seed >> 16) % 50);
        list.Append(new Item(key, i));
        expected.emplace_back(key, i);
    }
    std::stable_sort(expected.begin(), expected.end(), [](auto& a, auto& b) { return a.first < b.first; });
    int const notedTag = 1234;
    int const newIndex = list.Sort(notedTag);
    std::vector<int> tags = Tags(list);
    ASSERT_EQ(tags.size(), expected.size());
    for (size_t i = 0; i < tags.size(); ++i)
        ASSERT_EQ(tags[i], expected[i].second) << "at " << i;
    EXPECT_EQ(tags[static_cast<size_t>(newIndex)], notedTag);
    EXPECT_TRUE(LinksAreConsistent(list));
}

TEST(DoubleList, SortReturnsTheNewIndexOfTheNotedElement)
{
    ItemList list(autoDeleteOn);
    Fill(list, {5, 3, 9, 1, 7});
    EXPECT_EQ(list.Sort(2), 4);
    EXPECT_EQ(list.Sort(-1), -1);
    EXPECT_EQ(list.Sort(10), 10);

    ItemList one(autoDeleteOn);
    Fill(one, {4});
    EXPECT_EQ(one.Sort(3), 3);
    EXPECT_TRUE(one.IsSortedFlagSet());
}

TEST(DoubleList, AbsorbAndSortMergesOnlyWhenBothWereSorted)
{
    ItemList mine(autoDeleteOn), theirs(autoDeleteOn);
    Fill(mine, {3, 1, 2});
    for (int key : {4, 2, 3})
        theirs.Append(new Item(key, 10 + key));
    mine.Sort();
    theirs.Sort();
    mine.AbsorbAndSort(theirs);
    EXPECT_TRUE(theirs.IsEmpty());
    EXPECT_EQ(Keys(mine), (std::vector<int>{1, 2, 2, 3, 3, 4}));
    EXPECT_EQ(Tags(mine), (std::vector<int>{1, 2, 12, 0, 13, 14})); // this list first at equal keys
    EXPECT_TRUE(LinksAreConsistent(mine));
    EXPECT_EQ(mine.Count(), 6);

    // Without the flag on the other list each element goes in after its equals.
    ItemList unflagged(autoDeleteOn);
    for (int key : {3, 0, 2})
        unflagged.Append(new Item(key, 20 + key));
    mine.AbsorbAndSort(unflagged);
    EXPECT_EQ(Tags(mine), (std::vector<int>{20, 1, 2, 12, 22, 0, 13, 23, 14}));
    EXPECT_TRUE(unflagged.IsEmpty());
}

TEST(DoubleList, DeleteDuplicatesKeepsTheLastOfEachSet)
{
    int deaths = 0;
    ItemList list; // not owning: duplicates die anyway
    Fill(list, {1, 2, 1, 3, 2, 1}, &deaths);
    list.DeleteDuplicates();
    EXPECT_EQ(Keys(list), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(Tags(list), (std::vector<int>{3, 4, 5}));
    EXPECT_EQ(deaths, 3);
    list.DeleteAll();
}

TEST(DoubleList, ReorderingKeepsTheLinksConsistent)
{
    ItemList list(autoDeleteOn);
    Fill(list, {0, 1, 2, 3, 4});
    auto at = [&](int i) { return list[i]; };

    list.Swap(at(1), at(2));
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 2, 1, 3, 4}));
    list.Swap(at(2), at(1));
    list.Swap(at(0), at(4));
    EXPECT_EQ(Keys(list), (std::vector<int>{4, 1, 2, 3, 0}));
    list.Swap(at(3), at(3));
    EXPECT_TRUE(LinksAreConsistent(list));

    list.Reverse();
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 3, 2, 1, 4}));
    EXPECT_TRUE(LinksAreConsistent(list));

    // The moved element takes where's position from either side.
    list.MoveAt(at(1), at(3));
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 2, 1, 3, 4}));
    list.MoveAt(at(4), at(1));
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 4, 2, 1, 3}));
    list.MoveToFront(at(4));
    list.MoveToEnd(at(1));
    EXPECT_EQ(Keys(list), (std::vector<int>{3, 4, 2, 1, 0}));
    EXPECT_TRUE(LinksAreConsistent(list));
}

TEST(DoubleList, ReplaceDeletesOrHandsBackTheOldElement)
{
    int deaths = 0;
    ItemList list(autoDeleteOn);
    Fill(list, {1, 2, 3}, &deaths);
    Item* two = list[1];
    auto* twenty = new Item(20, 0, &deaths);
    EXPECT_EQ(list.Replace(two, twenty, false), twenty);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(list.Replace(twenty, twenty, true), twenty);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(list.Replace(list.GetLast(), two, true), two);
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(Keys(list), (std::vector<int>{1, 20, 2}));
    EXPECT_TRUE(LinksAreConsistent(list));
}

TEST(DoubleList, SplitAbsorbAndExchangeMoveElementsBetweenLists)
{
    ItemList a(autoDeleteOn), b(autoDeleteOn);
    Fill(a, {0, 1, 2, 3, 4});
    a.Split(b, a[2]);
    EXPECT_EQ(Keys(a), (std::vector<int>{0, 1}));
    EXPECT_EQ(Keys(b), (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(a.Count(), 2);
    EXPECT_EQ(b.Count(), 3);
    EXPECT_TRUE(LinksAreConsistent(a) && LinksAreConsistent(b));

    ItemList empty;
    a.Absorb(empty, a.GetFirst());
    EXPECT_EQ(Keys(a), (std::vector<int>{0, 1}));
    a.Absorb(b, a.GetLast());
    EXPECT_EQ(Keys(a), (std::vector<int>{0, 2, 3, 4, 1}));
    EXPECT_TRUE(b.IsEmpty());
    EXPECT_EQ(b.GetFirst(), nullptr);

    Fill(b, {10, 20});
    ItemList::ExchangeElements(a, a[4], b, b[0]);
    EXPECT_EQ(Keys(a), (std::vector<int>{0, 2, 3, 4, 10}));
    EXPECT_EQ(Keys(b), (std::vector<int>{1, 20}));
    EXPECT_TRUE(LinksAreConsistent(a) && LinksAreConsistent(b));

    a.SwapWith(b);
    EXPECT_EQ(Keys(a), (std::vector<int>{1, 20}));
    EXPECT_EQ(b.Count(), 5);
}

TEST(DoubleList, CopiesCloneWithTheContextAndInsertInPlace)
{
    int deaths = 0;
    ItemList source(autoDeleteOn);
    Fill(source, {1, 2}, &deaths);
    source.SetUserField(0x155);
    source.MarkAsSorted(true);
    int context = 42;
    {
        ItemList copy(source, &context);
        EXPECT_EQ(Keys(copy), (std::vector<int>{1, 2}));
        EXPECT_EQ(Tags(copy), (std::vector<int>{42, 42}));
        EXPECT_TRUE(copy.ShouldDeleteElements());
        EXPECT_TRUE(copy.IsMarkedAsSorted());
        EXPECT_EQ(copy.UserField(), 0x155u);

        copy.Insert(source, copy.GetLast(), &context);
        EXPECT_EQ(Keys(copy), (std::vector<int>{1, 1, 2, 2}));
        copy += copy; // bounded by the count at the start
        EXPECT_EQ(Keys(copy), (std::vector<int>{1, 1, 2, 2, 1, 1, 2, 2}));
    }
    EXPECT_EQ(deaths, 8);

    ItemList target;
    target = source;
    EXPECT_TRUE(target.ShouldDeleteElements()); // the bit comes with the assignment
    EXPECT_EQ(Tags(target), (std::vector<int>{0, 1}));
}

TEST(DoubleList, FindsScanTheWholeListAndPreferTheFirstAtTies)
{
    ItemList list(autoDeleteOn);
    Fill(list, {4, 2, 7, 2, 9});
    Item target(3);
    EXPECT_EQ(list.FindClosestSmaller(target)->tag, 1);
    EXPECT_EQ(list.FindClosestSmaller(Item(7))->tag, 0);
    EXPECT_EQ(list.FindClosestSmaller(Item(2)), nullptr);
    EXPECT_EQ(list.FindEqualOrSmaller(Item(2))->tag, 1);
    EXPECT_EQ(list.FindEqualOrSmaller(Item(8))->tag, 2);
    EXPECT_EQ(list.FindClosestGreater(Item(2))->tag, 0);
    EXPECT_EQ(list.FindClosestGreater(Item(9)), nullptr);
    EXPECT_EQ(list.FindEqualOrGreater(Item(8))->tag, 4);
    EXPECT_EQ(list.FindSmallest()->tag, 1);
    EXPECT_EQ(list.FindGreatest()->tag, 4);
    EXPECT_EQ(list.FindEqual(Item(2))->tag, 1);
    EXPECT_EQ(list.FindIndexOfEqual(Item(8)), -1);

    auto isTwo = [](Item* e, void*) { return e->key == 2; };
    EXPECT_EQ(list.FindFirstThat(isTwo, nullptr)->tag, 1);
    EXPECT_EQ(list.FindLastThat(isTwo, nullptr)->tag, 3);
    Item* detached = list.FindEqual(Item(2));
    EXPECT_TRUE(list.DetachEqual(Item(2)));
    EXPECT_FALSE(list.HasElement(detached));
    detached->DeleteSelf();
    EXPECT_TRUE(list.DeleteEqual(Item(2)));
    EXPECT_FALSE(list.DeleteEqual(Item(2)));
    EXPECT_EQ(Keys(list), (std::vector<int>{4, 7, 9}));

    ItemList none;
    EXPECT_EQ(none.FindSmallest(), nullptr);
    EXPECT_TRUE(none.IsSorted());
}

TEST(DoubleList, IndexingClampsBelowAndValidatesOnDemand)
{
    ItemList list(autoDeleteOn);
    Fill(list, {10, 11, 12});
    EXPECT_EQ(list[-5]->key, 10);
    EXPECT_EQ(list[2]->key, 12);
    EXPECT_EQ(list[3], nullptr);
    EXPECT_EQ(list.Element(-1), nullptr);
    EXPECT_FALSE(list.IsValidIndex(-1));

    int index = 7;
    EXPECT_TRUE(list.ValidateIndex(index));
    EXPECT_EQ(index, 0);
    index = 2;
    EXPECT_TRUE(list.ValidateIndex(index));
    EXPECT_EQ(index, 2);
    ItemList empty;
    index = 7;
    EXPECT_FALSE(empty.ValidateIndex(index));
    EXPECT_EQ(index, -1);
}

TEST(DoubleList, ForEachSurvivesTheDeletionOfTheCurrentElement)
{
    int deaths = 0;
    ItemList list(autoDeleteOn);
    Fill(list, {1, 2, 3, 4, 5, 6}, &deaths);
    list.ForEach([](Item* e, void* data) {
        if (e->key % 2 == 0)
            static_cast<ItemList*>(data)->Delete(e);
    }, &list);
    EXPECT_EQ(Keys(list), (std::vector<int>{1, 3, 5}));
    EXPECT_EQ(deaths, 3);

    for (Item* e : list)
        if (e->key == 3)
            list.Delete(e);
    EXPECT_EQ(Keys(list), (std::vector<int>{1, 5}));
    EXPECT_TRUE(LinksAreConsistent(list));
}

TEST(DoubleList, ShuffleIsASeededPermutation)
{
    std::vector<int> keys(40);
    for (int i = 0; i < 40; ++i)
        keys[static_cast<size_t>(i)] = i;
    ItemList a(autoDeleteOn), b(autoDeleteOn), one(autoDeleteOn);
    Fill(a, keys);
    Fill(b, keys);
    Fill(one, {5});
    a.Shuffle(7);
    b.Shuffle(7);
    one.Shuffle(7);
    EXPECT_EQ(Keys(a), Keys(b));
    EXPECT_NE(Keys(a), keys);
    std::vector<int> sorted = Keys(a);
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, keys);
    EXPECT_TRUE(LinksAreConsistent(a));
    EXPECT_EQ(Keys(one), (std::vector<int>{5}));
}

TEST(DoubleList, CollectionFlagsCopyAndSwapByTheirRules)
{
    ItemList a(autoDeleteOn);
    a.SetUserField(0xFFFFFFu); // 14 bits kept
    EXPECT_EQ(a.UserField(), 0x3FFFu);
    EXPECT_TRUE(a.ShouldDeleteElements());
    a.MarkAsSorted(true);
    a.SetSortedFlag(true);

    ItemList b;
    b.SetUserField(3);
    a.SwapWith(b); // bits 0 to 2 change places; the user field stays
    EXPECT_FALSE(a.ShouldDeleteElements());
    EXPECT_FALSE(a.IsMarkedAsSorted());
    EXPECT_FALSE(a.IsSortedFlagSet());
    EXPECT_EQ(a.UserField(), 0x3FFFu);
    EXPECT_TRUE(b.ShouldDeleteElements() && b.IsMarkedAsSorted() && b.IsSortedFlagSet());
    EXPECT_EQ(b.UserField(), 3u);
}

TEST(DoubleList, OnlyFinalClassesWithTheDefaultsSkipThePersistQuestions)
{
    EXPECT_TRUE(TFlexList<FinalItem>().HasPlainElements());
    EXPECT_FALSE(TFlexList<Item>().HasPlainElements());
    EXPECT_FALSE(TFlexList<Picky>().HasPlainElements());

    TFlexList<Picky> picky(autoDeleteOn);
    for (int key : {1, 2, 3, 4, 6})
        picky.Append(new Picky(key));
    EXPECT_EQ(picky.CountWritableElements(0), 3);
    EXPECT_EQ(picky.CountWritableElements(1), 2);

    TFlexList<FinalItem> plain(autoDeleteOn);
    plain.Append(new FinalItem(1));
    EXPECT_EQ(plain.CountWritableElements(0), 1);
}

namespace {

struct Subscription
{
    explicit Subscription(int id, std::vector<int>* seen) : id(id), seen(seen) {}
    Subscription* NextItem() const { return next; }
    void SetNextItem(Subscription* item) { next = item; }
    int id;
    std::vector<int>* seen;
    Subscription* next = nullptr;
};

} // namespace

TEST(SingleList, PushesAtTheFrontAndLetsTheCallbackDelete)
{
    std::vector<int> seen;
    TSingleList<Subscription> list;
    EXPECT_TRUE(list.IsEmpty());
    for (int i = 0; i < 3; ++i)
        list.Add(new Subscription(i, &seen));
    list.ForEach([](Subscription& s, void*) {
        s.seen->push_back(s.id);
        delete &s;
    }, nullptr);
    EXPECT_EQ(seen, (std::vector<int>{2, 1, 0}));
}
