#include "math/MemoryAlloc.h"

#include "LogCapture.h"
#include "diag/TException.h"
#include "platform/PlatformMemory.h"
#include "text/TString.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

TEST(MemoryAlloc, SizeZeroAndNullFollowTheirRules)
{
    EXPECT_EQ(malloc_ex(0), nullptr);
    EXPECT_EQ(realloc_ex(nullptr, 0), nullptr);
    EXPECT_EQ(realloc_ex(nullptr, -1), nullptr);

    auto* p = static_cast<char*>(realloc_ex(nullptr, 3));
    ASSERT_NE(p, nullptr);
    std::memcpy(p, "abc", 3);
    ASSERT_NE(p = static_cast<char*>(realloc_ex(p, 100000)), nullptr);
    EXPECT_EQ(0, std::memcmp(p, "abc", 3));
    // Freed here; the sanitizer build would report a leak otherwise.
    EXPECT_EQ(realloc_ex(p, 0), nullptr);
    free_ex(nullptr);
}

TEST(MemoryAlloc, NegativeSizesFailAsExhaustedMemory)
{
    try {
        malloc_ex(-1);
        FAIL() << "no exception";
    } catch (TException const& exception) {
        ASSERT_TRUE(exception.Message());
        EXPECT_EQ(exception.Message()->qString(), QStringLiteral("Out of memory"));
    }
    void* block = malloc_ex(8);
    EXPECT_THROW(realloc_ex(block, -8), TException);
    // The block survives the failed resize.
    std::memset(block, 1, 8);
    free_ex(block);
    void* slots[2] = {};
    EXPECT_THROW(ConstSlotPtr(-4, slots, 2), TException);
}

// The old copy goes in every case, and the size is reported even when
// nothing is copied.
TEST(MemoryAlloc, CopyHLReplacesAndReportsTheSize)
{
    void* held = nullptr;
    int size = -1;
    CopyHL("hello", 5, &held, &size);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(0, std::memcmp(held, "hello", 5));
    EXPECT_EQ(size, 5);
    CopyHL(nullptr, 7, &held, &size);
    EXPECT_TRUE(held == nullptr && size == 7);
    CopyHL("xy", 2, nullptr, &size);
    EXPECT_EQ(size, 2);
    CopyHL("abc", 3, &held, nullptr);
    FreeHL(&held);
    EXPECT_EQ(held, nullptr);
    FreeHL(&held);
    FreeHL(nullptr);
}

TEST(MemoryAlloc, PageAlignedMemoryIsWholeZeroedPages)
{
    unsigned const page = PlatformPageSize();
    EXPECT_GE(page, 4096u);
    EXPECT_EQ(page & (page - 1), 0u);
    EXPECT_EQ(PlatformAllocationGranularity() % page, 0u);

    for (unsigned size : { 1u, page - 1, page, page + 1, 1u << 20 }) {
        auto* block = static_cast<unsigned char*>(AllocPageAlignedMemory(size, canExceptionYes));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % page, 0u);
        size_t const usable = (size + page - 1) / page * page;
        for (size_t i = 0; i < usable; i += 97)
            ASSERT_EQ(block[i], 0);
        std::memset(block, 0x5A, usable);
        FreePageAlignedMemory(block);
    }
    EXPECT_EQ(AllocPageAlignedMemory(0, canExceptionYes), nullptr);
    FreePageAlignedMemory(nullptr);
}

TEST(MemoryAlloc, FreeingForeignMemoryIsLoggedAndLeavesItAlone)
{
    auto* block = static_cast<unsigned char*>(AllocPageAlignedMemory(3 * PlatformPageSize(), canExceptionNo));
    ASSERT_NE(block, nullptr);
    LogCapture log;
    // Page-aligned, but not the start of a block.
    unsigned char* inside = block + PlatformPageSize();
    FreePageAlignedMemory(inside);
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "FreePageAlignedMemory 1"));
    inside[0] = 1; // still mapped
    FreePageAlignedMemory(block);
    EXPECT_EQ(log.Count(), 1);

    // Page-aligned memory that has nothing mapped before it.
    auto* first = static_cast<unsigned char*>(AllocPageAlignedMemory(PlatformPageSize(), canExceptionNo));
    ASSERT_NE(first, nullptr);
    unsigned char* header = first - PlatformPageSize();
    FreePageAlignedMemory(first);
    log.Clear();
    FreePageAlignedMemory(header + PlatformPageSize());
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "FreePageAlignedMemory 1"));
}

TEST(MemoryAlloc, ConstSlotPtrTakesFirstFullSlotAndRefillsWhenEmpty)
{
    void* slots[3] = {};
    void* const first = ConstSlotPtr(16, slots, 3);
    // Refilled all three, took slot 0; the next two come in order.
    void* const second = slots[1];
    void* const third = slots[2];
    ASSERT_TRUE(first && !slots[0] && second && third);
    EXPECT_EQ(ConstSlotPtr(16, slots, 3), second);
    EXPECT_EQ(ConstSlotPtr(16, slots, 3), third);
    EXPECT_TRUE(!slots[0] && !slots[1] && !slots[2]);
    // A block put back by the caller is handed out before any refill.
    slots[2] = first;
    EXPECT_EQ(ConstSlotPtr(16, slots, 3), first);
    for (void* block : { first, second, third })
        free_ex(block);

    EXPECT_EQ(ConstSlotPtr(16, slots, 0), nullptr);
    EXPECT_EQ(ConstSlotPtr(16, nullptr, 3), nullptr);
    EXPECT_EQ(ConstSlotPtr(0, slots, 3), nullptr);
}

} // namespace
