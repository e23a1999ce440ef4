#include "ContainerTestElements.h"

#include "core/TFlexList.h"
#include "core/TSingleList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace {

using ItemList = TFlexList<Item>;
using V = std::vector<int>;

void Fill(ItemList& list, V const& keys, int* deaths = nullptr)
{
    int tag = 0;
    for (int key : keys)
        list.Append(new Item(key, tag++, deaths));
}

// A list of the given keys, tagged 0, 1, 2 ... in order.
struct Filled : ItemList
{
    explicit Filled(V const& keys, int* deaths = nullptr, EAutoDelete autoDelete = autoDeleteOn) : ItemList(autoDelete)
    {
        Fill(*this, keys, deaths);
    }
};

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
    EXPECT_TRUE(HasKeys(list, {-1, 0, 1, 2, 3, 4}));
    EXPECT_EQ(list.LastIndex(), 5);
}

TEST(DoubleList, OwnershipDecidesOnlyClearAndTheEnd)
{
    int deaths = 0;
    {
        Filled owning({1, 2, 3, 4}, &deaths);
        owning.Detach(owning.GetFirst())->DeleteSelf();
        owning.Delete(5); // invalid index: ignored
        owning.Delete(0);
        EXPECT_EQ(deaths, 2);
    }
    EXPECT_EQ(deaths, 4);

    deaths = 0;
    Filled borrowing({1, 2, 3}, &deaths, autoDeleteOff);
    Item* first = borrowing.GetFirst();
    borrowing.Delete(borrowing.GetLast()); // Delete deletes whatever the bit says
    borrowing.Clear();
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(borrowing.IsEmpty());
    // The forgotten elements still link to each other.
    ASSERT_NE(first->GetNext(), nullptr);
    EXPECT_EQ(first->GetNext()->GetPrev(), first);
    DeleteSelf(first->GetNext());
    DeleteSelf(first);

    Filled owningClear({1, 2}, &deaths);
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

TEST(DoubleList, SortMatchesAStableSortOnManyKeysBothWays)
{
    std::vector<std::pair<int, int>> expected;
    Filled list({});
    unsigned seed = 12345;
    for (int i = 0; i < 3001; ++i) {
        seed = seed * 1103515245u + 12345u;
        int const key = static_cast<int>((seed >> 16) % 50);
        list.Append(new Item(key, i));
        expected.emplace_back(key, i);
    }
    EXPECT_FALSE(list.IsSortedFlagSet());
    // The second pass sorts backwards what the first left in order.
    for (int mode : {0, 1}) {
        SCOPED_TRACE(mode);
        int const notedTag = expected[1234].second;
        std::stable_sort(expected.begin(), expected.end(),
                         [mode](auto& a, auto& b) { return mode ? a.first > b.first : a.first < b.first; });
        list.SetCompareMode(mode);
        int const newIndex = list.Sort(1234);
        V const tags = Tags(list);
        ASSERT_EQ(tags.size(), expected.size());
        for (size_t i = 0; i < tags.size(); ++i)
            ASSERT_EQ(tags[i], expected[i].second) << "at " << i;
        EXPECT_EQ(tags[static_cast<size_t>(newIndex)], notedTag);
        EXPECT_TRUE(LinksAreConsistent(list));
        EXPECT_TRUE(list.IsSortedFlagSet());
        EXPECT_TRUE(list.IsSorted());
    }
    list.SetCompareMode(0);
    EXPECT_TRUE(list.IsSortedBackwards());
    EXPECT_FALSE(list.IsSorted());
}

TEST(DoubleList, SortedInsertionGoesBehindItsEqualsAndSortPassesOddIndexesThrough)
{
    ItemList list(autoDeleteOn);
    for (int i : {2, 1, 2, 1, 2})
        list.InsertInSortedList(new Item(i, list.Count()));
    EXPECT_EQ(Tags(list), (V{1, 3, 0, 2, 4}));

    EXPECT_EQ(list.Sort(-1), -1);
    EXPECT_EQ(list.Sort(10), 10);
    Filled one({4});
    EXPECT_EQ(one.Sort(3), 3);
    EXPECT_TRUE(one.IsSortedFlagSet());
}

TEST(DoubleList, AbsorbAndSortMergesOnlyWhenBothWereSorted)
{
    Filled mine({3, 1, 2});
    ItemList theirs(autoDeleteOn);
    for (int key : {4, 2, 3})
        theirs.Append(new Item(key, 10 + key));
    mine.Sort();
    theirs.Sort();
    mine.AbsorbAndSort(theirs);
    EXPECT_TRUE(theirs.IsEmpty());
    EXPECT_TRUE(HasKeys(mine, {1, 2, 2, 3, 3, 4}));
    EXPECT_EQ(Tags(mine), (V{1, 2, 12, 0, 13, 14})); // this list first at equal keys

    // Without the flag on the other list each element goes in after its equals.
    ItemList unflagged(autoDeleteOn);
    for (int key : {3, 0, 2})
        unflagged.Append(new Item(key, 20 + key));
    mine.AbsorbAndSort(unflagged);
    EXPECT_TRUE(HasKeys(mine, {0, 1, 2, 2, 2, 3, 3, 3, 4}));
    EXPECT_EQ(Tags(mine), (V{20, 1, 2, 12, 22, 0, 13, 23, 14}));
    EXPECT_TRUE(unflagged.IsEmpty());
}

TEST(DoubleList, DeleteDuplicatesKeepsTheLastOfEachSet)
{
    int deaths = 0;
    Filled list({1, 2, 1, 3, 2, 1}, &deaths, autoDeleteOff); // not owning: duplicates die anyway
    list.DeleteDuplicates();
    EXPECT_TRUE(HasKeys(list, {3, 2, 1}));
    EXPECT_EQ(Tags(list), (V{3, 4, 5}));
    EXPECT_EQ(deaths, 3);
    list.DeleteAll();
}

TEST(DoubleList, ReorderingKeepsTheLinksConsistent)
{
    Filled list({0, 1, 2, 3, 4});
    auto at = [&](int i) { return list[i]; };
    list.Swap(at(1), at(2));
    EXPECT_TRUE(HasKeys(list, {0, 2, 1, 3, 4}));
    list.Swap(at(2), at(1));
    list.Swap(at(0), at(4));
    EXPECT_TRUE(HasKeys(list, {4, 1, 2, 3, 0}));
    list.Swap(at(3), at(3));

    list.Reverse();
    EXPECT_TRUE(HasKeys(list, {0, 3, 2, 1, 4}));

    // The moved element takes where's position from either side.
    list.MoveAt(at(1), at(3));
    EXPECT_TRUE(HasKeys(list, {0, 2, 1, 3, 4}));
    list.MoveAt(at(4), at(1));
    EXPECT_TRUE(HasKeys(list, {0, 4, 2, 1, 3}));
    list.MoveToFront(at(4));
    list.MoveToEnd(at(1));
    EXPECT_TRUE(HasKeys(list, {3, 4, 2, 1, 0}));
}

TEST(DoubleList, ReplaceDeletesOrHandsBackTheOldElement)
{
    int deaths = 0;
    Filled list({1, 2, 3}, &deaths);
    Item* two = list[1];
    auto* twenty = new Item(20, 0, &deaths);
    EXPECT_EQ(list.Replace(two, twenty, false), twenty);
    EXPECT_EQ(list.Replace(twenty, twenty, true), twenty);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(list.Replace(list.GetLast(), two, true), two);
    EXPECT_EQ(deaths, 1);
    EXPECT_TRUE(HasKeys(list, {1, 20, 2}));
}

TEST(DoubleList, SplitAbsorbAndExchangeMoveElementsBetweenLists)
{
    Filled a({0, 1, 2, 3, 4});
    ItemList b(autoDeleteOn);
    auto expect = [&](V const& keysA, V const& keysB) {
        EXPECT_TRUE(HasKeys(a, keysA));
        EXPECT_TRUE(HasKeys(b, keysB));
    };
    a.Split(b, a[2]);
    expect({0, 1}, {2, 3, 4});
    ItemList empty;
    a.Absorb(empty, a.GetFirst());
    expect({0, 1}, {2, 3, 4});
    a.Absorb(b, a.GetLast());
    expect({0, 2, 3, 4, 1}, {});
    EXPECT_EQ(b.GetFirst(), nullptr);

    Fill(b, {10, 20});
    ItemList::ExchangeElements(a, a[4], b, b[0]);
    expect({0, 2, 3, 4, 10}, {1, 20});
    a.SwapWith(b);
    expect({1, 20}, {0, 2, 3, 4, 10});
}

TEST(DoubleList, CopiesCloneWithTheContextAndInsertInPlace)
{
    int deaths = 0;
    Filled source({1, 2}, &deaths);
    source.SetUserField(0x155);
    source.MarkAsSorted(true);
    int context = 42;
    {
        ItemList copy(source, &context);
        EXPECT_TRUE(HasKeys(copy, {1, 2}));
        EXPECT_EQ(Tags(copy), (V{42, 42}));
        EXPECT_TRUE(copy.ShouldDeleteElements());
        EXPECT_TRUE(copy.IsMarkedAsSorted());
        EXPECT_EQ(copy.UserField(), 0x155u);

        copy.Insert(source, copy.GetLast(), &context);
        EXPECT_TRUE(HasKeys(copy, {1, 1, 2, 2}));
        copy += copy; // bounded by the count at the start
        EXPECT_TRUE(HasKeys(copy, {1, 1, 2, 2, 1, 1, 2, 2}));
    }
    EXPECT_EQ(deaths, 8);

    ItemList target;
    target = source;
    EXPECT_TRUE(target.ShouldDeleteElements()); // the bit comes with the assignment
    EXPECT_EQ(Tags(target), (V{0, 1}));
}

TEST(DoubleList, FindsScanTheWholeListAndPreferTheFirstAtTies)
{
    Filled list({4, 2, 7, 2, 9});
    EXPECT_EQ(list.FindClosestSmaller(Item(3))->tag, 1);
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
    EXPECT_TRUE(HasKeys(list, {4, 7, 9}));

    ItemList none;
    EXPECT_EQ(none.FindSmallest(), nullptr);
    EXPECT_TRUE(none.IsSorted());
}

TEST(DoubleList, IndexingClampsBelowAndValidatesOnDemand)
{
    Filled list({10, 11, 12});
    EXPECT_EQ(list[-5]->key, 10);
    EXPECT_EQ(list[2]->key, 12);
    EXPECT_EQ(list[3], nullptr);
    EXPECT_EQ(list.Element(-1), nullptr);
    EXPECT_FALSE(list.IsValidIndex(-1));

    ItemList empty;
    struct { ItemList const* list; int in; bool valid; int out; } const cases[] = {{&list, 7, true, 0}, {&list, 2, true, 2}, {&list, -3, true, 0}, {&empty, 7, false, -1}};
    for (auto const& c : cases) {
        int index = c.in;
        EXPECT_EQ(c.list->ValidateIndex(index), c.valid) << c.in;
        EXPECT_EQ(index, c.out) << c.in;
    }
}

TEST(DoubleList, ForEachSurvivesTheDeletionOfTheCurrentElement)
{
    int deaths = 0;
    Filled list({1, 2, 3, 4, 5, 6}, &deaths);
    list.ForEach([](Item* e, void* data) {
        if (e->key % 2 == 0)
            static_cast<ItemList*>(data)->Delete(e);
    }, &list);
    EXPECT_TRUE(HasKeys(list, {1, 3, 5}));
    EXPECT_EQ(deaths, 3);

    for (Item* e : list)
        if (e->key == 3)
            list.Delete(e);
    EXPECT_TRUE(HasKeys(list, {1, 5}));
}

TEST(DoubleList, ShuffleIsASeededPermutation)
{
    V keys(40);
    std::iota(keys.begin(), keys.end(), 0);
    Filled a(keys), b(keys), one({5});
    a.Shuffle(7);
    b.Shuffle(7);
    one.Shuffle(7);
    EXPECT_TRUE(HasKeys(a, Keys(b)));
    EXPECT_NE(Keys(a), keys);
    V sorted = Keys(a);
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, keys);
    EXPECT_TRUE(HasKeys(one, {5}));
}

TEST(DoubleList, CollectionFlagsCopyAndSwapByTheirRules)
{
    ItemList a(autoDeleteOn);
    a.SetUserField(0xFFFFFFu); // 14 bits kept
    EXPECT_EQ(a.UserField(), 0x3FFFu);
    a.MarkAsSorted(true);
    a.SetSortedFlag(true);

    ItemList b;
    b.SetUserField(3);
    a.SwapWith(b); // bits 0 to 2 change places; the user field stays
    EXPECT_FALSE(a.ShouldDeleteElements() || a.IsMarkedAsSorted() || a.IsSortedFlagSet());
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
        list.Add(new Subscription{i, &seen});
    list.ForEach([](Subscription& s, void*) {
        s.seen->push_back(s.id);
        delete &s;
    }, nullptr);
    EXPECT_EQ(seen, (V{2, 1, 0}));
}
