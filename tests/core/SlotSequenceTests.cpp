#include "ContainerTestElements.h"

#include "core/TBuffer.h"
#include "core/TMemoryBlockArray.h"
#include "core/TSlotSequence.h"
#include "core/TVectorBase.h"
#include "persist/TOutputMemoryStream.h"
#include "math/TRandomizer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

namespace {

using Ints = std::vector<int32_t>;

Ints Values(TSlotSequence const& sequence)
{
    Ints values;
    for (int i = 0; i < sequence.GetNumBusySlots(); ++i)
        values.push_back(*static_cast<int32_t const*>(sequence.ConstSlotPtr(i)));
    return values;
}

void AppendValues(TSlotSequence& sequence, Ints const& values)
{
    for (int32_t value : values)
        sequence.AppendSlot(&value);
}

// A sequence of 4-byte slots holding the given values.
struct IntSequence : TSlotSequence
{
    explicit IntSequence(Ints const& values = {}, int initial = 20, int expansion = 20)
        : TSlotSequence(4, initial, expansion)
    {
        AppendValues(*this, values);
    }
};

} // namespace

TEST(SlotSequence, GrowthIsLinearInStepsOfTheExpansionSize)
{
    TVectorBase vector(20, 20, autoDeleteOff);
    EXPECT_FALSE(vector.HasAllocatedMemory());
    Item item(1);
    // Elements before the addition, slots after it.
    for (auto [count, slots] : {std::pair{0, 20}, {1, 20}, {18, 20}, {19, 20}, {20, 40}}) {
        while (vector.Count() < count)
            vector.Add(&item);
        EXPECT_EQ(vector.IsFull(), count % 20 == 0) << count; // no block yet counts as full
        vector.Add(&item);
        EXPECT_EQ(vector.GetNumSlots(), slots) << count;
    }

    TSlotSequence sequence(4, 20, 7);
    sequence.EnsureNumSlots(10); // no block: rounded up to a multiple of 7
    EXPECT_EQ(sequence.GetNumSlots(), 14);
    sequence.EnsureNumSlots(15); // the increase of 1 rounds to 7
    EXPECT_EQ(sequence.GetNumSlots(), 21);
    sequence.EnsureNumSlots(3);
    EXPECT_EQ(sequence.GetNumSlots(), 21);
    sequence.AllocateBusySlots(0);
    EXPECT_EQ(sequence.GetNumBusySlots(), 0);
    sequence.AllocateBusySlots(25); // exact, no rounding
    EXPECT_EQ(sequence.GetNumSlots(), 25);
    EXPECT_EQ(sequence.GetNumBusySlots(), 25);
    EXPECT_EQ(sequence.GetRangeSize(3), 12);
}

TEST(SlotSequence, LargeSequencesStillReportTheLinearCapacity)
{
    TSlotSequence sequence(8, 20, 20);
    for (int64_t i = 0; i < 100000; ++i) {
        *static_cast<int64_t*>(sequence.AppendSlot()) = i;
        if (i % 997 == 0) {
            ASSERT_EQ(sequence.GetNumSlots(), (i / 20 + 1) * 20) << i;
        }
    }
    TSlotSequence copy(sequence);
    for (TSlotSequence const* s : {&sequence, &copy}) {
        EXPECT_EQ(s->GetNumSlots(), 100000);
        for (int i = 0; i < 100000; i += 4999)
            EXPECT_EQ(*static_cast<int64_t const*>(s->ConstSlotPtr(i)), i);
        EXPECT_EQ(*static_cast<int64_t const*>(s->ConstSlotPtr(99999)), 99999);
    }
}

TEST(SlotSequence, InsertingAnotherSequenceReservesExactly)
{
    IntSequence a({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}), b({100, 101, 102});
    EXPECT_EQ(a.GetNumSlots(), 20);
    a.Insert(b, 2, false);
    EXPECT_EQ(a.GetNumSlots(), 23);
    EXPECT_EQ(a.GetNumBusySlots(), 23);
    Ints const inserted = Values(a);
    EXPECT_EQ(Ints(inserted.begin(), inserted.begin() + 6), (Ints{0, 1, 100, 101, 102, 2}));

    a.Insert(b, 0, true); // gap only: the count stays
    EXPECT_EQ(a.GetNumSlots(), 26);
    EXPECT_EQ(a.GetNumBusySlots(), 23);
    EXPECT_EQ(*static_cast<int32_t*>(a.SlotPtr(3)), 0);

    IntSequence self({1, 2, 3}), twice({1, 2, 3});
    self += self;
    EXPECT_EQ(Values(self), (Ints{1, 2, 3, 1, 2, 3}));
    twice.Insert(twice, 1, false);
    EXPECT_EQ(Values(twice), (Ints{1, 1, 2, 3, 2, 3}));

    b.Absorb(self, 1);
    EXPECT_EQ(Values(b), (Ints{100, 1, 2, 3, 1, 2, 3, 101, 102}));
    EXPECT_FALSE(self.HasAllocatedMemory());
    EXPECT_EQ(self.GetNumBusySlots(), 0);
}

TEST(SlotSequence, SingleSlotsInsertCutAndFill)
{
    IntSequence sequence({1, 2, 3});
    // A null source leaves the slot's bytes as the move left them.
    sequence.InsertSlot(nullptr, 1);
    EXPECT_EQ(Values(sequence), (Ints{1, 2, 2, 3}));
    int32_t const nine = 9;
    sequence.FillSlot(0, &nine);
    sequence.InsertSlot(&nine, 4);
    EXPECT_EQ(Values(sequence), (Ints{9, 2, 2, 3, 9}));
    sequence.CutSlots(1, 2);
    EXPECT_EQ(Values(sequence), (Ints{9, 3, 9}));
    sequence.ClearAll();
    EXPECT_EQ(Values(sequence), (Ints{0, 0, 0}));
}

TEST(SlotSequence, FreeMemoryAndOptimizeSizeKeepTheirOddRules)
{
    IntSequence empty;
    empty.SetNumBusySlots(5);
    empty.FreeMemory(); // no block: the count is left alone
    EXPECT_EQ(empty.GetNumBusySlots(), 5);

    IntSequence sequence({1, 2, 3});
    sequence.OptimizeSize();
    EXPECT_EQ(sequence.GetNumSlots(), 20); // the old capacity is still reported
    EXPECT_TRUE(sequence.HasAllocatedMemory());
    Ints expected{1, 2, 3};
    for (int32_t i = 4; i <= 30; ++i) {
        AppendValues(sequence, {i});
        expected.push_back(i);
    }
    EXPECT_EQ(Values(sequence), expected);
    EXPECT_EQ(sequence.GetNumSlots(), 40);

    sequence.SetNumBusySlots(0);
    sequence.OptimizeSize();
    EXPECT_FALSE(sequence.HasAllocatedMemory());
    EXPECT_EQ(sequence.GetNumSlots(), 0);
}

TEST(SlotSequence, AssignCopiesTheBlockButNotTheCount)
{
    IntSequence source({7, 8, 9}, 10, 5);
    source.SetUserField(6);

    TSlotSequence target(8, 1, 1);
    target.Assign(source, true);
    EXPECT_EQ(target.GetNumBusySlots(), 0);
    EXPECT_EQ(target.GetNumSlots(), 5);
    EXPECT_EQ(target.GetSlotSize(), 4);
    EXPECT_EQ(target.GetExpansionSize(), 5);
    EXPECT_EQ(target.UserField(), 6u);
    target.SetNumBusySlots(3);
    EXPECT_EQ(Values(target), (Ints{7, 8, 9}));

    target.Assign(source, false);
    EXPECT_FALSE(target.HasAllocatedMemory());
    EXPECT_EQ(target.GetNumBusySlots(), 0);

    TSlotSequence copy(source);
    EXPECT_EQ(Values(copy), (Ints{7, 8, 9}));
    EXPECT_EQ(copy.GetNumSlots(), 5);
    TSlotSequence shape(source, false);
    EXPECT_EQ(shape.GetNumBusySlots(), 0);
    EXPECT_FALSE(shape.HasAllocatedMemory());
    EXPECT_EQ(shape.GetInitialSlots(), 10);
    target = source;
    EXPECT_EQ(Values(target), (Ints{7, 8, 9}));
}

TEST(SlotSequence, OrderOperationsForEverySlotSize)
{
    IntSequence four({1, 2, 3, 4, 5});
    four.InverseOrder();
    EXPECT_EQ(Values(four), (Ints{5, 4, 3, 2, 1}));
    four.Reverse();
    EXPECT_EQ(Values(four), (Ints{1, 2, 3, 4, 5}));

    TSlotSequence three(3, 20, 20);
    for (char const* slot : {"abc", "bcd", "cde", "def"})
        three.AppendSlot(slot);
    three.InverseOrder();
    EXPECT_EQ(std::string(static_cast<char const*>(three.GetFirstSlot()), 12), "defcdebcdabc");

    four.Sort([](void const* a, void const* b) {
        return *static_cast<int32_t const*>(b) - *static_cast<int32_t const*>(a);
    });
    EXPECT_EQ(Values(four), (Ints{5, 4, 3, 2, 1}));

    // Equal slots keep their order: pairs sorted by their first half.
    TSlotSequence pairs(8, 20, 20);
    int32_t const data[][2] = {{2, 0}, {1, 1}, {2, 2}, {1, 3}, {0, 4}};
    for (auto const& pair : data)
        pairs.AppendSlot(pair);
    pairs.Sort([](void const* a, void const* b) {
        return *static_cast<int32_t const*>(a) - *static_cast<int32_t const*>(b);
    });
    Ints order;
    for (int i = 0; i < pairs.Count(); ++i)
        order.push_back(static_cast<int32_t const*>(pairs.ConstSlotPtr(i))[1]);
    EXPECT_EQ(order, (Ints{4, 1, 3, 0, 2}));
}

TEST(SlotSequence, ShuffleIsAFisherYatesWalkFromTheEnd)
{
    Ints expected(12);
    std::iota(expected.begin(), expected.end(), 0);
    IntSequence sequence(expected), one({5});
    sequence.Shuffle(31);
    one.Shuffle(31);

    TRandomizer randomizer(31);
    int const count = static_cast<int>(expected.size());
    for (int i = 0; i < count - 1; ++i)
        std::swap(expected[static_cast<size_t>(randomizer.Get(count - i))], expected[static_cast<size_t>(count - 1 - i)]);
    EXPECT_EQ(Values(sequence), expected);
    EXPECT_EQ(Values(one), (Ints{5}));
}

TEST(MemoryBlockArray, KeepsFreeBlocksLastInFirstOut)
{
    static std::vector<void*> released;
    released.clear();
    char one[4], two[4];
    TMemoryBlockArray array;
    TMemoryBlock block(one, 4);
    array.Push(block);
    EXPECT_TRUE(block.IsEmpty());
    block = TMemoryBlock(two, 4);
    array.Push(block);
    array.AddToAllocated(2);
    EXPECT_EQ(array.NumFree(), 2);
    EXPECT_EQ(array.NumAllocated(), 2);

    TMemoryBlock taken;
    EXPECT_TRUE(array.Pop(taken));
    EXPECT_EQ(taken.data, two);
    EXPECT_EQ(taken.size, 4u);
    array.Push(taken);
    EXPECT_EQ(array.ReleaseAll([](TMemoryBlock const& b) { released.push_back(b.data); }, true), 2);
    EXPECT_EQ(released, (std::vector<void*>{one, two}));
    EXPECT_FALSE(array.Pop(taken));
    EXPECT_TRUE(taken.IsEmpty());
}

TEST(Buffer, WrapsOrOwnsAndCopiesDeeply)
{
    int outside[3] = {1, 2, 3};
    TBuffer<int> wrapped(outside, 3, autoDeleteOff);
    EXPECT_FALSE(wrapped.OwnsData());
    wrapped.Realloc(5); // a wrapped block moves into an owned one
    EXPECT_TRUE(wrapped.OwnsData());
    EXPECT_NE(wrapped.Start(), outside);
    EXPECT_EQ(wrapped[2], 3);
    wrapped.Fill(7, 3, 2);
    EXPECT_EQ(wrapped.ConstValueAt(4), 7);

    TBuffer<int> copy(wrapped);
    copy[0] = 9;
    EXPECT_EQ(wrapped[0], 1);
    copy.SetReverse(outside, 3);
    EXPECT_EQ(copy.Size(), 3);
    EXPECT_EQ(copy[0], 3);
    EXPECT_EQ(copy[2], 1);

    TBuffer<char> adopted(static_cast<char*>(malloc_ex(4)), 4, autoDeleteOn); // freed by the buffer
    adopted.Reset();
    EXPECT_FALSE(adopted.IsValid());

    TOutputMemoryStream stream(32, autoDeleteOff);
    int const values[3] = {4, 5, 6};
    stream.WriteData(values, sizeof(values));
    TBuffer<int> copied, taken;
    copied.CaptureData(stream, false);
    taken.CaptureData(stream, true); // the block is the buffer's now
    EXPECT_EQ(copied.Size(), 3);
    EXPECT_EQ(copied[2], 6);
    EXPECT_EQ(taken.ConstStart(), reinterpret_cast<int const*>(stream.Start()));
    EXPECT_TRUE(taken.OwnsData());
}
