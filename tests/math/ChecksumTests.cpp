#include "ByteOracles.h"
#include "KernelLevels.h"

#include "math/Checksum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

namespace {

TEST(Checksum, KnownValues)
{
    char const check[] = "123456789";
    unsigned char const zeros[4] = {};
    EXPECT_EQ(ComputeCrc32(check, 9), 0xCBF43926u);
    EXPECT_EQ(ComputeCrc32(zeros, 4), 0x2144DF1Cu);
    EXPECT_EQ(ComputeCrc16(check, 9), 0xBB3D);
    EXPECT_EQ(ComputeCrc32(check, 0), 0u);
    EXPECT_EQ(ComputeCrc16(check, 0), 0);
    EXPECT_EQ(ComputeCrc32Ex(check, 0), 0u);
}

// Both directions of Ex as well: the backward one reverses in pieces of its
// own, so the sizes straddle those too.
TEST(Checksum, Crc32MatchesTheBitwiseDefinitionOnEveryKernel)
{
    std::vector<unsigned char> const data = RandomBytes(300016, 7);
    std::vector<size_t> sizes;
    for (size_t n = 1; n <= 600; ++n)
        sizes.push_back(n);
    for (size_t n : { 1023u, 1024u, 4095u, 4096u, 4097u, 8200u, 65535u, 65536u, 100001u, 299990u })
        sizes.push_back(n);
    ForEachKernelLevel([&] {
        for (size_t size : sizes)
            for (size_t offset : { 0u, 1u, 5u, 13u }) {
                unsigned char const* p = data.data() + offset;
                ASSERT_EQ(ComputeCrc32(p, unsigned(size)), ReferenceCrc32(p, size))
                    << "size " << size << " offset " << offset;
                if (offset != 1 || (size > 16 && size % 7 != 0 && size < 1000))
                    continue;
                std::vector<unsigned char> const backward(
                    std::make_reverse_iterator(p + size), std::make_reverse_iterator(p));
                uint64_t const both = ComputeCrc32Ex(p, unsigned(size));
                ASSERT_EQ(uint32_t(both), ReferenceCrc32(p, size)) << size;
                ASSERT_EQ(uint32_t(both >> 32), ReferenceCrc32(backward.data(), size)) << size;
            }
    });
}

TEST(Checksum, OfficialCrc32InPiecesEqualsOneRun)
{
    EXPECT_EQ(TOfficialCrc32().GetResult(), 0u);
    std::vector<unsigned char> const data = RandomBytes(10000, 9);
    TRandomizer random(10);
    ForEachKernelLevel([&] {
        TOfficialCrc32 crc;
        for (size_t at = 0; at < data.size();) {
            int const piece = std::min<int>(random.Get(700), int(data.size() - at));
            crc.ComputeNextBuffer(data.data() + at, piece);
            crc.ComputeNextBuffer(data.data(), 0);
            crc.ComputeNextBuffer(data.data(), -3);
            at += size_t(piece);
        }
        EXPECT_EQ(crc.GetResult(), ReferenceCrc32(data.data(), data.size()));
    });
}

TEST(Checksum, Crc16AgainstTheBitwiseDefinition)
{
    std::vector<unsigned char> const data = RandomBytes(1000, 11);
    for (size_t size : { 1u, 2u, 100u, 1000u }) {
        unsigned crc = 0;
        for (size_t i = 0; i < size; ++i) {
            crc ^= data[i];
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc & 1) ? (crc >> 1) ^ 0xA001u : crc >> 1;
        }
        EXPECT_EQ(ComputeCrc16(data.data(), unsigned(size)), crc) << size;
    }
}

} // namespace
