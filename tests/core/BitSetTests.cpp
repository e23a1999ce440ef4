#include "core/TBitSet.h"

#include <gtest/gtest.h>

TEST(BitSet, SizesAndBitOrder)
{
    // The bit count rounded up to a multiple of 8 is allocated as bytes.
    EXPECT_EQ(TBitSet(1).GetNumBytes(), 8);
    EXPECT_EQ(TBitSet(9).GetNumBytes(), 16);
    EXPECT_EQ(TBitSet(0).GetNumBits(), 1);

    TBitSet set(64);
    EXPECT_TRUE(set.IsEmpty());
    set.Enable(0);
    set.Enable(9);
    set.Set(63, true);
    EXPECT_EQ(set.Bytes()[0], 1); // bit 0 is the lowest of byte 0
    EXPECT_EQ(set.Bytes()[1], 2);
    EXPECT_EQ(set.Bytes()[7], 128);
    EXPECT_FALSE(set.IsSet(8));
    set.Set(9, false);
    set.Disable(0);
    EXPECT_FALSE(set.IsSet(9) || set.IsSet(0));
}

TEST(BitSet, CombinationsWorkOverTheTargetsBytes)
{
    TBitSet wide(128), narrow(8);
    wide.Enable(3);
    wide.Enable(100);
    narrow.Enable(3);
    narrow.Enable(5);

    TBitSet both = wide;
    both &= narrow; // bytes narrow lacks count as clear
    EXPECT_TRUE(both.IsSet(3));
    EXPECT_FALSE(both.IsSet(5));
    EXPECT_FALSE(both.IsSet(100));

    TBitSet either = narrow;
    either |= wide; // only narrow's own bytes change
    EXPECT_TRUE(either.IsSet(5));
    EXPECT_TRUE(either.IsSet(3));
    EXPECT_EQ(either.GetNumBytes(), 8);

    TBitSet complement = ~wide;
    EXPECT_EQ(complement.GetNumBytes(), wide.GetNumBytes());
    EXPECT_FALSE(complement.IsSet(3));
    EXPECT_TRUE(complement.IsSet(4));
    EXPECT_TRUE(complement.IsSet(8 * 16 - 1));
    EXPECT_EQ(complement.GetNumBits(), 16); // made with numBytes / 8 bits
    EXPECT_EQ((~narrow).GetNumBits(), 1);

    complement.Negate();
    complement.Disable(3);
    complement.Disable(100);
    EXPECT_TRUE(complement.IsEmpty());

    narrow = wide;
    EXPECT_EQ(narrow.GetNumBytes(), 128);
    EXPECT_TRUE(narrow.IsSet(100));
}

TEST(CharSet, TakesCharactersBelow128)
{
    TCharSet set("ab");
    EXPECT_TRUE(set.IsSet('a'));
    EXPECT_TRUE(set.IsSet('b'));
    EXPECT_FALSE(set.IsSet('c'));
    EXPECT_EQ(set.GetNumBits(), 256);

    TCharSet high("\xC3\xA9z"); // a two-byte character: skipped, not written before the set
    EXPECT_TRUE(high.IsSet('z'));
    EXPECT_FALSE(high.IsSet(0xC3));
    EXPECT_FALSE(high.IsSet(0xA9));

    TCharSet copy(static_cast<TBitSet const&>(set));
    EXPECT_TRUE(copy.IsSet('a'));
    EXPECT_TRUE(TCharSet().IsEmpty());
}
