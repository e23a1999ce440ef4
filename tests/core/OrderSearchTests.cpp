// The linear searches by order of the vector and both lists, against a model
// over random keys with many ties: the first of equals must win everywhere.

#include "ContainerTestElements.h"

#include "core/TFlexList.h"
#include "core/TListOfPointers.h"
#include "core/TVector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using V = std::vector<int>;

// Index of the first element answering the search, -1 for none. side -1
// looks below the target, +1 above; orEqual takes the first equal at once.
int ModelClosest(V const& keys, int target, int side, bool orEqual)
{
    if (orEqual) {
        auto const equal = std::find(keys.begin(), keys.end(), target);
        if (equal != keys.end())
            return static_cast<int>(equal - keys.begin());
    }
    int best = -1;
    for (int i = 0; i < static_cast<int>(keys.size()); ++i) {
        bool const onSide = side < 0 ? keys[i] < target : keys[i] > target;
        if (onSide && (best < 0 || (side < 0 ? keys[i] > keys[best] : keys[i] < keys[best])))
            best = i;
    }
    return best;
}

int ModelExtreme(V const& keys, int side)
{
    if (keys.empty())
        return -1;
    auto const at = side < 0 ? std::min_element(keys.begin(), keys.end()) : std::max_element(keys.begin(), keys.end());
    return static_cast<int>(at - keys.begin());
}

int Tag(Item const* item)
{
    return item ? item->tag : -1;
}

struct Record
{
    int key;
    int tag;
};

int CompareRecords(void const* a, void const* b)
{
    return static_cast<Record const*>(a)->key - static_cast<Record const*>(b)->key;
}

void DeleteRecord(void* record)
{
    delete static_cast<Record*>(record);
}

int Tag(Record const* record)
{
    return record ? record->tag : -1;
}

} // namespace

TEST(OrderSearch, VectorAndListsAgreeWithTheModel)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        V keys(random() % 9);
        for (int& key : keys)
            key = static_cast<int>(random() % 6);

        TVector<Item> vector(4, 4, autoDeleteOn);
        TFlexList<Item> list(autoDeleteOn);
        TListOfPointers<Record> pointers(autoDeleteOn);
        pointers.SetComparer(&CompareRecords);
        pointers.SetDeleter(&DeleteRecord);
        for (int i = 0; i < static_cast<int>(keys.size()); ++i) {
            vector.Add(new Item(keys[i], i));
            list.Append(new Item(keys[i], i));
            pointers.Append(new Record{keys[i], i});
        }
        SCOPED_TRACE(testing::PrintToString(keys));

        for (int side : {-1, 1}) {
            int const expected = ModelExtreme(keys, side);
            int index = -2;
            Item* const fromVector = side < 0 ? vector.LinearFindSmallest(&index) : vector.LinearFindGreatest(&index);
            EXPECT_EQ(Tag(fromVector), expected);
            EXPECT_EQ(index, expected);
            EXPECT_EQ(Tag(side < 0 ? list.FindSmallest() : list.FindGreatest()), expected);
            EXPECT_EQ(Tag(side < 0 ? pointers.FindSmallest() : pointers.FindGreatest()), expected);
        }

        for (int target = -1; target <= 6; ++target) {
            Item const item(target);
            Record const record{target, -1};
            for (bool orEqual : {false, true}) {
                SCOPED_TRACE(testing::Message() << "target " << target << (orEqual ? " or equal" : ""));
                int const below = ModelClosest(keys, target, -1, orEqual);
                int const above = ModelClosest(keys, target, 1, orEqual);
                int index = -2;
                EXPECT_EQ(Tag(orEqual ? vector.LinearFindEqualOrSmaller(item, &index)
                                      : vector.LinearFindClosestSmaller(item, &index)),
                          below);
                EXPECT_EQ(index, below);
                EXPECT_EQ(Tag(orEqual ? vector.LinearFindEqualOrGreater(item, &index)
                                      : vector.LinearFindClosestGreater(item, &index)),
                          above);
                EXPECT_EQ(index, above);
                EXPECT_EQ(Tag(orEqual ? list.FindEqualOrSmaller(item) : list.FindClosestSmaller(item)), below);
                EXPECT_EQ(Tag(orEqual ? list.FindEqualOrGreater(item) : list.FindClosestGreater(item)), above);
                EXPECT_EQ(Tag(orEqual ? pointers.FindEqualOrSmaller(&record) : pointers.FindClosestSmaller(&record)),
                          below);
                EXPECT_EQ(Tag(orEqual ? pointers.FindEqualOrGreater(&record) : pointers.FindClosestGreater(&record)),
                          above);
            }
        }

        bool const ascending = std::is_sorted(keys.begin(), keys.end());
        bool const descending = std::is_sorted(keys.rbegin(), keys.rend());
        EXPECT_EQ(vector.IsSorted(), ascending);
        EXPECT_EQ(vector.IsSortedBackwards(), descending);
        EXPECT_EQ(list.IsSorted(), ascending);
        EXPECT_EQ(list.IsSortedBackwards(), descending);
        EXPECT_EQ(pointers.IsSorted(), ascending);
        EXPECT_EQ(pointers.IsSortedBackwards(), descending);
    }
}
