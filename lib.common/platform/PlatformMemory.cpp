#include "platform/PlatformMemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace {

// munmap needs the length that VirtualFree does not: it is kept in one page
// placed before the block, so that no table and no lock are needed.
struct TPageHeader
{
    uint64_t magic;
    size_t mappedLength;
};

constexpr uint64_t kPageHeaderMagic = 0x5047414c4c4f4321ull;

size_t RoundUpToPages(size_t size, size_t page)
{
    return (size + page - 1) / page * page;
}

} // namespace

unsigned PlatformPageSize()
{
    static unsigned const pageSize = [] {
        long const size = sysconf(_SC_PAGESIZE);
        return size > 0 ? static_cast<unsigned>(size) : 4096u;
    }();
    return pageSize;
}

unsigned PlatformAllocationGranularity()
{
    return PlatformPageSize();
}

void* PlatformAllocPages(size_t size)
{
    if (size == 0)
        return nullptr;
    size_t const page = PlatformPageSize();
    if (size > SIZE_MAX - 2 * page)
        return nullptr;
    size_t const length = RoundUpToPages(size, page) + page;
    void* const mapped = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        return nullptr;
    auto* header = static_cast<TPageHeader*>(mapped);
    header->magic = kPageHeaderMagic;
    header->mappedLength = length;
    return static_cast<char*>(mapped) + page;
}

bool PlatformFreePages(void* block)
{
    size_t const page = PlatformPageSize();
    auto const address = reinterpret_cast<uintptr_t>(block);
    if (!block || address % page != 0)
        return false;
    auto* header = reinterpret_cast<TPageHeader*>(address - page);
    // The page before a foreign pointer may not be mapped at all.
    if (msync(header, page, MS_ASYNC) != 0 || header->magic != kPageHeaderMagic)
        return false;
    size_t const length = header->mappedLength;
    header->magic = 0;
    return munmap(header, length) == 0;
}
