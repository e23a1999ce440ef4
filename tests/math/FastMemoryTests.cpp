#include "ByteOracles.h"
#include "KernelLevels.h"

#include "math/FastMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

// Sizes around every path boundary, and some that end in odd tails.
std::vector<int> InterestingSizes()
{
    std::vector<int> sizes;
    for (int n = 0; n <= 300; ++n)
        sizes.push_back(n);
    for (int n : { 511, 512, 513, 1000, 4095, 4096, 4097, 10000, 65536 + 7 })
        sizes.push_back(n);
    return sizes;
}

// Each against its C library twin on a guarded buffer compared whole, so a
// byte written outside the range fails as well.
TEST(FastMemory, CopyMoveAndZeroMatchTheCLibrary)
{
    Bytes const source = RandomBytes(70000, 1);
    ForEachKernelLevel([&] {
        for (int size : InterestingSizes()) {
            for (int offset : { 0, 1, 7, 31 }) {
                size_t const at = 40 - offset % 8;
                Bytes target(size + 80, 0xEE), expected = target;
                std::memcpy(expected.data() + at, source.data() + offset, size);
                ASSERT_EQ(FastCopyEx(source.data() + offset, target.data() + at, size), target.data() + at);
                ASSERT_EQ(target, expected) << "copy of " << size << " from offset " << offset;
            }
            Bytes zeroed(size + 16, 0xAB), expected = zeroed;
            std::memset(expected.data() + 3, 0, size);
            FastZeroEx(zeroed.data() + 3, size);
            ASSERT_EQ(zeroed, expected) << "zero of " << size;
            for (int shift : { 1, 8, 33, 64, 150, 200, -1, -8, -33, -64, -150, -200 }) {
                if (size > 8000)
                    break;
                // The source start wanders so that the target meets every alignment.
                size_t const from = 500 + size % 32;
                Bytes buffer(source.begin(), source.begin() + 9000), moved = buffer;
                unsigned char* const to = buffer.data() + from + shift;
                std::memmove(moved.data() + from + shift, moved.data() + from, size);
                ASSERT_EQ(FastMoveEx(buffer.data() + from, to, size), to);
                ASSERT_EQ(buffer, moved) << "move of " << size << " by " << shift;
            }
        }
    });
}

TEST(FastMemory, CopyLooksOnlyAtTheLow32BitsOfTheSize)
{
    Bytes const source(100, 1);
    Bytes target(100, 9);
    // Bit 31 set: nothing is copied.
    EXPECT_EQ(FastCopyEx(source.data(), target.data(), 0x80000010u), target.data());
    FastCopyEx(source.data(), target.data(), size_t(0xFFFFFFFFu));
    EXPECT_EQ(target, Bytes(100, 9));
    // Above 4 GiB the low part decides: 2^32 + 10 copies 10 bytes.
    if (sizeof(size_t) == 8) {
        FastCopyEx(source.data(), target.data(), (size_t(1) << 32) + 10);
        EXPECT_EQ(target[9], 1);
        EXPECT_EQ(target[10], 9);
    }
}

TEST(FastMemory, EqualPointersAndEmptySizesLeaveTheTargetAlone)
{
    unsigned char block[128];
    for (int i = 0; i < 128; ++i)
        block[i] = static_cast<unsigned char>(i);
    EXPECT_EQ(FastCopyEx(block, block, 128), block);
    EXPECT_EQ(FastMoveEx(block, block, 128), block);
    unsigned char target[4] = { 7, 7, 7, 7 };
    EXPECT_EQ(FastCopyEx(block, target, 0), target);
    EXPECT_EQ(FastMoveEx(block, target, 0), target);
    EXPECT_EQ(FastMoveEx(block, target, -5), target);
    FastZeroEx(target, 0);
    FastZeroEx(target, -1);
    FastZeroEx(nullptr, 100);
    FastFill(target, static_cast<unsigned char>(1), -3);
    EXPECT_EQ(target[0] + target[1] + target[2] + target[3], 28);
}

template <class T> void CheckFill(T value)
{
    T sentinel;
    std::memset(&sentinel, 0x5A, sizeof sentinel);
    for (int count : { 0, 1, 2, 3, 5, 7, 8, 9, 15, 16, 17, 31, 33, 64, 100, 1000, 1023 }) {
        std::vector<T> buffer(count + 4, sentinel), expected = buffer;
        std::fill(expected.begin() + 1, expected.begin() + 1 + count, value);
        FastFill(buffer.data() + 1, value, count);
        ASSERT_EQ(buffer, expected) << sizeof(T) << "-byte elements, count " << count;
    }
}

TEST(FastMemory, FillRepeatsEachElementTypeWithoutSpilling)
{
    ForEachKernelLevel([] {
        CheckFill<char>('x');
        CheckFill<short>(static_cast<short>(0x1234));
        CheckFill<int>(0x01020304);
        CheckFill<long long>(0x0102030405060708ll);
        CheckFill<float>(-1.5f);
        CheckFill<double>(3.25);
    });
}

TEST(FastMemory, SwapExchangesBytesOneByOne)
{
    Bytes a = RandomBytes(37, 3);
    Bytes b = RandomBytes(37, 4);
    Bytes const a0 = a, b0 = b;
    SwapBinaryData(a.data(), b.data(), 37);
    SwapBinaryData(a.data(), b.data(), 0);
    SwapBinaryData(a.data(), b.data(), -1);
    EXPECT_EQ(a, b0);
    EXPECT_EQ(b, a0);
    // Overlapping: a is bytes 0..9, b is bytes 3..12. Exchanged byte by byte
    // the first three values travel on and end up rotated; whole words would
    // leave something else.
    Bytes overlap(16);
    for (int i = 0; i < 16; ++i)
        overlap[i] = static_cast<unsigned char>(i);
    SwapBinaryData(overlap.data(), overlap.data() + 3, 10);
    EXPECT_EQ(overlap, (Bytes { 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1, 2, 0, 13, 14, 15 }));
}

TEST(FastMemory, IsZeroedMemoryFindsAnySetByte)
{
    ForEachKernelLevel([] {
        EXPECT_TRUE(IsZeroedMemory(nullptr, 0));
        EXPECT_TRUE(IsZeroedMemory(nullptr, -4));
        for (int size : { 1, 2, 31, 32, 33, 63, 64, 127, 128, 129, 255, 300, 1000 }) {
            Bytes buffer(size, 0);
            ASSERT_TRUE(IsZeroedMemory(buffer.data(), size));
            for (int at = 0; at < size; ++at) {
                buffer[at] = 0x80;
                ASSERT_FALSE(IsZeroedMemory(buffer.data(), size)) << "size " << size << " at " << at;
                buffer[at] = 0;
            }
        }
    });
}

TEST(FastMemory, DispatchPicksARunnableLevelAndRefusesOthers)
{
    int const best = BestFastMemoryDispatchLevel();
    EXPECT_GE(best, 1);
    EXPECT_FALSE(SetFastMemoryDispatchLevel(0));
    EXPECT_FALSE(SetFastMemoryDispatchLevel(best + 1));
    EXPECT_TRUE(SetFastMemoryDispatchLevel(1));
    EXPECT_EQ(FastMemoryDispatchLevel(), 1);
    InitFastMemoryDispatch();
    EXPECT_EQ(FastMemoryDispatchLevel(), best);
}

} // namespace
