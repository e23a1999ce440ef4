#include "math/TRandomizer.h"
#include "persist/TInputMemoryBitStream.h"
#include "persist/TInputMemoryBitStreamLR.h"
#include "persist/TOutputMemoryBitStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

// The written bits in writing order, as "0" and "1".
std::string BitsOf(TOutputMemoryBitStream& stream)
{
    std::string bits;
    for (int p = 0; p < stream.GetNumWrittenBits(); ++p)
        bits += ((stream.Start()[p / 8] >> (p % 8)) & 1) ? '1' : '0';
    return bits;
}

class OutputBits : public TOutputMemoryBitStream
{
public:
    using TOutputMemoryBitStream::Discard;
    using TOutputMemoryBitStream::TOutputMemoryBitStream;
    int capacityBits() const { return m_capacity; }
};

// Refuses to grow, as a stream at its memory limit would.
class FullBits : public TOutputMemoryBitStream
{
public:
    bool OnOverflow(bool) override
    {
        ++overflows;
        return false;
    }
    int overflows = 0;
};

// Serves a long bit sequence through a window of 4 bytes, refilling it as
// a decoder of a large file would.
class WindowBits : public TInputMemoryBitStream
{
public:
    WindowBits(std::vector<unsigned char> const& source) : TInputMemoryBitStream(m_window, 0), m_source(source) {}
    int refills = 0;

protected:
    bool OnExhaustedReading() override
    {
        int const keep = Discard(m_position / 8);
        int added = 0;
        while (keep + added < 4 && m_next < m_source.size())
            m_window[keep + added++] = static_cast<char>(m_source[m_next++]);
        SetNumValidBits((keep + added) * 8);
        ++refills;
        return added > 0;
    }

private:
    char m_window[4] = {};
    std::vector<unsigned char> const& m_source;
    size_t m_next = 0;
};

} // namespace

// The reading side of these is in the random round trip below.
TEST(BitStreamRice, CodesAreBitExact)
{
    TOutputMemoryBitStream out;
    ASSERT_TRUE(out.WriteRiceValue(5, 1, false));
    EXPECT_EQ(BitsOf(out), "0011");
    ASSERT_TRUE(out.WriteRiceValue(-5, 1, true));
    EXPECT_EQ(BitsOf(out), "0011" "00111");
    ASSERT_TRUE(out.WriteRiceValue(6, 2, true)); // q 1, r 2 as "01", positive
    EXPECT_EQ(BitsOf(out), "0011" "00111" "01" "01" "0");
    // q = 40 puts the code past 32 bits: it goes out piece by piece.
    TOutputMemoryBitStream longCode;
    ASSERT_TRUE(longCode.WriteRiceValue(40 * 8 + 3, 3, true));
    EXPECT_EQ(BitsOf(longCode), std::string(40, '0') + "1" + "110" + "0");
}

TEST(BitStreamRice, RandomValuesRoundTrip)
{
    TRandomizer random(7);
    std::vector<int> values;
    std::vector<int> ks;
    TOutputMemoryBitStream out(1024);
    for (int n = 0; n < 3000; ++n) {
        int const k = random.Get(12);
        int const value = random.Get(1 << 14) - (1 << 13);
        values.push_back(value);
        ks.push_back(k);
        ASSERT_TRUE(out.WriteRiceValue(value, k, true));
        ASSERT_TRUE(out.WriteRiceValue(value < 0 ? -value : value, k, false));
    }
    TInputMemoryBitStream in(out.Start(), out.GetNumWrittenBits());
    for (size_t n = 0; n < values.size(); ++n) {
        ASSERT_EQ(in.ReadRiceValue(ks[n], true), values[n]) << n;
        ASSERT_EQ(in.ReadRiceValue(ks[n], false), values[n] < 0 ? -values[n] : values[n]) << n;
    }
    EXPECT_EQ(in.GetNumReadBits(), out.GetNumWrittenBits());
}

TEST(BitStreamRead, SignExtensionAndWidths)
{
    char data[5] = {0x07, 0x06, 0, 0, 0};
    TInputMemoryBitStream in(data, 40);
    EXPECT_EQ(in.ReadBits(3, true, nullptr), -1); // 1 1 1
    in.AlignOnByte();
    EXPECT_EQ(in.GetNumReadBits(), 8);
    EXPECT_EQ(in.ReadBits(3, true, nullptr), 6 - 8); // 0 1 1: top bit set
    TInputMemoryBitStream again(data + 1, 8);
    EXPECT_EQ(again.ReadBits(0, true, nullptr), 0);
    EXPECT_EQ(again.ReadBits(3, false, nullptr), 6);
    TInputMemoryBitStream oneBit(data, 1); // one set bit read signed is -1
    EXPECT_EQ(oneBit.ReadBits(1, true, nullptr), -1);

    char const word[4] = {static_cast<char>(0xF0), 0x00, 0x00, static_cast<char>(0x80)};
    char copy[4];
    std::copy(word, word + 4, copy);
    TInputMemoryBitStream full(copy, 32);
    EXPECT_EQ(static_cast<unsigned int>(full.ReadBits(32, true, nullptr)), 0x800000F0u);
    TInputMemoryBitStream odd(copy, 32, 4); // chunks across bytes
    EXPECT_EQ(odd.ReadBits(12, false, nullptr), 0x00F);
}

TEST(BitStreamRead, ExhaustionIsReportedAndEndsRiceRuns)
{
    char data[1] = {0};
    TInputMemoryBitStream in(data, 6);
    bool ok = true;
    EXPECT_EQ(in.ReadBits(7, false, &ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(in.GetNumReadBits(), 0);
    EXPECT_EQ(in.ReadBits(6, false, &ok), 0);
    EXPECT_TRUE(ok);
    EXPECT_FALSE(in.ReadOneBit(&ok));
    EXPECT_FALSE(ok);
    in = TInputMemoryBitStream(data, 8);
    EXPECT_EQ(in.ReadRiceValue(2, false), 0); // all zeros: the run meets the end
}

TEST(BitStreamRead, ASubclassRefillsThroughDiscard)
{
    TOutputMemoryBitStream out;
    std::vector<int> values;
    for (int n = 0; n < 200; ++n) {
        values.push_back(n * 37 % 500);
        out.WriteBits(values.back(), 9);
    }
    out.AlignOnByte();
    std::vector<unsigned char> bytes(out.Start(), out.Start() + out.GetNumWrittenBits() / 8);
    WindowBits in(bytes);
    for (int value : values) {
        bool ok = false;
        ASSERT_EQ(in.ReadBits(9, false, &ok), value);
        ASSERT_TRUE(ok);
    }
    EXPECT_GT(in.refills, 50);
}

TEST(BitStreamWrite, ChunksAcrossBytesAndZeroValuesOnlyAdvance)
{
    TOutputMemoryBitStream out;
    out.WriteBits(1, 3);
    out.WriteBits(0, 4);
    out.WriteBits(0x2D5, 10);
    out.WriteBits(-1, 2); // only the low bits count
    EXPECT_EQ(BitsOf(out), "100" "0000" "1010101101" "11");
    out.WriteOneBit(true);
    out.AlignOnByte();
    EXPECT_EQ(out.GetNumWrittenBits(), 24);
}

TEST(BitStreamWrite, GrowsStepByStepAndKeepsZerosAhead)
{
    OutputBits out(1);
    EXPECT_EQ(out.capacityBits(), 256);
    for (int n = 0; n < 100; ++n)
        ASSERT_TRUE(out.WriteBits(0x5, 3));
    EXPECT_EQ(out.capacityBits(), 512);
    // A run of zeros longer than a step still lands inside the block.
    ASSERT_TRUE(out.WriteBits(0, 1000));
    ASSERT_TRUE(out.WriteOneBit(true));
    EXPECT_GE(out.capacityBits(), 1301);
    std::string const bits = BitsOf(out);
    EXPECT_EQ(bits.substr(300, 1000), std::string(1000, '0'));
    EXPECT_EQ(bits.back(), '1');
}

TEST(BitStreamWrite, DiscardMovesTheRestDownAndZeroes)
{
    OutputBits out;
    out.WriteBits(0xAB, 8);
    out.WriteBits(0xCD, 8);
    out.WriteBits(0x3, 4);
    EXPECT_EQ(out.Discard(0), 32);
    EXPECT_EQ(out.Discard(1), 2);
    EXPECT_EQ(out.GetNumWrittenBits(), 12);
    EXPECT_EQ(static_cast<unsigned char>(out.Start()[0]), 0xCD);
    EXPECT_EQ(static_cast<unsigned char>(out.Start()[1]), 0x03);
    EXPECT_EQ(out.Start()[2], 0);

    out.AlignOnByte();
    EXPECT_EQ(out.Discard(2), 0);
    EXPECT_EQ(out.GetNumWrittenBits(), 0);
    EXPECT_EQ(std::string(reinterpret_cast<char const*>(out.Start()), 32), std::string(32, '\0'));
    out.WriteBits(0x1, 1); // ORed into zeros again
    EXPECT_EQ(out.Start()[0], 1);
}

TEST(BitStreamWrite, AStreamThatCannotGrowRefusesTheWrite)
{
    FullBits out;
    ASSERT_TRUE(out.WriteBits(0, 256));
    EXPECT_FALSE(out.WriteOneBit(true));
    EXPECT_FALSE(out.WriteBits(3, 2));
    EXPECT_FALSE(out.WriteRiceValue(1, 0, false));
    EXPECT_EQ(out.overflows, 3);
    EXPECT_EQ(out.GetNumWrittenBits(), 256);
}

TEST(BitStreamLR, MostSignificantFirst)
{
    char const data[2] = {static_cast<char>(0xA5), 0x3C};
    TInputMemoryBitStreamLR in(data, 2);
    EXPECT_EQ(in.GetOneBit(), 1);
    EXPECT_EQ(in.GetOneBit(), 0);
    EXPECT_EQ(in.GetBits(0), 0u);
    EXPECT_EQ(in.GetBits(-3), 0u);
    EXPECT_EQ(in.GetBits(10), 0x253u); // 100101 0011
    TInputMemoryBitStreamLR start(data, 2, 8);
    EXPECT_EQ(start.GetBits(8), 0x3Cu);
}
