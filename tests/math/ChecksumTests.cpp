#include "KernelLevels.h"

#include "math/Checksum.h"
#include "math/TRandomizer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// Bit at a time, straight from the polynomial: shares nothing with the
// library's tables or folding.
uint32_t ReferenceCrc32(unsigned char const* p, size_t size)
{
    uint32_t crc = 0xFFFFFFFFu;
    for (size_t i = 0; i < size; ++i) {
        crc ^= p[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1)));
    }
    return ~crc;
}

std::vector<unsigned char> RandomBytes(size_t size, uint64_t seed)
{
    TRandomizer random(seed);
    std::vector<unsigned char> bytes(size);
    for (auto& b : bytes)
        b = static_cast<unsigned char>(random.Next32());
    return bytes;
}

TEST(Checksum, KnownValues)
{
    char const check[] = "123456789";
    EXPECT_EQ(ComputeCrc32(check, 9), 0xCBF43926u);
    EXPECT_EQ(ComputeCrc16(check, 9), 0xBB3D);
    EXPECT_EQ(ComputeCrc32(check, 0), 0u);
    EXPECT_EQ(ComputeCrc16(check, 0), 0);
    EXPECT_EQ(ComputeCrc32Ex(check, 0), 0u);
    // The string read backwards, "987654321", in the high half.
    EXPECT_EQ(ComputeCrc32Ex(check, 9), (uint64_t(ComputeCrc32("987654321", 9)) << 32) | 0xCBF43926u);
    unsigned char const zeros[4] = {};
    EXPECT_EQ(ComputeCrc32(zeros, 4), 0x2144DF1Cu);
}

TEST(Checksum, Crc32MatchesTheBitwiseDefinitionOnEveryKernel)
{
    std::vector<unsigned char> const data = RandomBytes(300016, 7);
    std::vector<size_t> sizes;
    for (size_t n = 1; n <= 600; ++n)
        sizes.push_back(n);
    for (size_t n : { 1023u, 1024u, 4096u, 65535u, 65536u, 100001u, 299990u })
        sizes.push_back(n);
    ForEachKernelLevel([&] {
        for (size_t size : sizes)
            for (size_t offset : { 0u, 1u, 5u, 13u }) {
                ASSERT_EQ(
                    ComputeCrc32(data.data() + offset, unsigned(size)), ReferenceCrc32(data.data() + offset, size))
                    << "size " << size << " offset " << offset;
            }
    });
}

TEST(Checksum, Crc32ExRunsBothWays)
{
    std::vector<unsigned char> const data = RandomBytes(20000, 8);
    for (size_t size : { 1u, 7u, 8u, 9u, 4095u, 4096u, 4097u, 8200u, 20000u }) {
        std::vector<unsigned char> reversed(data.rbegin() + (data.size() - size), data.rend());
        uint64_t const both = ComputeCrc32Ex(data.data(), unsigned(size));
        EXPECT_EQ(uint32_t(both), ReferenceCrc32(data.data(), size)) << size;
        EXPECT_EQ(uint32_t(both >> 32), ReferenceCrc32(reversed.data(), size)) << size;
    }
}

TEST(Checksum, OfficialCrc32InPiecesEqualsOneRun)
{
    EXPECT_EQ(TOfficialCrc32().GetResult(), 0u);

    std::vector<unsigned char> const data = RandomBytes(10000, 9);
    TRandomizer random(10);
    ForEachKernelLevel([&] {
        TOfficialCrc32 crc;
        size_t at = 0;
        while (at < data.size()) {
            int const piece = std::min<int>(random.Get(700), int(data.size() - at));
            crc.ComputeNextBuffer(data.data() + at, piece);
            crc.ComputeNextBuffer(data.data(), 0);
            crc.ComputeNextBuffer(data.data(), -3);
            at += size_t(piece);
        }
        EXPECT_EQ(crc.GetResult(), ComputeCrc32(data.data(), unsigned(data.size())));
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
