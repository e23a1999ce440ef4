#include "KernelLevels.h"

#include "math/FastMemory.h"
#include "math/TRandomizer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

std::vector<unsigned char> RandomBytes(size_t size, uint64_t seed)
{
    TRandomizer random(seed);
    std::vector<unsigned char> bytes(size);
    for (auto& b : bytes)
        b = static_cast<unsigned char>(random.Next32());
    return bytes;
}

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

TEST(FastMemory, CopyWritesExactlyTheRangeAtEveryOffset)
{
    ForEachKernelLevel([] {
        std::vector<unsigned char> const source = RandomBytes(70000, 1);
        for (int size : InterestingSizes()) {
            for (int offset : { 0, 1, 7, 31 }) {
                std::vector<unsigned char> target(size + 80, 0xEE);
                void* result = FastCopyEx(source.data() + offset, target.data() + 40 - offset % 8, size);
                ASSERT_EQ(result, target.data() + 40 - offset % 8);
                size_t const at = 40 - offset % 8;
                ASSERT_EQ(0, std::memcmp(target.data() + at, source.data() + offset, size)) << "size " << size;
                for (size_t i = 0; i < at; ++i)
                    ASSERT_EQ(target[i], 0xEE) << "size " << size << " wrote before the target";
                for (size_t i = at + size; i < target.size(); ++i)
                    ASSERT_EQ(target[i], 0xEE) << "size " << size << " wrote past the target";
            }
        }
    });
}

TEST(FastMemory, CopyLooksOnlyAtTheLow32BitsOfTheSize)
{
    unsigned char source[100];
    unsigned char target[100];
    std::memset(source, 1, sizeof source);
    std::memset(target, 9, sizeof target);

    // Bit 31 set: nothing is copied.
    EXPECT_EQ(FastCopyEx(source, target, 0x80000010u), target);
    EXPECT_EQ(target[0], 9);
    EXPECT_EQ(FastCopyEx(source, target, size_t(0xFFFFFFFFu)), target);
    EXPECT_EQ(target[0], 9);

    // Above 4 GiB the low part decides: 2^32 + 10 copies 10 bytes.
    if (sizeof(size_t) == 8) {
        FastCopyEx(source, target, (size_t(1) << 32) + 10);
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
    EXPECT_EQ(target[0] + target[1] + target[2] + target[3], 28);
}

TEST(FastMemory, MoveHandlesOverlapInBothDirections)
{
    ForEachKernelLevel([] {
        std::vector<unsigned char> const original = RandomBytes(9000, 2);
        for (int size : InterestingSizes()) {
            if (size > 8000)
                continue;
            for (int shift : { 1, 8, 33, 64, 200, -1, -8, -33, -64, -200 }) {
                std::vector<unsigned char> buffer = original;
                std::vector<unsigned char> expected = original;
                size_t const from = 500;
                size_t const to = from + shift;
                std::memmove(expected.data() + to, expected.data() + from, size);
                EXPECT_EQ(FastMoveEx(buffer.data() + from, buffer.data() + to, size), buffer.data() + to);
                ASSERT_EQ(buffer, expected) << "size " << size << " shift " << shift;
            }
        }
    });
}

TEST(FastMemory, ZeroClearsExactlyTheRange)
{
    ForEachKernelLevel([] {
        for (int size : InterestingSizes()) {
            std::vector<unsigned char> buffer(size + 16, 0xAB);
            FastZeroEx(buffer.data() + 3, size);
            for (size_t i = 0; i < buffer.size(); ++i) {
                bool const inside = i >= 3 && i < size_t(3 + size);
                ASSERT_EQ(buffer[i], inside ? 0 : 0xAB) << "size " << size << " byte " << i;
            }
        }
    });
}

template <class T> void CheckFill(T value)
{
    for (int count : { 0, 1, 2, 3, 5, 7, 8, 9, 15, 16, 17, 31, 33, 64, 100, 1000, 1023 }) {
        std::vector<T> buffer(count + 4);
        T sentinel;
        std::memset(&sentinel, 0x5A, sizeof sentinel);
        for (T& v : buffer)
            v = sentinel;
        FastFill(buffer.data() + 1, value, count);
        ASSERT_EQ(0, std::memcmp(&buffer[0], &sentinel, sizeof(T)));
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(0, std::memcmp(&buffer[1 + i], &value, sizeof(T))) << "count " << count << " at " << i;
        for (size_t i = 1 + count; i < buffer.size(); ++i)
            ASSERT_EQ(0, std::memcmp(&buffer[i], &sentinel, sizeof(T))) << "count " << count << " past end";
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
    std::vector<int> untouched(4, 7);
    FastFill(untouched.data(), 1, -3);
    EXPECT_EQ(untouched, std::vector<int>(4, 7));
}

TEST(FastMemory, SwapExchangesBytesOneByOne)
{
    std::vector<unsigned char> a = RandomBytes(37, 3);
    std::vector<unsigned char> b = RandomBytes(37, 4);
    std::vector<unsigned char> const a0 = a, b0 = b;
    SwapBinaryData(a.data(), b.data(), 37);
    EXPECT_EQ(a, b0);
    EXPECT_EQ(b, a0);
    SwapBinaryData(a.data(), b.data(), 0);
    SwapBinaryData(a.data(), b.data(), -1);
    EXPECT_EQ(a, b0);

    // Overlapping: a is bytes 0..9, b is bytes 3..12. Exchanged byte by byte
    // the first three values travel on and end up rotated; whole words would
    // leave something else.
    unsigned char overlap[16];
    for (int i = 0; i < 16; ++i)
        overlap[i] = static_cast<unsigned char>(i);
    SwapBinaryData(overlap, overlap + 3, 10);
    unsigned char const expected[16] = { 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1, 2, 0, 13, 14, 15 };
    EXPECT_EQ(0, std::memcmp(overlap, expected, 16));
}

TEST(FastMemory, IsZeroedMemoryFindsAnySetByte)
{
    ForEachKernelLevel([] {
        EXPECT_TRUE(IsZeroedMemory(nullptr, 0));
        EXPECT_TRUE(IsZeroedMemory(nullptr, -4));
        for (int size : { 1, 2, 31, 32, 33, 63, 64, 127, 128, 129, 255, 300, 1000 }) {
            std::vector<unsigned char> buffer(size, 0);
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
