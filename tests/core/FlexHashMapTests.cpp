#include "ContainerTestElements.h"
#include "LogCapture.h"

#include "core/TFlexHashMap.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <vector>

namespace {

using ItemMap = TFlexHashMap<HashItem>;

// Hashes to `key` until told to fail.
class Fragile : public HashItem
{
public:
    using HashItem::HashItem;
    unsigned int GetHashedValue() const override
    {
        if (fail)
            throw std::runtime_error("hash");
        return HashItem::GetHashedValue();
    }
    bool fail = false;
};

std::vector<int> MapKeys(TFlexHashMapImp const& map)
{
    return Keys<TDoubleList, HashItem>(map);
}

void Add(ItemMap& map, std::vector<int> const& keys, int* deaths = nullptr)
{
    for (int key : keys)
        map.Add(new HashItem(key, key, deaths));
}

// Every element in the bucket its hash names, and each bucket one run.
bool RunsAreContiguous(TFlexHashMapImp const& map)
{
    std::set<int> closed;
    int current = -1;
    for (TListElement const* e = map.GetFirst(); e; e = e->GetNext()) {
        auto const* item = static_cast<HashItem const*>(e);
        if (item->slot != static_cast<int>(item->GetHashedValue() % static_cast<unsigned>(map.GetNumSlots())))
            return false;
        if (item->slot != current) {
            if (!closed.insert(item->slot).second)
                return false;
            current = item->slot;
        }
    }
    return true;
}

} // namespace

TEST(FlexHashMap, TableSizesAreTheFirstListedValueAboveTheCount)
{
    ItemMap map(0, autoDeleteOn);
    EXPECT_FALSE(map.HasTable());
    EXPECT_EQ(map.GetNumSlots(), 0);
    EXPECT_EQ(map.FindEqual(HashItem(1)), nullptr);
    // Count before the addition, slots after it.
    for (auto [count, slots] : {std::pair{0, 3}, {1, 3}, {2, 3}, {3, 7}, {4, 7}}) {
        EXPECT_EQ(map.Count(), count);
        map.Add(new HashItem(count));
        EXPECT_EQ(map.GetNumSlots(), slots) << count;
    }
    EXPECT_EQ(ItemMap(31).GetNumSlots(), 61);
    EXPECT_EQ(ItemMap(30).GetNumSlots(), 31);
    for (auto [count, size] : {std::pair{-5, 3}, {1073741788, 1073741789}, {1073741789, 0}})
        EXPECT_EQ(TFlexHashMapImp::TableSizeFor(count), size) << count;

    map.DeleteAll();
    EXPECT_FALSE(map.HasTable());
    map.Add(new HashItem(9));
    EXPECT_EQ(map.GetNumSlots(), 3);
}

TEST(FlexHashMap, BucketsAreRunsOfTheListWithTheOldestInFront)
{
    ItemMap map(10, autoDeleteOn); // 13 slots
    Add(map, {1, 14, 2, 27, 15});
    EXPECT_EQ(MapKeys(map), (std::vector<int>{1, 27, 14, 2, 15}));
    EXPECT_TRUE(RunsAreContiguous(map));

    // The table entry moves on to the next element of the run.
    map.Delete(map.GetFirst());
    EXPECT_EQ(map.FindEqual(HashItem(14))->key, 14);
    map.Add(new HashItem(40));
    EXPECT_EQ(MapKeys(map), (std::vector<int>{27, 40, 14, 2, 15}));
    map.Delete(map.FindEqual(HashItem(27)));
    map.Delete(map.FindEqual(HashItem(40)));
    map.Delete(map.FindEqual(HashItem(14)));
    EXPECT_EQ(map.FindEqual(HashItem(1)), nullptr);
    map.Add(new HashItem(53)); // the emptied bucket starts a new run at the end
    EXPECT_EQ(MapKeys(map), (std::vector<int>{2, 15, 53}));
    EXPECT_TRUE(RunsAreContiguous(map));
}

TEST(FlexHashMap, GrowthReAddsInListOrder)
{
    ItemMap map(0, autoDeleteOn);
    Add(map, {0, 3, 6}); // one bucket of 3
    EXPECT_EQ(MapKeys(map), (std::vector<int>{0, 6, 3}));
    map.Add(new HashItem(7));
    EXPECT_EQ(map.GetNumSlots(), 7);
    EXPECT_EQ(MapKeys(map), (std::vector<int>{0, 7, 6, 3}));

    map.Remap(100, true);
    EXPECT_EQ(map.GetNumSlots(), 127);
    map.Remap(1, true); // grow only
    EXPECT_EQ(map.GetNumSlots(), 127);
    map.Remap(1, false);
    EXPECT_EQ(map.GetNumSlots(), 3);
    EXPECT_TRUE(RunsAreContiguous(map));
    EXPECT_EQ(map.Count(), 4);
}

TEST(FlexHashMap, EqualElementsCoexistAndTheOlderIsFound)
{
    int deaths = 0;
    ItemMap map(0, autoDeleteOn);
    auto* older = map.Add(new HashItem(5, 1, &deaths));
    map.Add(new HashItem(5, 2, &deaths));
    map.Add(new HashItem(6, 3, &deaths));
    map.Add(new HashItem(5, 4, &deaths));
    EXPECT_EQ(map.FindNumEqual(HashItem(5)), 3);
    EXPECT_EQ(map.FindEqual(HashItem(5)), older);

    std::vector<int> tags;
    EXPECT_EQ(map.ForEachEqual(HashItem(5), [](HashItem* e, void* data) {
        static_cast<std::vector<int>*>(data)->push_back(e->tag);
    }, &tags), 3);
    EXPECT_EQ(tags.size(), 3u);

    bool existed = false;
    EXPECT_EQ(map.AddUnique(new HashItem(6, 5, &deaths), &existed)->tag, 3);
    EXPECT_TRUE(existed);
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(map.FindEqualOrCreate(HashItem(6))->tag, 3);
    HashItem* created = map.FindEqualOrCreate(HashItem(8, 6));
    EXPECT_EQ(created->tag, 6);
    EXPECT_EQ(map.Count(), 5);

    // The key is itself an element: it goes too, and last.
    EXPECT_EQ(map.DeleteAllEqual(*older), 3);
    EXPECT_EQ(deaths, 4);
    EXPECT_EQ(MapKeys(map).size(), 2u);
    EXPECT_TRUE(RunsAreContiguous(map));
}

TEST(FlexHashMap, NotifyReHashedMovesAChangedKeyAndAddsAStranger)
{
    ItemMap map(0, autoDeleteOn);
    HashItem* moving = map.Add(new HashItem(1));
    map.Add(new HashItem(2));
    moving->key = 100;
    map.NotifyReHashed(moving);
    EXPECT_EQ(map.FindEqual(HashItem(100)), moving);
    EXPECT_EQ(map.FindEqual(HashItem(1)), nullptr);
    EXPECT_EQ(map.Count(), 2);

    map.NotifyReHashed(new HashItem(3));
    EXPECT_EQ(map.Count(), 3);
    EXPECT_NE(map.FindEqual(HashItem(3)), nullptr);
    map.NotifyReHashed(nullptr);
    EXPECT_EQ(map.Count(), 3);
    EXPECT_TRUE(RunsAreContiguous(map));
}

TEST(FlexHashMap, AFailingRemapIsLoggedSwallowedAndLosesNothing)
{
    int deaths = 0;
    {
        ItemMap map(0, autoDeleteOn);
        auto* fragile = new Fragile(2, 0, &deaths);
        for (HashItem* e : {new Fragile(1, 0, &deaths), fragile, new Fragile(3, 0, &deaths)})
            map.Add(e);
        fragile->fail = true;
        LogCapture log;
        map.Add(new HashItem(4, 0, &deaths)); // remaps to 7 and meets the failing hash
        EXPECT_EQ(log.Lines(), QStringList{"Log.NoGoZone: Remap 383"});
        EXPECT_EQ(map.Count(), 4);
        std::vector<int> keys = MapKeys(map);
        EXPECT_EQ(std::set<int>(keys.begin(), keys.end()), (std::set<int>{1, 2, 3, 4}));
        EXPECT_EQ(map.FindEqual(HashItem(1))->key, 1);
        EXPECT_EQ(map.FindEqual(HashItem(4))->key, 4);
        fragile->fail = false;
        map.Detach(fragile)->DeleteSelf();
        EXPECT_EQ(deaths, 1);

        log.Clear();
        map.Remap(600000000, false); // a table beyond what one block can hold
        EXPECT_EQ(log.Lines(), QStringList{"Log.NoGoZone: Remap 383"});
        EXPECT_EQ(map.GetNumSlots(), 7);
        EXPECT_EQ(map.FindEqual(HashItem(4))->key, 4);
    }
    EXPECT_EQ(deaths, 4);
}

TEST(FlexHashMap, CopiesRebuildTheirTable)
{
    int deaths = 0;
    ItemMap source(0, autoDeleteOn);
    Add(source, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, &deaths);
    source.SetAutoSize(false);
    {
        ItemMap copy(source);
        EXPECT_EQ(copy.GetNumSlots(), source.GetNumSlots());
        EXPECT_FALSE(copy.GetAutoSize());
        for (int key = 0; key < 10; ++key) {
            HashItem* found = copy.FindEqual(HashItem(key));
            ASSERT_NE(found, nullptr);
            EXPECT_NE(found, source.FindEqual(HashItem(key)));
        }
        EXPECT_TRUE(RunsAreContiguous(copy));
    }
    EXPECT_EQ(deaths, 10);

    // An empty map keeps its size in a copy, and the copy has a table to add to.
    ItemMap sized(5);
    ItemMap emptyCopy(sized);
    EXPECT_EQ(emptyCopy.GetNumSlots(), 7);
    EXPECT_TRUE(emptyCopy.HasTable());
    emptyCopy.Add(new HashItem(1, 0, &deaths));
    EXPECT_NE(emptyCopy.FindEqual(HashItem(1)), nullptr);
    emptyCopy.DeleteAll();

    ItemMap assigned(0, autoDeleteOn);
    assigned.Add(new HashItem(50, 0, &deaths));
    assigned = source;
    EXPECT_EQ(deaths, 12); // the old element went by the ownership rule
    EXPECT_EQ(assigned.Count(), 10);
    EXPECT_EQ(assigned.GetNumSlots(), 13);
    EXPECT_NE(assigned.FindEqual(HashItem(9)), nullptr);
}

TEST(FlexHashMap, AbsorbAndAddMoveOrCloneWholeMaps)
{
    ItemMap a(0, autoDeleteOn), b(0, autoDeleteOn);
    Add(a, {1, 2});
    Add(b, {2, 3, 4});
    a.Absorb(b);
    EXPECT_TRUE(b.IsEmpty());
    EXPECT_EQ(a.Count(), 5);
    EXPECT_EQ(a.FindNumEqual(HashItem(2)), 2);
    a.Add(a);
    EXPECT_EQ(a.Count(), 10);
    EXPECT_EQ(a.FindNumEqual(HashItem(2)), 4);
    EXPECT_TRUE(RunsAreContiguous(a));

    std::vector<HashItem*> elements(a.begin(), a.end());
    a.DetachAll();
    EXPECT_FALSE(a.HasTable());
    EXPECT_EQ(a.Count(), 0);
    for (HashItem* e : elements)
        e->DeleteSelf();
}

TEST(FlexHashMap, AgreesWithAReferenceUnderRandomEdits)
{
    ItemMap map(0, autoDeleteOn);
    std::map<int, int> counts;
    unsigned seed = 7;
    auto next = [&seed](unsigned n) {
        seed = seed * 1103515245u + 12345u;
        return static_cast<int>((seed >> 16) % n);
    };
    for (int step = 0; step < 4000; ++step) {
        int const key = next(300);
        if (next(3) != 0) {
            map.Add(new HashItem(key));
            ++counts[key];
        } else if (HashItem* found = map.FindEqual(HashItem(key))) {
            map.Delete(found);
            --counts[key];
        }
    }
    int total = 0;
    for (auto const& [key, count] : counts) {
        ASSERT_EQ(map.FindNumEqual(HashItem(key)), count) << key;
        total += count;
    }
    EXPECT_EQ(map.Count(), total);
    EXPECT_LE(map.Count(), map.GetNumSlots());
    EXPECT_TRUE(RunsAreContiguous(map));
    EXPECT_TRUE(LinksAreConsistent(map));
}
