#include "ContainerTestElements.h"

#include "core/TVector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

namespace {

using ItemVector = TVector<Item>;
using V = std::vector<int>;

void Fill(ItemVector& vector, V const& keys, int* deaths = nullptr)
{
    int tag = 0;
    for (int key : keys)
        vector.Add(new Item(key, tag++, deaths));
}

// An owning vector of the given keys, tagged 0, 1, 2 ... in order.
struct Filled : ItemVector
{
    explicit Filled(V const& keys, int* deaths = nullptr) : ItemVector(20, 20, autoDeleteOn) { Fill(*this, keys, deaths); }
};

V VectorKeys(ItemVector const& vector, bool tags = false)
{
    V keys;
    for (Item* e : vector)
        keys.push_back(tags ? e->tag : e->key);
    return keys;
}

V VectorTags(ItemVector const& vector)
{
    return VectorKeys(vector, true);
}

using BinaryFind = Item* (ItemVector::*)(Item const&, int*) const;

// Index found by a binary find, -1 on a miss, checking that the returned
// element agrees with the index.
int IndexOf(ItemVector const& vector, int key, BinaryFind find)
{
    int index = -2;
    Item* found = (vector.*find)(Item(key), &index);
    EXPECT_EQ(found, index >= 0 ? vector[index] : nullptr);
    return index;
}

} // namespace

TEST(Vector, BinaryFindsFollowTheirTieBreaksOnRunsOfEqualKeys)
{
    Filled vector({10, 20, 20, 20, 20, 20, 30}), ones({1, 1, 1, 1, 2});
    ItemVector empty;
    auto const equal = &ItemVector::BinaryFindEqual;
    auto const equalOrGreater = &ItemVector::BinaryFindEqualOrGreater;
    auto const closestGreater = &ItemVector::BinaryFindClosestGreater;
    auto const closestSmaller = &ItemVector::BinaryFindClosestSmaller;
    auto const equalOrSmaller = &ItemVector::BinaryFindEqualOrSmaller;
    // Equal finds stop at the first midpoint that is equal, not at the first equal.
    struct { ItemVector const* vector; BinaryFind find; int key; int index; } const cases[] = {
        {&vector, equal, 20, 3}, {&vector, equal, 25, -1}, {&ones, equal, 1, 2},
        {&vector, equalOrGreater, 20, 3}, {&vector, equalOrGreater, 15, 1}, {&vector, equalOrGreater, 35, -1},
        {&vector, closestGreater, 20, 6}, {&vector, closestGreater, 5, 0}, {&vector, closestGreater, 30, -1},
        {&vector, closestSmaller, 20, 0}, {&vector, closestSmaller, 25, 5}, {&vector, closestSmaller, 10, -1},
        {&vector, equalOrSmaller, 20, 3}, {&vector, equalOrSmaller, 25, 5}, {&vector, equalOrSmaller, 5, -1},
        {&empty, equalOrSmaller, 1, -1},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(IndexOf(*cases[i].vector, cases[i].key, cases[i].find), cases[i].index) << "case " << i;
}

TEST(Vector, SortedInsertionGoesBehindItsEquals)
{
    Filled vector({1, 2, 2, 3});
    EXPECT_EQ(IndexOf(vector, 2, &ItemVector::BinaryFindClosestGreater), 3);
    auto* third = new Item(2, 9);
    EXPECT_EQ(vector.SimulInsertInSortedArray(third), 3);
    EXPECT_EQ(vector.Count(), 4);
    EXPECT_EQ(vector.InsertInSortedArray(third), 3);
    EXPECT_EQ(vector[3], third);
    EXPECT_EQ(vector.InsertInSortedArray(new Item(9)), 5);
    EXPECT_EQ(vector.InsertInSortedArray(new Item(0)), 0);
    EXPECT_EQ(VectorKeys(vector), (V{0, 1, 2, 2, 2, 3, 9}));
}

TEST(Vector, AddUniqueAlwaysInsertsByOrder)
{
    int deaths = 0;
    ItemVector vector(20, 20, autoDeleteOn);
    Fill(vector, {5, 1}, &deaths); // not sorted: the insertion still looks for its place
    bool existed = true;
    auto* three = new Item(3, 7, &deaths);
    EXPECT_EQ(vector.AddUnique(three, &existed), three);
    EXPECT_FALSE(existed);
    EXPECT_EQ(VectorKeys(vector), (V{3, 5, 1}));

    EXPECT_EQ(vector.AddUnique(new Item(1, 8, &deaths), &existed), vector[2]);
    EXPECT_TRUE(existed);
    EXPECT_EQ(deaths, 1);

    Filled sorted({1, 3, 5});
    sorted.MarkAsSorted(true);
    auto* four = new Item(4);
    EXPECT_EQ(sorted.AddUnique(four), four);
    EXPECT_EQ(sorted[2], four);
    EXPECT_EQ(sorted.AddUnique(new Item(3), &existed)->tag, 1);
    EXPECT_TRUE(existed);
    EXPECT_EQ(VectorKeys(sorted), (V{1, 3, 4, 5}));
}

TEST(Vector, OwnershipRulesOfClearCutAndReplace)
{
    int deaths = 0;
    {
        Filled owning({0, 1, 2, 3, 4, 5}, &deaths);
        Item* last = owning.Pop();
        EXPECT_EQ(last->key, 5);
        last->DeleteSelf();
        Item* cut = owning.CutDetach(0);
        EXPECT_EQ(deaths, 1);
        cut->DeleteSelf();
        owning.CutDelete(0);
        EXPECT_EQ(deaths, 3);
        owning.CutRange(0, 2, true);
        EXPECT_EQ(deaths, 5);
        EXPECT_EQ(VectorKeys(owning), (V{4}));

        auto* fresh = new Item(7, 0, &deaths);
        Item* old = owning.Replace(fresh, 0, false);
        EXPECT_EQ(old->key, 4);
        EXPECT_EQ(deaths, 5);
        owning.Add(old);
        EXPECT_EQ(owning.Replace(new Item(8, 0, &deaths), 0, true), nullptr);
        EXPECT_EQ(deaths, 6);
    }
    EXPECT_EQ(deaths, 8);

    deaths = 0;
    ItemVector borrowing;
    Fill(borrowing, {1, 2, 3}, &deaths);
    std::vector<Item*> kept(borrowing.begin(), borrowing.end());
    borrowing.Clear();
    EXPECT_EQ(deaths, 0);
    EXPECT_FALSE(borrowing.HasAllocatedMemory());
    for (Item* e : kept)
        borrowing.Add(e);
    borrowing.DeleteAll(false); // deletes, whatever the bit says
    EXPECT_EQ(deaths, 3);
    EXPECT_TRUE(borrowing.IsEmpty());
    EXPECT_TRUE(borrowing.HasAllocatedMemory());
}

TEST(Vector, QuicksortOrdersAndLeavesEqualKeysInItsOwnOrder)
{
    Filled three({2, 1, 2});
    three.Sort();
    EXPECT_EQ(VectorTags(three), (V{1, 2, 0}));
    EXPECT_FALSE(three.IsSortedFlagSet());

    Filled equal({4, 4, 4, 4});
    equal.Sort();
    EXPECT_EQ(VectorTags(equal), (V{2, 3, 0, 1}));

    ItemVector many(100, 100, autoDeleteOn);
    std::vector<int> keys;
    unsigned seed = 99;
    for (int i = 0; i < 5000; ++i) {
        seed = seed * 1664525u + 1013904223u;
        keys.push_back(static_cast<int>((seed >> 8) % 700));
    }
    Fill(many, keys);
    many.Sort();
    std::sort(keys.begin(), keys.end());
    EXPECT_EQ(VectorKeys(many), keys);
    std::vector<int> tags = VectorTags(many);
    std::sort(tags.begin(), tags.end());
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(tags[static_cast<size_t>(i)], i);
    EXPECT_TRUE(many.IsSorted());

    many.SetCompareMode(1);
    many.Sort();
    EXPECT_TRUE(many.IsSorted());
    many.SetCompareMode(0);
    EXPECT_TRUE(many.IsSortedBackwards());
    EXPECT_FALSE(many.IsSorted());
}

TEST(Vector, MoveAtEnsureNumElementsAndInsertOfClones)
{
    Filled vector({0, 1, 2, 3, 4});
    vector.MoveAt(1, 3);
    EXPECT_EQ(VectorKeys(vector), (V{0, 2, 3, 1, 4}));
    vector.MoveAt(4, 0);
    EXPECT_EQ(VectorKeys(vector), (V{4, 0, 2, 3, 1}));

    Filled two({7, 8});
    int context = 5;
    vector.Insert(two, 1, &context);
    EXPECT_EQ(VectorKeys(vector), (V{4, 7, 8, 0, 2, 3, 1}));
    EXPECT_EQ(vector[1]->tag, 5);
    EXPECT_NE(vector[1], two[0]);

    Filled self({1, 2, 3});
    self.Insert(self, 1);
    EXPECT_EQ(VectorKeys(self), (V{1, 1, 2, 3, 2, 3}));

    Item model(6);
    ItemVector grown(20, 20, autoDeleteOn);
    grown.EnsureNumElements(3, &model);
    EXPECT_EQ(VectorKeys(grown), (V{6, 6, 6}));
    EXPECT_EQ(grown.GetNumSlots(), 20);
    grown.EnsureNumElements(1, &model);
    EXPECT_EQ(grown.Count(), 3);

    static std::vector<int> calls;
    calls.clear();
    ItemVector made(20, 20, autoDeleteOn, [](long long context, int id, char const* idString) -> TObject* {
        calls = {static_cast<int>(context), id, idString ? 1 : 0};
        return new Item(-1);
    });
    made.EnsureNumElements(2);
    EXPECT_EQ(VectorKeys(made), (V{-1, -1}));
    EXPECT_EQ(calls, (V{0, 0, 0}));

    ItemVector nothingToMake;
    nothingToMake.EnsureNumElements(4);
    EXPECT_TRUE(nothingToMake.IsEmpty());
}

TEST(Vector, CopiesCloneAndAbsorbMovesTheElements)
{
    int deaths = 0;
    Filled source({3, 1, 2}, &deaths);
    source.SetCompareMode(1);
    {
        int context = 4;
        ItemVector copy(source, &context);
        EXPECT_EQ(VectorKeys(copy), (V{3, 1, 2}));
        EXPECT_EQ(copy.GetCompareMode(), 1);
        EXPECT_TRUE(copy.ShouldDeleteElements());
        ItemVector other;
        other = source;
        EXPECT_TRUE(other.ShouldDeleteElements());
        EXPECT_EQ(VectorTags(other), (V{0, 1, 2}));
    }
    EXPECT_EQ(deaths, 6);

    Filled target({5});
    target.AbsorbAndSort(source); // compare mode 0 here
    EXPECT_TRUE(source.IsEmpty());
    EXPECT_FALSE(source.HasAllocatedMemory());
    EXPECT_EQ(VectorKeys(target), (V{1, 2, 3, 5}));
    EXPECT_EQ(deaths, 6);
}

TEST(Vector, LinearFindsKeepTheEarlierAtTies)
{
    Filled vector({4, 2, 7, 2, 9, 9});
    int index = -2;
    EXPECT_EQ(vector.LinearFindSmallest(&index)->tag, 1);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(vector.LinearFindGreatest(&index)->tag, 4);
    EXPECT_EQ(vector.LinearFindEqual(Item(8), &index), nullptr);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(vector.LinearFindClosestSmaller(Item(3), &index)->tag, 1);
    EXPECT_EQ(vector.LinearFindClosestGreater(Item(7))->tag, 4);
    EXPECT_EQ(vector.FindLastThat([](Item* e, void*) { return e->key == 2; }, nullptr, &index)->tag, 3);

    ItemVector empty;
    EXPECT_EQ(empty.LinearFindSmallest(&index), nullptr);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(empty.LinearFindGreatest(&index), nullptr);
}

namespace {

struct Prefix
{
    virtual ~Prefix() = default; // polymorphic, so it comes first in Behind
    long long padding[3] = {};
};

// TObject does not stand at the start of this class.
class Behind : public Prefix, public Item
{
public:
    using Item::Item;
};

} // namespace

TEST(Vector, IterationConvertsEachPointerToTheElementClass)
{
    TVector<Behind> vector(20, 20, autoDeleteOn);
    for (int key : {1, 2, 3})
        vector.Add(new Behind(key));
    std::vector<int> keys;
    for (Behind* e : vector)
        keys.push_back(e->key);
    EXPECT_EQ(keys, (V{1, 2, 3}));
    EXPECT_EQ(*vector.begin(), vector[0]);
    EXPECT_NE(static_cast<void*>(vector[0]), static_cast<void*>(static_cast<TObject*>(vector[0])));
}

TEST(ValueVector, HoldsValuesAndRunsTheirLifetimes)
{
    TVector<int> numbers;
    for (int i : {5, 3, 8})
        numbers.Add(i);
    numbers.Insert(1, 0);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (V{1, 5, 3, 8}));
    numbers.Sort();
    EXPECT_EQ(numbers.IndexOf(8), 3);
    EXPECT_EQ(numbers.Pop(), 8);
    numbers.Cut(0);
    EXPECT_EQ(std::vector<int>(numbers.begin(), numbers.end()), (V{3, 5}));
    numbers.EnsureNumElements(4);
    EXPECT_EQ(numbers[3], 0);

    auto shared = std::make_shared<int>(1);
    {
        TVector<std::shared_ptr<int>> holders(2, 2);
        for (int i = 0; i < 5; ++i)
            holders.Add(shared); // grows twice, moving the values by their bytes
        holders.Add(holders[0]);
        EXPECT_EQ(shared.use_count(), 7);
        TVector<std::shared_ptr<int>> copy(holders);
        EXPECT_EQ(shared.use_count(), 13);
        holders.CutRange(0, 4);
        EXPECT_EQ(shared.use_count(), 9);
    }
    EXPECT_EQ(shared.use_count(), 1);
}
